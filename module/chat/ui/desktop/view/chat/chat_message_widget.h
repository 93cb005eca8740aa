#pragma once

#include "base/variant/variant.h"
#include "framework/view/app_view.h"
#include "uikit/reuse/qf_reuse_widget.h"

class ChatItem;

// One recycled row of the chat list. It builds the item of its kind on the
// first message it shows and keeps it for every later message of its reuse
// id; its row view binds it to the message's view model.
class ChatMessageWidget : public QFReuseWidget, public WidgetView {
  Q_OBJECT

 public:
  explicit ChatMessageWidget(QString reuse_id, QWidget* parent = nullptr);

  // The item class for a "chat_type": -1 tips, 0 and 12 text, 1 face,
  // 4 image, 6 notice, 7 card, 8 file; null for any other.
  static ChatItem* CreateItem(int chat_type, QWidget* parent);

  void SetMessageInfo(Variant const& message);
  ChatItem* item() const { return item_; }
  QSize sizeHint() const override;

 signals:
  void SizeChanged();
  void ContextMenuRequested(Variant const& params);
  void AvatarMenuRequested(Variant const& params);
  // The item's request for an action of the row's view model.
  void ActionRequested(quint32 action, Variant const& params);
  void FilePreviewRequested(Variant const& params);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  ChatItem* item_ = nullptr;
  int item_chat_type_ = -2;
};
