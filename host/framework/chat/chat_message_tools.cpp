// The chat helpers the floating chat leans on: layouts, group receivers,
// the meeting's chat switches and the plain text of a record.
#include <algorithm>
#include <cctype>

#include "framework/chat/chat_utils.h"
#include "framework/meeting/meeting_settings.h"
#include "framework/resource/resource.h"
#include "framework/viewmodel/view_model.h"

namespace talvex {

namespace {
constexpr int kChatTypeText = 0;
constexpr int kChatTypeNotice = 6;
constexpr int kChatTypePlainText = 11;

std::string Text(char const* name) { return framework::Resource::GetInstance()->GetString(framework::NameId(name)); }

// Receiver types of a group message, as the private chat record numbers them.
constexpr int kReceiverWaitingRoom = 3;
constexpr int kReceiverWebinarGroup = 4;
constexpr int kReceiverWebinarAll = 5;

std::string JoinedText(Variant const& elements, char const* key) {
  std::string text;
  if (!elements.IsArray()) return text;
  for (auto const& element : elements.AsArray()) text += element.GetString(key);
  return text;
}
}  // namespace

int ChatUtils::ConvertToLayoutType(int chat_type) {
  return chat_type == kChatTypePlainText ? kChatTypeText : chat_type;
}

void ChatUtils::ResolveUIMsgGroupReceiver(Variant const& source, Variant& out, int) {
  if (!out.IsMap()) out = Variant(base::variant::kVariantTypeMap);
  std::string name;
  if (source.GetInteger("message_conv_type") != 1) {
    switch (source.GetInt32("receiver_type", -1)) {
      case kReceiverWaitingRoom:
        name = Text("chat.receiver.waiting_room");
        break;
      case kReceiverWebinarGroup:
      case kReceiverWebinarAll:
        name = Text("chat.receiver.panelists");
        break;
      default:
        break;
    }
  }
  out.Set("msg_receiver", name);
}

bool ChatUtils::IsChatEnable() { return talvex_common::utils::meetingsettings::GetMeetingSwitch("chat", true); }

bool ChatUtils::IsMeetingSupportIM(int) {
  return talvex_common::utils::meetingsettings::GetMeetingSwitch("im", true);
}

std::string ChatMessageTools::ParseContent(int chat_type, Variant const& source) {
  if (chat_type == kChatTypeNotice) {
    Variant const& ext = source.Get("ext_content");
    if (ext.Get("notice_content").IsString()) {
      const std::string content = ext.GetString("notice_content");
      Variant items;
      // A notice of rich items is stored as their JSON.
      if (ext.GetInt32("notice_type") == 1 && items.FromJsonStr(content.c_str(), content.size())) {
        return JoinedText(items, "item_content");
      }
      return content;
    }
  }
  if (source.Has("message_elem_array")) return JoinedText(source.Get("message_elem_array"), "text_elem_content");
  std::string text = JoinedText(source.Get("msg_content"), "item_content");
  return text.empty() ? JoinedText(source.Get("msg_content"), "text_elem_content") : text;
}

std::string ChatMessageTools::TrimUrlTag(std::string const& text) {
  static constexpr std::string_view kTags[] = {"<url>", "</url>", "[url]", "[/url]"};
  if (text.find_first_of("<[") == std::string::npos) return text;
  std::string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size();) {
    bool skipped = false;
    if (text[i] == '<' || text[i] == '[') {
      for (auto tag : kTags) {
        if (i + tag.size() > text.size()) continue;
        if (std::equal(tag.begin(), tag.end(), text.begin() + static_cast<std::ptrdiff_t>(i), [](char a, char b) {
              return a == std::tolower(static_cast<unsigned char>(b));
            })) {
          i += tag.size();
          skipped = true;
          break;
        }
      }
    }
    if (!skipped) out.push_back(text[i++]);
  }
  return out;
}

}  // namespace talvex
