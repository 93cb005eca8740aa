#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "framework/extension/extension.h"
#include "framework/journal/host_journal.h"
#include "framework/module/module_runtime.h"
#include "framework/module/module_service.h"
#include "framework/navigation/routing.h"
#include "framework/view/app_view.h"
#include "support/test_util.h"

namespace {

using framework::ExtensionInfo;
using framework::extension::GetExtensionService;
using Strings = std::vector<std::string>;

constexpr char kPoint[] = "contributes:app.toolbar";
constexpr char kModule[] = "ext_module";

// An extension with an item; "hidden" asks to be hidden, "props" carries
// properties.
class ItemExtension : public talvex::ModuleExtension {
 public:
  int InnerHandleGetItem(Variant* item) override {
    if (GetExtensionId() == "hidden") item->Set("visible", false);
    return GetExtensionId() == "hidden" ? 21 : 20;
  }
  Variant GetExtensionPropertites(Variant const*) override {
    return GetExtensionId() == "props" ? Variant(Variant::Map{{"icon", "chat.svg"}}) : Variant();
  }
};

class ExtensionsOnlyRuntime : public framework::module::ModuleRuntimeBaseImpl {
 public:
  ExtensionsOnlyRuntime() : ModuleRuntimeBaseImpl(nullptr, nullptr) {}
  std::string name() const override { return kModule; }

 protected:
  class Provider : public framework::ExtensionProviderBaseImpl {
    std::shared_ptr<framework::extension::ExtensionImpl> Build(std::string const& id) override {
      if (id == "plain") return std::make_shared<framework::extension::ExtensionImpl>();
      if (id == "unbuildable") return nullptr;
      return std::make_shared<ItemExtension>();
    }
  };
  std::unique_ptr<framework::ModelProviderBaseImpl> CreateModelProvider() override { return nullptr; }
  std::unique_ptr<framework::ServiceProviderBaseImpl> CreateServiceProvider() override { return nullptr; }
  std::unique_ptr<framework::ViewModelProviderBaseImpl> CreateViewModelProvider() override { return nullptr; }
  std::unique_ptr<framework::ExtensionProviderBaseImpl> CreateExtensionProvider() override {
    return std::make_unique<Provider>();
  }
};

// A point that counts its notifications.
class Point : public framework::extension::ExtensionContributesImpl {
 public:
  int changes = 0;
  Strings statuses;
  void OnContributesDataSourceChanged() override { ++changes; }
  void OnUpdateItemStatus(std::string const& id, Variant const* params) override {
    statuses.push_back(id + ":" + params->ToString());
  }
  Strings Ids() const {
    Strings ids;
    for (auto const& e : extensions()) ids.push_back(e->GetExtensionId());
    return ids;
  }
  // "id/view model type/visible[/icon]" per item.
  Strings Items() const {
    Strings out;
    for (auto const& i : items().AsArray()) {
      out.push_back(i.GetString("extension_id") + "/" + std::to_string(i.GetInt32("view_model_type")) + "/" +
                    (!i.Has("visible") ? "?" : i.GetBoolean("visible") ? "shown" : "hidden") +
                    (i.Has("properties") ? "/" + i.Get("properties").GetString("icon") : ""));
    }
    return out;
  }
};

class ExtensionTest : public testing::Test {
 protected:
  void SetUp() override {
    GetExtensionService()->Clear();
    framework::module::GetModuleService()->RegisterModule(kModule, [this] { return &runtime_; });
    runtime_.Activate();
    point_.SetContributesId(kPoint);
  }
  void TearDown() override {
    point_.UnActivateExtensions();
    framework::module::GetModuleService()->UnregisterModule(kModule);
    GetExtensionService()->Clear();
  }
  void Activate(Strings const& ids) {
    for (auto const& id : ids) GetExtensionService()->Register(kPoint, ExtensionInfo(id, kModule));
    point_.ActivateExtensions(nullptr);
  }
  ExtensionsOnlyRuntime runtime_;
  Point point_;
};

TEST_F(ExtensionTest, RegistrationsKeepTheirOrderAndRefuseDuplicates) {
  auto* service = GetExtensionService();
  service->Register(kPoint, ExtensionInfo("b", kModule));
  service->Register(kPoint, ExtensionInfo("a", kModule));
  service->Register(kPoint, ExtensionInfo("b", kModule));
  service->Register("contributes:other", ExtensionInfo("b", kModule));
  service->Register("contributes:other", ExtensionInfo("c", "other_module"));
  EXPECT_EQ(service->GetExtensions(kPoint),
            (std::vector<ExtensionInfo>{ExtensionInfo("b", kModule), ExtensionInfo("a", kModule)}));
  EXPECT_EQ(service->GetExtensions("contributes:other").size(), 2u);
  EXPECT_EQ(service->FindContributesId("a"), kPoint);
  EXPECT_EQ(service->FindContributesId("zzz"), "");
  ASSERT_NE(service->FindExtension("c"), nullptr);
  EXPECT_EQ(service->FindExtension("c")->module_name, "other_module");

  service->Unregister(kPoint, "b");
  EXPECT_EQ(service->GetExtensions(kPoint).size(), 1u);
  EXPECT_EQ(service->FindContributesId("b"), "contributes:other");
  service->UnregisterModule(kModule);
  EXPECT_EQ(service->Registrations().size(), 1u);
  EXPECT_EQ(service->CreateExtension("c"), nullptr);  // its module is not there
}

TEST_F(ExtensionTest, ActivationBuildsTheRegisteredExtensionsThroughTheirModule) {
  GetExtensionService()->Register(kPoint, ExtensionInfo("stranger", "no_such_module"));
  talvex_test::LogCapture log;
  Activate({"one", "unbuildable", "two"});
  EXPECT_EQ(point_.Ids(), (Strings{"one", "two"}));
  EXPECT_TRUE(log.Contains("extension not built: unbuildable"));
  EXPECT_TRUE(log.Contains("extension not built: stranger"));
  for (auto const& e : point_.extensions()) {
    EXPECT_TRUE(e->activated());
    EXPECT_EQ(e->contributes(), &point_);
  }
  EXPECT_TRUE(point_.LoadExtension("one", nullptr));  // already there: kept
  EXPECT_EQ(point_.extensions().size(), 2u);

  auto first = point_.extensions()[0];
  point_.UnActivateExtensions();
  EXPECT_TRUE(point_.extensions().empty());
  EXPECT_FALSE(first->activated());
  EXPECT_EQ(first->contributes(), nullptr);

  // A module that is registered but not activated builds nothing.
  runtime_.Unactivate();
  point_.ActivateExtensions(nullptr);
  EXPECT_TRUE(point_.extensions().empty());
}

TEST_F(ExtensionTest, EventsReachTheHandlersOfEveryOrOneExtension) {
  Activate({"one", "two"});
  Strings seen;
  for (auto const& e : point_.extensions()) {
    e->RegisterEventHandler("ping", [&seen, id = e->GetExtensionId()](Variant const* p, Variant* result) {
      seen.push_back(id + ":" + (p ? p->ToString() : "null"));
      if (result) result->Set(id, true);
    });
  }
  Variant params("x"), result;
  point_.FireExtensionEvent("ping", &params, &result);
  point_.FireExtensionEvent("ping", nullptr, nullptr);
  point_.FireExtensionEvent("unknown", &params, &result);
  point_.FireP2PExtensionEvent("two", "ping", &params, nullptr);
  point_.FireP2PExtensionEvent("nobody", "ping", &params, nullptr);
  point_.extensions()[0]->UnRegisterEventHandler("ping");
  point_.FireExtensionEvent("ping", nullptr, nullptr);
  EXPECT_EQ(seen, (Strings{"one:x", "two:x", "one:null", "two:null", "two:x", "two:null"}));
  EXPECT_TRUE(result.GetBoolean("one") && result.GetBoolean("two"));
}

TEST_F(ExtensionTest, ExtensionsRunThePointsCommandsWhileTheyAreAtThePoint) {
  Activate({"one"});
  auto extension = point_.extensions()[0];
  Strings runs;
  point_.RegisterCommandHandler("open", [&](Variant const* p) { runs.push_back(p ? p->ToString() : "null"); });
  Variant params("now");
  EXPECT_TRUE(extension->ExecuteCommand("open", &params));
  EXPECT_TRUE(extension->ExecuteCommand("open", nullptr));
  EXPECT_FALSE(extension->ExecuteCommand("close", &params));
  point_.UnRegisterCommandHandler("open");
  EXPECT_FALSE(extension->ExecuteCommand("open", &params));

  point_.RegisterCommandHandler("open", [&](Variant const*) { runs.push_back("again"); });
  point_.UnLoadExtension("one");
  EXPECT_FALSE(extension->ExecuteCommand("open", nullptr));
  EXPECT_EQ(runs, (Strings{"now", "null"}));
}

TEST_F(ExtensionTest, DataSourceHoldsOneItemPerModuleExtension) {
  Activate({"one", "plain", "hidden", "props"});
  point_.UpdateContributesDataSource();
  EXPECT_EQ(point_.changes, 1);
  // "plain" is no module extension and has no item.
  EXPECT_EQ(point_.Items(), (Strings{"one/20/shown", "hidden/21/hidden", "props/20/shown/chat.svg"}));
  EXPECT_EQ(point_.items()[0].GetString("contributes_id"), kPoint);

  point_.SortByExtensionsId({"props", "one"});
  EXPECT_EQ(point_.Ids(), (Strings{"props", "one", "plain", "hidden"}));
  EXPECT_EQ(point_.Items(), (Strings{"props/20/shown/chat.svg", "one/20/shown", "hidden/21/hidden"}));

  point_.RemoveExtensionItem("one", false);
  EXPECT_EQ(point_.changes, 1);
  point_.UnLoadExtension("props");
  point_.UnLoadExtension("nobody");
  EXPECT_EQ(point_.changes, 2);
  EXPECT_EQ(point_.Items(), (Strings{"hidden/21/hidden"}));
  EXPECT_EQ(point_.Ids(), (Strings{"one", "plain", "hidden"}));
}

TEST_F(ExtensionTest, AnExtensionReportsItsVisibilityToThePoint) {
  Activate({"one"});
  auto* extension = dynamic_cast<talvex::ModuleExtension*>(point_.extensions()[0].get());
  ASSERT_NE(extension, nullptr);
  EXPECT_TRUE(extension->GetItemIsVisible(true));
  EXPECT_FALSE(extension->GetItemIsVisible(false));
  extension->UpdateItemStatus(false);
  EXPECT_FALSE(extension->GetItemIsVisible(true));
  EXPECT_EQ(point_.statuses, Strings{"one:{\"visible\":false}"});
  Variant item;
  extension->HandleGetItemInfo(nullptr, nullptr);  // nowhere to write
  extension->HandleGetItemInfo(nullptr, &item);
  EXPECT_EQ(item.GetString("extension_id"), "one");
}

// --- controllers, navigator and extension views ---------------------------------

class RecordingController : public framework::Controller {
 public:
  Strings calls;
  void Call(std::string const& name, Variant const* params) override {
    calls.push_back(name + " " + (params ? params->ToString() : "null"));
  }
};

class RoutingTest : public testing::Test {
 protected:
  void SetUp() override { framework::HostJournal::Clear(); }
  void TearDown() override {
    for (auto const& s : framework::ControllerManager::Instance()->Schemes()) {
      framework::ControllerManager::Instance()->IocUnregister(s);
    }
  }
};

TEST_F(RoutingTest, NavigatorShowsAndClosesPagesThroughTheirController) {
  auto* manager = framework::ControllerManager::Instance();
  const std::string scheme = "talvex://page/test";
  int made = 0;
  auto controller = std::make_shared<RecordingController>();
  manager->IocRegister(scheme, [&] {
    ++made;
    return controller;
  });
  auto navigator = framework::Navigator::Of(nullptr, 1);

  EXPECT_TRUE(navigator.Push(scheme, Variant(Variant::Map{{"from", "test"}})));
  EXPECT_TRUE(navigator.Push(scheme, Variant("not a map")));
  EXPECT_TRUE(navigator.PopOther(scheme));
  EXPECT_FALSE(navigator.Push("talvex://page/none"));
  EXPECT_FALSE(navigator.PopOther("talvex://page/none"));
  manager->IocUnregister(scheme);
  EXPECT_FALSE(navigator.Push(scheme));
  EXPECT_EQ(made, 1);
  EXPECT_EQ(controller->calls, (Strings{"show {\"from\":\"test\",\"scheme\":\"talvex://page/test\"}",
                                        "show {\"scheme\":\"talvex://page/test\"}", "close null"}));
  EXPECT_EQ(framework::HostJournal::Entries("Navigator."),
            (Strings{"Navigator.Push " + scheme, "Navigator.Push " + scheme, "Navigator.PopOther " + scheme}));
}

class StubView : public AppBaseView {};

TEST_F(RoutingTest, ExtensionViewsAreFoundByPointAndIdUntilTheirLoaderUnloads) {
  auto* views = framework::ExtensionViewService::Instance();
  auto made_a = std::make_shared<StubView>();
  auto made_b = std::make_shared<StubView>();
  auto loader = std::make_unique<framework::DesktopUIModuleLoader>();
  framework::DesktopUIModuleLoader other;
  loader->RegisterGetExtensionViewFunc(kPoint, "ext.a", [&] { return made_a; });
  loader->RegisterGetExtensionViewFunc("ext.any", [&] { return made_b; });
  other.RegisterGetExtensionViewFunc(kPoint, "ext.other", [&] { return made_b; });

  ASSERT_TRUE(views->Find(kPoint, "ext.a"));
  EXPECT_EQ(views->Find(kPoint, "ext.a")(), made_a);
  EXPECT_FALSE(views->Find("contributes:elsewhere", "ext.a"));
  ASSERT_TRUE(views->Find("contributes:elsewhere", "ext.any"));  // no point: any point
  EXPECT_EQ(views->Find("contributes:elsewhere", "ext.any")(), made_b);
  EXPECT_FALSE(views->Find(kPoint, "ext.none"));

  ExtensionsOnlyRuntime runtime;
  loader->Load(&runtime);
  EXPECT_TRUE(loader->loaded());
  loader->Unload();
  EXPECT_FALSE(loader->loaded());
  EXPECT_FALSE(views->Find(kPoint, "ext.a"));
  EXPECT_FALSE(views->Find(kPoint, "ext.any"));
  EXPECT_TRUE(views->Find(kPoint, "ext.other"));

  // A loader that goes away takes its factories with it.
  loader->RegisterGetExtensionViewFunc(kPoint, "ext.a", [&] { return made_a; });
  loader.reset();
  EXPECT_FALSE(views->Find(kPoint, "ext.a"));
}

TEST_F(RoutingTest, ClientSideLoadersRunOnceAndManagersAttachOnce) {
  auto* reg = framework::UiModuleLoaderRegister::GetInstance();
  ExtensionsOnlyRuntime runtime;
  Strings steps;
  reg->Register(
      "ui_mod", [&](framework::module::ModuleRuntime* r) { steps.push_back("load " + r->name()); },
      [&] { steps.push_back("unload"); });
  reg->InitRuntimeLoader("ui_mod", &runtime);
  EXPECT_EQ(reg->RuntimeOf("ui_mod"), &runtime);
  EXPECT_TRUE(reg->Load("ui_mod", &runtime));
  EXPECT_TRUE(reg->Unload("ui_mod"));
  EXPECT_FALSE(reg->Load("nobody", &runtime));
  reg->UnInitRuntimeLoader("ui_mod");
  reg->Remove("ui_mod");
  EXPECT_FALSE(reg->HasLoader("ui_mod"));
  EXPECT_EQ(steps, (Strings{"load ext_module", "unload"}));

  // Managers attach to the router service once however often they are told.
  auto* router = framework::RouterService::Instance();
  const int before = router->manager_count();
  framework::DesktopSchemeRouterManager desktop(router);
  desktop.InitRouterManager();
  desktop.InitRouterManager();
  EXPECT_EQ(router->manager_count(), before + 1);
  desktop.UninitRouterManager();
  desktop.UninitRouterManager();
  EXPECT_EQ(router->manager_count(), before);
}

}  // namespace
