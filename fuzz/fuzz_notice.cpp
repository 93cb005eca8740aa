// The meeting notice's content: stored content of either type decodes into
// something the banner can show, and an edited text survives encoding,
// decoding and showing unchanged.
#include <fuzzer/FuzzedDataProvider.h>

#include <QString>
#include <string>

#include "chat/biz_model/meeting_notice_biz_model.h"
#include "chat/model/meeting_notice_model.h"
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
  FuzzedDataProvider in(data, size);
  const int stored_type = in.ConsumeIntegralInRange<int>(-1, 2);
  const std::string stored = in.ConsumeRemainingBytesAsString();

  // Content as the service stores it, of a type it may claim wrongly.
  int type = stored_type;
  Variant decoded = chat::MeetingNoticeModel::DecodeNoticeContent(stored, type);
  std::string shown;
  Variant items = chat::MeetingNoticeBizModel::ShownItems(Variant::Map{{"notice_content", decoded}}, &shown);
  if (type == 0) fuzz::CheckEqual("plain notice content shows as stored", stored, shown);
  for (auto const& item : items.AsArray()) (void)item.GetString("content");

  // The same bytes as a text typed into the notice: the edit box hands over
  // UTF-8 (stored content of other bytes is shown as it is, above).
  const std::string typed = QString::fromUtf8(stored.data(), static_cast<int>(stored.size())).toStdString();
  int encoded_type = -1;
  std::string content;
  chat::MeetingNoticeModel::EncodeNoticeContent(typed, encoded_type, content);
  int read_type = encoded_type;
  decoded = chat::MeetingNoticeModel::DecodeNoticeContent(content, read_type);
  if (read_type != encoded_type) fuzz::CheckEqual("encoded notice decodes as its type", content, decoded.ToJson());
  chat::MeetingNoticeBizModel::ShownItems(Variant::Map{{"notice_content", decoded}}, &shown);
  fuzz::CheckEqual("edited notice shows its text", typed, shown);
  return 0;
}
