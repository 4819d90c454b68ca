// Dates as the settings and the registry hold them: the system's short text form.
#pragma once

#include <optional>
#include <string>

// A day; month and day count from 1.
struct CalendarDate {
    int year = 0, month = 0, day = 0;
};

// The date in a text such as "11/22/2026 10:15:30 AM", in the order of the system's short dates (pc::ShortDateOrder).
// A month above 12 is taken for a day. Nothing when the text holds no date.
std::optional<CalendarDate> ParseDate(const std::string& text);
// A count of days, for differences.
int DayNumber(const CalendarDate& date);
