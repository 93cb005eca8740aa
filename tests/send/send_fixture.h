// A joined meeting with the chat module running on it, and what a test needs
// to watch the send model: its refusals, reminders and mixed-send events.
#pragma once

#include <QFile>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "base/analytics/analytics.h"
#include "chat/biz_model/chat_biz_model.h"
#include "chat/biz_model/chat_send_message_biz_model.h"
#include "chat/runtime/chat_ids.h"
#include "chat/runtime/chat_module_runtime.h"
#include "framework/config/configure_service.h"
#include "framework/extension/extension.h"
#include "framework/meeting/private_chat_record.h"
#include "framework/resource/resource.h"
#include "framework/viewmodel/view_model.h"
#include "framework/ui/ui_service.h"
#include "sim/meeting_sim.h"
#include "support/test_util.h"

namespace send_test {

using SendModel = TypedBizModel::ChatSendMessage::ModelImpl;
using Strings = std::vector<std::string>;

inline std::string Text(char const* name) {
  return framework::Resource::GetInstance()->GetString(framework::NameId(name));
}
inline std::string Text(uint32_t id) { return framework::Resource::GetInstance()->GetString(id); }
inline void Configure(char const* section, char const* key, Variant value) {
  talvexsdk::utils::service::GetConfigureService()->Set(section, key, std::move(value));
}

inline Variant Member(std::string const& id, std::string const& role = "member") {
  return Variant::Map{{"user_id", id}, {"app_uid", "uid-" + id}, {"app_id", "1400"},
                      {"nickname", "Member " + id}, {"role", role}};
}
// The receiver as the member selection stores it.
inline Variant Receiver(std::string const& id, int receiver_type = 1, std::string const& role = "member") {
  Variant r = Member(id, role);
  r.Set("receiver_type", receiver_type);
  return r;
}
inline Variant GroupReceiver(int receiver_type) { return Variant::Map{{"receiver_type", receiver_type}}; }

// A file under the test's own directory; `size` >= 0 makes it sparse.
inline std::string WriteFile(std::string const& name, QByteArray const& bytes, qint64 size = -1) {
  const std::string path = talvex_test::TempRoot() + "/" + name;
  QFile file(QString::fromStdString(path));
  EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
  file.write(bytes);
  if (size >= 0) {
    EXPECT_TRUE(file.resize(size));
  }
  return path;
}
inline QByteArray PngBytes() { return QByteArray("\x89PNG\r\n\x1a\n", 8) + QByteArray(64, 'p'); }

inline Variant TextParams(std::string const& text, int template_type = 2) {
  return Variant::Map{{chat::kSendFieldText, text}, {"template_type", template_type}};
}
inline Variant ImageParams(std::string const& path) { return Variant::Map{{chat::kSendFieldImagePath, path}}; }
inline Variant FileParams(std::vector<std::string> const& paths) {
  Variant::Array list(paths.begin(), paths.end());
  return Variant::Map{{"msg_file_paths", std::move(list)}};
}
inline Variant TextItem(std::string const& text) {
  return Variant::Map{{chat::kSendFieldItemType, 0}, {chat::kSendFieldText, text}};
}
inline Variant ImageItem(std::string const& path) {
  return Variant::Map{{chat::kSendFieldItemType, 3}, {chat::kSendFieldImagePath, path}};
}

class SendFixture : public ::testing::Test {
 protected:
  void SetUp() override {
    talvex_test::IsolateUserDirectories();
    framework::extension::GetExtensionService()->Clear();
    base::analytics::ClearRecordedEvents();
    ui_ = std::make_shared<framework::RecordingUIService>();
    framework::SetUIService(ui_);
    meeting_.Install();
    meeting_.meeting().Join();
    meeting_.send_desk().set_latency_ms(20);
    for (char const* id : {"u2", "u3", "u4"}) meeting_.members().AddMember(Member(id));
    meeting_.members().AddMember(Member("u-host", "host"));
    // The settings file outlives a test; what one test stored must not
    // decide the next.
    for (char const* key : {"im.chat_btn_tips_show", "im.notice_tips_show", "im.msg_send_shortcut",
                            "im.msg_input_height"}) {
      Variant reset = Variant::Map{{"key", key}, {"value", Variant()}};
      meeting_.settings().Invoke(4, &reset, nullptr);
    }
    ASSERT_TRUE(runtime_.Activate());
    send_ = std::dynamic_pointer_cast<chat::ChatSendMessageBizModel>(
        runtime_.ModelOf(chat::kChatSendMessageBizModelId));
    ASSERT_NE(send_, nullptr);
    send_->Subscribe(SendModel::kEventSendRefused, 7, Collect(refusals_));
    send_->Subscribe(SendModel::kEventSendReminder, 7, Collect(reminders_));
    send_->Subscribe(SendModel::kEventMixedSent, 7, Collect(mixed_sent_));
  }
  void TearDown() override {
    if (send_) send_->Unsubscribe(7);
    send_.reset();
    if (runtime_.IsActivated()) runtime_.Unactivate();
    meeting_.Uninstall();
    framework::SetUIService(nullptr);
    for (auto [section, key] : {std::pair{"chat", "send_file_max_concurrency"}, {"chat", "send_file_enable"},
                                {"chat", "send_button_show_more"}, {"chat", "send_button_red_dot_more"},
                                {"meeting", "meeting-ability-chat-manual-check"},
                                {"meeting-ability", "account_setting_send_pic"},
                                {"meeting-ability", "account_setting_send_file"}}) {
      Configure(section, key, Variant());
    }
  }

  static std::shared_ptr<framework::EventHandler> Collect(std::vector<Variant>& into) {
    return std::make_shared<framework::EventHandler>([&into](Variant const* p) { into.push_back(p ? *p : Variant()); });
  }

  bool SendText(Variant const& params) { return send_->Invoke(SendModel::kSendTextMessage, &params, nullptr); }
  bool SendImage(Variant const& params) { return send_->Invoke(SendModel::kSendImageMessage, &params, nullptr); }
  bool SendFiles(Variant const& params) { return send_->Invoke(SendModel::kSendFileMessage, &params, nullptr); }
  // As the input does: the list goes to the client's message model.
  void SendMixed(Variant const& items) { meeting_.messages().Invoke(59, &items, nullptr); }
  void ChooseReceiver(Variant const& receiver) { meeting_.private_chats().SetReceiver(receiver); }

  std::vector<Variant> Sends(uint32_t method) { return meeting_.messages().InvocationsOf(method); }
  Strings SentTexts() {
    Strings texts;
    for (auto const& sent : Sends(7)) texts.push_back(sent.GetString("text_elem_content"));
    return texts;
  }
  size_t AllSends() {
    size_t n = 0;
    for (uint32_t m : {7u, 23u, 40u, 30u, 31u, 52u, 57u}) n += meeting_.messages().InvocationsOf(m).size();
    return n;
  }
  // The refusals so far, then forgets them.
  Strings TakeRefusals() {
    Strings texts;
    for (auto const& r : refusals_) texts.push_back(r.IsString() ? r.AsStr() : "<not a string>");
    refusals_.clear();
    return texts;
  }
  size_t Reported(char const* event) { return base::analytics::RecordedEvents(event).size(); }

  sim::MeetingSimulator meeting_;
  chat::ChatModuleRuntime runtime_;
  std::shared_ptr<chat::ChatSendMessageBizModel> send_;
  std::shared_ptr<framework::RecordingUIService> ui_;
  std::vector<Variant> refusals_, reminders_, mixed_sent_;
};

}  // namespace send_test
