// What this process holds in memory, for the soak and its benchmark: pages
// resident, and the heap the program has allocated (the sanitizer's own count
// when AddressSanitizer stands in for malloc, glibc's otherwise).
#pragma once

#include <QByteArray>
#include <QFile>
#include <QList>

#include <malloc.h>
#include <unistd.h>

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
// From the sanitizer's runtime (its header ships with clang, not with g++).
extern "C" size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace devkit {

inline long ResidentKb() {
  QFile statm("/proc/self/statm");
  if (!statm.open(QIODevice::ReadOnly)) return 0;
  const QList<QByteArray> fields = statm.readAll().split(' ');
  if (fields.size() < 2) return 0;
  return fields[1].toLong() * (sysconf(_SC_PAGESIZE) / 1024);
}

inline long HeapKb() {
#if defined(__SANITIZE_ADDRESS__)
  return static_cast<long>(__sanitizer_get_current_allocated_bytes() / 1024);
#else
  const struct mallinfo2 info = mallinfo2();
  return static_cast<long>((info.uordblks + info.hblkhd) / 1024);
#endif
}

}  // namespace devkit
