#include "sim/meeting_notice_service.h"

#include <algorithm>

#include "base/log/log.h"
#include "base/util/time_util.h"
#include "framework/meeting/meeting_context.h"

namespace sim {

namespace {
bool SelfHostOrCoHost() {
  auto const role = talvex::MeetingContext::Current().self_role;
  return role == talvex::MeetingContext::kRoleHost || role == talvex::MeetingContext::kRoleCoHost;
}
}  // namespace

MeetingNoticeService::MeetingNoticeService() = default;
MeetingNoticeService::~MeetingNoticeService() = default;

void MeetingNoticeService::Later(std::function<void()> task) {
  pending_.erase(std::remove_if(pending_.begin(), pending_.end(), [](auto const& t) { return !t->IsActive(); }),
                 pending_.end());
  pending_.push_back(talvex_common::utils::timer::CreateTimer(std::move(task)));
  pending_.back()->Start(latency_ms_, 0);
}

talvexsdk::MeetingNoticeInfo MeetingNoticeService::NoticeOf(uint64_t meeting_id) const {
  auto it = notices_.find(meeting_id);
  return it == notices_.end() ? talvexsdk::MeetingNoticeInfo() : it->second;
}

bool MeetingNoticeService::ReadBy(uint64_t meeting_id, std::string const& user_id) const {
  auto meeting = read_.find(meeting_id);
  if (meeting == read_.end()) return false;
  auto member = meeting->second.find(user_id);
  return member != meeting->second.end() && member->second == NoticeOf(meeting_id).notice_version;
}

talvexsdk::MeetingNoticeInfo MeetingNoticeService::ForSelf(uint64_t meeting_id) const {
  talvexsdk::MeetingNoticeInfo info = NoticeOf(meeting_id);
  info.is_read = info.notice_version == 0 || ReadBy(meeting_id, talvex::MeetingContext::Current().self_user_id);
  return info;
}

void MeetingNoticeService::RequestMeetingNotice() {
  const uint64_t meeting = meeting_id_;
  Later([this, meeting] {
    if (delegate_ && meeting == meeting_id_) delegate_->OnMeetingNoticeUpdated(ForSelf(meeting));
  });
}

int MeetingNoticeService::ModifyMeetingNotice(talvexsdk::MeetingNoticeInfo const& info) {
  if (meeting_id_ == 0) return -1;
  ++modify_count_;
  const uint64_t meeting = meeting_id_;
  int code = fail_code_;
  std::string message = fail_message_;
  fail_code_ = 0;
  fail_message_.clear();
  // The role is the one the service sees when the request arrives.
  if (code == 0 && !SelfHostOrCoHost()) {
    code = kCodeNotHost;
    message = "only a host or co-host changes the notice";
  }
  if (code == 0) {
    auto const& self = talvex::MeetingContext::Current();
    talvexsdk::MeetingNoticeInfo stored = info;
    stored.notice_version = NoticeOf(meeting).notice_version + 1;
    stored.app_id = self.self_app_id;
    stored.app_uid = self.self_app_uid;
    stored.user_id = self.self_user_id;
    stored.nickname = self.nickname;
    stored.user_type = 1;
    stored.device_type = 1;
    stored.send_time = static_cast<uint64_t>(util::time::GetServerTimestamp());
    if (stored.notice_content.empty()) stored.notice_type = 0;
    notices_[meeting] = stored;
    // The one who wrote it has read it.
    read_[meeting][self.self_user_id] = stored.notice_version;
  }
  Later([this, meeting, code, message] {
    if (delegate_ && meeting == meeting_id_) delegate_->OnModifyMeetingNoticeComplete(code, message, ForSelf(meeting));
  });
  return 0;
}

int MeetingNoticeService::ReadMeetingNotice(uint64_t notice_version) {
  const uint64_t meeting = meeting_id_;
  const bool current = notice_version != 0 && notice_version == NoticeOf(meeting).notice_version;
  if (current) read_[meeting][talvex::MeetingContext::Current().self_user_id] = notice_version;
  Later([this, current] {
    if (!delegate_) return;
    delegate_->OnReadMeetingNoticeComplete(current ? 0 : kCodeStaleVersion, current ? "" : "not the current notice");
  });
  return 0;
}

void MeetingNoticeService::PublishAs(uint64_t meeting_id, std::string const& user_id, std::string const& nickname,
                                     int type, std::string const& content) {
  talvexsdk::MeetingNoticeInfo info;
  info.notice_version = NoticeOf(meeting_id).notice_version + 1;
  info.notice_type = content.empty() ? 0 : type;
  info.notice_content = content;
  info.app_id = "1400";
  info.app_uid = user_id;
  info.user_id = user_id;
  info.nickname = nickname;
  info.user_type = 1;
  info.device_type = 1;
  info.send_time = static_cast<uint64_t>(util::time::GetServerTimestamp());
  notices_[meeting_id] = info;
  read_[meeting_id][user_id] = info.notice_version;
  TXLOG_INFO << "[sim] notice " << info.notice_version << " of meeting " << meeting_id << " by " << nickname;
  Later([this, meeting_id] {
    if (delegate_ && meeting_id == meeting_id_) delegate_->OnMeetingNoticeUpdated(ForSelf(meeting_id));
  });
}

void MeetingNoticeService::FailNextModify(int code, std::string message) {
  fail_code_ = code;
  fail_message_ = std::move(message);
}

}  // namespace sim
