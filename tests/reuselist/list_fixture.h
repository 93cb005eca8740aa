#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>
#include <algorithm>
#include <memory>

#include "chat/ui/desktop/view/list/chat_reuse_list_widget.h"
#include "devkit/sample_row_widget.h"
#include "devkit/sample_rows.h"
#include "devkit/sample_text_list_delegate.h"

namespace reuselist_test {

using devkit::SampleRow;
using devkit::SampleRowWidget;
using devkit::SampleTextListDelegate;

inline SampleRow PlainRow(QString const& key, QString const& text) {
  SampleRow row;
  row.key = key;
  row.sender = "Ben";
  row.text = text;
  return row;
}

// `count` message rows "row <i>" (one line each) with keys "k<i>".
inline QVector<SampleRow> PlainRows(int count) {
  QVector<SampleRow> rows;
  for (int i = 0; i < count; ++i) rows.push_back(PlainRow(QString("k%1").arg(i), QString("row %1").arg(i)));
  return rows;
}

inline QString LongText(int words) {
  QString text;
  for (int i = 0; i < words; ++i) text += i ? " lorem" : "Lorem";
  return text;
}

// A shown list on a sample delegate.
template <typename List = ChatReuseListWidget>
struct ListHarness {
  explicit ListHarness(QVector<SampleRow> rows,
                       SampleTextListDelegate::Estimate estimate = SampleTextListDelegate::Estimate::kExact,
                       QSize size = QSize(320, 400))
      : delegate(std::make_unique<SampleTextListDelegate>(std::move(rows))), list(std::make_unique<List>()) {
    delegate->SetEstimate(estimate);
    list->resize(size);
    list->show();
    QApplication::processEvents();
    list->SetDelegate(delegate.get(), delegate.get());
  }

  QScrollBar* bar() const { return list->verticalScrollBar(); }
  int ViewHeight() const { return list->viewport()->height(); }

  void Wheel(int angle_delta_y, QPoint pos = QPoint(40, 40), Qt::MouseButtons buttons = Qt::NoButton) const {
    QWheelEvent event(QPointF(pos), QPointF(list->viewport()->mapToGlobal(pos)), QPoint(), QPoint(0, angle_delta_y),
                      buttons, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(list->viewport(), &event);
  }

  // The row widget the user sees at viewport y.
  SampleRowWidget* RowAt(int y) const {
    QWidget* hit = list->viewport()->childAt(40, y);
    while (hit && !qobject_cast<SampleRowWidget*>(hit)) hit = hit->parentWidget();
    return qobject_cast<SampleRowWidget*>(hit);
  }
  QString TextAt(int y) const {
    SampleRowWidget* row = RowAt(y);
    return row ? row->Text() : QString();
  }
  // Viewport y of the middle of a row.
  int MiddleOf(int index) const {
    return list->ItemTopForIndex(index) + list->ItemHeightAt(index) / 2 - bar()->value();
  }

  // Row widgets under the content that are on screen, whatever the list thinks.
  int LiveVisibleWidgets() const {
    int n = 0;
    for (auto* w : list->ContentWidget()->template findChildren<SampleRowWidget*>()) n += w->isVisible() ? 1 : 0;
    return n;
  }
  int AllRowWidgets() const { return list->ContentWidget()->template findChildren<SampleRowWidget*>().size(); }

  // A row's top from the heights alone, the slow way.
  int TopBySum(int index) const {
    int top = list->GetMargins().top();
    for (int i = 0; i < index; ++i) top += list->ItemHeightAt(i) + list->GetItemSpacing();
    return top;
  }

  // The used rows sit where the row geometry puts them, show their own row,
  // and cover the viewport.
  void ExpectConsistentLayout() const {
    const int start = list->StartIndex();
    const int end = list->EndIndex();
    ASSERT_EQ(list->GetUsedItems().size(), std::max(0, end - start + 1));
    for (int i = start; i <= end; ++i) {
      auto* w = qobject_cast<SampleRowWidget*>(list->ItemWidgetForIndex(i));
      ASSERT_NE(w, nullptr) << "row " << i;
      EXPECT_TRUE(w->isVisible()) << "row " << i;
      EXPECT_EQ(w->BoundKey(), delegate->Rows()[i].key) << "row " << i;
      EXPECT_EQ(w->y(), TopBySum(i)) << "row " << i;
      EXPECT_EQ(w->height(), list->ItemHeightAt(i)) << "row " << i;
      EXPECT_EQ(w->width(), list->viewport()->width()) << "row " << i;
    }
    EXPECT_EQ(LiveVisibleWidgets(), list->GetUsedItems().size());
    if (list->TotalCount() > 0) {
      const int value = bar()->value();
      EXPECT_LE(TopBySum(start), std::max(value, list->GetMargins().top()));
      if (start > 0) {
        EXPECT_LT(TopBySum(start) - list->GetItemSpacing(), value) << "row " << start - 1 << " is in view";
      }
      const int last_bottom = TopBySum(end) + list->ItemHeightAt(end);
      EXPECT_TRUE(end == list->TotalCount() - 1 || last_bottom >= value + ViewHeight())
          << "rows end at " << last_bottom << ", view ends at " << value + ViewHeight();
    }
  }

  std::unique_ptr<SampleTextListDelegate> delegate;
  std::unique_ptr<List> list;
};

}  // namespace reuselist_test
