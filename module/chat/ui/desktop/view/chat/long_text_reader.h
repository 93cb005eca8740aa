#pragma once

#include <QDialog>
#include <QString>

class QPlainTextEdit;
class QPushButton;

// A window showing the whole of a message too long for its bubble.
//
// The text goes into the view a slice at a time from the event loop, so that
// opening a message of megabytes never holds the window; a paragraph longer
// than kPieceLength is shown in pieces of about that length (at a space where
// there is one), because the view lays a paragraph out whole. "Copy all" puts
// the message on the clipboard exactly as it arrived.
class LongTextReader : public QDialog {
  Q_OBJECT

 public:
  static constexpr int kPieceLength = 2000;
  // Characters put into the view per turn of the event loop.
  static constexpr int kSliceLength = 64 * 1024;

  explicit LongTextReader(QString text, QWidget* parent = nullptr);

  QString const& text() const { return text_; }
  // True once the whole message is in the view.
  bool IsFilled() const { return next_ >= text_.size(); }
  QPlainTextEdit* view() const { return view_; }
  void CopyAll();

 private:
  void FillSlice();
  // The end of the piece that starts at `from`, and where the next begins.
  int PieceEnd(int from, int* next) const;

  QString text_;
  int next_ = 0;
  bool first_piece_ = true;
  QPlainTextEdit* view_ = nullptr;
  QPushButton* copy_button_ = nullptr;
};
