// Variant's JSON: any bytes parse or are refused; what parses prints, and the
// printed text parses back to an equal value and prints the same again.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include "base/variant/variant.h"
#include "finding.h"

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
  Variant value;
  if (!value.FromJsonStr(reinterpret_cast<char const*>(data), static_cast<std::ptrdiff_t>(size))) {
    // A refused text leaves the value as it was.
    if (!value.IsNull()) {
      fuzz::Finding("refused text changed the value");
    }
    return 0;
  }
  const std::string printed = value.ToJson();
  Variant again;
  if (!again.FromJsonStr(printed.data(), static_cast<std::ptrdiff_t>(printed.size()))) {
    fuzz::Finding("printed JSON does not parse: %s", printed.c_str());
  }
  if (!(again == value)) {
    fuzz::Finding("round trip changed the value: %s -> %s", printed.c_str(), again.ToJson().c_str());
  }
  const std::string reprinted = again.ToJson();
  if (reprinted != printed) {
    fuzz::Finding("printing is not stable:\n  %s\n  %s", printed.c_str(), reprinted.c_str());
  }
  // Copies share storage until written; a write never shows through a copy.
  Variant copy = value;
  if (copy.IsMap()) copy["fuzz"] = 1;
  if (copy.IsArray()) copy.Add(1);
  if (value.ToJson() != printed) {
    fuzz::Finding("writing a copy changed the original: %s", printed.c_str());
  }
  (void)value.ToString();
  return 0;
}
