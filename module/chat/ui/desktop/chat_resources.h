#pragma once

namespace chat {

// Registers the module's images and style sheet. They live in the module's
// static library, whose resource objects a binary links only when something
// calls here; the shared module links them whole anyway. Safe to call often.
void InitChatResources();

}  // namespace chat
