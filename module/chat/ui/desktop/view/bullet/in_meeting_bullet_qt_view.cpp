#include "chat/ui/desktop/view/bullet/in_meeting_bullet_qt_view.h"

#include "chat/ui/desktop/view/private_chat/chat_member_select_view.h"
#include "chat/viewmodel/chat_receiver_view_model.h"
#include "chat/viewmodel/private_chat_members_view_model.h"

#include <QApplication>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMouseEvent>
#include <QParallelAnimationGroup>
#include <QPropertyAnimation>
#include <QToolTip>
#include <QVBoxLayout>
#include <algorithm>

#include "base/log/log.h"
#include "chat/ui/desktop/view/bullet/bullet_item_widget.h"
#include "chat/ui/desktop/view/bullet/chat_item_bar.h"
#include "chat/ui/desktop/view/bullet/emoji_panel_widget.h"
#include "chat/viewmodel/chat_emoji_panel_view_model.h"
#include "chat/viewmodel/in_meeting_bullet_view_model.h"
#include "framework/meeting/meeting_context.h"
#include "framework/navigation/routing.h"
#include "framework/viewmodel/stateful_view_model.h"
#include "uikit/qt_ui_monitor_helper.h"
#include "uikit/tx_qt_ui_util.h"
#include "uikit/widget/circle_dot.h"
#include "uikit/widget/qf_image_push_button.h"
#include "uikit/widget/qf_layout_widget.h"

namespace QtView {

namespace {
using VM = chat::InMeetingBulletViewModel;
constexpr uint32_t kPropPicInPicShow = framework::NameId("PicInPicShow");
constexpr uint32_t kPropPicInPicTips = framework::NameId("PicInPicTips");
constexpr uint32_t kPropChatPanelState = framework::NameId("ChatPanelState");
constexpr char kMeetingPage[] = "talvex://page/inmeeting";
constexpr int kBarMargin = 8;
constexpr int kLeftMargin = 12;

void Transparent(QWidget* widget) {
  widget->setAttribute(Qt::WA_TranslucentBackground);
  widget->setStyleSheet(QStringLiteral("background: transparent;"));
}
}  // namespace

InMeetingBulletQTView::InMeetingBulletQTView() = default;

InMeetingBulletQTView::~InMeetingBulletQTView() {
  qApp->removeEventFilter(this);
  if (receiver_model_) receiver_model_->DidDetached();
  if (member_select_) member_select_->close();
}

void InMeetingBulletQTView::ShowMemberSelect() {
  if (!chat_bar_) return;
  if (member_select_ && member_select_->isVisible()) {
    member_select_->close();
    return;
  }
  // From the floating chat: the list keeps immersive mode away while open.
  member_select_ = new QtView::ChatMemberSelectView(chat::PrivateChatMembersViewModel::kSourceBullet, chat_bar_);
  member_select_->PopupAbove(chat_bar_->receiver_button()->mapToGlobal(QPoint(0, -4)));
}

std::vector<BulletItemWidget*> InMeetingBulletQTView::items() const {
  std::vector<BulletItemWidget*> out;
  for (auto const& item : bullet_items_) {
    if (item) out.push_back(item.data());
  }
  return out;
}

bool InMeetingBulletQTView::flashing() const {
  return flash_ && flash_->state() == QAbstractAnimation::Running;
}

void InMeetingBulletQTView::Dispatch(uint32_t action, Variant const& params) {
  if (auto const& vm = view_model()) vm->Handle(action, &params);
}

// --- building -----------------------------------------------------------------------

QWidget* InMeetingBulletQTView::BuildFrame(QWidget* parent, Variant* params) {
  is_screen_share_emoji_ = params && params->IsMap() && params->GetBoolean("screen_share_emoji");
  is_screen_share_window_ = is_screen_share_emoji_;
  frame_ = new QFLayoutWidget(parent);  // a QPointer<QWidget>: it is read while the frame goes
  frame_->setObjectName("EmojiFloatWndWidget-InMeeting");
  frame_->setWindowTitle("EmojiFloatWnd");
  Transparent(frame_);
  // A frame that goes with its parent takes the view's filters with it.
  QObject::connect(static_cast<QFLayoutWidget*>(frame_.data()), &QFLayoutWidget::AboutToBeDestroyed, this,
                   [this] { ReleaseFilters(); });
  InitFrameFlags();

  container_ = new QFWidget(is_screen_share_window_ && parent ? parent : frame_.data());
  container_->setObjectName("DanmuContainer");
  Transparent(container_);
  if (is_screen_share_window_) {
    container_->setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
    TXQtUiUtil::SetupTopMost(container_);
  }
  tip_line_ = new QFWidget(container_);
  tip_line_->setObjectName("ComingBulletContainer");
  tip_line_->setFixedHeight(kTipLineHeight);
  tip_line_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  Transparent(tip_line_);
  tip_line_->hide();
  item_area_ = new QFWidget(container_);
  item_area_->setObjectName("BulletContainer");
  Transparent(item_area_);
  if (is_screen_share_window_) {
    window_layout_ = new QVBoxLayout(item_area_);
    window_layout_->setContentsMargins(12, 0, 0, 0);
    window_layout_->setSpacing(kItemSpacing);
    window_layout_->setAlignment(Qt::AlignBottom | Qt::AlignLeft);
  }

  chat_bar_ = new ChatItemBar(frame_);
  chat_bar_->on_send = [this](QString const& text) {
    Dispatch(VM::kActionSendMsg, Variant::Map{{"msg_text", text.toStdString()}});
  };
  chat_bar_->on_text_changed = [this](QString const& text) {
    Dispatch(VM::kActionCacheUnsendMessage, Variant::Map{{VM::kUnsendText, text.toStdString()}});
  };
  chat_bar_->on_toggle_fold = [this] { Dispatch(VM::kActionToggleBullet); };
  chat_bar_->on_text_click = [this] {
    Dispatch(VM::kActionQuickReplyTextClick);
    chat_bar_->ExpandChatBar(true);
    if (chat_bar_->is_expanded()) chat_bar_->edit()->setFocus();
    Relayout();
  };
  chat_bar_->on_emoji_click = [this] { Dispatch(VM::kActionQuickReplyEmojiClick); };
  chat_bar_->on_receiver_click = [this] { ShowMemberSelect(); };
  receiver_model_ = std::make_shared<chat::ChatReceiverViewModel>();
  receiver_model_->BindProp(chat::ChatReceiverViewModel::kPropReceiver, [bar = QPointer<ChatItemBar>(chat_bar_)](
                                                                             Variant const* receiver, Variant const*) {
    if (bar && receiver && receiver->IsMap()) {
      bar->SetReceiver(QString::fromStdString(receiver->GetString("receiver_name")),
                       receiver->GetBoolean("is_private"));
    }
  });
  receiver_model_->DidCreated(nullptr);
  receiver_model_->DidAttached(nullptr);
  chat_bar_->on_pic_in_pic = [this](bool on) { Dispatch(VM::kActionEnablePicInPic, Variant::Map{{"switch_on", on}}); };

  unfold_btn_ = new QFImagePushButton(frame_);
  unfold_btn_->setObjectName("unfold_bar_btn");
  unfold_btn_->setFixedSize(36, 30);
  unfold_btn_->SetImages(":/images/chat/open_bullet_btn", ":/images/chat/open_bullet_btn_flash");
  unfold_btn_->setCursor(Qt::PointingHandCursor);
  unfold_btn_->setAccessibleName("im_bullet_show_hover");
  unfold_btn_->hide();
  QObject::connect(unfold_btn_, &QPushButton::clicked, this, [this] { Dispatch(VM::kActionToggleBullet, true); });
  red_dot_ = new CircleDot(unfold_btn_, QColor("#FF3C33"));
  red_dot_->setFixedSize(6, 6);
  red_dot_->move(24, 5);
  red_dot_->hide();

  // The meeting's faces, picked from a panel over the bar.
  emoji_panel_ = new EmojiPanelWidget(frame_);
  emoji_panel_->hide();
  emoji_model_ = std::make_shared<chat::ChatEmojiPanelViewModel>();
  emoji_model_->BindProp(chat::ChatEmojiPanelViewModel::kPropEmojiFaces,
                         [this](Variant const* faces, Variant const*) {
                           if (emoji_panel_ && faces) emoji_panel_->SetFaces(*faces);
                         });
  Variant none;
  emoji_model_->DidCreated(&none);
  emoji_model_->DidAttached(&none);
  QObject::connect(emoji_panel_, &EmojiPanelWidget::EmojiChosen, this, [this](int index, QString const& face) {
    TXLOG_INFO << "emoji item click: " << index;
    ShowEmojiPanel(false);
    Dispatch(VM::kActionSendMsg, Variant::Map{{"msg_text", face.toStdString()}});
  });
  QObject::connect(emoji_panel_, &EmojiPanelWidget::VisibilityChanged, this, [this](bool visible) {
    if (!visible && is_emoji_panel_shown_) ShowEmojiPanel(false);
  });
  QTUIMonitorHelper::AddMonitorRectWidget(emoji_panel_);
  QTUIMonitorHelper::AddMonitorRectWidget(unfold_btn_);

  qApp->installEventFilter(this);
  InitHostWindow();
  SetFrameWidth(std::max(chat_bar_->expanded_width(), emoji_panel_->width()) + kLeftMargin);
  SetFrameHeight(ChatItemBar::kHeight + kBarMargin);
  return frame_;
}

void InMeetingBulletQTView::InitHostWindow() {
  Variant answer;
  auto controller = framework::ControllerManager::Instance()->GetController(kMeetingPage);
  if (controller && controller->CallHasResult("get_qt_window", nullptr, &answer) && answer.IsPointer()) {
    main_window_ = static_cast<QWidget*>(answer.AsPtr());
  }
  if (!main_window_) {
    TXLOG_WARN << "no meeting window to float over";
    return;
  }
  main_window_->installEventFilter(this);
  media_room_ = main_window_->findChild<QWidget*>("MediaRoomWidget");
  emoji_container_ = main_window_->findChild<QWidget*>("emojiPanelContainer");
  if (emoji_container_) emoji_container_->installEventFilter(this);
}

void InMeetingBulletQTView::InitFrameFlags() {
  frame_->setAttribute(Qt::WA_TranslucentBackground);
  frame_->setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
  is_internal_meeting_ = talvex_common::utils::IsInInternalMeeting();
  is_screen_share_mode_ = talvex_common::utils::inmeeting::IsInScreenShareMode();
  app_state_connection_ = QObject::connect(qApp, &QGuiApplication::applicationStateChanged, this,
                                           [this](Qt::ApplicationState state) { OnApplicationStateChanged(state); });
}

void InMeetingBulletQTView::OnActivate() {
  if (is_screen_share_emoji_) {
    Dispatch(VM::kActionSetChatPanelState, 1);
  } else if (media_room_) {
    media_room_->installEventFilter(this);
  }
  if (chat_bar_) {
    chat_bar_->installEventFilter(this);
    chat_bar_->pic_in_pic_button()->installEventFilter(this);
  }
}

void InMeetingBulletQTView::OnViewModelBoundEx(framework::StatefulViewModel* view_model) {
  std::weak_ptr<AppBaseView> weak = weak_from_this();
  auto bind = [&](uint32_t prop, std::function<void(Variant const&)> fn) {
    view_model->BindProp(prop, [weak, this, fn](Variant const* value, Variant const*) {
      if (weak.expired() || !frame_) {
        TXLOG_ERROR << "self is released";
        return;
      }
      fn(value ? *value : Variant());
    }, true);
  };
  bind(VM::kPropNewBulletMsg, [this](Variant const& v) { OnNewBulletMsg(v); });
  bind(VM::kPropUiData, [this](Variant const& v) {
    if (!v.IsMap()) return;
    is_auto_disappear_ = v.GetBoolean("bullet_is_auto_disappear", true);
    chat_bar_->UpdateUiData(v);
  });
  bind(VM::kPropUnfoldState, [this](Variant const& v) { OnUpdateUnflodState(v); });
  bind(VM::kPropFlashUnfoldBtn, [this](Variant const&) { Flash(); });
  bind(VM::kPropShowOrHideBulletMsg, [this](Variant const& v) { OnShowOrHideBulletMsg(v); });
  bind(VM::kPropBulletDraftText, [this](Variant const& v) {
    if (!v.IsString()) return;
    chat_bar_->SetText(QString::fromStdString(v.AsStr()));
    is_screen_share_mode_ = talvex_common::utils::inmeeting::IsInScreenShareMode();
    ResetPosition();
  });
  bind(VM::kPropWaitingRoomHide, [this](Variant const& v) {
    if (!v.IsBool()) return;
    is_waiting_room_ = v.AsBoolean();
    frame_->setVisible(!is_waiting_room_);
  });
  bind(kPropPicInPicShow, [this](Variant const& v) {
    if (v.IsBool()) chat_bar_->SetPicInPicVisible(v.AsBoolean());
  });
  bind(VM::kPropPicInPicUidata, [this](Variant const& v) {
    chat_bar_->UpdatePicInPicUIData(&v);
    if (v.GetBoolean("enable")) QToolTip::hideText();
  });
  bind(kPropPicInPicTips, [this](Variant const& v) {
    if (!is_screen_share_emoji_ || !v.IsMap()) return;
    QWidget* anchor = frame_.data();
    if (chat_bar_->pic_in_pic_button()->isVisible()) anchor = chat_bar_->pic_in_pic_button();
    QToolTip::showText(anchor->mapToGlobal(QPoint(anchor->width() / 2, 0)), QString::fromStdString(v.GetString("text")),
                       anchor, QRect(), 3000);
  });
  bind(VM::kPropWelcomeTip, [this](Variant const& v) {
    if (!v.IsMap()) return;
    has_animatable_tip_ = true;
    SetFrameWidth(std::max(chat_bar_->expanded_width(), emoji_panel_->width()) + kLeftMargin);
    Variant record = v;
    record.Set("msg_type", 6);
    OnNewBulletMsg(record);
  });
  bind(VM::kPropUnreadDot, [this](Variant const& v) {
    if (v.IsBool() && unfold_btn_->isVisible()) red_dot_->setVisible(v.AsBoolean());
  });
  bind(VM::kPropAnimatableTextItem, [this](Variant const& v) { OnAnimatableTextItemUpdated(v); });
  bind(kPropChatPanelState, [this](Variant const& v) {
    if (v.IsInteger() || v.IsBool()) chat_bar_->ExpandChatBar(v.AsInteger() == 1);
  });
  bind(VM::kPropPrivateChatAuthorityInfo, [this](Variant const& v) {
    if (!v.IsMap()) return;
    chat_bar_->SetChatDisabled(v.GetBoolean("allow_chat_only_host") || v.GetBoolean("is_forbid_chat"));
  });
  bind(VM::kPropShowQuickReplyEmoji, [this](Variant const& v) {
    if (v.IsBool()) OnShowQuickReplyEmoji(v.AsBoolean());
  });
  bind(VM::kPropQuickReplyDisable, [this](Variant const& v) { chat_bar_->UpdateQuickReplyDisable(v); });
  bind(VM::kPropHideAnimatableTip, [this](Variant const&) { tip_line_->hide(); });
  bind(VM::kPropShieldCheck, [this](Variant const&) {
    Variant shown(base::variant::kVariantTypeArray);
    for (BulletItemWidget* item : items()) {
      Variant record;
      if (item->GetMessage(&record)) shown.Add(std::move(record));
    }
    Dispatch(VM::kActionCheckMsgShield, shown);
  });
  bind(VM::kPropViewEnabled, [this](Variant const& v) {
    if (v.IsBool()) OnViewEnabled(v.AsBoolean());
  });
}

// --- bullets -----------------------------------------------------------------------

void InMeetingBulletQTView::OnNewBulletMsg(Variant const& record) {
  if (!record.IsMap()) return;
  const int update_type = record.GetInt32("update_type", -1);
  if (update_type == VM::kUpdateRecall) {
    const std::string id = record.GetString("msg_id");
    for (BulletItemWidget* item : items()) {
      Variant shown;
      if (!item->GetMessage(&shown) || shown.GetString("msg_id") != id) continue;
      item->UpdateItem(record);
      item->UpdateRecallMsg(record);
      item_heights_[item] = item->height();
      LayoutItems();
      break;
    }
    return;
  }
  if (update_type == VM::kUpdateShield && record.Get("msg_list").IsArray()) {
    for (auto const& gone : record.Get("msg_list").AsArray()) {
      for (BulletItemWidget* item : items()) {
        Variant shown;
        if (item->GetMessage(&shown) && shown.GetString("msg_id") == gone.GetString("msg_id")) RemoveBulletItem(item);
      }
    }
    return;
  }
  BulletItemWidget* item = BulletItemWidgetBuilder::Create(item_area_, &record);
  if (!item) return;
  AddItem(item, record);
}

void InMeetingBulletQTView::AddItem(BulletItemWidget* item, Variant const& record) {
  item->UpdateItem(record);
  item->SetWidgetVariant(record);
  item->SetClickCallback([this](BulletItemWidget* clicked) { OnItemClicked(clicked); });
  item->SetHoverCallbacks([this](BulletItemWidget*) { chat_bar_->CancelEmptyTimer(); }, nullptr);
  if (is_auto_disappear_) {
    QObject::connect(item, &QObject::destroyed, this,
                     [this, item](QObject*) { OnItemGone(item); });
  }
  bullet_items_.emplace_back(item);
  item_heights_[item] = item->height();
  if (is_screen_share_window_) {
    visible_items_.emplace_back(item);
    window_layout_->addWidget(item);
  }
  UpdateListHeight(item);
  LayoutItems();
  if (is_screen_share_window_) MoveBulletPanelPosition();
  item->show();
  if (is_auto_disappear_) item->StartDisappear(true);
}

void InMeetingBulletQTView::OnItemClicked(BulletItemWidget* item) {
  Variant record;
  if (!item->GetMessage(&record)) return;
  if (record.GetInt32("update_type", -1) == VM::kUpdateBanner) {
    Dispatch(VM::kActionOpenChatPage, record);
    return;
  }
  const int msg_type = record.GetInt32("msg_type", -1);
  if ((msg_type == 0 || msg_type == 2) && record.GetInt32("chat_type", -1) == 6) {
    Dispatch(VM::kActionNoticeBulletClick);
  } else {
    Dispatch(VM::kActionBulletClick);
  }
}

// An item that faded out deleted itself: only its bookkeeping is left.
void InMeetingBulletQTView::OnItemGone(BulletItemWidget* item) {
  if (item_heights_.erase(item) == 0) return;
  // The item is still being destroyed and its guards are not yet cleared:
  // the rest waits for the next turn, when it (and a frame that went with
  // it) reads as gone.
  QMetaObject::invokeMethod(
      this,
      [this] {
        const auto gone = [](QPointer<BulletItemWidget> const& p) { return p.isNull(); };
        bullet_items_.erase(std::remove_if(bullet_items_.begin(), bullet_items_.end(), gone), bullet_items_.end());
        visible_items_.erase(std::remove_if(visible_items_.begin(), visible_items_.end(), gone),
                             visible_items_.end());
        if (!frame_) return;
        LayoutItems();
        if (bullet_items_.empty()) AfterLastItemGone();
      },
      Qt::QueuedConnection);
}

void InMeetingBulletQTView::RemoveBulletItem(BulletItemWidget* item) {
  if (!item) return;
  item_heights_.erase(item);
  QObject::disconnect(item, &QObject::destroyed, this, nullptr);
  item->hide();
  item->deleteLater();
  bullet_items_.erase(std::remove(bullet_items_.begin(), bullet_items_.end(), item), bullet_items_.end());
  visible_items_.erase(std::remove(visible_items_.begin(), visible_items_.end(), item), visible_items_.end());
  if (window_layout_) window_layout_->removeWidget(item);
  const int target = std::min(Limit(), Needed());
  if (!ComputeMaxHeight()) item_area_->setFixedHeight(std::max(target, 0));
  LayoutItems();
  if (bullet_items_.empty()) AfterLastItemGone();
  Relayout();
}

void InMeetingBulletQTView::AfterLastItemGone() {
  chat_bar_->ResetEmptyTimer();
  SetFrameWidth((is_emoji_panel_shown_ ? std::max(chat_bar_->width(), emoji_panel_->width()) : chat_bar_->width()) +
                kLeftMargin);
}

int InMeetingBulletQTView::items_height() const {
  int sum = 0;
  for (auto const& [item, height] : item_heights_) sum += height;
  return sum;
}

int InMeetingBulletQTView::Limit() const { return 232 - (chat_bar_ ? chat_bar_->height() : ChatItemBar::kHeight); }

int InMeetingBulletQTView::Needed() const {
  return items_height() + (static_cast<int>(bullet_items_.size()) + 1) * kItemSpacing;
}

void InMeetingBulletQTView::UpdateListHeight(BulletItemWidget* new_item) {
  SetFrameWidth(ContentWidth());
  (void)new_item;  // its height is in item_heights_ already
  int target = std::min(Limit(), Needed());
  if (is_screen_share_window_ && Needed() >= Limit()) target = Needed();
  DropOverflow();
  bool sized = false;
  if (!is_screen_share_emoji_) sized = ComputeMaxHeight();
  if (!sized && target <= max_list_height_) item_area_->setFixedHeight(target);
  if (is_emoji_panel_shown_ && !is_screen_share_window_) {
    SetFrameHeight(kMaxListHeight);
  } else {
    SetFrameHeight(item_area_->height() + chat_bar_->height() + 48);
  }
}

// With bullets that do not fade (a webinar), the oldest go once they fill
// twice the room.
void InMeetingBulletQTView::DropOverflow() {
  if (is_auto_disappear_) return;
  while (Needed() > 2 * Limit() && !bullet_items_.empty()) {
    BulletItemWidget* oldest = bullet_items_.front();
    if (!oldest) {
      bullet_items_.erase(bullet_items_.begin());
      continue;
    }
    item_heights_.erase(oldest);
    bullet_items_.erase(bullet_items_.begin());
    visible_items_.erase(std::remove(visible_items_.begin(), visible_items_.end(), oldest), visible_items_.end());
    if (window_layout_) window_layout_->removeWidget(oldest);
    oldest->hide();
    oldest->deleteLater();
  }
}

bool InMeetingBulletQTView::ComputeMaxHeight() {
  if (!emoji_container_) return false;
  const QRect area = emoji_container_->geometry();
  const int bottom = area.bottom();
  const int top = area.top();
  max_list_height_ = std::min(bottom - 110 - chat_bar_->height() - kTipLineHeight, Limit());
  const int squeezed = top + kTipLineHeight - 80;
  if (squeezed < 30 && squeezed > 0) {
    item_area_->setFixedHeight(squeezed);
  } else {
    item_area_->setFixedHeight(std::max(0, std::min({Limit(), Needed(), max_list_height_})));
  }
  return true;
}

void InMeetingBulletQTView::LayoutItems() {
  if (!item_area_) return;
  if (is_screen_share_window_) {
    int sum = 0;
    for (auto const& item : visible_items_) {
      if (!item) continue;
      sum += item->height() + kItemSpacing;
      item->setVisible(sum + 39 < max_list_height_);
    }
    return;
  }
  // From the newest upward, from just above the bar. An older bullet that
  // no longer fits whole waits out its life hidden rather than cut in half.
  int y = item_area_->height() - 6;
  for (auto it = bullet_items_.rbegin(); it != bullet_items_.rend(); ++it) {
    if (!*it) continue;
    y -= (*it)->height();
    (*it)->move(kLeftMargin, y);
    if (y < 0) (*it)->hide();
    y -= kItemSpacing;
  }
}

int InMeetingBulletQTView::ContentWidth() const {
  const int emoji = is_emoji_panel_shown_ ? emoji_panel_->width() : 0;
  int widest = std::max(chat_bar_->expanded_width(), emoji);
  for (BulletItemWidget* item : items()) widest = std::max(widest, item->width());
  return widest + kLeftMargin;
}

// --- geometry -------------------------------------------------------------------------

void InMeetingBulletQTView::SetFrameHeight(int height) {
  if (!frame_) return;
  if (bullet_items_.empty() && !is_emoji_panel_shown_ && !tip_line_->isVisible()) {
    height = chat_bar_->height() + kBarMargin;
  }
  // The frame keeps its bottom edge.
  QWidget* moved = frame_->isWindow() || !frame_->parentWidget() ? frame_.data() : frame_->parentWidget();
  const int dy = height - frame_->height();
  frame_->setFixedHeight(height);
  if (moved != frame_.data()) moved->setFixedHeight(height);
  moved->move(moved->x(), moved->y() - dy);
  Relayout();
}

void InMeetingBulletQTView::SetFrameWidth(int width) {
  if (!frame_) return;
  frame_->setFixedWidth(is_show_panel_ ? width : kFoldedWidth);
  Relayout();
}

void InMeetingBulletQTView::Relayout() {
  if (!frame_) return;
  const int w = frame_->width();
  const int h = frame_->height();
  const int bar_y = h - kBarMargin - chat_bar_->height();
  chat_bar_->move(kLeftMargin, bar_y);
  unfold_btn_->move(0, h - kBarMargin - unfold_btn_->height());
  if (is_emoji_panel_shown_ && !is_screen_share_window_) {
    emoji_panel_->move(kLeftMargin, bar_y - 14 - emoji_panel_->height());
  }
  const int item_h = item_area_->height();
  if (!is_screen_share_window_) {
    container_->setGeometry(0, std::max(0, bar_y - 10 - item_h - kTipLineHeight), w, item_h + kTipLineHeight);
    tip_line_->setGeometry(0, 0, w, kTipLineHeight);
    item_area_->setGeometry(0, kTipLineHeight, w, item_h);
  } else {
    // The bullets' own window is as large as its column.
    container_->resize(w, item_h);
    item_area_->setGeometry(0, 0, w, item_h);
  }
}

void InMeetingBulletQTView::ResetPosition() {
  if (!frame_ || is_waiting_room_ || is_internal_meeting_ || !main_window_) return;
  const QRect window = main_window_->frameGeometry();
  frame_->move(window.x() + 5, window.bottom() - frame_->height() - 80);
  frame_->raise();
  frame_->show();
}

void InMeetingBulletQTView::MoveBulletPanelPosition() {
  if (!frame_ || !container_) return;
  const QRect frame = frame_->geometry();
  const int x = frame.left();
  const int y = frame.bottom() - container_->height() - 8;
  TXLOG_INFO << "move bullet pos x:" << x << ",y:" << y;
  container_->move(x, y);
}

void InMeetingBulletQTView::MoveEmojiPanelPosition() {
  if (!frame_ || !emoji_panel_) return;
  const int y = frame_->height() - chat_bar_->height() - 16 - emoji_panel_->height();
  TXLOG_INFO << "move emoji pos x:" << kLeftMargin << ",y:" << y;
  emoji_panel_->move(kLeftMargin, y);
}

// --- fold, flash, emoji, tips ------------------------------------------------------

void InMeetingBulletQTView::OnShowOrHideBulletMsg(Variant const& flags) {
  if (!flags.IsMap()) return;
  is_show_panel_ = flags.GetBoolean("show_bulletmsg_panel", true);
  is_immersive_ = flags.GetBoolean("is_immersive");
  is_show_chat_ = flags.GetBoolean("is_show_chat", true);
  is_show_emoji_ = flags.GetBoolean("is_show_emoji", true);
  if (!is_show_panel_) {
    frame_->setFixedWidth(kFoldedWidth);
    SetFrameHeight(chat_bar_->height() + kBarMargin);
    if (is_emoji_panel_shown_) ShowEmojiPanel(false);
  } else {
    const int emoji = emoji_panel_->isVisible() ? emoji_panel_->width() : 0;
    if (!bullet_items_.empty()) {
      if (is_screen_share_window_) {
        MoveBulletPanelPosition();
      } else {
        SetFrameHeight(item_area_->height() + chat_bar_->height() + 48);
      }
      SetFrameWidth(std::max(ContentWidth() - kLeftMargin, emoji) + kLeftMargin);
    } else {
      SetFrameWidth(std::max(chat_bar_->expanded_width(), emoji) + kLeftMargin);
    }
  }
  UpdateVisibility();
}

void InMeetingBulletQTView::UpdateVisibility() {
  const bool bar_active = chat_bar_->edit()->hasFocus();
  if (!is_show_panel_ || (is_immersive_ && !bar_active)) chat_bar_->ExpandChatBar(false);
  chat_bar_->setVisible(is_show_panel_);
  chat_bar_->SetExpandTextVisible(is_show_panel_);
  const bool unfold = !is_immersive_ && !is_show_panel_ && !unfold_hidden_;
  unfold_btn_->setVisible(unfold);
  if (!unfold) red_dot_->hide();
  container_->setVisible(is_show_panel_);
  Relayout();
}

void InMeetingBulletQTView::OnUpdateUnflodState(Variant const& state) {
  if (!state.IsMap()) return;
  unfold_hidden_ = !state.GetBoolean("show_unfold_btn");
  UpdateVisibility();
}

void InMeetingBulletQTView::Flash() {
  if (!unfold_btn_) return;
  if (!flash_) {
    flash_ = new QParallelAnimationGroup(this);
    auto* pulse = new QPropertyAnimation(unfold_btn_, "flash", flash_);
    pulse->setDuration(1000);
    pulse->setKeyValueAt(0.0, 0);
    pulse->setKeyValueAt(0.5, 100);
    pulse->setKeyValueAt(1.0, 0);
    flash_->addAnimation(pulse);
    flash_->setLoopCount(2);
  }
  flash_->stop();
  flash_->start();
}

void InMeetingBulletQTView::OnShowQuickReplyEmoji(bool show) {
  if (!show) {
    ShowEmojiPanel(false);
    return;
  }
  if (chat_bar_->is_chat_disabled()) {
    // The view model answers with the reason.
    Dispatch(VM::kActionQuickReplyTextClick);
    return;
  }
  if (is_screen_share_window_) MoveEmojiPanelPosition();
  ShowEmojiPanel(!is_emoji_panel_shown_);
}

void InMeetingBulletQTView::ShowEmojiPanel(bool show) {
  if (show == is_emoji_panel_shown_) {
    emoji_panel_->setVisible(show);
    return;
  }
  is_emoji_panel_shown_ = show;
  emoji_panel_->setVisible(show);
  container_->setVisible(is_show_panel_ && !show);
  if (!show) Dispatch(VM::kActionCloseQuickReplyEmoji);
  SetFrameWidth(ContentWidth());
  if (show && !is_screen_share_window_) {
    SetFrameHeight(kMaxListHeight);
  } else {
    SetFrameHeight(bullet_items_.empty() ? chat_bar_->height() + kBarMargin
                                         : item_area_->height() + chat_bar_->height() + 48);
  }
  if (show) emoji_panel_->setFocus();
}

void InMeetingBulletQTView::OnAnimatableTextItemUpdated(Variant const& data) {
  if (!data.IsMap()) return;
  Variant record = data;
  record.Set("msg_type", 7);
  BulletItemWidget* item = BulletItemWidgetBuilder::Create(tip_line_, &record);
  if (!item) return;
  item->SetWidgetVariant(record);
  if (bullet_items_.empty()) SetFrameHeight(frame_->height() + chat_bar_->height() + kBarMargin);
  if (is_screen_share_window_) MoveBulletPanelPosition();
  tip_line_->show();
  SetFrameHeight(std::max(frame_->height(), item_area_->height() + chat_bar_->height() + 48));
  item->move(kLeftMargin, kTipLineHeight - item->height());
  item->show();
  item->StartDisappear(true);
}

// --- the meeting around it ------------------------------------------------------------

bool InMeetingBulletQTView::HiddenByMeetingState() const {
  return is_screen_share_mode_ || is_waiting_room_ || is_internal_meeting_;
}

void InMeetingBulletQTView::OnViewEnabled(bool enabled) {
  is_internal_meeting_ = talvex_common::utils::IsInInternalMeeting();
  if (HiddenByMeetingState()) {
    frame_->hide();
    return;
  }
  frame_->setVisible(enabled);
}

void InMeetingBulletQTView::OnApplicationStateChanged(Qt::ApplicationState state) {
  if (!frame_) return;
  if (HiddenByMeetingState() || state == Qt::ApplicationInactive) {
    frame_->hide();
    return;
  }
  if (state != Qt::ApplicationActive || !main_window_ || !main_window_->isVisible() || main_window_->isMinimized()) {
    return;
  }
  ResetPosition();
  // Dialogs stay above the overlay.
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget != frame_ && widget->isVisible() && widget != main_window_) widget->raise();
  }
}

bool InMeetingBulletQTView::eventFilter(QObject* watched, QEvent* event) {
  if (!frame_) return QObject::eventFilter(watched, event);
  const QEvent::Type type = event->type();
  if (!is_screen_share_emoji_ && watched == media_room_ && type == QEvent::Resize) {
    ShowEmojiPanel(false);
    ComputeMaxHeight();
  } else if (watched == chat_bar_ && (type == QEvent::Resize || type == QEvent::Show)) {
    SetFrameWidth(ContentWidth());
  } else if (is_emoji_panel_shown_ &&
             (type == QEvent::MouseButtonPress || type == QEvent::FocusOut || type == QEvent::WindowDeactivate)) {
    const QPoint cursor = QCursor::pos();
    const bool inside = QRect(emoji_panel_->mapToGlobal(QPoint(0, 0)), emoji_panel_->size()).contains(cursor);
    const bool on_button =
        QRect(chat_bar_->emoji_button()->mapToGlobal(QPoint(0, 0)), chat_bar_->emoji_button()->size()).contains(cursor);
    if (!inside && !on_button && type == QEvent::MouseButtonPress) ShowEmojiPanel(false);
  } else if (watched == emoji_container_ && type == QEvent::MouseButtonPress) {
    if (frame_->parentWidget() != emoji_container_) {
      TXLOG_WARN << "widget level error";
    } else {
      // Clicks on the empty container go to what lies beneath it.
      auto* mouse = static_cast<QMouseEvent*>(event);
      emoji_container_->setAttribute(Qt::WA_TransparentForMouseEvents, true);
      QWidget* top = emoji_container_->window();
      const QPoint at = top->mapFromGlobal(mouse->globalPos());
      QWidget* below = top->childAt(at);
      if (below && below != emoji_container_) {
        QCoreApplication::postEvent(below, new QMouseEvent(QEvent::MouseButtonPress, below->mapFromGlobal(mouse->globalPos()),
                                                           mouse->globalPos(), mouse->button(), mouse->buttons(),
                                                           mouse->modifiers()));
      }
      emoji_container_->setAttribute(Qt::WA_TransparentForMouseEvents, false);
    }
  } else if (watched == main_window_ &&
             (type == QEvent::WindowStateChange || type == QEvent::MouseButtonPress || type == QEvent::Resize ||
              type == QEvent::Move || type == QEvent::Hide)) {
    if (HiddenByMeetingState() || main_window_->isMinimized() || type == QEvent::Hide) {
      frame_->hide();
    } else {
      ResetPosition();
    }
  } else if (watched == chat_bar_->pic_in_pic_button() && type == QEvent::Enter) {
    Variant tips(base::variant::kVariantTypeMap);
    if (auto const& vm = view_model()) vm->Handle(VM::kActionGetPicInPicTips, &tips);
    chat_bar_->pic_in_pic_button()->setToolTip(QString::fromStdString(tips.GetString("tips")));
  }
  return QObject::eventFilter(watched, event);
}

void InMeetingBulletQTView::ReleaseFilters() {
  qApp->removeEventFilter(this);
  if (main_window_) main_window_->removeEventFilter(this);
  if (media_room_) media_room_->removeEventFilter(this);
  if (emoji_container_) emoji_container_->removeEventFilter(this);
  if (chat_bar_) {
    chat_bar_->removeEventFilter(this);
    chat_bar_->pic_in_pic_button()->removeEventFilter(this);
  }
  QObject::disconnect(app_state_connection_);
  for (auto const& item : bullet_items_) {
    if (item) QObject::disconnect(item, nullptr, this, nullptr);
  }
}

void InMeetingBulletQTView::OnFrameDestoryed(QWidget*) {
  ReleaseFilters();
  if (emoji_model_) {
    emoji_model_->DidDetached();
    emoji_model_.reset();
  }
  for (auto const& item : bullet_items_) {
    if (!item) continue;
    QObject::disconnect(item, nullptr, this, nullptr);
    item->hide();
    delete item.data();
  }
  bullet_items_.clear();
  visible_items_.clear();
  item_heights_.clear();
  if (chat_bar_) chat_bar_->CancelEmptyTimer();
  if (is_screen_share_window_ && container_ && container_->parentWidget() != frame_) delete container_;
}

}  // namespace QtView
