// How window messages are handled, for the form host.
#pragma once

#include <windows.h>

namespace pc {

// Set by the form host: true when it has used the message up (keys of a dialog). Null passes all.
extern bool (*dialogFilter)(MSG* message);

// Filters, translates and dispatches one message.
void HandleMessage(MSG& message);

}  // namespace pc
