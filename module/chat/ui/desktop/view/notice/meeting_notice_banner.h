#pragma once

#include <QFrame>
#include <QString>
#include <memory>

#include "base/variant/variant.h"

class QLabel;
class QToolButton;

namespace framework {
class StatefulViewModel;
}

// The notice banner over the chat panel's messages: the notice's icon and
// title ("Updated" after a change), who published it and when, the notice
// cut to two lines, and a close button. The strip itself opens the notice,
// by mouse or, once focused, by Enter or Space.
class MeetingNoticeBanner : public QFrame {
  Q_OBJECT

 public:
  static constexpr int kMaxLines = 2;

  explicit MeetingNoticeBanner(QWidget* parent = nullptr);
  ~MeetingNoticeBanner() override;

  // The banner follows `view_model` (a MeetingNoticeBannerViewModel), which
  // it attaches now and detaches when it goes or another (or null) is bound.
  void Bind(std::shared_ptr<framework::StatefulViewModel> view_model);
  void SetBanner(Variant const& banner);

  QLabel* title_label() const { return title_; }
  QLabel* updated_label() const { return updated_; }
  QLabel* meta_label() const { return meta_; }
  QLabel* text_label() const { return text_; }
  QToolButton* close_button() const { return close_; }
  QString const& full_text() const { return full_text_; }
  // Who published the notice and when, before it is cut to the line.
  QString const& full_meta() const { return full_meta_; }

  // `text` cut to `lines` lines of `width` pixels in `font`, the last one
  // ending in an ellipsis when something was left out.
  static QString ElideToLines(QString const& text, QFont const& font, int width, int lines);

 signals:
  void OpenClicked();
  void CloseClicked();

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void UpdateText();

  QLabel* icon_ = nullptr;
  QLabel* title_ = nullptr;
  QLabel* updated_ = nullptr;
  QLabel* meta_ = nullptr;
  QLabel* text_ = nullptr;
  QToolButton* close_ = nullptr;
  QString full_text_;
  QString full_meta_;
  std::shared_ptr<framework::StatefulViewModel> view_model_;
};
