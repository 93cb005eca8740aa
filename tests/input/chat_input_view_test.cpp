#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QStackedWidget>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFragment>
#include <QTextImageFormat>
#include <QTimer>
#include <QUrl>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "chat/ui/desktop/view/chat_input/chat_input_view.h"
#include "chat/ui/desktop/view/chat_input/chat_input_widget.h"
#include "framework/ui/ui_service.h"
#include "framework/viewmodel/stateful_view_model.h"
#include "input_test_util.h"
#include "support/test_util.h"
#include "uikit/richedit/rich_edit.h"

namespace {

using input_test::Files;
using QtView::ChatInputView;

constexpr char kMatchText[] = "ChatInputMatchTextToMsgItemsFields_kStringMatchText";
constexpr char kMatchId[] = "ChatInputMatchTextToMsgItemsFields_kStringMatchId";
constexpr char kResultId[] = "ChatInputCallBackMatchTextToMsgItemsFields_kStringMatchId";
constexpr char kResultItems[] = "ChatInputCallBackMatchTextToMsgItemsFields_kArrayMsgItems";
constexpr char kResultType[] = "ChatInputCallBackMatchTextToMsgItemsFields_kIntegerMsgItemsItemType";
constexpr char kResultText[] = "ChatInputCallBackMatchTextToMsgItemsFields_kStringMsgItemsMsgText";
constexpr char kResultEmojiPath[] = "ChatInputCallBackMatchTextToMsgItemsFields_kStringMsgItemsMsgEmojiPath";
constexpr char kResultEmojiIndex[] = "ChatInputCallBackMatchTextToMsgItemsFields_kIntegerMsgItemsMsgEmojiIndex";
constexpr char kResultEmojiText[] = "ChatInputCallBackMatchTextToMsgItemsFields_kStringMsgItemsMsgEmojiText";
constexpr char kSendType[] = "ChatInputSendMessageFields_kIntegerMsgItemItemType";
constexpr char kSendText[] = "ChatInputSendMessageFields_kStringMsgItemMsgText";
constexpr char kSendImage[] = "ChatInputSendMessageFields_kStringMsgItemMsgImagePath";

Variant Map() { return Variant(base::variant::kVariantTypeMap); }
Variant Array() { return Variant(base::variant::kVariantTypeArray); }

Variant TextResultItem(std::string const& text) {
  Variant item = Map();
  item.Set(kResultType, 0);
  item.Set(kResultText, text);
  return item;
}

// Publishes the input's props the way the input view model does, answers
// match requests at once, and keeps every action it is sent.
class FakeInputViewModel : public framework::StatefulViewModel {
 public:
  void OnViewAttached(Variant const*) override {
    Variant strings = Map();
    strings.Set("ChatInputUIDataFields_kStringUIDataSendMsgText", "Send");
    strings.Set("ChatInputUIDataFields_kStringUIDataDefaultInputEditText", "Type a message");
    SetPropValue(ChatInputView::kPropInputStrings, strings);
    SetPropValue(ChatInputView::kPropChatEnabled, true);
    SetPropValue(ChatInputView::kPropSendShortcut, false);
    SetPropValue(ChatInputView::kPropInputHeight, 85.0);
    if (!cache_dir.empty()) SetPropValue(ChatInputView::kPropImageCacheDir, cache_dir);
    if (!draft.IsNull()) SetPropValue(ChatInputView::kPropDraft, draft);
  }

  void HandleAction(uint32_t action, Variant const* params) override {
    actions.push_back({action, params ? *params : Variant()});
    if (action == ChatInputView::kActionMatchTextToMsgItems && answer_matches) Answer(*params);
  }

  // The text split at "[Smile]" into text and emoji, like the client's faces.
  void Answer(Variant const& request) {
    const std::string text = request.GetString(kMatchText);
    Variant items = Array();
    if (next_items.IsArray()) {
      items = next_items;
      next_items = Variant();
    } else {
      std::string rest = text;
      for (size_t at; (at = rest.find("[Smile]")) != std::string::npos;) {
        if (at > 0) items.Add(TextResultItem(rest.substr(0, at)));
        Variant emoji = Map();
        emoji.Set(kResultType, 1);
        emoji.Set(kResultEmojiPath, smile_path);
        emoji.Set(kResultEmojiIndex, 0);
        emoji.Set(kResultEmojiText, "[Smile]");
        items.Add(std::move(emoji));
        rest = rest.substr(at + 7);
      }
      if (!rest.empty()) items.Add(TextResultItem(rest));
    }
    matched.push_back(text);
    Variant result = Map();
    result.Set(kResultId, request.GetString(kMatchId));
    result.Set(kResultItems, items);
    SetPropValue(ChatInputView::kPropMatchResult, result);
  }

  std::vector<Variant> Sent(uint32_t action) const {
    std::vector<Variant> out;
    for (auto const& a : actions) {
      if (a.first == action) out.push_back(a.second);
    }
    return out;
  }

  std::vector<std::pair<uint32_t, Variant>> actions;
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
    vm_ = std::make_shared<FakeInputViewModel>();
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
  QTextDocument* doc() const { return edit()->document(); }
  bool Drained() const { return !view_->draining() && view_->pending_item_count() == 0; }
  void Paste(QMimeData* mime) {
    QApplication::clipboard()->setMimeData(mime);
    edit()->paste();
  }
  void PasteAndDrain(QMimeData* mime) {
    Paste(mime);
    ASSERT_TRUE(talvex_test::WaitUntil([&] { return Drained(); }));
  }
  QVector<RichEditItem> Items() const { return edit()->Items(); }
  Variant Last(uint32_t action) const {
    const auto all = vm_->Sent(action);
    return all.empty() ? Variant() : all.back();
  }
  std::vector<QTextImageFormat> Images() const {
    std::vector<QTextImageFormat> images;
    for (QTextBlock b = doc()->begin(); b.isValid(); b = b.next()) {
      for (auto it = b.begin(); !it.atEnd(); ++it) {
        // Equal images side by side share a fragment, one character each.
        if (!it.fragment().charFormat().isImageFormat()) continue;
        for (int i = 0; i < it.fragment().length(); ++i) images.push_back(it.fragment().charFormat().toImageFormat());
      }
    }
    return images;
  }

  Files files_;
  std::shared_ptr<framework::RecordingUIService> ui_;
  std::shared_ptr<FakeInputViewModel> vm_;
  std::shared_ptr<ChatInputView> view_;
  QWidget host_;
};

TEST_F(ChatInputViewTest, PropsDriveTheWidget) {
  vm_->cache_dir = (files_.Dir() + "/send_cache").toStdString();
  talvex_test::LogCapture log;
  Build();
  EXPECT_EQ(widget()->send_button()->text(), "Send");
  EXPECT_EQ(edit()->placeholderText(), "Type a message");
  EXPECT_EQ(edit()->TempPath().toStdString(), vm_->cache_dir);
  EXPECT_TRUE(log.Contains("compress path: " + vm_->cache_dir));

  vm_->SetPropValue(ChatInputView::kPropSendShortcut, true);
  EXPECT_EQ(widget()->send_option(), ChatInputWidget::kSendByCtrlEnter);
  vm_->SetPropValue(ChatInputView::kPropInputHeight, 160.4);
  EXPECT_EQ(widget()->height(), 160);
  vm_->SetPropValue(ChatInputView::kPropInputHeight, "tall");
  EXPECT_EQ(widget()->height(), 160) << "a bad payload changes nothing";

  vm_->SetPropValue(ChatInputView::kPropDisabledText, "Only the host can send messages.");
  vm_->SetPropValue(ChatInputView::kPropDisabledIcon, false);
  vm_->SetPropValue(ChatInputView::kPropChatEnabled, false);
  EXPECT_TRUE(widget()->disabled_label()->isVisible());
  EXPECT_EQ(widget()->disabled_label()->text(), "Only the host can send messages.");
  EXPECT_FALSE(widget()->disabled_icon()->isVisible());
  vm_->SetPropValue(ChatInputView::kPropChatEnabled, true);
  EXPECT_TRUE(edit()->isVisible());

  QTest::keyClicks(edit(), "to be cleared");
  vm_->SetPropValue(ChatInputView::kPropClearInput, nullptr);
  EXPECT_TRUE(edit()->IsEmpty());
}

TEST_F(ChatInputViewTest, WhatTheUserDoesGoesBackAsActions) {
  Build();
  QTest::keyClicks(edit(), "hi");
  EXPECT_EQ(vm_->Sent(ChatInputView::kActionTextChanged), std::vector<Variant>{Variant(true)});

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
  EXPECT_EQ(vm_->Sent(ChatInputView::kActionSend).size(), 1u);

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
  auto* mime = new QMimeData;
  mime->setText("hi [Smile] there\nsecond line");
  PasteAndDrain(mime);
  const Variant request = Last(ChatInputView::kActionMatchTextToMsgItems);
  EXPECT_EQ(request.GetString(kMatchText), "hi [Smile] there\nsecond line");
  EXPECT_EQ(request.GetString(kMatchId), view_->match_id());
  const auto images = Images();
  ASSERT_EQ(images.size(), 1u);
  EXPECT_EQ(QSizeF(images[0].width(), images[0].height()), QSizeF(22, 22));
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
  Variant items = Array();
  for (int i = 0; i < 1200; ++i) items.Add(TextResultItem("x"));
  vm_->next_items = items;
  // A heartbeat of the event loop: it beats whenever the loop turns.
  int beats = 0;
  QTimer heartbeat;
  QObject::connect(&heartbeat, &QTimer::timeout, [&] { ++beats; });
  heartbeat.start(0);
  std::vector<int> lengths;
  std::vector<int> beats_at;
  QObject::connect(doc(), &QTextDocument::contentsChanged, [&] {
    lengths.push_back(doc()->characterCount() - 1);
    beats_at.push_back(beats);
  });

  talvex_test::LogCapture log;
  view_->MatchText("a long paste");
  EXPECT_TRUE(edit()->IsEmpty()) << "nothing is inserted while the paste is taken in";
  EXPECT_TRUE(log.Contains("cache_msg_items_ size = 1200"));
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return Drained(); }));
  EXPECT_EQ(lengths, (std::vector<int>{500, 1000, 1200}));
  ASSERT_EQ(beats_at.size(), 3u);
  EXPECT_LT(beats_at[0], beats_at[1]);
  EXPECT_LT(beats_at[1], beats_at[2]);
  // A tick is one step of undo.
  edit()->undo();
  EXPECT_EQ(edit()->toPlainText().size(), 1000);
}

TEST_F(ChatInputViewTest, AMegabyteOfPlainTextIsInsertedOverManyTicks) {
  Build();
  QString text;
  while (text.size() < 1024 * 1024) text += QStringLiteral("a line of pasted text that goes on for a while\n");
  int ticks = 0;
  int largest_step = 0;
  int last = 0;
  QObject::connect(doc(), &QTextDocument::contentsChanged, [&] {
    largest_step = std::max(largest_step, doc()->characterCount() - last);
    last = doc()->characterCount();
    ++ticks;
  });
  auto* mime = new QMimeData;
  mime->setText(text);
  Paste(mime);
  EXPECT_TRUE(edit()->IsEmpty());
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return Drained(); }, 120000));
  EXPECT_GE(ticks, text.size() / ChatInputView::kDrainCharsPerTick);
  EXPECT_LE(largest_step, ChatInputView::kDrainCharsPerTick + ChatInputView::kTextPieceLength);
  EXPECT_EQ(edit()->toPlainText(), text);
}

TEST_F(ChatInputViewTest, LocalFilesPasteAsPicturesAndFileSendsUnlessOneIsEmpty) {
  Build();
  const QString picture = files_.Picture("photo.png");
  const QString broken = files_.Document("broken.png", "no picture inside");
  const QString report = files_.Document("report.pdf");
  const QString notes = files_.Document("notes.txt");
  const QString empty = files_.Document("empty.txt", "");

  auto* one = new QMimeData;
  one->setUrls({QUrl::fromLocalFile(broken), QUrl::fromLocalFile(picture), QUrl::fromLocalFile(report)});
  one->setText("not used");
  PasteAndDrain(one);
  // The broken picture is refused where the user sees it; the rest goes on.
  ASSERT_EQ(ui_->toasts().size(), 1u);
  ASSERT_EQ(Items().size(), 1);
  EXPECT_EQ(Items()[0].image_path, picture);
  Variant send = Last(ChatInputView::kActionSendFile);
  EXPECT_EQ(send.GetInteger("action_source"), 2);
  EXPECT_EQ(send.Get("msg_file_paths")[0].AsStr(), report.toStdString());

  auto* two = new QMimeData;
  two->setUrls({QUrl::fromLocalFile(report), QUrl::fromLocalFile(notes), QUrl::fromLocalFile(files_.Dir())});
  PasteAndDrain(two);
  send = Last(ChatInputView::kActionSendFile);
  EXPECT_EQ(send.GetInteger("action_source"), 3);
  EXPECT_EQ(send.Get("msg_file_paths").Size(), 2u);
  ASSERT_EQ(ui_->toasts().size(), 2u);
  EXPECT_NE(ui_->toasts()[1].text.find("Folders"), std::string::npos);

  // One empty file sends the paste on to its HTML, or else its text.
  auto* with_html = new QMimeData;
  with_html->setUrls({QUrl::fromLocalFile(report), QUrl::fromLocalFile(empty)});
  with_html->setHtml("<html><body><p>from the html</p></body></html>");
  with_html->setText("from the text");
  PasteAndDrain(with_html);
  auto* with_text = new QMimeData;
  with_text->setUrls({QUrl::fromLocalFile(empty)});
  with_text->setText(" and the text");
  PasteAndDrain(with_text);
  EXPECT_EQ(vm_->Sent(ChatInputView::kActionSendFile).size(), 2u);
  EXPECT_EQ(vm_->matched, (std::vector<std::string>{"from the html", " and the text"}));

  // A screenshot comes as image data alone: it is written to the cache first.
  vm_->SetPropValue(ChatInputView::kPropImageCacheDir, (files_.Dir() + "/cache").toStdString());
  auto* shot = new QMimeData;
  QImage image(24, 16, QImage::Format_RGB32);
  image.fill(Qt::green);
  shot->setImageData(image);
  PasteAndDrain(shot);
  ASSERT_FALSE(Items().isEmpty());
  ASSERT_EQ(Items().last().kind, RichEditItem::kImage);
  EXPECT_TRUE(Items().last().image_path.startsWith(files_.Dir() + "/cache/"));
}

TEST_F(ChatInputViewTest, HtmlFromABrowserBecomesTextPicturesAndLineBreaks) {
  Build();
  const QString picture = files_.Picture("inline.png");
  auto* mime = new QMimeData;
  mime->setHtml(QString("<html><body><!--StartFragment--><p>Hello <a href=\"https://example.test\">the link</a></p>"
                        "<img src=\"%1\"><br>after<img src=\"https://example.test/remote.png\">end"
                        "<script>alert('no')</script><!--EndFragment--></body></html>")
                    .arg(QUrl::fromLocalFile(picture).toString()));
  mime->setText("Hello the link after end");
  PasteAndDrain(mime);
  widget()->send_button()->click();
  // The remote picture keeps its place as a space; the script never shows.
  const Variant sent = Last(ChatInputView::kActionSend);
  ASSERT_EQ(sent.Size(), 3u);
  EXPECT_EQ(sent[0].GetString(kSendText), "Hello the link");
  EXPECT_EQ(sent[1].GetInteger(kSendType, -1), 3);
  EXPECT_EQ(sent[1].GetString(kSendImage), picture.toStdString());
  EXPECT_EQ(sent[2].GetString(kSendText), "\nafter end");
}

TEST_F(ChatInputViewTest, TheDraftComesBackSkippingUnknownPartsAndIsKeptAgainOnDisposal) {
  const QString picture = files_.Picture("draft.png");
  auto part = [](int type, char const* key, std::string const& value) {
    Variant item = Map();
    item.Set(kSendType, type);
    item.Set(key, value);
    return item;
  };
  vm_->draft = Array();
  vm_->draft.Add(part(0, kSendText, "draft words "));
  vm_->draft.Add(part(7, kSendText, "from the future"));
  vm_->draft.Add(part(3, kSendImage, picture.toStdString()));
  vm_->draft.Add(part(3, kSendImage, files_.Missing("gone.png").toStdString()));
  vm_->draft.Add(part(0, kSendText, "more words"));

  talvex_test::LogCapture log;
  Build();
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return Drained(); }));
  EXPECT_TRUE(log.Contains("types that have not yet arrived", base::log::kLogError));
  EXPECT_EQ(ui_->toasts().size(), 1u) << "the missing picture";
  const auto items = Items();
  ASSERT_EQ(items.size(), 3);
  EXPECT_EQ(items[0].text, "draft words ");
  EXPECT_EQ(items[1].image_path, picture);
  EXPECT_EQ(items[2].text, "more words");

  view_->Dispose();
  const Variant saved = Last(ChatInputView::kActionSaveDraft);
  ASSERT_EQ(saved.Size(), 3u);
  EXPECT_EQ(saved[1].GetString(kSendImage), picture.toStdString());
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
  Variant emoji = Map();
  emoji.Set("EmojiListEmojiItemFields_kStringPath", vm_->smile_path);
  emoji.Set("EmojiListEmojiItemFields_kStringFacetype", "[Smile]");
  emoji.Set("EmojiListEmojiItemFields_kIntegerIndex", 4);
  Variant params = Map();
  params.Set("emoji_info_list", Variant(Variant::Array{emoji, emoji}));
  EXPECT_TRUE(view_->HandleViewEvent(nullptr, ChatInputView::kViewEventInsertEmoji, &params, nullptr));
  const auto images = Images();
  ASSERT_EQ(images.size(), 2u);
  EXPECT_EQ(QSizeF(images[1].width(), images[1].height()), QSizeF(22, 22));
  EXPECT_EQ(images[1].property(RichEdit::kImageDataProperty).toMap().value("index"), 4);
  EXPECT_EQ(view_->SendItems()[0].GetString(kSendText), "ok [Smile][Smile]");
}

TEST_F(ChatInputViewTest, ADrainOrAnAnswerAfterTheViewWentStopsThere) {
  Build();
  Variant items = Array();
  for (int i = 0; i < 1200; ++i) items.Add(TextResultItem("x"));
  vm_->next_items = items;
  view_->MatchText("paste");
  QPointer<ChatInputWidget> widget = view_->widget();
  // The view goes without being disposed; its widget stays with the host.
  view_.reset();
  talvex_test::LogCapture log;
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return log.Contains("self is released"); }));
  ASSERT_TRUE(widget);
  const QString text = widget->edit()->toPlainText();
  talvex_test::SpinFor(50);
  EXPECT_EQ(widget->edit()->toPlainText(), text);

  log.Clear();
  vm_->SetPropValue(ChatInputView::kPropClearInput, nullptr);
  EXPECT_TRUE(log.Contains("self is released"));
  widget->send_button()->click();
  EXPECT_TRUE(vm_->Sent(ChatInputView::kActionSend).empty());
}

}  // namespace
