#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/variant/variant.h"

namespace framework {

struct ToastRequest {
  int type = 0;
  std::string text;
  unsigned duration_ms = 2000;
  unsigned flags = 0;
  std::string icon;
  std::string extra;
  uint64_t owner = 0;
};

enum AlertButton : int {
  kAlertButtonNegative = 0,
  kAlertButtonPositive = 1,
  kAlertButtonClosed = 2,
};

struct AlertRequest {
  std::string title;
  std::string content;
  std::string positive_text;
  std::string negative_text;
  std::string positive_color;
  int type = 0;
  bool auto_dismiss = true;
  bool top_most = false;
  bool use_elide_text = false;
  Variant custom_view_data;
  bool has_check = false;
  bool check_state = false;
  std::string check_state_text;
  bool has_second_check = false;
  bool check_sec_state = false;
  std::string check_sec_state_text;
  uint64_t owner = 0;
};

// Answer of an alert: its id, the button (AlertButton) and a map with
// `check_state` and `check_sec_state` when the alert had check boxes.
using AlertCallback = std::function<void(long alert_id, int button, Variant* data)>;

// Where user feedback from view models goes: the client's toasts, alerts,
// loading indicators and file shell.
class UIService {
 public:
  virtual ~UIService() = default;
  virtual void ShowToast(ToastRequest const& request) = 0;
  virtual long ShowAlert(AlertRequest const& request, AlertCallback callback) = 0;
  // Closes the open alerts of `owner` (0: all) without answering them.
  virtual void DisposeAlerts(uint64_t owner) = 0;
  virtual void ShowLoading(std::string const& text, uint64_t owner) = 0;
  virtual void DisposeLoading(uint64_t owner) = 0;
  virtual void NavigateToFilePath(std::string const& path, std::string const& extra, bool select) = 0;
  virtual void OpenFile(std::string const& path) = 0;
};

// Keeps every request, so that a test (or a headless run) can read them and
// answer alerts.
class RecordingUIService : public UIService {
 public:
  struct Alert {
    long id = 0;
    AlertRequest request;
    AlertCallback callback;
    bool open = true;
  };

  void ShowToast(ToastRequest const& request) override;
  long ShowAlert(AlertRequest const& request, AlertCallback callback) override;
  void DisposeAlerts(uint64_t owner) override;
  void ShowLoading(std::string const& text, uint64_t owner) override;
  void DisposeLoading(uint64_t owner) override;
  void NavigateToFilePath(std::string const& path, std::string const& extra, bool select) override;
  void OpenFile(std::string const& path) override;

  std::vector<ToastRequest> const& toasts() const { return toasts_; }
  std::vector<Alert> const& alerts() const { return alerts_; }
  std::vector<std::string> const& loadings() const { return loadings_; }
  std::vector<std::string> const& opened_paths() const { return opened_paths_; }
  // Answers an open alert as the user would; false when there is none.
  bool Answer(long alert_id, int button, Variant data = Variant());
  // The newest alert that is still open, or null.
  Alert const* LastOpenAlert() const;
  void Clear();

 private:
  std::vector<ToastRequest> toasts_;
  std::vector<Alert> alerts_;
  std::vector<std::string> loadings_;
  std::vector<std::string> opened_paths_;
  long next_id_ = 1;
};

// The client's UI service; a RecordingUIService until the client sets one.
UIService* GetUIService();
void SetUIService(std::shared_ptr<UIService> service);

}  // namespace framework
