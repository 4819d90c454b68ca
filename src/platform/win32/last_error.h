// What pc::LastError() tells of.
#pragma once

#include <windows.h>

#include <cstdint>

namespace pc {

// Notes the code; always false.
bool Fail(uint32_t code);
// Notes the platform's code when the call failed; the result is the call's.
inline bool Done(BOOL succeeded) { return succeeded != FALSE || Fail(GetLastError()); }

}  // namespace pc
