#pragma once

#include <QPointer>
#include <QWidget>

#include "base/variant/variant.h"
#include "chat/ui/desktop/controller/page_controller.h"
#include "framework/module/module_runtime.h"

class QLabel;
class QProgressBar;
class QPushButton;

// The file page's content: the file's icon, name and size, the transfer's
// progress with how much has arrived, what can't be done with it, and the
// buttons the state allows. Once the file is on disk and nothing else is
// offered, an Open button stands in for the main one. What the buttons do
// is the view model's.
class FilePreviewWidget : public QWidget {
  Q_OBJECT

 public:
  explicit FilePreviewWidget(QWidget* parent = nullptr);

  void SetUIData(Variant const& data);

  QLabel* icon_label() const { return icon_; }
  QLabel* name_label() const { return name_; }
  QLabel* size_label() const { return size_; }
  QProgressBar* progress_bar() const { return progress_; }
  QLabel* process_label() const { return process_; }
  QLabel* state_label() const { return state_; }
  QPushButton* main_button() const { return main_; }
  QPushButton* cancel_button() const { return cancel_; }
  QPushButton* open_button() const { return open_; }

 signals:
  void MainClicked();
  void CancelClicked();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QLabel* icon_ = nullptr;
  QLabel* name_ = nullptr;
  QLabel* size_ = nullptr;
  QProgressBar* progress_ = nullptr;
  QLabel* process_ = nullptr;
  QLabel* state_ = nullptr;
  QPushButton* main_ = nullptr;
  QPushButton* cancel_ = nullptr;
  QPushButton* open_ = nullptr;
};

namespace QtView {

// The page of one chat file, in a window of its own, bound to the module's
// file preview view model. The page's params are the file's message.
class FilePreviewView : public chat::PageWindowView {
 public:
  explicit FilePreviewView(framework::module::ModuleRuntime* runtime);
  FilePreviewWidget* widget() const { return widget_.data(); }

 protected:
  QWidget* BuildFrame(QWidget* parent, Variant* params) override;
  void OnViewModelBoundEx(framework::StatefulViewModel* view_model) override;

 private:
  void Dispatch(uint32_t action);
  framework::module::ModuleRuntime* runtime_;
  QPointer<FilePreviewWidget> widget_;
};

}  // namespace QtView
