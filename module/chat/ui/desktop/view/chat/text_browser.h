#pragma once

#include <QColor>
#include <QString>
#include <QVariantMap>
#include <QWidget>

class RichTextLabel;

// The bubble's text: runs, links and drawn emoji in one rich text label. The
// list drives its selection; a click on a link opens it.
//
// A message too long for a bubble is shown shortened: its first
// kShownCharLimit characters (or first kShownParagraphLimit lines), a "..."
// and a "Show all" link that opens the whole message in a reader. Only what
// is shown is laid out, so arriving, resizing and repainting cost the same
// for a message of megabytes in any script. Copying still takes the whole
// message.
class TextBrowser : public QWidget {
  Q_OBJECT

 public:
  // About a screen of text in a bubble of the panel's usual width.
  static constexpr int kShownCharLimit = 1000;
  static constexpr int kShownParagraphLimit = 25;

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

  // The selected text, or the whole message when nothing is selected. A
  // selection of a shortened message that runs to the end of what is shown
  // takes the rest of the message with it.
  QString GetPlainText();
  QString const& plain_text() const { return plain_text_; }
  RichTextLabel* label() const { return label_; }

  bool IsShortened() const { return shortened_; }
  // How much of `plain_text()` the bubble shows.
  int shown_length() const { return shown_length_; }
  // Opens the whole message in a reader window (the "Show all" link).
  void OpenReader();

  // Opens a link; a bare host gets "https://".
  static void OnClickLinkText(QString const& text);

 signals:
  void ContextMenuRequested();

 private:
  RichTextLabel* label_ = nullptr;
  QString plain_text_;
  bool shortened_ = false;
  int shown_length_ = 0;
  int max_text_width_ = 200;
  QColor background_ = Qt::transparent;

 protected:
  void paintEvent(QPaintEvent* event) override;
};
