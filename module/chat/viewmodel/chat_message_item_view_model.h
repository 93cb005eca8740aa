#pragma once

#include <memory>
#include <string>

#include "framework/viewmodel/chat_message_base_view_model.h"

namespace chat {

// What the chat rows share: finding the bound message and its UI content,
// the shared fields, the layout type.
class ChatMessageItemViewModel : public talvex::ChatMessageBaseViewModel {
 public:
  void HandleMsgInfo(Variant const* params) final;
  std::string const& msg_id() const { return msg_id_; }

 protected:
  // The message's UI form: `ui_msg_content` where the client converted it,
  // else `msg_content`.
  static Variant const& ContentOf(Variant const& record);
  // Fills `info` (already holding the shared fields unless the row wants
  // none) and publishes it; false leaves the prop untouched.
  virtual bool FillInfo(Variant const& record, Variant const* params, Variant& info) = 0;
  virtual uint32_t info_prop() const = 0;
  // The layout type beyond template type 3.
  virtual int layout_above() const { return 1; }
  virtual bool wants_base_info() const { return true; }

  std::string msg_id_;
  int template_type_ = 0;

 private:
  // What the published info was made from: a row bound again to the same
  // record (the list laid out again, the panel resized) publishes nothing
  // new, and a long message is not converted again.
  Variant bound_record_;
  std::string bound_conv_id_;
};

}  // namespace chat
