#include "maintenance/restore_points.h"

#include "system/operating_system.h"
#include "system/registry.h"

namespace {

constexpr const char* restoreKey = "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\SystemRestore";
constexpr const char* serviceKey = "SYSTEM\\CurrentControlSet\\Services\\srservice";

int32_t MachineNumber(const char* key, const char* value, int32_t absent) {
    int32_t number = absent;
    return fReadValue("HKLM", key, value, 'D', absent, number) == 0 ? number : absent;
}

}  // namespace

bool IsSystemRestoreEnabled() {
    if (IsVistaOrLater()) return MachineNumber(restoreKey, "RPSessionInterval", 1) == 1;
    constexpr int32_t startAutomatic = 2;
    return MachineNumber(serviceKey, "Start", startAutomatic) == startAutomatic &&
           MachineNumber(restoreKey, "DisableSR", 0) == 0;
}
