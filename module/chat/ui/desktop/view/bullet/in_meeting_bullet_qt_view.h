#pragma once

#include <QObject>
#include <QPointer>
#include <deque>
#include <map>
#include <memory>
#include <vector>

#include "base/variant/variant.h"
#include "framework/view/app_view.h"
#include "chat/ui/desktop/view/private_chat/chat_member_select_view.h"

class BulletItemWidget;
class ChatItemBar;
class CircleDot;
class EmojiPanelWidget;
class QFImagePushButton;
class QFLayoutWidget;
class QFWidget;
class QParallelAnimationGroup;
class QVBoxLayout;

namespace chat {
class ChatEmojiPanelViewModel;
class ChatReceiverViewModel;
}

namespace QtView {

// The floating chat over the meeting video: a frameless, transparent layer at
// the lower left of the meeting window with the bullets rising from the chat
// bar, the animated tip line above them, the bar, and the small button that
// unfolds a folded overlay. It owns the widgets and their geometry; every
// decision on content comes from InMeetingBulletViewModel.
//
// With `screen_share_emoji` on build it is the window variant that stands
// beside the screen-share toolbar (the host's view key
// "ScreenShareBulletView"): the bullets get a top-most window of their own.
class InMeetingBulletQTView : public QObject, public AppQTView {
  Q_OBJECT

 public:
  static constexpr int kMaxListHeight = 280;
  static constexpr int kTipLineHeight = 30;
  static constexpr int kItemSpacing = 4;
  static constexpr int kFoldedWidth = 36;

  InMeetingBulletQTView();
  ~InMeetingBulletQTView() override;

  // --- what the overlay shows, for its owner and for tests ---
  std::vector<BulletItemWidget*> items() const;
  ChatItemBar* bar() const { return chat_bar_; }
  QFImagePushButton* unfold_button() const { return unfold_btn_; }
  CircleDot* red_dot() const { return red_dot_; }
  EmojiPanelWidget* emoji_panel() const { return emoji_panel_; }
  QFWidget* item_area() const { return item_area_; }
  QFWidget* tip_line() const { return tip_line_; }
  QFWidget* container() const { return container_; }
  // The sum of the bullets' heights, as they were when each came.
  int items_height() const;
  bool is_auto_disappear() const { return is_auto_disappear_; }
  bool is_show_panel() const { return is_show_panel_; }
  bool flashing() const;
  int Limit() const;
  int Needed() const;

  // Places the overlay over the meeting window: 5 px in from its left edge,
  // 80 px above its bottom.
  void ResetPosition();
  // Opens the member list over the bar's receiver (or closes it when open).
  void ShowMemberSelect();
  ChatMemberSelectView* member_select() const { return member_select_.data(); }

 protected:
  QWidget* BuildFrame(QWidget* parent, Variant* params) override;
  void OnViewModelBoundEx(framework::StatefulViewModel* view_model) override;
  void OnActivate() override;
  void OnFrameDestoryed(QWidget* frame) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Dispatch(uint32_t action, Variant const& params = Variant());
  void InitHostWindow();
  void ReleaseFilters();
  void InitFrameFlags();
  void OnNewBulletMsg(Variant const& record);
  void AddItem(BulletItemWidget* item, Variant const& record);
  void OnItemClicked(BulletItemWidget* item);
  void OnItemGone(BulletItemWidget* item);
  void RemoveBulletItem(BulletItemWidget* item);
  // The last bullet went: the bar may collapse, the frame narrows to it.
  void AfterLastItemGone();
  void UpdateListHeight(BulletItemWidget* new_item);
  void DropOverflow();
  bool ComputeMaxHeight();
  void LayoutItems();
  void SetFrameHeight(int height);
  void SetFrameWidth(int width);
  void Relayout();
  void OnShowOrHideBulletMsg(Variant const& flags);
  void UpdateVisibility();
  void OnUpdateUnflodState(Variant const& state);
  void Flash();
  void OnShowQuickReplyEmoji(bool show);
  void ShowEmojiPanel(bool show);
  void OnAnimatableTextItemUpdated(Variant const& data);
  void OnViewEnabled(bool enabled);
  void OnApplicationStateChanged(Qt::ApplicationState state);
  void MoveBulletPanelPosition();
  void MoveEmojiPanelPosition();
  bool HiddenByMeetingState() const;
  int ContentWidth() const;

  // --- state ---
  bool is_show_chat_ = true;
  bool is_show_emoji_ = true;
  bool is_show_panel_ = true;
  bool is_immersive_ = false;
  bool unfold_hidden_ = false;
  bool is_screen_share_emoji_ = false;
  bool is_screen_share_window_ = false;
  bool has_animatable_tip_ = false;
  bool is_auto_disappear_ = true;
  int max_list_height_ = kMaxListHeight;
  bool is_emoji_panel_shown_ = false;
  bool is_waiting_room_ = false;
  bool is_internal_meeting_ = false;
  bool is_screen_share_mode_ = false;
  bool item_area_sized_ = false;

  // --- widgets ---
  QPointer<QWidget> frame_;
  QFWidget* container_ = nullptr;
  QFWidget* tip_line_ = nullptr;
  QFWidget* item_area_ = nullptr;
  QVBoxLayout* window_layout_ = nullptr;
  ChatItemBar* chat_bar_ = nullptr;
  QFImagePushButton* unfold_btn_ = nullptr;
  CircleDot* red_dot_ = nullptr;
  EmojiPanelWidget* emoji_panel_ = nullptr;
  QParallelAnimationGroup* flash_ = nullptr;
  std::shared_ptr<chat::ChatEmojiPanelViewModel> emoji_model_;
  std::shared_ptr<chat::ChatReceiverViewModel> receiver_model_;
  QPointer<QtView::ChatMemberSelectView> member_select_;
  std::vector<QPointer<BulletItemWidget>> bullet_items_;
  std::deque<QPointer<BulletItemWidget>> visible_items_;
  // The height each item took when it came, for the bookkeeping of an item
  // that deleted itself.
  std::map<BulletItemWidget const*, int> item_heights_;
  QPointer<QWidget> main_window_;
  QPointer<QWidget> media_room_;
  QPointer<QWidget> emoji_container_;
  QMetaObject::Connection app_state_connection_;
};

}  // namespace QtView
