#include "framework/ui/ui_service.h"

#include "base/log/log.h"

namespace framework {

void RecordingUIService::ShowToast(ToastRequest const& request) {
  TXLOG_INFO << "toast: " << request.text;
  toasts_.push_back(request);
}

long RecordingUIService::ShowAlert(AlertRequest const& request, AlertCallback callback) {
  Alert alert;
  alert.id = next_id_++;
  alert.request = request;
  alert.callback = std::move(callback);
  alerts_.push_back(std::move(alert));
  TXLOG_INFO << "alert " << alerts_.back().id << ": " << request.title << " / " << request.content;
  return alerts_.back().id;
}

void RecordingUIService::DisposeAlerts(uint64_t owner) {
  for (auto& alert : alerts_) {
    if (owner == 0 || alert.request.owner == owner) alert.open = false;
  }
}

void RecordingUIService::ShowLoading(std::string const& text, uint64_t) { loadings_.push_back(text); }

void RecordingUIService::DisposeLoading(uint64_t) {}

void RecordingUIService::NavigateToFilePath(std::string const& path, std::string const&, bool) {
  opened_paths_.push_back(path);
}

void RecordingUIService::OpenFile(std::string const& path) { opened_paths_.push_back(path); }

bool RecordingUIService::Answer(long alert_id, int button, Variant data) {
  for (auto& alert : alerts_) {
    if (alert.id != alert_id || !alert.open) continue;
    alert.open = false;
    if (alert.callback) {
      AlertCallback callback = alert.callback;
      callback(alert_id, button, &data);
    }
    return true;
  }
  return false;
}

RecordingUIService::Alert const* RecordingUIService::LastOpenAlert() const {
  for (auto it = alerts_.rbegin(); it != alerts_.rend(); ++it) {
    if (it->open) return &*it;
  }
  return nullptr;
}

void RecordingUIService::Clear() {
  toasts_.clear();
  alerts_.clear();
  loadings_.clear();
  opened_paths_.clear();
}

namespace {
std::shared_ptr<UIService>& Current() {
  static std::shared_ptr<UIService> service = std::make_shared<RecordingUIService>();
  return service;
}
}  // namespace

UIService* GetUIService() { return Current().get(); }

void SetUIService(std::shared_ptr<UIService> service) {
  Current() = service ? std::move(service) : std::make_shared<RecordingUIService>();
}

}  // namespace framework
