#include "reminder.h"

#include "platform/machine.h"
#include "system/dates.h"
#include "system/registry.h"
#include "system/settings.h"

std::optional<int> DaysSinceMaintenance() {
    std::string last = ReadRegistryText("HKLM", "Software\\Talvenmoor\\Maintenance", "LastRun");
    if (last.empty()) last = Setting("General", "LastMaintenance");
    auto date = ParseDate(last);
    if (!date) return {};
    pc::ClockTime now = pc::LocalNow();
    return DayNumber({now.year, now.month, now.day}) - DayNumber(*date);
}

bool IsReminderDue() {
    auto limit = ToInt16(Setting("Maint", "MaintReminderDays"));
    auto days = DaysSinceMaintenance();
    return limit && (!days || *days > *limit);
}
