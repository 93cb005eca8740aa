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
    if (GetExtensionId() != "props") return Variant();
    Variant props(base::variant::kVariantTypeMap);
    props.Set("icon", "chat.svg");
    return props;
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
  std::vector<std::string> statuses;
  void OnContributesDataSourceChanged() override { ++changes; }
  void OnUpdateItemStatus(std::string const& id, Variant const* params) override {
    statuses.push_back(id + ":" + params->ToString());
  }
};

std::vector<std::string> Ids(Point const& point) {
  std::vector<std::string> ids;
  for (auto const& e : point.extensions()) ids.push_back(e->GetExtensionId());
  return ids;
}

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
  void RegisterAll(std::vector<std::string> const& ids) {
    for (auto const& id : ids) GetExtensionService()->Register(kPoint, ExtensionInfo(id, kModule));
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
  EXPECT_TRUE(service->GetExtensions("contributes:none").empty());
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
  RegisterAll({"one", "unbuildable", "two"});
  GetExtensionService()->Register(kPoint, ExtensionInfo("stranger", "no_such_module"));
  talvex_test::LogCapture log;
  Variant params("p");
  point_.ActivateExtensions(&params);
  EXPECT_EQ(Ids(point_), (std::vector<std::string>{"one", "two"}));
  EXPECT_TRUE(log.Contains("extension not built: unbuildable"));
  EXPECT_TRUE(log.Contains("extension not built: stranger"));
  for (auto const& e : point_.extensions()) {
    EXPECT_TRUE(e->activated());
    EXPECT_EQ(e->GetContributesId(), kPoint);
    EXPECT_EQ(e->extension_info().module_name, kModule);
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
  RegisterAll({"one", "two"});
  point_.ActivateExtensions(nullptr);
  std::vector<std::string> seen;
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
  EXPECT_EQ(seen, (std::vector<std::string>{"one:x", "two:x", "one:null", "two:null", "two:x"}));
  EXPECT_TRUE(result.GetBoolean("one") && result.GetBoolean("two"));

  point_.extensions()[0]->UnRegisterEventHandler("ping");
  seen.clear();
  point_.FireExtensionEvent("ping", nullptr, nullptr);
  EXPECT_EQ(seen, std::vector<std::string>{"two:null"});
}

TEST_F(ExtensionTest, ExtensionsRunThePointsCommands) {
  RegisterAll({"one"});
  point_.ActivateExtensions(nullptr);
  auto extension = point_.extensions()[0];
  std::vector<std::string> runs;
  point_.RegisterCommandHandler("open", [&](Variant const* p) { runs.push_back(p ? p->ToString() : "null"); });
  Variant params("now");
  EXPECT_TRUE(extension->ExecuteCommand("open", &params));
  EXPECT_TRUE(extension->ExecuteCommand("open", nullptr));
  EXPECT_FALSE(extension->ExecuteCommand("close", &params));
  point_.UnRegisterCommandHandler("open");
  EXPECT_FALSE(extension->ExecuteCommand("open", &params));
  EXPECT_EQ(runs, (std::vector<std::string>{"now", "null"}));

  point_.RegisterCommandHandler("open", [&](Variant const*) { runs.push_back("again"); });
  point_.UnLoadExtension("one");
  EXPECT_FALSE(extension->ExecuteCommand("open", nullptr));  // no longer at the point
  EXPECT_EQ(runs.size(), 2u);
}

TEST_F(ExtensionTest, DataSourceHoldsOneItemPerModuleExtension) {
  RegisterAll({"one", "plain", "hidden", "props"});
  point_.ActivateExtensions(nullptr);
  point_.UpdateContributesDataSource();
  EXPECT_EQ(point_.changes, 1);
  auto const& items = point_.items().AsArray();
  ASSERT_EQ(items.size(), 3u);  // "plain" has no item
  EXPECT_EQ(items[0].GetString("extension_id"), "one");
  EXPECT_EQ(items[0].GetString("contributes_id"), kPoint);
  EXPECT_EQ(items[0].GetInt32("view_model_type"), 20);
  EXPECT_TRUE(items[0].GetBoolean("visible"));
  EXPECT_FALSE(items[0].Has("properties"));
  EXPECT_EQ(items[1].GetString("extension_id"), "hidden");
  EXPECT_EQ(items[1].GetInt32("view_model_type"), 21);
  EXPECT_FALSE(items[1].GetBoolean("visible", true));
  EXPECT_EQ(items[2].Get("properties").GetString("icon"), "chat.svg");

  point_.SortByExtensionsId({"props", "one"});
  EXPECT_EQ(Ids(point_), (std::vector<std::string>{"props", "one", "plain", "hidden"}));
  EXPECT_EQ(point_.items()[0].GetString("extension_id"), "props");
  EXPECT_EQ(point_.items()[1].GetString("extension_id"), "one");
  EXPECT_EQ(point_.items()[2].GetString("extension_id"), "hidden");

  point_.RemoveExtensionItem("one", false);
  EXPECT_EQ(point_.changes, 1);
  point_.UnLoadExtension("props");
  EXPECT_EQ(point_.changes, 2);
  EXPECT_EQ(point_.items().Size(), 1u);
  EXPECT_EQ(Ids(point_), (std::vector<std::string>{"one", "plain", "hidden"}));
  point_.UnLoadExtension("nobody");
  EXPECT_EQ(point_.changes, 2);

  Variant extra(base::variant::kVariantTypeMap);
  extra.Set("extension_id", "manual");
  point_.AddExtensionItem(std::move(extra));
  EXPECT_EQ(point_.items().Size(), 2u);
}

TEST_F(ExtensionTest, AnExtensionReportsItsVisibilityToThePoint) {
  RegisterAll({"one"});
  point_.ActivateExtensions(nullptr);
  auto* extension = dynamic_cast<talvex::ModuleExtension*>(point_.extensions()[0].get());
  ASSERT_NE(extension, nullptr);
  EXPECT_TRUE(extension->GetItemIsVisible(true));
  EXPECT_FALSE(extension->GetItemIsVisible(false));
  extension->UpdateItemStatus(false);
  EXPECT_FALSE(extension->GetItemIsVisible(true));
  ASSERT_EQ(point_.statuses.size(), 1u);
  EXPECT_EQ(point_.statuses[0], "one:{\"visible\":false}");
  Variant item;
  extension->HandleGetItemInfo(nullptr, nullptr);  // nowhere to write
  extension->HandleGetItemInfo(nullptr, &item);
  EXPECT_EQ(item.GetString("extension_id"), "one");
}

// --- controllers, navigator and extension views ---------------------------------

class RecordingController : public framework::Controller {
 public:
  std::vector<std::string> calls;
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
  EXPECT_TRUE(manager->HasUri(scheme));
  auto navigator = framework::Navigator::Of(nullptr, 1);

  Variant params(base::variant::kVariantTypeMap);
  params.Set("from", "test");
  EXPECT_TRUE(navigator.Push(scheme, params));
  EXPECT_TRUE(navigator.Push(scheme, Variant("not a map")));
  EXPECT_TRUE(navigator.PopOther(scheme));
  EXPECT_EQ(made, 1);
  ASSERT_EQ(controller->calls.size(), 3u);
  EXPECT_EQ(controller->calls[0], "show {\"from\":\"test\",\"scheme\":\"talvex://page/test\"}");
  EXPECT_EQ(controller->calls[1], "show {\"scheme\":\"talvex://page/test\"}");
  EXPECT_EQ(controller->calls[2], "close null");

  EXPECT_FALSE(navigator.Push("talvex://page/none"));
  EXPECT_FALSE(navigator.PopOther("talvex://page/none"));
  manager->IocUnregister(scheme);
  EXPECT_FALSE(manager->HasUri(scheme));
  EXPECT_FALSE(navigator.Push(scheme));
  EXPECT_EQ(controller->calls.size(), 3u);
  EXPECT_EQ(framework::HostJournal::Entries("Navigator."),
            (std::vector<std::string>{"Navigator.Push " + scheme, "Navigator.Push " + scheme,
                                      "Navigator.PopOther " + scheme}));
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
  EXPECT_EQ(framework::HostJournal::Entries("DesktopUIModuleLoader.RegisterGetExtensionViewFunc").size(), 4u);
}

TEST_F(RoutingTest, ClientSideLoadersAndManagersJournalWhatModulesAskInOrder) {
  auto* reg = framework::UiModuleLoaderRegister::GetInstance();
  ExtensionsOnlyRuntime runtime;
  std::vector<std::string> steps;
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
  EXPECT_EQ(steps, (std::vector<std::string>{"load ext_module", "unload"}));

  // Managers attach to the router service once however often they are told.
  auto* router = framework::RouterService::Instance();
  const int before = router->manager_count();
  framework::DesktopSchemeRouterManager desktop(router);
  desktop.InitRouterManager();
  desktop.InitRouterManager();
  EXPECT_EQ(router->manager_count(), before + 1);
  auto* proxy = framework::CreateNavigateProxyService(framework::NavigateService::Instance());
  proxy->RegisterRoute(3, "talvex://page/a");
  framework::NavigatorManager navigators(proxy);
  navigators.InitNavigatorManager();
  navigators.UninitNavigatorManager();
  desktop.UninitRouterManager();
  desktop.UninitRouterManager();
  framework::DeleteNavigateProxyService(proxy);
  EXPECT_EQ(router->manager_count(), before);

  EXPECT_EQ(framework::HostJournal::Entries(),
            (std::vector<std::string>{"UiModuleLoaderRegister.Register ui_mod",
                                      "UiModuleLoaderRegister.InitRuntimeLoader ui_mod",
                                      "UiModuleLoaderRegister.UnInitRuntimeLoader ui_mod",
                                      "DesktopSchemeRouterManager.InitRouterManager", "CreateNavigateProxyService",
                                      "NavigateProxyService.RegisterRoute 3 talvex://page/a",
                                      "NavigatorManager.InitNavigatorManager",
                                      "NavigatorManager.UninitNavigatorManager",
                                      "DesktopSchemeRouterManager.UninitRouterManager", "DeleteNavigateProxyService"}));
  framework::HostJournal::Clear();
  EXPECT_TRUE(framework::HostJournal::Entries().empty());
}

}  // namespace
