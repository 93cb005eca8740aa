// What the fuzz targets share: a quiet process with a Qt application and
// host records made from fuzz bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "base/variant/variant.h"

class FuzzedDataProvider;

namespace fuzz {

// Once per process: user directories in a fresh temporary directory, logging
// kept off stderr, and a QApplication on the offscreen platform.
void InitProcess();

// A value of any type; maps take their keys mostly from the keys host
// records carry, so that random bytes reach the code that reads them.
Variant RandomValue(FuzzedDataProvider& in, int depth = 0);
// A host message record: a JSON object when the bytes are one (the seeds
// are), otherwise a map made by RandomValue with a `chat_type` of the
// known kinds and keys of random types.
Variant RecordFromBytes(uint8_t const* data, size_t size);

// The text items of a split (`item_type` 0 and 2 give their `item_content`,
// 1 its `item_emoji_text`) joined again.
std::string JoinItems(Variant const& items);

// Aborts with `what` and the values when they differ: a finding.
void CheckEqual(std::string const& what, std::string const& expected, std::string const& actual);

}  // namespace fuzz
