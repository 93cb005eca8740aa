#include "chat/ui/desktop/extension/chatting_panel_show_view.h"

#include <QCoreApplication>
#include <QFile>
#include <QLabel>
#include <QStackedLayout>

#include "base/log/log.h"
#include "chat/ui/desktop/chat_resources.h"
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
  auto* layout = new QStackedLayout(panel_);
  layout->setStackingMode(QStackedLayout::StackAll);
  QWidget* list = ChatHistoryListView::BuildFrame(panel_, params);
  empty_label_ = new QLabel(QString::fromStdString(talvex_common::utils::GetLocalizedString(framework::NameId("chat.panel.empty"))), panel_);
  empty_label_->setObjectName("chat_empty_label");
  empty_label_->setAlignment(Qt::AlignCenter);
  empty_label_->setAttribute(Qt::WA_TransparentForMouseEvents);
  layout->addWidget(empty_label_);
  layout->addWidget(list);
  layout->setCurrentWidget(list);
  return panel_;
}

void ChattingPanelShowView::OnItemsChanged() {
  if (empty_label_) empty_label_->setVisible(message_count() == 0);
}

}  // namespace QtView
