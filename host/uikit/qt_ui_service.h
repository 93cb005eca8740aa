#pragma once

#include <QObject>
#include <QPointer>
#include <map>

#include "framework/ui/ui_service.h"

class QMessageBox;
class QLabel;

// The client's user feedback on screen: toasts float at the bottom of the
// main window and fade; alerts are dialogs with the requested buttons and
// check boxes. Every request is also recorded, as by RecordingUIService.
class QtUIService : public QObject, public framework::RecordingUIService {
  Q_OBJECT
 public:
  explicit QtUIService(QObject* parent = nullptr);
  ~QtUIService() override;

  void ShowToast(framework::ToastRequest const& request) override;
  long ShowAlert(framework::AlertRequest const& request, framework::AlertCallback callback) override;
  void DisposeAlerts(uint64_t owner) override;
  void OpenFile(std::string const& path) override;
  void NavigateToFilePath(std::string const& path, std::string const& extra, bool select) override;

 private:
  std::map<long, QPointer<QMessageBox>> open_alerts_;
  QPointer<QLabel> toast_;
};
