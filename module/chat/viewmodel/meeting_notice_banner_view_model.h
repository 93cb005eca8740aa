#pragma once

#include <cstdint>

#include "framework/viewmodel/stateful_view_model.h"

namespace chat {

// The strip over the chat panel's messages that shows the meeting's notice
// when it is new or has changed. Hiding it is remembered per meeting for
// the version on screen: the next change shows it again.
class MeetingNoticeBannerViewModel : public framework::StatefulViewModel {
 public:
  // {visible, title, text, sender, time, updated, open_tips, close_tips}
  static constexpr uint32_t kPropBanner = framework::NameId("MeetingNoticeBanner");
  static constexpr uint32_t kActionOpen = framework::NameId("MeetingNoticeBannerOpen");
  static constexpr uint32_t kActionDismiss = framework::NameId("MeetingNoticeBannerDismiss");

  MeetingNoticeBannerViewModel();
  void OnViewAttached(Variant const* params) override;

  // The banner for a notice record (method 490622772 of the notice model).
  void Refresh(Variant const& record);
  int64_t version() const { return version_; }

 private:
  void RefreshFromModel();
  void Dismiss();
  void Open();
  void Publish(Variant banner);

  int64_t version_ = 0;
};

}  // namespace chat
