#pragma once

#include <string>

#include "chat/runtime/chat_ids.h"
#include "framework/model/model_impl.h"

namespace framework {
namespace module {
class ModuleRuntime;
}
}  // namespace framework

namespace TypedBizModel {
namespace MeetingNotice {
// The typed face of the notice's rule model: its methods and events.
class ModelImpl : public framework::ModelImpl {
 public:
  enum Method : uint32_t {
    kGetAndReadNotice = 413937736,
    kStartEdit = 356162156,
    kCompareWithCurrent = 503986928,
    kCancelEdit = 512107153,
    kSend = 135745763,
    kGetReadMark = 1152530639,
    kIsBlank = 1090515428,
    kGetMaxLength = 1150914254,
  };
  enum Event : uint32_t {
    kEventNoticeInfo = 272747431,
    kEventSendFinished = 614277251,
    kEventReadMarkChanged = 664232291,
  };
  using framework::ModelImpl::ModelImpl;
};
}  // namespace MeetingNotice
}  // namespace TypedBizModel

namespace chat {

// The rules of the meeting notice over MeetingNoticeModel: the notice in UI
// form, who may write it, the edit state (an update that arrives while a
// host types waits until the edit ends), the read mark, and the chat message
// that tells the meeting of a new notice.
class MeetingNoticeBizModel : public TypedBizModel::MeetingNotice::ModelImpl {
 public:
  static constexpr int kMaxLength = 1000;

  explicit MeetingNoticeBizModel(framework::module::ModuleRuntime* runtime = nullptr);
  void Init() override;
  void UnInit() override;

  void OnEventMeetingNoticeUpdated(Variant const* record);
  void OnEventModifyFinished(Variant const* params);
  void OnEventHostChanged(Variant const* params);
  void OnEventSelfInfoUpdate(Variant const* params);
  void OnEventLeaveComplete(Variant const* params);

  // The record (method 490622772 of the notice model) in UI form.
  void ConvertNoticeInfo(Variant const& record, Variant& out);
  // The items of a notice record that show (text and links, up to the
  // first item without a type), as `type`/`content`, and their joined text.
  static Variant ShownItems(Variant const& record, std::string* text);
  // "HH:MM" on the same day as the server's now, else "YYYY-MM-DD HH:MM".
  static std::string FormatSendTime(uint64_t send_time, uint64_t now);
  static bool IsBlank(Variant const* text);

  Variant const& info() const { return info_; }
  bool is_edit() const { return is_edit_; }
  bool need_refresh() const { return need_refresh_; }

 private:
  void InvokeGetAndReadNotice();
  Variant StartEdit();
  void CancelEdit();
  Variant InvokeSend(Variant const* text);
  void RefreshNoticeInfo(bool fire);
  void PublishReadMark();
  void SendNoticeMessageIfNeed();
  framework::ModelPtr NoticeModel() const;

  framework::module::ModuleRuntime* runtime_;
  Variant info_{base::variant::kVariantTypeMap};
  std::string last_content_;
  bool is_clear_notice_ = false;
  Variant is_notice_read_{true};
  bool is_host_or_cohost_ = false;
  bool is_edit_ = false;
  bool need_refresh_ = false;
};

}  // namespace chat
