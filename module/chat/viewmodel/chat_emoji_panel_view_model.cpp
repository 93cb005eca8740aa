#include "chat/viewmodel/chat_emoji_panel_view_model.h"

#include "base/log/log.h"
#include "chat/runtime/chat_ids.h"
#include "framework/module/app_module.h"

namespace chat {

namespace {
constexpr uint32_t kFaceMethodAll = 0;
constexpr uint32_t kFaceEventLoaded = 0;
}  // namespace

void ChatEmojiPanelViewModel::OnViewAttached(Variant const* params) {
  framework::StatefulViewModel::OnViewAttached(params);
  if (auto faces = framework::module::GetAppModuleModel(kHostFaceModel)) {
    RecordSubscribe(faces, this);
    faces->Subscribe(kFaceEventLoaded, framework::SubscriberId(this),
                     std::make_shared<framework::EventHandler>([this](Variant const*) { PublishFaces(); }));
  }
  PublishFaces();
}

void ChatEmojiPanelViewModel::OnViewDetached() {
  UnsubscribeAllEvent();
  framework::StatefulViewModel::OnViewDetached();
}

void ChatEmojiPanelViewModel::PublishFaces() {
  Variant faces;
  auto model = framework::module::GetAppModuleModel(kHostFaceModel);
  if (!model || !model->Invoke(kFaceMethodAll, nullptr, &faces) || !faces.IsArray()) {
    TXLOG_WARN << "no faces for the emoji panel";
    faces = Variant(base::variant::kVariantTypeArray);
  }
  SetPropValue(kPropEmojiFaces, std::move(faces));
}

}  // namespace chat
