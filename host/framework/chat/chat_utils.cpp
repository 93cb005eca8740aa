#include "framework/chat/chat_utils.h"

#include <QString>
#include <QTextBoundaryFinder>

#include "base/log/log.h"
#include "base/util/file_util.h"
#include "framework/module/app_module.h"

namespace talvex {

namespace {

constexpr int kFaceModel = 570;
constexpr uint32_t kFaceMethodByIndex = 1;
constexpr uint32_t kFaceMethodSplitText = 7;

Variant TextItem(QString const& text) {
  Variant item(base::variant::kVariantTypeMap);
  item.Set("item_type", 0);
  item.Set("item_content", text.toStdString());
  return item;
}

Variant LinkItem(QString const& text) {
  Variant item(base::variant::kVariantTypeMap);
  item.Set("item_type", 2);
  item.Set("item_content", text.toStdString());
  return item;
}

bool IsUrlChar(QChar c) {
  const ushort u = c.unicode();
  if (u <= 0x20 || u >= 0x7f) return false;
  return u != '"' && u != '<' && u != '>' && u != '`' && u != '{' && u != '}' && u != '|' && u != '\\' &&
         u != '^';
}

// A link may follow any letter of a script without spaces between words, but
// not an ASCII word ("xhttp://" is no link).
bool IsAsciiWordChar(QChar c) {
  const ushort u = c.unicode();
  return u < 0x80 && (QChar(u).isLetterOrNumber() || u == '_');
}

bool StartsWithAt(QString const& text, int pos, QLatin1String prefix) {
  return text.midRef(pos, prefix.size()).compare(prefix, Qt::CaseInsensitive) == 0;
}

// The length of a link starting at `pos`, 0 when none starts there.
int LinkLengthAt(QString const& text, int pos) {
  if (pos > 0 && IsAsciiWordChar(text[pos - 1])) return 0;
  int prefix = 0;
  if (StartsWithAt(text, pos, QLatin1String("https://"))) {
    prefix = 8;
  } else if (StartsWithAt(text, pos, QLatin1String("http://"))) {
    prefix = 7;
  } else if (StartsWithAt(text, pos, QLatin1String("www."))) {
    prefix = 4;
  } else {
    return 0;
  }
  int end = pos + prefix;
  while (end < text.size() && IsUrlChar(text[end])) {
    // "[" opens a face shortcut after a link; only a host may start with it ("http://[::1]").
    if (text[end] == '[' && end != pos + prefix) break;
    ++end;
  }
  // Sentence punctuation after a link is not part of it.
  while (end > pos + prefix) {
    const QChar last = text[end - 1];
    if (QStringLiteral(".,;:!?'\"").contains(last)) {
      --end;
      continue;
    }
    const QString link = text.mid(pos, end - pos);
    if ((last == ')' && link.count('(') < link.count(')')) || (last == ']' && link.count('[') < link.count(']'))) {
      --end;
      continue;
    }
    break;
  }
  // Never end inside a grapheme cluster.
  if (end < text.size()) {
    QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, text);
    graphemes.setPosition(end);
    if (!graphemes.isAtBoundary()) {
      const int boundary = graphemes.toPreviousBoundary();
      end = boundary > 0 ? boundary : pos;
    }
  }
  // A bare prefix is no link.
  if (end - pos <= prefix) return 0;
  return end - pos;
}

void AppendText(Variant& items, QString const& text) {
  if (!text.isEmpty()) items.Add(TextItem(text));
}

Variant SplitLinks(QString const& text) {
  Variant items(base::variant::kVariantTypeArray);
  int run_start = 0;
  for (int i = 0; i < text.size();) {
    const QChar c = text[i];
    const bool may_start = c == 'h' || c == 'H' || c == 'w' || c == 'W';
    const int length = may_start ? LinkLengthAt(text, i) : 0;
    if (length == 0) {
      ++i;
      continue;
    }
    AppendText(items, text.mid(run_start, i - run_start));
    items.Add(LinkItem(text.mid(i, length)));
    i += length;
    run_start = i;
  }
  AppendText(items, text.mid(run_start));
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
    const Variant pieces = SplitLinks(QString::fromStdString(item.GetString("item_content")));
    for (auto const& piece : pieces.AsArray()) out.Add(piece);
  }
  return out;
}

std::string SafeFileName(std::string const& id) {
  std::string name = id;
  for (char& c : name) {
    if (c == '/' || c == '\\' || c == ':' || c == '\0') c = '_';
  }
  return name;
}

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

Variant ChatUtils::URLParseMessageContext(std::string const& text) {
  return SplitLinks(QString::fromStdString(text));
}

Variant ChatUtils::ParseMessageContext(std::string const& text) {
  if (text.empty()) return Variant(base::variant::kVariantTypeArray);
  auto faces = framework::module::GetAppModuleModel(kFaceModel);
  Variant split;
  Variant params(text);
  if (faces && faces->Invoke(kFaceMethodSplitText, &params, &split) && split.IsArray()) {
    return SplitLinksInTextItems(split);
  }
  return SplitLinks(QString::fromStdString(text));
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
        if (!buffer.empty()) items.Add(TextItem(QString::fromStdString(buffer)));
      }
      continue;
    }
    if (element.Get("text_elem_content").IsString()) {
      const Variant pieces = ParseMessageContext(element.GetString("text_elem_content"));
      for (auto const& piece : pieces.AsArray()) items.Add(piece);
    }
  }
  if (items.Empty() && !compatible_tip.empty()) items.Add(TextItem(QString::fromStdString(compatible_tip)));
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

}  // namespace talvex
