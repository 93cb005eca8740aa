#pragma once

#include <cstdint>

#include "chat/runtime/chat_ids.h"
#include "framework/meeting/meeting_service.h"
#include "framework/model/model_impl.h"

namespace chat {

// The meeting's notice as the client's meeting service keeps it: the last
// record, the read mark, and the service's answers as events. A breakout
// room reads the notice of its main meeting.
class MeetingNoticeModel : public framework::ModelImpl, public talvexsdk::IMeetingNoticeDelegate {
 public:
  enum Method : uint32_t {
    kGetNotice = 490622772,
    kReadNotice = 437854018,
    kModifyNotice = 279756747,
    kGetHistoryNotice = 809888839,
  };
  enum Event : uint32_t {
    kEventNoticeChanged = 449141876,
    kEventReadMark = 540925164,
    kEventModifyFinished = 765433267,
  };

  MeetingNoticeModel();
  ~MeetingNoticeModel() override;
  void Init() override;
  void UnInit() override;

  // talvexsdk::IMeetingNoticeDelegate
  void OnMeetingNoticeUpdated(talvexsdk::MeetingNoticeInfo const& info) override;
  void OnModifyMeetingNoticeComplete(int ret, std::string const& msg,
                                     talvexsdk::MeetingNoticeInfo const& info) override;
  void OnReadMeetingNoticeComplete(int ret, std::string const& msg) override;

  // The record's content in UI form: a string for type 0, an array of items
  // for type 1; what can't be parsed stays text (and `type` becomes 0).
  static Variant DecodeNoticeContent(std::string const& content, int& type);
  // A new text as the service takes it: type 0 with the text, or type 1 with
  // the items of a text with links as JSON text.
  static void EncodeNoticeContent(std::string const& text, int& type, std::string& content);

 private:
  void OnEventJoinedOrMoved(Variant const* params);
  void OnEventLeft(Variant const* params);
  void FollowMeeting();
  Variant RecordMap() const;
  Variant SenderOf(talvexsdk::MeetingNoticeInfo const& info) const;
  bool GetHistoryNotice(Variant const* params, Variant* result) const;
  bool ReadNotice(Variant const* params);
  bool ModifyNotice(Variant const* params);
  static talvexsdk::IMeetingNotice* Service();

  talvexsdk::MeetingNoticeInfo record_;
};

}  // namespace chat
