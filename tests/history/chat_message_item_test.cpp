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

class MessageItemTest : public HistoryFixture {
 protected:
  void SetUp() override {
    HistoryFixture::SetUp();
    meeting_.faces().Load();
  }

  // A row view model bound to the message, as a view binds it.
  template <typename T>
  std::shared_ptr<T> Row(std::string const& msg_id, int template_type = 2) {
    auto row = std::make_shared<T>();
    row->SetModuleParams(&runtime_);
    Variant params(base::variant::kVariantTypeMap);
    params.Set("msg_id", msg_id);
    params.Set("template_type", template_type);
    row->DidCreated(&params);
    row->DidAttached(&params);
    rows_.push_back(row);
    return row;
  }

  void TearDown() override {
    for (auto& row : rows_) row->DidDetached();
    rows_.clear();
    HistoryFixture::TearDown();
  }

  Variant row_info(std::string const& id) {
    return Row<chat::ChatTextMessageViewModel>(id)->PickPropValue(chat::ChatTextMessageViewModel::kPropInfo);
  }

  std::vector<std::shared_ptr<framework::ViewModel>> rows_;
};

TEST_F(MessageItemTest, TextRowCarriesItsPiecesAndTheSharedFields) {
  const std::string id = Receive(kAvery, "hi [Smile] see www.a.com");
  auto row = Row<chat::ChatTextMessageViewModel>(id);
  Variant const* info = row->GetPropValue(chat::ChatTextMessageViewModel::kPropInfo);
  ASSERT_NE(info, nullptr);
  EXPECT_EQ(info->GetString(ChatMsgBaseInfoFields_kStringBaseInfoMsgId), id);
  EXPECT_EQ(info->GetString(ChatMsgBaseInfoFields_kStringBaseInfoNickName), "Avery Quinn");
  EXPECT_FALSE(info->GetBoolean(ChatMsgBaseInfoFields_kBooleanBaseInfoIsFromSelf));
  EXPECT_EQ(info->GetString(ChatMsgBaseInfoFields_kStringBaseInfoMoreOptBtnTips), "More");
  EXPECT_FALSE(info->Has(ChatMsgBaseInfoFields_kStringBaseInfoPrivateLabel));
  EXPECT_EQ(info->GetInt32(ChatTextMessageInfoFields_kIntegerInfoTextLayoutType), 2);
  Variant const& items = info->Get(ChatTextMessageInfoFields_kPtrInfoArrayItem);
  ASSERT_EQ(items.Size(), 4u);
  EXPECT_EQ(items[1].GetInt32(ChatTextMessageItemFields_kIntegerItemType), 1);
  EXPECT_EQ(items[1].GetString(ChatTextMessageItemFields_kStringItemEmojiText), "[Smile]");
  EXPECT_EQ(items[3].GetInt32(ChatTextMessageItemFields_kIntegerItemType), 2);
  EXPECT_EQ(items[3].GetString(ChatTextMessageItemFields_kStringItemContent), "www.a.com");
}

TEST_F(MessageItemTest, PrivateMessagesReadDifferentlyForSenderAndReceiver) {
  const std::string in = meeting_.messages().Post(sim::PrivateTextRecord(kMeeting, kJordan, kSelf, "psst"));
  const std::string out = meeting_.messages().Post(sim::PrivateTextRecord(kMeeting, kSelf, kJordan, "hey", true));
  Variant const incoming = row_info(in);
  EXPECT_EQ(incoming.GetString(ChatMsgBaseInfoFields_kStringBaseInfoSayToMe), " to you");
  EXPECT_EQ(incoming.GetString(ChatMsgBaseInfoFields_kStringBaseInfoPrivateLabel), " (Private)");
  Variant const outgoing = row_info(out);
  EXPECT_TRUE(outgoing.GetBoolean(ChatMsgBaseInfoFields_kBooleanBaseInfoIsFromSelf));
  EXPECT_EQ(outgoing.GetString(ChatMsgBaseInfoFields_kStringBaseInfoReceiverName), "Jordan Blake");
  EXPECT_EQ(outgoing.GetString(ChatMsgBaseInfoFields_kStringBaseInfoMyselfSendTo), "You to ");
}

TEST_F(MessageItemTest, WithdrawnMessageTipsNameWhoWithdrewIt) {
  const std::string own = Receive(kSelf, "oops", 0, true);
  const std::string other = Receive(kJordan, "hmm");
  meeting_.messages().Revoke(own);
  meeting_.messages().Revoke(other);
  auto own_tip = Row<chat::ChatTipMessageViewModel>(own);
  auto other_tip = Row<chat::ChatTipMessageViewModel>(other);
  EXPECT_EQ(own_tip->PickPropValue(chat::ChatTipMessageViewModel::kPropInfo)
                .GetString(ChatTipMessageInfoFields_kStringInfoTipContent),
            Text(0xd0acbded) + Text(0x7baf9134));
  Variant const tip = other_tip->PickPropValue(chat::ChatTipMessageViewModel::kPropInfo);
  EXPECT_EQ(tip.GetString(ChatTipMessageInfoFields_kStringInfoTipContent), "Jordan Blake" + Text(0x7baf9134));
  EXPECT_EQ(tip.GetString(ChatMsgBaseInfoFields_kStringBaseInfoMsgId), other);
  EXPECT_FALSE(tip.Has(ChatMsgBaseInfoFields_kStringBaseInfoNickName)) << "tips carry no sender fields";
}

TEST_F(MessageItemTest, LayoutTypesBeyondTheKnownTemplates) {
  const std::string text = Receive(kAvery, "plain");
  Variant image_content(base::variant::kVariantTypeArray);
  Variant element(base::variant::kVariantTypeMap);
  element.Set("image_elem_thumb_url", "https://img/t");
  element.Set("image_elem_thumb_id", "t9");
  element.Set("image_elem_thumb_pic_width", 64);
  element.Set("image_elem_thumb_pic_height", 48);
  image_content.Add(element);
  const std::string image = meeting_.messages().Post(sim::ChatRecord(kMeeting, kAvery, 4, image_content));
  EXPECT_EQ(Row<chat::ChatTextMessageViewModel>(text, 9)
                ->PickPropValue(chat::ChatTextMessageViewModel::kPropInfo)
                .GetInt32(ChatTextMessageInfoFields_kIntegerInfoTextLayoutType),
            1);
  Variant const info =
      Row<chat::ChatImageMessageViewModel>(image, 9)->PickPropValue(chat::ChatImageMessageViewModel::kPropInfo);
  EXPECT_EQ(info.GetInt32(ChatImageMessageInfoFields_kIntegerInfoLayoutType), 0);
  EXPECT_EQ(info.GetInt32(ChatImageMessageInfoFields_kIntegerInfoThumbWidth), 64);
  EXPECT_EQ(info.GetString(ChatImageMessageInfoFields_kStringInfoThumbId), "t9");
  EXPECT_EQ(Row<chat::ChatTextMessageViewModel>(text, 3)
                ->PickPropValue(chat::ChatTextMessageViewModel::kPropInfo)
                .GetInt32(ChatTextMessageInfoFields_kIntegerInfoTextLayoutType),
            3);
}

TEST_F(MessageItemTest, ImageActionsDownloadAndReport) {
  Variant content(base::variant::kVariantTypeArray);
  Variant element(base::variant::kVariantTypeMap);
  element.Set("image_elem_thumb_url", "https://img/t");
  element.Set("image_elem_thumb_id", "t1");
  content.Add(element);
  const std::string id = meeting_.messages().Post(sim::ChatRecord(kMeeting, kAvery, 4, content));
  auto row = Row<chat::ChatImageMessageViewModel>(id);
  base::analytics::ClearRecordedEvents();
  Variant params(base::variant::kVariantTypeMap);
  params.Set(ChatImageMessageDownloadMsgFields_kStringMsgId, id);
  row->Handle(chat::ChatImageMessageViewModel::kActionDownloadImage, &params);
  auto downloads = meeting_.messages().InvocationsOf(32);
  ASSERT_EQ(downloads.size(), 1u);
  EXPECT_EQ(downloads[0].GetString("uuid"), "t1");
  EXPECT_EQ(downloads[0].GetString("download_type"), "thumb");
  row->Handle(chat::ChatImageMessageViewModel::kActionRefreshImage, &params);
  EXPECT_EQ(meeting_.messages().InvocationsOf(32).size(), 2u);
  EXPECT_EQ(base::analytics::RecordedEvents("meetingpage_impanel_null_message_refresh_null_click").size(), 1u);
  row->Handle(chat::ChatImageMessageViewModel::kActionPreviewClicked, nullptr);
  row->Handle(chat::ChatImageMessageViewModel::kActionSaveClicked, nullptr);
  auto preview = base::analytics::RecordedEvents("meetingpage_impanel_null_photomessage_preview_null_click");
  ASSERT_EQ(preview.size(), 1u);
  EXPECT_EQ(preview[0].properties.at("situation"), "2");
  EXPECT_EQ(base::analytics::RecordedEvents("meetingpage_impanel_null_photomessage_save_null_click").size(), 1u);

  LogCapture log;
  EXPECT_FALSE(row->HandleDownloadImageMessage("", "t1", id));
  EXPECT_TRUE(log.Contains("HandleDownloadImageMessage param error. url=  uuid= t1, msg_id= " + id));
  EXPECT_TRUE(row->HandleDownloadImageMessage("https://img/o", "o1", id));
  EXPECT_EQ(meeting_.messages().InvocationsOf(32).back().GetString("download_type"), "original");
}

TEST_F(MessageItemTest, NoticeRowOpensTheNoticePage) {
  Variant ext(base::variant::kVariantTypeMap);
  ext.Set("notice_version", 1);
  ext.Set("notice_content", "Agenda at www.a.com");
  const std::string id = meeting_.messages().Post(sim::ChatRecord(kMeeting, kJordan, 6, Variant(), false, ext));
  auto row = Row<chat::ChatNoticeMessageViewModel>(id);
  Variant const info = row->PickPropValue(chat::ChatNoticeMessageViewModel::kPropInfo);
  ASSERT_EQ(info.Get(ChatNoticeMessageInfoFields_kPtrInfoArrayItem).Size(), 1u);

  int shows = 0, closes = 0;
  struct Counting : framework::Controller {
    int& shows;
    int& closes;
    Variant last;
    Counting(int& s, int& c) : shows(s), closes(c) {}
    void Call(std::string const& name, Variant const* params) override {
      if (name == "show") {
        ++shows;
        last = *params;
      } else {
        ++closes;
      }
    }
  };
  auto controller = std::make_shared<Counting>(shows, closes);
  framework::ControllerManager::Instance()->IocRegister("talvex://page/meeting_notice", [&] { return controller; });
  base::analytics::ClearRecordedEvents();
  meeting_.meeting_settings().SetSwitch("notice_enable", true);
  row->Handle(chat::ChatNoticeMessageViewModel::kActionShowMeetingNotice, nullptr);
  EXPECT_EQ(closes, 1) << "an open notice page is closed first";
  EXPECT_EQ(shows, 1);
  EXPECT_EQ(controller->last.GetString("msg_id"), id);
  EXPECT_EQ(controller->last.GetInt32("template_type"), 2);
  EXPECT_EQ(base::analytics::RecordedEvents("inmeeting_im_null_notice_null_null_ark").size(), 1u);

  meeting_.meeting_settings().SetSwitch("notice_enable", false);
  row->Handle(chat::ChatNoticeMessageViewModel::kActionShowMeetingNotice, nullptr);
  EXPECT_EQ(shows, 1);
  EXPECT_EQ(ui_->toasts().back().text, "The host has turned off the meeting notice.");
  framework::ControllerManager::Instance()->IocUnregister("talvex://page/meeting_notice");
}

TEST_F(MessageItemTest, OpenAppCardsAndGoodsCards) {
  Variant ext(base::variant::kVariantTypeMap);
  ext.Set("description", "Spring sale");
  ext.Set("title", "Shop");
  ext.Set("confirm_btn_text", "Buy");
  ext.Set("notify_desc", "New item");
  ext.Set("app_info",
          R"({"name":"Shop","icon":"https://i/s.png","open_app_id":"77","corp_id":"c1",)"
          R"("ext_data":{"goods_name":"Mug","goods_image":"https://i/m.png","original_price":12,)"
          R"("current_price":"9.5","discount_type":1}})");
  const std::string id = meeting_.messages().Post(sim::ChatRecord(kMeeting, kJordan, 7, Variant(), false, ext));
  auto row = Row<chat::ChatOpenappMessageViewModel>(id);
  Variant const info = row->PickPropValue(chat::ChatOpenappMessageViewModel::kPropInfo);
  EXPECT_EQ(info.GetString(ChatOpenappMessageInfoFields_kStringInfoTitle), "Shop");
  EXPECT_EQ(info.GetString(ChatOpenappMessageInfoFields_kStringInfoIconUrl), "https://i/s.png");
  Variant const& goods = info.Get(ChatOpenappMessageInfoFields_kPtrInfoExtData);
  EXPECT_EQ(goods.GetString(ChatOpenappMessageGoodsInfoFields_kStringGoodsInfoGoodsName), "Mug");
  EXPECT_EQ(goods.GetString(ChatOpenappMessageGoodsInfoFields_kStringGoodsInfoOriginalPrice), "$12.00");
  EXPECT_EQ(goods.GetString(ChatOpenappMessageGoodsInfoFields_kStringGoodsInfoCurrentPrice), "$9.50");
  EXPECT_TRUE(goods.GetBoolean(ChatOpenappMessageGoodsInfoFields_kBooleanGoodsInfoHasDiscount));

  base::analytics::ClearRecordedEvents();
  framework::HostJournal::Clear();
  Variant click(base::variant::kVariantTypeMap);
  click.Set("msg_id", id);
  row->Handle(chat::ChatOpenappMessageViewModel::kActionClickOpenApp, &click);
  auto clicks = base::analytics::RecordedEvents("openappshare_null_null_imcard_null_null_click");
  ASSERT_EQ(clicks.size(), 1u);
  EXPECT_EQ(clicks[0].properties.at("open_app_id"), "77");
  EXPECT_EQ(clicks[0].properties.at("corp_id"), "c1");
  EXPECT_EQ(framework::HostJournal::Entries("sidebar.OpenApp 77").size(), 1u);
  ASSERT_EQ(base::analytics::RecordedEvents("web_app_opened").size(), 1u);
  EXPECT_EQ(base::analytics::RecordedEvents("web_app_opened")[0].properties.at("scene_code"), "2");

  // In a past meeting's record the card opens in the history scene.
  auto record_row = Row<chat::ChatOpenappMessageViewModel>(id, 3);
  record_row->Handle(chat::ChatOpenappMessageViewModel::kActionClickOpenApp, &click);
  EXPECT_EQ(base::analytics::RecordedEvents("openappshare_chathistory_null_imcard_null_null_click").size(), 1u);
  EXPECT_EQ(base::analytics::RecordedEvents("web_app_opened").back().properties.at("scene_code"), "5");

  LogCapture log;
  row->Handle(chat::ChatOpenappMessageViewModel::kActionClickOpenApp, nullptr);
  EXPECT_TRUE(log.Contains("handle click open app msg failed! params error!"));
}

TEST_F(MessageItemTest, GoodsCardsCarryTheLayoutTheMeetingConfigures) {
  auto post = [this](std::string const& goods_extra) {
    Variant ext(base::variant::kVariantTypeMap);
    ext.Set("title", "Shop");
    ext.Set("card_layout_type", 2);
    ext.Set("app_info", R"({"name":"Shop","icon":"/i/s.png","open_app_id":"77","ext_data":{"goods_name":"Mug")" +
                            goods_extra + "}}");
    const std::string id = meeting_.messages().Post(sim::ChatRecord(kMeeting, kJordan, 7, Variant(), false, ext));
    auto row = Row<chat::ChatOpenappMessageViewModel>(id);
    return row->PickPropValue(chat::ChatOpenappMessageViewModel::kPropInfo).Get(ChatOpenappMessageInfoFields_kPtrInfoExtData);
  };
  constexpr char kQt[] = "im_goods_card_layout_qt";
  // The simulated meeting configures a default desktop layout and nothing else.
  Variant goods = post("");
  EXPECT_EQ(goods.Get(kQt), sim::GoodsCardLayouts().Get("default"));
  EXPECT_FALSE(goods.Has("im_goods_card_layout"));
  EXPECT_EQ(goods.GetString("app_info_name"), "Shop");
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
  Variant file_ext(base::variant::kVariantTypeMap);
  file_ext["file_info"].Set("name", "a.pdf");
  file_ext["file_info"].Set("status", 5);
  const std::string file = meeting_.messages().Post(sim::ChatRecord(kMeeting, kAvery, 8, Variant(), false, file_ext));
  auto container = std::make_shared<chat::ChatMessageContainerViewModel>();
  Variant id(file);
  container->Handle(chat::ChatMessageContainerViewModel::kActionSetMsgId, &id);
  EXPECT_EQ(container->PickPropValue(chat::ChatMessageContainerViewModel::kPropViewType).GetString("view_type"),
            "extension:chat.file_message");
  modules->UnregisterModule("chat");
  extensions->Clear();
}

TEST_F(MessageItemTest, UnknownAndMalformedMessagesLeaveTheRowAlone) {
  LogCapture log;
  auto row = Row<chat::ChatTextMessageViewModel>("missing");
  EXPECT_FALSE(row->HasProp(chat::ChatTextMessageViewModel::kPropInfo));
  EXPECT_TRUE(log.Contains("<IM> message not found, with msg_id=missing", base::log::kLogError));

  Variant odd = sim::TextRecord(kMeeting, kAvery, "x");
  odd.Set("msg_id", "odd");
  odd.Set("msg_content", "not an array");
  meeting_.messages().AddMessage(odd);
  auto odd_row = Row<chat::ChatTextMessageViewModel>("odd");
  EXPECT_FALSE(odd_row->HasProp(chat::ChatTextMessageViewModel::kPropInfo));
  EXPECT_TRUE(log.Contains("<IM> msg_content not found, with msg_id=odd"));
  odd_row->Handle(talvex::ChatMessageBaseViewModel::kActionBindMessage, nullptr);
  Variant number(3);
  odd_row->Handle(talvex::ChatMessageBaseViewModel::kActionBindMessage, &number);
  EXPECT_FALSE(odd_row->HasProp(chat::ChatTextMessageViewModel::kPropInfo));
}

}  // namespace
}  // namespace history_test
