#pragma once

#include <string>
#include <vector>

#include "base/variant/variant.h"

namespace sim {

class MeetingSimulator;

// People for a simulated meeting, made up from a fixed list of first and last
// names so that every run has the same people: a 30-person meeting, a
// 1,000-member one or a webinar of 10,000 attendees.
struct RosterOptions {
  int members = 0;      // in the meeting, beside the scripted participants
  int waiting = 0;      // in the waiting room
  int panelists = 0;    // webinar panelists
  int attendees = 0;    // webinar attendees
  int no_chat_devices = 0;  // members on a device without chat (a room system)
};

// The i-th made-up person's name; names repeat only after a few thousand.
std::string RosterName(int index);
// Adds the roster to the meeting's member model in one go.
void PopulateRoster(MeetingSimulator& meeting, RosterOptions const& options);

}  // namespace sim
