// The floating chat's conversion of a host record into a bullet, for records
// of every kind with keys of random types: the bullet always has the string
// fields the overlay draws.
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "chat/viewmodel/in_meeting_bullet_view_model.h"
#include "fuzz_meeting.h"
#include "fuzz_support.h"

namespace {

void CheckString(Variant const& bullet, char const* key) {
  if (bullet.Has(key) && !bullet.Get(key).IsString()) {
    std::fprintf(stderr, "bullet \"%s\" is not a string: %s\n", key, bullet.ToJson().c_str());
    std::abort();
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
      std::fprintf(stderr, "bullet without its id: %s\n", bullet.ToJson().c_str());
      std::abort();
    }
    for (char const* key : {"msg_sender", "msg_content", "msg_receiver", "private_chat_label", "you_label"}) {
      CheckString(bullet, key);
    }
    if (bullet.Has("msg_content_ex_list") && !bullet.Get("msg_content_ex_list").IsArray()) {
      std::fprintf(stderr, "bullet items are not a list: %s\n", bullet.ToJson().c_str());
      std::abort();
    }
  }
  return 0;
}
