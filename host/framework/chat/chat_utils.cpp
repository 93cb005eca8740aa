#include "framework/chat/chat_utils.h"

#include <QString>
#include <QTextBoundaryFinder>

#include <QDateTime>

#include <algorithm>
#include <cctype>
#include <string_view>

#include "base/log/log.h"
#include "framework/chat/chat_schema_keys.h"
#include "framework/resource/resource.h"
#include "framework/viewmodel/view_model.h"
#include "base/util/file_util.h"
#include "framework/module/app_module.h"

namespace talvex {

namespace {

constexpr int kFaceModel = 570;
constexpr uint32_t kFaceMethodByIndex = 1;
constexpr uint32_t kFaceMethodSplitText = 7;

Variant Piece(int type, std::string_view text) {
  Variant item(base::variant::kVariantTypeMap);
  item.Set("item_type", type);
  item.Set("item_content", Variant(text));
  return item;
}

bool IsUrlByte(unsigned char u) {
  if (u <= 0x20 || u >= 0x7f) return false;
  return u != '"' && u != '<' && u != '>' && u != '`' && u != '{' && u != '}' && u != '|' && u != '\\' &&
         u != '^';
}

// A link may follow any letter of a script without spaces between words, but
// not an ASCII word ("xhttp://" is no link). Bytes of other scripts are all
// 0x80 or above.
bool IsAsciiWordByte(unsigned char u) { return u < 0x80 && (std::isalnum(u) || u == '_'); }

bool StartsWithAt(std::string_view text, size_t pos, std::string_view prefix) {
  if (text.size() - pos < prefix.size()) return false;
  for (size_t i = 0; i < prefix.size(); ++i) {
    if (std::tolower(static_cast<unsigned char>(text[pos + i])) != prefix[i]) return false;
  }
  return true;
}

// The length in bytes of a link starting at `pos` of the UTF-8 `text`, 0
// when none starts there. A link is printable ASCII, so it is found in the
// bytes themselves.
size_t LinkLengthAt(std::string_view text, size_t pos) {
  if (pos > 0 && IsAsciiWordByte(static_cast<unsigned char>(text[pos - 1]))) return 0;
  size_t prefix = 0;
  if (StartsWithAt(text, pos, "https://")) {
    prefix = 8;
  } else if (StartsWithAt(text, pos, "http://")) {
    prefix = 7;
  } else if (StartsWithAt(text, pos, "www.")) {
    prefix = 4;
  } else {
    return 0;
  }
  size_t end = pos + prefix;
  while (end < text.size() && IsUrlByte(static_cast<unsigned char>(text[end]))) {
    // "[" opens a face shortcut after a link; only a host may start with it ("http://[::1]").
    if (text[end] == '[' && end != pos + prefix) break;
    ++end;
  }
  // Sentence punctuation after a link is not part of it, nor is a closing
  // bracket the link never opened. The brackets are counted once, so a link
  // followed by thousands of them is trimmed in one pass.
  int open_round = 0, close_round = 0, open_square = 0, close_square = 0;
  for (size_t i = pos; i < end; ++i) {
    const char c = text[i];
    open_round += c == '(';
    close_round += c == ')';
    open_square += c == '[';
    close_square += c == ']';
  }
  while (end > pos + prefix) {
    const char last = text[end - 1];
    const bool punctuation = last == '.' || last == ',' || last == ';' || last == ':' || last == '!' ||
                             last == '?' || last == '\'' || last == '"';
    const bool unopened = (last == ')' && open_round < close_round) || (last == ']' && open_square < close_square);
    if (!punctuation && !unopened) break;
    close_round -= last == ')';
    close_square -= last == ']';
    --end;
  }
  // Never end inside a grapheme cluster. After ASCII the link's end always is
  // a boundary; before a character of another script (a combining accent, a
  // keycap) the finder decides, looking at the link and a few characters
  // after it, never at the whole text.
  if (end < text.size() && static_cast<unsigned char>(text[end]) >= 0x80) {
    const size_t window_end = std::min(text.size(), end + 32);
    const QString window = QString::fromUtf8(text.data() + pos, static_cast<int>(window_end - pos));
    QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, window);
    // Up to `end` the window is ASCII: its characters are its bytes.
    graphemes.setPosition(static_cast<int>(end - pos));
    if (!graphemes.isAtBoundary()) {
      const int boundary = graphemes.toPreviousBoundary();
      end = boundary > 0 ? pos + static_cast<size_t>(boundary) : pos;
    }
  }
  // A bare prefix is no link.
  if (end - pos <= prefix) return 0;
  return end - pos;
}

// True when a link may start somewhere in `text`: it holds "http" or "www."
// in any case. Most chat lines hold neither and skip the splitter.
bool MayHoldLink(std::string_view text) {
  const auto lower = [](char c) { return static_cast<char>(c | 0x20); };
  for (size_t i = 0; i + 4 <= text.size(); ++i) {
    const char c = lower(text[i]);
    if (c == 'h' && lower(text[i + 1]) == 't' && lower(text[i + 2]) == 't' && lower(text[i + 3]) == 'p') return true;
    if (c == 'w' && lower(text[i + 1]) == 'w' && lower(text[i + 2]) == 'w' && text[i + 3] == '.') return true;
  }
  return false;
}

// Text and link pieces of the UTF-8 `text`, in order.
Variant SplitLinks(std::string_view text) {
  Variant items(base::variant::kVariantTypeArray);
  if (!MayHoldLink(text)) {
    if (!text.empty()) items.Add(Piece(0, text));
    return items;
  }
  size_t run_start = 0;
  for (size_t i = 0; i < text.size();) {
    const char c = text[i];
    const bool may_start = c == 'h' || c == 'H' || c == 'w' || c == 'W';
    const size_t length = may_start ? LinkLengthAt(text, i) : 0;
    if (length == 0) {
      ++i;
      continue;
    }
    if (i > run_start) items.Add(Piece(0, text.substr(run_start, i - run_start)));
    items.Add(Piece(2, text.substr(i, length)));
    i += length;
    run_start = i;
  }
  if (run_start < text.size()) items.Add(Piece(0, text.substr(run_start)));
  return items;
}

Variant FaceItem(Variant const& face) {
  Variant item(base::variant::kVariantTypeMap);
  item.Set("item_type", 1);
  item.Set("item_emoji_index", face.GetInt32("index", -1));
  item.Set("item_emoji_text", face.GetString("face_type"));
  item.Set("item_emoji_path", face.GetString("path"));
  return item;
}

// Links inside the text items of `items`; emoji items stay.
Variant SplitLinksInTextItems(Variant const& items) {
  Variant out(base::variant::kVariantTypeArray);
  for (auto const& item : items.AsArray()) {
    if (!item.IsMap()) continue;
    if (item.GetInt32("item_type") != 0) {
      out.Add(item);
      continue;
    }
    std::string const& content = item.Get("item_content").AsStr();
    if (content.empty()) continue;
    if (!MayHoldLink(content)) {
      out.Add(item);
      continue;
    }
    const Variant pieces = SplitLinks(content);
    for (auto const& piece : pieces.AsArray()) out.Add(piece);
  }
  return out;
}

std::string SafeFileName(std::string const& id) { return util::file::SafePathComponent(id); }

std::string PicFileName(char const* kind, std::string const& id, std::string const& meeting_id) {
  if (id.empty()) return {};
  return util::file::MakeFilePath(ChatUtils::GetChatImageCacheDir(meeting_id),
                                  std::string(kind) + "_" + SafeFileName(id));
}

bool PicFileExists(char const* kind, std::string const& id, std::string const& meeting_id) {
  const std::string path = PicFileName(kind, id, meeting_id);
  return !path.empty() && util::file::IsFileValid(path);
}

}  // namespace

std::shared_ptr<Variant> ChatUtils::GetMsgInfoPtrById(std::string const& msg_id) {
  if (msg_id.empty()) return nullptr;
  auto model = framework::module::GetAppModuleModel(524);
  auto* store = dynamic_cast<IChatMessageStore*>(model.get());
  return store ? store->FindMessage(msg_id) : nullptr;
}

bool ChatUtils::IsRedPacketOrReceiptType(int chat_type) { return chat_type == 2 || chat_type == 3; }

Variant ChatUtils::URLParseMessageContext(std::string const& text) { return SplitLinks(text); }

Variant ChatUtils::ParseMessageContext(std::string const& text) {
  if (text.empty()) return Variant(base::variant::kVariantTypeArray);
  auto faces = framework::module::GetAppModuleModel(kFaceModel);
  Variant split;
  Variant params(text);
  if (faces && faces->Invoke(kFaceMethodSplitText, &params, &split) && split.IsArray()) {
    return SplitLinksInTextItems(split);
  }
  return URLParseMessageContext(text);
}

Variant ChatUtils::UpdateToFaceMesssageIfSingleEmojiItem(Variant& record, Variant const& items, bool rewrite) {
  if (!rewrite || !items.IsArray() || items.Size() != 1) return items;
  Variant const& only = items.AsArray().front();
  if (!only.IsMap() || only.GetInt32("item_type", -1) != 1) return items;
  if (record.IsMap()) record.Set("chat_type", 1);
  return only;
}

Variant ChatUtils::ParseEmojiTextMixedMessage(Variant const& elements, std::string const& compatible_tip) {
  Variant items(base::variant::kVariantTypeArray);
  auto faces = framework::module::GetAppModuleModel(kFaceModel);
  for (auto const& element : elements.AsArray()) {
    if (!element.IsMap()) continue;
    if (element.Has("face_elem_index")) {
      Variant index(element.GetInt32("face_elem_index", -1));
      Variant face;
      if (faces && faces->Invoke(kFaceMethodByIndex, &index, &face) && face.IsMap()) {
        items.Add(FaceItem(face));
      } else {
        const std::string buffer = element.GetString("face_elem_buf");
        if (!buffer.empty()) items.Add(Piece(0, buffer));
      }
      continue;
    }
    if (element.Get("text_elem_content").IsString()) {
      const Variant pieces = ParseMessageContext(element.GetString("text_elem_content"));
      for (auto const& piece : pieces.AsArray()) items.Add(piece);
    }
  }
  if (items.Empty() && !compatible_tip.empty()) items.Add(Piece(0, compatible_tip));
  return items;
}

std::string ChatUtils::GetChatImageCacheDir(std::string const& meeting_id) {
  const std::string root = util::file::MakeFilePath(util::file::UserCacheDir(), "talvex/chat_images");
  return util::file::MakeFilePath(root, meeting_id.empty() ? std::string("no_meeting") : SafeFileName(meeting_id));
}

std::string ChatUtils::GetThumbPicFileName(std::string const& id, std::string const& meeting_id) {
  return PicFileName("thumb", id, meeting_id);
}
std::string ChatUtils::GetLargePicFileName(std::string const& id, std::string const& meeting_id) {
  return PicFileName("large", id, meeting_id);
}
std::string ChatUtils::GetOriginalPicFileName(std::string const& id, std::string const& meeting_id) {
  return PicFileName("orig", id, meeting_id);
}
bool ChatUtils::CheckThumbPicFileExist(std::string const& id, std::string const& meeting_id) {
  return PicFileExists("thumb", id, meeting_id);
}
bool ChatUtils::CheckLargePicFileExist(std::string const& id, std::string const& meeting_id) {
  return PicFileExists("large", id, meeting_id);
}
bool ChatUtils::CheckOriginalPicFileExist(std::string const& id, std::string const& meeting_id) {
  return PicFileExists("orig", id, meeting_id);
}

std::string ChatUtils::FormatMessageTime(int64_t seconds) {
  return QDateTime::fromSecsSinceEpoch(seconds).toString("hh:mm").toStdString();
}

void ChatUtils::ConvertMessageInfoToBaseInfo(framework::UIViewModel*, Variant const& record, Variant* info) {
  if (!info) return;
  if (!info->IsMap()) *info = Variant(base::variant::kVariantTypeMap);
  auto text = [](char const* name) { return framework::Resource::GetInstance()->GetString(framework::NameId(name)); };
  Variant const& sender = record.Has("msg_sender") ? record.Get("msg_sender") : record.Get("message_sender");
  Variant const& receiver = record.Get("msg_receiver");
  const bool from_self = record.GetBoolean("is_from_self", record.GetBoolean("message_is_from_self"));
  const bool is_private =
      record.GetInt32("conv_type", record.GetInt32("message_conv_type", 2)) == 1;
  const int receiver_type = record.Get("in_meeting_info").GetInt32("receiver_type", is_private ? 1 : 2);
  const int status = record.GetInt32("message_status", 2);

  info->Set(ChatMsgBaseInfoFields_kStringBaseInfoMsgId, record.GetString("msg_id"));
  info->Set("chat_type", record.GetInt32("chat_type", 0));
  info->Set(ChatMsgBaseInfoFields_kBooleanBaseInfoIsFromSelf, from_self);
  info->Set(ChatMsgBaseInfoFields_kStringBaseInfoNickName, sender.GetString("nickname"));
  info->Set(ChatMsgBaseInfoFields_kStringBaseInfoAvatarUrl, sender.GetString("avatar"));
  info->Set(ChatMsgBaseInfoFields_kStringBaseInfoSenderLabel, record.GetString("msg_sender_label"));
  info->Set(ChatMsgBaseInfoFields_kIntegerBaseInfoMsgStatus, status);
  const std::string formatted = record.GetString("msg_format_time");
  info->Set(ChatMsgBaseInfoFields_kStringBaseInfoMsgTime,
            formatted.empty() ? FormatMessageTime(record.GetInteger("message_time")) : formatted);
  info->Set(ChatMsgBaseInfoFields_kStringBaseInfoMoreOptBtnTips, text("chat.message.more"));

  // The sender line: private messages say who they went to and are marked;
  // a public message names its audience when it had a narrower one.
  if (is_private) {
    info->Set(ChatMsgBaseInfoFields_kStringBaseInfoPrivateLabel, text("chat.message.private_label"));
    info->Set(ChatMsgBaseInfoFields_kStringBaseInfoSayToMe, text("chat.message.say_to_me"));
    info->Set(ChatMsgBaseInfoFields_kStringBaseInfoMyselfSendTo, text("chat.message.myself_send_to"));
    info->Set(ChatMsgBaseInfoFields_kStringBaseInfoSay, text("chat.message.say"));
    info->Set(ChatMsgBaseInfoFields_kStringBaseInfoReceiverName, receiver.GetString("nickname"));
  } else if (receiver_type == 3 || receiver_type == 4 || receiver_type == 5) {
    info->Set(ChatMsgBaseInfoFields_kStringBaseInfoSendTo, text("chat.message.send_to"));
    const char* audience = receiver_type == 3   ? "chat.receiver.waiting_room"
                           : receiver_type == 4 ? "chat.receiver.panelists"
                                                : "chat.receiver.everyone";
    const std::string name = receiver.GetString("nickname");
    info->Set(ChatMsgBaseInfoFields_kStringBaseInfoReceiverName, name.empty() ? text(audience) : name);
  }
  if (status == 3) {
    info->Set(ChatMsgBaseInfoFields_kStringBaseInfoTipsText, text("chat.message.not_sent"));
  } else {
    info->Remove(ChatMsgBaseInfoFields_kStringBaseInfoTipsText);
  }
}

}  // namespace talvex
