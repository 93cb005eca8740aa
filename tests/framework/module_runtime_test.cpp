#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "framework/extension/extension.h"
#include "framework/module/module_runtime.h"
#include "framework/module/module_service.h"
#include "framework/navigation/routing.h"
#include "framework/viewmodel/stateful_view_model.h"
#include "support/test_util.h"

namespace {

using Strings = std::vector<std::string>;

// Every Init/UnInit of the module's parts lands here, in order.
Strings g_log;

class LoggedModel : public framework::ModelImpl {
 public:
  LoggedModel(int id, std::function<void()> on_uninit = nullptr) : ModelImpl(id), on_uninit_(std::move(on_uninit)) {}
  void Init() override { g_log.push_back("model.Init " + std::to_string(type())); }
  void UnInit() override {
    g_log.push_back("model.UnInit " + std::to_string(type()));
    if (on_uninit_) on_uninit_();
    ModelImpl::UnInit();
  }
  std::function<void()> on_uninit_;
};

class LoggedService : public framework::BaseServiceImpl {
 public:
  LoggedService(int id, std::function<void()> on_uninit = nullptr) : id_(id), on_uninit_(std::move(on_uninit)) {}
  void Initialize() override { g_log.push_back("service.Initialize " + std::to_string(id_)); }
  void UnInitialize() override {
    g_log.push_back("service.UnInitialize " + std::to_string(id_));
    if (on_uninit_) on_uninit_();
  }
  int id_;
  std::function<void()> on_uninit_;
};

class TestModelProvider : public framework::ModelProviderBaseImpl {
 public:
  void Init() override { g_log.push_back("models.Init"); }
  void UnInit() override {
    g_log.push_back("models.UnInit");
    ModelProviderBaseImpl::UnInit();
  }
  // Model 4, on its way down, asks for model 5 that was never made.
  framework::ModelPtr Build(int id) override {
    if (id == 4) return std::make_shared<LoggedModel>(4, [this] { ModelOf(5); });
    return id >= 1 && id <= 5 ? std::make_shared<LoggedModel>(id) : nullptr;
  }
};

class TestServiceProvider : public framework::ServiceProviderBaseImpl {
 public:
  void Init() override { g_log.push_back("services.Init"); }
  void UnInit() override {
    g_log.push_back("services.UnInit");
    ServiceProviderBaseImpl::UnInit();
  }
  // Service 3, on its way down, asks for service 4 that was never made.
  framework::ServicePtr Build(int id) override {
    if (id == 3) return std::make_shared<LoggedService>(3, [this] { ServiceOf(4); });
    return id >= 1 && id <= 4 ? std::make_shared<LoggedService>(id) : nullptr;
  }
};

class TestViewModelProvider : public framework::ViewModelProviderBaseImpl {
 public:
  using ViewModelProviderBaseImpl::ViewModelProviderBaseImpl;
  void Init() override { g_log.push_back("viewmodels.Init"); }
  void UnInit() override { g_log.push_back("viewmodels.UnInit"); }
  std::shared_ptr<framework::ViewModel> Build(int type) override {
    return type == 10 ? std::make_shared<framework::StatefulViewModel>() : nullptr;
  }
};

class TestExtensionProvider : public framework::ExtensionProviderBaseImpl {
 public:
  void Init() override { g_log.push_back("extensions.Init"); }
  void UnInit() override { g_log.push_back("extensions.UnInit"); }
  std::shared_ptr<framework::extension::ExtensionImpl> Build(std::string const& id) override {
    return id == "ext" ? std::make_shared<framework::extension::ExtensionImpl>() : nullptr;
  }
};

class TestRuntime : public framework::module::ModuleRuntimeBaseImpl {
 public:
  explicit TestRuntime(std::string name)
      : ModuleRuntimeBaseImpl(std::make_shared<framework::module::ModuleManifest>(), nullptr), name_(std::move(name)) {}
  std::string name() const override { return name_; }

 protected:
  void OnProvidersCreated() override { g_log.push_back("providers created"); }
  std::unique_ptr<framework::ModelProviderBaseImpl> CreateModelProvider() override {
    return std::make_unique<TestModelProvider>();
  }
  std::unique_ptr<framework::ServiceProviderBaseImpl> CreateServiceProvider() override {
    return std::make_unique<TestServiceProvider>();
  }
  std::unique_ptr<framework::ViewModelProviderBaseImpl> CreateViewModelProvider() override {
    return std::make_unique<TestViewModelProvider>(this);
  }
  std::unique_ptr<framework::ExtensionProviderBaseImpl> CreateExtensionProvider() override {
    return std::make_unique<TestExtensionProvider>();
  }
  std::string name_;
};

class ModuleRuntimeTest : public testing::Test {
 protected:
  void SetUp() override { g_log.clear(); }
  void TearDown() override {
    for (auto const& name : framework::module::GetModuleService()->RegisteredModules()) {
      framework::module::GetModuleService()->UnregisterModule(name);
    }
  }
};

TEST_F(ModuleRuntimeTest, PartsAreMadeOnFirstUseInitialisedOnceAndTakenDownNewestFirst) {
  TestModelProvider models;
  auto two = models.ModelOf(2);
  ASSERT_NE(two, nullptr);
  EXPECT_EQ(models.ModelOf(2), two);
  models.ModelOf(1);
  models.ModelOf(3);
  EXPECT_EQ(models.ModelOf(99), nullptr);
  models.UnInit();
  EXPECT_EQ(g_log, (Strings{"model.Init 2", "model.Init 1", "model.Init 3", "models.UnInit", "model.UnInit 3",
                            "model.UnInit 1", "model.UnInit 2"}));
  EXPECT_EQ(models.ModelCount(), 0u);
  EXPECT_NE(models.ModelOf(2), two) << "a fresh one after tear-down";

  g_log.clear();
  TestServiceProvider services;
  auto service = services.ServiceOf(2);
  EXPECT_EQ(services.ServiceOf(2), service);
  services.ServiceOf(1);
  EXPECT_EQ(services.ServiceOf(9), nullptr);
  services.UnInit();
  EXPECT_EQ(g_log, (Strings{"service.Initialize 2", "service.Initialize 1", "services.UnInit",
                            "service.UnInitialize 1", "service.UnInitialize 2"}));
}

TEST_F(ModuleRuntimeTest, APartMadeWhileTheOthersGoDownGoesDownToo) {
  TestModelProvider models;
  for (int id = 1; id <= 4; ++id) models.ModelOf(id);
  g_log.clear();
  models.UnInit();
  EXPECT_EQ(g_log, (Strings{"models.UnInit", "model.UnInit 4", "model.Init 5", "model.UnInit 3", "model.UnInit 2",
                            "model.UnInit 1", "model.UnInit 5"}));
  EXPECT_EQ(models.ModelCount(), 0u);

  TestServiceProvider services;
  for (int id = 1; id <= 3; ++id) services.ServiceOf(id);
  g_log.clear();
  services.UnInit();
  EXPECT_EQ(g_log, (Strings{"services.UnInit", "service.UnInitialize 3", "service.Initialize 4",
                            "service.UnInitialize 2", "service.UnInitialize 1", "service.UnInitialize 4"}));
}

TEST_F(ModuleRuntimeTest, RuntimeBuildsItsProvidersOnActivateAndTakesThemDownInReverse) {
  TestRuntime runtime("rt");
  EXPECT_EQ(runtime.ModelOf(1), nullptr);
  EXPECT_EQ(runtime.ServiceOf(1), nullptr);

  EXPECT_TRUE(runtime.Activate());
  EXPECT_TRUE(runtime.Activate());  // a second one does nothing
  EXPECT_EQ(g_log, (Strings{"providers created", "services.Init", "models.Init", "viewmodels.Init", "extensions.Init"}));
  ASSERT_NE(runtime.ModelOf(1), nullptr);
  ASSERT_NE(runtime.ServiceOf(1), nullptr);
  EXPECT_NE(runtime.GetExtensionProvider()->CreateExtension("ext"), nullptr);
  EXPECT_EQ(runtime.GetExtensionProvider()->CreateExtension("other"), nullptr);

  g_log.clear();
  runtime.Unactivate();
  EXPECT_EQ(g_log, (Strings{"extensions.UnInit", "viewmodels.UnInit", "models.UnInit", "model.UnInit 1",
                            "services.UnInit", "service.UnInitialize 1"}));
  EXPECT_FALSE(runtime.IsActivated());
  EXPECT_EQ(runtime.GetServiceProvider(), nullptr);

  // An activated runtime that goes away takes its parts down with it.
  {
    TestRuntime scoped("scoped");
    scoped.Activate();
    scoped.ModelOf(2);
    g_log.clear();
  }
  EXPECT_EQ(g_log.front(), "extensions.UnInit");
  EXPECT_NE(std::find(g_log.begin(), g_log.end(), "model.UnInit 2"), g_log.end());
}

TEST_F(ModuleRuntimeTest, ViewModelsAreMadeByNumberAndKnowTheirRuntime) {
  TestRuntime runtime("rt");
  runtime.Activate();
  auto vm = runtime.GetViewModelProvider()->CreateViewModel(10);
  ASSERT_NE(vm, nullptr);
  EXPECT_EQ(vm->type(), 10);
  EXPECT_EQ(vm->GetModuleRuntime4ATG(), &runtime);
  talvex_test::LogCapture log;
  EXPECT_EQ(runtime.GetViewModelProvider()->CreateViewModel(11), nullptr);
  EXPECT_TRUE(log.Contains("no view model of type 11"));
}

TEST_F(ModuleRuntimeTest, ModuleServiceActivatesLoadsAndUnloadsInOrder) {
  auto* service = framework::module::GetModuleService();
  TestRuntime runtime("mod");
  EXPECT_FALSE(service->RegisterModule("", [&] { return &runtime; }));
  EXPECT_FALSE(service->RegisterModule("mod", nullptr));
  EXPECT_FALSE(service->IsModuleRegistered("mod"));

  // Loaders may be given before the module itself.
  Strings steps;
  auto loader = [&](std::string n) {
    service->RegisterModuleLoader(
        "mod", [&steps, n](framework::module::ModuleRuntime* r) { steps.push_back("load" + n + " " + r->name()); },
        [&steps, n] { steps.push_back("unload" + n); });
  };
  loader("1");
  EXPECT_FALSE(service->IsModuleRegistered("mod"));
  EXPECT_FALSE(service->LoadModule("mod"));
  EXPECT_TRUE(steps.empty());

  ASSERT_TRUE(service->RegisterModule("mod", [&] { return &runtime; }));
  loader("2");
  service->RegisterModuleLoader("mod", nullptr, nullptr);
  EXPECT_EQ(service->LoaderCount("mod"), 3u);
  EXPECT_EQ(service->GetRuntime("mod"), &runtime);

  EXPECT_TRUE(service->ActivateModule("mod"));
  EXPECT_TRUE(runtime.IsActivated());
  EXPECT_TRUE(service->LoadModule("mod"));
  service->UnloadModule("mod");
  service->DeactivateModule("mod");
  EXPECT_FALSE(runtime.IsActivated());
  EXPECT_EQ(steps, (Strings{"load1 mod", "load2 mod", "unload2", "unload1"}));

  service->UnregisterModule("mod");
  EXPECT_FALSE(service->IsModuleRegistered("mod"));
  EXPECT_EQ(service->LoaderCount("mod"), 0u);
}

TEST_F(ModuleRuntimeTest, UnknownModulesAreRefusedQuietly) {
  auto* service = framework::module::GetModuleService();
  talvex_test::LogCapture log;
  EXPECT_EQ(service->GetRuntime("nobody"), nullptr);
  EXPECT_FALSE(service->ActivateModule("nobody"));
  EXPECT_TRUE(log.Contains("activate: no module nobody", base::log::kLogError));
  EXPECT_FALSE(service->LoadModule("nobody"));
  service->UnloadModule("nobody");
  service->DeactivateModule("nobody");
  service->UnregisterModule("nobody");
  EXPECT_TRUE(service->RegisteredModules().empty());
}

}  // namespace
