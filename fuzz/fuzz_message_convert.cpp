// The conversion of a host message record of any kind into its UI form, with
// keys of any type, as the message model hands it over before every other
// subscriber; then the row fields the chat list reads from it.
#include <cstdio>
#include <string>

#include "chat/biz_model/chat_message_biz_model.h"
#include "finding.h"
#include "framework/chat/chat_utils.h"
#include "fuzz_meeting.h"
#include "fuzz_support.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz::Meeting();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
  static chat::ChatMessageBizModel model;
  Variant record = fuzz::RecordFromBytes(data, size);
  // `record` is changed in place; the copy keeps the host's record as it was
  // (a write detaches shared storage).
  const Variant original = record;

  bool stop = false;
  model.OnEventConvertToUIMsg(&record, stop);
  if (!record.IsMap()) {
    fuzz::Finding("the record stopped being a map");
  }
  // The conversion adds the UI form and may correct the kind; it never
  // drops or changes anything else of the host's record.
  for (auto const& [key, value] : original.AsMap()) {
    if (key == "ui_msg_content" || key == "chat_type") continue;
    if (!record.Has(key) || !(record.Get(key).ToJson() == value.ToJson())) {
      fuzz::Finding("conversion changed \"%s\" of %s", key.c_str(), original.ToJson().c_str());
    }
  }
  for (auto const& [key, value] : record.AsMap()) {
    if (key != "ui_msg_content" && key != "chat_type" && !original.Has(key)) {
      fuzz::Finding("conversion added \"%s\"", key.c_str());
    }
  }
  Variant info;
  talvex::ChatUtils::ConvertMessageInfoToBaseInfo(nullptr, record, &info);
  (void)talvex::ChatMessageTools::TrimUrlTag(record.Get("ui_msg_content").ToString());
  return 0;
}
