#include "framework/extension/extension.h"

#include <algorithm>

#include "base/log/log.h"
#include "framework/module/module_runtime.h"
#include "framework/module/module_service.h"

namespace framework {
namespace extension {

void ExtensionService::Register(std::string const& contributes_id, ExtensionInfo const& info) {
  for (auto const& r : registrations_) {
    if (r.contributes_id == contributes_id && r.info.extension_id == info.extension_id) return;
  }
  registrations_.push_back({contributes_id, info});
}

void ExtensionService::Unregister(std::string const& contributes_id, std::string const& extension_id) {
  registrations_.erase(std::remove_if(registrations_.begin(), registrations_.end(),
                                      [&](Registration const& r) {
                                        return r.contributes_id == contributes_id &&
                                               r.info.extension_id == extension_id;
                                      }),
                       registrations_.end());
}

void ExtensionService::UnregisterModule(std::string const& module_name) {
  registrations_.erase(std::remove_if(registrations_.begin(), registrations_.end(),
                                      [&](Registration const& r) { return r.info.module_name == module_name; }),
                       registrations_.end());
}

std::vector<ExtensionInfo> ExtensionService::GetExtensions(std::string const& contributes_id) const {
  std::vector<ExtensionInfo> out;
  for (auto const& r : registrations_) {
    if (r.contributes_id == contributes_id) out.push_back(r.info);
  }
  return out;
}

std::string ExtensionService::FindContributesId(std::string const& extension_id) const {
  for (auto const& r : registrations_) {
    if (r.info.extension_id == extension_id) return r.contributes_id;
  }
  return {};
}

ExtensionInfo const* ExtensionService::FindExtension(std::string const& extension_id) const {
  for (auto const& r : registrations_) {
    if (r.info.extension_id == extension_id) return &r.info;
  }
  return nullptr;
}

std::shared_ptr<ExtensionImpl> ExtensionService::CreateExtension(std::string const& extension_id) const {
  ExtensionInfo const* info = FindExtension(extension_id);
  if (!info) return nullptr;
  module::ModuleRuntime* runtime = module::GetModuleService()->GetRuntime(info->module_name);
  if (!runtime || !runtime->GetExtensionProvider()) return nullptr;
  auto extension = runtime->GetExtensionProvider()->CreateExtension(extension_id);
  if (!extension) return nullptr;
  extension->SetExtensionInfo(*info);
  extension->UpdateContributesId(FindContributesId(extension_id));
  return extension;
}

ExtensionService* GetExtensionService() {
  static ExtensionService service;
  return &service;
}

ExtensionImpl::~ExtensionImpl() = default;

void ExtensionImpl::OnContributesActivate(long, Variant const*) { activated_ = true; }

void ExtensionImpl::OnContributesEvent(std::string const& name, Variant const* params, Variant* result) {
  auto it = handlers_.find(name);
  if (it == handlers_.end()) return;
  ExtensionEventHandler handler = it->second;
  handler(params, result);
}

void ExtensionImpl::OnContributesUnActivate() { activated_ = false; }

void ExtensionImpl::RegisterEventHandler(std::string const& name, ExtensionEventHandler handler) {
  handlers_[name] = std::move(handler);
}

void ExtensionImpl::UnRegisterEventHandler(std::string const& name) { handlers_.erase(name); }

bool ExtensionImpl::ExecuteCommand(std::string const& name, Variant const* params) {
  return contributes_ ? contributes_->OnExtensionCommand(name, params) : false;
}

ExtensionContributesImpl::~ExtensionContributesImpl() { UnActivateExtensions(); }

void ExtensionContributesImpl::ActivateExtensions(Variant const* params) {
  for (auto const& info : GetExtensionService()->GetExtensions(contributes_id_)) {
    LoadExtension(info.extension_id, params);
  }
}

void ExtensionContributesImpl::UnActivateExtensions() {
  auto extensions = std::move(extensions_);
  extensions_.clear();
  for (auto const& extension : extensions) {
    extension->OnContributesUnActivate();
    extension->SetContributes(nullptr);
  }
}

bool ExtensionContributesImpl::LoadExtension(std::string const& extension_id, Variant const* params) {
  for (auto const& e : extensions_) {
    if (e->GetExtensionId() == extension_id) return true;
  }
  auto extension = GetExtensionService()->CreateExtension(extension_id);
  if (!extension) {
    TXLOG_WARN << "extension not built: " << extension_id;
    return false;
  }
  extension->UpdateContributesId(contributes_id_);
  extension->SetContributes(this);
  extensions_.push_back(extension);
  extension->OnContributesActivate(reinterpret_cast<long>(this), params);
  return true;
}

void ExtensionContributesImpl::UnLoadExtension(std::string const& extension_id) {
  auto it = std::find_if(extensions_.begin(), extensions_.end(),
                         [&](auto const& e) { return e->GetExtensionId() == extension_id; });
  if (it == extensions_.end()) return;
  auto extension = *it;
  extensions_.erase(it);
  extension->OnContributesUnActivate();
  extension->SetContributes(nullptr);
  RemoveExtensionItem(extension_id, true);
}

void ExtensionContributesImpl::AddExtensionItem(Variant&& item) { items_.Add(std::move(item)); }

void ExtensionContributesImpl::RemoveExtensionItem(std::string const& extension_id, bool notify) {
  Variant kept(base::variant::kVariantTypeArray);
  bool removed = false;
  for (auto const& item : items_.AsArray()) {
    if (item.GetString("extension_id") == extension_id) {
      removed = true;
      continue;
    }
    kept.Add(item);
  }
  items_ = std::move(kept);
  if (removed && notify) OnContributesDataSourceChanged();
}

void ExtensionContributesImpl::FireExtensionEvent(std::string const& name, Variant const* params, Variant* result) {
  auto extensions = extensions_;
  for (auto const& e : extensions) e->OnContributesEvent(name, params, result);
}

void ExtensionContributesImpl::FireP2PExtensionEvent(std::string const& extension_id, std::string const& name,
                                                     Variant const* params, Variant* result) {
  auto extensions = extensions_;
  for (auto const& e : extensions) {
    if (e->GetExtensionId() == extension_id) e->OnContributesEvent(name, params, result);
  }
}

void ExtensionContributesImpl::RegisterCommandHandler(std::string const& name, CommandHandler handler) {
  commands_[name] = std::move(handler);
}

void ExtensionContributesImpl::UnRegisterCommandHandler(std::string const& name) { commands_.erase(name); }

bool ExtensionContributesImpl::OnExtensionCommand(std::string const& name, Variant const* params) {
  auto it = commands_.find(name);
  if (it == commands_.end()) return false;
  CommandHandler handler = it->second;
  handler(params);
  return true;
}

void ExtensionContributesImpl::SortByExtensionsId(std::vector<std::string> const& ids) {
  auto rank = [&](std::string const& id) {
    auto it = std::find(ids.begin(), ids.end(), id);
    return static_cast<size_t>(it - ids.begin());
  };
  std::stable_sort(extensions_.begin(), extensions_.end(),
                   [&](auto const& a, auto const& b) { return rank(a->GetExtensionId()) < rank(b->GetExtensionId()); });
  auto& items = items_.AsArray();
  std::stable_sort(items.begin(), items.end(), [&](Variant const& a, Variant const& b) {
    return rank(a.GetString("extension_id")) < rank(b.GetString("extension_id"));
  });
}

void ExtensionContributesImpl::UpdateContributesDataSource() {
  Variant items(base::variant::kVariantTypeArray);
  for (auto const& e : extensions_) {
    auto* module_extension = dynamic_cast<talvex::ModuleExtension*>(e.get());
    if (!module_extension) continue;
    Variant item;
    module_extension->HandleGetItemInfo(nullptr, &item);
    items.Add(std::move(item));
  }
  items_ = std::move(items);
  OnContributesDataSourceChanged();
}

}  // namespace extension
}  // namespace framework

namespace talvex {

void ModuleExtension::HandleGetItemInfo(Variant const* params, Variant* result) {
  if (!result) return;
  Variant item(base::variant::kVariantTypeMap);
  item.Set("extension_id", GetExtensionId());
  item.Set("contributes_id", GetContributesId());
  item.Set("view_model_type", InnerHandleGetItem(&item));
  Variant properties = GetExtensionPropertites(params);
  if (properties.IsMap()) item.Set("properties", std::move(properties));
  InnerHandleItem(&item);
  *result = std::move(item);
}

void ModuleExtension::InnerHandleItem(Variant* item) {
  if (item && !item->Has("visible")) item->Set("visible", true);
}

void ModuleExtension::UpdateItemStatus(bool visible) {
  has_visibility_ = true;
  item_visible_ = visible;
  if (auto* point = contributes()) {
    Variant params(base::variant::kVariantTypeMap);
    params.Set("visible", visible);
    point->OnUpdateItemStatus(GetExtensionId(), &params);
  }
}

}  // namespace talvex
