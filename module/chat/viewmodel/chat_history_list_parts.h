#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

#include "chat/model/chat_message.h"

namespace chat {

// Received messages below where the reader is, and the latest notice among
// them, which the unread pill offers to jump to.
class UnreadCounter {
 public:
  void Count(std::string const& msg_id, ChatType chat_type) {
    if (chat_type == ChatType::kNotice) {
      ++mentions_;
      mention_position_ = unread_ + 1;
      mention_id_ = msg_id;
    }
    if (chat_type != ChatType::kTip && chat_type != ChatType::kPlainText) ++unread_;
  }
  // The list went to the bottom for a message: nothing is unread, but the
  // place of the last notice is kept.
  void ClearCounts() {
    unread_ = 0;
    mentions_ = 0;
  }
  // The reader is at the bottom.
  void Clear() {
    ClearCounts();
    mention_position_ = 0;
  }
  // The reader jumps to the notice: what came after it stays unread.
  std::string const& JumpToMention() {
    mentions_ = 0;
    unread_ = std::max(0, unread_ - mention_position_);
    mention_position_ = 0;
    return mention_id_;
  }
  int unread() const { return unread_; }
  int mentions() const { return mentions_; }

 private:
  int unread_ = 0;
  int mentions_ = 0;
  int mention_position_ = 0;
  std::string mention_id_;
};

// When a time line goes before a message: when it comes more than
// `gap_seconds` after the newest time seen (for received messages), or the
// oldest (for pages of history).
class TimeTipMarks {
 public:
  explicit TimeTipMarks(uint64_t gap_seconds) : gap_(gap_seconds) {}
  // True when a line is due before a message at `seconds`; the mark moves on.
  bool TipDue(uint64_t seconds, bool history) {
    uint64_t& mark = history ? oldest_ : newest_;
    const bool due = mark + gap_ < seconds;
    mark = std::max(mark, seconds);
    return due;
  }
  // A page of history starts at `oldest`; the newest mark is set once.
  void StartPage(uint64_t oldest) { oldest_ = oldest; }
  bool has_newest() const { return newest_ != 0; }
  void set_newest(uint64_t newest) { newest_ = newest; }

 private:
  uint64_t gap_;
  uint64_t oldest_ = 0;
  uint64_t newest_ = 0;
};

// Asking the client for pages of history: one request at a time, the oldest
// message shown (the next page starts there), the message the list opens at,
// and the pages held back while that message is looked for.
class HistoryPages {
 public:
  // False while a request is out; otherwise a request is out from now on.
  bool Begin() {
    if (requesting_) return false;
    requesting_ = true;
    return true;
  }
  void End() { requesting_ = false; }
  bool requesting() const { return requesting_; }

  std::string const& oldest_id() const { return oldest_id_; }
  void set_oldest_id(std::string id) { oldest_id_ = std::move(id); }

  uint64_t anchor() const { return anchor_; }
  void set_anchor(uint64_t local_msg_id) { anchor_ = local_msg_id; }

  // A page without the anchor waits, in front of the newer pages waiting.
  void HoldBack(Variant const& page) {
    Variant held = page;
    for (auto const& item : held_.AsArray()) held.Add(item);
    held_ = std::move(held);
  }
  // The waiting pages go after `page`, and wait no more.
  void AppendHeldTo(Variant& page) {
    for (auto const& item : held_.AsArray()) page.Add(item);
    held_ = Variant(base::variant::kVariantTypeArray);
  }
  void DropHeld() { held_ = Variant(base::variant::kVariantTypeArray); }
  // The list closed: what it showed is forgotten.
  void Reset() {
    DropHeld();
    oldest_id_.clear();
  }

 private:
  bool requesting_ = false;
  std::string oldest_id_;
  uint64_t anchor_ = 0;
  Variant held_{base::variant::kVariantTypeArray};
};

}  // namespace chat
