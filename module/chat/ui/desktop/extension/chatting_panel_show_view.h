#pragma once

#include "chat/ui/desktop/view/chat_history_list_view.h"

#include <QLabel>

#include "chat/ui/desktop/view/notice/meeting_notice_banner.h"

namespace QtView {

// The chat panel's message area: the history list in the module's style,
// with the panel's own empty state while there is nothing to show, and in a
// running meeting the notice banner above the messages.
class ChattingPanelShowView : public ChatHistoryListView {
 public:
  static constexpr char kStyleSheet[] = ":/qss/chat/chat_widget";

  QWidget* panel() const { return panel_.data(); }
  QLabel* empty_label() const { return empty_label_.data(); }
  MeetingNoticeBanner* notice_banner() const { return notice_banner_.data(); }
  // The module's style sheet, "" when the resource is missing.
  static QString LoadStyleSheet();

 protected:
  QWidget* BuildFrame(QWidget* parent, Variant* params) override;
  void OnItemsChanged() override;
  void OnViewModelBoundEx(framework::StatefulViewModel* view_model) override;
  void OnDispose() override;

 private:
  QPointer<QWidget> panel_;
  QPointer<QLabel> empty_label_;
  QPointer<MeetingNoticeBanner> notice_banner_;
};

}  // namespace QtView
