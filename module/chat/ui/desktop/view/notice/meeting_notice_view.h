#pragma once

#include <QPointer>
#include <QWidget>

#include "base/variant/variant.h"
#include "chat/ui/desktop/controller/page_controller.h"
#include "framework/module/module_runtime.h"

class QLabel;
class QPlainTextEdit;
class QPushButton;
class QStackedWidget;
class QTextBrowser;

// The notice dialog's content. Read mode: the sender, the time and the
// notice with its links, and Edit for a host. Edit mode: the text with its
// length against the limit, Cancel and Publish (a blank text over a notice
// clears it). What the buttons do is the view model's.
class MeetingNoticeWidget : public QWidget {
  Q_OBJECT

 public:
  explicit MeetingNoticeWidget(QWidget* parent = nullptr);

  void SetUiData(Variant const& data);
  void SetNoticeInfo(Variant const& info);

  QTextBrowser* reader() const { return reader_; }
  QPlainTextEdit* editor() const { return editor_; }
  QPushButton* edit_button() const { return edit_button_; }
  QPushButton* publish_button() const { return publish_button_; }
  QPushButton* cancel_button() const { return cancel_button_; }
  QLabel* sender_label() const { return sender_; }
  QLabel* counter() const { return counter_; }
  bool editing() const;

 signals:
  void EditClicked();
  void CancelClicked(QString const& text);
  void PublishClicked(QString const& text);
  void LinkClicked(QString const& url);

 private:
  void UpdateCounter();

  QLabel* avatar_ = nullptr;
  QLabel* sender_ = nullptr;
  QLabel* time_ = nullptr;
  QStackedWidget* pages_ = nullptr;
  QTextBrowser* reader_ = nullptr;
  QPlainTextEdit* editor_ = nullptr;
  QLabel* counter_ = nullptr;
  QPushButton* edit_button_ = nullptr;
  QPushButton* cancel_button_ = nullptr;
  QPushButton* publish_button_ = nullptr;
  QString empty_text_;
  QString over_limit_text_;
  int max_length_ = 1000;
};

namespace QtView {

// The page "talvex://page/meeting_notice": a window with the notice widget,
// bound to the notice's view model (the meeting's notice, or a notice of the
// chat's history when opened from a past meeting's record).
class MeetingNoticeView : public chat::PageWindowView {
 public:
  // `runtime` gives the view its view model: the meeting's notice, or with
  // `template_type` 3 and a `msg_id` in the page's params, a history notice.
  explicit MeetingNoticeView(framework::module::ModuleRuntime* runtime);
  MeetingNoticeWidget* widget() const { return widget_.data(); }

 protected:
  QWidget* BuildFrame(QWidget* parent, Variant* params) override;
  void OnViewModelBoundEx(framework::StatefulViewModel* view_model) override;

 private:
  void Dispatch(uint32_t action, Variant const& params);
  framework::module::ModuleRuntime* runtime_;
  QPointer<MeetingNoticeWidget> widget_;
};

}  // namespace QtView
