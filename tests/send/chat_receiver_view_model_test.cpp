// The receiver line: to whom a message goes and what the permissions say.
#include "send_fixture.h"

#include "chat/util/chat_strings.h"
#include "chat/viewmodel/chat_receiver_view_model.h"

namespace send_test {
namespace {

using VM = chat::ChatReceiverViewModel;

class ReceiverTest : public SendFixture {
 protected:
  void TearDown() override {
    if (vm_) vm_->DidDetached();
    vm_.reset();
    SendFixture::TearDown();
  }
  void Attach() {
    vm_ = std::make_shared<VM>();
    vm_->DidCreated(nullptr);
    vm_->DidAttached(nullptr);
  }
  std::shared_ptr<VM> vm_;
};

TEST_F(ReceiverTest, TheLineNamesTheReceiverAndFollowsTheChoice) {
  Attach();
  Variant stateless;
  vm_->BindStateless([&](Variant const* data) { stateless = data ? *data : Variant(); }, true);
  EXPECT_EQ(stateless.GetString("send_to_text"), Text(chat::kTextSendToInitial));
  EXPECT_EQ(vm_->PickPropValue(VM::kPropSendToText).GetString("ChatReceiverUIDataFields_kStringUIDataSendToText"),
            Text(chat::kTextSendTo));
  Variant receiver = vm_->PickPropValue(VM::kPropReceiver);
  EXPECT_EQ(receiver.GetString("receiver_name"), Text("host.chat.receiver.everyone"));
  EXPECT_FALSE(receiver.GetBoolean("is_private"));

  ChooseReceiver(Receiver("u2"));
  receiver = vm_->PickPropValue(VM::kPropReceiver);
  EXPECT_EQ(receiver.GetString("receiver_name"), "Member u2");
  EXPECT_EQ(receiver.GetString("receiver_hint"), Text("host.chat.receiver.private_hint"));
  EXPECT_TRUE(receiver.GetBoolean("is_private"));

  ChooseReceiver(GroupReceiver(3));
  EXPECT_EQ(vm_->PickPropValue(VM::kPropReceiver).GetString("receiver_name"), Text("host.chat.receiver.waiting_room"));

  // Members coming and going refresh the line.
  const size_t count = vm_->PropSetCount(VM::kPropReceiver);
  meeting_.members().AddMember(Member("u9"));
  meeting_.members().RemoveMember("u9");
  meeting_.members().FireEvent(47, Variant());
  EXPECT_EQ(vm_->PropSetCount(VM::kPropReceiver), count + 3);
}

TEST_F(ReceiverTest, PermissionsShowTheirWordingToThoseTheyLimit) {
  Attach();
  EXPECT_EQ(vm_->PickPropValue(VM::kPropAllowChatWording).AsStr(), "");
  Variant info = vm_->PickPropValue(VM::kPropAuthorityInfo);
  EXPECT_EQ(info.GetString("tips"), Text(chat::kTextAuthorityTips));
  EXPECT_FALSE(info.GetBoolean("disable_chat"));

  const size_t receiver_count = vm_->PropSetCount(VM::kPropReceiver);
  meeting_.authority().SetPolicy(1);
  EXPECT_FALSE(vm_->PickPropValue(VM::kPropAllowChatWording).AsStr().empty());
  EXPECT_EQ(vm_->PickPropValue(VM::kPropAuthorityInfo).GetInteger("allow_chat_policy"), 1);
  EXPECT_EQ(vm_->PropSetCount(VM::kPropReceiver), receiver_count + 1) << "a policy change refreshes both";

  // Only a change of the local user refreshes the permissions.
  const size_t authority_count = vm_->PropSetCount(VM::kPropAuthorityInfo);
  Variant others(base::variant::kVariantTypeArray);
  others.Add("u2");
  meeting_.members().FireEvent(2, others);
  EXPECT_EQ(vm_->PropSetCount(VM::kPropAuthorityInfo), authority_count);
  meeting_.members().AddMember(Member("u-self", "cohost"));
  EXPECT_EQ(vm_->PropSetCount(VM::kPropAuthorityInfo), authority_count);  // a join, not a change
  meeting_.members().AddMember(Member("u-self", "host"));
  EXPECT_EQ(vm_->PropSetCount(VM::kPropAuthorityInfo), authority_count + 1);

  meeting_.members().FireEvent(2, Variant("u-self"));
  meeting_.members().FireEvent(2, Variant());
  Variant mixed(base::variant::kVariantTypeArray);
  mixed.Add(5);
  mixed.Add(Variant(base::variant::kVariantTypeMap));
  meeting_.members().FireEvent(2, mixed);
  EXPECT_EQ(vm_->PropSetCount(VM::kPropAuthorityInfo), authority_count + 1);

  vm_->DidDetached();
  meeting_.authority().SetPolicy(0);
  EXPECT_FALSE(vm_->PickPropValue(VM::kPropAllowChatWording).AsStr().empty()) << "detached: no refresh";
}

}  // namespace
}  // namespace send_test
