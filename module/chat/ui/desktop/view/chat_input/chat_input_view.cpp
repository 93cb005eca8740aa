#include "chat/ui/desktop/view/chat_input/chat_input_view.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QImage>
#include <QMimeData>
#include <QTextCursor>
#include <QTimer>
#include <QUrl>
#include <QPushButton>
#include <QRegularExpression>
#include <algorithm>
#include <atomic>
#include <climits>
#include <functional>

#include "base/log/log.h"
#include "chat/ui/desktop/view/chat_input/chat_input_widget.h"
#include "chat/ui/desktop/view/private_chat/chat_member_select_view.h"
#include "chat/viewmodel/chat_receiver_view_model.h"
#include "framework/resource/resource.h"
#include "framework/viewmodel/stateful_view_model.h"
#include "uikit/richedit/rich_edit.h"

namespace QtView {

namespace {

constexpr char kMatchText[] = "ChatInputMatchTextToMsgItemsFields_kStringMatchText";
constexpr char kMatchId[] = "ChatInputMatchTextToMsgItemsFields_kStringMatchId";
constexpr char kResultMatchId[] = "ChatInputCallBackMatchTextToMsgItemsFields_kStringMatchId";
constexpr char kResultItems[] = "ChatInputCallBackMatchTextToMsgItemsFields_kArrayMsgItems";
constexpr char kFieldType[] = "ChatInputCallBackMatchTextToMsgItemsFields_kIntegerMsgItemsItemType";
constexpr char kFieldText[] = "ChatInputCallBackMatchTextToMsgItemsFields_kStringMsgItemsMsgText";
constexpr char kFieldEmojiPath[] = "ChatInputCallBackMatchTextToMsgItemsFields_kStringMsgItemsMsgEmojiPath";
constexpr char kFieldEmojiIndex[] = "ChatInputCallBackMatchTextToMsgItemsFields_kIntegerMsgItemsMsgEmojiIndex";
constexpr char kFieldEmojiText[] = "ChatInputCallBackMatchTextToMsgItemsFields_kStringMsgItemsMsgEmojiText";
constexpr char kFieldImagePath[] = "ChatInputCallBackMatchTextToMsgItemsFields_kStringMsgItemsMsgImagePath";
constexpr char kSendItemType[] = "ChatInputSendMessageFields_kIntegerMsgItemItemType";
constexpr char kSendItemText[] = "ChatInputSendMessageFields_kStringMsgItemMsgText";
constexpr char kSendItemImagePath[] = "ChatInputSendMessageFields_kStringMsgItemMsgImagePath";
constexpr char kSendStringsSend[] = "ChatInputUIDataFields_kStringUIDataSendMsgText";
constexpr char kSendStringsPlaceholder[] = "ChatInputUIDataFields_kStringUIDataDefaultInputEditText";
constexpr char kEmojiPath[] = "EmojiListEmojiItemFields_kStringPath";
constexpr char kEmojiFaceType[] = "EmojiListEmojiItemFields_kStringFacetype";
constexpr char kEmojiIndex[] = "EmojiListEmojiItemFields_kIntegerIndex";

constexpr uint32_t kTextImageUnreadable = framework::NameId("chat.input.image_unreadable");
constexpr uint32_t kTextFileUnreadable = framework::NameId("chat.input.file_unreadable");
constexpr uint32_t kTextFileIsFolder = framework::NameId("chat.file.refuse_folder");

// Shared by every input of the process, so that no two requests share an id.
std::atomic<uint64_t> g_match_counter{0};

QString QStr(std::string const& text) { return QString::fromStdString(text); }

bool IsPictureFile(QString const& path) {
  static const QStringList kSuffixes = {"png", "jpg", "jpeg", "gif", "bmp", "webp"};
  return kSuffixes.contains(QFileInfo(path).suffix().toLower());
}

Variant TextItem(QString const& text) {
  Variant item(base::variant::kVariantTypeMap);
  item.Set(kFieldType, static_cast<int>(ChatInputView::kItemText));
  item.Set(kFieldText, text.toStdString());
  return item;
}

Variant ImageItem(QString const& path) {
  Variant item(base::variant::kVariantTypeMap);
  item.Set(kFieldType, static_cast<int>(ChatInputView::kItemImage));
  item.Set(kFieldImagePath, path.toStdString());
  return item;
}

QVariantMap EmojiData(QString const& path, int64_t index, QString const& text) {
  return {{"image_type", "emoji"},
          {"path", path},
          {"index", static_cast<qlonglong>(index)},
          {"face_type", text},
          {"text", text}};
}

// The local file behind an image source of pasted HTML, or "" when there is
// none to insert.
QString LocalImagePath(QString const& src) {
  if (src.isEmpty()) return QString();
  const QUrl url(src);
  if (!url.isValid()) return QString();
  QString path;
  if (url.isLocalFile()) {
    path = url.toLocalFile();
  } else if (url.scheme().isEmpty() && QFileInfo(src).isAbsolute()) {
    path = src;
  } else {
    return QString();
  }
  const QFileInfo info(path);
  return info.isFile() && info.size() > 0 ? info.absoluteFilePath() : QString();
}

// Splits long text so that one cached item never costs a tick much; never
// between the halves of a surrogate pair.
QStringList Pieces(QString const& text, int length) {
  QStringList pieces;
  int start = 0;
  while (start < text.size()) {
    int end = qMin(start + length, text.size());
    if (end < text.size() && text.at(end - 1).isHighSurrogate()) --end;
    pieces << text.mid(start, end - start);
    start = end;
  }
  return pieces;
}

}  // namespace

ChatInputView::ChatInputView() : cache_msg_items_(base::variant::kVariantTypeArray) {}

// A drain still running finds the view gone at its next tick and stops there.
ChatInputView::~ChatInputView() {
  if (receiver_model_) receiver_model_->DidDetached();
  if (member_select_) member_select_->close();
}

QWidget* ChatInputView::BuildFrame(QWidget* parent, Variant*) {
  auto* widget = new ChatInputWidget(parent);
  widget_ = widget;
  // The widget may outlive the view under a parent that owns it: every way
  // back into the view checks that the view is still there.
  std::weak_ptr<AppBaseView> weak = weak_from_this();
  auto alive = [weak] {
    if (!weak.expired()) return true;
    TXLOG_WARN << "self is released";
    return false;
  };
  widget->edit()->SetPasteHandler([this, alive](QMimeData const* mime) {
    bool handled = false;
    if (alive()) PasteFromMimeData(mime, handled);
    return handled;
  });
  QObject::connect(widget, &ChatInputWidget::SendMsgBtnClicked, widget, [this, alive] {
    if (alive()) Send();
  });
  QObject::connect(widget, &ChatInputWidget::EmptyChanged, widget, [this, alive](bool empty) {
    if (alive()) Dispatch(kActionTextChanged, Variant(!empty));
  });
  QObject::connect(widget, &ChatInputWidget::SendOptionSelected, widget,
                   [this, alive](ChatInputWidget::SendOption option) {
                     if (alive()) Dispatch(kActionSetShortcut, Variant(option == ChatInputWidget::kSendByCtrlEnter));
                   });
  QObject::connect(widget, &ChatInputWidget::InputHeightChanged, widget, [this, alive](int height) {
    if (alive()) Dispatch(kActionSetInputHeight, Variant(static_cast<double>(height)));
  });
  QObject::connect(widget, &ChatInputWidget::ReceiverClicked, widget, [this, alive] {
    if (alive()) ShowMemberSelect();
  });
  QObject::connect(widget, &ChatInputWidget::NoticeClicked, widget, [this, alive] {
    if (alive()) Dispatch(kActionShowNotice, Variant());
  });
  BindReceiver();
  return widget;
}

void ChatInputView::BindReceiver() {
  // The receiver line follows the chosen receiver and the permissions.
  receiver_model_ = std::make_shared<chat::ChatReceiverViewModel>();
  QPointer<ChatInputWidget> widget = widget_;
  receiver_model_->BindProp(chat::ChatReceiverViewModel::kPropReceiver, [widget](Variant const* receiver, Variant const*) {
    if (!widget || !receiver || !receiver->IsMap()) return;
    widget->SetReceiver(QString::fromStdString(receiver->GetString("receiver_name")),
                        receiver->GetBoolean("is_private"));
  });
  receiver_model_->DidCreated(nullptr);
  receiver_model_->DidAttached(nullptr);
}

void ChatInputView::ShowMemberSelect() {
  if (!widget_) return;
  if (member_select_ && member_select_->isVisible()) {
    member_select_->close();
    return;
  }
  member_select_ = new ChatMemberSelectView(1, widget_);
  QPushButton* anchor = widget_->receiver_button();
  member_select_->PopupAbove(anchor->mapToGlobal(QPoint(0, 0)));
}

void ChatInputView::OnViewModelBoundEx(framework::StatefulViewModel* view_model) {
  std::weak_ptr<AppBaseView> weak = weak_from_this();
  auto bind = [&](uint32_t prop, bool fire_now, std::function<void(Variant const*)> fn) {
    view_model->BindProp(
        prop,
        [weak, this, fn](Variant const* value, Variant const*) {
          if (weak.expired()) {
            TXLOG_WARN << "self is released";
            return;
          }
          if (widget_) fn(value);
        },
        fire_now);
  };
  bind(kPropImageCacheDir, true, [this](Variant const* v) {
    if (v && v->IsString()) OnCompressPath(v->AsStr());
  });
  bind(kPropSendShortcut, true, [this](Variant const* v) {
    if (!v || !v->IsBool()) return;
    widget_->SetSendOption(v->AsBoolean() ? ChatInputWidget::kSendByCtrlEnter : ChatInputWidget::kSendByEnter);
  });
  bind(kPropInputHeight, true, [this](Variant const* v) {
    if (v && v->IsNumber()) widget_->SetInputHeight(static_cast<int>(v->AsDouble() + 0.5));
  });
  bind(kPropInputStrings, true, [this](Variant const* v) {
    if (!v || !v->IsMap()) return;
    if (v->Get(kSendStringsSend).IsString()) widget_->SetSendText(QStr(v->GetString(kSendStringsSend)));
    if (v->Get(kSendStringsPlaceholder).IsString()) {
      widget_->SetPlaceholderText(QStr(v->GetString(kSendStringsPlaceholder)));
    }
  });
  bind(kPropChatEnabled, true, [this](Variant const* v) {
    if (v && v->IsBool()) widget_->SetChatEnabled(v->AsBoolean());
  });
  bind(kPropDisabledIcon, true, [this](Variant const* v) {
    if (v && v->IsBool()) widget_->SetDisabledIconVisible(v->AsBoolean());
  });
  bind(kPropDisabledText, true, [this](Variant const* v) {
    if (v && v->IsString()) widget_->SetDisabledText(QStr(v->AsStr()));
  });
  bind(kPropSendState, true, [this](Variant const* v) {
    if (v && v->IsBool()) widget_->SetSendState(v->AsBoolean());
  });
  bind(kPropNoticeButton, true, [this](Variant const* v) {
    if (!v || !v->IsMap()) return;
    widget_->SetNoticeButton(v->GetBoolean("enable"), v->GetBoolean("show_red_dot"),
                             QString::fromStdString(v->GetString("tips")),
                             QString::fromStdString(v->GetString("disable_tips")));
  });
  bind(kPropFocusRequest, false, [this](Variant const*) { widget_->FocusEdit(); });
  bind(kPropClearInput, false, [this](Variant const*) {
    cache_msg_items_ = Variant(base::variant::kVariantTypeArray);
    StopDrain();
    widget_->ClearInput();
  });
  bind(kPropDraft, false, [this](Variant const* v) { OnShowUnsentMessages(v); });
  bind(kPropMatchResult, false, [this](Variant const* v) { OnMatchTextToMsgItems(v); });
}

void ChatInputView::Dispatch(uint32_t action, Variant const& params) {
  if (auto const& vm = view_model()) vm->Handle(action, &params);
}

void ChatInputView::OnDispose() {
  // A paste still being taken in goes into the box at once, so that the
  // draft holds all of it.
  WalkPastedHtml(true);
  FlushCache();
  if (!widget_) return;
  // What is left in the box comes back when the panel opens again.
  const Variant items = SendItems();
  Dispatch(kActionSaveDraft, items.Empty() ? Variant() : items);
}

bool ChatInputView::HandleViewEvent(AppBaseView*, int event, Variant const* params, Variant*) {
  if (static_cast<uint32_t>(event) != kViewEventInsertEmoji) return false;
  if (!params || !params->IsMap() || !params->Get("emoji_info_list").IsArray()) {
    TXLOG_WARN << "<IM> emoji insert without emoji_info_list";
    return true;
  }
  InsertEmojis(params->Get("emoji_info_list"));
  return true;
}

// --- sending ----------------------------------------------------------------

Variant ChatInputView::SendItems() const {
  Variant items(base::variant::kVariantTypeArray);
  if (!widget_) return items;
  QString text;
  auto flush_text = [&] {
    if (text.trimmed().isEmpty()) {
      text.clear();
      return;
    }
    Variant item(base::variant::kVariantTypeMap);
    item.Set(kSendItemType, static_cast<int>(kItemText));
    item.Set(kSendItemText, text.toStdString());
    items.Add(std::move(item));
    text.clear();
  };
  for (RichEditItem const& piece : widget_->edit()->Items()) {
    if (piece.kind == RichEditItem::kText) {
      text += piece.text;
    } else if (piece.image_data.value("image_type").toString() == QLatin1String("emoji")) {
      // An emoji goes as its text; the receiving side draws it again.
      text += piece.image_data.value("text").toString();
    } else {
      flush_text();
      Variant item(base::variant::kVariantTypeMap);
      item.Set(kSendItemType, static_cast<int>(kItemImage));
      item.Set(kSendItemImagePath, piece.image_path.toStdString());
      items.Add(std::move(item));
    }
  }
  flush_text();
  // Blank lines around the message are not part of it.
  if (!items.Empty()) {
    Variant& first = items.AsArray().front();
    if (first.GetInteger(kSendItemType) == kItemText) {
      static const QRegularExpression kLeading(QStringLiteral("^\\s+"));
      first.Set(kSendItemText, QStr(first.GetString(kSendItemText)).remove(kLeading).toStdString());
    }
    Variant& last = items.AsArray().back();
    if (last.GetInteger(kSendItemType) == kItemText) {
      static const QRegularExpression kTrailing(QStringLiteral("\\s+$"));
      last.Set(kSendItemText, QStr(last.GetString(kSendItemText)).remove(kTrailing).toStdString());
    }
  }
  return items;
}

void ChatInputView::Send() {
  if (!widget_ || !widget_->chat_enabled()) return;
  // A paste still being inserted belongs to the message.
  FlushCache();
  const Variant items = SendItems();
  if (items.Empty()) return;
  // The box is cleared when the view model says the message went.
  Dispatch(kActionSend, items);
}

// --- text in -----------------------------------------------------------------

void ChatInputView::MatchText(QString const& text) {
  if (text.isEmpty()) return;
  match_id_ = std::to_string(g_match_counter.fetch_add(1) + 1);
  Variant params(base::variant::kVariantTypeMap);
  params.Set(kMatchText, text.toStdString());
  params.Set(kMatchId, match_id_);
  Dispatch(kActionMatchTextToMsgItems, params);
}

void ChatInputView::OnMatchTextToMsgItems(Variant const* result) {
  if (!result || !result->IsMap() || !result->Get(kResultItems).IsArray()) {
    TXLOG_WARN << "<IM> match result without items";
    return;
  }
  const std::string id = result->GetString(kResultMatchId);
  if (id != match_id_) {
    TXLOG_INFO << "<IM> match result " << id << " is not the last request " << match_id_;
    return;
  }
  for (Variant const& item : result->Get(kResultItems).AsArray()) CacheItem(item);
  TXLOG_INFO << "cache_msg_items_ size = " << cache_msg_items_.Size();
  StartDrain();
}

void ChatInputView::CacheItem(Variant item) {
  if (!item.IsMap()) return;
  if (item.GetInteger(kFieldType, -1) == kItemText) {
    const QString text = QStr(item.GetString(kFieldText));
    if (text.size() > kTextPieceLength) {
      for (QString const& piece : Pieces(text, kTextPieceLength)) cache_msg_items_.Add(TextItem(piece));
      return;
    }
  }
  cache_msg_items_.Add(std::move(item));
}

void ChatInputView::CacheImage(QString const& path) { cache_msg_items_.Add(ImageItem(path)); }

void ChatInputView::OnShowUnsentMessages(Variant const* draft) {
  if (!draft || !draft->IsArray()) {
    if (draft && !draft->IsNull()) TXLOG_WARN << "<IM> draft is not a list of items";
    return;
  }
  for (Variant const& item : draft->AsArray()) {
    const int64_t type = item.GetInteger(kSendItemType, -1);
    if (type == kItemText) {
      MatchText(QStr(item.GetString(kSendItemText)));
    } else if (type == kItemImage) {
      CacheImage(QStr(item.GetString(kSendItemImagePath)));
    } else {
      TXLOG_ERROR << "types that have not yet arrived: " << type;
    }
  }
  StartDrain();
}

void ChatInputView::InsertEmojis(Variant const& emoji_info_list) {
  if (!widget_ || !emoji_info_list.IsArray()) return;
  RichEdit* edit = widget_->edit();
  for (Variant const& emoji : emoji_info_list.AsArray()) {
    const QString path = QStr(emoji.GetString(kEmojiPath));
    const QString text = QStr(emoji.GetString(kEmojiFaceType));
    const QVariantMap data = EmojiData(path, emoji.GetInteger(kEmojiIndex, -1), text);
    // Without its picture an emoji is still its text.
    if (!edit->InsertImage(path, QSize(kEmojiSize, kEmojiSize), data)) edit->InsertText(text);
  }
  widget_->FocusEdit();
}

void ChatInputView::OnCompressPath(std::string const& path) {
  TXLOG_INFO << "compress path: " << path;
  if (widget_) widget_->edit()->SetTempPath(QStr(path));
}

// --- the drain -----------------------------------------------------------------

void ChatInputView::StartDrain() {
  if (cache_msg_items_.Empty() || timer_ || !widget_) return;
  image_refused_ = false;
  // The timer lives with the widget: a tick that finds the view gone stops it.
  timer_ = new QTimer(widget_.data());
  timer_->setInterval(kDrainIntervalMs);
  std::weak_ptr<AppBaseView> weak = weak_from_this();
  QTimer* timer = timer_;
  QObject::connect(timer_, &QTimer::timeout, timer_, [weak, this, timer] {
    if (weak.expired()) {
      TXLOG_WARN << "self is released";
      timer->stop();
      timer->deleteLater();
      return;
    }
    DrainTick();
  });
  timer_->start();
  if (widget_) widget_->SetSnapBottom(true);
}

void ChatInputView::DrainTick() {
  if (!widget_) {
    StopDrain();
    return;
  }
  InsertCached(kDrainItemsPerTick, kDrainCharsPerTick);
  if (cache_msg_items_.Empty()) StopDrain();
}

void ChatInputView::FlushCache() {
  InsertCached(cache_msg_items_.Size(), INT_MAX);
  StopDrain();
}

void ChatInputView::InsertCached(size_t max_items, int max_chars) {
  if (!widget_ || cache_msg_items_.Empty()) return;
  RichEdit* edit = widget_->edit();
  auto& items = cache_msg_items_.AsArray();
  QTextCursor cursor = edit->textCursor();
  cursor.beginEditBlock();
  size_t taken = 0;
  int chars = 0;
  while (taken < items.size() && taken < max_items && chars < max_chars) {
    InsertItem(cursor, items[taken], chars);
    ++taken;
  }
  cursor.endEditBlock();
  items.erase(items.begin(), items.begin() + static_cast<std::ptrdiff_t>(taken));
  edit->setTextCursor(cursor);
  edit->ensureCursorVisible();
}

bool ChatInputView::InsertItem(QTextCursor& cursor, Variant const& item, int& chars) {
  RichEdit* edit = widget_->edit();
  switch (item.GetInteger(kFieldType, -1)) {
    case kItemText: {
      const QString text = QStr(item.GetString(kFieldText));
      edit->InsertText(cursor, text);
      chars += text.size();
      return true;
    }
    case kItemEmoji: {
      const QString path = QStr(item.GetString(kFieldEmojiPath));
      const QString text = QStr(item.GetString(kFieldEmojiText));
      ++chars;
      if (edit->InsertImage(cursor, path, QSize(kEmojiSize, kEmojiSize),
                            EmojiData(path, item.GetInteger(kFieldEmojiIndex, -1), text))) {
        return true;
      }
      // Without its picture an emoji is still its text.
      edit->InsertText(cursor, text);
      return false;
    }
    case kItemImage: {
      const QString path = QStr(item.GetString(kFieldImagePath));
      ++chars;
      QVariantMap data{{"image_type", "image"}, {"path", path}};
      if (edit->InsertImage(cursor, path, QSize(), data)) return true;
      RefuseImage(path);
      return false;
    }
    default:
      TXLOG_ERROR << "<IM> input item of unknown type " << item.GetInteger(kFieldType, -1);
      return false;
  }
}

void ChatInputView::StopDrain() {
  if (widget_) widget_->SetSnapBottom(false);
  if (!timer_) return;
  timer_->stop();
  timer_->deleteLater();
  timer_ = nullptr;
}

void ChatInputView::RefuseImage(QString const& path) {
  TXLOG_WARN << "<IM> picture not inserted: " << path.toStdString();
  // One toast a paste, however many pictures failed.
  if (image_refused_) return;
  image_refused_ = true;
  ShowToast(talvex_common::utils::GetLocalizedString(kTextImageUnreadable));
}

// --- paste -----------------------------------------------------------------------

void ChatInputView::PasteFromMimeData(QMimeData const* mime, bool& handled) {
  handled = false;
  if (!mime || !widget_) return;
  if (walker_) {
    // Behind a paste still being walked: this one waits its turn.
    handled = mime->hasUrls() || mime->hasHtml() || mime->hasText() || mime->hasImage();
    if (!handled) return;
    auto copy = std::make_unique<QMimeData>();
    for (QString const& format : mime->formats()) copy->setData(format, mime->data(format));
    if (mime->hasImage()) copy->setImageData(mime->imageData());
    waiting_pastes_.push_back(std::move(copy));
    return;
  }
  const QList<QUrl> urls = mime->urls();
  const bool all_files_have_content =
      !urls.isEmpty() && std::all_of(urls.begin(), urls.end(), [](QUrl const& url) {
        return url.isLocalFile() && QFileInfo(url.toLocalFile()).size() != 0;
      });
  if (mime->hasUrls() && all_files_have_content) {
    handled = true;
    PasteUrls(urls);
    return;
  }
  if (mime->hasHtml() && CHTMLParser::IsValidParser(mime->html())) {
    handled = true;
    parsed_text_.clear();
    walker_ = std::make_unique<CHTMLWalker>(mime->html(), this);
    WalkPastedHtml(false);
    return;
  }
  if (mime->hasText()) {
    handled = true;
    MatchText(mime->text());
    return;
  }
  if (mime->hasImage()) {
    const QString path = widget_->edit()->SaveImageToTempPath(qvariant_cast<QImage>(mime->imageData()));
    if (path.isEmpty()) return;
    handled = true;
    CacheImage(path);
    StartDrain();
  }
}

void ChatInputView::PasteUrls(QList<QUrl> const& urls) {
  Variant files(base::variant::kVariantTypeArray);
  for (QUrl const& url : urls) {
    const QString path = url.toLocalFile();
    const QFileInfo info(path);
    if (info.isDir()) {
      ShowToast(talvex_common::utils::GetLocalizedString(kTextFileIsFolder));
      continue;
    }
    if (IsPictureFile(path)) {
      CacheImage(info.absoluteFilePath());
      continue;
    }
    if (!info.isReadable()) {
      ShowToast(talvex_common::utils::FormatString(kTextFileUnreadable)
                    .Arg("name", info.fileName().toStdString())
                    .Str());
      continue;
    }
    files.Add(info.absoluteFilePath().toStdString());
  }
  StartDrain();
  if (files.Empty()) return;
  Variant params(base::variant::kVariantTypeMap);
  params.Set("action_source", files.Size() == 1 ? 2 : 3);
  params.Set("msg_file_paths", std::move(files));
  Dispatch(kActionSendFile, params);
}

void ChatInputView::OnParserImage(QString const& url) {
  const QString path = LocalImagePath(url);
  if (path.isEmpty()) {
    // A picture that can't be brought along keeps its place as a space.
    parsed_text_ += QLatin1Char(' ');
    return;
  }
  FlushParsedText();
  CacheImage(path);
}

void ChatInputView::OnParserText(QString const& text) { parsed_text_ += text; }

void ChatInputView::OnParserLineBreak() {
  parsed_text_ += QLatin1Char('\n');
  // A shortcut never spans a line, so a long paste is matched a piece at a
  // time and its first lines go in while the rest is walked.
  if (parsed_text_.size() >= kParsedTextPiece) FlushParsedText();
}

void ChatInputView::FlushParsedText() {
  if (parsed_text_.isEmpty()) return;
  const QString text = parsed_text_;
  parsed_text_.clear();
  MatchText(text);
}

void ChatInputView::WalkPastedHtml(bool at_once) {
  // A waiting HTML paste taken in below starts its walker here: the loop
  // walks it, within the same slice of time.
  if (walking_) return;
  walking_ = true;
  QElapsedTimer clock;
  clock.start();
  while (walker_) {
    if (!widget_) {
      walker_.reset();
      waiting_pastes_.clear();
      break;
    }
    bool done = false;
    while (!(done = walker_->Walk(at_once ? INT_MAX : kWalkSliceChars))) {
      if (clock.elapsed() >= kWalkSliceMs) break;
    }
    if (!done) {
      StartDrain();
      ScheduleWalk();
      break;
    }
    walker_.reset();
    FlushParsedText();
    StartDrain();
    while (!walker_ && !waiting_pastes_.empty()) {
      const std::unique_ptr<QMimeData> next = std::move(waiting_pastes_.front());
      waiting_pastes_.pop_front();
      bool handled = false;
      PasteFromMimeData(next.get(), handled);
    }
  }
  walking_ = false;
}

void ChatInputView::ScheduleWalk() {
  if (!walk_timer_) {
    // Like the drain's timer, it lives with the widget and checks the view.
    walk_timer_ = new QTimer(widget_.data());
    walk_timer_->setSingleShot(true);
    walk_timer_->setInterval(0);
    std::weak_ptr<AppBaseView> weak = weak_from_this();
    QTimer* timer = walk_timer_;
    QObject::connect(walk_timer_, &QTimer::timeout, walk_timer_, [weak, this, timer] {
      if (weak.expired()) {
        timer->deleteLater();
        return;
      }
      WalkPastedHtml(false);
    });
  }
  walk_timer_->start();
}

}  // namespace QtView
