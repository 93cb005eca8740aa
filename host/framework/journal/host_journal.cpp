#include "framework/journal/host_journal.h"

#include <mutex>

namespace framework {
namespace {
std::mutex& Mutex() {
  static std::mutex mutex;
  return mutex;
}
std::vector<std::string>& Store() {
  static std::vector<std::string> entries;
  return entries;
}
}  // namespace

void HostJournal::Record(std::string entry) {
  std::lock_guard<std::mutex> lock(Mutex());
  Store().push_back(std::move(entry));
}

std::vector<std::string> HostJournal::Entries() {
  std::lock_guard<std::mutex> lock(Mutex());
  return Store();
}

std::vector<std::string> HostJournal::Entries(std::string const& prefix) {
  std::lock_guard<std::mutex> lock(Mutex());
  std::vector<std::string> out;
  for (auto const& e : Store()) {
    if (e.compare(0, prefix.size(), prefix) == 0) out.push_back(e);
  }
  return out;
}

void HostJournal::Clear() {
  std::lock_guard<std::mutex> lock(Mutex());
  Store().clear();
}

}  // namespace framework
