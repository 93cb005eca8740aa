// The chat input's view model through the simulated meeting: what it shows,
// what it sends, and what it tells the user.
#include "send_fixture.h"

#include "base/util/file_util.h"
#include "chat/biz_model/chat_biz_model_helper.h"
#include "chat/model/send_button_config_model.h"
#include "chat/util/chat_strings.h"
#include "chat/util/utils.h"
#include "chat/viewmodel/chat_input_view_model.h"
#include "chat/viewmodel/view_model_types.h"
#include "framework/viewmodel/authorize_view_model.h"

namespace send_test {
namespace {

using VM = chat::ChatInputViewModel;
using ChatModel = TypedBizModel::Chat::ModelImpl;
using talvex_test::LogCapture;
using talvex_test::WaitUntil;

class InputTest : public SendFixture {
 protected:
  void TearDown() override {
    for (auto& vm : vms_) vm->DidDetached();
    vms_.clear();
    talvex::AuthorizeState::Set(talvex::AuthorizeState::kAuthorized);
    talvexsdk::utils::service::GetConfigureService()->Set("chat", "send_button_show_more", Variant());
    SendFixture::TearDown();
  }
  std::shared_ptr<VM> Attach(Variant params = Variant()) {
    // As the client asks for it: by number, from the module's provider.
    auto vm = std::dynamic_pointer_cast<VM>(
        runtime_.GetViewModelProvider()->CreateViewModel(chat::kViewModelPanelInput));
    EXPECT_NE(vm, nullptr);
    if (!vm) return nullptr;
    vm->DidCreated(&params);
    vm->DidAttached(&params);
    vms_.push_back(vm);
    return vm;
  }
  static bool Bool(std::shared_ptr<VM> const& vm, uint32_t prop) { return vm->PickPropValue(prop).AsBoolean(); }
  void Store(char const* key, Variant value) { chat::WriteLocalSetting(key, value); }
  std::vector<std::string> Toasts() const {
    std::vector<std::string> texts;
    for (auto const& t : ui_->toasts()) texts.push_back(t.text);
    return texts;
  }
  Variant SendItems(std::vector<std::string> const& texts) {
    Variant items(base::variant::kVariantTypeArray);
    for (auto const& t : texts) items.Add(TextItem(t));
    return items;
  }
  std::vector<std::shared_ptr<VM>> vms_;
};

TEST_F(InputTest, AttachPublishesTheStoredSettingsAndTheButtonState) {
  auto fresh = Attach();
  EXPECT_FALSE(Bool(fresh, VM::kPropSendShortcut));
  EXPECT_DOUBLE_EQ(fresh->PickPropValue(VM::kPropInputHeight).AsDouble(), 85.0);
  EXPECT_TRUE(Bool(fresh, VM::kPropSendButtonVisible));
  EXPECT_TRUE(Bool(fresh, VM::kPropSendState));
  EXPECT_TRUE(Bool(fresh, VM::kPropChatEnabled));
  EXPECT_FALSE(Bool(fresh, VM::kPropDisabledIcon));
  EXPECT_EQ(fresh->PickPropValue(VM::kPropDisabledText).AsStr(), "");
  const std::string cache = fresh->PickPropValue(VM::kPropImageCacheDir).AsStr();
  EXPECT_TRUE(util::file::IsDirectory(cache)) << cache;
  Variant strings = fresh->PickPropValue(VM::kPropInputStrings);
  EXPECT_EQ(strings.GetString("ChatInputUIDataFields_kStringUIDataSendMsgText"), Text("chat.input.send"));
  EXPECT_FALSE(strings.GetString("ChatInputUIDataFields_kStringUIDataDefaultInputEditText").empty());
  EXPECT_FALSE(fresh->HasProp(VM::kPropDraft)) << "no draft, nothing to restore";

  Store("im.msg_send_shortcut", true);
  Store("im.msg_input_height", 132.5);
  auto stored = Attach();
  EXPECT_TRUE(Bool(stored, VM::kPropSendShortcut));
  EXPECT_DOUBLE_EQ(stored->PickPropValue(VM::kPropInputHeight).AsDouble(), 132.5);
}

TEST_F(InputTest, TheSendButtonFollowsTheTextAndTheMoreButtonAndPublishesOnlyChanges) {
  auto vm = Attach();
  const size_t visible_count = vm->PropSetCount(VM::kPropSendButtonVisible);
  const Variant yes(true), no(false);
  vm->Handle(VM::kActionTextChanged, &yes);
  vm->Handle(VM::kActionTextChanged, &yes);
  EXPECT_EQ(vm->PropSetCount(VM::kPropSendButtonVisible), visible_count + 1) << "the same value publishes once";
  EXPECT_FALSE(Bool(vm, VM::kPropSendButtonVisible));
  EXPECT_FALSE(Bool(vm, VM::kPropSendState)) << "with text and the more button offered";

  // The configuration takes the more button away: the send state shows.
  talvexsdk::utils::service::GetConfigureService()->Set("chat", "send_button_show_more", false);
  auto config = std::dynamic_pointer_cast<chat::SendButtonConfigModel>(
      chat::GetChatModuleModel(&runtime_, chat::kSendButtonConfigModelId));
  ASSERT_NE(config, nullptr);
  config->Refresh();
  EXPECT_TRUE(Bool(vm, VM::kPropSendState));
  EXPECT_FALSE(Bool(vm, VM::kPropSendButtonVisible));

  vm->Handle(VM::kActionTextChanged, &no);
  EXPECT_TRUE(Bool(vm, VM::kPropSendButtonVisible));
  EXPECT_TRUE(Bool(vm, VM::kPropSendState));

  // A meeting without pictures and files never offers the more button.
  talvexsdk::utils::service::GetConfigureService()->Set("chat", "send_button_show_more", true);
  meeting_.meeting_settings().SetSwitch("im_file_and_picture", false);
  config->Refresh();
  vm->Handle(VM::kActionTextChanged, &yes);
  EXPECT_TRUE(Bool(vm, VM::kPropSendState));

  const Variant not_bool("yes");
  const size_t before = vm->PropSetCount(VM::kPropSendButtonVisible);
  vm->Handle(VM::kActionTextChanged, &not_bool);
  vm->Handle(VM::kActionTextChanged, nullptr);
  EXPECT_EQ(vm->PropSetCount(VM::kPropSendButtonVisible), before);
}

TEST_F(InputTest, ChatPermissionsDisableTheInput) {
  meeting_.authority().SetPolicy(3);
  auto vm = Attach();
  EXPECT_FALSE(Bool(vm, VM::kPropChatEnabled));
  EXPECT_TRUE(Bool(vm, VM::kPropDisabledIcon));
  EXPECT_FALSE(vm->PickPropValue(VM::kPropDisabledText).AsStr().empty());
  meeting_.authority().SetPolicy(0);
  EXPECT_TRUE(Bool(vm, VM::kPropChatEnabled));
  EXPECT_FALSE(Bool(vm, VM::kPropDisabledIcon));
  EXPECT_EQ(vm->PickPropValue(VM::kPropDisabledText).AsStr(), "");

  // Disabled without the icon: the text still says why.
  meeting_.authority().SetMethod(9, [](Variant const*, Variant* result) {
    Variant info(base::variant::kVariantTypeMap);
    info.Set("disable_chat", true);
    info.Set("need_show_icon", false);
    info.Set("disable_chat_desc", "Chat is paused");
    *result = info;
    return true;
  });
  meeting_.authority().FireEvent(0, Variant());
  EXPECT_FALSE(Bool(vm, VM::kPropChatEnabled));
  EXPECT_FALSE(Bool(vm, VM::kPropDisabledIcon));
  EXPECT_EQ(vm->PickPropValue(VM::kPropDisabledText).AsStr(), "Chat is paused");
}

TEST_F(InputTest, ASendGoesThroughTheMessageModelWithTheSurfaceStamped) {
  Variant surface(base::variant::kVariantTypeMap);
  surface.Set("template_type", 1);
  auto vm = Attach();
  vm->SetNewParams(&surface);
  EXPECT_EQ(vm->template_type(), 1);
  const Variant items = SendItems({"hello all"});
  vm->Handle(VM::kActionSend, &items);
  auto lists = Sends(59);
  ASSERT_EQ(lists.size(), 1u);
  EXPECT_EQ(lists[0][0].GetInteger("template_type"), 1);
  auto texts = Sends(7);
  ASSERT_EQ(texts.size(), 1u);
  EXPECT_EQ(texts[0].GetString("text_elem_content"), "hello all");
  EXPECT_EQ(texts[0].GetInteger("message_send_from_type"), 1);
  // The pipeline reports the list went; the input clears.
  EXPECT_TRUE(vm->HasProp(VM::kPropClearInput));
  EXPECT_FALSE(Bool(vm, VM::kPropSendButtonVisible));

  // No network: a toast and nothing sent. Signed out: the authorize layer
  // says so and nothing is sent.
  meeting_.messages().ClearInvocations();
  meeting_.network().SetNetworkUp(false);
  vm->Handle(VM::kActionSend, &items);
  EXPECT_EQ(Toasts(), std::vector<std::string>{Text(chat::kTextNoNetwork)});
  meeting_.network().SetNetworkUp(true);
  talvex::AuthorizeState::Set(talvex::AuthorizeState::kLoggedOut);
  vm->Handle(VM::kActionSend, &items);
  EXPECT_EQ(ui_->toasts().size(), 2u);
  EXPECT_EQ(ui_->toasts()[1].text, talvex::AuthorizeState::RefusalText(talvex::AuthorizeState::kLoggedOut));
  talvex::AuthorizeState::Set(talvex::AuthorizeState::kAuthorized);
  const Variant not_a_list("hello");
  vm->Handle(VM::kActionSend, &not_a_list);
  vm->Handle(VM::kActionSend, nullptr);
  EXPECT_TRUE(Sends(59).empty());
  EXPECT_EQ(AllSends(), 0u);
}

TEST_F(InputTest, RefusalsOfThePipelineBecomeToastsAndKeepTheText) {
  auto vm = Attach();
  const size_t clears = vm->PropSetCount(VM::kPropClearInput);
  const Variant webp = ImageParams(talvex_test::TempRoot() + "/sticker.webp");
  vm->Handle(VM::kActionSendImage, &webp);
  ASSERT_EQ(ui_->toasts().size(), 1u);
  EXPECT_EQ(ui_->toasts()[0].text, Text("chat.send.webp"));
  EXPECT_EQ(ui_->toasts()[0].duration_ms, 2000u);

  std::string long_text(3001, 'a');
  const Variant items = SendItems({long_text});
  vm->Handle(VM::kActionSend, &items);
  EXPECT_EQ(ui_->toasts().back().text, Text("chat.send.text_too_long"));
  EXPECT_EQ(vm->PropSetCount(VM::kPropClearInput), clears) << "a refused send never clears the input";

  LogCapture log;
  const Variant files = FileParams({WriteFile("from_input.txt", "data")});
  vm->Handle(VM::kActionSendFile, &files);
  EXPECT_TRUE(log.Contains("<IM> send file in input"));
  EXPECT_TRUE(WaitUntil([&] { return Sends(52).size() == 1; }));
  send_->FireEvent(SendModel::kEventSendRefused, Variant(12));
  EXPECT_EQ(ui_->toasts().size(), 2u) << "a refusal without a text shows nothing";
}

TEST_F(InputTest, AHeldPublicSendIsConfirmedOrDropped) {
  auto vm = Attach();
  Variant id("m-private");
  chat::InvokeChatBizModel(&runtime_, ChatModel::kSetReminderMsgId, &id);
  const Variant items = SendItems({"to everyone"});
  vm->Handle(VM::kActionSend, &items);
  EXPECT_EQ(AllSends(), 0u);
  auto const* alert = ui_->LastOpenAlert();
  ASSERT_NE(alert, nullptr);
  EXPECT_EQ(alert->request.type, 1);
  EXPECT_EQ(alert->request.title, Text(chat::kTextConfirmSendTitle));
  EXPECT_EQ(alert->request.content, Text(chat::kTextConfirmSendContent));
  EXPECT_EQ(alert->request.positive_text, Text(chat::kTextConfirmSendPositive));
  EXPECT_EQ(alert->request.negative_text, Text(chat::kTextConfirmSendNegative));
  EXPECT_TRUE(alert->request.top_most);
  auto pending = chat::InvokeChatBizModel(&runtime_, ChatModel::kHasReminder);
  ASSERT_TRUE(pending);
  EXPECT_FALSE(pending->AsBoolean()) << "the open alert holds back a second reminder";

  ASSERT_TRUE(ui_->Answer(alert->id, 2));
  auto texts = Sends(7);
  ASSERT_EQ(texts.size(), 1u) << "the mixed list goes once confirmed";
  EXPECT_EQ(texts[0].GetString("text_elem_content"), "to everyone");
  EXPECT_EQ(base::analytics::RecordedEvents("inmeeting_im_null_null_send_null_clk").size(), 1u);

  // A text held by the send model itself goes by the text method; a cancel
  // drops it.
  Variant enable(false);
  chat::InvokeChatBizModel(&runtime_, ChatModel::kSetReminderDisabled, &enable);
  EXPECT_TRUE(SendText(TextParams("held text")));
  ASSERT_NE(ui_->LastOpenAlert(), nullptr);
  ASSERT_TRUE(ui_->Answer(ui_->LastOpenAlert()->id, 2));
  ASSERT_EQ(Sends(7).size(), 2u);
  EXPECT_EQ(Sends(7)[1].GetString("text_elem_content"), "held text");

  chat::InvokeChatBizModel(&runtime_, ChatModel::kSetReminderDisabled, &enable);
  EXPECT_TRUE(SendText(TextParams("never mind")));
  ASSERT_TRUE(ui_->Answer(ui_->LastOpenAlert()->id, 0));
  EXPECT_EQ(Sends(7).size(), 2u);
  EXPECT_EQ(base::analytics::RecordedEvents("inmeeting_im_null_null_cancel_null_clk").size(), 1u);

  // Without a pending reminder nothing is asked.
  const size_t alerts = ui_->alerts().size();
  Variant no_reminder("");
  chat::InvokeChatBizModel(&runtime_, ChatModel::kSetReminderMsgId, &no_reminder);
  Variant payload(base::variant::kVariantTypeMap);
  payload.Set("message_info", TextParams("x"));
  payload.Set("send_type", 0);
  vm->ConfirmSend(&payload);
  vm->ConfirmSend(nullptr);
  EXPECT_EQ(ui_->alerts().size(), alerts);
}

TEST_F(InputTest, PastedTextIsMatchedIntoItemsAndAFailedMatchIsOneTextItem) {
  meeting_.faces().Load();
  auto vm = Attach();
  Variant ask(base::variant::kVariantTypeMap);
  ask.Set("ChatInputMatchTextToMsgItemsFields_kStringMatchText", "hi [Smile]");
  ask.Set("ChatInputMatchTextToMsgItemsFields_kStringMatchId", "paste-1");
  vm->Handle(VM::kActionMatchTextToMsgItems, &ask);
  Variant result = vm->PickPropValue(VM::kPropMatchResult);
  EXPECT_EQ(result.GetString("ChatInputCallBackMatchTextToMsgItemsFields_kStringMatchId"), "paste-1");
  Variant items = result.Get("ChatInputCallBackMatchTextToMsgItemsFields_kArrayMsgItems");
  ASSERT_EQ(items.Size(), 2u);
  EXPECT_EQ(items[0].GetInteger("ChatInputCallBackMatchTextToMsgItemsFields_kIntegerMsgItemsItemType"), 0);
  EXPECT_EQ(items[0].GetString("ChatInputCallBackMatchTextToMsgItemsFields_kStringMsgItemsMsgText"), "hi ");
  EXPECT_EQ(items[1].GetInteger("ChatInputCallBackMatchTextToMsgItemsFields_kIntegerMsgItemsItemType"), 1);
  EXPECT_EQ(items[1].GetInteger("ChatInputCallBackMatchTextToMsgItemsFields_kIntegerMsgItemsMsgEmojiIndex"), 0);
  EXPECT_EQ(items[1].GetString("ChatInputCallBackMatchTextToMsgItemsFields_kStringMsgItemsMsgEmojiText"),
            "[Smile]");
  EXPECT_FALSE(items[1].GetString("ChatInputCallBackMatchTextToMsgItemsFields_kStringMsgItemsMsgEmojiPath").empty());

  meeting_.RemoveModel(570);
  ask.Set("ChatInputMatchTextToMsgItemsFields_kStringMatchId", "paste-2");
  vm->Handle(VM::kActionMatchTextToMsgItems, &ask);
  result = vm->PickPropValue(VM::kPropMatchResult);
  EXPECT_EQ(result.GetString("ChatInputCallBackMatchTextToMsgItemsFields_kStringMatchId"), "paste-2");
  items = result.Get("ChatInputCallBackMatchTextToMsgItemsFields_kArrayMsgItems");
  ASSERT_EQ(items.Size(), 1u);
  EXPECT_EQ(items[0].GetString("ChatInputCallBackMatchTextToMsgItemsFields_kStringMsgItemsMsgText"), "hi [Smile]");

  LogCapture log;
  const size_t published = vm->PropSetCount(VM::kPropMatchResult);
  vm->Handle(VM::kActionMatchTextToMsgItems, nullptr);
  const Variant number(1);
  vm->Handle(VM::kActionMatchTextToMsgItems, &number);
  EXPECT_TRUE(log.Contains("params nullptr"));
  EXPECT_EQ(vm->PropSetCount(VM::kPropMatchResult), published);
}

TEST_F(InputTest, TheNoticeGuideTipShowsOnceForAHostAndNeverForAParticipant) {
  meeting_.meeting_settings().SetSwitch("notice_enable", true);
  auto participant = Attach();
  EXPECT_FALSE(participant->HasProp(VM::kPropNoticeGuideTip));
  EXPECT_FALSE(chat::ReadLocalSetting("im.notice_tips_show", Variant(false)).AsBoolean());

  meeting_.context().self_role = talvex::MeetingContext::kRoleHost;
  auto host = Attach();
  Variant tip = host->PickPropValue(VM::kPropNoticeGuideTip);
  EXPECT_EQ(tip.GetString("tips_content"), Text(chat::kTextNoticeGuideTip));
  EXPECT_EQ(tip.GetInteger("tips_dismiss_timeout"), 5000);
  EXPECT_TRUE(tip.GetBoolean("tips_show"));
  LogCapture log;
  auto again = Attach();
  EXPECT_FALSE(again->HasProp(VM::kPropNoticeGuideTip));
  EXPECT_TRUE(log.Contains("has show notice icon tips "));

  Variant button = host->PickPropValue(VM::kPropNoticeButton);
  EXPECT_TRUE(button.GetBoolean("enable"));
  EXPECT_FALSE(button.GetBoolean("show_red_dot"));
  EXPECT_EQ(button.GetString("tips"), Text(chat::kTextNoticeTips));
  meeting_.meeting_settings().SetSwitch("notice_read", false);
  meeting_.model(539).FireEvent(1, Variant());
  EXPECT_TRUE(host->PickPropValue(VM::kPropNoticeButton).GetBoolean("show_red_dot"));
  meeting_.meeting_settings().SetSwitch("notice_enable", false);
  meeting_.model(1000001).FireEvent(3, Variant());
  EXPECT_FALSE(host->PickPropValue(VM::kPropNoticeButton).GetBoolean("enable"));
}

TEST_F(InputTest, TipsDraftFocusAndTheSmallerActions) {
  auto vm = Attach();
  // The private chat tip names the receiver.
  ChooseReceiver(Receiver("u2"));
  Variant yes(true);
  chat::InvokeChatBizModel(&runtime_, ChatModel::kSetTipsPending, &yes);
  chat::InvokeChatBizModel(&runtime_, ChatModel::kFlushTipsPending);
  Variant tip = vm->PickPropValue(VM::kPropGuideTip);
  EXPECT_EQ(tip.GetString("tips_content"), Text(chat::kTextPrivateChatTip) + "Member u2");
  EXPECT_EQ(tip.GetString("sender_label"), "(" + Text(chat::kTextPrivateChatLabel) + ")");
  EXPECT_EQ(tip.GetInteger("auto_dismiss_time"), 3);

  // A draft saved by one input comes back in the next.
  Variant draft(base::variant::kVariantTypeMap);
  draft.Set("text", "half a thought");
  vm->Handle(VM::kActionSaveDraft, &draft);
  auto next = Attach();
  EXPECT_EQ(next->PickPropValue(VM::kPropDraft).GetString("text"), "half a thought");

  meeting_.meeting().FireEvent(14, Variant());
  meeting_.meeting().FireEvent(15, Variant());
  EXPECT_EQ(vm->PropSetCount(VM::kPropFocusRequest), 2u);
  EXPECT_FALSE(Bool(vm, VM::kPropFocusRequest));

  Variant receiver = Receiver("u4");
  vm->Handle(VM::kActionSelectReceiver, &receiver);
  EXPECT_EQ(meeting_.private_chats().receiver().GetString("user_id"), "u4");

  Variant height(140.0);
  vm->Handle(VM::kActionSetInputHeight, &height);
  EXPECT_DOUBLE_EQ(chat::ReadLocalSetting("im.msg_input_height", Variant(0.0)).AsDouble(), 140.0);

  vm->Handle(VM::kActionMoreClicked);
  EXPECT_TRUE(vm->is_expanded());
  vm->Handle(VM::kActionMoreHidden);
  EXPECT_FALSE(vm->is_expanded());
  vm->Handle(VM::kActionMoreClicked);
  vm->Handle(VM::kActionMoreClosed);
  EXPECT_FALSE(vm->is_expanded());
  vm->Handle(VM::kActionAuthorityClicked);
  vm->Handle(VM::kActionSelectUserClicked);
  EXPECT_EQ(base::analytics::RecordedEvents("meetingpage_impanel_null_add_null_null_click").size(), 2u);
  EXPECT_EQ(base::analytics::RecordedEvents("chatting_private_chat_authority_click").size(), 1u);
  EXPECT_EQ(base::analytics::RecordedEvents("chatting_private_chat_select_user_click").size(), 1u);

  LogCapture log;
  meeting_.model(690).FireEvent(4, Variant());
  EXPECT_TRUE(log.Contains("[webinar trail tips] error params", base::log::kLogError));
}

TEST_F(InputTest, TheShortcutShowsWhatTheStoreKept) {
  auto vm = Attach();
  Variant yes(true);
  vm->Handle(VM::kActionSetShortcut, &yes);
  EXPECT_TRUE(Bool(vm, VM::kPropSendShortcut));
  EXPECT_TRUE(chat::ReadLocalSetting("im.msg_send_shortcut", Variant(false)).AsBoolean());
  Variant no(false);
  vm->Handle(VM::kActionSetShortcut, &no);
  EXPECT_FALSE(Bool(vm, VM::kPropSendShortcut));

  // A client without a settings store keeps nothing: the prop stays as read.
  meeting_.RemoveModel(framework::SettingsModel::kModelId);
  const size_t published = vm->PropSetCount(VM::kPropSendShortcut);
  vm->Handle(VM::kActionSetShortcut, &yes);
  EXPECT_FALSE(Bool(vm, VM::kPropSendShortcut));
  EXPECT_EQ(vm->PropSetCount(VM::kPropSendShortcut), published);
}

TEST_F(InputTest, ADetachedInputHearsNothing) {
  auto vm = Attach();
  vm->DidDetached();
  const size_t enabled = vm->PropSetCount(VM::kPropChatEnabled);
  const size_t focus = vm->PropSetCount(VM::kPropFocusRequest);
  meeting_.authority().SetPolicy(3);
  meeting_.meeting().FireEvent(14, Variant());
  send_->FireEvent(SendModel::kEventSendRefused, Variant("late"));
  EXPECT_EQ(vm->PropSetCount(VM::kPropChatEnabled), enabled);
  EXPECT_EQ(vm->PropSetCount(VM::kPropFocusRequest), focus);
  EXPECT_TRUE(ui_->toasts().empty());
}

}  // namespace
}  // namespace send_test
