#pragma once

#include <functional>
#include <initializer_list>
#include <string>

#include "base/variant/variant.h"

namespace framework {
class UIViewModel;
}

namespace chat {

// File states of `file_info.status`, the client's numbers. Uploads run 0 to
// 4, downloads 5 to 12.
enum ChatFileStatus : int {
  kFileUploadWaiting = 0,
  kFileUploading = 1,
  kFileUploadCanceled = 2,
  kFileUploaded = 3,
  kFileUploadFailed = 4,
  kFileNotDownloaded = 5,
  kFileDownloadWaiting = 6,
  kFileDownloading = 7,
  kFileDownloadFailed = 8,
  kFileDownloaded = 9,
  kFileDownloadCanceled = 10,
  kFileExpired = 11,
  kFileUnavailable = 12,
};

// Where a file to send is staged: today's chat file folder, the meeting, the
// millisecond. Two stagings in the same millisecond of a meeting share it.
std::string MakeUniqueChatFileDirPath(std::string const& meeting_id);

// Whether the file may be sent: no folders, and no more bytes than the
// configured maximum. `error_text` gets the refusal a user reads.
bool CheckFileValidity(std::string const& path, std::string& error_text);

// The local path of a message's file (`file_info`, or a UI message's
// `msg_content`); false when there is none.
bool GetFilePathByMsg(Variant const& msg, std::string& path);

// Opens the message's file when it is on disk and the client can open its
// kind; tells the user when it can't. A file that is gone does nothing.
bool OpenFileByMsg(framework::UIViewModel* view_model, Variant const& msg);

// Asks the client's file model to download the message's file.
bool DownloadFileByMsgId(std::string const& msg_id, int download_file_from);

// Whether the member stands in the meeting's waiting-room list (member model
// method 35).
bool UserIsInWaitingRoom(std::string const& user_id);
// The same on the waiting room's own member list (method 37).
bool UserIsInWaitingRoomMemberList(std::string const& user_id);

// Calls a method of one of the client's models: false when the model is
// absent or does not take the call.
bool InvokeHostModel(int model, uint32_t method, Variant const* params, Variant* result);
// The answer of such a call, null when there is none.
Variant AskHostModel(int model, uint32_t method, Variant const* params = nullptr);
// Subscribes a view model to events of one of the client's models, recorded
// so that the subscription ends with the view model; nothing when the model
// is absent.
void SubscribeHostModel(framework::UIViewModel* view_model, int model, std::initializer_list<uint32_t> events,
                        std::function<void(Variant const*)> handler);
// Copies a local file into the user's downloads under its own name, or
// "name (n).ext" when that is taken; the new path, "" on failure.
std::string CopyToDownloads(std::string const& path);
// The client's local settings (model 517): the stored value, or `def` when
// there is none or no settings model.
Variant ReadLocalSetting(std::string const& key, Variant const& def);
bool WriteLocalSetting(std::string const& key, Variant const& value);

// The web address a link in a message stands for: "www.a.org" becomes
// "https://www.a.org"; only http and https with a host open, anything else
// ("file:", "javascript:", a bare word with a scheme) answers "".
std::string WebAddressOf(std::string const& link);

// A transfer's progress as the client reports it (a fraction, or a
// percentage above 1) as a fraction within 0..1.
double ProgressFraction(double progress);

}  // namespace chat
