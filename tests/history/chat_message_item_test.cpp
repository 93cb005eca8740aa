// The view models behind chat rows: each turns one record into one prop.
#include "history_fixture.h"

#include "base/analytics/analytics.h"
#include "chat/viewmodel/chat_face_message_view_model.h"
#include "chat/viewmodel/chat_file_message_view_model.h"
#include "chat/viewmodel/chat_image_message_view_model.h"
#include "chat/viewmodel/chat_message_container_view_model.h"
#include "chat/viewmodel/chat_notice_message_view_model.h"
#include "chat/viewmodel/chat_openapp_message_view_model.h"
#include "chat/viewmodel/chat_text_message_view_model.h"
#include "chat/viewmodel/chat_tip_message_view_model.h"
#include "framework/config/configure_service.h"
#include "framework/journal/host_journal.h"
#include "framework/module/module_service.h"
#include "framework/navigation/routing.h"
#include "sim/goods_card_layout.h"

namespace history_test {
namespace {

using talvex_test::LogCapture;
using TextRow = chat::ChatTextMessageViewModel;
using Image = chat::ChatImageMessageViewModel;
using OpenApp = chat::ChatOpenappMessageViewModel;

size_t Events(std::string const& name) { return base::analytics::RecordedEvents(name).size(); }

class MessageItemTest : public HistoryFixture {
 protected:
  void SetUp() override {
    HistoryFixture::SetUp();
    meeting_.faces().Load();
  }
  void TearDown() override {
    for (auto& row : rows_) row->DidDetached();
    rows_.clear();
    HistoryFixture::TearDown();
  }

  // A row view model bound to the message, as a view binds it.
  template <typename T>
  std::shared_ptr<T> Row(std::string const& msg_id, int template_type = 2) {
    auto row = std::make_shared<T>();
    row->SetModuleParams(&runtime_);
    Variant params = Json(R"({"template_type":)" + std::to_string(template_type) + "}");
    params.Set("msg_id", msg_id);
    row->DidCreated(&params);
    row->DidAttached(&params);
    rows_.push_back(row);
    return row;
  }
  template <typename T>
  Variant Info(std::string const& msg_id, int template_type = 2) {
    return Row<T>(msg_id, template_type)->PickPropValue(T::kPropInfo);
  }

  std::string PostImage(std::string const& thumb_id) {
    return meeting_.messages().Post(sim::ChatRecord(
        kMeeting, kAvery, 4,
        Json(R"([{"image_elem_thumb_url":"https://img/t","image_elem_thumb_pic_width":64,)"
             R"("image_elem_thumb_pic_height":48,"image_elem_thumb_id":")" + thumb_id + R"("}])")));
  }
  std::string Post(int chat_type, std::string const& ext) {
    return meeting_.messages().Post(sim::ChatRecord(kMeeting, kJordan, chat_type, Variant(), false, Json(ext)));
  }

  std::vector<std::shared_ptr<framework::ViewModel>> rows_;
};

TEST_F(MessageItemTest, TextRowCarriesItsPiecesAndTheSender) {
  const std::string id = Receive(kAvery, "hi [Smile] see www.a.com");
  Variant const info = Info<TextRow>(id);
  EXPECT_EQ(info.GetString(ChatMsgBaseInfoFields_kStringBaseInfoMsgId), id);
  EXPECT_EQ(info.GetString(ChatMsgBaseInfoFields_kStringBaseInfoNickName), "Avery Quinn");
  EXPECT_FALSE(info.GetBoolean(ChatMsgBaseInfoFields_kBooleanBaseInfoIsFromSelf));
  EXPECT_FALSE(info.Has(ChatMsgBaseInfoFields_kStringBaseInfoPrivateLabel));
  Variant const& items = info.Get(ChatTextMessageInfoFields_kPtrInfoArrayItem);
  ASSERT_EQ(items.Size(), 4u);
  EXPECT_EQ(items[1].GetString(ChatTextMessageItemFields_kStringItemEmojiText), "[Smile]");
  EXPECT_EQ(items[3].GetInt32(ChatTextMessageItemFields_kIntegerItemType), 2);
  EXPECT_EQ(items[3].GetString(ChatTextMessageItemFields_kStringItemContent), "www.a.com");
}

TEST_F(MessageItemTest, PrivateMessagesReadDifferentlyForSenderAndReceiver) {
  const std::string in = meeting_.messages().Post(sim::PrivateTextRecord(kMeeting, kJordan, kSelf, "psst"));
  const std::string out = meeting_.messages().Post(sim::PrivateTextRecord(kMeeting, kSelf, kJordan, "hey", true));
  Variant const incoming = Info<TextRow>(in);
  EXPECT_EQ(incoming.GetString(ChatMsgBaseInfoFields_kStringBaseInfoSayToMe), " to you");
  EXPECT_EQ(incoming.GetString(ChatMsgBaseInfoFields_kStringBaseInfoPrivateLabel), " (Private)");
  Variant const outgoing = Info<TextRow>(out);
  EXPECT_TRUE(outgoing.GetBoolean(ChatMsgBaseInfoFields_kBooleanBaseInfoIsFromSelf));
  EXPECT_EQ(outgoing.GetString(ChatMsgBaseInfoFields_kStringBaseInfoReceiverName), "Jordan Blake");
  EXPECT_EQ(outgoing.GetString(ChatMsgBaseInfoFields_kStringBaseInfoMyselfSendTo), "You to ");
}

TEST_F(MessageItemTest, WithdrawnMessageTipsNameWhoWithdrewIt) {
  const std::string own = Receive(kSelf, "oops", 0, true);
  const std::string other = Receive(kJordan, "hmm");
  meeting_.messages().Revoke(own);
  meeting_.messages().Revoke(other);
  using Tip = chat::ChatTipMessageViewModel;
  EXPECT_EQ(Info<Tip>(own).GetString(ChatTipMessageInfoFields_kStringInfoTipContent),
            Text(0xd0acbded) + Text(0x7baf9134));
  Variant const tip = Info<Tip>(other);
  EXPECT_EQ(tip.GetString(ChatTipMessageInfoFields_kStringInfoTipContent),
            "Jordan Blake" + Text(0x7baf9134));
  EXPECT_EQ(tip.GetString(ChatMsgBaseInfoFields_kStringBaseInfoMsgId), other);
  EXPECT_FALSE(tip.Has(ChatMsgBaseInfoFields_kStringBaseInfoNickName)) << "tips carry no sender fields";
}

TEST_F(MessageItemTest, LayoutTypesFollowTheTemplate) {
  const std::string text = Receive(kAvery, "plain");
  for (auto [template_type, layout] : {std::pair{2, 2}, {3, 3}, {9, 1}}) {
    EXPECT_EQ(Info<TextRow>(text, template_type).GetInt32(ChatTextMessageInfoFields_kIntegerInfoTextLayoutType), layout)
        << template_type;
  }
  Variant const info = Info<Image>(PostImage("t9"), 9);
  EXPECT_EQ(info.GetInt32(ChatImageMessageInfoFields_kIntegerInfoLayoutType), 0) << "beyond the known templates";
  EXPECT_EQ(info.GetInt32(ChatImageMessageInfoFields_kIntegerInfoThumbWidth), 64);
  EXPECT_EQ(info.GetString(ChatImageMessageInfoFields_kStringInfoThumbId), "t9");
}

TEST_F(MessageItemTest, ImageActionsDownloadAndReport) {
  const std::string id = PostImage("t1");
  auto row = Row<Image>(id);
  base::analytics::ClearRecordedEvents();
  Variant params(base::variant::kVariantTypeMap);
  params.Set(ChatImageMessageDownloadMsgFields_kStringMsgId, id);
  row->Handle(Image::kActionDownloadImage, &params);
  auto downloads = meeting_.messages().InvocationsOf(32);
  ASSERT_EQ(downloads.size(), 1u);
  EXPECT_EQ(downloads[0].GetString("uuid"), "t1");
  EXPECT_EQ(downloads[0].GetString("download_type"), "thumb");
  row->Handle(Image::kActionRefreshImage, &params);
  EXPECT_EQ(meeting_.messages().InvocationsOf(32).size(), 2u);
  EXPECT_EQ(Events("meetingpage_impanel_null_message_refresh_null_click"), 1u);
  row->Handle(Image::kActionPreviewClicked, nullptr);
  row->Handle(Image::kActionSaveClicked, nullptr);
  auto preview = base::analytics::RecordedEvents("meetingpage_impanel_null_photomessage_preview_null_click");
  ASSERT_EQ(preview.size(), 1u);
  EXPECT_EQ(preview[0].properties.at("situation"), "2");
  EXPECT_EQ(Events("meetingpage_impanel_null_photomessage_save_null_click"), 1u);

  LogCapture log;
  EXPECT_FALSE(row->HandleDownloadImageMessage("", "t1", id));
  EXPECT_TRUE(log.Contains("HandleDownloadImageMessage param error. url=  uuid= t1, msg_id= " + id));
  EXPECT_TRUE(row->HandleDownloadImageMessage("https://img/o", "o1", id));
  EXPECT_EQ(meeting_.messages().InvocationsOf(32).back().GetString("download_type"), "original");
}

TEST_F(MessageItemTest, NoticeRowOpensTheNoticePage) {
  const std::string id = Post(6, R"({"notice_version":1,"notice_content":"Agenda at www.a.com"})");
  using Notice = chat::ChatNoticeMessageViewModel;
  auto row = Row<Notice>(id);
  ASSERT_EQ(row->PickPropValue(Notice::kPropInfo).Get(ChatNoticeMessageInfoFields_kPtrInfoArrayItem).Size(), 1u);

  struct Recording : framework::Controller {
    std::vector<std::string> calls;
    Variant last;
    void Call(std::string const& name, Variant const* params) override {
      calls.push_back(name);
      if (params) last = *params;
    }
  };
  auto page = std::make_shared<Recording>();
  framework::ControllerManager::Instance()->IocRegister("talvex://page/meeting_notice", [&] { return page; });
  base::analytics::ClearRecordedEvents();
  meeting_.meeting_settings().SetSwitch("notice_enable", true);
  row->Handle(Notice::kActionShowMeetingNotice, nullptr);
  EXPECT_EQ(page->calls, (std::vector<std::string>{"close", "show"})) << "an open notice page is closed first";
  EXPECT_EQ(page->last.GetString("msg_id"), id);
  EXPECT_EQ(page->last.GetInt32("template_type"), 2);
  EXPECT_EQ(Events("inmeeting_im_null_notice_null_null_ark"), 1u);

  meeting_.meeting_settings().SetSwitch("notice_enable", false);
  row->Handle(Notice::kActionShowMeetingNotice, nullptr);
  EXPECT_EQ(page->calls.size(), 2u);
  EXPECT_EQ(ui_->toasts().back().text, "The host has turned off the meeting notice.");
  framework::ControllerManager::Instance()->IocUnregister("talvex://page/meeting_notice");
}

TEST_F(MessageItemTest, OpenAppCardClicksOpenTheAppInTheirScene) {
  Variant ext = Json(R"({"title":"Shop"})");
  ext.Set("app_info",
          R"({"name":"Shop","icon":"https://i/s.png","open_app_id":"77","corp_id":"c1",)"
          R"("ext_data":{"goods_name":"Mug","original_price":12,"current_price":"9.5","discount_type":1}})");
  const std::string id = meeting_.messages().Post(sim::ChatRecord(kMeeting, kJordan, 7, Variant(), false, ext));
  auto row = Row<OpenApp>(id);
  Variant const goods = row->PickPropValue(OpenApp::kPropInfo).Get(ChatOpenappMessageInfoFields_kPtrInfoExtData);
  EXPECT_EQ(goods.GetString(ChatOpenappMessageGoodsInfoFields_kStringGoodsInfoOriginalPrice), "$12.00");
  EXPECT_EQ(goods.GetString(ChatOpenappMessageGoodsInfoFields_kStringGoodsInfoCurrentPrice), "$9.50")
      << "a price in text is a price too";
  EXPECT_TRUE(goods.GetBoolean(ChatOpenappMessageGoodsInfoFields_kBooleanGoodsInfoHasDiscount));

  base::analytics::ClearRecordedEvents();
  framework::HostJournal::Clear();
  Variant click = Json(R"({"msg_id":")" + id + R"("})");
  row->Handle(OpenApp::kActionClickOpenApp, &click);
  auto clicks = base::analytics::RecordedEvents("openappshare_null_null_imcard_null_null_click");
  ASSERT_EQ(clicks.size(), 1u);
  EXPECT_EQ(clicks[0].properties.at("corp_id"), "c1");
  EXPECT_EQ(framework::HostJournal::Entries("sidebar.OpenApp 77").size(), 1u);
  ASSERT_EQ(Events("web_app_opened"), 1u);
  EXPECT_EQ(base::analytics::RecordedEvents("web_app_opened")[0].properties.at("scene_code"), "2");

  // In a past meeting's record the card opens in the history scene.
  Row<OpenApp>(id, 3)->Handle(OpenApp::kActionClickOpenApp, &click);
  EXPECT_EQ(Events("openappshare_chathistory_null_imcard_null_null_click"), 1u);
  EXPECT_EQ(base::analytics::RecordedEvents("web_app_opened").back().properties.at("scene_code"), "5");

  LogCapture log;
  row->Handle(OpenApp::kActionClickOpenApp, nullptr);
  EXPECT_TRUE(log.Contains("handle click open app msg failed! params error!"));
}

TEST_F(MessageItemTest, GoodsCardsCarryTheLayoutTheMeetingConfigures) {
  auto post = [this](std::string const& goods_extra) {
    Variant ext = Json(R"({"title":"Shop","card_layout_type":2})");
    ext.Set("app_info", R"({"name":"Shop","icon":"/i/s.png","open_app_id":"77","ext_data":{"goods_name":"Mug")" +
                            goods_extra + "}}");
    return Info<OpenApp>(meeting_.messages().Post(sim::ChatRecord(kMeeting, kJordan, 7, Variant(), false, ext)))
        .Get(ChatOpenappMessageInfoFields_kPtrInfoExtData);
  };
  constexpr char kQt[] = "im_goods_card_layout_qt";
  // The simulated meeting configures a default desktop layout and nothing else.
  Variant goods = post("");
  EXPECT_EQ(goods.Get(kQt), sim::GoodsCardLayouts().Get("default"));
  EXPECT_FALSE(goods.Has("im_goods_card_layout"));
  EXPECT_EQ(goods.GetString("app_info_icon"), "/i/s.png");
  EXPECT_EQ(goods.GetString("msg_content_title"), "Shop");

  Variant layouts = sim::GoodsCardLayouts();
  layouts.Set("spring", Variant("spring layout"));
  talvexsdk::utils::service::GetConfigureService()->Set("dyna_layout", kQt, layouts);
  EXPECT_EQ(post(R"(,"dyna_layout_key":"spring")").GetString(kQt), "spring layout");
  EXPECT_EQ(post(R"(,"dyna_layout_key":"winter")").Get(kQt), layouts.Get("default"));
  EXPECT_FALSE(post(R"(,"dyna_layout_key":"winter","use_default_layout":false)").Has(kQt))
      << "a card that insists on its own layout gets none when the meeting lacks it";
}

TEST_F(MessageItemTest, ContainerPicksTheRowByKind) {
  auto* extensions = framework::extension::GetExtensionService();
  extensions->Clear();
  auto* modules = framework::module::GetModuleService();
  modules->RegisterModule("chat", [this] { return &runtime_; });
  for (char const* ext : {"extension:chat.text_message", "extension:chat.image_message", "extension:chat.file_message"}) {
    extensions->Register(chat::ChatMessageContainerViewModel::kContributesId, framework::ExtensionInfo(ext, "chat"));
  }
  Variant id(Post(8, R"({"file_info":{"name":"a.pdf","status":5}})"));
  auto container = std::make_shared<chat::ChatMessageContainerViewModel>();
  container->Handle(chat::ChatMessageContainerViewModel::kActionSetMsgId, &id);
  EXPECT_EQ(container->PickPropValue(chat::ChatMessageContainerViewModel::kPropViewType).GetString("view_type"),
            "extension:chat.file_message");
  modules->UnregisterModule("chat");
  extensions->Clear();
}

TEST_F(MessageItemTest, UnknownAndMalformedMessagesLeaveTheRowAlone) {
  LogCapture log;
  EXPECT_FALSE(Row<TextRow>("missing")->HasProp(TextRow::kPropInfo));
  EXPECT_TRUE(log.Contains("<IM> message not found, with msg_id=missing", base::log::kLogError));

  Variant odd = sim::TextRecord(kMeeting, kAvery, "x");
  odd.Set("msg_id", "odd");
  odd.Set("msg_content", "not an array");
  meeting_.messages().AddMessage(odd);
  auto odd_row = Row<TextRow>("odd");
  EXPECT_FALSE(odd_row->HasProp(TextRow::kPropInfo));
  EXPECT_TRUE(log.Contains("<IM> msg_content not found, with msg_id=odd"));
  Variant number(3);
  odd_row->Handle(talvex::ChatMessageBaseViewModel::kActionBindMessage, nullptr);
  odd_row->Handle(talvex::ChatMessageBaseViewModel::kActionBindMessage, &number);
  EXPECT_FALSE(odd_row->HasProp(TextRow::kPropInfo));
}

}  // namespace
}  // namespace history_test
