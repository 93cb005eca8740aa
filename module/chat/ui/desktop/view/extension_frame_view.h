#pragma once

#include <string>

#include "framework/view/app_view.h"

namespace QtView {

// A view whose frame is one named widget that its content is built into.
// Extension views start from here and add their widgets as they grow.
class ExtensionFrameView : public AppQTView {
 public:
  explicit ExtensionFrameView(std::string object_name) : object_name_(std::move(object_name)) {}
  std::string const& object_name() const { return object_name_; }

 protected:
  QWidget* BuildFrame(QWidget* parent, Variant* params) override;

 private:
  std::string object_name_;
};

}  // namespace QtView
