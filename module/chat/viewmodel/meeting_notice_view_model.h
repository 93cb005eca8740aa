#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "base/timer/tx_timer.h"
#include "framework/viewmodel/stateful_view_model.h"

namespace chat {

// The notice dialog of a running meeting: shows the notice, opens editing
// for a host, asks before a send, a clear or leaving an edit with changes,
// and remembers per meeting that the notice banner should show.
class MeetingNoticeViewModel : public framework::StatefulViewModel {
 public:
  static constexpr uint32_t kPropUiData = framework::NameId("MeetingNoticeUiData");
  static constexpr uint32_t kPropNoticeInfo = framework::NameId("MeetingNoticeInfo");
  static constexpr uint32_t kPropClose = framework::NameId("MeetingNoticeClose");
  static constexpr uint32_t kActionStartEdit = framework::NameId("MeetingNoticeStartEdit");
  static constexpr uint32_t kActionCancelEdit = framework::NameId("MeetingNoticeCancelEdit");  // the text now
  static constexpr uint32_t kActionSend = framework::NameId("MeetingNoticeSend");              // the text
  static constexpr uint32_t kActionShowWebView = framework::NameId("MeetingNoticeShowWebView");  // a URL
  static constexpr char kBannerMemoryKey[] = "im.chat_top_notice_show_map";
  static constexpr int kCloseDelayMs = 500;

  MeetingNoticeViewModel();
  ~MeetingNoticeViewModel() override;

  void OnViewAttached(Variant const* params) override;
  void OnViewDetached() override;

  void HandleStartEdit();
  void HandleCancelEdit(Variant const* text);
  void HandleSend(Variant const* text);
  void HandleShowWebView(Variant const* url);
  void OnEventNoticeInfo(Variant const* info);
  void OnEventSendNoticeComplete(Variant const* result);

  // The banner's memory for the current meeting: shown or not, for which
  // version. Null without one.
  static Variant ReadBannerMemory();
  static void WriteBannerMemory(bool should_show, int64_t notice_version);

 private:
  Variant CallBiz(uint32_t method, Variant const* params = nullptr);
  void Confirm(std::string const& text);

  bool has_notice_content_ = false;
  std::unique_ptr<talvex_common::utils::timer::TXTimer> close_timer_;
};

// A notice as a chat message showed it, read-only, for the chat's history.
class HistoryMeetingNoticeViewModel : public framework::StatefulViewModel {
 public:
  static constexpr uint32_t kPropNoticeInfo = MeetingNoticeViewModel::kPropNoticeInfo;
  // `msg_id` in the view params.
  void OnViewAttached(Variant const* params) override;
  void UpdateNoticeInfo(std::string const& msg_id);
};

}  // namespace chat
