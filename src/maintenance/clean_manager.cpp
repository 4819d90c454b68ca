#include "maintenance/maintenance_run.h"
#include "system/processes.h"
#include "system/registry.h"
#include "system/text.h"

// Disk Cleanup keeps stored runs by number: a handler takes part in run 44 when its "StateFlags0044" is 2.
static const char volumeCaches[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\VolumeCaches";
static const char stateFlags[] = "StateFlags0044";

// Parts of handler names that are never selected.
static bool IsExcludedHandler(const std::string& name) {
    const std::string lower = LowerCase(name);
    for (const char* part : {"office", "compress", "memory dump", "recycle bin"})
        if (lower.find(part) != std::string::npos) return true;
    return false;
}

void RunCleanMgr() {
    std::string list;
    fEnumKey("HKLM", volumeCaches, list);
    for (const std::string& name : SplitList(list)) {
        const std::string key = std::string(volumeCaches) + "\\" + name;
        bool notFound = false;
        fDeleteValue("HKLM", key, stateFlags, notFound);
        if (!IsExcludedHandler(name)) fWriteValue("HKLM", key, stateFlags, 'D', 2);
    }
    ShellX("cleanmgr.exe", "/sagerun:44", true, 1);
}
