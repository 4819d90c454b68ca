// When the reminder of the maintenance is due.
#pragma once

#include <optional>

// Days since the last maintenance by the facts it leaves; negative when the clock was put back, nothing when none is
// known.
std::optional<int> DaysSinceMaintenance();
// Whether more days have passed than the settings allow; never known counts as due.
bool IsReminderDue();
