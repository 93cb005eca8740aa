#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/timer/tx_timer.h"
#include "framework/meeting/meeting_service.h"

namespace sim {

// The meeting service's notice: one notice per meeting, with its version
// (counting up from 1 with each change), sender and time, and a read mark
// per member. Only a host or co-host changes it; an empty text clears it.
// Every answer comes through the delegate `latency_ms` later, on the host's
// timers.
class MeetingNoticeService : public talvexsdk::IMeetingService, public talvexsdk::IMeetingNotice {
 public:
  MeetingNoticeService();
  ~MeetingNoticeService() override;

  // IMeetingService
  talvexsdk::IMeetingNotice* GetMeetingNotice() override { return this; }
  // IMeetingNotice
  void SetDelegate(talvexsdk::IMeetingNoticeDelegate* delegate) override { delegate_ = delegate; }
  void SetMeetingId(uint64_t meeting_id) override { meeting_id_ = meeting_id; }
  void RequestMeetingNotice() override;
  int ModifyMeetingNotice(talvexsdk::MeetingNoticeInfo const& info) override;
  int ReadMeetingNotice(uint64_t notice_version) override;

  // Another host of the meeting changes the notice; the local client hears
  // of it when it follows that meeting.
  void PublishAs(uint64_t meeting_id, std::string const& user_id, std::string const& nickname, int type,
                 std::string const& content);
  // The next change is refused with this code and text.
  void FailNextModify(int code, std::string message);
  void set_latency_ms(int ms) { latency_ms_ = ms; }

  uint64_t meeting_id() const { return meeting_id_; }
  // The notice of a meeting as the service keeps it (version 0: none).
  talvexsdk::MeetingNoticeInfo NoticeOf(uint64_t meeting_id) const;
  bool ReadBy(uint64_t meeting_id, std::string const& user_id) const;
  int modify_count() const { return modify_count_; }

  static constexpr int kCodeNotHost = 10003;
  static constexpr int kCodeStaleVersion = 10004;

 private:
  // The notice as the local user sees it, read mark included.
  talvexsdk::MeetingNoticeInfo ForSelf(uint64_t meeting_id) const;
  void Later(std::function<void()> task);

  talvexsdk::IMeetingNoticeDelegate* delegate_ = nullptr;
  uint64_t meeting_id_ = 0;
  int latency_ms_ = 20;
  int modify_count_ = 0;
  int fail_code_ = 0;
  std::string fail_message_;
  std::map<uint64_t, talvexsdk::MeetingNoticeInfo> notices_;
  // meeting -> member -> the version they read
  std::map<uint64_t, std::map<std::string, uint64_t>> read_;
  std::vector<std::unique_ptr<talvex_common::utils::timer::TXTimer>> pending_;
};

}  // namespace sim
