#include "chat/ui/desktop/view/file/file_preview_view.h"
#include "chat/viewmodel/file_preview_view_model.h"
#include "chat/ui/desktop/view/chat_history_list_view.h"

#include <QCursor>

#include "chat/viewmodel/chatting_menu_view_model.h"

#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QMimeData>
#include <QShortcut>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>
#include <cstdlib>

#include "base/log/log.h"
#include "base/timer/tx_timer.h"
#include "chat/ui/desktop/view/chat/chat_item.h"
#include "chat/ui/desktop/view/chat/chat_message_view.h"
#include "chat/ui/desktop/view/chat/chat_message_widget.h"
#include "chat/ui/desktop/view/chat/chat_unread_msg_widget.h"
#include "chat/ui/desktop/view/list/chat_message_list_widget.h"
#include "chat/viewmodel/chat_history_list_base_view_model.h"
#include "framework/chat/chat_schema_keys.h"
#include "framework/chat/chat_utils.h"
#include "framework/module/module_runtime.h"
#include "framework/module/providers.h"
#include "framework/viewmodel/chat_message_base_view_model.h"
#include "framework/viewmodel/stateful_view_model.h"
#include "uikit/reuse/qf_diff_result.h"
#include "chat/model/chat_message.h"

namespace QtView {

namespace {

using List = chat::ChatHistoryListBaseViewModel;

constexpr int kUnreadBottomGap = 8;
constexpr int kUnreadSideGap = 8;

// Runs a callback on the resizes of one widget.
class ResizeWatcher : public QObject {
 public:
  ResizeWatcher(QObject* parent, std::function<void()> on_resize) : QObject(parent), on_resize_(std::move(on_resize)) {}
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Resize || event->type() == QEvent::Show) on_resize_();
    return QObject::eventFilter(watched, event);
  }

 private:
  std::function<void()> on_resize_;
};

std::string MsgIdOf(Variant const& item) { return item.GetString(ChatHistoryListMsgItemFields_kStringMsgItemMsgId); }
std::string ReuseIdOf(Variant const& item) {
  return item.GetString(ChatHistoryListMsgItemFields_kStringMsgItemReuseId);
}

// The height reserved for a row not yet measured, from the list item and the
// client's record: asked for every row a batch adds, so nothing is built.
int EstimateHeightOf(Variant const& item) {
  // "reuse_id<type>_<template>", cards prefixed with their message id.
  const std::string reuse_id = ReuseIdOf(item);
  const size_t at = reuse_id.rfind("reuse_id");
  const int chat_type = at == std::string::npos ? -2 : std::atoi(reuse_id.c_str() + at + 8);
  auto record = talvex::ChatUtils::GetMsgInfoPtrById(MsgIdOf(item));
  const bool is_private = record && chat::MessageRecord(*record).IsPrivate();
  const bool failed = record && chat::MessageRecord(*record).IsFailed();
  return ChatItem::EstimateHeight(chat_type, is_private, failed);
}

QString Escaped(std::string const& text) { return QString::fromStdString(text).toHtmlEscaped(); }

}  // namespace

ChatHistoryListView::ChatHistoryListView()
    : guard_(std::make_unique<QObject>()),
      pending_updates_(base::variant::kVariantTypeArray),
      pending_height_ids_(base::variant::kVariantTypeArray) {}

ChatHistoryListView::~ChatHistoryListView() {
  for (auto& entry : row_views_) entry.second->DisposeViewModel();
  row_views_.clear();
}

QWidget* ChatHistoryListView::BuildFrame(QWidget* parent, Variant* params) {
  Q_UNUSED(params);
  container_ = new QWidget(parent);
  container_->setObjectName("ChatHistoryListView");
  auto* layout = new QVBoxLayout(container_);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  list_ = new ChatMessageListWidget(container_);
  list_->setObjectName("ChatHistoryList");
  list_->SetSelectionEnabled(true);
  list_->SetMargins(QMargins(0, 0, 0, 16));
  layout->addWidget(list_);
  unread_widget_ = new ChatUnreadMsgWidget(container_);
  unread_widget_->hide();
  container_->installEventFilter(new ResizeWatcher(container_, [this] {
    LayoutUnreadWidget();
    OnWidthMaybeChanged();
  }));
  return container_;
}

void ChatHistoryListView::OnWidthMaybeChanged() {
  if (!list_ || relayout_pending_) return;
  relayout_pending_ = true;
  // After the layout has given the list its new size; several resizes make one pass.
  QTimer::singleShot(0, guard_.get(), [this] {
    relayout_pending_ = false;
    if (!list_ || items_.empty() || list_->viewport()->width() == laid_out_width_) return;
    laid_out_width_ = list_->viewport()->width();
    // Rows wrap differently at another width: measure them again, keeping
    // the bottom, or the row being read, where it was.
    if (list_->IsScrollBottom()) {
      Reload(ChatReuseListWidget::kStickToBottom, 0);
      return;
    }
    int offset = 0;
    const int anchor = list_->GetFirstFullyVisibleItem(&offset);
    Reload(anchor >= 0 ? anchor : -1, anchor >= 0 ? offset : 0);
  });
}

void ChatHistoryListView::LayoutUnreadWidget() {
  if (!unread_widget_ || !container_) return;
  unread_widget_->SetMaxWidth(container_->width() - 2 * kUnreadSideGap);
  unread_widget_->move((container_->width() - unread_widget_->width()) / 2,
                       container_->height() - unread_widget_->height() - kUnreadBottomGap);
  unread_widget_->raise();
}

void ChatHistoryListView::OnViewModelBoundEx(framework::StatefulViewModel* view_model) {
  if (!list_) return;
  list_->SetWidgetView(shared_from_this());
  list_->SetDelegate(guard_.get(), this);
  if (auto* history = dynamic_cast<List*>(view_model)) {
    template_type_ = history->template_type();
    message_conv_id_ = history->message_conv_id();
  }
  scroll_to_bottom_once_ = true;

  view_model->BindProp(List::kPropChatPaneType, [this](Variant const* value, Variant const*) {
    if (!value || !value->IsMap()) return;
    message_conv_id_ = value->GetString(ChatHistoryListGetChatPaneTypeFields_kStringGetChatPaneTypeMessageConvId);
    template_type_ =
        value->GetInt32(ChatHistoryListGetChatPaneTypeFields_kIntegerGetChatPaneTypeTemplateType, template_type_);
  });
  view_model->BindProp(List::kPropMessageList, [this](Variant const* value, Variant const*) {
    if (value && value->IsMap()) QueueUpdate(*value);
  });
  view_model->BindProp(List::kPropScrollToMessage, [this](Variant const* value, Variant const*) {
    if (value && value->IsMap()) {
      ScrollToMessage(value->GetString(ChatHistoryListScrollToMessageFields_kStringScrollToMessageMsgId));
    }
  });
  view_model->BindProp(List::kPropSnapToBottom, [this](Variant const*, Variant const*) {
    // The view model asks once per message of a burst, before the burst is
    // in the list: while updates wait, the flush goes to the bottom once.
    if (HasPendingUpdates()) {
      snap_after_flush_ = true;
      return;
    }
    ScrollToBottom();
  });
  view_model->BindProp(List::kPropUnreadTip, [this](Variant const* value, Variant const*) {
    if (value) ShowUnreadTip(*value);
  });
  view_model->BindProp(List::kPropMimeData, [this](Variant const* value, Variant const*) {
    if (value) OnGetMimeDataResult(*value);
  });

  ChatMessageListWidget* list = list_.data();
  QObject* guard = guard_.get();
  QObject::connect(list, &ChatMessageListWidget::ScrollToTopSignal, guard, [this] {
    SendSnap(false);
    if (auto vm = this->view_model()) vm->Handle(List::kActionGetMore, nullptr);
  });
  QObject::connect(list, &ChatMessageListWidget::ScrollToBottomSignal, guard, [this] { SendSnap(true); });
  QObject::connect(list, &ChatMessageListWidget::ScrollPosChangedSignal, guard, [this] { SendSnap(false); });
  QObject::connect(list, &ChatReuseListWidget::OnSelectionChanged, guard, [this] {
    if (!list_) return;
    if (list_->HasSelection()) {
      SendSnap(false);
    } else if (list_->IsAtBottom()) {
      SendSnap(true);
    }
  });
  auto* copy = new QShortcut(QKeySequence::Copy, list, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
  QObject::connect(copy, &QShortcut::activated, guard, [this] { CopySelection(); });
  auto* select_all = new QShortcut(QKeySequence::SelectAll, list, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
  QObject::connect(select_all, &QShortcut::activated, guard, [this] {
    if (list_) list_->SelectAll();
  });
  QObject::connect(unread_widget_.data(), &ChatUnreadMsgWidget::Pressed, guard, [this] {
    if (auto vm = this->view_model()) vm->Handle(List::kActionClickUnreadTip, nullptr);
  });
}

void ChatHistoryListView::OnDispose() {
  batch_timer_.reset();
  file_preview_.reset();
  if (last_menu_) last_menu_->close();
  if (menu_model_) {
    menu_model_->DidDetached();
    menu_model_.reset();
  }
  for (auto& entry : row_views_) entry.second->DisposeViewModel();
  row_views_.clear();
  guard_.reset(new QObject());
}

// --- delegate --------------------------------------------------------------------

int ChatHistoryListView::ItemCount(ChatReuseListWidget*) { return static_cast<int>(items_.size()); }

int ChatHistoryListView::ItemHeightAtIndex(ChatReuseListWidget* list, int index) {
  if (index < 0 || index >= static_cast<int>(items_.size())) return 0;
  // Measured heights hold for the width they were measured at.
  const int width = list ? list->viewport()->width() : 0;
  if (width != heights_width_) {
    heights_.clear();
    heights_width_ = width;
  }
  auto it = heights_.find(MsgIdOf(items_[index]));
  if (it != heights_.end()) return it->second;
  return EstimateHeightOf(items_[index]);
}

QFReuseWidget* ChatHistoryListView::ItemWidgetAtIndex(ChatReuseListWidget* list, int index) {
  if (!list || index < 0 || index >= static_cast<int>(items_.size())) return nullptr;
  Variant const& item = items_[index];
  const std::string msg_id = MsgIdOf(item);
  const QString reuse_id = QString::fromStdString(ReuseIdOf(item));
  // A row asks first for the widget that last showed its message: rebinding
  // it changes nothing, while another message's widget would load its
  // content again (a picture decodes anew) and change its height.
  const QString key = QString::fromStdString(msg_id);
  QFReuseWidget* cached = list->GetReuseItem(reuse_id, key);
  if (ChatMessageView* view = RowViewOf(cached)) {
    cached->SetReuseKey(key);
    cached->setFixedWidth(list->viewport()->width());
    BindRow(view, msg_id);
    RestoreSelection(list, index, static_cast<ChatMessageWidget*>(cached));
    return cached;
  }
  int view_model_type = 0;
  uint32_t info_prop = 0;
  const int item_type = ChatMessageView::ItemTypeOfReuseId(reuse_id);
  if (!ChatMessageView::ViewModelOf(item_type, &view_model_type, &info_prop)) {
    TXLOG_ERROR << "<IM> no row for reuse id " << reuse_id.toStdString();
    return nullptr;
  }
  auto list_view_model = view_model();
  framework::module::ModuleRuntime* runtime = list_view_model ? list_view_model->GetModuleRuntime4ATG() : nullptr;
  auto row_model = runtime && runtime->GetViewModelProvider()
                       ? std::dynamic_pointer_cast<framework::StatefulViewModel>(
                             runtime->GetViewModelProvider()->CreateViewModel(view_model_type))
                       : nullptr;
  if (!row_model) {
    TXLOG_ERROR << "<IM> no view model for row type " << view_model_type;
    return nullptr;
  }
  auto* row = new ChatMessageWidget(reuse_id, list->ContentWidget());
  row->SetReuseKey(key);
  row->setFixedWidth(list->viewport()->width());
  auto view = std::make_shared<ChatMessageView>(row);
  view->SetItem(item_type, info_prop);
  view->SetViewModel(row_model);
  row->SetWidgetView(view);
  row_views_[row] = view;
  QObject::connect(row, &QObject::destroyed, guard_.get(), [this, row] { row_views_.erase(row); });
  std::weak_ptr<ChatMessageView> weak_view = view;
  QObject::connect(row, &ChatMessageWidget::SizeChanged, guard_.get(), [weak_view] {
    if (auto v = weak_view.lock()) v->FireViewEvent(ChatMessageView::kEventSizeChanged, nullptr, nullptr);
  });
  QObject::connect(row, &ChatMessageWidget::ContextMenuRequested, guard_.get(), [weak_view](Variant const& params) {
    if (auto v = weak_view.lock()) v->FireViewEvent(ChatMessageView::kEventMessageMenu, &params, nullptr);
  });
  QObject::connect(row, &ChatMessageWidget::AvatarMenuRequested, guard_.get(), [weak_view](Variant const& params) {
    if (auto v = weak_view.lock()) v->FireViewEvent(ChatMessageView::kEventAvatarMenu, &params, nullptr);
  });
  QObject::connect(row, &ChatMessageWidget::FilePreviewRequested, guard_.get(), [weak_view](Variant const& params) {
    if (auto v = weak_view.lock()) v->FireViewEvent(ChatMessageView::kEventFilePreview, &params, nullptr);
  });
  QObject::connect(row, &ChatMessageWidget::ActionRequested, guard_.get(),
                   [weak_view](quint32 action, Variant const& params) {
                     auto v = weak_view.lock();
                     if (auto const& row_model = v ? v->view_model() : nullptr) row_model->Handle(action, &params);
                   });
  Variant params(base::variant::kVariantTypeMap);
  params.Set(chat::chat_key::kMsgId, msg_id);
  params.Set("reuse_id", reuse_id.toStdString());
  params.Set("message_conv_id", message_conv_id_);
  params.Set(chat::chat_key::kTemplateType, template_type_);
  // Building binds the row: its view model finds the message as it attaches.
  view->Build(shared_from_this(), list->ContentWidget(), &params, true);
  RestoreSelection(list, index, row);
  return row;
}

void ChatHistoryListView::RestoreSelection(ChatReuseListWidget* list, int index, ChatMessageWidget* row) {
  if (!row || !row->item()) return;
  // A row that comes back into view shows the part of the selection it holds.
  const Variant record = list->ItemSelectionRecord(index);
  if (!record.IsNull()) {
    row->item()->SetSelected(true, record);
  } else if (row->item()->is_selected()) {
    row->item()->SetSelected(false, Variant());
  }
}

void ChatHistoryListView::BindRow(ChatMessageView* view, std::string const& msg_id) {
  auto row_model = view->view_model();
  if (!row_model) return;
  Variant params(base::variant::kVariantTypeMap);
  params.Set(chat::chat_key::kMsgId, msg_id);
  params.Set("message_conv_id", message_conv_id_);
  params.Set(chat::chat_key::kTemplateType, template_type_);
  row_model->Handle(talvex::ChatMessageBaseViewModel::kActionBindMessage, &params);
}

ChatMessageView* ChatHistoryListView::RowViewOf(QFReuseWidget* widget) const {
  if (!widget) return nullptr;
  auto it = row_views_.find(widget);
  return it == row_views_.end() ? nullptr : it->second.get();
}

void ChatHistoryListView::ItemSelectedAtIndex(ChatReuseListWidget* list, int index, Variant const& record) {
  if (!list || index < 0 || index >= static_cast<int>(items_.size())) return;
  auto* row = qobject_cast<ChatMessageWidget*>(list->ItemWidgetForIndex(index));
  if (row && row->item()) row->item()->SetSelected(true, record);
}

void ChatHistoryListView::ItemUnSelectedAtIndex(ChatReuseListWidget* list, int index) {
  if (!list || index < 0 || index >= static_cast<int>(items_.size())) return;
  auto* row = qobject_cast<ChatMessageWidget*>(list->ItemWidgetForIndex(index));
  if (row && row->item()) row->item()->SetSelected(false, Variant());
}

QString ChatHistoryListView::ItemUniStingAtIndex(ChatReuseListWidget const*, int index) {
  return QString::fromStdString(IdAt(index));
}

int ChatHistoryListView::ItemIndexAtUniSting(ChatReuseListWidget const*, QString const& key) {
  auto it = index_of_.find(key.toStdString());
  return it == index_of_.end() ? -1 : it->second;
}

void ChatHistoryListView::UpdateItemHeight(int index, int height) {
  const std::string msg_id = IdAt(index);
  if (msg_id.empty()) {
    TXLOG_WARN << "index [" << index << "], error";
    return;
  }
  // Every measured height is kept, so that a reload never puts rows back to
  // their estimates and moves the text being read.
  heights_[msg_id] = height;
}

std::string ChatHistoryListView::IdAt(int index) const {
  if (index < 0 || index >= static_cast<int>(items_.size())) return std::string();
  return MsgIdOf(items_[index]);
}

ChatMessageWidget* ChatHistoryListView::RowWidgetOf(std::string const& msg_id) const {
  auto it = index_of_.find(msg_id);
  if (it == index_of_.end() || !list_) return nullptr;
  return qobject_cast<ChatMessageWidget*>(list_->ItemWidgetForIndex(it->second));
}

std::vector<std::string> ChatHistoryListView::MessageIds() const {
  std::vector<std::string> ids;
  ids.reserve(items_.size());
  for (auto const& item : items_) ids.push_back(MsgIdOf(item));
  return ids;
}

// --- updates ---------------------------------------------------------------------

void ChatHistoryListView::QueueUpdate(Variant const& update) {
  const bool was_empty = pending_updates_.AsArray().empty();
  pending_updates_.Add(update);
  if (!was_empty) return;
  if (!batch_timer_) batch_timer_ = talvex_common::utils::timer::CreateTimer([this] { FlushUpdates(); });
  batch_timer_->Start(kBatchDelayMs, 0);
}

void ChatHistoryListView::RebuildIndex() {
  index_of_.clear();
  for (size_t i = 0; i < items_.size(); ++i) index_of_[MsgIdOf(items_[i])] = static_cast<int>(i);
}

void ChatHistoryListView::FlushUpdates() {
  if (!list_) return;
  const bool at_bottom = list_->IsScrollBottom();
  bool prepended = false;
  int anchor_offset = 0;
  const int anchor_index = list_->GetFirstFullyVisibleItem(&anchor_offset);
  const std::string anchor_id = IdAt(anchor_index);

  Variant::Array const updates = pending_updates_.AsArray();
  pending_updates_ = Variant(base::variant::kVariantTypeArray);
  bool need_reload = !updates.empty();
  // Rows only added at the end: the rows on screen keep their widgets and
  // heights, and only the new ones are measured and, if in view, built.
  const int count_before = static_cast<int>(items_.size());
  bool appended_only = count_before > 0;
  std::vector<std::string> refresh_ids;
  for (auto const& update : updates) {
    Variant const& list = update.Get(ChatHistoryListMsgListFields_kMsgListMsgList);
    const int type = update.GetInt32(ChatHistoryListMsgListFields_kIntegerMsgListUpdateType, 0);
    Variant::Array const& entries = list.AsArray();
    if (type != List::kUpdateAppend && type != List::kUpdateChanged) appended_only = false;
    switch (type) {
      case List::kUpdateReset:
        items_.clear();
        heights_.clear();
        index_of_.clear();
        [[fallthrough]];
      default:
        items_.reserve(items_.size() + entries.size());
        for (auto const& entry : entries) {
          auto placed = index_of_.try_emplace(MsgIdOf(entry), static_cast<int>(items_.size()));
          if (!placed.second) {
            items_[placed.first->second] = entry;
            appended_only = false;
            continue;
          }
          items_.push_back(entry);
        }
        break;
      case List::kUpdateOlderPage: {
        std::vector<Variant> older;
        for (auto const& entry : entries) {
          if (!index_of_.count(MsgIdOf(entry))) older.push_back(entry);
        }
        items_.insert(items_.begin(), older.begin(), older.end());
        RebuildIndex();
        prepended = true;
        break;
      }
      case List::kUpdateChanged:
        for (auto const& entry : entries) {
          const std::string id = MsgIdOf(entry);
          auto it = index_of_.find(id);
          if (it != index_of_.end() && ReuseIdOf(items_[it->second]) == ReuseIdOf(entry)) {
            // The row's view model refreshes it in place.
            need_reload = updates.size() > 1;
            refresh_ids.push_back(id);
            continue;
          }
          if (it != index_of_.end()) {
            items_[it->second] = entry;
            appended_only = false;
          } else {
            index_of_[id] = static_cast<int>(items_.size());
            items_.push_back(entry);
          }
          heights_.erase(id);
          QueueRemeasure(id);
        }
        break;
      case List::kUpdateReplaceOne:
        for (auto const& entry : entries) {
          auto it = index_of_.find(MsgIdOf(entry));
          if (it == index_of_.end()) continue;
          items_[it->second] = entry;
          QueueRemeasure(MsgIdOf(entry));
        }
        break;
      case List::kUpdateRemoved: {
        bool removed = false;
        for (auto const& entry : entries) {
          auto it = index_of_.find(MsgIdOf(entry));
          if (it == index_of_.end()) continue;
          items_.erase(items_.begin() + it->second);
          heights_.erase(MsgIdOf(entry));
          RebuildIndex();
          removed = true;
        }
        Q_UNUSED(removed);
        break;
      }
    }
  }
  // The batch is consumed: the prop no longer holds an update to apply.
  if (auto vm = view_model()) vm->SetPropValue(List::kPropMessageList, nullptr);

  if (need_reload && appended_only) {
    AppendRows(count_before, at_bottom);
  } else if (need_reload) {
    // Older messages above, or rows removed above, must not move the text
    // being read: the first fully visible row keeps its place.
    if ((prepended || !at_bottom) && !anchor_id.empty() && index_of_.count(anchor_id)) {
      const int target = index_of_[anchor_id];
      Reload(target, anchor_offset);
      // Rows measured around the anchor may differ from their estimates and
      // push it; put it back where the reader saw it.
      for (int pass = 0; pass < 2; ++pass) {
        const int drift = list_->ItemTopForIndex(target) - list_->ScrollValue() - anchor_offset;
        if (drift == 0) break;
        list_->SetVerticalScrollValue(list_->ScrollValue() + drift);
      }
    } else {
      Reload(at_bottom ? -2 : -1, 0);
    }
  }
  // Rows whose message changed in place rebind on screen; the others will as they come into view.
  for (auto const& id : refresh_ids) {
    auto* row = RowWidgetOf(id);
    if (ChatMessageView* view = RowViewOf(row)) BindRow(view, id);
  }
  if (scroll_to_bottom_once_) {
    scroll_to_bottom_once_ = false;
    list_->ScrollToBottom();
  }
  if (snap_after_flush_) {
    snap_after_flush_ = false;
    ScrollToBottom();
  }
  OnItemsChanged();
}

void ChatHistoryListView::AppendRows(int first, bool at_bottom) {
  QFDiffResult diff;
  for (int index = first; index < static_cast<int>(items_.size()); ++index) diff.AddInsert(index);
  if (diff.IsEmpty()) return;
  ++layout_count_;
  list_->DiffUpdate(diff);
  // As a reload at the bottom would: follow the new rows unless the reader
  // was elsewhere or is selecting.
  if (at_bottom && !list_->HasSelection()) list_->ScrollToBottom();
}

void ChatHistoryListView::Reload(int target_index, int offset) {
  ++reload_count_;
  ++layout_count_;
  laid_out_width_ = list_->viewport()->width();
  list_->Reload(target_index, offset);
}

void ChatHistoryListView::QueueRemeasure(std::string const& msg_id) {
  const bool was_empty = pending_height_ids_.AsArray().empty();
  pending_height_ids_.Add(msg_id);
  if (!was_empty) return;
  QTimer::singleShot(0, guard_.get(), [this] { RemeasurePending(); });
}

void ChatHistoryListView::RemeasurePending() {
  Variant::Array const ids = pending_height_ids_.AsArray();
  pending_height_ids_ = Variant(base::variant::kVariantTypeArray);
  if (!list_) return;
  std::vector<int> indices;
  for (auto const& id : ids) {
    auto it = index_of_.find(id.AsStr());
    if (it != index_of_.end()) indices.push_back(it->second);
  }
  std::sort(indices.begin(), indices.end());
  indices.erase(std::unique(indices.begin(), indices.end()), indices.end());
  if (!indices.empty()) list_->ReloadItems(indices);
}

void ChatHistoryListView::ScrollToMessage(std::string const& msg_id) {
  auto it = index_of_.find(msg_id);
  if (it == index_of_.end() || !list_) return;
  list_->SetCurrentIndex(it->second, true);
}

void ChatHistoryListView::ScrollToBottom() {
  if (!list_) return;
  list_->ClearSelection();
  list_->ScrollToBottom();
}

void ChatHistoryListView::ShowUnreadTip(Variant const& tip) {
  if (!unread_widget_) return;
  const int count = tip.GetInt32(ChatHistoryListShowUnreadMsgTipFields_kIntegerShowUnreadMsgTipUnreadMsgCount, 0);
  unread_widget_->SetText(
      QString::fromStdString(tip.GetString(ChatHistoryListShowUnreadMsgTipFields_kStringShowUnreadMsgTipUnreadMsgTips)));
  unread_widget_->setVisible(count > 0);
  LayoutUnreadWidget();
}

void ChatHistoryListView::SendSnap(bool snap) {
  auto vm = view_model();
  if (!vm) return;
  Variant params(base::variant::kVariantTypeMap);
  params.Set(ChatHistoryListIsScrollBottomFields_kBooleanIsSnapBottom, snap);
  vm->Handle(List::kActionScrollPosition, &params);
}

// --- events, menus and copy -----------------------------------------------------

bool ChatHistoryListView::HandleViewEvent(AppBaseView* source, int event, Variant const* params, Variant*) {
  auto* row_view = dynamic_cast<ChatMessageView*>(source);
  ChatMessageWidget* row = row_view ? row_view->widget() : nullptr;
  if (!row || !row->item()) {
    TXLOG_ERROR << "invalid msg info";
    return false;
  }
  const std::string msg_id = row->item()->item_msg_id();
  switch (event) {
    case ChatMessageView::kEventSizeChanged: {
      const int height = row->sizeHint().height();
      auto it = heights_.find(msg_id);
      if (it == heights_.end() || it->second != height) {
        heights_[msg_id] = height;
        QueueRemeasure(msg_id);
      }
      return true;
    }
    case ChatMessageView::kEventMessageMenu: {
      if (!params || !list_) return false;
      std::vector<int> selected;
      list_->GetSelectionVecIndex(&selected);
      auto it = index_of_.find(msg_id);
      const int index = it == index_of_.end() ? -1 : it->second;
      const bool this_selected = std::find(selected.begin(), selected.end(), index) != selected.end();
      const bool from_more = params->GetBoolean("from_more", false);
      if (!from_more && this_selected && selected.size() > 1) {
        TXLOG_INFO << "[chat menu] list menu requested at " << params->GetInt32("pt_x") << ","
                   << params->GetInt32("pt_y") << " for " << selected.size() << " messages";
        return true;
      }
      if (!this_selected) list_->ClearSelection();
      TXLOG_INFO << "[chat menu] message menu requested, msg_id=" << msg_id
                 << ", position_type=" << (from_more && params->GetBoolean("is_self", false) ? 2 : 1)
                 << ", selectable=" << (template_type_ != ToInt(chat::TemplateType::kRecord));
      ShowMessageMenu(msg_id, chat::ChattingMenuViewModel::kTargetList);
      return true;
    }
    case ChatMessageView::kEventAvatarMenu:
      TXLOG_INFO << "[chat menu] avatar menu requested, msg_id=" << msg_id;
      ShowMessageMenu(msg_id, chat::ChattingMenuViewModel::kTargetAvatar);
      return true;
    case ChatMessageView::kEventFilePreview:
      ShowFilePreview(msg_id);
      return true;
    default:
      return false;
  }
}

void ChatHistoryListView::ShowFilePreview(std::string const& msg_id) {
  Variant params = chat::FilePreviewViewModel::ParamsOfMessage(msg_id, template_type_);
  if (params.IsNull()) {
    TXLOG_WARN << "[chat file] no file message to show, msg_id=" << msg_id;
    return;
  }
  if (!file_preview_) {
    auto* runtime = view_model() ? view_model()->GetModuleRuntime4ATG() : nullptr;
    file_preview_ = std::make_unique<chat::PageController>(
        "chat file preview", [runtime] { return std::make_shared<FilePreviewView>(runtime); }, true);
  }
  file_preview_->Call("show", &params);
}

void ChatHistoryListView::ShowMessageMenu(std::string const& msg_id, int target) {
  using Menu = chat::ChattingMenuViewModel;
  if (!menu_model_) {
    menu_model_ = std::make_shared<Menu>();
    Variant none;
    menu_model_->DidCreated(&none);
    menu_model_->DidAttached(&none);
  }
  const int scene = template_type_ == ToInt(chat::TemplateType::kRecord) ? 0 : 1;
  Variant ask = Variant::Map{{"msg_id", msg_id}, {"target", target}, {"scene", scene}};
  const size_t published = menu_model_->PropSetCount(Menu::kPropChatMenuList);
  menu_model_->Handle(Menu::kActionShowChatMenu, &ask);
  // Nothing new published: no menu for this message (the reason is logged).
  if (menu_model_->PropSetCount(Menu::kPropChatMenuList) == published) return;
  Variant const* items = menu_model_->GetPropValue(Menu::kPropChatMenuList);
  if (!items || !items->IsArray() || items->AsArray().empty() || !list_) return;
  auto* menu = new QMenu(list_);
  menu->setObjectName("ChatMessageMenu");
  menu->setAttribute(Qt::WA_DeleteOnClose);
  std::weak_ptr<framework::StatefulViewModel> model = menu_model_;
  for (auto const& item : items->AsArray()) {
    QAction* action = menu->addAction(QString::fromStdString(item.GetString("title")));
    action->setEnabled(item.GetBoolean("enable", true));
    const int type = item.GetInt32("type");
    QObject::connect(action, &QAction::triggered, menu, [model, type] {
      if (auto vm = model.lock()) {
        Variant click = Variant::Map{{"type", type}};
        vm->Handle(Menu::kActionChatMenuItemClick, &click);
      }
    });
  }
  last_menu_ = menu;
  menu->popup(QCursor::pos());
}

void ChatHistoryListView::CopySelection() {
  if (!list_) return;
  std::vector<int> indices;
  list_->GetSelectionVecIndex(&indices);
  if (indices.empty()) return;
  if (indices.size() == 1) {
    auto* row = qobject_cast<ChatMessageWidget*>(list_->ItemWidgetForIndex(indices[0]));
    if (row && row->item()) {
      row->item()->CopyContent();
      return;
    }
  }
  std::sort(indices.begin(), indices.end());
  Variant ids(base::variant::kVariantTypeArray);
  for (int index : indices) {
    const std::string id = IdAt(index);
    if (!id.empty()) ids.Add(id);
  }
  if (auto vm = view_model()) vm->Handle(List::kActionGetMimeData, &ids);
}

void ChatHistoryListView::OnGetMimeDataResult(Variant const& entries) {
  if (!entries.IsArray() || entries.AsArray().empty()) return;
  QString text;
  QString html;
  for (auto const& entry : entries.AsArray()) {
    if (!text.isEmpty()) {
      text += "\n";
      html += "<br />";
    }
    if (entry.Has("nickname")) {
      text += QString::fromStdString(entry.GetString("nickname")) + "\n";
      html += Escaped(entry.GetString("nickname")) + "<br />";
    }
    const QString body = QString::fromStdString(entry.GetString("text"));
    QString body_html = QString::fromStdString(entry.GetString("html"));
    if (body_html.isEmpty()) {
      if (entry.Has("img")) {
        body_html = "<img src=\"" + QUrl::fromLocalFile(QString::fromStdString(entry.GetString("img"))).toString() +
                    "\" />";
      } else {
        body_html = body.toHtmlEscaped();
      }
    }
    if (!body.isEmpty()) {
      text += body + "\n";
      html += body_html + "<br />";
    }
    const std::string tail = entry.GetString("tail");
    if (!tail.empty()) {
      text += QString::fromStdString(tail) + "\n";
      html += Escaped(tail) + "<br />";
    }
  }
  TXLOG_INFO << "mime data of text:" << text.toStdString();
  auto* mime = new QMimeData();
  if (!text.isEmpty()) {
    TXLOG_INFO << "set text data";
    mime->setText(text);
  }
  if (!html.isEmpty()) {
    TXLOG_INFO << "set html data";
    mime->setHtml("<html><body>" + html + "</body></html>");
  }
  QApplication::clipboard()->setMimeData(mime);
}

}  // namespace QtView
