#pragma once

#include <QPointer>
#include <QPropertyAnimation>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "base/timer/tx_timer.h"
#include "base/variant/variant.h"
#include "chat/ui/desktop/view/rich_text/rich_text_block.h"
#include "uikit/reuse/qf_widget.h"

class QLabel;
class RichTextLabel;

// One floating message as the overlay needs it.
class IBulletItemWidget {
 public:
  virtual ~IBulletItemWidget() = default;
  // Starts the item's life: a slide-in for an animated tip, then, after five
  // seconds, an 800 ms fade, after which the item deletes itself.
  virtual void StartDisappear(bool start) = 0;
  virtual void UpdateItem(Variant const& record) = 0;
  // The record the item shows; false when it has none.
  virtual bool GetMessage(Variant* record) const = 0;
};

// One floating message: a dark translucent bubble with its sender line, its
// content (text, emoji pictures, a red packet, a notice, a welcome, a banner)
// and a tail line. Built by BulletItemWidgetBuilder from a bullet record.
class BulletItemWidget : public QFWidget, public IBulletItemWidget {
  Q_OBJECT

 public:
  // What the item shows: the record's `msg_type`, or a notice or a banner.
  enum Kind : int {
    kKindNormal = 0,
    kKindRedPacket = 3,
    kKindEmoji = 5,
    kKindWelcome = 6,
    kKindAnimatable = 7,
    kKindNotice = 8,
    kKindBanner = 9,
  };
  static constexpr int kTextWidth = 260;
  static constexpr int kBannerTextWidth = 245;
  static constexpr int kLifeMs = 5000;
  static constexpr int kFadeMs = 800;
  static constexpr int kEmojiSize = 20;

  BulletItemWidget(QWidget* parent, int kind);
  ~BulletItemWidget() override;

  void StartDisappear(bool start) override;
  void UpdateItem(Variant const& record) override;
  bool GetMessage(Variant* record) const override;
  void SetWidgetVariant(Variant record) { record_ = std::move(record); }
  // The sender and the recall text in place of the content.
  void UpdateRecallMsg(Variant const& record);

  int kind() const { return kind_; }
  RichTextLabel* label() const { return rich_text_label_; }
  // What the item reads, its pictures as their texts.
  QString PlainText() const;
  bool disappearing() const { return fade_ != nullptr; }
  QPropertyAnimation* fade_animation() const { return fade_; }
  QPropertyAnimation* slide_animation() const { return slide_; }

  void SetClickCallback(std::function<void(BulletItemWidget*)> callback) { on_click_ = std::move(callback); }
  void SetHoverCallbacks(std::function<void(BulletItemWidget*)> enter, std::function<void(BulletItemWidget*)> leave) {
    on_enter_ = std::move(enter);
    on_leave_ = std::move(leave);
  }

  // The content builders, one a kind; false when the record gives nothing.
  bool CreateNormalText(Variant const& record);
  bool CreateNoticeText(Variant const& record);
  bool CreateRedPacketText(Variant const& record);
  bool CreateEmoji(Variant const& record);
  bool CreateWelcomeText(Variant const& record);
  bool CreateAnimatableText(Variant const& record);
  bool CreateBannerText(Variant const& record);

  // The emoji picture of a path, 20 device pixels high at the window's
  // ratio, kept for the process.
  static QPixmap EmojiPixmap(QString const& path, qreal device_pixel_ratio);
  static size_t emoji_cache_size();

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;
  void enterEvent(QEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  void AddTitle(QString const& text, QString const& color = QString(), bool bold = true);
  void AddContent(QString const& text, QString const& color = QString(), bool bold = false);
  void AddPicture(QPixmap const& picture, QString const& alt, int margin_right = 0);
  void AddBreak();
  void CreateTail(Variant const& record);
  // Lays the runs out and sizes the item: the label plus the padding.
  void Finish(int width, int max_lines = 0, QSize extra = QSize());
  void DisappearAnimation();

  int kind_;
  std::optional<Variant> record_;
  RichTextLabel* rich_text_label_ = nullptr;
  QLabel* arrow_label_ = nullptr;
  std::vector<RichTextBlock> blocks_;
  std::string tail_text_;
  int animate_time_ms_ = 1000;
  std::unique_ptr<talvex_common::utils::timer::TXTimer> life_timer_;
  QPointer<QPropertyAnimation> slide_;
  QPointer<QPropertyAnimation> fade_;
  std::function<void(BulletItemWidget*)> on_click_;
  std::function<void(BulletItemWidget*)> on_enter_;
  std::function<void(BulletItemWidget*)> on_leave_;
};

class BulletItemWidgetBuilder {
 public:
  // The item for a bullet record, or null (with a log line) when the record
  // gives none: a red-packet receipt (`msg_type` 4) or an unknown type.
  static BulletItemWidget* Create(QWidget* parent, Variant const* record);
};
