#include "system/dates.h"

#include <utility>

#include "platform/machine.h"

std::optional<CalendarDate> ParseDate(const std::string& text) {
    int parts[3] = {}, count = 0;
    bool inNumber = false;
    for (char c : text) {
        bool digit = c >= '0' && c <= '9';
        if (!digit && inNumber && count == 3) break;
        if (digit && !inNumber) ++count;
        if (digit) parts[count - 1] = parts[count - 1] > 9999 ? 99999 : parts[count - 1] * 10 + (c - '0');
        inNumber = digit;
    }
    if (count < 3) return {};
    int order = pc::ShortDateOrder();
    // A number above 31 is the year, also where the text comes from a system of another order.
    bool yearFirst = parts[0] > 31 || (order == 2 && parts[2] <= 31);
    CalendarDate date = yearFirst    ? CalendarDate{parts[0], parts[1], parts[2]}
                        : order == 1 ? CalendarDate{parts[2], parts[1], parts[0]}
                                     : CalendarDate{parts[2], parts[0], parts[1]};
    if (date.month > 12 && date.day <= 12) std::swap(date.month, date.day);
    // Two digits mean this or the last century, as the system's own reading has it.
    if (date.year < 100) date.year += date.year < 30 ? 2000 : 1900;
    if (date.month < 1 || date.month > 12 || date.day < 1 || date.day > 31 || date.year > 9999) return {};
    return date;
}

// Years begin in March, so that the leap day is the last one; 153 days make five months from there on.
int DayNumber(const CalendarDate& date) {
    int year = date.month <= 2 ? date.year - 1 : date.year, month = (date.month + 9) % 12;
    return 365 * year + year / 4 - year / 100 + year / 400 + (153 * month + 2) / 5 + date.day - 1;
}
