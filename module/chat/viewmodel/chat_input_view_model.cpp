#include "chat/viewmodel/chat_input_view_model.h"

#include "base/analytics/analytics.h"
#include "base/log/log.h"
#include "chat/biz_model/chat_biz_model.h"
#include "chat/biz_model/chat_biz_model_helper.h"
#include "chat/biz_model/chat_send_message_biz_model.h"
#include "chat/model/send_button_config_model.h"
#include "chat/runtime/chat_ids.h"
#include "chat/util/chat_strings.h"
#include "chat/util/utils.h"
#include "framework/chat/chat_utils.h"
#include "framework/meeting/meeting_settings.h"
#include "framework/meeting/member_utils.h"
#include "framework/meeting/private_chat_record.h"
#include "framework/module/app_module.h"
#include "framework/module/module_runtime.h"
#include "framework/navigation/routing.h"
#include "chat/model/chat_message.h"

namespace chat {

namespace {
namespace analytics = talvex_common::utils::analytics;
using ChatModel = TypedBizModel::Chat::ModelImpl;
using SendModel = TypedBizModel::ChatSendMessage::ModelImpl;

constexpr uint32_t kNetworkMethodIsUp = 9;
constexpr int kHostNoticeModel = 539;
constexpr int kHostWebinarTipsModel = 690;
constexpr int kHostNoticeStateModel = 1000001;
constexpr uint32_t kFaceMethodMatchText = 7;
constexpr uint32_t kMixedSendMethod = 59;

constexpr char kShortcutKey[] = "im.msg_send_shortcut";
constexpr char kInputHeightKey[] = "im.msg_input_height";
constexpr char kNoticeTipsKey[] = "im.notice_tips_show";
constexpr double kDefaultInputHeight = 85.0;

constexpr char kMatchText[] = "ChatInputMatchTextToMsgItemsFields_kStringMatchText";
constexpr char kMatchId[] = "ChatInputMatchTextToMsgItemsFields_kStringMatchId";
constexpr char kResultMatchId[] = "ChatInputCallBackMatchTextToMsgItemsFields_kStringMatchId";
constexpr char kResultItems[] = "ChatInputCallBackMatchTextToMsgItemsFields_kArrayMsgItems";
constexpr char kResultItemType[] = "ChatInputCallBackMatchTextToMsgItemsFields_kIntegerMsgItemsItemType";
constexpr char kResultText[] = "ChatInputCallBackMatchTextToMsgItemsFields_kStringMsgItemsMsgText";
constexpr char kResultEmojiPath[] = "ChatInputCallBackMatchTextToMsgItemsFields_kStringMsgItemsMsgEmojiPath";
constexpr char kResultEmojiIndex[] = "ChatInputCallBackMatchTextToMsgItemsFields_kIntegerMsgItemsMsgEmojiIndex";
constexpr char kResultEmojiText[] = "ChatInputCallBackMatchTextToMsgItemsFields_kStringMsgItemsMsgEmojiText";

constexpr uint32_t kTextInputSend = framework::NameId("chat.input.send");
constexpr uint32_t kTextInputPlaceholder = framework::NameId("chat.input.placeholder");

template <typename Fn>
std::shared_ptr<framework::EventHandler> Handler(Fn fn) {
  return std::make_shared<framework::EventHandler>(std::move(fn));
}
}  // namespace

ChatInputViewModel::ChatInputViewModel() {
  OnAction(kActionSend, [this](Variant const* params) { HandleSend(params); });
  OnAction(kActionMatchTextToMsgItems, [this](Variant const* params) { HandleMatchTextToMsgItems(params); });
  OnAction(kActionSendFile, [this](Variant const* params) {
    TXLOG_INFO << "<IM> send file in input";
    InvokeSendModel(SendModel::kSendFileMessage, params);
  });
  OnAction(kActionSendImage, [this](Variant const* params) { InvokeSendModel(SendModel::kSendImageMessage, params); });
  OnAction(kActionSaveDraft, [this](Variant const* params) {
    InvokeChatBizModel(GetModuleRuntime4ATG(), ChatModel::kSetInputDraft, params);
  });
  OnAction(kActionTextChanged, [this](Variant const* params) { HandleTextChanged(params); });
  OnAction(kActionSetShortcut, [this](Variant const* params) { SetShortcut(params); });
  OnAction(kActionSetInputHeight, [this](Variant const* params) { HandleSetInputHeight(params); });
  OnAction(kActionSelectReceiver,
           [](Variant const* params) { talvex_common::utils::privatechatrecord::SerPrivateChatUserInfo(params); });
  OnAction(kActionMoreClicked, [this](Variant const*) {
    analytics::LogEvent("meetingpage_impanel_null_add_null_null_click");
    is_expanded_ = true;
  });
  OnAction(kActionMoreClosed, [this](Variant const*) { is_expanded_ = false; });
  OnAction(kActionMoreHidden, [this](Variant const*) { is_expanded_ = false; });
  OnAction(kActionAuthorityClicked,
           [](Variant const*) { analytics::LogEvent("chatting_private_chat_authority_click"); });
  OnAction(kActionSelectUserClicked,
           [](Variant const*) { analytics::LogEvent("chatting_private_chat_select_user_click"); });
  OnAction(kActionShowNotice, [this](Variant const*) { ShowMeetingNotice(); });
}

void ChatInputViewModel::OnViewAttached(Variant const* params) {
  talvex::AuthorizeViewModelT<talvex::ExtensionViewModel>::OnViewAttached(params);
  if (params && params->IsMap() && params->Get("template_type").IsInteger()) {
    template_type_ = params->GetInt32("template_type");
  }
  auto* runtime = GetModuleRuntime4ATG();
  if (auto config = GetChatModuleModel(runtime, kSendButtonConfigModelId)) {
    Variant value;
    if (config->Invoke(SendButtonConfigModel::kGetConfig, nullptr, &value)) ReadButtonConfig(value);
  }
  UpdateSendButton();
  UpdateDisableState();
  if (!HasProp(kPropImageCacheDir)) {
    SetPropValue(kPropImageCacheDir, talvex::ChatUtils::GetMsgCacheSendImageDirPath());
  }
  SetBoolPropIfChanged(kPropSendShortcut, ReadLocalSetting(kShortcutKey, Variant(false)).AsBoolean());
  const Variant height = ReadLocalSetting(kInputHeightKey, Variant(kDefaultInputHeight));
  SetPropValue(kPropInputHeight, height.IsNumber() ? height.AsDouble() : kDefaultInputHeight);
  Variant strings(base::variant::kVariantTypeMap);
  strings.Set("ChatInputUIDataFields_kStringUIDataSendMsgText", GetLocalizedString(kTextInputSend));
  strings.Set("ChatInputUIDataFields_kStringUIDataDefaultInputEditText", GetLocalizedString(kTextInputPlaceholder));
  SetPropValue(kPropInputStrings, std::move(strings));
  Subscribe();
  UpdateNoticeButton();
  CheckHostShowNoticeGuideTips();
  RestoreDraft();
}

void ChatInputViewModel::Subscribe() {
  const uint64_t self = framework::SubscriberId(this);
  auto* runtime = GetModuleRuntime4ATG();
  auto own = [runtime](int id) { return GetChatModuleModel(runtime, id); };
  if (auto config = own(kSendButtonConfigModelId)) {
    RecordSubscribe(config, this);
    config->Subscribe(SendButtonConfigModel::kEventConfigChanged, self,
                      Handler([this](Variant const* p) { OnEventButtonConfigChanged(p); }));
  }
  if (auto meeting = framework::module::GetAppModuleModel(kHostMeetingModel)) {
    RecordSubscribe(meeting, this);
    for (uint32_t event : {14u, 15u}) {
      meeting->Subscribe(event, self, Handler([this](Variant const* p) { OnEventFocusRequest(p); }));
    }
  }
  if (auto send = own(kChatSendMessageBizModelId)) {
    RecordSubscribe(send, this);
    send->Subscribe(SendModel::kEventSendRefused, self, Handler([this](Variant const* p) { OnEventSendRefused(p); }));
    send->Subscribe(SendModel::kEventSendReminder, self, Handler([this](Variant const* p) { ConfirmSend(p); }));
    send->Subscribe(SendModel::kEventMixedSent, self, Handler([this](Variant const* p) { OnEventMixedSent(p); }));
  }
  if (auto authority = framework::module::GetAppModuleModel(kHostAuthorityModel)) {
    RecordSubscribe(authority, this);
    authority->Subscribe(0, self, Handler([this](Variant const*) { UpdateDisableState(); }));
  }
  if (auto chat = own(kChatBizModelId)) {
    RecordSubscribe(chat, this);
    chat->Subscribe(ChatModel::kEventTipsPending, self, Handler([this](Variant const*) { ShowPrivateChatTip(); }));
  }
  if (auto notice = framework::module::GetAppModuleModel(kHostNoticeModel)) {
    RecordSubscribe(notice, this);
    notice->Subscribe(1, self, Handler([this](Variant const*) { UpdateNoticeButton(); }));
  }
  if (auto notice_state = framework::module::GetAppModuleModel(kHostNoticeStateModel)) {
    RecordSubscribe(notice_state, this);
    notice_state->Subscribe(3, self, Handler([this](Variant const*) { UpdateNoticeButton(); }));
  }
  if (auto tips = framework::module::GetAppModuleModel(kHostWebinarTipsModel)) {
    RecordSubscribe(tips, this);
    tips->Subscribe(4, self, Handler([this](Variant const* p) { OnEventCheckShowGuideTips(p); }));
  }
}

void ChatInputViewModel::OnViewDetached() {
  UnsubscribeAllEvent();
  talvex::AuthorizeViewModelT<talvex::ExtensionViewModel>::OnViewDetached();
}

void ChatInputViewModel::OnNewParams(Variant const* old_params, Variant const* new_params, bool flag) {
  template_type_ = new_params && new_params->IsMap() && new_params->Get("template_type").IsInteger()
                       ? new_params->GetInt32("template_type")
                       : 2;
}

void ChatInputViewModel::SetBoolPropIfChanged(uint32_t prop, bool value) {
  Variant const* current = GetPropValue(prop);
  if (current && current->IsBool() && current->AsBoolean() == value) return;
  SetPropValue(prop, value);
}

void ChatInputViewModel::ReadButtonConfig(Variant const& config) {
  show_more_ = config.GetBoolean("show_more") && talvex::ChatUtils::IsMeetingSupportIMFileAndPicture();
  red_dot_more_ = config.GetBoolean("red_dot_more");
}

void ChatInputViewModel::UpdateSendButton() {
  SetBoolPropIfChanged(kPropSendButtonVisible, !has_text_);
  SetBoolPropIfChanged(kPropSendState, has_text_ ? !show_more_ : true);
}

void ChatInputViewModel::UpdateDisableState() {
  const Variant info = talvex::ChatUtils::GetIMAuthorityInfo();
  const bool disabled = info.GetBoolean("disable_chat");
  SetBoolPropIfChanged(kPropChatEnabled, !disabled);
  SetBoolPropIfChanged(kPropDisabledIcon, disabled && info.GetBoolean("need_show_icon"));
  SetPropValue(kPropDisabledText, disabled ? info.GetString("disable_chat_desc") : std::string());
}

void ChatInputViewModel::UpdateNoticeButton() {
  Variant button(base::variant::kVariantTypeMap);
  button.Set("enable", talvex_common::utils::meetingsettings::IsMeetingNoticeEnable());
  button.Set("disable_tips", GetLocalizedString(kTextNoticeDisabledTips));
  button.Set("show_red_dot", !talvex::ChatUtils::GetMeetingNoticeIsRead());
  button.Set("tips", GetLocalizedString(kTextNoticeTips));
  SetPropValue(kPropNoticeButton, std::move(button));
}

void ChatInputViewModel::ShowMeetingNotice() {
  if (!talvex_common::utils::meetingsettings::IsMeetingNoticeEnable()) {
    ShowToast(0, GetLocalizedString(kTextNoticeDisabledTips), 2000);
    return;
  }
  framework::NavigateService::Instance()->Navigate(kMeetingNoticePage);
}

void ChatInputViewModel::CheckHostShowNoticeGuideTips() {
  if (!talvex_common::utils::meetingsettings::IsMeetingNoticeEnable() ||
      !talvex_common::utils::member::IsSelfHostOrCoHost()) {
    return;
  }
  if (ReadLocalSetting(kNoticeTipsKey, Variant(false)).AsBoolean()) {
    TXLOG_INFO << "has show notice icon tips ";
    return;
  }
  Variant tip(base::variant::kVariantTypeMap);
  tip.Set("tips_content", GetLocalizedString(kTextNoticeGuideTip));
  tip.Set("tips_dismiss_timeout", 5000);
  tip.Set("tips_show", true);
  SetPropValue(kPropNoticeGuideTip, std::move(tip));
  TXLOG_INFO << "show desktop notice icon tips ";
  WriteLocalSetting(kNoticeTipsKey, Variant(true));
}

void ChatInputViewModel::ShowPrivateChatTip() {
  const Variant receiver = talvex_common::utils::privatechatrecord::GetPrivateChatUserInfo();
  const std::string nickname = receiver.Get("nickname").IsString() ? receiver.GetString("nickname") : std::string();
  Variant tip(base::variant::kVariantTypeMap);
  tip.Set("tips_title", "");
  tip.Set("tips_content", GetLocalizedString(kTextPrivateChatTip) + nickname);
  tip.Set("sender_label", "(" + GetLocalizedString(kTextPrivateChatLabel) + ")");
  tip.Set("auto_dismiss_time", 3);
  tip.Set("tips_show", true);
  SetPropValue(kPropGuideTip, std::move(tip));
}

void ChatInputViewModel::RestoreDraft() {
  auto draft = InvokeChatBizModel(GetModuleRuntime4ATG(), ChatModel::kGetInputDraft);
  if (draft && !draft->IsNull()) SetPropValue(kPropDraft, *draft);
}

void ChatInputViewModel::OnEventButtonConfigChanged(Variant const* params) {
  if (!params || !params->IsMap()) {
    TXLOG_WARN << "<IM> send button config is not a map";
    return;
  }
  ReadButtonConfig(*params);
  UpdateSendButton();
}

void ChatInputViewModel::OnEventFocusRequest(Variant const*) { SetPropValue(kPropFocusRequest, false); }

void ChatInputViewModel::OnEventSendRefused(Variant const* params) {
  if (!params || !params->IsString()) {
    TXLOG_WARN << "<IM> send refusal without a text";
    return;
  }
  ShowToast(0, params->AsStr(), 2000, 0, "", "");
}

void ChatInputViewModel::OnEventMixedSent(Variant const*) {
  has_text_ = true;
  SetPropValue(kPropClearInput, nullptr);
  UpdateSendButton();
}

void ChatInputViewModel::OnEventCheckShowGuideTips(Variant const* params) {
  if (!params || !params->IsMap() || !params->Has("tips_type")) {
    TXLOG_ERROR << "[webinar trail tips] error params";
    return;
  }
  TXLOG_INFO << "[webinar trail tips] tips_type=" << framework::VariantToString(&params->Get("tips_type"));
}

void ChatInputViewModel::ConfirmSend(Variant const* payload) {
  if (!payload || !payload->IsMap()) {
    TXLOG_ERROR << "<IM> confirm send without a payload";
    return;
  }
  auto* runtime = GetModuleRuntime4ATG();
  auto pending = InvokeChatBizModel(runtime, ChatModel::kHasReminder);
  if (pending && pending->IsBool() && !pending->AsBoolean()) return;
  const Variant message = payload->Get("message_info");
  const int64_t send_type = payload->GetInteger("send_type", -1);
  std::weak_ptr<framework::ViewModel> weak = weak_from_this();
  framework::UIViewModel::AlertBuilder(this)
      .SetType(1)
      .SetTitle(GetLocalizedString(kTextConfirmSendTitle))
      .SetContent(GetLocalizedString(kTextConfirmSendContent))
      .SetPositiveText(GetLocalizedString(kTextConfirmSendPositive))
      .SetNegativeText(GetLocalizedString(kTextConfirmSendNegative))
      .SetAutoDismiss(true)
      .SetTopMost(true)
      .SetInteractiveFunc([this, weak, message, send_type](long, int button, Variant*) {
        if (weak.expired()) return;
        if (button == framework::kAlertButtonNegative) {
          analytics::LogEvent("inmeeting_im_null_null_cancel_null_clk");
          return;
        }
        // Closed without an answer: dropped, like a cancel but unreported.
        if (button != framework::kAlertButtonPositive) return;
        analytics::LogEvent("inmeeting_im_null_null_send_null_clk");
        switch (send_type) {
          case 0:
            InvokeSendModel(SendModel::kSendTextMessage, &message);
            break;
          case 1:
            InvokeSendModel(SendModel::kSendImageMessage, &message);
            break;
          case 2:
            InvokeSendModel(SendModel::kSendFileMessage, &message);
            break;
          case 3:
            if (auto messages = framework::module::GetAppModuleModel(kHostChatMessageModel)) {
              messages->Invoke(kMixedSendMethod, &message, nullptr);
            }
            break;
          default:
            TXLOG_ERROR << "<IM> confirm send of unknown kind " << send_type;
        }
      })
      .Show();
  Variant open(true);
  InvokeChatBizModel(runtime, ChatModel::kSetReminderDisabled, &open);
}

bool ChatInputViewModel::InvokeSendModel(uint32_t method, Variant const* params) {
  auto* runtime = GetModuleRuntime4ATG();
  auto send = GetChatModuleModel(runtime, kChatSendMessageBizModelId);
  if (!send) {
    TXLOG_ERROR << "<IM> no send model, method " << method;
    return false;
  }
  return send->Invoke(method, params, nullptr);
}

void ChatInputViewModel::HandleSend(Variant const* params) {
  auto network = framework::module::GetAppModuleModel(kHostNetworkModel);
  Variant up(true);
  if (network && network->Invoke(kNetworkMethodIsUp, nullptr, &up) && up.IsBool() && !up.AsBoolean()) {
    ShowToast(0, GetLocalizedString(kTextNoNetwork), 2000, 0, "", "");
    return;
  }
  HandleSendMessage(params);
}

void ChatInputViewModel::HandleTextChanged(Variant const* params) {
  if (!params || !params->IsBool()) {
    TXLOG_WARN << "<IM> text changed without a bool";
    return;
  }
  has_text_ = params->AsBoolean();
  UpdateSendButton();
}

void ChatInputViewModel::HandleSetInputHeight(Variant const* params) {
  if (!params || !params->IsNumber()) {
    TXLOG_WARN << "<IM> input height is not a number";
    return;
  }
  WriteLocalSetting(kInputHeightKey, Variant(params->AsDouble()));
}

void ChatInputViewModel::SetShortcut(Variant const* params) {
  if (!params || !params->IsBool()) {
    TXLOG_WARN << "<IM> send shortcut is not a bool";
    return;
  }
  WriteLocalSetting(kShortcutKey, *params);
  // What the store kept is what the view shows.
  SetBoolPropIfChanged(kPropSendShortcut, ReadLocalSetting(kShortcutKey, Variant(false)).AsBoolean());
}

void ChatInputViewModel::HandleSendMessage(Variant const* params) {
  if (!CheckAuthorizeBeforeAction()) return;
  DoSendMessage(params);
}

void ChatInputViewModel::DoSendMessage(Variant const* params) {
  if (!params || !params->IsArray()) {
    TXLOG_ERROR << "<IM> send without a list of items";
    return;
  }
  Variant items = *params;
  for (auto& item : items.AsArray()) {
    if (item.IsMap()) item.Set(chat_key::kTemplateType, template_type_);
  }
  auto messages = framework::module::GetAppModuleModel(kHostChatMessageModel);
  if (!messages) {
    TXLOG_ERROR << "<IM> no message model, nothing sent";
    return;
  }
  messages->Invoke(kMixedSendMethod, &items, nullptr);
}

void ChatInputViewModel::HandleMatchTextToMsgItems(Variant const* params) {
  if (!params || !params->IsMap()) {
    TXLOG_ERROR << "params nullptr";
    return;
  }
  // The view takes the answer to its last request by this id; an answer
  // without one would be pasted by a view that never asked.
  if (!params->Get(kMatchId).IsString() || params->GetString(kMatchId).empty()) {
    TXLOG_ERROR << "match request without a match id";
    return;
  }
  const std::string text = params->GetString(kMatchText);
  const std::string match_id = params->GetString(kMatchId);
  TXLOG_INFO << "match_id: " << match_id;
  Variant items;
  auto faces = framework::module::GetAppModuleModel(kHostFaceModel);
  const Variant ask(text);
  if (!faces || !faces->Invoke(kFaceMethodMatchText, &ask, &items)) {
    items = Variant(base::variant::kVariantTypeArray);
    Variant item(base::variant::kVariantTypeMap);
    item.Set("item_type", ToInt(ItemType::kText));
    item.Set("item_content", text);
    items.Add(std::move(item));
  }
  DoMatchTextComplete(items, match_id);
}

void ChatInputViewModel::DoMatchTextComplete(Variant const& items, std::string const& match_id) {
  if (!items.IsArray()) {
    TXLOG_ERROR << match_id << " match fail";
    return;
  }
  Variant out(base::variant::kVariantTypeArray);
  for (auto const& item : items.AsArray()) {
    if (!item.IsMap()) continue;
    const int64_t type = item.GetInteger("item_type", -1);
    Variant mapped(base::variant::kVariantTypeMap);
    mapped.Set(kResultItemType, type);
    if (type == 0) {
      mapped.Set(kResultText, item.GetString("item_content"));
    } else if (type == 1) {
      mapped.Set(kResultEmojiPath, item.GetString("item_emoji_path"));
      mapped.Set(kResultEmojiIndex, item.GetInteger("item_emoji_index", -1));
      mapped.Set(kResultEmojiText, item.GetString("item_emoji_text"));
    }
    out.Add(std::move(mapped));
  }
  Variant result(base::variant::kVariantTypeMap);
  result.Set(kResultMatchId, match_id);
  result.Set(kResultItems, out);
  TXLOG_INFO << match_id << " match succuss: " << framework::VariantToString(&out);
  SetPropValue(kPropMatchResult, std::move(result));
}

}  // namespace chat
