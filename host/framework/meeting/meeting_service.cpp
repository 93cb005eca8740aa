#include "framework/meeting/meeting_service.h"

namespace talvexsdk {
namespace utils {
namespace service {

namespace {
IMeetingService*& Installed() {
  static IMeetingService* service = nullptr;
  return service;
}
}  // namespace

IMeetingService* GetMeetingService() { return Installed(); }
void SetMeetingService(IMeetingService* service) { Installed() = service; }

}  // namespace service
}  // namespace utils
}  // namespace talvexsdk
