#pragma once

#include <QColor>
#include <QString>
#include <QVariantMap>
#include <QWidget>

class RichTextLabel;

// The bubble's text: runs, links and drawn emoji in one rich text label. The
// list drives its selection; a click on a link opens it.
class TextBrowser : public QWidget {
  Q_OBJECT

 public:
  explicit TextBrowser(QWidget* parent = nullptr);

  // Entries: {"text"} plain, {"text", "link", "link_color"} links,
  // {"emoji", "path", "title", "face_type", "index"} emoji.
  void SetContent(QList<QVariantMap> const& entries, bool is_self);
  // Lays the same content out for another width.
  void SetMaxTextWidth(int width);
  void Clear();
  // The bubble's colour, drawn with rounded corners behind the text.
  void SetBackground(QColor const& color);
  QColor const& background() const { return background_; }

  // The selected text, or the whole message when nothing is selected.
  QString GetPlainText();
  QString const& plain_text() const { return plain_text_; }
  RichTextLabel* label() const { return label_; }

  // Opens a link; a bare host gets "https://".
  static void OnClickLinkText(QString const& text);

 signals:
  void ContextMenuRequested();

 private:
  RichTextLabel* label_ = nullptr;
  QString plain_text_;
  int max_text_width_ = 200;
  QColor background_ = Qt::transparent;

 protected:
  void paintEvent(QPaintEvent* event) override;
};
