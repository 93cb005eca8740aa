#pragma once

#include <cstdint>
#include <string>

// The client's meeting service, of which the chat uses the meeting notice:
// one announcement per meeting, with a version, its sender, a send time and
// the local user's read mark. Calls answer through the delegate, later.
namespace talvexsdk {

struct MeetingNoticeInfo {
  uint64_t notice_version = 0;  // 0: no notice
  int notice_type = 0;          // 0 plain text, 1 items as JSON text
  std::string notice_content;
  std::string app_id;
  std::string app_uid;
  std::string user_id;
  int instance_id = 0;
  int user_type = 0;
  int device_type = 0;
  std::string nickname;
  uint64_t send_time = 0;  // seconds of the server clock
  bool is_read = false;
};

class IMeetingNoticeDelegate {
 public:
  virtual ~IMeetingNoticeDelegate() = default;
  // The notice of the meeting, after a request or when someone changed it.
  virtual void OnMeetingNoticeUpdated(MeetingNoticeInfo const& info) = 0;
  // `ret` 0: the change was taken, and `info` is the notice now.
  virtual void OnModifyMeetingNoticeComplete(int ret, std::string const& msg, MeetingNoticeInfo const& info) = 0;
  virtual void OnReadMeetingNoticeComplete(int ret, std::string const& msg) = 0;
};

class IMeetingNotice {
 public:
  virtual ~IMeetingNotice() = default;
  virtual void SetDelegate(IMeetingNoticeDelegate* delegate) = 0;
  // The meeting whose notice is meant; 0 none.
  virtual void SetMeetingId(uint64_t meeting_id) = 0;
  virtual void RequestMeetingNotice() = 0;
  // Returns 0 when the request went out.
  virtual int ModifyMeetingNotice(MeetingNoticeInfo const& info) = 0;
  virtual int ReadMeetingNotice(uint64_t notice_version) = 0;
};

class IMeetingService {
 public:
  virtual ~IMeetingService() = default;
  virtual IMeetingNotice* GetMeetingNotice() = 0;
};

namespace utils {
namespace service {
// Null until the client installs its meeting service.
IMeetingService* GetMeetingService();
void SetMeetingService(IMeetingService* service);
}  // namespace service
}  // namespace utils

}  // namespace talvexsdk
