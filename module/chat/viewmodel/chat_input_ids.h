#pragma once

#include <cstdint>

namespace chat {

// The props and actions the chat input's view model and its view share.
struct ChatInputIds {
  enum Prop : uint32_t {
    kPropImageCacheDir = 0x49802,
    kPropSendShortcut = 0x7950e,
    kPropInputHeight = 0x102390,
    kPropInputStrings = 0x67156,
    kPropChatEnabled = 0xb3b8f,
    kPropDisabledIcon = 0x5253d,
    kPropDisabledText = 0x3c55f,
    kPropSendButtonVisible = 0x7ee01,
    kPropSendState = 0x45d89,
    kPropFocusRequest = 0x9aad7,
    kPropClearInput = 0x9611b,
    kPropGuideTip = 0x8ffd9,
    kPropNoticeButton = 0xb177e,
    kPropNoticeGuideTip = 0xe787d,
    kPropDraft = 0x265d0,
    kPropMatchResult = 0x25f04,
  };
  enum Action : uint32_t {
    kActionSend = 0x41a87,
    kActionMatchTextToMsgItems = 0xea6a3,
    kActionSendFile = 0xc9835,
    kActionSendImage = 0xec72a,
    kActionSaveDraft = 0x101c53,
    kActionTextChanged = 0x1c2ba,
    kActionSetShortcut = 0xce0cc,
    kActionSetInputHeight = 0x6601e,
    kActionSelectReceiver = 0x7b62d,
    kActionMoreClicked = 0x972af,
    kActionMoreClosed = 0xcb285,
    kActionMoreHidden = 0xdc50a,
    kActionAuthorityClicked = 0x45b83,
    kActionSelectUserClicked = 0x79c3b,
    kActionShowNotice = 0x5e1d3,  // the notice button: opens the meeting notice
  };
};

}  // namespace chat
