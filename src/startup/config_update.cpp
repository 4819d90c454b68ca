#include "startup/config_update.h"

#include "maintenance/scheduled_tasks.h"
#include "platform/files.h"
#include "system/files.h"
#include "system/paths.h"
#include "system/registry.h"
#include "system/settings.h"
#include "system/text.h"
#include "system/trace.h"
#include "transfer/config_set.h"
#include "transfer/download.h"

namespace {

constexpr const char* maintenanceKey = "Software\\Talvenmoor\\Maintenance";

void StoreMaintenanceTime(const std::string& time) {
    WriteSetting("General", "LastMaintenance", time);
    fWriteValue("HKLM", maintenanceKey, "LastRun", 'S', time);
}

// The time that a new settings file must not change. It goes to the registry first: should the line be cut between the
// new file and its own entry, it is still there.
std::string HoldMaintenanceTime() {
    std::string time = ReadRegistryText("HKLM", maintenanceKey, "LastRun");
    if (!time.empty()) return time;
    time = Setting("General", "LastMaintenance");
    if (!time.empty()) fWriteValue("HKLM", maintenanceKey, "LastRun", 'S', time);
    return time;
}

// Older logos of another format must not win over the new one.
void RemoveLogosIfReplaced(const std::string& folder) {
    constexpr const char* extensions[] = {"bmp", "gif", "png", "jpg"};
    bool replaced = false;
    for (const char* extension : extensions)
        replaced = replaced || DoesFileExist(folder + "\\supportlogo." + extension);
    if (!replaced) return;
    for (const char* extension : {"jpg", "gif", "png", "bmp"})
        pc::RemoveFile(GetAppPath() + "supportlogo." + extension);
}

void FetchAndApply(const std::string& address) {
    std::string folder = GetAppPath() + "UpdateTemp", archive = GetAppPath() + "Config.zip";
    // What an earlier set left behind is no part of this one.
    clsFSO().KillDir(folder, false);
    if (!DoesDirExist(folder)) MakeFolderPath(folder);
    pc::RemoveFile(archive);
    if (!DownloadFile(address, archive, "", false, false)) return;
    bool sound = UnpackAndCheck(archive);
    if (!sound || !DoesFileExist(folder + "\\Brevanta.ini")) {
        DebugOutput("ConfigUpdate: the set is not sound or has no settings file: " + address);
        pc::RemoveFile(archive);
        return;
    }
    RemoveLogosIfReplaced(folder);
    MoveFileQuiet(folder + "\\*.*", StripTrailingCharacters(GetAppPath(), '\\'));
    pc::RemoveFile(archive);
    SetUpdateTasks();
    SetMaintCheck();
    SetRPSchedules();
}

}  // namespace

void PullCloudConfig() {
    std::string time = HoldMaintenanceTime();
    FetchCloudSet();
    StoreMaintenanceTime(time);
    SetUpdateTasks();
    SetMaintCheck();
    SetRPSchedules();
}

void ConfigUpdate() {
    if (!Setting("Nimbra", "UserName").empty()) {
        PullCloudConfig();
        return;
    }
    std::string time = HoldMaintenanceTime();
    std::string address = Setting("ScheduledTasks", "UpdateConfigLoc");
    if (!address.empty()) FetchAndApply(address);
    StoreMaintenanceTime(time);
}
