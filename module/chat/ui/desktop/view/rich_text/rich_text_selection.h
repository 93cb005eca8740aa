#pragma once

#include <QPoint>
#include <QString>

#include "chat/ui/desktop/view/rich_text/rich_text_hit_tester.h"
#include "chat/ui/desktop/view/rich_text/rich_text_select_pos.h"

class RichTextLabel;

// The text selection of one RichTextLabel: driven by the label's own mouse
// ("native" mode) or from outside, by a list selecting across labels.
class RichTextSelection {
 public:
  enum StateKind { kStart = 1, kMove = 2, kRelease = 3 };

  explicit RichTextSelection(RichTextLabel* owner) : owner_(owner) {}

  void SetContentSelectable(bool selectable, bool use_native, QString const& bg_color);
  bool selectable() const { return selectable_; }
  bool use_native() const { return use_native_; }
  bool selecting() const { return selecting_; }
  bool all_selected() const { return all_selected_; }
  QString const& select_bg_color() const { return select_bg_color_; }
  RichTextSelectPos const& start() const { return start_; }
  RichTextSelectPos const& end() const { return end_; }

  bool HasContentSelection() const { return start_.IsValid() && start_ != end_; }
  void ClearContentSelection();
  // Clears whatever state there is, selection or not (new layout).
  void Reset();
  QString CopyContentSelection();
  // The copyable text between the selection's end and the end of the label.
  QString TextAfterSelection() const;

  void OnMousePressed(QPoint const& pos, bool native);
  void OnMouseMove(QPoint const& pos, bool native);
  void OnMouseRelease(QPoint const& pos, bool native);
  void OnMouseRightClick(QPoint const& pos, bool native);
  // Selects the word under `pos` (native mode); false when nothing was.
  bool SelectWordAt(QPoint const& pos);
  // The pointer came back over the label; a drag whose button went up
  // elsewhere ends here.
  void OnEnter();
  void UpdateSelectionState(int kind, QPoint const& global_pos, bool is_down);
  void SelectContent(QPoint const& from, QPoint const& to, bool select_all);

 private:
  RichTextHitTester HitTester() const;
  void Repaint();

  RichTextLabel* owner_;
  bool selectable_ = false;
  bool use_native_ = false;
  QString select_bg_color_;
  bool selecting_ = false;
  bool all_selected_ = false;
  RichTextSelectPos start_;
  RichTextSelectPos end_;
};
