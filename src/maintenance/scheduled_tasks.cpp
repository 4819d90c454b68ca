#include "maintenance/scheduled_tasks.h"

#include "system/operating_system.h"
#include "system/processes.h"
#include "system/registry.h"
#include "system/settings.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

void RunScheduler(const std::string& arguments) { ShellX("schtasks.exe", arguments, true, 0); }

// when is such as "WEEKLY /d MON /st 12:00:00". The quote that /tr opens is never closed; the scheduler's tool takes
// the rest of the line.
void CreateTask(const std::string& when, const std::string& name, const std::string& option) {
    RunScheduler("/create /ru system /sc " + when + (IsVistaOrLater() ? " /rl highest /f" : "") + " /tn \"" + name +
                 "\" /tr \"\\\"" + GetEXEPath() + "\\\" " + option);
}

}  // namespace

void DeleteTask(const std::string& name) { RunScheduler("/delete /f /tn \"" + name + "\""); }

std::string RestorePointTaskName(int index) {
    return Setting("Branding", "AppName") + " - System Restore Point " + NumberText(index);
}

void SetUpdateTasks() {
    DeleteTask(appUpdateTask);
    DeleteTask(configUpdateTask);
    if (Eq1(Setting("ScheduledTasks", "UpdateApp")))
        CreateTask("WEEKLY /d MON /st 12:00:00", appUpdateTask, "/updateonly");
    if (Eq1(Setting("ScheduledTasks", "UpdateConfig")))
        CreateTask("WEEKLY /d MON /st 12:15:00", configUpdateTask, "/updateconfig");
}

void SetRPSchedules() {
    for (int i = 0; i < 3; ++i) {
        std::string name = RestorePointTaskName(i), section = "CustomRP" + NumberText(i);
        DeleteTask(name);
        if (!Eq1(Setting(section, "Enable"))) continue;
        std::string frequency = Setting(section, "Freq"), time = Setting(section, "Time");
        std::string when = EqualNoCase(frequency, "daily") ? "DAILY" : "WEEKLY /d " + UpperCase(frequency);
        CreateTask(when + " /st " + time, name, "/rp" + NumberText(i));
    }
}

void SetMaintCheck() {
    if (!Eq1(Setting("Maint", "MaintCheckEnabled"))) {
        bool notFound = false;
        fDeleteValue("HKLM", runKey, maintCheckValue, notFound);
        return;
    }
    fWriteValue("HKLM", runKey, maintCheckValue, 'S', "\"" + GetAppPath() + "BrevantaMCStub.exe\"");
}
