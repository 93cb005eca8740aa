// The typed reading of the client's message record.
#include <gtest/gtest.h>

#include "chat/model/chat_message.h"

namespace {

using chat::ChatType;
using chat::MessageRecord;
using chat::MessageStatus;

Variant Record(Variant::Map map) { return Variant(std::move(map)); }

TEST(MessageRecordTest, MissingKeysReadAsTheirDefaults) {
  for (Variant const& empty : {Variant(), Variant(base::variant::kVariantTypeMap), Variant("not a record")}) {
    const MessageRecord r(empty);
    EXPECT_EQ(r.msg_id(), "");
    EXPECT_FALSE(r.has_chat_type());
    EXPECT_EQ(r.chat_type(), ChatType::kText);
    EXPECT_EQ(r.chat_type(ChatType::kTip), ChatType::kTip);
    EXPECT_FALSE(r.IsTip()) << "a tip says so";
    EXPECT_FALSE(r.has_status());
    EXPECT_FALSE(r.IsRecalled());
    EXPECT_FALSE(r.IsFailed()) << "no status reads as sent";
    EXPECT_FALSE(r.is_from_self());
    EXPECT_FALSE(r.IsPrivate()) << "no conversation type reads as a group";
    EXPECT_TRUE(r.sender().IsNull());
  }
}

TEST(MessageRecordTest, NumbersOfAnyKindConvertAndStringsNever) {
  const Variant tip = Record({{"chat_type", -1.0}, {"message_status", 6}, {"conv_type", 1.0}, {"is_from_self", 1}});
  const MessageRecord r(tip);
  EXPECT_TRUE(r.IsTip());
  EXPECT_TRUE(r.IsRecalled());
  EXPECT_TRUE(r.IsPrivate());
  EXPECT_TRUE(r.is_from_self());

  // Present but of another type: the key is there, its value is the default.
  const Variant strings =
      Record({{"chat_type", "-1"}, {"message_status", "3"}, {"conv_type", "1"}, {"is_from_self", "true"},
              {"msg_id", 42}, {"msg_sender", "someone"}});
  const MessageRecord s(strings);
  EXPECT_TRUE(s.has_chat_type());
  EXPECT_FALSE(s.IsTip());
  EXPECT_EQ(s.chat_type(), ChatType::kText);
  EXPECT_TRUE(s.has_status());
  EXPECT_FALSE(s.IsFailed());
  EXPECT_FALSE(s.IsPrivate());
  EXPECT_FALSE(s.is_from_self());
  EXPECT_EQ(s.msg_id(), "");
  EXPECT_TRUE(s.sender().IsString()) << "the sender is handed over as it is";

  // A kind this build has no name for keeps its number.
  const Variant unknown = Record({{"chat_type", 99}, {"message_status", 9}});
  EXPECT_EQ(chat::ToInt(MessageRecord(unknown).chat_type()), 99);
  EXPECT_EQ(chat::ToInt(MessageRecord(unknown).status()), 9);
  EXPECT_FALSE(MessageRecord(unknown).IsTip());
}

}  // namespace
