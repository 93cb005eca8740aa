#include <QTimer>
#include <memory>

#include "chat/ui/desktop/view/chat_input/chat_input_view.h"
#include "chat/ui/desktop/view/chat_input/chat_input_widget.h"
#include "framework/ui/ui_service.h"
#include "framework/viewmodel/stateful_view_model.h"
#include "input_test_util.h"
#include "support/test_util.h"

namespace {

using input_test::Files;
using input_test::SizeOf;
using QtView::ChatInputView;

constexpr char kMatchText[] = "ChatInputMatchTextToMsgItemsFields_kStringMatchText";
constexpr char kMatchId[] = "ChatInputMatchTextToMsgItemsFields_kStringMatchId";
constexpr char kResultType[] = "ChatInputCallBackMatchTextToMsgItemsFields_kIntegerMsgItemsItemType";
constexpr char kResultText[] = "ChatInputCallBackMatchTextToMsgItemsFields_kStringMsgItemsMsgText";
constexpr char kSendType[] = "ChatInputSendMessageFields_kIntegerMsgItemItemType";
constexpr char kSendText[] = "ChatInputSendMessageFields_kStringMsgItemMsgText";
constexpr char kSendImage[] = "ChatInputSendMessageFields_kStringMsgItemMsgImagePath";

Variant TextResultItem(std::string const& text) { return Variant::Map{{kResultType, 0}, {kResultText, text}}; }

// Publishes the input's props the way the input view model does, answers
// match requests at once, and keeps every action it is sent.
class FakeInputViewModel : public framework::StatefulViewModel {
 public:
  void OnViewAttached(Variant const*) override {
    SetPropValue(ChatInputView::kPropInputStrings,
                 Variant::Map{{"ChatInputUIDataFields_kStringUIDataSendMsgText", "Send"},
                              {"ChatInputUIDataFields_kStringUIDataDefaultInputEditText", "Type a message"}});
    SetPropValue(ChatInputView::kPropChatEnabled, true);
    SetPropValue(ChatInputView::kPropSendShortcut, false);
    SetPropValue(ChatInputView::kPropInputHeight, 85.0);
    if (!cache_dir.empty()) SetPropValue(ChatInputView::kPropImageCacheDir, cache_dir);
    if (!draft.IsNull()) SetPropValue(ChatInputView::kPropDraft, draft);
  }
  void HandleAction(uint32_t action, Variant const* params) override {
    sent[action].push_back(params ? *params : Variant());
    if (action == ChatInputView::kActionMatchTextToMsgItems && answer_matches) Answer(*params);
  }

  // The items set aside for the next request, or else its text as one item.
  void Answer(Variant const& request) {
    const std::string text = request.GetString(kMatchText);
    Variant items = next_items.IsArray() ? std::move(next_items) : Variant(Variant::Array{TextResultItem(text)});
    next_items = Variant();
    matched.push_back(text);
    SetPropValue(ChatInputView::kPropMatchResult,
                 Variant::Map{{"ChatInputCallBackMatchTextToMsgItemsFields_kStringMatchId", request.GetString(kMatchId)},
                              {"ChatInputCallBackMatchTextToMsgItemsFields_kArrayMsgItems", items}});
  }

  std::map<uint32_t, std::vector<Variant>> sent;  // the actions, by kind
  std::vector<std::string> matched;
  bool answer_matches = true;
  Variant next_items;
  std::string smile_path;
  std::string cache_dir;
  Variant draft;
};

class ChatInputViewTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ui_ = std::make_shared<framework::RecordingUIService>();
    framework::SetUIService(ui_);
    vm_->smile_path = files_.Picture("smile.png", QSize(44, 44), Qt::yellow).toStdString();
    host_.resize(360, 300);
  }
  void TearDown() override {
    if (view_) view_->Dispose();
    framework::SetUIService(nullptr);
  }

  void Build() {
    view_ = std::make_shared<ChatInputView>();
    view_->SetViewModel(vm_);
    ASSERT_TRUE(view_->Build({}, &host_, nullptr, true));
    widget()->resize(360, 150);
    host_.show();
    QApplication::processEvents();
  }
  ChatInputWidget* widget() const { return view_->widget(); }
  RichEdit* edit() const { return view_->widget()->edit(); }
  bool Drained() const { return !view_->draining() && view_->pending_item_count() == 0; }
  static QMimeData* Mime(QString const& text, QString const& html = {}, QStringList const& files = {}) {
    auto* mime = new QMimeData;
    QList<QUrl> urls;
    for (auto const& path : files) urls << QUrl::fromLocalFile(path);
    if (!urls.isEmpty()) mime->setUrls(urls);
    if (!html.isNull()) mime->setHtml(html);
    if (!text.isNull()) mime->setText(text);
    return mime;
  }
  void Paste(QMimeData* mime, bool wait = true) {
    QApplication::clipboard()->setMimeData(mime);
    edit()->paste();
    if (wait) {
      EXPECT_TRUE(talvex_test::WaitUntil([&] { return Drained(); }));
    }
  }
  Variant Last(uint32_t action) const {
    auto it = vm_->sent.find(action);
    return it == vm_->sent.end() || it->second.empty() ? Variant() : it->second.back();
  }
  size_t Count(uint32_t action) const { return vm_->sent.count(action) ? vm_->sent.at(action).size() : 0; }

  Files files_;
  std::shared_ptr<framework::RecordingUIService> ui_;
  std::shared_ptr<FakeInputViewModel> vm_ = std::make_shared<FakeInputViewModel>();
  std::shared_ptr<ChatInputView> view_;
  QWidget host_;
};

TEST_F(ChatInputViewTest, PropsDriveTheWidget) {
  vm_->cache_dir = (files_.Dir() + "/send_cache").toStdString();
  Build();
  EXPECT_EQ(widget()->send_button()->text(), "Send");
  EXPECT_EQ(edit()->placeholderText(), "Type a message");
  EXPECT_EQ(edit()->TempPath().toStdString(), vm_->cache_dir);
  vm_->SetPropValue(ChatInputView::kPropSendShortcut, true);
  EXPECT_EQ(widget()->send_option(), ChatInputWidget::kSendByCtrlEnter);
  vm_->SetPropValue(ChatInputView::kPropInputHeight, 160.4);
  EXPECT_EQ(widget()->height(), 160);
  vm_->SetPropValue(ChatInputView::kPropInputHeight, "tall");
  EXPECT_EQ(widget()->height(), 160) << "a bad payload changes nothing";

  vm_->SetPropValue(ChatInputView::kPropDisabledText, "Only the host can send messages.");
  vm_->SetPropValue(ChatInputView::kPropDisabledIcon, false);
  vm_->SetPropValue(ChatInputView::kPropChatEnabled, false);
  EXPECT_EQ(widget()->disabled_label()->text(), "Only the host can send messages.");
  EXPECT_FALSE(widget()->disabled_icon()->isVisible());
  vm_->SetPropValue(ChatInputView::kPropChatEnabled, true);
  QTest::keyClicks(edit(), "to be cleared");
  vm_->SetPropValue(ChatInputView::kPropClearInput, nullptr);
  EXPECT_TRUE(edit()->IsEmpty());
}

TEST_F(ChatInputViewTest, WhatTheUserDoesGoesBackAsActions) {
  Build();
  QTest::keyClicks(edit(), "hi");
  EXPECT_EQ(vm_->sent[ChatInputView::kActionTextChanged], std::vector<Variant>{Variant(true)});
  widget()->send_option_menu()->actions().at(1)->trigger();
  EXPECT_EQ(Last(ChatInputView::kActionSetShortcut), Variant(true));

  // Ctrl+Enter now sends; the box waits for the view model to clear it.
  QTest::keyClick(edit(), Qt::Key_Return, Qt::ControlModifier);
  const Variant sent = Last(ChatInputView::kActionSend);
  ASSERT_EQ(sent.Size(), 1u);
  EXPECT_EQ(sent[0].GetInteger(kSendType, -1), 0);
  EXPECT_EQ(sent[0].GetString(kSendText), "hi");
  EXPECT_EQ(edit()->toPlainText(), "hi");
  vm_->SetPropValue(ChatInputView::kPropClearInput, nullptr);
  EXPECT_EQ(Last(ChatInputView::kActionTextChanged), Variant(false));

  // Blank lines alone are no message.
  QTest::keyClicks(edit(), "   ");
  QTest::keyClick(edit(), Qt::Key_Return, Qt::ShiftModifier);
  widget()->send_button()->click();
  EXPECT_EQ(Count(ChatInputView::kActionSend), 1u);

  QWidget* handle = widget()->resize_handle();
  QTest::mousePress(handle, Qt::LeftButton, Qt::NoModifier, QPoint(10, 2));
  QMouseEvent move(QEvent::MouseMove, QPoint(10, -28), handle->mapToGlobal(QPoint(10, -28)), Qt::NoButton,
                   Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(handle, &move);
  QTest::mouseRelease(handle, Qt::LeftButton, Qt::NoModifier, QPoint(10, -28));
  EXPECT_EQ(Last(ChatInputView::kActionSetInputHeight), Variant(115.0));
}

TEST_F(ChatInputViewTest, PastedTextIsMatchedByItsLatestIdAndEmojiSendAsText) {
  Build();
  // As the client's faces match it.
  const Variant emoji = Variant::Map{
      {kResultType, 1},
      {"ChatInputCallBackMatchTextToMsgItemsFields_kStringMsgItemsMsgEmojiPath", vm_->smile_path},
      {"ChatInputCallBackMatchTextToMsgItemsFields_kIntegerMsgItemsMsgEmojiIndex", 0},
      {"ChatInputCallBackMatchTextToMsgItemsFields_kStringMsgItemsMsgEmojiText", "[Smile]"}};
  vm_->next_items = Variant::Array{TextResultItem("hi "), emoji, TextResultItem(" there\nsecond line")};
  Paste(Mime("hi [Smile] there\nsecond line"));
  const Variant request = Last(ChatInputView::kActionMatchTextToMsgItems);
  EXPECT_EQ(request.GetString(kMatchText), "hi [Smile] there\nsecond line");
  EXPECT_EQ(request.GetString(kMatchId), view_->match_id());
  const auto images = input_test::ImagesOf(edit()->document());
  ASSERT_EQ(images.size(), 1u);
  EXPECT_EQ(SizeOf(images[0]), QSizeF(22, 22));
  EXPECT_EQ(images[0].property(RichEdit::kImageDataProperty).toMap().value("image_type"), "emoji");
  widget()->send_button()->click();
  EXPECT_EQ(Last(ChatInputView::kActionSend)[0].GetString(kSendText), "hi [Smile] there\nsecond line");
  vm_->SetPropValue(ChatInputView::kPropClearInput, nullptr);

  // An answer to an older request is dropped.
  vm_->answer_matches = false;
  view_->MatchText("first");
  const Variant first = Last(ChatInputView::kActionMatchTextToMsgItems);
  view_->MatchText("second");
  vm_->Answer(first);
  EXPECT_EQ(view_->pending_item_count(), 0u);
  vm_->Answer(Last(ChatInputView::kActionMatchTextToMsgItems));
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return Drained(); }));
  EXPECT_EQ(edit()->toPlainText(), "second");

  // Ids come from one counter for the whole process.
  auto other = std::make_shared<ChatInputView>();
  other->SetViewModel(std::make_shared<FakeInputViewModel>());
  QWidget other_host;
  ASSERT_TRUE(other->Build({}, &other_host, nullptr, true));
  other->MatchText("x");
  EXPECT_EQ(std::stoull(other->match_id()), std::stoull(view_->match_id()) + 1);
  other->Dispose();
}

TEST_F(ChatInputViewTest, ALongPasteIsInsertedFiveHundredItemsATickWithTheLoopRunningBetween) {
  Build();
  vm_->next_items = Variant::Array(1200, TextResultItem("x"));
  // A heartbeat of the event loop: it beats whenever the loop turns.
  int beats = 0;
  QTimer heartbeat;
  QObject::connect(&heartbeat, &QTimer::timeout, [&] { ++beats; });
  heartbeat.start(0);
  std::vector<int> lengths, beats_at;
  QObject::connect(edit()->document(), &QTextDocument::contentsChanged, [&] {
    lengths.push_back(edit()->document()->characterCount() - 1);
    beats_at.push_back(beats);
  });
  view_->MatchText("a long paste");
  EXPECT_TRUE(edit()->IsEmpty()) << "nothing is inserted while the paste is taken in";
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return Drained(); }));
  EXPECT_EQ(lengths, (std::vector<int>{500, 1000, 1200}));
  ASSERT_EQ(beats_at.size(), 3u);
  EXPECT_LT(beats_at[0], beats_at[1]);
  EXPECT_LT(beats_at[1], beats_at[2]);
  edit()->undo();
  EXPECT_EQ(edit()->toPlainText().size(), 1000) << "a tick is one step of undo";
}

TEST_F(ChatInputViewTest, AMegabyteOfPlainTextIsInsertedOverManyTicks) {
  Build();
  QString text;
  while (text.size() < 1024 * 1024) text += QStringLiteral("a line of pasted text that goes on for a while\n");
  int ticks = 0, largest_step = 0, last = 0;
  QObject::connect(edit()->document(), &QTextDocument::contentsChanged, [&] {
    largest_step = std::max(largest_step, edit()->document()->characterCount() - last);
    last = edit()->document()->characterCount();
    ++ticks;
  });
  Paste(Mime(text), false);
  EXPECT_TRUE(edit()->IsEmpty());
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return Drained(); }, 120000));
  EXPECT_GE(ticks, text.size() / ChatInputView::kDrainCharsPerTick);
  EXPECT_LE(largest_step, ChatInputView::kDrainCharsPerTick + ChatInputView::kTextPieceLength);
  EXPECT_EQ(edit()->toPlainText(), text);
}

TEST_F(ChatInputViewTest, LocalFilesPasteAsPicturesAndFileSendsUnlessOneIsEmpty) {
  Build();
  const QString picture = files_.Picture("photo.png");
  const QString report = files_.Document("report.pdf");
  const QString empty = files_.Document("empty.txt", "");

  // The broken picture is refused where the user sees it; the rest goes on.
  Paste(Mime("not used", {}, {files_.Document("broken.png", "no picture inside"), picture, report}));
  ASSERT_EQ(ui_->toasts().size(), 1u);
  ASSERT_EQ(edit()->Items().size(), 1);
  EXPECT_EQ(edit()->Items()[0].image_path, picture);
  Variant send = Last(ChatInputView::kActionSendFile);
  EXPECT_EQ(send.GetInteger("action_source"), 2);
  EXPECT_EQ(send.Get("msg_file_paths")[0].AsStr(), report.toStdString());

  Paste(Mime({}, {}, {report, files_.Document("notes.txt"), files_.Dir()}));
  send = Last(ChatInputView::kActionSendFile);
  EXPECT_EQ(send.GetInteger("action_source"), 3);
  EXPECT_EQ(send.Get("msg_file_paths").Size(), 2u);
  ASSERT_EQ(ui_->toasts().size(), 2u);
  EXPECT_NE(ui_->toasts()[1].text.find("Folders"), std::string::npos);

  // One empty file sends the paste on to its HTML, or else its text.
  Paste(Mime("from the text", "<html><body><p>from the html</p></body></html>", {report, empty}));
  Paste(Mime(" and the text", {}, {empty}));
  EXPECT_EQ(Count(ChatInputView::kActionSendFile), 2u);
  EXPECT_EQ(vm_->matched, (std::vector<std::string>{"from the html", " and the text"}));

  // A screenshot comes as image data alone: it is written to the cache first.
  vm_->SetPropValue(ChatInputView::kPropImageCacheDir, (files_.Dir() + "/cache").toStdString());
  auto* shot = new QMimeData;
  QImage image(24, 16, QImage::Format_RGB32);
  image.fill(Qt::green);
  shot->setImageData(image);
  Paste(shot);
  ASSERT_FALSE(edit()->Items().isEmpty());
  EXPECT_EQ(edit()->Items().last().kind, RichEditItem::kImage);
  EXPECT_TRUE(edit()->Items().last().image_path.startsWith(files_.Dir() + "/cache/"));
}

TEST_F(ChatInputViewTest, HtmlFromABrowserBecomesTextPicturesAndLineBreaks) {
  Build();
  const QString picture = files_.Picture("inline.png");
  Paste(Mime("Hello the link after end",
             QString("<html><body><!--StartFragment--><p>Hello <a href=\"https://example.test\">the link</a></p>"
                     "<img src=\"%1\"><br>after<img src=\"https://example.test/remote.png\">end"
                     "<script>alert('no')</script><!--EndFragment--></body></html>")
                 .arg(QUrl::fromLocalFile(picture).toString())));
  widget()->send_button()->click();
  // The remote picture keeps its place as a space; the script never shows.
  const Variant sent = Last(ChatInputView::kActionSend);
  ASSERT_EQ(sent.Size(), 3u);
  EXPECT_EQ(sent[0].GetString(kSendText), "Hello the link");
  EXPECT_EQ(sent[1].GetInteger(kSendType, -1), 3);
  EXPECT_EQ(sent[1].GetString(kSendImage), picture.toStdString());
  EXPECT_EQ(sent[2].GetString(kSendText), "\nafter end");
}

TEST_F(ChatInputViewTest, LargeHtmlIsWalkedWithTheLoopRunningAndLaterPastesWaitTheirTurn) {
  Build();
  QString html = "<table>";
  for (int row = 0; row < 6000; ++row) html += "<tr><td>row " + QString::number(row) + "</td></tr>";
  html += "</table>";
  int beats = 0;
  QTimer heartbeat;
  QObject::connect(&heartbeat, &QTimer::timeout, [&] { ++beats; });
  heartbeat.start(0);

  Paste(Mime("plain", html), false);
  EXPECT_TRUE(view_->draining()) << "a large paste is still being walked when the paste returns";
  // Pasted while the first is walked: it goes in after all of it.
  Paste(Mime(" and then this"), false);
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return Drained(); }, 20000));
  EXPECT_GT(beats, 1) << "the event loop ran while the HTML was walked";
  const QString text = edit()->toPlainText();
  EXPECT_TRUE(text.startsWith("row 0\nrow 1\n")) << text.left(40).toStdString();
  EXPECT_TRUE(text.endsWith("row 5999 and then this")) << text.right(40).toStdString();
  EXPECT_EQ(text.count('\n'), 5999);
  EXPECT_GT(vm_->matched.size(), 2u) << "a long paste is matched in pieces";
  for (auto const& piece : vm_->matched) EXPECT_LE(piece.size(), size_t(ChatInputView::kParsedTextPiece + 20));

  // Closing the panel mid-walk keeps all of the paste in the draft.
  edit()->clear();
  Paste(Mime("plain", html), false);
  ASSERT_TRUE(view_->draining());
  view_->Dispose();
  const Variant draft = Last(ChatInputView::kActionSaveDraft);
  ASSERT_EQ(draft.Size(), 1u);
  const std::string saved = draft[0].GetString(kSendText);
  EXPECT_EQ(saved.substr(0, 6), "row 0\n");
  EXPECT_EQ(saved.substr(saved.size() - 8), "row 5999");
  view_.reset();
}

TEST_F(ChatInputViewTest, TheDraftComesBackSkippingUnknownPartsAndIsKeptAgainOnDisposal) {
  const std::string picture = files_.Picture("draft.png").toStdString();
  vm_->draft = Variant::Array{
      Variant::Map{{kSendType, 0}, {kSendText, "draft words "}},
      Variant::Map{{kSendType, 7}, {kSendText, "from the future"}},
      Variant::Map{{kSendType, 3}, {kSendImage, picture}},
      Variant::Map{{kSendType, 3}, {kSendImage, files_.Missing("gone.png").toStdString()}},
      Variant::Map{{kSendType, 0}, {kSendText, "more words"}},
  };
  Build();
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return Drained(); }));
  EXPECT_EQ(ui_->toasts().size(), 1u) << "the missing picture";
  const auto items = edit()->Items();
  ASSERT_EQ(items.size(), 3);
  EXPECT_EQ(items[0].text, "draft words ");
  EXPECT_EQ(items[1].image_path.toStdString(), picture);
  EXPECT_EQ(items[2].text, "more words");

  view_->Dispose();
  const Variant saved = Last(ChatInputView::kActionSaveDraft);
  ASSERT_EQ(saved.Size(), 3u);
  EXPECT_EQ(saved[1].GetString(kSendImage), picture);
  // An empty box clears the draft.
  vm_->draft = Variant();
  Build();
  view_->Dispose();
  EXPECT_TRUE(Last(ChatInputView::kActionSaveDraft).IsNull());
  view_.reset();
}

TEST_F(ChatInputViewTest, EmojiFromThePanelGoInAtOnce) {
  Build();
  QTest::keyClicks(edit(), "ok ");
  const Variant emoji = Variant::Map{{"EmojiListEmojiItemFields_kStringPath", vm_->smile_path},
                                     {"EmojiListEmojiItemFields_kStringFacetype", "[Smile]"},
                                     {"EmojiListEmojiItemFields_kIntegerIndex", 4}};
  Variant params = Variant::Map{{"emoji_info_list", Variant::Array{emoji, emoji}}};
  EXPECT_TRUE(view_->HandleViewEvent(nullptr, ChatInputView::kViewEventInsertEmoji, &params, nullptr));
  const auto images = input_test::ImagesOf(edit()->document());
  ASSERT_EQ(images.size(), 2u);
  EXPECT_EQ(SizeOf(images[1]), QSizeF(22, 22));
  EXPECT_EQ(images[1].property(RichEdit::kImageDataProperty).toMap().value("index"), 4);
  EXPECT_EQ(view_->SendItems()[0].GetString(kSendText), "ok [Smile][Smile]");
}

TEST_F(ChatInputViewTest, ADrainOrAnAnswerAfterTheViewWentStopsThere) {
  Build();
  vm_->next_items = Variant::Array(1200, TextResultItem("x"));
  view_->MatchText("paste");
  QPointer<ChatInputWidget> widget = view_->widget();
  // The view goes without being disposed; its widget stays with the host.
  view_.reset();
  talvex_test::LogCapture log;
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return log.Contains("self is released"); }));
  ASSERT_TRUE(widget);
  const QString text = widget->edit()->toPlainText();
  talvex_test::SpinFor(3 * ChatInputView::kDrainIntervalMs);
  EXPECT_EQ(widget->edit()->toPlainText(), text);
  vm_->SetPropValue(ChatInputView::kPropClearInput, nullptr);
  widget->send_button()->click();
  EXPECT_EQ(Count(ChatInputView::kActionSend), 0u);
}

}  // namespace
