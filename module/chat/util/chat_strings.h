#pragma once

#include <cstdint>

#include "framework/viewmodel/view_model.h"

// Ids of the chat module's texts in the client's string table.
namespace chat {

constexpr uint32_t kTextFileIsFolder = framework::NameId("chat.file.refuse_folder");
constexpr uint32_t kTextFileMaxSizeDesc = framework::NameId("chat.file.max_size_desc");
constexpr uint32_t kTextFileTooLarge = framework::NameId("chat.file.too_large");
constexpr uint32_t kTextFileCannotOpen = framework::NameId("chat.file.cannot_open");
constexpr uint32_t kTextFileSecurityBlocked = framework::NameId("chat.file.status.security_blocked");
constexpr uint32_t kTextFileUploadCanceled = framework::NameId("chat.file.status.upload_canceled");
constexpr uint32_t kTextFileUploadFailed = framework::NameId("chat.file.status.upload_failed");
constexpr uint32_t kTextFileDownloadFailed = framework::NameId("chat.file.status.download_failed");
constexpr uint32_t kTextFileDownloadCanceled = framework::NameId("chat.file.status.download_canceled");
constexpr uint32_t kTextFileUnavailable = framework::NameId("chat.file.status.unavailable");

}  // namespace chat

namespace chat {
constexpr uint32_t kTextFileSendRefused = framework::NameId("chat.file.send_refused");
constexpr uint32_t kTextFileTooManyTransfers = framework::NameId("chat.file.too_many_transfers");
}  // namespace chat

namespace chat {
constexpr uint32_t kTextNoticeDisabled = framework::NameId("chat.notice.disabled");
constexpr uint32_t kTextGoodsPrice = framework::NameId("chat.goods.price");
}  // namespace chat
