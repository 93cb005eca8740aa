#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/variant/variant.h"

namespace framework {

class ViewModel;

struct ExtensionInfo {
  ExtensionInfo() = default;
  ExtensionInfo(std::string extension_id, std::string module_name)
      : extension_id(std::move(extension_id)), module_name(std::move(module_name)) {}
  bool operator==(ExtensionInfo const& o) const {
    return extension_id == o.extension_id && module_name == o.module_name;
  }
  std::string extension_id;
  std::string module_name;
};

namespace extension {

class ExtensionImpl;
class ExtensionContributesImpl;

// Contribution points and the extensions registered at them, in order of
// registration. Extensions are built by their module's extension provider.
class ExtensionService {
 public:
  struct Registration {
    std::string contributes_id;
    ExtensionInfo info;
  };

  // A second registration of the same extension at the same point is ignored.
  void Register(std::string const& contributes_id, ExtensionInfo const& info);
  void Unregister(std::string const& contributes_id, std::string const& extension_id);
  void UnregisterModule(std::string const& module_name);
  std::vector<ExtensionInfo> GetExtensions(std::string const& contributes_id) const;
  std::vector<Registration> const& Registrations() const { return registrations_; }
  // The point an extension is registered at, "" when none.
  std::string FindContributesId(std::string const& extension_id) const;
  ExtensionInfo const* FindExtension(std::string const& extension_id) const;
  // Asks the owning module's runtime (activated) for the extension; null when
  // the extension or its module is unknown.
  std::shared_ptr<ExtensionImpl> CreateExtension(std::string const& extension_id) const;
  void Clear() { registrations_.clear(); }

 private:
  std::vector<Registration> registrations_;
};

ExtensionService* GetExtensionService();

using ExtensionEventHandler = std::function<void(Variant const* params, Variant* result)>;

// One extension at a contribution point.
class ExtensionImpl : public std::enable_shared_from_this<ExtensionImpl> {
 public:
  virtual ~ExtensionImpl();

  std::string const& GetExtensionId() const { return info_.extension_id; }
  std::string const& GetContributesId() const { return contributes_id_; }
  void UpdateContributesId(std::string const& contributes_id) { contributes_id_ = contributes_id; }
  void SetExtensionInfo(ExtensionInfo const& info) { info_ = info; }
  ExtensionInfo const& extension_info() const { return info_; }

  // `view` is the address of the view that shows the point.
  virtual void OnContributesActivate(long view, Variant const* params);
  virtual void OnContributesEvent(std::string const& name, Variant const* params, Variant* result);
  virtual void OnContributesUnActivate();
  bool activated() const { return activated_; }

  void SetViewModel(std::weak_ptr<ViewModel> view_model) { view_model_ = std::move(view_model); }
  std::shared_ptr<ViewModel> GetViewModel() const { return view_model_.lock(); }

  void RegisterEventHandler(std::string const& name, ExtensionEventHandler handler);
  void UnRegisterEventHandler(std::string const& name);
  // Runs a command of the contribution point this extension belongs to.
  bool ExecuteCommand(std::string const& name, Variant const* params);

  void SetContributes(ExtensionContributesImpl* contributes) { contributes_ = contributes; }
  ExtensionContributesImpl* contributes() const { return contributes_; }

 private:
  ExtensionInfo info_;
  std::string contributes_id_;
  bool activated_ = false;
  std::weak_ptr<ViewModel> view_model_;
  std::map<std::string, ExtensionEventHandler> handlers_;
  ExtensionContributesImpl* contributes_ = nullptr;
};

// Owns a contribution point: activates its extensions and keeps their items.
class ExtensionContributesImpl {
 public:
  using CommandHandler = std::function<void(Variant const* params)>;

  virtual ~ExtensionContributesImpl();
  void SetContributesId(std::string const& id) { contributes_id_ = id; }
  std::string const& GetContributesId() const { return contributes_id_; }

  // Builds and activates every extension registered at the point.
  void ActivateExtensions(Variant const* params);
  void UnActivateExtensions();
  bool LoadExtension(std::string const& extension_id, Variant const* params);
  void UnLoadExtension(std::string const& extension_id);
  std::vector<std::shared_ptr<ExtensionImpl>> const& extensions() const { return extensions_; }

  void AddExtensionItem(Variant&& item);
  void RemoveExtensionItem(std::string const& extension_id, bool notify);
  Variant const& items() const { return items_; }

  void FireExtensionEvent(std::string const& name, Variant const* params, Variant* result);
  void FireP2PExtensionEvent(std::string const& extension_id, std::string const& name, Variant const* params,
                             Variant* result);
  void RegisterCommandHandler(std::string const& name, CommandHandler handler);
  void UnRegisterCommandHandler(std::string const& name);
  // Orders the extensions (and their items) as in `ids`; unknown ones go last.
  void SortByExtensionsId(std::vector<std::string> const& ids);
  // Asks every extension for its item and publishes the new list.
  void UpdateContributesDataSource();

  // Called by ExtensionImpl::ExecuteCommand.
  virtual bool OnExtensionCommand(std::string const& name, Variant const* params);
  virtual void OnUpdateItemStatus(std::string const& extension_id, Variant const* params) {}
  virtual void OnContributesDataSourceChanged() {}

 private:
  std::string contributes_id_;
  std::vector<std::shared_ptr<ExtensionImpl>> extensions_;
  Variant items_{base::variant::kVariantTypeArray};
  std::map<std::string, CommandHandler> commands_;
};

}  // namespace extension
}  // namespace framework

namespace talvex {

// A module's extension with an item: what the point shows for it.
class ModuleExtension : public framework::extension::ExtensionImpl {
 public:
  // Fills the item: `extension_id`, `view_model_type` and `visible`.
  virtual void HandleGetItemInfo(Variant const* params, Variant* result);
  virtual void InnerHandleItem(Variant* item);
  // The number of the view model that shows this extension.
  virtual int InnerHandleGetItem(Variant* item) { return 0; }
  virtual Variant GetExtensionPropertites(Variant const* params) { return Variant(); }
  virtual int GetViewType(std::string const& name) { return 0; }
  virtual void OnSetItem(Variant const* params) {}
  // The visibility the client last set, `def` before it set one.
  bool GetItemIsVisible(bool def) const { return has_visibility_ ? item_visible_ : def; }
  void UpdateItemStatus(bool visible);
  virtual void OnUninit() {}

 private:
  bool has_visibility_ = false;
  bool item_visible_ = false;
};

}  // namespace talvex
