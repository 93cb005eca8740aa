#pragma once

#include "base/variant/variant.h"

namespace chat {

// What the panel puts on the clipboard for the given message ids, in their
// order: for each known, unrecalled message its sender's nickname (tips have
// none), its text (a picture or file as its name or path), and "not sent"
// under a failed one.
Variant ClipboardEntries(Variant const& ids);

}  // namespace chat
