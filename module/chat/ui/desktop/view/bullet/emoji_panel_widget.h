#pragma once

#include <QString>
#include <vector>

#include "base/variant/variant.h"
#include "uikit/reuse/qf_widget.h"

class QGridLayout;
class QToolButton;

// A grid of the meeting's faces to pick one from: by mouse, or by keyboard
// (arrows move, Enter or Space picks, Escape closes). Used by the floating
// chat's emoji button; the panel input can host it the same way.
class EmojiPanelWidget : public QFWidget {
  Q_OBJECT

 public:
  static constexpr int kColumns = 8;
  static constexpr int kCell = 32;

  explicit EmojiPanelWidget(QWidget* parent = nullptr);
  // An array of {index, face_type, path}; anything else empties the grid.
  void SetFaces(Variant const& faces);
  int face_count() const { return static_cast<int>(buttons_.size()); }
  QToolButton* button(int i) const { return buttons_.at(static_cast<size_t>(i)); }
  int current() const { return current_; }

 signals:
  void EmojiChosen(int index, QString const& face_type);
  void VisibilityChanged(bool visible);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void Focus(int i);

  QGridLayout* grid_ = nullptr;
  std::vector<QToolButton*> buttons_;
  std::vector<std::pair<int, QString>> faces_;
  int current_ = 0;
};
