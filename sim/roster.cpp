#include "sim/roster.h"

#include "sim/meeting_sim.h"

namespace sim {

namespace {
constexpr char const* kFirst[] = {"Ada",   "Bruno", "Chloé", "Dmitri", "Elena", "Farah", "Gustav", "Hana",
                                  "Ingrid", "Jonas", "Kenji", "Lucía", "Mateo", "Nadia", "Oskar", "Priya",
                                  "Quentin", "Rosa", "Stefan", "Tamsin", "Ugo",  "Vera",  "Wanjiru", "Xavier",
                                  "Yusuf", "Zoë",   "Amara", "Björn", "Carmen", "Diego", "Emeka", "Freya",
                                  "Gita",  "Hugo",  "Ines",  "Jamal", "Kirra", "Liam",  "Maja",  "Noor",
                                  "Olu",   "Paulo", "Rania", "Sione", "Tova",  "Uma",   "Viktor", "Wen"};
constexpr char const* kLast[] = {"Abara",  "Berg",    "Castillo", "Dahl",   "Eze",     "Fischer", "García",
                                 "Haddad", "Ivanova", "Jensen",   "Kowalski", "Larsen", "Moreau",  "Nakamura",
                                 "Okafor", "Petrov",  "Quist",    "Rossi",  "Silva",   "Tanaka",  "Ulloa",
                                 "Varga",  "Weber",   "Xu",       "Yilmaz", "Zeller",  "Achebe",  "Bianchi",
                                 "Costa",  "Dubois",  "Eriksen",  "Fonseca", "Gallo",  "Horvat",  "Ito",
                                 "Jovanović", "Kim",  "Lund",     "Mendes", "Novak",   "Ortiz",   "Park",
                                 "Quispe", "Richter", "Santos",   "Torres", "Urban",   "Vogel",   "Wójcik",
                                 "Yamada", "Zhou",    "Novotná",  "Lindqvist"};
constexpr int kFirstCount = sizeof(kFirst) / sizeof(kFirst[0]);
constexpr int kLastCount = sizeof(kLast) / sizeof(kLast[0]);

Variant Person(std::string const& id, int index, char const* role) {
  return Variant::Map{{"user_id", id}, {"app_id", "1400"}, {"app_uid", id}, {"nickname", RosterName(index)},
                      {"role", role}};
}
}  // namespace

std::string RosterName(int index) {
  // Walking first names one way and last names at a coprime stride gives
  // every pair before any repeats.
  const int first = index % kFirstCount;
  const int last = (index / kFirstCount + index * 7) % kLastCount;
  return std::string(kFirst[first]) + " " + kLast[last];
}

void PopulateRoster(MeetingSimulator& meeting, RosterOptions const& options) {
  std::vector<Variant> people;
  int index = 0;
  for (int i = 0; i < options.members; ++i, ++index) {
    people.push_back(Person("m-" + std::to_string(i), index, "member"));
  }
  for (int i = 0; i < options.no_chat_devices; ++i, ++index) {
    Variant room = Person("r-" + std::to_string(i), index, "member");
    room.Set("nickname", "Room " + std::to_string(i + 1) + " (" + RosterName(index) + ")");
    room.Set("instance_id", 5);
    people.push_back(std::move(room));
  }
  for (int i = 0; i < options.waiting; ++i, ++index) {
    Variant waiting = Person("w-" + std::to_string(i), index, "member");
    waiting.Set("in_waiting_room", true);
    people.push_back(std::move(waiting));
  }
  for (int i = 0; i < options.panelists; ++i, ++index) {
    people.push_back(Person("p-" + std::to_string(i), index, "panelist"));
  }
  for (int i = 0; i < options.attendees; ++i, ++index) {
    people.push_back(Person("a-" + std::to_string(i), index, "attendee"));
  }
  meeting.members().AddMembers(std::move(people));
}

}  // namespace sim
