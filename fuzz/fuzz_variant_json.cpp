// Variant's JSON: any bytes parse or are refused; what parses prints, and the
// printed text parses back to an equal value and prints the same again.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "base/variant/variant.h"

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
  Variant value;
  if (!value.FromJsonStr(reinterpret_cast<char const*>(data), static_cast<std::ptrdiff_t>(size))) {
    // A refused text leaves the value as it was.
    if (!value.IsNull()) {
      std::fprintf(stderr, "refused text changed the value\n");
      std::abort();
    }
    return 0;
  }
  const std::string printed = value.ToJson();
  Variant again;
  if (!again.FromJsonStr(printed.data(), static_cast<std::ptrdiff_t>(printed.size()))) {
    std::fprintf(stderr, "printed JSON does not parse: %s\n", printed.c_str());
    std::abort();
  }
  if (!(again == value)) {
    std::fprintf(stderr, "round trip changed the value: %s -> %s\n", printed.c_str(), again.ToJson().c_str());
    std::abort();
  }
  const std::string reprinted = again.ToJson();
  if (reprinted != printed) {
    std::fprintf(stderr, "printing is not stable:\n  %s\n  %s\n", printed.c_str(), reprinted.c_str());
    std::abort();
  }
  // Copies share storage until written; a write never shows through a copy.
  Variant copy = value;
  if (copy.IsMap()) copy["fuzz"] = 1;
  if (copy.IsArray()) copy.Add(1);
  if (value.ToJson() != printed) {
    std::fprintf(stderr, "writing a copy changed the original: %s\n", printed.c_str());
    std::abort();
  }
  (void)value.ToString();
  return 0;
}
