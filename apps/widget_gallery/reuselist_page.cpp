// The reuse list on 100,000 sample messages: only the rows on screen have
// widgets, which the caption counts as the list scrolls.
#include <QLabel>
#include <QLocale>
#include <QVBoxLayout>
#include <QWidget>

#include "chat/ui/desktop/view/list/chat_message_list_widget.h"
#include "devkit/sample_rows.h"
#include "devkit/sample_text_list_delegate.h"
#include "gallery_page.h"

GALLERY_PAGE(reuselist, "Reuse list", [](QWidget* parent) -> QWidget* {
  auto* page = new QWidget(parent);
  auto* layout = new QVBoxLayout(page);
  auto* caption = new QLabel(page);
  caption->setWordWrap(true);
  auto* list = new ChatMessageListWidget(page);
  list->setMinimumWidth(360);
  list->setMaximumWidth(520);
  // A child of the list: it goes when the list goes, and the list notices.
  auto* delegate = new devkit::SampleTextListDelegate(devkit::MakeSampleRows(100000), list);
  list->SetDelegate(delegate, delegate);
  list->SetSelectionEnabled(true);
  list->SetItemSpacing(2);
  list->SetVisibleItemsChangedCallback([list, caption] {
    caption->setText(QString("%1 messages. Rows %2 to %3 are on screen, drawn by %4 row widgets; "
                             "drag across rows to select, arrow keys move the current row.")
                         .arg(QLocale().toString(list->TotalCount()))
                         .arg(list->StartIndex() + 1)
                         .arg(list->EndIndex() + 1)
                         .arg(list->findChildren<QFReuseWidget*>().size()));
  });
  layout->addWidget(caption);
  layout->addWidget(list, 1, Qt::AlignHCenter);
  list->Reload(ChatReuseListWidget::kStickToBottom, 0);
  return page;
});
