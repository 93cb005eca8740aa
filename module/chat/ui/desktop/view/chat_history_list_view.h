#pragma once

#include <QMenu>
#include <QPointer>
#include <QString>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/timer/tx_timer.h"
#include "base/variant/variant.h"
#include "chat/ui/desktop/view/list/chat_reuse_list_widget_delegate.h"
#include "framework/view/app_view.h"

#include "chat/ui/desktop/view/list/chat_message_list_widget.h"
class ChatMessageWidget;
#include "chat/ui/desktop/view/chat/chat_unread_msg_widget.h"
#include "chat/ui/desktop/controller/page_controller.h"
class QObject;

namespace QtView {

class ChatMessageView;

// Shows a chat history list view model in a ChatMessageListWidget and feeds
// that list as its delegate. Updates published within 150 ms are applied as
// one, the reading position holds while older messages come in above, and
// a copy of several selected rows asks the view model for their text.
class ChatHistoryListView : public AppQTView, public ChatReuseListWidgetDelegate {
 public:
  static constexpr int kBatchDelayMs = 150;

  ChatHistoryListView();
  ~ChatHistoryListView() override;

  // Delegate.
  int ItemCount(ChatReuseListWidget* list) override;
  int ItemHeightAtIndex(ChatReuseListWidget* list, int index) override;
  QFReuseWidget* ItemWidgetAtIndex(ChatReuseListWidget* list, int index) override;
  void ItemSelectedAtIndex(ChatReuseListWidget* list, int index, Variant const& record) override;
  void ItemUnSelectedAtIndex(ChatReuseListWidget* list, int index) override;
  QString ItemUniStingAtIndex(ChatReuseListWidget const* list, int index) override;
  int ItemIndexAtUniSting(ChatReuseListWidget const* list, QString const& key) override;
  void UpdateItemHeight(int index, int height) override;

  // Row events: 3 message menu, 4 size changed, 5 avatar menu.
  bool HandleViewEvent(AppBaseView* source, int event, Variant const* params, Variant* result) override;

  // The context menu of a message: the items its menu view model allows,
  // as a real menu at the pointer. 0 the message, 1 its sender's avatar.
  void ShowMessageMenu(std::string const& msg_id, int target);
  QMenu* last_menu() const { return last_menu_.data(); }

  // The page of a file message, in a window of its own; one at a time.
  void ShowFilePreview(std::string const& msg_id);
  chat::PageController* file_preview() const { return file_preview_.get(); }

  // Ctrl+C: one row copies itself; several ask the view model for their text.
  void CopySelection();
  // Puts the text and HTML of several messages on the clipboard.
  void OnGetMimeDataResult(Variant const& entries);

  ChatMessageListWidget* list() const { return list_.data(); }
  ChatUnreadMsgWidget* unread_widget() const { return unread_widget_.data(); }
  // The row widget showing a message, when it is on screen.
  ChatMessageWidget* RowWidgetOf(std::string const& msg_id) const;
  std::vector<std::string> MessageIds() const;
  size_t message_count() const { return items_.size(); }
  bool HasPendingUpdates() const { return !pending_updates_.AsArray().empty(); }
  // Full reloads of the list so far.
  int reload_count() const { return reload_count_; }
  // Batches laid out so far, by a full reload or by adding rows at the end.
  int layout_count() const { return layout_count_; }

 protected:
  QWidget* BuildFrame(QWidget* parent, Variant* params) override;
  void OnViewModelBoundEx(framework::StatefulViewModel* view_model) override;
  void OnDispose() override;
  // After each applied batch; the panel shows its empty state from here.
  virtual void OnItemsChanged() {}

 private:
  void QueueUpdate(Variant const& update);
  void FlushUpdates();
  void QueueRemeasure(std::string const& msg_id);
  void RemeasurePending();
  void ScrollToMessage(std::string const& msg_id);
  void ScrollToBottom();
  void ShowUnreadTip(Variant const& tip);
  void SendSnap(bool snap);
  void RebuildIndex();
  void LayoutUnreadWidget();
  void OnWidthMaybeChanged();
  std::string IdAt(int index) const;
  ChatMessageView* RowViewOf(QFReuseWidget* widget) const;
  void BindRow(ChatMessageView* view, std::string const& msg_id);
  void RestoreSelection(ChatReuseListWidget* list, int index, ChatMessageWidget* row);
  void Reload(int target_index, int offset);
  // Lays out rows added at the end from `first` on, without touching the others.
  void AppendRows(int first, bool at_bottom);

  QPointer<QWidget> container_;
  QPointer<ChatMessageListWidget> list_;
  QPointer<ChatUnreadMsgWidget> unread_widget_;
  std::shared_ptr<framework::StatefulViewModel> menu_model_;
  QPointer<QMenu> last_menu_;
  // Owns the timers and connections: all of them end with the view.
  std::unique_ptr<QObject> guard_;
  // Applies the updates queued within kBatchDelayMs at once.
  std::unique_ptr<talvex_common::utils::timer::TXTimer> batch_timer_;
  Variant pending_updates_;
  Variant pending_height_ids_;
  bool scroll_to_bottom_once_ = false;
  std::string message_conv_id_;
  int template_type_ = 2;
  std::unique_ptr<chat::PageController> file_preview_;
  std::vector<Variant> items_;
  std::unordered_map<std::string, int> index_of_;
  std::unordered_map<std::string, int> heights_;
  std::unordered_map<QFReuseWidget*, std::shared_ptr<ChatMessageView>> row_views_;
  int reload_count_ = 0;
  int layout_count_ = 0;
  int heights_width_ = -1;
  int laid_out_width_ = -1;
  bool relayout_pending_ = false;
  bool snap_after_flush_ = false;
};

}  // namespace QtView
