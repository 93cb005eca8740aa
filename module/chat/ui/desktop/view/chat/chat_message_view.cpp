#include "chat/ui/desktop/view/chat/chat_message_view.h"

#include "chat/ui/desktop/view/chat/chat_message_widget.h"
#include "chat/viewmodel/chat_face_message_view_model.h"
#include "chat/viewmodel/chat_file_message_view_model.h"
#include "chat/viewmodel/chat_image_message_view_model.h"
#include "chat/viewmodel/chat_notice_message_view_model.h"
#include "chat/viewmodel/chat_openapp_message_view_model.h"
#include "chat/viewmodel/chat_text_message_view_model.h"
#include "chat/viewmodel/chat_tip_message_view_model.h"
#include "chat/viewmodel/view_model_types.h"
#include "framework/viewmodel/stateful_view_model.h"
#include "chat/model/chat_message.h"

namespace QtView {

bool ChatMessageView::ViewModelOf(int item_type, int* view_model_type, uint32_t* info_prop) {
  switch (item_type) {
    case -1:
      *view_model_type = chat::kViewModelTipMessage;
      *info_prop = chat::ChatTipMessageViewModel::kPropInfo;
      return true;
    case 0:
    case 12:
      *view_model_type = chat::kViewModelTextMessage;
      *info_prop = chat::ChatTextMessageViewModel::kPropInfo;
      return true;
    case 1:
      *view_model_type = chat::kViewModelFaceMessage;
      *info_prop = chat::ChatFaceMessageViewModel::kPropInfo;
      return true;
    case 4:
      *view_model_type = chat::kViewModelImageMessage;
      *info_prop = chat::ChatImageMessageViewModel::kPropInfo;
      return true;
    case 6:
      *view_model_type = chat::kViewModelNoticeMessage;
      *info_prop = chat::ChatNoticeMessageViewModel::kPropInfo;
      return true;
    case 7:
      *view_model_type = chat::kViewModelOpenappMessage;
      *info_prop = chat::ChatOpenappMessageViewModel::kPropInfo;
      return true;
    case 8:
      *view_model_type = chat::kViewModelFileMessage;
      *info_prop = chat::ChatFileMessageViewModel::kPropInfo;
      return true;
    default:
      return false;
  }
}

int ChatMessageView::ItemTypeOfReuseId(QString const& reuse_id) {
  // "reuse_id<type>_<template>", cards prefixed with their message id.
  const int at = reuse_id.lastIndexOf("reuse_id");
  if (at < 0) return -2;
  const QString rest = reuse_id.mid(at + 8);
  bool ok = false;
  const int type = rest.left(rest.indexOf('_')).toInt(&ok);
  return ok ? type : -2;
}

QWidget* ChatMessageView::BuildFrame(QWidget* parent, Variant* params) {
  Q_UNUSED(parent);
  Q_UNUSED(params);
  return widget_.data();
}

void ChatMessageView::OnViewModelBoundEx(framework::StatefulViewModel* view_model) {
  QPointer<ChatMessageWidget> widget = widget_;
  const int item_type = item_type_;
  view_model->BindProp(info_prop_, [widget, item_type](Variant const* value, Variant const*) {
    if (!widget || !value || !value->IsMap()) return;
    const int before = widget->height();
    // The row's kind is the list's: a recalled message shows as a tip.
    Variant message = *value;
    message.Set(chat::chat_key::kChatType, item_type);
    widget->SetMessageInfo(message);
    // A change after the row was laid out (a status, a progress) may change its height.
    if (widget->isVisible() && widget->sizeHint().height() != before) emit widget->SizeChanged();
  });
}

}  // namespace QtView
