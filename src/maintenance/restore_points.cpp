#include "maintenance/restore_points.h"

#include <algorithm>

#include "platform/wmi.h"
#include "system/operating_system.h"
#include "system/processes.h"
#include "system/registry.h"
#include "system/resources.h"
#include "system/settings.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

constexpr const char* restoreKey = "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\SystemRestore";
constexpr const char* serviceKey = "SYSTEM\\CurrentControlSet\\Services\\srservice";

int32_t MachineNumber(const char* key, const char* value, int32_t absent) {
    int32_t number = absent;
    return fReadValue("HKLM", key, value, 'D', absent, number) == 0 ? number : absent;
}

// Numbers of the platform's SystemRestore class: an application's installation, the begin of a change.
constexpr int32_t applicationInstall = 0, beginSystemChange = 100;
constexpr uint32_t queryMilliseconds = 10000;

// Highest number of the points there are; 0 for none.
int64_t NewestRestorePoint() {
    int64_t newest = 0;
    std::string error;
    pc::WmiQuery(
        "root\\default", "Select * from SystemRestore", {"SequenceNumber"}, queryMilliseconds,
        [&](const pc::WmiRow& row) {
            newest = std::max(newest, row[0].number);
            return true;
        },
        error);
    return newest;
}

std::string RestoreTool() { return GetAppPath() + "CreateSRP.exe"; }

}  // namespace

void CreateRestorePoint(const std::string& name) {
    int64_t before = NewestRestorePoint();
    int32_t returned = 0;
    std::string error;
    if (!pc::WmiCreateRestorePoint(name, applicationInstall, beginSystemChange, returned, error)) {
        DebugOutput("CreateRestorePoint: " + error);
        return;
    }
    DebugOutput("System Restore Point:  " + NumberText(returned));
    // The system makes at most one in 24 hours by default and answers success all the same.
    if (returned == 0 && NewestRestorePoint() == before)
        DebugOutput("System Restore Point:  the system answered success but made none");
}

void CreateScheduledRestorePoint(int index) {
    ExtractCreateSRP();
    ShellX(RestoreTool(), Setting("CustomRP" + NumberText(index), "Name"), false, 1);
}

void ExtractCreateSRP() { ExtractResource("createsrp", RestoreTool()); }

bool IsSystemRestoreEnabled() {
    if (IsVistaOrLater()) return MachineNumber(restoreKey, "RPSessionInterval", 1) == 1;
    constexpr int32_t startAutomatic = 2;
    return MachineNumber(serviceKey, "Start", startAutomatic) == startAutomatic &&
           MachineNumber(restoreKey, "DisableSR", 0) == 0;
}
