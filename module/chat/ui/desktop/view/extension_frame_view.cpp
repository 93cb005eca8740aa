#include "chat/ui/desktop/view/extension_frame_view.h"

namespace QtView {

QWidget* ExtensionFrameView::BuildFrame(QWidget* parent, Variant*) {
  auto* frame = new QWidget(parent);
  frame->setObjectName(QString::fromStdString(object_name_));
  return frame;
}

}  // namespace QtView
