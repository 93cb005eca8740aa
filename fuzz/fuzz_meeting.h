// The simulated meeting behind the host's models, for the targets whose code
// asks the host for faces, members and the meeting.
#pragma once

namespace sim {
class MeetingSimulator;
}

namespace fuzz {

// Installed once (faces loaded, a few members) and never torn down: at exit
// the host's registries may go first.
sim::MeetingSimulator& Meeting();

}  // namespace fuzz
