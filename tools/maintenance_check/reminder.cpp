#include "reminder.h"

#include "system/registry.h"
#include "system/settings.h"

namespace {

// Days of the proleptic Gregorian calendar since 0000-03-01 (the usual count from March on).
int DayNumber(int year, int month, int day) {
    int y = month <= 2 ? year - 1 : year, m = (month + 9) % 12;
    return 365 * y + y / 4 - y / 100 + y / 400 + (153 * m + 2) / 5 + day - 1;
}

}  // namespace

std::optional<int> DaysSince(const std::string& dateText, const pc::ClockTime& now, int dateOrder) {
    int parts[3] = {}, count = 0;
    bool inNumber = false;
    for (char c : dateText) {
        if (c >= '0' && c <= '9') {
            if (!inNumber && ++count > 3) break;
            inNumber = true;
            int& part = parts[count - 1];
            part = part > 9999 ? part : part * 10 + (c - '0');
        } else {
            inNumber = false;
            if (count == 3 || (c == ' ' && count > 0)) break;
        }
    }
    if (count < 3) return {};
    bool yearFirst = dateOrder == 2 || parts[0] > 31;
    int year = yearFirst ? parts[0] : parts[2], month = yearFirst ? parts[1] : dateOrder == 1 ? parts[1] : parts[0],
        day = yearFirst ? parts[2] : dateOrder == 1 ? parts[0] : parts[1];
    // The settings may order day and month against the system's custom; a thirteenth month tells.
    if (month > 12 && day <= 12) std::swap(month, day);
    if (year < 100) year += 2000;
    if (month < 1 || month > 12 || day < 1 || day > 31) return {};
    return DayNumber(now.year, now.month, now.day) - DayNumber(year, month, day);
}

std::optional<int> DaysSinceMaintenance() {
    std::string last = ReadRegistryText("HKLM", "Software\\Talvenmoor\\Maintenance", "LastRun");
    if (last.empty()) last = Setting("General", "LastMaintenance");
    return DaysSince(last, pc::LocalNow(), pc::ShortDateOrder());
}

bool IsReminderDue() {
    auto limit = ToInt16(Setting("Maint", "MaintReminderDays"));
    auto days = DaysSinceMaintenance();
    return limit && (!days || *days > *limit);
}
