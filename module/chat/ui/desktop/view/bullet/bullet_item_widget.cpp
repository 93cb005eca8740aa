#include "chat/ui/desktop/view/bullet/bullet_item_widget.h"

#include <QGraphicsOpacityEffect>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPropertyAnimation>
#include <QWindow>
#include <cmath>
#include <map>

#include "base/log/log.h"
#include "chat/ui/desktop/view/rich_text/rich_text_label.h"
#include "chat/viewmodel/in_meeting_bullet_view_model.h"
#include "framework/resource/resource.h"
#include "framework/viewmodel/view_model.h"
#include "uikit/tx_qt_ui_util.h"

namespace {

// The overlay's theme: sender lines, content, and the tail under a message.
constexpr char kTitleColor[] = "#9CCBFF";
constexpr char kContentColor[] = "#FFFFFF";
constexpr char kTailColor[] = "#C8CACC";
constexpr char kWelcomeColor[] = "#FF9326";
constexpr char kRedPacketColor[] = "#FF5E4D";
constexpr char kBannerTitleColor[] = "#FFDC88";
constexpr char kNoticeLinkColor[] = "#FFDC88";
constexpr int kRunHeight = 20;
constexpr int kFontSize = 12;
constexpr int kPaddingX = 12;  // the layout's margins, 6 on each side
constexpr int kPaddingY = 8;

// The payload keys of the view model's tips.
using Keys = chat::InMeetingBulletViewModel;
constexpr auto& kWelcomeTitle = Keys::kWelcomeTitle;
constexpr auto& kWelcomeContent = Keys::kWelcomeContent;
constexpr auto& kWelcomeBell = Keys::kWelcomeBell;
constexpr auto& kAnimatableNickname = Keys::kAnimatableNickname;
constexpr auto& kAnimatableRole = Keys::kAnimatableRole;
constexpr auto& kAnimatableColor = Keys::kAnimatableColor;
constexpr auto& kAnimatableTip = Keys::kAnimatableTip;
constexpr auto& kAnimatableTime = Keys::kAnimatableTime;

QString Q(std::string const& text) { return QString::fromStdString(text); }
QString Text(char const* name) {
  return Q(framework::Resource::GetInstance()->GetString(framework::NameId(name)));
}

std::map<QString, QPixmap>& EmojiCache() {
  static std::map<QString, QPixmap> cache;
  return cache;
}

}  // namespace

BulletItemWidget::BulletItemWidget(QWidget* parent, int kind) : QFWidget(parent), kind_(kind) {
  setObjectName("BulletItemWidget");
  setStyleSheet("#BulletItemWidget{background-color: rgba(43, 46, 51, 0.6); font-size: 12px; border-radius: 4px;}");
  auto* layout = new QHBoxLayout(this);
  layout->setSpacing(0);
  layout->setContentsMargins(6, 0, 6, 0);
  rich_text_label_ = new RichTextLabel(this);
  rich_text_label_->setStyleSheet("background:transparent");
  layout->addWidget(rich_text_label_);
  setCursor(Qt::PointingHandCursor);
}

BulletItemWidget::~BulletItemWidget() {
  // The animations are children and go with the item; the life timer too.
  life_timer_.reset();
}

bool BulletItemWidget::GetMessage(Variant* record) const {
  if (!record_ || !record) return false;
  *record = *record_;
  return true;
}

void BulletItemWidget::UpdateItem(Variant const& record) {
  if (record.IsMap()) setAccessibleName(PlainText());
}

QString BulletItemWidget::PlainText() const {
  QString text;
  for (auto const& block : blocks_) {
    if (block.type == RichTextBlock::kText && block.text) text += block.text->content;
    if (block.type == RichTextBlock::kImage && block.pixmap) text += block.pixmap->alt_text;
    if (block.type == RichTextBlock::kLineBreak) text += '\n';
  }
  return text;
}

// --- runs -------------------------------------------------------------------------

void BulletItemWidget::AddTitle(QString const& text, QString const& color, bool bold) {
  if (text.isEmpty()) return;
  RichTextBlock block = RichTextBlock::Text(text, kFontSize, color.isEmpty() ? kTitleColor : color);
  block.text->bold = bold;
  block.margins = QMargins(0, 0, 6, 0);
  blocks_.push_back(std::move(block));
}

void BulletItemWidget::AddContent(QString const& text, QString const& color, bool bold) {
  if (text.isEmpty()) return;
  RichTextBlock block = RichTextBlock::Text(text, kFontSize, color.isEmpty() ? kContentColor : color);
  block.text->bold = bold;
  block.text->max_lines = -1;  // content wraps over as many lines as it needs
  blocks_.push_back(std::move(block));
}

void BulletItemWidget::AddPicture(QPixmap const& picture, QString const& alt, int margin_right) {
  if (picture.isNull()) {
    AddContent(alt);
    return;
  }
  const QSize size(kEmojiSize, kEmojiSize);
  RichTextBlock block(picture, QMargins(0, 0, margin_right, 0), size);
  block.pixmap->alt_text = alt;
  blocks_.push_back(std::move(block));
}

void BulletItemWidget::AddBreak() { blocks_.emplace_back(RichTextBlock::kLineBreak); }

QPixmap BulletItemWidget::EmojiPixmap(QString const& path, qreal device_pixel_ratio) {
  const qreal ratio = std::max<qreal>(1.0, std::ceil(device_pixel_ratio));
  const QString key = path + '@' + QString::number(ratio);
  auto& cache = EmojiCache();
  auto it = cache.find(key);
  if (it != cache.end()) return it->second;
  QPixmap source = TXQtUiUtil::GetHdpiImage(path, ratio);
  if (source.isNull()) source.load(path);
  QPixmap scaled;
  if (!source.isNull()) {
    const int side = static_cast<int>(kEmojiSize * ratio);
    scaled = source.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    scaled.setDevicePixelRatio(ratio);
  }
  cache.emplace(key, scaled);
  return scaled;
}

size_t BulletItemWidget::emoji_cache_size() { return EmojiCache().size(); }

void BulletItemWidget::CreateTail(Variant const& record) {
  if (!record.Has("msg_type")) {
    TXLOG_ERROR << "invalid msg type";
    return;
  }
  if (!record.Has("chat_tips")) {
    TXLOG_INFO << "do not have tail msg content";
    return;
  }
  tail_text_ = record.GetString("chat_tips");
  if (tail_text_.empty()) return;
  AddBreak();
  QPixmap rule(kTextWidth, 1);
  rule.fill(QColor(235, 237, 242, 26));
  RichTextBlock line(rule, QMargins(0, 4, 0, 4), QSize(kTextWidth, 1));
  blocks_.push_back(std::move(line));
  AddBreak();
  AddContent(Q(tail_text_), kTailColor, false);
}

void BulletItemWidget::Finish(int width, int max_lines, QSize extra) {
  rich_text_label_->SetRichText(blocks_, width, max_lines);
  const QSize label = rich_text_label_->size();
  setFixedSize(label.width() + kPaddingX + extra.width(), std::max(label.height(), kRunHeight) + kPaddingY +
                                                               extra.height());
  setAccessibleName(PlainText());
}

// --- content by kind ----------------------------------------------------------------

bool BulletItemWidget::CreateNormalText(Variant const& record) {
  const int msg_type = record.GetInt32("msg_type", -1);
  const bool own = record.GetBoolean("from_self");
  QString sender;
  if (record.GetInt32("update_type") == 1) {
    sender = Q(record.GetString("msg_sender"));
  } else if (msg_type == 2 && own) {
    sender = Q(record.GetString("you_label") + record.GetString("private_chat_label") +
               record.GetString("msg_receiver") + ":");
  } else if (msg_type == 2) {
    sender = Q(record.GetString("msg_receiver") + record.GetString("private_chat_label") +
               record.GetString("you_label") + ":");
  } else if (!record.GetString("msg_receiver").empty()) {
    sender = Q(record.GetString("msg_sender") + " " + record.GetString("msg_receiver") + " :");
  } else {
    sender = Q(record.GetString("msg_sender") + ":");
  }
  if (sender != ":") AddTitle(sender);
  Variant const& items = record.Get("msg_content_ex_list");
  const bool private_incoming = msg_type == 2 && !own;
  if (items.IsArray() && !private_incoming) {
    const qreal ratio = window() && window()->windowHandle() ? window()->windowHandle()->devicePixelRatio()
                                                              : devicePixelRatioF();
    for (auto const& item : items.AsArray()) {
      if (item.GetInt32("item_type", -1) == 1) {
        AddPicture(EmojiPixmap(Q(item.GetString("item_emoji_path")), ratio), Q(item.GetString("item_emoji_text")));
      } else {
        AddContent(Q(item.GetString("item_content")));
      }
    }
  } else {
    const std::string content = record.GetString("msg_content");
    if (content.empty()) TXLOG_WARN << "invalid msg content, " << framework::VariantToString(&record);
    AddContent(Q(content));
  }
  CreateTail(record);
  Finish(kTextWidth);
  return true;
}

bool BulletItemWidget::CreateEmoji(Variant const& record) {
  const int index = record.GetInt32("face_elem_index", -1);
  if (index < 0) {
    TXLOG_ERROR << "the emoji idx is " << index;
    return false;
  }
  AddTitle(Q(record.GetString("msg_sender") + ":"));
  const qreal ratio = devicePixelRatioF();
  AddPicture(EmojiPixmap(Q(record.GetString("bullet_image_path")), ratio), Q(record.GetString("face_elem_buf")));
  CreateTail(record);
  Finish(kTextWidth);
  return true;
}

bool BulletItemWidget::CreateNoticeText(Variant const& record) {
  AddTitle(Text("chat.bullet.notice.prefix"));
  AddContent(Q(record.GetString("msg_sender")) + " " + Text("chat.bullet.notice.word"));
  AddContent(" " + Text("chat.bullet.notice.view"), kNoticeLinkColor);
  CreateTail(record);
  Finish(kTextWidth);
  return true;
}

bool BulletItemWidget::CreateWelcomeText(Variant const& record) {
  AddContent(Q(record.GetString(kWelcomeTitle)), kWelcomeColor, true);
  const std::string content = record.GetString(kWelcomeContent);
  if (!content.empty()) {
    AddBreak();
    AddContent(Q(content));
  }
  if (record.GetBoolean(kWelcomeBell)) TXLOG_INFO << "show bell";
  Finish(kTextWidth);
  return true;
}

bool BulletItemWidget::CreateAnimatableText(Variant const& record) {
  const std::string role = record.GetString(kAnimatableRole);
  if (!role.empty()) AddContent(Q(role) + " ", Q(record.GetString(kAnimatableColor, kContentColor)), true);
  AddContent(Q(record.GetString(kAnimatableNickname) + " " + record.GetString(kAnimatableTip)));
  rich_text_label_->SetRichText(blocks_, kTextWidth, 0);
  setFixedSize(rich_text_label_->size() + QSize(12, 4));
  animate_time_ms_ = static_cast<int>(record.GetInteger(kAnimatableTime, 1) * 1000);
  setAccessibleName(PlainText());
  return true;
}

bool BulletItemWidget::CreateRedPacketText(Variant const& record) {
  AddPicture(TXQtUiUtil::GetHdpiImage(":/images/chat/icon_msg_red_packet", devicePixelRatioF()), "", 6);
  AddTitle(Q(record.GetString("msg_sender")), kContentColor, true);
  AddContent(Q(record.GetString("desc_send")) + " ");
  AddContent(Q(record.GetString("desc_redpacket")), kRedPacketColor, false);
  AddContent(" " + Q(record.GetString("desc_usemobile")));
  Finish(kTextWidth);
  return true;
}

bool BulletItemWidget::CreateBannerText(Variant const& record) {
  AddContent(Q(record.GetString("notify_title")), kBannerTitleColor, true);
  AddBreak();
  AddContent(Q(record.GetString("notify_content")));
  Finish(kBannerTextWidth, 3, QSize(12, 0));
  arrow_label_ = new QLabel(this);
  arrow_label_->setFixedWidth(12);
  arrow_label_->setPixmap(TXQtUiUtil::GetHdpiImage(":/images/chat/im_icon_bullet_arrow", devicePixelRatioF()));
  arrow_label_->setScaledContents(true);
  arrow_label_->setFixedSize(12, 12);
  arrow_label_->move(width() - 16, height() - 21);
  return true;
}

void BulletItemWidget::UpdateRecallMsg(Variant const& record) {
  if (!record.Has("msg_content")) {
    TXLOG_ERROR << "invalid msg content";
    return;
  }
  blocks_.clear();
  AddTitle(Q(record.GetString("msg_sender")));
  AddContent(Q(record.GetString("msg_content")));
  Finish(kTextWidth);
}

// --- life -------------------------------------------------------------------------

void BulletItemWidget::StartDisappear(bool start) {
  if (!start) return;
  if (kind_ == kKindAnimatable) {
    slide_ = new QPropertyAnimation(this, "pos", this);
    slide_->setDuration(animate_time_ms_);
    slide_->setStartValue(QPoint(-width(), y()));
    slide_->setEndValue(pos());
    slide_->start(QAbstractAnimation::DeleteWhenStopped);
  }
  life_timer_ = talvex_common::utils::timer::CreateTimer([this] { DisappearAnimation(); });
  life_timer_->Start(kLifeMs, 0);
}

void BulletItemWidget::DisappearAnimation() {
  if (fade_) return;
  auto* effect = new QGraphicsOpacityEffect(this);
  effect->setOpacity(1.0);
  setGraphicsEffect(effect);
  fade_ = new QPropertyAnimation(effect, "opacity", this);
  fade_->setDuration(kFadeMs);
  fade_->setStartValue(1.0);
  fade_->setEndValue(0.0);
  connect(fade_, &QPropertyAnimation::finished, this, &QObject::deleteLater);
  fade_->start();
}

// --- input ------------------------------------------------------------------------

void BulletItemWidget::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && rect().contains(event->pos()) && on_click_) on_click_(this);
  QFWidget::mouseReleaseEvent(event);
}

void BulletItemWidget::enterEvent(QEvent* event) {
  if (on_enter_) on_enter_(this);
  QFWidget::enterEvent(event);
}

void BulletItemWidget::leaveEvent(QEvent* event) {
  if (on_leave_) on_leave_(this);
  QFWidget::leaveEvent(event);
}

// --- builder -------------------------------------------------------------------------

BulletItemWidget* BulletItemWidgetBuilder::Create(QWidget* parent, Variant const* record) {
  if (!record || !record->IsMap()) {
    TXLOG_ERROR << "failed to create item with no param";
    return nullptr;
  }
  const int msg_type = record->GetInt32("msg_type", -1);
  const int chat_type = record->GetInt32("chat_type", -1);
  BulletItemWidget* item = nullptr;
  auto build = [&](int kind, bool (BulletItemWidget::*create)(Variant const&)) {
    auto* made = new BulletItemWidget(parent, kind);
    if ((made->*create)(*record)) return made;
    delete made;
    return static_cast<BulletItemWidget*>(nullptr);
  };
  if (record->GetInt32("update_type", -1) == 6) {
    item = build(BulletItemWidget::kKindBanner, &BulletItemWidget::CreateBannerText);
  } else if ((msg_type == 0 || msg_type == 2) && chat_type == 6) {
    item = build(BulletItemWidget::kKindNotice, &BulletItemWidget::CreateNoticeText);
  } else if (msg_type == 0 || msg_type == 2) {
    item = build(BulletItemWidget::kKindNormal, &BulletItemWidget::CreateNormalText);
  } else if (msg_type == 3) {
    item = build(BulletItemWidget::kKindRedPacket, &BulletItemWidget::CreateRedPacketText);
  } else if (msg_type == 5) {
    item = build(BulletItemWidget::kKindEmoji, &BulletItemWidget::CreateEmoji);
  } else if (msg_type == 6) {
    item = build(BulletItemWidget::kKindWelcome, &BulletItemWidget::CreateWelcomeText);
  } else if (msg_type == 7) {
    item = build(BulletItemWidget::kKindAnimatable, &BulletItemWidget::CreateAnimatableText);
  }
  if (!item) TXLOG_ERROR << "failed to create item for msg_type; " << msg_type;
  return item;
}
