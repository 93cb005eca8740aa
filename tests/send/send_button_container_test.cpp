// The buttons beside the input: their order, the configuration they learn,
// and the configuration model behind it.
#include "send_fixture.h"

#include "chat/biz_model/chat_biz_model_helper.h"
#include "chat/model/send_button_config_model.h"
#include "chat/viewmodel/chat_send_button_container_view_model.h"
#include "framework/module/module_runtime.h"
#include "framework/module/module_service.h"
#include "framework/module/providers.h"

namespace send_test {
namespace {

using VM = chat::ChatSendButtonContainerViewModel;
using ConfigModel = chat::SendButtonConfigModel;
constexpr char kButtonModule[] = "send_buttons_under_test";

// A button as another module contributes it: it keeps what the container
// tells it.
class ButtonExtension : public talvex::ModuleExtension {
 public:
  ButtonExtension() {
    RegisterEventHandler(VM::kResolveButtonStateEvent,
                         [this](Variant const* p, Variant*) { states.push_back(p ? *p : Variant()); });
  }
  void OnContributesActivate(long view, Variant const* params) override {
    talvex::ModuleExtension::OnContributesActivate(view, params);
    activation = params ? *params : Variant();
  }
  std::vector<Variant> states;
  Variant activation;
};

class ButtonRuntime : public framework::module::ModuleRuntimeBaseImpl {
 public:
  ButtonRuntime() : ModuleRuntimeBaseImpl(nullptr, nullptr) {}
  std::string name() const override { return kButtonModule; }
  std::map<std::string, std::shared_ptr<ButtonExtension>> built;

 protected:
  class Provider : public framework::ExtensionProviderBaseImpl {
   public:
    explicit Provider(ButtonRuntime* owner) : owner_(owner) {}
    std::shared_ptr<framework::extension::ExtensionImpl> Build(std::string const& id) override {
      auto button = std::make_shared<ButtonExtension>();
      owner_->built[id] = button;
      return button;
    }
    ButtonRuntime* owner_;
  };
  std::unique_ptr<framework::ModelProviderBaseImpl> CreateModelProvider() override { return nullptr; }
  std::unique_ptr<framework::ServiceProviderBaseImpl> CreateServiceProvider() override { return nullptr; }
  std::unique_ptr<framework::ViewModelProviderBaseImpl> CreateViewModelProvider() override { return nullptr; }
  std::unique_ptr<framework::ExtensionProviderBaseImpl> CreateExtensionProvider() override {
    return std::make_unique<Provider>(this);
  }
};

class ButtonContainerTest : public SendFixture {
 protected:
  void SetUp() override {
    SendFixture::SetUp();
    framework::module::GetModuleService()->RegisterModule(kButtonModule, [this] { return &buttons_; });
    buttons_.Activate();
    for (char const* id : {"extension:chat.send_emoji", "extension:chat.send_notice", "extension:chat.send_file",
                           "extension:chat.send_image"}) {
      framework::extension::GetExtensionService()->Register(VM::kContributesId, framework::ExtensionInfo(id, kButtonModule));
    }
    config_ = std::dynamic_pointer_cast<ConfigModel>(chat::GetChatModuleModel(&runtime_, chat::kSendButtonConfigModelId));
    ASSERT_NE(config_, nullptr);
  }
  void TearDown() override {
    if (vm_) vm_->DidDetached();
    vm_.reset();
    framework::module::GetModuleService()->UnregisterModule(kButtonModule);
    buttons_.Unactivate();
    SendFixture::TearDown();
  }
  void Attach(Variant params = Variant()) {
    vm_ = std::make_shared<VM>();
    vm_->SetModuleParams(&runtime_);
    vm_->DidCreated(&params);
    vm_->DidAttached(&params);
  }
  ButtonRuntime buttons_;
  std::shared_ptr<ConfigModel> config_;
  std::shared_ptr<VM> vm_;
};

TEST_F(ButtonContainerTest, ButtonsComeInTheirOrderAndLearnTheConfiguration) {
  Attach(Variant::Map{{"template_type", 2}});
  Strings order;
  for (auto const& item : vm_->PickPropValue(VM::kPropItems).AsArray()) order.push_back(item.GetString("extension_id"));
  EXPECT_EQ(order, (Strings{"extension:chat.send_file", "extension:chat.send_image", "extension:chat.send_notice",
                            "extension:chat.send_emoji"}));

  auto file = buttons_.built.at("extension:chat.send_file");
  EXPECT_EQ(file->activation.GetInteger("template_type"), 2);
  ASSERT_EQ(file->states.size(), 1u);
  EXPECT_TRUE(file->states[0].GetBoolean("show_more"));
  EXPECT_FALSE(file->states[0].GetBoolean("red_dot_more"));

  // A new configuration reaches every button; the same one again does not.
  Configure("chat", "send_button_red_dot_more", true);
  config_->Refresh();
  config_->Refresh();
  for (auto const& [id, button] : buttons_.built) {
    SCOPED_TRACE(id);
    ASSERT_EQ(button->states.size(), 2u);
    EXPECT_TRUE(button->states[1].GetBoolean("red_dot_more"));
  }
  config_->FireEvent(ConfigModel::kEventConfigChanged, Variant("not a map"));
  EXPECT_EQ(file->states.size(), 2u);

  vm_->DidDetached();
  EXPECT_FALSE(file->activated()) << "the buttons go down with the view";
  config_->FireEvent(ConfigModel::kEventConfigChanged, Variant(base::variant::kVariantTypeMap));
  EXPECT_EQ(file->states.size(), 2u);
}

TEST_F(ButtonContainerTest, ThePermissionsShowBesideTheButtons) {
  Attach();
  EXPECT_FALSE(vm_->PickPropValue(VM::kPropAuthorityInfo).GetBoolean("disable_chat"));
  meeting_.authority().SetPolicy(3);
  EXPECT_TRUE(vm_->PickPropValue(VM::kPropAuthorityInfo).GetBoolean("disable_chat"));
  vm_->Handle(VM::kActionAuthorityClicked);
  EXPECT_EQ(Reported("chatting_private_chat_authority_click"), 1u);
}

TEST_F(ButtonContainerTest, TheConfigurationModelAnswersFromTheMeetingsConfiguration) {
  Variant answer;
  ASSERT_TRUE(config_->Invoke(ConfigModel::kGetConfig, nullptr, &answer));
  EXPECT_TRUE(answer.GetBoolean("show_more"));
  EXPECT_FALSE(answer.GetBoolean("red_dot_more"));
  EXPECT_FALSE(config_->Invoke(12345, nullptr, &answer));

  std::vector<Variant> changes;
  config_->Subscribe(ConfigModel::kEventConfigChanged, 9, Collect(changes));
  Configure("chat", "send_button_show_more", false);
  meeting_.meeting().Join();  // a new meeting brings its configuration
  ASSERT_EQ(changes.size(), 1u);
  EXPECT_FALSE(changes[0].GetBoolean("show_more"));
  ASSERT_TRUE(config_->Invoke(ConfigModel::kGetConfig, nullptr, &answer));
  EXPECT_FALSE(answer.GetBoolean("show_more"));
  EXPECT_EQ(changes.size(), 1u) << "asking again changes nothing";
  Configure("chat", "send_button_show_more", "yes");
  config_->Refresh();
  ASSERT_EQ(changes.size(), 2u) << "a value of the wrong kind falls back to the default";
  EXPECT_TRUE(changes[1].GetBoolean("show_more"));
  config_->Unsubscribe(9);
}

}  // namespace
}  // namespace send_test
