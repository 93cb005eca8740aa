#include "framework/viewmodel/ui_view_model.h"

namespace framework {

UIViewModel::AlertBuilder::AlertBuilder(UIViewModel* owner) : owner_(owner) {
  request_.owner = SubscriberId(owner);
}

UIViewModel::AlertBuilder& UIViewModel::AlertBuilder::SetTitle(std::string const& text) {
  request_.title = text;
  return *this;
}
UIViewModel::AlertBuilder& UIViewModel::AlertBuilder::SetContent(std::string const& text) {
  request_.content = text;
  return *this;
}
UIViewModel::AlertBuilder& UIViewModel::AlertBuilder::SetPositiveText(std::string const& text) {
  request_.positive_text = text;
  return *this;
}
UIViewModel::AlertBuilder& UIViewModel::AlertBuilder::SetNegativeText(std::string const& text) {
  request_.negative_text = text;
  return *this;
}
UIViewModel::AlertBuilder& UIViewModel::AlertBuilder::SetPositiveColor(std::string const& color) {
  request_.positive_color = color;
  return *this;
}
UIViewModel::AlertBuilder& UIViewModel::AlertBuilder::SetType(int type) {
  request_.type = type;
  return *this;
}
UIViewModel::AlertBuilder& UIViewModel::AlertBuilder::SetAutoDismiss(bool value) {
  request_.auto_dismiss = value;
  return *this;
}
UIViewModel::AlertBuilder& UIViewModel::AlertBuilder::SetTopMost(bool value) {
  request_.top_most = value;
  return *this;
}
UIViewModel::AlertBuilder& UIViewModel::AlertBuilder::SetUseElideText(bool value) {
  request_.use_elide_text = value;
  return *this;
}
UIViewModel::AlertBuilder& UIViewModel::AlertBuilder::SetCustomViewData(Variant const& data) {
  request_.custom_view_data = data;
  return *this;
}
UIViewModel::AlertBuilder& UIViewModel::AlertBuilder::setCheckState(bool checked) {
  request_.has_check = true;
  request_.check_state = checked;
  return *this;
}
UIViewModel::AlertBuilder& UIViewModel::AlertBuilder::setCheckStateText(std::string const& text) {
  request_.has_check = true;
  request_.check_state_text = text;
  return *this;
}
UIViewModel::AlertBuilder& UIViewModel::AlertBuilder::setCheckSecState(bool checked) {
  request_.has_second_check = true;
  request_.check_sec_state = checked;
  return *this;
}
UIViewModel::AlertBuilder& UIViewModel::AlertBuilder::setCheckSecStateText(std::string const& text) {
  request_.has_second_check = true;
  request_.check_sec_state_text = text;
  return *this;
}
UIViewModel::AlertBuilder& UIViewModel::AlertBuilder::SetInteractiveFunc(AlertCallback callback) {
  callback_ = std::move(callback);
  return *this;
}

long UIViewModel::AlertBuilder::Show() {
  UIService* service = GetUIService();
  return service ? service->ShowAlert(request_, callback_) : 0;
}

void UIViewModel::ShowToast(int type, std::string const& text, unsigned duration_ms, unsigned flags,
                            std::string const& icon, std::string const& extra) {
  ToastRequest request;
  request.type = type;
  request.text = text;
  request.duration_ms = duration_ms;
  request.flags = flags;
  request.icon = icon;
  request.extra = extra;
  request.owner = SubscriberId(this);
  if (UIService* service = GetUIService()) service->ShowToast(request);
}

void UIViewModel::ShowLoading(std::string const& text) {
  if (UIService* service = GetUIService()) service->ShowLoading(text, SubscriberId(this));
}

void UIViewModel::DisposeLoading(Variant*) {
  if (UIService* service = GetUIService()) service->DisposeLoading(SubscriberId(this));
}

void UIViewModel::DisposeAlertAll() {
  if (UIService* service = GetUIService()) service->DisposeAlerts(SubscriberId(this));
}

void UIViewModel::NavigateToFilePath(std::string const& path, std::string const& extra, bool select) {
  if (UIService* service = GetUIService()) service->NavigateToFilePath(path, extra, select);
}

void UIViewModel::NavigateToOpenFile(std::string const& path) {
  if (UIService* service = GetUIService()) service->OpenFile(path);
}

std::string UIViewModel::GetLocalizedString(uint32_t id) const { return Resource::GetInstance()->GetString(id); }

std::string UIViewModel::GetAssetLocalizedString(uint32_t id) const {
  return Resource::GetInstance()->GetString(id);
}

StringFormatter UIViewModel::FormatString(uint32_t id) const { return StringFormatter(GetLocalizedString(id)); }

StringFormatter UIViewModel::FormatAssetString(uint32_t id) const {
  return StringFormatter(GetAssetLocalizedString(id));
}

void UIViewModel::OnViewDetached() {
  // Alerts and loading of a view model that went away would answer nobody.
  DisposeAlertAll();
  DisposeLoading();
  ViewModel::OnViewDetached();
}

}  // namespace framework
