// The floating chat's conversion of a host record into a bullet, for records
// of every kind with keys of random types: the bullet always has the string
// fields the overlay draws.
#include <cstdio>
#include <memory>

#include "chat/viewmodel/in_meeting_bullet_view_model.h"
#include "finding.h"
#include "fuzz_meeting.h"
#include "fuzz_support.h"

namespace {

void CheckString(Variant const& bullet, char const* key) {
  if (bullet.Has(key) && !bullet.Get(key).IsString()) {
    fuzz::Finding("bullet \"%s\" is not a string: %s", key, bullet.ToJson().c_str());
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz::Meeting();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
  static auto* view_model = new chat::InMeetingBulletViewModel();
  const Variant record = fuzz::RecordFromBytes(data, size);
  for (int chat_type : {-1, record.GetInt32("chat_type")}) {
    const Variant bullet = view_model->ModelMsg2UIMsg(record, chat_type);
    if (!bullet.IsMap() || !bullet.Get("msg_id").IsString()) {
      fuzz::Finding("bullet without its id: %s", bullet.ToJson().c_str());
    }
    for (char const* key : {"msg_sender", "msg_content", "msg_receiver", "private_chat_label", "you_label"}) {
      CheckString(bullet, key);
    }
    if (bullet.Has("msg_content_ex_list") && !bullet.Get("msg_content_ex_list").IsArray()) {
      fuzz::Finding("bullet items are not a list: %s", bullet.ToJson().c_str());
    }
  }
  return 0;
}
