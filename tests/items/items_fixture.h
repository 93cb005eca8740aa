#pragma once

#include <gtest/gtest.h>

#include <QString>
#include <memory>
#include <string>

#include "base/variant/variant.h"
#include "chat/ui/desktop/extension/chatting_panel_show_view.h"
#include "chat/ui/desktop/view/chat/chat_message_widget.h"
#include "chat/viewmodel/chat_panel_history_list_view_model.h"
#include "framework/chat/chat_schema_keys.h"
#include "framework/ui/ui_service.h"
#include "sim/chat_records.h"
#include "sim/meeting_sim.h"
#include "support/test_util.h"

// The module's resources live in a static library: register them here.
inline void InitChatResourcesOnce() {
  static bool done = [] {
    Q_INIT_RESOURCE(chat_resources);
    return true;
  }();
  (void)done;
}

namespace items_test {

inline void InitChatResources() { InitChatResourcesOnce(); }

// A message as a row's view model publishes it.
inline Variant BaseInfo(std::string const& msg_id, int chat_type, std::string const& nickname, bool self = false) {
  Variant info(base::variant::kVariantTypeMap);
  info.Set(ChatMsgBaseInfoFields_kStringBaseInfoMsgId, msg_id);
  info.Set("chat_type", chat_type);
  info.Set(ChatMsgBaseInfoFields_kBooleanBaseInfoIsFromSelf, self);
  info.Set(ChatMsgBaseInfoFields_kStringBaseInfoNickName, nickname);
  info.Set(ChatMsgBaseInfoFields_kIntegerBaseInfoMsgStatus, 2);
  return info;
}

inline Variant TextPiece(int type, std::string const& content) {
  Variant piece(base::variant::kVariantTypeMap);
  piece.Set(ChatTextMessageItemFields_kIntegerItemType, type);
  piece.Set(ChatTextMessageItemFields_kStringItemContent, content);
  return piece;
}

inline Variant TextInfo(std::string const& msg_id, std::string const& text, std::string const& nickname = "Avery Quinn",
                        bool self = false) {
  Variant info = BaseInfo(msg_id, 0, nickname, self);
  Variant pieces(base::variant::kVariantTypeArray);
  pieces.Add(TextPiece(0, text));
  info.Set(ChatTextMessageInfoFields_kPtrInfoArrayItem, pieces);
  return info;
}

// A row as the list makes it: fixed to the list's width, then bound.
inline std::unique_ptr<ChatMessageWidget> MakeRow(Variant const& info, int width = 360) {
  auto row = std::make_unique<ChatMessageWidget>(QString("reuse_id%1_2").arg(info.GetInt32("chat_type")));
  row->setFixedWidth(width);
  row->SetMessageInfo(info);
  return row;
}

// A joined simulated meeting, for tests that open the chat panel.
class MeetingTest : public ::testing::Test {
 protected:
  void SetUp() override {
    InitChatResources();
    talvex_test::IsolateUserDirectories();
    framework::SetUIService(std::make_shared<framework::RecordingUIService>());
    meeting_.Install();
    meeting_.meeting().Join();
  }

  void TearDown() override {
    meeting_.Uninstall();
    framework::SetUIService(nullptr);
  }

  // No update waits in the view, and its view model neither flushes nor pages.
  static bool Settled(QtView::ChattingPanelShowView* panel) {
    auto* model = static_cast<chat::ChatPanelHistoryListViewModel*>(panel->view_model().get());
    return !panel->HasPendingUpdates() && !model->flush_pending() && !model->is_getting_more();
  }

  std::string Post(sim::Sender const& from, std::string const& text) {
    return meeting_.messages().Post(sim::TextRecord(meeting_.meeting().meeting_id(), from, text));
  }

  const sim::Sender kAvery{"u-avery", "Avery Quinn"};
  // First, so that every timer the meeting and the chat make runs on it.
  talvex_test::TestClock clock_;
  sim::MeetingSimulator meeting_;
};

}  // namespace items_test
