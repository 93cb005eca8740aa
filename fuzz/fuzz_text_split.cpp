// Splitting a message's text into text, link and emoji items, with the
// meeting's faces loaded: nothing of the text is lost or repeated, and links
// are links.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdio>
#include <string>

#include "finding.h"
#include "framework/chat/chat_utils.h"
#include "fuzz_meeting.h"
#include "fuzz_support.h"

namespace {

void CheckItems(Variant const& items, char const* what) {
  for (auto const& item : items.AsArray()) {
    const int type = item.GetInt32("item_type", -1);
    const bool ok = (type == 0 || type == 2) ? !item.GetString("item_content").empty()
                                             : type == 1 && !item.GetString("item_emoji_text").empty();
    if (!ok) {
      fuzz::Finding("%s: empty or unknown item %s", what, item.ToJson().c_str());
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz::Meeting();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
  const std::string text(reinterpret_cast<char const*>(data), size);

  const Variant links = talvex::ChatUtils::URLParseMessageContext(text);
  CheckItems(links, "links");
  fuzz::CheckEqual("link split loses or repeats text", text, fuzz::JoinItems(links));

  const Variant items = talvex::ChatUtils::ParseMessageContext(text);
  CheckItems(items, "emoji and links");
  fuzz::CheckEqual("emoji split loses or repeats text", text, fuzz::JoinItems(items));

  // The same text as elements of a mixed message, one part a face by index.
  FuzzedDataProvider in(data, size);
  Variant elements(base::variant::kVariantTypeArray);
  elements.Add(Variant::Map{{"text_elem_content", in.ConsumeRandomLengthString(64)}});
  elements.Add(Variant::Map{{"face_elem_index", in.ConsumeIntegralInRange<int>(-1, 30)},
                            {"face_elem_buf", in.ConsumeRandomLengthString(8)}});
  elements.Add(Variant::Map{{"text_elem_content", in.ConsumeRemainingBytesAsString()}});
  CheckItems(talvex::ChatUtils::ParseEmojiTextMixedMessage(elements, "tip"), "mixed");

  (void)talvex::ChatMessageTools::TrimUrlTag(text);
  return 0;
}
