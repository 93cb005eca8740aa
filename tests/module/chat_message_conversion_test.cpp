// Records of every kind arriving at the client's message model and leaving
// with their UI form.
#include <QFile>
#include <gtest/gtest.h>
#include <random>

#include "chat/biz_model/chat_message_biz_model.h"
#include "framework/chat/chat_utils.h"
#include "base/util/file_util.h"
#include "framework/resource/resource.h"
#include "framework/viewmodel/view_model.h"
#include "sim/meeting_sim.h"
#include "support/test_util.h"

namespace {

using talvex_test::LogCapture;

Variant Map() { return Variant(base::variant::kVariantTypeMap); }

Variant Json(std::string const& text) {
  Variant v;
  EXPECT_TRUE(v.FromJsonStr(text.c_str())) << text;
  return v;
}

Variant Texts(std::string const& text) { return Json(R"([{"text_elem_content":")" + text + R"("}])"); }

std::string ResourceText(char const* name) {
  return framework::Resource::GetInstance()->GetString(framework::NameId(name));
}

void WriteFile(std::string const& path) {
  QFile file(QString::fromStdString(path));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("png");
}

class ConversionTest : public ::testing::Test {
 protected:
  void SetUp() override {
    talvex_test::IsolateUserDirectories();
    meeting_.Install();
    meeting_.faces().Load();
    model_.Init();
    // A plain subscriber after the converter: it sees what the chat sees.
    meeting_.messages().SubscribePriority(40, 1, 77, std::make_shared<framework::PriorityEventHandler>(
                                                         [this](Variant const*, bool&) { ++seen_after_; }));
  }
  void TearDown() override {
    model_.UnInit();
    meeting_.Uninstall();
  }

  // Sends the record through the client's conversion; the stored record.
  Variant Receive(Variant record, bool expect_shown = true) {
    static int next = 0;
    if (!record.Has("msg_id")) record.Set("msg_id", "m" + std::to_string(++next));
    EXPECT_EQ(meeting_.messages().ReceiveMessage(record), expect_shown);
    return *meeting_.messages().FindMessage(record.GetString("msg_id"));
  }
  Variant Ui(int chat_type, Variant content, Variant ext = Variant()) {
    return Receive(Record(chat_type, content, ext)).Get("ui_msg_content");
  }

  static Variant Record(int chat_type, Variant content = Variant(), Variant ext = Variant()) {
    Variant r = Map();
    r.Set("chat_type", chat_type);
    r.Set("meeting_id", "mt1");
    if (!content.IsNull()) r.Set("msg_content", content);
    if (!ext.IsNull()) r.Set("ext_content", ext);
    return r;
  }

  sim::MeetingSimulator meeting_;
  chat::ChatMessageBizModel model_;
  int seen_after_ = 0;
};

TEST_F(ConversionTest, TextBecomesTextLinkAndEmojiItems) {
  Variant r = Receive(Record(0, Texts("hello [Smile] www.a.com")));
  Variant const& ui = r.Get("ui_msg_content");
  ASSERT_EQ(ui.Size(), 4u);
  EXPECT_EQ(ui[0].GetString("item_content"), "hello ");
  EXPECT_EQ(ui[1].GetInt32("item_type"), 1);
  EXPECT_EQ(ui[3].GetInt32("item_type"), 2);
  EXPECT_EQ(r.GetInt32("chat_type"), 0);
  EXPECT_EQ(seen_after_, 1);

  Variant face = Receive(Record(0, Texts("[Party]")));
  EXPECT_EQ(face.GetInt32("chat_type"), 1) << "one emoji alone is a face message";
  EXPECT_EQ(face.Get("ui_msg_content").GetString("item_emoji_text"), "[Party]");
  EXPECT_EQ(Ui(11, Texts("[Smile] www.a.com")).GetString("item_content"), "[Smile] www.a.com") << "plain text";

  // Mixed messages: text and faces, a lone face, or the tip for old clients.
  Variant mixed = Json(R"([{"text_elem_content":"hot "},{"face_elem_index":12}])");
  ASSERT_EQ(Ui(12, mixed).Size(), 2u);
  EXPECT_EQ(Ui(12, mixed)[1].GetString("item_emoji_text"), "[Fire]");
  EXPECT_EQ(Receive(Record(12, Json(R"([{"face_elem_index":12}])"))).GetInt32("chat_type"), 1);
  Variant tip = Record(12, Json("[]"));
  tip.Set("compatible_tip", "Update to see this message");
  EXPECT_EQ(Receive(tip).Get("ui_msg_content")[0].GetString("item_content"), "Update to see this message");
}

TEST_F(ConversionTest, AVeryLongTextIsSplitAsFarAsItIsShownAndKeepsEveryCharacter) {
  std::string text;
  for (int i = 0; text.size() < 300 * 1024; ++i) text += "see www.a.com/" + std::to_string(i) + " [Smile] 文字 ";
  Variant record = Map();
  record.Set("chat_type", 0);
  record.Set("msg_content", Variant::Array{Variant::Map{{"text_elem_content", text}}});
  Variant const ui = Receive(record).Get("ui_msg_content");
  ASSERT_GT(ui.Size(), 1000u);
  EXPECT_EQ(ui[1].GetInt32("item_type"), 2);
  EXPECT_EQ(ui[3].GetInt32("item_type"), 1);
  // The head is split; the rest is one text, and nothing is lost or doubled.
  EXPECT_LT(ui.Size(), 64 * 1024u / 8);
  Variant const& tail = ui[static_cast<int>(ui.Size()) - 1];
  EXPECT_EQ(tail.GetInt32("item_type"), 0);
  EXPECT_GT(tail.GetString("item_content").size(), 200 * 1024u);
  std::string joined;
  for (auto const& item : ui.AsArray()) {
    joined += item.GetInt32("item_type") == 1 ? item.GetString("item_emoji_text") : item.GetString("item_content");
  }
  EXPECT_EQ(joined, text);
  EXPECT_EQ(QString::fromStdString(tail.GetString("item_content")).toStdString(), tail.GetString("item_content"))
      << "the cut falls between characters";

  // Without a space to cut at, the cut still falls between characters.
  std::string dense;
  while (dense.size() < 100 * 1024) dense += "文";
  record.Set("msg_content", Variant::Array{Variant::Map{{"text_elem_content", dense}}});
  record.Set("msg_id", "dense");
  Variant const dense_ui = Receive(record).Get("ui_msg_content");
  ASSERT_EQ(dense_ui.Size(), 2u);
  EXPECT_EQ(dense_ui[0].GetString("item_content") + dense_ui[1].GetString("item_content"), dense);
  EXPECT_EQ(dense_ui[0].GetString("item_content").size() % 3, 0u);
}

TEST_F(ConversionTest, FaceByIndexOrAsTextWhenTheFaceIsUnknown) {
  const Variant wink = Json(R"([{"face_elem_index":3,"face_elem_buf":"[Wink]"}])");
  Variant known = Receive(Record(1, wink));
  Variant const& ui = known.Get("ui_msg_content");
  EXPECT_EQ(ui.GetInt32("item_emoji_index"), 3);
  EXPECT_EQ(ui.GetString("item_emoji_text"), "[Wink]");
  EXPECT_TRUE(QFile::exists(QString::fromStdString(ui.GetString("item_emoji_path"))));
  EXPECT_EQ(known.GetInt32("chat_type"), 1);

  meeting_.faces().Unload();
  LogCapture log;
  Variant unknown = Receive(Record(1, wink));
  EXPECT_EQ(unknown.GetInt32("chat_type"), 0) << "the record becomes text";
  EXPECT_EQ(unknown.Get("ui_msg_content")[0].GetString("item_content"), "[Wink]");
  EXPECT_TRUE(log.Contains("face not load: 3", base::log::kLogInfo));
  EXPECT_FALSE(Receive(Record(1, Json("[]"))).Has("ui_msg_content"));
}

TEST_F(ConversionTest, ControlMessagesHaveNoUiFormAndUnknownKindsStopTheEvent) {
  LogCapture log;
  EXPECT_FALSE(Receive(Record(5, Texts("x"))).Has("ui_msg_content"));
  EXPECT_TRUE(log.Contains("<IM> chat control msg no need to display on ui", base::log::kLogError));
  EXPECT_EQ(seen_after_, 1) << "the event goes on";
  EXPECT_FALSE(Receive(Record(99, Texts("x")), false).Has("ui_msg_content"));
  EXPECT_EQ(seen_after_, 1) << "the event ends at the converter";
}

TEST_F(ConversionTest, ImageSizesPathsAndDownloadStates) {
  Variant e = Json(R"({"image_elem_thumb_url":"https://img/t","image_elem_thumb_id":"t1",
      "image_elem_large_url":"https://img/l","image_elem_large_id":"l1","image_elem_orig_url":"https://img/o",
      "image_elem_orig_id":"","image_elem_thumb_pic_width":120,"image_elem_thumb_pic_height":80,
      "image_elem_large_pic_width":0,"image_elem_large_pic_height":600,
      "image_elem_orig_pic_width":1600,"image_elem_orig_pic_height":1200})");
  const std::string own = talvex_test::TempRoot() + "/own.png";  // the sender's own file
  WriteFile(own);
  e.Set("image_elem_orig_path", own);
  // The thumbnail is already in the meeting's cache.
  ASSERT_TRUE(util::file::EnsureDirExist(talvex::ChatUtils::GetChatImageCacheDir("mt1")));
  WriteFile(talvex::ChatUtils::GetThumbPicFileName("t1", "mt1"));
  meeting_.messages().SetImageDownloadState(42, Json(R"({"large_download_status":1,"thumb_download_status":3})"));

  Variant elements(base::variant::kVariantTypeArray);
  elements.Add(e);
  Variant record = Record(4, elements, Json(R"({"progress":0.5,"download_result":0,"download_type":2})"));
  record.Set("local_msg_id", uint64_t(42));
  Variant ui = Receive(record).Get("ui_msg_content");
  EXPECT_EQ(ui.GetInt32("thumb_width"), 120);
  EXPECT_EQ(ui.GetInt32("thumb_height"), 80);
  EXPECT_FALSE(ui.Has("large_width"));
  EXPECT_FALSE(ui.Has("large_height")) << "a pair with a zero side goes out whole";
  EXPECT_EQ(ui.GetInt32("orig_width"), 1600);
  EXPECT_EQ(ui.GetString("send_orig_path"), own);
  EXPECT_EQ(ui.GetInt32("thumb_download_status"), 2) << "cached beats the client's state";
  EXPECT_EQ(ui.GetString("thumb_path"), talvex::ChatUtils::GetThumbPicFileName("t1", "mt1"));
  EXPECT_EQ(ui.GetInt32("large_download_status"), 1);
  EXPECT_FALSE(ui.Has("large_path"));
  EXPECT_EQ(ui.GetInt32("orig_download_status"), 0) << "no id, no state";
  EXPECT_DOUBLE_EQ(ui.GetDouble("progress"), 0.5);
  auto asked = meeting_.messages().InvocationsOf(38);
  ASSERT_EQ(asked.size(), 1u);
  EXPECT_EQ(asked[0].GetString("local_msg_id"), "42");
  EXPECT_EQ(asked[0].GetString("meeting_id"), "mt1");

  elements[0].Set("image_elem_orig_path", talvex_test::TempRoot() + "/gone.png");
  EXPECT_FALSE(Ui(4, elements).Has("send_orig_path")) << "a missing file of the sender is not offered";
}

TEST_F(ConversionTest, NoticesKeepTextAndLinksOnly) {
  Variant ui = Ui(6, Variant(), Json(R"({"notice_version":3,"notice_content":"Welcome all"})"));
  ASSERT_EQ(ui.Size(), 1u);
  EXPECT_EQ(ui[0].GetString("item_content"), "Welcome all");

  Variant rich = Map();
  rich.Set("notice_version", 3);
  rich.Set("notice_type", 1);
  rich.Set("notice_content",
           R"([{"type":0,"content":"Agenda "},{"type":1,"content":"@all"},{"type":2,"content":"www.a.com"},)"
           R"({"type":2},{"content":"orphan"},{"type":0,"content":" end"}])");
  ui = Ui(6, Variant(), rich);
  ASSERT_EQ(ui.Size(), 1u);
  EXPECT_EQ(ui[0].GetString("item_content"), "Agenda www.a.com end");

  LogCapture log;
  for (char const* bad : {"{not json", R"({"type":0,"content":"x"})"}) {
    rich.Set("notice_content", bad);
    EXPECT_FALSE(Receive(Record(6, Variant(), rich)).Has("ui_msg_content")) << bad;
  }
  EXPECT_EQ(log.Count("<IM> notice content is not a JSON array"), 2u);
  EXPECT_FALSE(Receive(Record(6, Variant(), Json(R"({"notice_content":"no version"})"))).Has("ui_msg_content"));
}

TEST_F(ConversionTest, OpenAppCardsAndTheirMissingFields) {
  Variant ext = Map();
  ext.Set("card_layout_type", 2);
  ext.Set("app_info", R"({"name":"Polls","icon":"https://i/p.png","open_app_id":"55"})");
  Variant ui = Ui(7, Variant(), ext);
  EXPECT_EQ(ui.GetInt32("item_type"), 4);
  EXPECT_EQ(ui.Get("app_info").GetString("name"), "Polls") << "the JSON text is parsed";
  EXPECT_EQ(ui.GetString("icon_name"), "Polls");
  EXPECT_EQ(ui.GetString("icon_url"), "https://i/p.png");
  EXPECT_EQ(ui.GetInteger("card_layout_type"), 2);

  ext.Set("app_info", R"({"name":"Assistant","icon":"https://i/a.png","open_app_id":"18260119019"})");
  ui = Ui(7, Variant(), ext);
  EXPECT_NE(ui.GetString("icon_url"), "https://i/a.png") << "the assistant has a built-in icon";
  EXPECT_FALSE(ui.GetString("icon_url").empty());

  LogCapture log;
  ui = Ui(7, Variant(), Map());
  EXPECT_EQ(log.Count("message no 'description' field"), 1u);
  EXPECT_EQ(log.Count("message no 'title' field"), 2u) << "title and button text log alike";
  EXPECT_EQ(log.Count("message no 'notify_desc' field"), 1u);
  EXPECT_FALSE(log.Contains("image"));
  EXPECT_EQ(ui.GetString("title"), "");
  EXPECT_EQ(ui.GetString("confirm_btn_text"), "");
  EXPECT_FALSE(ui.Has("card_layout_type"));
}

TEST_F(ConversionTest, FilesShowTheirSizeAndState) {
  auto file = [](int status, std::string const& extra = "") {
    return Json(R"({"file_info":{"id":"f1","name":"Plan.pdf","path":"/tmp/Plan.pdf","size":10485760,"progress":0.25,)"
                R"("status":)" + std::to_string(status) + extra + "}}");
  };
  auto sub_title = [&](Variant ext) { return Ui(8, Variant(), ext).GetString("sub_title"); };
  auto failed = [](char const* name) { return "10.0 MB " + ResourceText(name); };
  ASSERT_FALSE(ResourceText("chat.file.status.upload_failed").empty()) << "the client's table has the texts";
  Variant ui = Ui(8, Variant(), file(3));
  EXPECT_EQ(ui.GetInt32("item_type"), 6);
  EXPECT_EQ(ui.GetString("title"), "Plan.pdf");
  EXPECT_EQ(ui.GetInt32("icon_type"), 4);
  EXPECT_DOUBLE_EQ(ui.GetDouble("progress"), 0.25);

  const std::vector<std::pair<int, std::string>> by_status = {
      {0, "10.0 MB "}, {3, "10.0 MB "}, {5, "10.0 MB "}, {6, "10.0 MB "}, {9, "10.0 MB "}, {11, "10.0 MB "},
      {1, "2.5 MB/10.0 MB "}, {7, "2.5 MB/10.0 MB "},
      {2, failed("chat.file.status.upload_canceled")}, {4, failed("chat.file.status.upload_failed")},
      {8, failed("chat.file.status.download_failed")}, {10, failed("chat.file.status.download_canceled")},
      {12, failed("chat.file.status.unavailable")}};
  for (auto const& [status, text] : by_status) EXPECT_EQ(sub_title(file(status)), text) << status;

  // Quota codes show the server's words; others the usual text.
  for (int code : {21002, 21003, 21006, 500}) {
    EXPECT_EQ(sub_title(file(4, R"(,"err_msg":"quota reached","err_code":)" + std::to_string(code))),
              code == 500 ? failed("chat.file.status.upload_failed") : "10.0 MB quota reached")
        << code;
  }
  // A blocked file says so, except where the download itself failed.
  for (int status : {5, 9, 8}) {
    const std::string blocked = ResourceText("chat.file.status.security_blocked");
    EXPECT_EQ(sub_title(file(status, R"(,"security":1)")),
              status == 8 ? failed("chat.file.status.download_failed") : blocked)
        << status;
  }
  EXPECT_FALSE(Receive(Record(8, Variant(), Map())).Has("ui_msg_content"));
  EXPECT_FALSE(Receive(Record(8, Variant(), Variant("file"))).Has("ui_msg_content"));
}

// Records of random shape: every key missing, of the wrong type, or nested
// wrongly. Nothing may crash and nothing but the record may change.
TEST_F(ConversionTest, RandomlyShapedRecordsNeverCrash) {
  std::mt19937 random(20261121);
  auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  // The record's own keys, then the keys of its parts.
  static char const* const keys[] = {"chat_type", "msg_content", "ext_content", "compatible_tip", "meeting_id",
                                     "local_msg_id", "text_elem_content", "face_elem_index", "face_elem_buf",
                                     "file_info", "notice_version", "notice_content", "notice_type", "status", "size",
                                     "image_elem_thumb_id", "image_elem_thumb_url", "app_info", "name"};
  std::function<Variant(int)> any_value = [&](int depth) -> Variant {
    Variant v(base::variant::kVariantTypeArray);
    switch (pick(depth > 2 ? 6 : 8)) {
      case 0: return Variant();
      case 1: return Variant(pick(2) == 1);
      case 2: return Variant(pick(3) ? "[Smile] www.a.com x" : "{\"type\":");
      case 3: return Variant(pick(40) - 5);
      case 4: return Variant(pick(100) / 7.0);
      case 5: return Variant(R"([{"type":0,"content":"a"},{"type":2}])");
      case 6:
        for (int i = pick(4); i > 0; --i) v.Add(any_value(depth + 1));
        return v;
      default:
        v = Map();
        for (int i = pick(6); i > 0; --i) v.Set(keys[6 + pick(13)], any_value(depth + 1));
        return v;
    }
  };
  for (int i = 0; i < 3000; ++i) {
    Variant record = Map();
    record.Set("msg_id", "r" + std::to_string(i));
    for (int k = 0; k < 6; ++k) {
      if (pick(4) != 0) record.Set(keys[k], k == 0 && pick(2) ? Variant(pick(14)) : any_value(0));
    }
    meeting_.messages().ReceiveMessage(record);
    bool stop = false;
    model_.OnEventConvertToUIMsg(nullptr, stop);
    Variant not_a_map(i);
    model_.OnEventConvertToUIMsg(&not_a_map, stop);
    EXPECT_FALSE(stop);
  }
  EXPECT_EQ(meeting_.messages().size(), 3000u);
}

}  // namespace
