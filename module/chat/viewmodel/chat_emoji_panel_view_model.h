#pragma once

#include "framework/viewmodel/stateful_view_model.h"

namespace chat {

// The meeting's faces for an emoji panel: published as `EmojiFaces`, an
// array of {index, face_type, path}, again whenever the client's faces load.
class ChatEmojiPanelViewModel : public framework::StatefulViewModel {
 public:
  static constexpr uint32_t kPropEmojiFaces = framework::NameId("EmojiFaces");

  void OnViewAttached(Variant const* params) override;
  void OnViewDetached() override;

 private:
  void PublishFaces();
};

}  // namespace chat
