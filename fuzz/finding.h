// How a fuzz target reports what it found: the line on stderr, then abort,
// which libFuzzer takes as a crash and keeps the input for.
#pragma once

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace fuzz {

[[noreturn]] __attribute__((format(printf, 1, 2))) inline void Finding(char const* format, ...) {
  va_list args;
  va_start(args, format);
  std::vfprintf(stderr, format, args);
  va_end(args);
  std::fputc('\n', stderr);
  std::abort();
}

}  // namespace fuzz
