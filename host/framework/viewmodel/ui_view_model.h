#pragma once

#include <functional>
#include <string>

#include "framework/resource/resource.h"
#include "framework/ui/ui_service.h"
#include "framework/viewmodel/view_model.h"

namespace framework {

// A view model that can speak to the user: toasts, alerts, loading, texts.
class UIViewModel : public ViewModel {
 public:
  // Builds an alert over its view model; Show() hands it to the UI service.
  class AlertBuilder {
   public:
    explicit AlertBuilder(UIViewModel* owner);
    AlertBuilder& SetTitle(std::string const& text);
    AlertBuilder& SetContent(std::string const& text);
    AlertBuilder& SetPositiveText(std::string const& text);
    AlertBuilder& SetNegativeText(std::string const& text);
    AlertBuilder& SetPositiveColor(std::string const& color);
    AlertBuilder& SetType(int type);
    AlertBuilder& SetAutoDismiss(bool value);
    AlertBuilder& SetTopMost(bool value);
    AlertBuilder& SetUseElideText(bool value);
    AlertBuilder& SetCustomViewData(Variant const& data);
    AlertBuilder& setCheckState(bool checked);
    AlertBuilder& setCheckStateText(std::string const& text);
    AlertBuilder& setCheckSecState(bool checked);
    AlertBuilder& setCheckSecStateText(std::string const& text);
    // Called with the alert id, the button and the check states.
    AlertBuilder& SetInteractiveFunc(AlertCallback callback);
    // The alert id, 0 when there is no UI service.
    long Show();

   private:
    UIViewModel* owner_;
    AlertRequest request_;
    AlertCallback callback_;
  };

  void ShowToast(int type, std::string const& text, unsigned duration_ms = 2000, unsigned flags = 0,
                 std::string const& icon = "", std::string const& extra = "");
  void ShowLoading(std::string const& text);
  void DisposeLoading(Variant* params = nullptr);
  void DisposeAlertAll();
  void NavigateToFilePath(std::string const& path, std::string const& extra = "", bool select = true);
  void NavigateToOpenFile(std::string const& path);

  std::string GetLocalizedString(uint32_t id) const;
  std::string GetAssetLocalizedString(uint32_t id) const;
  StringFormatter FormatString(uint32_t id) const;
  StringFormatter FormatAssetString(uint32_t id) const;

  void OnViewDetached() override;
};

}  // namespace framework
