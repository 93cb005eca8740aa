#include "base/util/time_util.h"

#include <atomic>
#include <chrono>
#include <ctime>

namespace util {
namespace time {

namespace {
std::atomic<int64_t> g_server_offset_ms{0};
}

int64_t GetTimestampMsec() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

int64_t GetServerTimestampMsec(ClockType type) {
  const int64_t local = GetTimestampMsec();
  return type == kClockTypeServer ? local + g_server_offset_ms.load(std::memory_order_relaxed) : local;
}

int64_t GetServerTimestamp(ClockType type) { return GetServerTimestampMsec(type) / 1000; }

void SetServerClockOffsetMsec(int64_t offset_ms) { g_server_offset_ms.store(offset_ms, std::memory_order_relaxed); }

int64_t GetServerClockOffsetMsec() { return g_server_offset_ms.load(std::memory_order_relaxed); }

std::string MakeTime(unsigned long seconds) {
  const std::time_t t = static_cast<std::time_t>(seconds);
  std::tm local{};
  if (!localtime_r(&t, &local)) return std::string();
  char buffer[32];
  const size_t n = std::strftime(buffer, sizeof(buffer), "%Y-%m-%d %H:%M:%S", &local);
  return std::string(buffer, n);
}

}  // namespace time
}  // namespace util
