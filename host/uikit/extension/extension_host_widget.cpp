#include "uikit/extension/extension_host_widget.h"

#include <QVBoxLayout>

#include "base/log/log.h"
#include "framework/extension/extension.h"
#include "framework/module/module_runtime.h"
#include "framework/module/module_service.h"
#include "framework/module/providers.h"
#include "framework/navigation/routing.h"
#include "framework/view/app_view.h"
#include "framework/viewmodel/extension_view_model.h"

ExtensionHostWidget::ExtensionHostWidget(std::string contributes_id, QWidget* parent)
    : QWidget(parent), contributes_id_(std::move(contributes_id)) {
  setObjectName("ExtensionHostWidget");
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
}

ExtensionHostWidget::~ExtensionHostWidget() { Clear(); }

int ExtensionHostWidget::Populate() {
  auto* service = framework::extension::GetExtensionService();
  for (auto const& info : service->GetExtensions(contributes_id_)) {
    auto extension = service->CreateExtension(info.extension_id);
    if (!extension) {
      TXLOG_WARN << "extension not created: " << info.extension_id;
      continue;
    }
    int view_model_type = 0;
    bool visible = true;
    if (auto* module_extension = dynamic_cast<talvex::ModuleExtension*>(extension.get())) {
      Variant item;
      module_extension->HandleGetItemInfo(nullptr, &item);
      view_model_type = item.GetInt32("view_model_type", 0);
      visible = item.GetBoolean("visible", true);
    }
    if (!visible) continue;
    auto factory = framework::ExtensionViewService::Instance()->Find(contributes_id_, info.extension_id);
    std::shared_ptr<AppBaseView> view = factory ? factory() : nullptr;
    auto* qt_view = dynamic_cast<AppBaseQTView*>(view.get());
    if (!qt_view) {
      TXLOG_WARN << "no view for " << info.extension_id << " at " << contributes_id_;
      continue;
    }
    framework::module::ModuleRuntime* runtime = framework::module::GetModuleService()->GetRuntime(info.module_name);
    if (view_model_type != 0 && runtime && runtime->GetViewModelProvider()) {
      auto model = std::dynamic_pointer_cast<framework::StatefulViewModel>(
          runtime->GetViewModelProvider()->CreateViewModel(view_model_type));
      if (auto extension_model = std::dynamic_pointer_cast<talvex::ExtensionViewModel>(model)) {
        extension_model->SetExtension(extension);
      }
      if (model) view->SetViewModel(model);
    }
    Variant params(base::variant::kVariantTypeMap);
    params.Set("extension_id", info.extension_id);
    params.Set("contributes_id", contributes_id_);
    if (build_params_.IsMap()) {
      for (auto const& [key, value] : build_params_.AsMap()) params.Set(key, value);
    }
    QWidget* parent = floating_parent_ ? floating_parent_ : this;
    if (!qt_view->Build(std::weak_ptr<AppBaseView>(), parent, &params, true) || !qt_view->frame()) continue;
    // The message list takes the room; other parts keep their own height.
    if (!floating_parent_) static_cast<QVBoxLayout*>(layout())->addWidget(qt_view->frame(), view->view_model() ? 1 : 0);
    extensions_.push_back(extension);
    views_.push_back(view);
    built_extensions_.push_back(info.extension_id);
  }
  return static_cast<int>(views_.size());
}

void ExtensionHostWidget::Clear() {
  for (auto it = views_.rbegin(); it != views_.rend(); ++it) (*it)->Dispose();
  views_.clear();
  extensions_.clear();
  built_extensions_.clear();
}
