#pragma once

#include <QSize>
#include <QString>
#include <QTextEdit>
#include <QVariantMap>
#include <QVector>
#include <functional>

class QMimeData;
class QTextCursor;

// One piece of a rich edit's content, in document order: a run of text (line
// breaks as "\n") or an inline image with the data it was inserted with.
struct RichEditItem {
  enum Kind { kText, kImage };
  Kind kind = kText;
  QString text;
  QString image_path;
  QVariantMap image_data;
};

// A text edit that holds text and inline images. Every inserted image keeps
// the map it was inserted with in its format's property kImageDataProperty,
// so that an owner can read the content back as pieces to send.
class RichEdit : public QTextEdit {
  Q_OBJECT

 public:
  static constexpr int kImageDataProperty = 0x100001;
  // Images larger than this are shown scaled down, keeping their aspect.
  static constexpr int kMaxImageExtent = 160;
  // Larger pictures are not inserted at all.
  static constexpr qint64 kMaxImagePixels = 100'000'000;

  // Gets the mime data of a paste or a drop before the edit does; true when
  // the owner took it.
  using PasteHandler = std::function<bool(QMimeData const* mime)>;

  explicit RichEdit(QWidget* parent = nullptr);

  // Inserts at the cursor; "\n" starts a new paragraph.
  void InsertText(QString const& text);
  void InsertText(QTextCursor& cursor, QString const& text);
  // Inserts the picture at `path` at the cursor, at `size`, or at its natural
  // size (within kMaxImageExtent) when `size` is empty. False when the file
  // is missing or is no picture: nothing is inserted then.
  bool InsertImage(QString const& path, QSize const& size, QVariantMap const& data);
  bool InsertImage(QTextCursor& cursor, QString const& path, QSize const& size, QVariantMap const& data);

  // Where pictures pasted as raw image data are written before they are
  // inserted.
  void SetTempPath(QString const& path) { temp_path_ = path; }
  QString const& TempPath() const { return temp_path_; }
  // Writes `image` as a PNG file under the temporary path; "" on failure.
  QString SaveImageToTempPath(QImage const& image) const;

  // The content, with adjacent text merged and paragraphs joined by "\n".
  QVector<RichEditItem> Items() const;
  bool IsEmpty() const;

  // Plain text (an image gives the "text" of its data, if any), HTML with
  // local image sources, and nothing else, for a range of the document given
  // as block numbers and positions inside those blocks.
  QMimeData* GetSelectionMimeDataByTextBlock(int selection_start_block, int selection_end_block,
                                             int selection_start_position, int selection_end_position) const;

  void SetPasteHandler(PasteHandler handler) { paste_handler_ = std::move(handler); }

 protected:
  bool canInsertFromMimeData(QMimeData const* source) const override;
  void insertFromMimeData(QMimeData const* source) override;
  QMimeData* createMimeDataFromSelection() const override;

 private:
  QString temp_path_;
  PasteHandler paste_handler_;
};
