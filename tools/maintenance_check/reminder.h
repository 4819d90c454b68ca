// When the reminder of the maintenance is due.
#pragma once

#include <optional>
#include <string>

#include "platform/machine.h"

// Whole days from a date text (the system's short form, or as the settings store it) to now; negative when the clock
// was put back. Nothing when the text holds no date.
std::optional<int> DaysSince(const std::string& dateText, const pc::ClockTime& now, int dateOrder);
// Days since the last maintenance by the facts it leaves, or nothing when none is known.
std::optional<int> DaysSinceMaintenance();
// Whether more days have passed than the settings allow; never known counts as due.
bool IsReminderDue();
