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

Variant Elements(std::initializer_list<Variant> elements) {
  Variant array(base::variant::kVariantTypeArray);
  for (auto const& e : elements) array.Add(e);
  return array;
}

Variant TextElement(std::string const& text) {
  Variant e = Map();
  e.Set("text_elem_content", text);
  return e;
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
    const std::string id = record.GetString("msg_id");
    EXPECT_EQ(meeting_.messages().ReceiveMessage(record), expect_shown);
    return *meeting_.messages().FindMessage(id);
  }

  Variant Record(int chat_type, Variant content = Variant(), Variant ext = Variant()) {
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
  Variant r = Receive(Record(0, Elements({TextElement("hello [Smile] www.a.com")})));
  Variant const& ui = r.Get("ui_msg_content");
  ASSERT_TRUE(ui.IsArray());
  ASSERT_EQ(ui.Size(), 4u);
  EXPECT_EQ(ui[0].GetString("item_content"), "hello ");
  EXPECT_EQ(ui[1].GetInt32("item_type"), 1);
  EXPECT_EQ(ui[3].GetInt32("item_type"), 2);
  EXPECT_EQ(r.GetInt32("chat_type"), 0);
  EXPECT_EQ(seen_after_, 1);

  // One emoji alone is a face message.
  Variant face = Receive(Record(0, Elements({TextElement("[Party]")})));
  EXPECT_EQ(face.GetInt32("chat_type"), 1);
  EXPECT_EQ(face.Get("ui_msg_content").GetString("item_emoji_text"), "[Party]");

  // Plain text elements are shown as they are.
  Variant plain = Receive(Record(11, Elements({TextElement("[Smile] www.a.com")})));
  EXPECT_EQ(plain.Get("ui_msg_content").GetString("item_content"), "[Smile] www.a.com");
}

TEST_F(ConversionTest, FaceByIndexOrAsTextWhenTheFaceIsUnknown) {
  Variant element = Map();
  element.Set("face_elem_index", 3);
  element.Set("face_elem_buf", "[Wink]");
  Variant known = Receive(Record(1, Elements({element})));
  Variant const& ui = known.Get("ui_msg_content");
  EXPECT_EQ(ui.GetInt32("item_type"), 1);
  EXPECT_EQ(ui.GetInt32("item_emoji_index"), 3);
  EXPECT_EQ(ui.GetString("item_emoji_text"), "[Wink]");
  EXPECT_TRUE(QFile::exists(QString::fromStdString(ui.GetString("item_emoji_path"))));
  EXPECT_EQ(known.GetInt32("chat_type"), 1);

  meeting_.faces().Unload();
  LogCapture log;
  Variant unknown = Receive(Record(1, Elements({element})));
  EXPECT_EQ(unknown.GetInt32("chat_type"), 0) << "the record becomes text";
  ASSERT_TRUE(unknown.Get("ui_msg_content").IsArray());
  EXPECT_EQ(unknown.Get("ui_msg_content")[0].GetString("item_content"), "[Wink]");
  EXPECT_TRUE(log.Contains("face not load: 3", base::log::kLogInfo));

  // No elements: no UI form.
  EXPECT_FALSE(Receive(Record(1, Elements({}))).Has("ui_msg_content"));
}

TEST_F(ConversionTest, ControlMessagesHaveNoUiFormAndUnknownKindsStopTheEvent) {
  LogCapture log;
  Variant control = Receive(Record(5, Elements({TextElement("x")})));
  EXPECT_FALSE(control.Has("ui_msg_content"));
  EXPECT_TRUE(log.Contains("<IM> chat control msg no need to display on ui", base::log::kLogError));
  EXPECT_EQ(seen_after_, 1) << "the event goes on";

  Variant unknown = Receive(Record(99, Elements({TextElement("x")})), false);
  EXPECT_FALSE(unknown.Has("ui_msg_content"));
  EXPECT_EQ(seen_after_, 1) << "the event ends at the converter";
}

TEST_F(ConversionTest, ImageSizesPathsAndDownloadStates) {
  Variant e = Map();
  e.Set("image_elem_thumb_url", "https://img/t");
  e.Set("image_elem_thumb_id", "t1");
  e.Set("image_elem_large_url", "https://img/l");
  e.Set("image_elem_large_id", "l1");
  e.Set("image_elem_orig_url", "https://img/o");
  e.Set("image_elem_orig_id", "");
  e.Set("image_elem_thumb_pic_width", 120);
  e.Set("image_elem_thumb_pic_height", 80);
  e.Set("image_elem_large_pic_width", 0);
  e.Set("image_elem_large_pic_height", 600);
  e.Set("image_elem_orig_pic_width", 1600);
  e.Set("image_elem_orig_pic_height", 1200);
  // The sender's own file.
  const std::string own = talvex_test::TempRoot() + "/own.png";
  QFile own_file(QString::fromStdString(own));
  ASSERT_TRUE(own_file.open(QIODevice::WriteOnly));
  own_file.write("png");
  own_file.close();
  e.Set("image_elem_orig_path", own);
  // The thumbnail is already in the meeting's cache.
  ASSERT_TRUE(util::file::EnsureDirExist(talvex::ChatUtils::GetChatImageCacheDir("mt1")));
  QFile cached(QString::fromStdString(talvex::ChatUtils::GetThumbPicFileName("t1", "mt1")));
  ASSERT_TRUE(cached.open(QIODevice::WriteOnly));
  cached.write("png");
  cached.close();
  Variant states = Map();
  states.Set("large_download_status", 1);
  states.Set("thumb_download_status", 3);
  meeting_.messages().SetImageDownloadState(42, states);
  Variant ext = Map();
  ext.Set("progress", 0.5);
  ext.Set("download_result", 0);
  ext.Set("download_type", 2);

  Variant record = Record(4, Elements({e}), ext);
  record.Set("local_msg_id", uint64_t(42));
  Variant ui = Receive(record).Get("ui_msg_content");
  EXPECT_EQ(ui.GetInt32("item_type"), 3);
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
  EXPECT_EQ(ui.GetInt32("download_type"), 2);
  ASSERT_EQ(meeting_.messages().InvocationsOf(38).size(), 1u);
  EXPECT_EQ(meeting_.messages().InvocationsOf(38)[0].GetString("local_msg_id"), "42");
  EXPECT_EQ(meeting_.messages().InvocationsOf(38)[0].GetString("meeting_id"), "mt1");

  // A missing file of the sender is not offered.
  e.Set("image_elem_orig_path", talvex_test::TempRoot() + "/gone.png");
  EXPECT_FALSE(Receive(Record(4, Elements({e}))).Get("ui_msg_content").Has("send_orig_path"));
}

TEST_F(ConversionTest, NoticesKeepTextAndLinksOnly) {
  Variant plain = Map();
  plain.Set("notice_version", 3);
  plain.Set("notice_content", "Welcome all");
  Variant ui = Receive(Record(6, Variant(), plain)).Get("ui_msg_content");
  ASSERT_EQ(ui.Size(), 1u);
  EXPECT_EQ(ui[0].GetString("item_content"), "Welcome all");

  Variant rich = plain;
  rich.Set("notice_type", 1);
  rich.Set("notice_content",
           R"([{"type":0,"content":"Agenda "},{"type":1,"content":"@all"},{"type":2,"content":"www.a.com"},)"
           R"({"type":2},{"content":"orphan"},{"type":0,"content":" end"}])");
  ui = Receive(Record(6, Variant(), rich)).Get("ui_msg_content");
  ASSERT_EQ(ui.Size(), 1u);
  EXPECT_EQ(ui[0].GetString("item_content"), "Agenda www.a.com end");

  LogCapture log;
  for (char const* bad : {"{not json", R"({"type":0,"content":"x"})"}) {
    rich.Set("notice_content", bad);
    EXPECT_FALSE(Receive(Record(6, Variant(), rich)).Has("ui_msg_content")) << bad;
  }
  EXPECT_EQ(log.Count("<IM> notice content is not a JSON array"), 2u);
  Variant no_version = plain;
  no_version.Remove("notice_version");
  EXPECT_FALSE(Receive(Record(6, Variant(), no_version)).Has("ui_msg_content"));
}

TEST_F(ConversionTest, OpenAppCardsAndTheirMissingFields) {
  Variant ext = Map();
  ext.Set("description", "Vote now");
  ext.Set("title", "Poll");
  ext.Set("confirm_btn_text", "Open");
  ext.Set("notify_desc", "New poll");
  ext.Set("is_custom_title", true);
  ext.Set("card_layout_type", 2);
  ext.Set("app_info", R"({"name":"Polls","icon":"https://i/p.png","open_app_id":"55"})");
  Variant ui = Receive(Record(7, Variant(), ext)).Get("ui_msg_content");
  EXPECT_EQ(ui.GetInt32("item_type"), 4);
  EXPECT_EQ(ui.GetString("description"), "Vote now");
  EXPECT_EQ(ui.GetString("image"), "");
  EXPECT_EQ(ui.Get("app_info").GetString("name"), "Polls");
  EXPECT_EQ(ui.GetString("icon_name"), "Polls");
  EXPECT_EQ(ui.GetString("icon_url"), "https://i/p.png");
  EXPECT_EQ(ui.GetString("title"), "Poll");
  EXPECT_EQ(ui.GetString("confirm_btn_text"), "Open");
  EXPECT_TRUE(ui.GetBoolean("is_custom_title"));
  EXPECT_EQ(ui.GetInteger("card_layout_type"), 2);

  ext.Set("app_info", R"({"name":"Assistant","icon":"https://i/a.png","open_app_id":"18260119019"})");
  ui = Receive(Record(7, Variant(), ext)).Get("ui_msg_content");
  EXPECT_NE(ui.GetString("icon_url"), "https://i/a.png") << "the assistant has a built-in icon";
  EXPECT_FALSE(ui.GetString("icon_url").empty());

  LogCapture log;
  ui = Receive(Record(7, Variant(), Map())).Get("ui_msg_content");
  EXPECT_EQ(log.Count("message no 'description' field"), 1u);
  EXPECT_EQ(log.Count("message no 'title' field"), 2u) << "title and button text log alike";
  EXPECT_EQ(log.Count("message no 'notify_desc' field"), 1u);
  EXPECT_EQ(ui.GetString("title"), "");
  EXPECT_EQ(ui.GetString("confirm_btn_text"), "");
  EXPECT_FALSE(ui.Has("card_layout_type"));
  EXPECT_FALSE(log.Contains("image"));
}

Variant FileExt(int status, int64_t size = 10 * 1024 * 1024) {
  Variant info = Map();
  info.Set("id", "f1");
  info.Set("name", "Plan.pdf");
  info.Set("path", "/tmp/Plan.pdf");
  info.Set("size", size);
  info.Set("status", status);
  info.Set("progress", 0.25);
  Variant ext = Map();
  ext.Set("file_info", info);
  return ext;
}

TEST_F(ConversionTest, FilesShowTheirSizeAndState) {
  auto sub_title = [&](Variant ext) { return Receive(Record(8, Variant(), ext)).Get("ui_msg_content").GetString("sub_title"); };
  auto text = [](char const* name) { return framework::Resource::GetInstance()->GetString(framework::NameId(name)); };
  ASSERT_FALSE(text("chat.file.status.upload_failed").empty()) << "the client's table has the texts";

  Variant ui = Receive(Record(8, Variant(), FileExt(3))).Get("ui_msg_content");
  EXPECT_EQ(ui.GetInt32("item_type"), 6);
  EXPECT_EQ(ui.GetString("title"), "Plan.pdf");
  EXPECT_EQ(ui.GetString("name"), "Plan.pdf");
  EXPECT_EQ(ui.GetInt32("icon_type"), 4);
  EXPECT_EQ(ui.GetInt32("err_code"), 0);
  EXPECT_EQ(ui.GetInt32("path_prefix_length"), 0);
  EXPECT_DOUBLE_EQ(ui.GetDouble("progress"), 0.25);
  EXPECT_EQ(ui.GetString("sub_title"), "10.0 MB");

  for (int status : {0, 3, 5, 6, 9, 11}) EXPECT_EQ(sub_title(FileExt(status)), "10.0 MB") << status;
  EXPECT_EQ(sub_title(FileExt(1)), "2.5 MB/10.0 MB");
  EXPECT_EQ(sub_title(FileExt(7)), "2.5 MB/10.0 MB");
  EXPECT_EQ(sub_title(FileExt(2)), "10.0 MB " + text("chat.file.status.upload_canceled"));
  EXPECT_EQ(sub_title(FileExt(4)), "10.0 MB " + text("chat.file.status.upload_failed"));
  EXPECT_EQ(sub_title(FileExt(8)), "10.0 MB " + text("chat.file.status.download_failed"));
  EXPECT_EQ(sub_title(FileExt(10)), "10.0 MB " + text("chat.file.status.download_canceled"));
  EXPECT_EQ(sub_title(FileExt(12)), "10.0 MB " + text("chat.file.status.unavailable"));
  for (int code : {21002, 21003, 21006, 500}) {
    Variant ext = FileExt(4);
    ext["file_info"].Set("err_code", code);
    ext["file_info"].Set("err_msg", "quota reached");
    EXPECT_EQ(sub_title(ext), code == 500 ? "10.0 MB " + text("chat.file.status.upload_failed")
                                           : std::string("10.0 MB quota reached"))
        << code;
  }
  for (int status : {5, 9, 8}) {
    Variant ext = FileExt(status);
    ext["file_info"].Set("security", 1);
    if (status == 8) {
      EXPECT_EQ(sub_title(ext), "10.0 MB " + text("chat.file.status.download_failed"));
    } else {
      EXPECT_EQ(sub_title(ext), text("chat.file.status.security_blocked")) << status;
    }
  }
  EXPECT_FALSE(Receive(Record(8, Variant(), Map())).Has("ui_msg_content"));
  EXPECT_FALSE(Receive(Record(8, Variant(), Variant("file"))).Has("ui_msg_content"));
}

TEST_F(ConversionTest, MixedMessagesAndTheirTip) {
  Variant face = Map();
  face.Set("face_elem_index", 12);
  Variant ui = Receive(Record(12, Elements({TextElement("hot "), face}))).Get("ui_msg_content");
  ASSERT_EQ(ui.Size(), 2u);
  EXPECT_EQ(ui[1].GetString("item_emoji_text"), "[Fire]");
  Variant only_face = Receive(Record(12, Elements({face})));
  EXPECT_EQ(only_face.GetInt32("chat_type"), 1);
  Variant tip = Record(12, Elements({}));
  tip.Set("compatible_tip", "Update to see this message");
  EXPECT_EQ(Receive(tip).Get("ui_msg_content")[0].GetString("item_content"), "Update to see this message");
}

// Records of random shape: every key missing, of the wrong type, or nested
// wrongly. Nothing may crash and nothing but the record may change.
TEST_F(ConversionTest, RandomlyShapedRecordsNeverCrash) {
  std::mt19937 random(20261121);
  auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  std::function<Variant(int)> any_value = [&](int depth) -> Variant {
    switch (pick(depth > 2 ? 6 : 8)) {
      case 0: return Variant();
      case 1: return Variant(pick(2) == 1);
      case 2: return Variant(pick(3) ? std::string("[Smile] www.a.com x") : std::string("{\"type\":"));
      case 3: return Variant(pick(40) - 5);
      case 4: return Variant(pick(100) / 7.0);
      case 5: return Variant(R"([{"type":0,"content":"a"},{"type":2}])");
      case 6: {
        Variant a(base::variant::kVariantTypeArray);
        for (int i = pick(4); i > 0; --i) a.Add(any_value(depth + 1));
        return a;
      }
      default: {
        static char const* const keys[] = {"text_elem_content", "face_elem_index", "face_elem_buf", "file_info",
                                           "notice_version", "notice_content", "notice_type", "status", "size",
                                           "image_elem_thumb_id", "image_elem_thumb_url", "app_info", "name"};
        Variant m = Map();
        for (int i = pick(6); i > 0; --i) m.Set(keys[pick(13)], any_value(depth + 1));
        return m;
      }
    }
  };
  for (int i = 0; i < 3000; ++i) {
    Variant record = Map();
    record.Set("msg_id", "r" + std::to_string(i));
    static char const* const keys[] = {"chat_type", "msg_content", "ext_content", "compatible_tip", "meeting_id",
                                       "local_msg_id"};
    for (char const* key : keys) {
      if (pick(4) == 0) continue;
      record.Set(key, std::string(key) == "chat_type" && pick(2) ? Variant(pick(14)) : any_value(0));
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
