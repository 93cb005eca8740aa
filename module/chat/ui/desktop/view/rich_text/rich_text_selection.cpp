#include "chat/ui/desktop/view/rich_text/rich_text_selection.h"

#include <QApplication>
#include <utility>

#include "base/log/log.h"
#include "chat/ui/desktop/view/rich_text/rich_text_label.h"
#include "chat/ui/desktop/view/rich_text/rich_text_plain_text_writer.h"

void RichTextSelection::SetContentSelectable(bool selectable, bool use_native, QString const& bg_color) {
  // Every bind of a row: debug level.
  TXLOG_VERBOSE << "set content selectable:" << selectable << ", use native:" << use_native
                                << ", bg color:" << bg_color.toStdString();
  if (selectable && bg_color.isEmpty()) {
    TXLOG_ERROR << "invalid selection bg color";
    return;
  }
  if (!selectable) ClearContentSelection();
  selectable_ = selectable;
  use_native_ = use_native;
  select_bg_color_ = bg_color;
}

void RichTextSelection::ClearContentSelection() {
  if (HasContentSelection()) Reset();
}

void RichTextSelection::Reset() {
  selecting_ = false;
  all_selected_ = false;
  start_.Reset();
  end_.Reset();
  Repaint();
}

QString RichTextSelection::CopyContentSelection() {
  if (!owner_ || !start_.IsValid() || !end_.IsValid()) {
    TXLOG_NOTICE << "invalid selection state, skip copy";
    return QString();
  }
  if (end_ < start_) std::swap(start_, end_);
  return RichTextPlainTextWriter::Write(owner_->lines(), start_, end_);
}

QString RichTextSelection::TextAfterSelection() const {
  if (!owner_ || !HasContentSelection()) return QString();
  RichTextSelectPos const& last = end_ < start_ ? start_ : end_;
  return RichTextPlainTextWriter::Write(owner_->lines(), last, HitTester().LastPlace());
}

void RichTextSelection::OnMousePressed(QPoint const& pos, bool native) {
  if (!selectable_ || (native && !use_native_)) return;
  Reset();
  start_ = HitTester().SearchTheNearestPosOfMouse(pos);
  if (!start_.IsValid()) return;
  TXLOG_INFO << "selection is start in line:" << start_.line << ", block:" << start_.block
                             << ", index:" << start_.index;
  end_ = start_;
  if (native) selecting_ = true;
}

void RichTextSelection::OnMouseMove(QPoint const& pos, bool native) {
  if (!selectable_ || (native && (!use_native_ || !selecting_))) return;
  const RichTextSelectPos place = HitTester().SearchTheNearestPosOfMouse(pos);
  if (!place.IsValid() || place == end_) return;
  end_ = place;
  all_selected_ = false;
  Repaint();
}

void RichTextSelection::OnMouseRelease(QPoint const& pos, bool native) {
  if (!selectable_ || (native && !use_native_)) return;
  OnMouseMove(pos, native);
  selecting_ = false;
  const RichTextHitTester hit = HitTester();
  const RichTextSelectPos& first = start_ < end_ ? start_ : end_;
  const RichTextSelectPos& last = start_ < end_ ? end_ : start_;
  all_selected_ = first == hit.FirstPlace() && last == hit.LastPlace();
}

void RichTextSelection::OnMouseRightClick(QPoint const& pos, bool native) {
  if (native && !use_native_) return;
  if (end_ < start_) std::swap(start_, end_);
  const RichTextSelectPos place = HitTester().SearchTheNearestPosOfMouse(pos);
  if (place < start_ || end_ < place) {
    TXLOG_INFO << "right click position is not in the selection";
    ClearContentSelection();
  }
}

bool RichTextSelection::SelectWordAt(QPoint const& pos) {
  if (!selectable_ || !use_native_) return false;
  const RichTextHitTester hit = HitTester();
  const auto word = hit.WordAt(pos);
  if (!word.first.IsValid() || !word.second.IsValid()) return false;
  Reset();
  start_ = word.first;
  end_ = word.second;
  all_selected_ = start_ == hit.FirstPlace() && end_ == hit.LastPlace();
  Repaint();
  return true;
}

void RichTextSelection::OnEnter() {
  if (!selectable_ || !use_native_ || !selecting_) return;
  if (!(QApplication::mouseButtons() & Qt::LeftButton)) {
    TXLOG_INFO << "mouse enter, no left butten pressed, reset selecting mode";
    selecting_ = false;
    Repaint();
  }
}

void RichTextSelection::UpdateSelectionState(int kind, QPoint const& global_pos, bool is_down) {
  if (!selectable_ || !owner_) return;
  const QPoint pos = owner_->mapFromGlobal(global_pos);
  switch (kind) {
    case kStart:
      if (!start_.IsValid()) {
        TXLOG_INFO << "select start at:(" << pos.x() << "," << pos.y() << ")";
        OnMousePressed(pos, false);
      }
      break;
    case kMove:
      if (!start_.IsValid()) {
        // The drag came in from a neighbouring label.
        TXLOG_INFO << "select move without start pos, is direction down:" << is_down;
        const RichTextHitTester hit = HitTester();
        start_ = is_down ? hit.FirstPlace() : hit.LastPlace();
      }
      OnMouseMove(pos, false);
      break;
    case kRelease:
      OnMouseRelease(pos, false);
      break;
    default:
      break;
  }
}

void RichTextSelection::SelectContent(QPoint const& from, QPoint const& to, bool select_all) {
  if (!selectable_ || all_selected_ == select_all) return;
  selecting_ = false;
  all_selected_ = select_all;
  const RichTextHitTester hit = HitTester();
  if (!select_all) {
    start_ = hit.SearchTheNearestPosOfMouse(from);
    end_ = hit.SearchTheNearestPosOfMouse(to);
  } else if (start_ < end_) {
    start_ = hit.FirstPlace();
    end_ = hit.LastPlace();
  } else {
    start_ = hit.LastPlace();
    end_ = hit.FirstPlace();
  }
  Repaint();
}

RichTextHitTester RichTextSelection::HitTester() const {
  return RichTextHitTester(owner_->lines(), owner_->rect(), owner_->font());
}

void RichTextSelection::Repaint() {
  if (owner_) owner_->update();
}
