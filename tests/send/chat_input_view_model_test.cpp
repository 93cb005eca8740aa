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
using talvex_test::WaitUntil;

// The fields of a match answer.
std::string Field(char const* name) { return std::string("ChatInputCallBackMatchTextToMsgItemsFields_") + name; }

class InputTest : public SendFixture {
 protected:
  void TearDown() override {
    for (auto& vm : vms_) vm->DidDetached();
    vms_.clear();
    talvex::AuthorizeState::Set(talvex::AuthorizeState::kAuthorized);
    SendFixture::TearDown();
  }
  std::shared_ptr<VM> Attach() {
    // As the client asks for it: by number, from the module's provider.
    auto vm = std::dynamic_pointer_cast<VM>(
        runtime_.GetViewModelProvider()->CreateViewModel(chat::kViewModelPanelInput));
    EXPECT_NE(vm, nullptr);
    if (!vm) return nullptr;
    Variant none;
    vm->DidCreated(&none);
    vm->DidAttached(&none);
    vms_.push_back(vm);
    return vm;
  }
  static bool Bool(std::shared_ptr<VM> const& vm, uint32_t prop) { return vm->PickPropValue(prop).AsBoolean(); }
  Strings Toasts() const {
    Strings texts;
    for (auto const& t : ui_->toasts()) texts.push_back(t.text);
    return texts;
  }
  void Ask(uint32_t model_method, Variant value = Variant()) {
    chat::InvokeChatBizModel(&runtime_, model_method, value.IsNull() ? nullptr : &value);
  }
  std::vector<std::shared_ptr<VM>> vms_;
};

TEST_F(InputTest, AttachPublishesTheStoredSettingsAndTheButtonState) {
  auto fresh = Attach();
  EXPECT_FALSE(Bool(fresh, VM::kPropSendShortcut));
  EXPECT_DOUBLE_EQ(fresh->PickPropValue(VM::kPropInputHeight).AsDouble(), 85.0);
  for (uint32_t prop : {VM::kPropSendButtonVisible, VM::kPropSendState, VM::kPropChatEnabled}) {
    EXPECT_TRUE(Bool(fresh, prop)) << prop;
  }
  const std::string cache = fresh->PickPropValue(VM::kPropImageCacheDir).AsStr();
  EXPECT_TRUE(util::file::IsDirectory(cache)) << cache;
  EXPECT_FALSE(fresh->HasProp(VM::kPropDraft)) << "no draft, nothing to restore";

  chat::WriteLocalSetting("im.msg_send_shortcut", true);
  chat::WriteLocalSetting("im.msg_input_height", 132.5);
  auto stored = Attach();
  EXPECT_TRUE(Bool(stored, VM::kPropSendShortcut));
  EXPECT_DOUBLE_EQ(stored->PickPropValue(VM::kPropInputHeight).AsDouble(), 132.5);
}

TEST_F(InputTest, TheSendButtonFollowsTheTextAndTheMoreButtonAndPublishesOnlyChanges) {
  auto vm = Attach();
  auto config = std::dynamic_pointer_cast<chat::SendButtonConfigModel>(
      chat::GetChatModuleModel(&runtime_, chat::kSendButtonConfigModelId));
  ASSERT_NE(config, nullptr);
  const size_t visible_count = vm->PropSetCount(VM::kPropSendButtonVisible);
  const Variant yes(true), no(false), not_bool("yes");
  vm->Handle(VM::kActionTextChanged, &yes);
  vm->Handle(VM::kActionTextChanged, &yes);
  EXPECT_EQ(vm->PropSetCount(VM::kPropSendButtonVisible), visible_count + 1) << "the same value publishes once";
  EXPECT_FALSE(Bool(vm, VM::kPropSendButtonVisible));
  EXPECT_FALSE(Bool(vm, VM::kPropSendState)) << "with text and the more button offered";

  // The configuration takes the more button away: the send state shows.
  Configure("chat", "send_button_show_more", false);
  config->Refresh();
  EXPECT_TRUE(Bool(vm, VM::kPropSendState));
  EXPECT_FALSE(Bool(vm, VM::kPropSendButtonVisible));
  vm->Handle(VM::kActionTextChanged, &no);
  EXPECT_TRUE(Bool(vm, VM::kPropSendButtonVisible));

  // A meeting without pictures and files never offers the more button.
  Configure("chat", "send_button_show_more", true);
  meeting_.meeting_settings().SetSwitch("im_file_and_picture", false);
  config->Refresh();
  vm->Handle(VM::kActionTextChanged, &yes);
  EXPECT_TRUE(Bool(vm, VM::kPropSendState));

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
    *result = Variant::Map{{"disable_chat", true}, {"need_show_icon", false}, {"disable_chat_desc", "Chat is paused"}};
    return true;
  });
  meeting_.authority().FireEvent(0, Variant());
  EXPECT_FALSE(Bool(vm, VM::kPropChatEnabled));
  EXPECT_FALSE(Bool(vm, VM::kPropDisabledIcon));
  EXPECT_EQ(vm->PickPropValue(VM::kPropDisabledText).AsStr(), "Chat is paused");
}

TEST_F(InputTest, ASendGoesThroughTheMessageModelWithTheSurfaceStamped) {
  auto vm = Attach();
  Variant surface = Variant::Map{{"template_type", 1}};
  vm->SetNewParams(&surface);
  const Variant items = Variant::Array{TextItem("hello all")};
  vm->Handle(VM::kActionSend, &items);
  ASSERT_EQ(Sends(59).size(), 1u);
  EXPECT_EQ(Sends(59)[0][0].GetInteger("template_type"), 1);
  EXPECT_EQ(SentTexts(), Strings{"hello all"});
  EXPECT_EQ(Sends(7)[0].GetInteger("message_send_from_type"), 1);
  // The pipeline reports the list went; the input clears.
  EXPECT_TRUE(vm->HasProp(VM::kPropClearInput));
  EXPECT_FALSE(Bool(vm, VM::kPropSendButtonVisible));

  // No network, or signed out: a toast each and nothing sent.
  meeting_.messages().ClearInvocations();
  meeting_.network().SetNetworkUp(false);
  vm->Handle(VM::kActionSend, &items);
  meeting_.network().SetNetworkUp(true);
  talvex::AuthorizeState::Set(talvex::AuthorizeState::kLoggedOut);
  vm->Handle(VM::kActionSend, &items);
  EXPECT_EQ(Toasts(), (Strings{Text(chat::kTextNoNetwork),
                               talvex::AuthorizeState::RefusalText(talvex::AuthorizeState::kLoggedOut)}));
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
  const Variant items = Variant::Array{TextItem(std::string(3001, 'a'))};
  vm->Handle(VM::kActionSend, &items);
  EXPECT_EQ(vm->PropSetCount(VM::kPropClearInput), clears) << "a refused send never clears the input";
  const Variant files = FileParams({WriteFile("from_input.txt", "data")});
  vm->Handle(VM::kActionSendFile, &files);
  EXPECT_TRUE(WaitUntil([&] { return Sends(52).size() == 1; }));
  send_->FireEvent(SendModel::kEventSendRefused, Variant(12));  // a refusal without a text shows nothing
  EXPECT_EQ(Toasts(), (Strings{Text("chat.send.webp"), Text("chat.send.text_too_long")}));
}

TEST_F(InputTest, AHeldPublicSendIsConfirmedOrDropped) {
  auto vm = Attach();
  Ask(ChatModel::kSetReminderMsgId, "m-private");
  const Variant items = Variant::Array{TextItem("to everyone")};
  vm->Handle(VM::kActionSend, &items);
  EXPECT_EQ(AllSends(), 0u);
  auto const* alert = ui_->LastOpenAlert();
  ASSERT_NE(alert, nullptr);
  EXPECT_EQ(alert->request.title, Text(chat::kTextConfirmSendTitle));
  EXPECT_TRUE(alert->request.top_most);
  auto pending = chat::InvokeChatBizModel(&runtime_, ChatModel::kHasReminder);
  EXPECT_TRUE(pending && !pending->AsBoolean()) << "the open alert holds back a second reminder";
  ASSERT_TRUE(ui_->Answer(alert->id, framework::kAlertButtonPositive));
  EXPECT_EQ(SentTexts(), Strings{"to everyone"}) << "the mixed list goes once confirmed";

  // A text held by the send model itself goes by the text method; a cancel
  // drops it.
  Ask(ChatModel::kSetReminderDisabled, false);
  EXPECT_TRUE(SendText(TextParams("held text")));
  ASSERT_NE(ui_->LastOpenAlert(), nullptr);
  ASSERT_TRUE(ui_->Answer(ui_->LastOpenAlert()->id, framework::kAlertButtonPositive));
  Ask(ChatModel::kSetReminderDisabled, false);
  EXPECT_TRUE(SendText(TextParams("never mind")));
  ASSERT_TRUE(ui_->Answer(ui_->LastOpenAlert()->id, framework::kAlertButtonClosed)) << "closed: dropped";
  Ask(ChatModel::kSetReminderDisabled, false);
  EXPECT_TRUE(SendText(TextParams("never mind")));
  ASSERT_TRUE(ui_->Answer(ui_->LastOpenAlert()->id, framework::kAlertButtonNegative));
  EXPECT_EQ(SentTexts(), (Strings{"to everyone", "held text"}));
  EXPECT_EQ(Reported("inmeeting_im_null_null_cancel_null_clk"), 1u);

  // Without a pending reminder nothing is asked.
  const size_t alerts = ui_->alerts().size();
  Ask(ChatModel::kSetReminderMsgId, "");
  Variant payload = Variant::Map{{"message_info", TextParams("x")}, {"send_type", 0}};
  vm->ConfirmSend(&payload);
  vm->ConfirmSend(nullptr);
  EXPECT_EQ(ui_->alerts().size(), alerts);
}

TEST_F(InputTest, PastedTextIsMatchedIntoItemsAndAFailedMatchIsOneTextItem) {
  meeting_.faces().Load();
  auto vm = Attach();
  // The items "hi [Smile]" is matched into; the answer carries the request's id.
  auto match = [&](char const* id) {
    Variant ask = Variant::Map{{"ChatInputMatchTextToMsgItemsFields_kStringMatchText", "hi [Smile]"},
                               {"ChatInputMatchTextToMsgItemsFields_kStringMatchId", id}};
    vm->Handle(VM::kActionMatchTextToMsgItems, &ask);
    EXPECT_EQ(vm->PickPropValue(VM::kPropMatchResult).GetString(Field("kStringMatchId")), id);
    return vm->PickPropValue(VM::kPropMatchResult).Get(Field("kArrayMsgItems"));
  };
  Variant items = match("paste-1");
  ASSERT_EQ(items.Size(), 2u);
  EXPECT_EQ(items[0].GetInteger(Field("kIntegerMsgItemsItemType")), 0);
  EXPECT_EQ(items[0].GetString(Field("kStringMsgItemsMsgText")), "hi ");
  EXPECT_EQ(items[1].GetInteger(Field("kIntegerMsgItemsItemType")), 1);
  EXPECT_EQ(items[1].GetString(Field("kStringMsgItemsMsgEmojiText")), "[Smile]");
  EXPECT_FALSE(items[1].GetString(Field("kStringMsgItemsMsgEmojiPath")).empty());

  // Without the faces model the text comes back whole.
  meeting_.RemoveModel(570);
  items = match("paste-2");
  ASSERT_EQ(items.Size(), 1u);
  EXPECT_EQ(items[0].GetString(Field("kStringMsgItemsMsgText")), "hi [Smile]");

  // A request without its id gets no answer: the view would paste an
  // answer with an empty id before it ever asked.
  const size_t published = vm->PropSetCount(VM::kPropMatchResult);
  const Variant number(1), empty(Variant::Map{});
  const Variant no_id = Variant::Map{{"ChatInputMatchTextToMsgItemsFields_kStringMatchText", "pasted"}};
  const Variant numeric_id = Variant::Map{{"ChatInputMatchTextToMsgItemsFields_kStringMatchText", "pasted"},
                                          {"ChatInputMatchTextToMsgItemsFields_kStringMatchId", 3}};
  for (Variant const* ask : {static_cast<Variant const*>(nullptr), &number, &empty, &no_id, &numeric_id}) {
    vm->Handle(VM::kActionMatchTextToMsgItems, ask);
  }
  EXPECT_EQ(vm->PropSetCount(VM::kPropMatchResult), published);
}

TEST_F(InputTest, TheNoticeGuideTipShowsOnceForAHostAndNeverForAParticipant) {
  meeting_.meeting_settings().SetSwitch("notice_enable", true);
  EXPECT_FALSE(Attach()->HasProp(VM::kPropNoticeGuideTip)) << "a participant";
  EXPECT_FALSE(chat::ReadLocalSetting("im.notice_tips_show", Variant(false)).AsBoolean());

  meeting_.context().self_role = talvex::MeetingContext::kRoleHost;
  auto host = Attach();
  Variant tip = host->PickPropValue(VM::kPropNoticeGuideTip);
  EXPECT_EQ(tip.GetString("tips_content"), Text(chat::kTextNoticeGuideTip));
  EXPECT_FALSE(Attach()->HasProp(VM::kPropNoticeGuideTip)) << "once";

  EXPECT_TRUE(host->PickPropValue(VM::kPropNoticeButton).GetBoolean("enable"));
  EXPECT_FALSE(host->PickPropValue(VM::kPropNoticeButton).GetBoolean("show_red_dot"));
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
  Ask(ChatModel::kSetTipsPending, true);
  Ask(ChatModel::kFlushTipsPending);
  Variant tip = vm->PickPropValue(VM::kPropGuideTip);
  EXPECT_EQ(tip.GetString("tips_content"), Text(chat::kTextPrivateChatTip) + "Member u2");
  EXPECT_EQ(tip.GetString("sender_label"), "(" + Text(chat::kTextPrivateChatLabel) + ")");

  // A draft saved by one input comes back in the next.
  Variant draft = Variant::Map{{"text", "half a thought"}};
  vm->Handle(VM::kActionSaveDraft, &draft);
  EXPECT_EQ(Attach()->PickPropValue(VM::kPropDraft).GetString("text"), "half a thought");

  meeting_.meeting().FireEvent(14, Variant());
  meeting_.meeting().FireEvent(15, Variant());
  EXPECT_EQ(vm->PropSetCount(VM::kPropFocusRequest), 2u);
  EXPECT_FALSE(Bool(vm, VM::kPropFocusRequest));

  Variant height(140.0);
  vm->Handle(VM::kActionSetInputHeight, &height);
  EXPECT_DOUBLE_EQ(Attach()->PickPropValue(VM::kPropInputHeight).AsDouble(), 140.0) << "the next input opens as tall";

  for (uint32_t closing : {VM::kActionMoreHidden, VM::kActionMoreClosed}) {
    vm->Handle(VM::kActionMoreClicked);
    EXPECT_TRUE(vm->is_expanded());
    vm->Handle(closing);
    EXPECT_FALSE(vm->is_expanded());
  }
}

TEST_F(InputTest, TheShortcutShowsWhatTheStoreKept) {
  auto vm = Attach();
  const Variant yes(true), no(false);
  vm->Handle(VM::kActionSetShortcut, &yes);
  EXPECT_TRUE(Bool(vm, VM::kPropSendShortcut));
  EXPECT_TRUE(chat::ReadLocalSetting("im.msg_send_shortcut", Variant(false)).AsBoolean());
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
  EXPECT_EQ(Toasts(), Strings{});
}

}  // namespace
}  // namespace send_test
