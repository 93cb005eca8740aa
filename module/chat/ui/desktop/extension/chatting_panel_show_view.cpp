#include "chat/ui/desktop/extension/chatting_panel_show_view.h"

#include <QCoreApplication>
#include <QFile>
#include <QLabel>
#include <QStackedLayout>
#include <QVBoxLayout>

#include "base/log/log.h"
#include "chat/ui/desktop/chat_resources.h"
#include "chat/ui/desktop/view/notice/meeting_notice_banner.h"
#include "chat/viewmodel/chat_panel_history_list_view_model.h"
#include "chat/viewmodel/view_model_types.h"
#include "framework/module/module_runtime.h"
#include "framework/module/providers.h"
#include "framework/resource/resource.h"
#include "framework/viewmodel/view_model.h"

namespace QtView {

QString ChattingPanelShowView::LoadStyleSheet() {
  chat::InitChatResources();
  QFile file(kStyleSheet);
  if (!file.open(QIODevice::ReadOnly)) {
    TXLOG_WARN << "<IM> style sheet missing: " << kStyleSheet;
    return QString();
  }
  return QString::fromUtf8(file.readAll());
}

QWidget* ChattingPanelShowView::BuildFrame(QWidget* parent, Variant* params) {
  panel_ = new QWidget(parent);
  panel_->setObjectName("ChattingPanelShowView");
  panel_->setAttribute(Qt::WA_StyledBackground);
  panel_->setStyleSheet(LoadStyleSheet());
  auto* column = new QVBoxLayout(panel_);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  notice_banner_ = new MeetingNoticeBanner(panel_);
  column->addWidget(notice_banner_);
  auto* messages = new QWidget(panel_);
  column->addWidget(messages, 1);
  auto* layout = new QStackedLayout(messages);
  layout->setStackingMode(QStackedLayout::StackAll);
  QWidget* list = ChatHistoryListView::BuildFrame(messages, params);
  empty_label_ = new QLabel(QString::fromStdString(talvex_common::utils::GetLocalizedString(framework::NameId("chat.panel.empty"))), messages);
  empty_label_->setObjectName("chat_empty_label");
  empty_label_->setAlignment(Qt::AlignCenter);
  empty_label_->setAttribute(Qt::WA_TransparentForMouseEvents);
  layout->addWidget(empty_label_);
  layout->addWidget(list);
  layout->setCurrentWidget(list);
  return panel_;
}

void ChattingPanelShowView::OnViewModelBoundEx(framework::StatefulViewModel* view_model) {
  ChatHistoryListView::OnViewModelBoundEx(view_model);
  // A past meeting's record has no notice to show over it.
  if (!notice_banner_ || !dynamic_cast<chat::ChatPanelHistoryListViewModel*>(view_model)) return;
  auto* runtime = view_model->GetModuleRuntime4ATG();
  auto* provider = runtime ? runtime->GetViewModelProvider() : nullptr;
  auto banner = std::dynamic_pointer_cast<framework::StatefulViewModel>(
      provider ? provider->CreateViewModel(chat::kViewModelMeetingNoticeBanner) : nullptr);
  if (!banner) {
    TXLOG_WARN << "<IM> no view model for the notice banner";
    return;
  }
  notice_banner_->Bind(std::move(banner));
}

void ChattingPanelShowView::OnDispose() {
  if (notice_banner_) notice_banner_->Bind(nullptr);
  ChatHistoryListView::OnDispose();
}

void ChattingPanelShowView::OnItemsChanged() {
  if (empty_label_) empty_label_->setVisible(message_count() == 0);
}

}  // namespace QtView
