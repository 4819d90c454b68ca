// Counters of uses in "Usage.ini".
#pragma once

#include <string>

// Adds one to the counter; it stays at 32767 for ever.
void AddUsage(const std::string& name);
