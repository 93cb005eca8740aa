#pragma once

#include <cstdint>
#include <string>

namespace util {
namespace time {

enum ClockType {
  kClockTypeLocal = 0,
  kClockTypeServer = 1,
};

int64_t GetTimestampMsec();
// Seconds and milliseconds on the server's clock: local time plus the offset
// the meeting reported. kClockTypeLocal ignores the offset.
int64_t GetServerTimestamp(ClockType type = kClockTypeServer);
int64_t GetServerTimestampMsec(ClockType type = kClockTypeServer);
void SetServerClockOffsetMsec(int64_t offset_ms);
int64_t GetServerClockOffsetMsec();
// Local "yyyy-MM-dd hh:mm:ss" of a Unix time in seconds.
std::string MakeTime(unsigned long seconds);

}  // namespace time
}  // namespace util
