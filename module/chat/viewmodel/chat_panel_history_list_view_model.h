#pragma once

#include <memory>

#include "chat/viewmodel/chat_history_list_base_view_model.h"
#include "base/timer/tx_timer.h"

namespace chat {

// The chat panel's list: received messages wait up to 400 ms so that a burst
// reaches the view as one update, and the messages that arrive while the user
// reads above the bottom are counted on the unread tip.
class ChatPanelHistoryListViewModel : public ChatHistoryListBaseViewModel {
 public:
  static constexpr int kFlushIntervalMs = 400;

  ~ChatPanelHistoryListViewModel() override;
  void OnViewAttached(Variant const* params) override;
  void OnViewDetached() override;

  // Client file model events: an upload refused (1), a transfer failure (2).
  void OnEventFileRefused(Variant const* payload);
  void OnEventFileFailure(Variant const* payload);

  bool flush_pending() const { return recv_msg_timer_ != nullptr; }

 protected:
  bool ScheduleRecvMsgs(bool immediately, bool count_unread) override;
  bool IsChatTypeShow(int chat_type) const override;
  void UpdateRecvMsgs(bool count_unread);

 private:
  std::unique_ptr<talvex_common::utils::timer::TXTimer> recv_msg_timer_;
};

// The history of a past meeting.
class ChatRecordPanelHistoryListViewModel : public ChatHistoryListBaseViewModel {
 protected:
  void ParseInitParams(Variant const* params) override;
};

}  // namespace chat
