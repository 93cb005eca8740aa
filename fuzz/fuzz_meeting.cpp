#include "fuzz_meeting.h"

#include "fuzz_support.h"
#include "sim/meeting_sim.h"

namespace fuzz {

namespace {
sim::MeetingSimulator* g_meeting = nullptr;
}  // namespace

sim::MeetingSimulator& Meeting() {
  if (!g_meeting) {
    InitProcess();
    g_meeting = new sim::MeetingSimulator();
    g_meeting->Install();
    // The models keep every call for tests to read; here that only grows.
    g_meeting->SetRecording(false);
    g_meeting->faces().Load();
    for (char const* id : {"u2", "u3"}) {
      g_meeting->members().AddMember(Variant::Map{{"user_id", id}, {"app_uid", std::string("uid-") + id},
                                                  {"app_id", "1400"}, {"nickname", std::string("Member ") + id},
                                                  {"role", "member"}});
    }
  }
  return *g_meeting;
}

}  // namespace fuzz
