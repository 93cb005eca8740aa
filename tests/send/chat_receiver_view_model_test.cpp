// The receiver line: to whom a message goes and what the permissions say.
#include "send_fixture.h"

#include "chat/util/chat_strings.h"
#include "chat/viewmodel/chat_receiver_view_model.h"

namespace send_test {
namespace {

using VM = chat::ChatReceiverViewModel;

class ReceiverTest : public SendFixture {
 protected:
  void SetUp() override {
    SendFixture::SetUp();
    vm_->DidCreated(nullptr);
    vm_->DidAttached(nullptr);
  }
  void TearDown() override {
    vm_->DidDetached();
    SendFixture::TearDown();
  }
  Variant Line() const { return vm_->PickPropValue(VM::kPropReceiver); }
  std::shared_ptr<VM> vm_ = std::make_shared<VM>();
};

TEST_F(ReceiverTest, TheLineNamesTheReceiverAndFollowsTheChoice) {
  Variant stateless;
  vm_->BindStateless([&](Variant const* data) { stateless = data ? *data : Variant(); }, true);
  EXPECT_EQ(stateless.GetString("send_to_text"), Text(chat::kTextSendToInitial));
  EXPECT_EQ(Line().GetString("receiver_name"), Text("host.chat.receiver.everyone"));
  EXPECT_FALSE(Line().GetBoolean("is_private"));

  ChooseReceiver(Receiver("u2"));
  EXPECT_EQ(Line().GetString("receiver_name"), "Member u2");
  EXPECT_EQ(Line().GetString("receiver_hint"), Text("host.chat.receiver.private_hint"));
  EXPECT_TRUE(Line().GetBoolean("is_private"));
  ChooseReceiver(GroupReceiver(3));
  EXPECT_EQ(Line().GetString("receiver_name"), Text("host.chat.receiver.waiting_room"));

  // Members coming and going refresh the line.
  const size_t count = vm_->PropSetCount(VM::kPropReceiver);
  meeting_.members().AddMember(Member("u9"));
  meeting_.members().RemoveMember("u9");
  meeting_.members().FireEvent(47, Variant());
  EXPECT_EQ(vm_->PropSetCount(VM::kPropReceiver), count + 3);
}

TEST_F(ReceiverTest, PermissionsShowTheirWordingToThoseTheyLimit) {
  EXPECT_EQ(vm_->PickPropValue(VM::kPropAllowChatWording).AsStr(), "");
  EXPECT_FALSE(vm_->PickPropValue(VM::kPropAuthorityInfo).GetBoolean("disable_chat"));
  const size_t receiver_count = vm_->PropSetCount(VM::kPropReceiver);
  meeting_.authority().SetPolicy(1);
  EXPECT_FALSE(vm_->PickPropValue(VM::kPropAllowChatWording).AsStr().empty());
  EXPECT_EQ(vm_->PickPropValue(VM::kPropAuthorityInfo).GetInteger("allow_chat_policy"), 1);
  EXPECT_EQ(vm_->PropSetCount(VM::kPropReceiver), receiver_count + 1) << "a policy change refreshes both";

  // Only a change of the local user refreshes the permissions.
  const size_t authority_count = vm_->PropSetCount(VM::kPropAuthorityInfo);
  meeting_.members().FireEvent(2, Variant::Array{"u2"});
  meeting_.members().AddMember(Member("u-self", "cohost"));  // a join, not a change
  EXPECT_EQ(vm_->PropSetCount(VM::kPropAuthorityInfo), authority_count);
  meeting_.members().AddMember(Member("u-self", "host"));
  EXPECT_EQ(vm_->PropSetCount(VM::kPropAuthorityInfo), authority_count + 1);
  for (Variant const& odd : {Variant("u-self"), Variant(), Variant(Variant::Array{5, Variant::Map{}})}) {
    meeting_.members().FireEvent(2, odd);
  }
  EXPECT_EQ(vm_->PropSetCount(VM::kPropAuthorityInfo), authority_count + 1);

  vm_->DidDetached();
  meeting_.authority().SetPolicy(0);
  EXPECT_FALSE(vm_->PickPropValue(VM::kPropAllowChatWording).AsStr().empty()) << "detached: no refresh";
}

}  // namespace
}  // namespace send_test
