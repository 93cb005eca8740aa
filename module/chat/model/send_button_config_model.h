#pragma once

#include "chat/runtime/chat_ids.h"
#include "framework/model/model_impl.h"

namespace chat {

// What the buttons beside the input offer, from the meeting's configuration
// ("chat" / "send_button_show_more", default true, and
// "send_button_red_dot_more", default false): a map `show_more`,
// `red_dot_more`. The configuration comes with the meeting, so it is read
// again when the meeting is joined and whenever it is asked for; a change
// fires kEventConfigChanged with the new map.
class SendButtonConfigModel : public framework::ModelImpl {
 public:
  enum Method : uint32_t { kGetConfig = 1083848274 };
  enum Event : uint32_t { kEventConfigChanged = 312889305 };

  SendButtonConfigModel();
  void Init() override;
  void UnInit() override;
  // Reads the configuration; fires the change when it differs from the last.
  Variant Refresh();

 private:
  Variant last_;
};

}  // namespace chat
