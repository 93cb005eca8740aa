#pragma once

#include <QPointer>
#include <QString>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>

#include "base/variant/variant.h"
#include "chat/ui/desktop/view/chat_input/chat_input_widget.h"
#include "chat/ui/desktop/view/private_chat/chat_member_select_view.h"
#include "chat/viewmodel/chat_input_ids.h"
#include "framework/view/app_view.h"
#include "framework/viewmodel/view_model.h"
#include "uikit/richedit/html_parser.h"

namespace chat {
class ChatReceiverViewModel;
}

class QMimeData;
class QTextCursor;
class QTimer;

namespace QtView {

// The chat panel's input: binds the input view model's props to a
// ChatInputWidget and sends what the user does back as actions. Pasted and
// matched content is inserted in ticks, so that a long paste never blocks
// the interface.
class ChatInputView : public AppQTView, public CParserOut, public chat::ChatInputIds {
 public:
  // Match item types.
  enum ItemType { kItemText = 0, kItemEmoji = 1, kItemImage = 3 };
  // A view event that inserts emoji picked in the emoji panel: params a map
  // with `emoji_info_list`.
  static constexpr uint32_t kViewEventInsertEmoji = framework::NameId("chat.input.insert_emoji");

  static constexpr int kDrainIntervalMs = 10;
  static constexpr int kDrainItemsPerTick = 500;
  // Text is cached in pieces of at most this many characters, and a tick
  // stops early once it has inserted kDrainCharsPerTick of them.
  static constexpr int kTextPieceLength = 1000;
  static constexpr int kDrainCharsPerTick = 20000;
  static constexpr int kEmojiSize = 22;
  // Pasted HTML is walked in slices of about this long, with the event loop
  // running between them; text found is matched at least every
  // kParsedTextPiece characters, at a line break.
  static constexpr int kWalkSliceMs = 8;
  static constexpr int kWalkSliceChars = 16 * 1024;
  static constexpr int kParsedTextPiece = 20000;

  ChatInputView();
  ~ChatInputView() override;

  ChatInputWidget* widget() const { return widget_.data(); }
  // The member list, open from the receiver line; null when closed.
  ChatMemberSelectView* member_select() const { return member_select_.data(); }
  // Opens the member list over the receiver line (or closes it when open).
  void ShowMemberSelect();

  // The clipboard or a drop: local files first, then HTML, then text, then
  // raw image data. `handled` is false when none of them was there.
  void PasteFromMimeData(QMimeData const* mime, bool& handled);
  // Asks the view model to split `text` into text and emoji.
  void MatchText(QString const& text);
  void OnMatchTextToMsgItems(Variant const* result);
  // Fills the box with a draft: an array of send items.
  void OnShowUnsentMessages(Variant const* draft);
  void InsertEmojis(Variant const& emoji_info_list);
  void OnCompressPath(std::string const& path);
  // The content as send items: text (emoji as their text) and pictures.
  Variant SendItems() const;

  std::string const& match_id() const { return match_id_; }
  size_t pending_item_count() const { return cache_msg_items_.Size(); }
  // True while a paste is still being taken in: walked or inserted.
  bool draining() const { return timer_ != nullptr || walker_ != nullptr; }

  // CParserOut
  void OnParserImage(QString const& url) override;
  void OnParserText(QString const& text) override;
  void OnParserLineBreak() override;

  bool HandleViewEvent(AppBaseView* source, int event, Variant const* params, Variant* result) override;

 protected:
  QWidget* BuildFrame(QWidget* parent, Variant* params) override;
  void BindReceiver();
  void OnViewModelBoundEx(framework::StatefulViewModel* view_model) override;
  void OnDispose() override;

 private:
  void Dispatch(uint32_t action, Variant const& params);
  void Send();
  void CacheItem(Variant item);
  void CacheImage(QString const& path);
  void StartDrain();
  void DrainTick();
  // Inserts everything still waiting, at once.
  void FlushCache();
  void InsertCached(size_t max_items, int max_chars);
  bool InsertItem(QTextCursor& cursor, Variant const& item, int& chars);
  void StopDrain();
  void RefuseImage(QString const& path);
  void PasteUrls(QList<QUrl> const& urls);
  void FlushParsedText();
  // Walks the pasted HTML for one slice (or to its end), then takes in the
  // pastes that waited behind it.
  void WalkPastedHtml(bool at_once);
  void ScheduleWalk();

  QPointer<ChatInputWidget> widget_;
  QPointer<ChatMemberSelectView> member_select_;
  std::shared_ptr<chat::ChatReceiverViewModel> receiver_model_;
  Variant cache_msg_items_;
  std::string match_id_;
  QTimer* timer_ = nullptr;
  // Text and line breaks from the HTML walker, matched as one piece at the
  // next image or at the end.
  QString parsed_text_;
  // The HTML paste being walked, and the pastes that came while it was:
  // they are taken in after it, in the order they came.
  std::unique_ptr<CHTMLWalker> walker_;
  std::deque<std::unique_ptr<QMimeData>> waiting_pastes_;
  QTimer* walk_timer_ = nullptr;
  bool walking_ = false;
  bool image_refused_ = false;
};

}  // namespace QtView
