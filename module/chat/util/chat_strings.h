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

// Refusals of the send pipeline.
constexpr uint32_t kTextSendNothing = framework::NameId("chat.send.nothing_to_send");
constexpr uint32_t kTextSendTextTooLong = framework::NameId("chat.send.text_too_long");
constexpr uint32_t kTextSendNoFileAndPicture = framework::NameId("chat.send.no_file_and_picture");
constexpr uint32_t kTextSendPrivateNoImage = framework::NameId("chat.send.private_no_image");
constexpr uint32_t kTextSendEnterpriseNoImage = framework::NameId("chat.send.enterprise_no_image");
constexpr uint32_t kTextSendEnterpriseNoFile = framework::NameId("chat.send.enterprise_no_file");
constexpr uint32_t kTextSendCopyFailed = framework::NameId("chat.send.copy_failed");
constexpr uint32_t kTextSendWebp = framework::NameId("chat.send.webp");
constexpr uint32_t kTextSendImageMissing = framework::NameId("chat.send.image_missing");
constexpr uint32_t kTextSendMemberLeft = framework::NameId("chat.send.member_left");
constexpr uint32_t kTextSendMemberLeftWebinar = framework::NameId("chat.send.member_left_webinar");
constexpr uint32_t kTextSendMemberCannotReceive = framework::NameId("chat.send.member_cannot_receive");
constexpr uint32_t kTextSendMemberRoomSystem = framework::NameId("chat.send.member_room_system");
constexpr uint32_t kTextSendTooManyFiles = framework::NameId("chat.send.too_many_files");
constexpr uint32_t kTextSendNoExtension = framework::NameId("chat.send.no_extension");
constexpr uint32_t kTextSendNoExtensionPlural = framework::NameId("chat.send.no_extension_plural");
constexpr uint32_t kTextSendInhibited = framework::NameId("chat.send.inhibited");
constexpr uint32_t kTextSendInhibitedPlural = framework::NameId("chat.send.inhibited_plural");
constexpr uint32_t kTextSendEmptyFile = framework::NameId("chat.send.empty_file");
constexpr uint32_t kTextSendFileUnreadable = framework::NameId("chat.send.file_unreadable");

// The chat authority menu.
constexpr uint32_t kTextAuthorityTitleScope = framework::NameId("chat.authority.title.scope");
constexpr uint32_t kTextAuthorityTitleWaitingRoom = framework::NameId("chat.authority.title.waiting_room");
constexpr uint32_t kTextAuthorityTitlePanelists = framework::NameId("chat.authority.title.panelists");
constexpr uint32_t kTextAuthorityTitleAttendees = framework::NameId("chat.authority.title.attendees");
constexpr uint32_t kTextAuthorityFirstTip = framework::NameId("chat.authority.first_tip");
constexpr uint32_t kTextAuthoritySensitiveWordsTitle = framework::NameId("chat.authority.sensitive_words_title");

// The input, receiver line and their tips.
constexpr uint32_t kTextNoNetwork = 0xdf5b367f;
constexpr uint32_t kTextConfirmSendTitle = 0xd6dc788;
constexpr uint32_t kTextConfirmSendContent = 0x285e5581;
constexpr uint32_t kTextConfirmSendPositive = 0xd05cfc39;
constexpr uint32_t kTextConfirmSendNegative = 0x833b933a;
constexpr uint32_t kTextPrivateChatTip = 0x4e94e6e2;
constexpr uint32_t kTextPrivateChatLabel = 0xace08d7;
constexpr uint32_t kTextNoticeDisabledTips = 0x5711e91e;
constexpr uint32_t kTextNoticeTips = 0x9f64cb9;
constexpr uint32_t kTextNoticeGuideTip = 0x64070c84;
constexpr uint32_t kTextSendToInitial = 0x160fa156;
constexpr uint32_t kTextAuthorityTips = 0x9e7ddeab;
constexpr uint32_t kTextSendTo = 0x9a5ea225;

}  // namespace chat

namespace chat {
constexpr uint32_t kTextFileSendRefused = framework::NameId("chat.file.send_refused");
constexpr uint32_t kTextFileTooManyTransfers = framework::NameId("chat.file.too_many_transfers");
}  // namespace chat

namespace chat {
constexpr uint32_t kTextNoticeDisabled = framework::NameId("chat.notice.disabled");
constexpr uint32_t kTextGoodsPrice = framework::NameId("chat.goods.price");
}  // namespace chat
