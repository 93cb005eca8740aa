#include "chat/ui/desktop/view/chat/long_text_reader.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextCursor>
#include <QTextDocument>
#include <QTimer>
#include <QVBoxLayout>

LongTextReader::LongTextReader(QString text, QWidget* parent) : QDialog(parent), text_(std::move(text)) {
  setObjectName("LongTextReader");
  setWindowTitle(tr("Message"));
  setAccessibleName(tr("Whole message"));
  resize(560, 480);

  auto* layout = new QVBoxLayout(this);
  view_ = new QPlainTextEdit(this);
  view_->setObjectName("LongTextReader#text");
  view_->setAccessibleName(tr("Message text"));
  view_->setReadOnly(true);
  view_->setUndoRedoEnabled(false);
  view_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  layout->addWidget(view_, 1);

  auto* buttons = new QDialogButtonBox(this);
  copy_button_ = buttons->addButton(tr("Copy all"), QDialogButtonBox::ActionRole);
  copy_button_->setObjectName("LongTextReader#copy");
  copy_button_->setAutoDefault(false);
  QPushButton* close = buttons->addButton(QDialogButtonBox::Close);
  close->setObjectName("LongTextReader#close");
  connect(copy_button_, &QPushButton::clicked, this, &LongTextReader::CopyAll);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(buttons);

  FillSlice();
}

void LongTextReader::CopyAll() {
  QApplication::clipboard()->setText(text_);
}

int LongTextReader::PieceEnd(int from, int* next) const {
  const int limit = qMin(from + kPieceLength, text_.size());
  const int line_end = text_.indexOf(QLatin1Char('\n'), from);
  if (line_end >= 0 && line_end < limit) {
    *next = line_end + 1;
    return line_end;
  }
  if (limit == text_.size()) {
    *next = limit;
    return limit;
  }
  // A paragraph too long for one piece: cut after a space in its second
  // half, else between characters (never inside a surrogate pair or before a
  // combining mark).
  const int space = text_.lastIndexOf(QLatin1Char(' '), limit - 1);
  int cut = space > from + kPieceLength / 2 ? space + 1 : limit;
  while (cut > from + 1 && (text_[cut].isLowSurrogate() || text_[cut].isMark())) --cut;
  *next = cut;
  return cut;
}

void LongTextReader::FillSlice() {
  if (IsFilled()) return;
  QTextCursor cursor(view_->document());
  cursor.movePosition(QTextCursor::End);
  cursor.beginEditBlock();
  const int slice_end = next_ + kSliceLength;
  while (next_ < text_.size() && next_ < slice_end) {
    int next = next_;
    const int end = PieceEnd(next_, &next);
    if (!first_piece_) cursor.insertBlock();
    first_piece_ = false;
    cursor.insertText(text_.mid(next_, end - next_));
    next_ = next;
  }
  // A message ending in a line break ends in an empty paragraph.
  if (IsFilled() && text_.endsWith(QLatin1Char('\n'))) cursor.insertBlock();
  cursor.endEditBlock();
  if (!IsFilled()) QTimer::singleShot(0, this, &LongTextReader::FillSlice);
}
