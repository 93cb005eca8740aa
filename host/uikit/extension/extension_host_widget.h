#pragma once

#include <QWidget>
#include "base/variant/variant.h"
#include <memory>
#include <string>
#include <vector>

class AppBaseView;

namespace framework {
class ViewModel;
namespace extension {
class ExtensionImpl;
}
}  // namespace framework

// Shows a contribution point the way a client does: every extension
// registered at the point is created, asked for its item, given the view
// model its module makes for that item, and built by the view factory the
// module registered for the pair, one under the other.
class ExtensionHostWidget : public QWidget {
  Q_OBJECT

 public:
  ExtensionHostWidget(std::string contributes_id, QWidget* parent = nullptr);
  ~ExtensionHostWidget() override;

  // Views of a floating point (an overlay over the meeting) are built under
  // `parent` and place themselves; the host lays none of them out.
  void SetFloatingParent(QWidget* parent) { floating_parent_ = parent; }
  // Keys every view is built with besides the extension's own.
  void SetBuildParams(Variant params) { build_params_ = std::move(params); }
  // Builds what is registered now; returns how many views were built.
  int Populate();
  // Disposes the views, their view models and extensions; a client does this
  // before the module that made them goes away.
  void Clear();

  std::string const& contributes_id() const { return contributes_id_; }
  std::vector<std::string> const& built_extensions() const { return built_extensions_; }
  std::vector<std::shared_ptr<AppBaseView>> const& views() const { return views_; }

 private:
  std::string contributes_id_;
  QWidget* floating_parent_ = nullptr;
  Variant build_params_;
  std::vector<std::shared_ptr<framework::extension::ExtensionImpl>> extensions_;
  std::vector<std::shared_ptr<AppBaseView>> views_;
  std::vector<std::string> built_extensions_;
};
