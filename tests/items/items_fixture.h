#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QString>
#include <QTemporaryDir>
#include <string>

#include "base/variant/variant.h"
#include "framework/chat/chat_schema_keys.h"

// The module's resources live in a static library: register them here.
inline void InitChatResourcesOnce() {
  static bool done = [] {
    Q_INIT_RESOURCE(chat_resources);
    return true;
  }();
  (void)done;
}

namespace items_test {

inline void InitChatResources() { InitChatResourcesOnce(); }

// A message as a row's view model publishes it.
inline Variant BaseInfo(std::string const& msg_id, int chat_type, std::string const& nickname, bool self = false) {
  Variant info(base::variant::kVariantTypeMap);
  info.Set(ChatMsgBaseInfoFields_kStringBaseInfoMsgId, msg_id);
  info.Set("chat_type", chat_type);
  info.Set(ChatMsgBaseInfoFields_kBooleanBaseInfoIsFromSelf, self);
  info.Set(ChatMsgBaseInfoFields_kStringBaseInfoNickName, nickname);
  info.Set(ChatMsgBaseInfoFields_kIntegerBaseInfoMsgStatus, 2);
  return info;
}

inline Variant TextPiece(int type, std::string const& content) {
  Variant piece(base::variant::kVariantTypeMap);
  piece.Set(ChatTextMessageItemFields_kIntegerItemType, type);
  piece.Set(ChatTextMessageItemFields_kStringItemContent, content);
  return piece;
}

inline Variant TextInfo(std::string const& msg_id, std::string const& text, std::string const& nickname = "Avery Quinn",
                        bool self = false) {
  Variant info = BaseInfo(msg_id, 0, nickname, self);
  Variant pieces(base::variant::kVariantTypeArray);
  pieces.Add(TextPiece(0, text));
  info.Set(ChatTextMessageInfoFields_kPtrInfoArrayItem, pieces);
  return info;
}

}  // namespace items_test
