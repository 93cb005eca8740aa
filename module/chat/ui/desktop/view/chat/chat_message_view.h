#pragma once

#include <QPointer>
#include <cstdint>

#include "framework/view/app_view.h"

class ChatMessageWidget;

namespace QtView {

// The view of one chat row: binds the row's view model (text, image, file
// ... by the message's kind) to its ChatMessageWidget and tells the list
// when the row wants another height or a menu.
class ChatMessageView : public AppQTView {
 public:
  // Events sent to the list's view.
  enum Event : int { kEventMessageMenu = 3, kEventSizeChanged = 4, kEventAvatarMenu = 5, kEventFilePreview = 6 };

  explicit ChatMessageView(ChatMessageWidget* widget) : widget_(widget) {}

  // The view model number and its info prop for an item type (the reuse
  // id's "chat_type", -1 for tips and recalled messages).
  static bool ViewModelOf(int item_type, int* view_model_type, uint32_t* info_prop);
  // The item type in a reuse id "reuse_id<type>_<template>".
  static int ItemTypeOfReuseId(QString const& reuse_id);

  ChatMessageWidget* widget() const { return widget_.data(); }
  // The kind of message the row shows and the prop that carries it.
  void SetItem(int item_type, uint32_t info_prop) {
    item_type_ = item_type;
    info_prop_ = info_prop;
  }

 protected:
  QWidget* BuildFrame(QWidget* parent, Variant* params) override;
  void OnViewModelBoundEx(framework::StatefulViewModel* view_model) override;

 private:
  QPointer<ChatMessageWidget> widget_;
  uint32_t info_prop_ = 0;
  int item_type_ = 0;
};

}  // namespace QtView
