#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/timer/tx_timer.h"
#include "framework/viewmodel/stateful_view_model.h"

namespace chat {

// The list in which a user picks the receiver of a private message: everyone,
// one member in the meeting, one in the waiting room, or a webinar's
// attendee. The client's member provider (638) streams the members by
// provider; this merges them into the two sections of the list (in the
// meeting, and the waiting room or, while searching a webinar, the
// attendees), folds each at four rows, and says what the chat policy allows.
class PrivateChatMembersViewModel : public framework::StatefulViewModel {
 public:
  static constexpr uint32_t kPropMemberList = framework::NameId("PrivateChatMemberList");
  static constexpr uint32_t kPropAuthorityHint = framework::NameId("PrivateChatAuthorityHint");
  static constexpr uint32_t kPropDisableChat = framework::NameId("disable_chat");
  static constexpr uint32_t kPropReceiverText = framework::NameId("PrivateChatReceiverText");
  static constexpr uint32_t kPropClose = framework::NameId("PrivateChatMembersClose");

  enum Action : uint32_t {
    kActionSelectMember = 1,          // a row map as published
    kActionSelectMemberInBullet = 2,  // the same, from the overlay
    kActionClose = 3,
    kActionSearchTextChanged = 4,  // {search_text}
    kActionSearchFocus = 5,
    kActionSearchCancel = 6,
    kActionExpandCollapse = 7,  // {title_type}
    kActionShow = 8,
    kActionOrientation = 9,  // {orientation}
    kActionClearScrollToTop = 10,
  };
  // `title_type` of a section's title row.
  enum TitleType : int { kTitleInMeeting = 0, kTitleWaiting = 1, kTitleAttendees = 2 };
  // `type` of a row.
  enum RowType : int {
    kRowTitle = 0,
    kRowEveryone = 1,       // all in the meeting (a webinar: panelists and attendees)
    kRowMember = 2,         // one member in the meeting
    kRowWaitingMember = 3,  // one member in the waiting room
    kRowAttendee = 4,       // one webinar attendee
    kRowPanelists = 5,      // a webinar's panelists
  };
  // A member row carries `user_id` and `nickname`, and `user`, the member as
  // the provider gave it (ids, `role`, `avatar`), beside the keys of its
  // state. `status` of a member row:
  enum RowStatus : int { kStatusInMeeting = 0, kStatusWaiting = 1, kStatusNoChat = 2 };

  static constexpr int kFoldCount = 4;
  static constexpr int kSearchDelayMs = 500;
  // The entrance that opened the list, from the view params: the overlay.
  static constexpr int kSourceBullet = 2;

  PrivateChatMembersViewModel();
  ~PrivateChatMembersViewModel() override;

  void OnViewAttached(Variant const* params) override;
  void OnViewDetached() override;

  void OnEventSections(Variant const* sections);
  void OnEventRefresh(Variant const* params);
  void OnEventSelfChanged(Variant const* user_ids);
  void OnEventCanEnterImmersive(Variant const* query, bool& stop);

  void HandleActionSelectMember(Variant const* params, bool in_bullet);
  void HandleActionSearchTextChanged(Variant const* params);
  void HandleActionChangeExpandCollapseStatus(Variant const* params);
  void HandleActionOrientationChanged(Variant const* params);
  void HandleActionSearchFocus();
  void HandleActionSearchCancel();
  void HandleActionShow();

  int64_t activate_id() const { return activate_id_; }
  bool is_searching() const { return is_searching_; }
  std::string const& search_text() const { return search_text_; }

  // The hint under the list for the policy, `hidden` and `text`.
  static Variant GetAuthorityHintInfoForNormal(int policy, bool self_is_host);
  static Variant GetAuthorityHintInfoForWebinar(int policy, bool self_is_host);

 private:
  struct Built;
  struct RowContext;
  static constexpr int kRetireDelayMs = 50;
  void ActivateProvider();
  void AskProvider();
  void MembersUpdate();
  void UpdateAuthorityHint();
  void PublishDisableChat();
  Variant AddTitleItem(int title_type, size_t count) const;
  void AddUserItems(Variant const& users, int row_type, RowContext const& context, Built& built) const;
  Variant BuildSection(Built& built, RowContext const& context, int title_type, bool with_everyone,
                       bool expanded) const;
  void RetireLater(Variant const& value);
  void ReportSelect(char const* event, Variant const& receiver) const;
  std::string WebinarRole() const;

  int64_t activate_id_ = 0;
  std::string search_text_;
  bool is_searching_ = false;
  bool is_attendee_loading_ = false;
  int source_ = 0;
  int current_orientation_ = 0;
  bool in_meeting_expanded_ = false;
  bool waiting_expanded_ = false;
  bool scroll_to_top_ = false;
  Variant sections_;
  std::unique_ptr<talvex_common::utils::timer::TXTimer> search_timer_;
  // Published lists that were replaced, freed a moment later.
  std::vector<Variant> retired_;
  std::unique_ptr<talvex_common::utils::timer::TXTimer> retire_timer_;
};

}  // namespace chat
