#include "startup/config_update.h"

#include "maintenance/scheduled_tasks.h"
#include "platform/files.h"
#include "system/files.h"
#include "system/paths.h"
#include "system/registry.h"
#include "system/settings.h"
#include "system/text.h"
#include "system/trace.h"
#include "transfer/archives.h"
#include "transfer/cloud.h"
#include "transfer/download.h"
#include "transfer/zip_reader.h"

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

// A settings file has a section line and, unless it is UTF-16, no NUL.
bool IsSettingsText(const std::string& path) {
    auto bytes = pc::ReadWholeFile(path, 16u << 20);
    if (!bytes) return false;
    if (StartsWith(*bytes, "\xFF\xFE")) return true;
    if (bytes->find('\0') != std::string::npos) return false;
    size_t bracket = bytes->find('[');
    while (bracket != std::string::npos && bracket > 0 && (*bytes)[bracket - 1] != '\n' && bracket != 3)
        bracket = bytes->find('[', bracket + 1);
    return bracket != std::string::npos && bytes->find(']', bracket) != std::string::npos;
}

// Whether every entry is sound and the settings file in it, if any, is one. The archive is unpacked into "UpdateTemp",
// where it stays.
bool UnpackAndCheck(const std::string& archive) {
    ZipExtractionClass zip;
    std::vector<std::string> names;
    bool sound = zip.OpenZip(archive) && zip.Test(names);
    zip.CloseZip();
    std::string folder = GetAppPath() + "UpdateTemp";
    if (!sound || !UnzipFile(archive, folder, true)) return false;
    std::string settings = folder + "\\Brevanta.ini";
    return !DoesFileExist(settings) || IsSettingsText(settings);
}

// Older logos of another format must not win over the new one.
void RemoveLogosIfReplaced(const std::string& folder) {
    constexpr const char* extensions[] = {"bmp", "gif", "png", "jpg"};
    bool replaced = false;
    for (const char* extension : extensions)
        replaced = replaced || DoesFileExist(folder + "\\supportlogo." + extension);
    if (!replaced) return;
    for (const char* extension : {"jpg", "gif", "png", "bmp"}) {
        std::string logo = GetAppPath() + "supportlogo." + extension;
        if (DoesFileExist(logo)) pc::RemoveFile(logo);
    }
}

void FetchAndApply(const std::string& address) {
    std::string folder = GetAppPath() + "UpdateTemp", archive = GetAppPath() + "Config.zip";
    // What an earlier set left behind is no part of this one.
    clsFSO().KillDir(folder, false);
    if (!DoesDirExist(folder)) MakeFolderPath(folder);
    if (DoesFileExist(archive)) pc::RemoveFile(archive);
    if (!DownloadFile(address, archive, "", false, false)) return;
    bool sound = UnpackAndCheck(archive);
    if (!sound || !DoesFileExist(folder + "\\Brevanta.ini")) {
        DebugOutput("ConfigUpdate: the set is not sound or has no settings file", address);
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
    ShowFormModal(frmCloudDL);
    std::string archive = GetAppPath() + "BrevantaConfig.zip";
    if (DoesFileExist(archive)) {
        std::string folder = GetAppPath() + "UpdateTemp";
        clsFSO files;
        files.KillDir(folder, false);
        if (UnpackAndCheck(archive))
            UnzipFile(archive, GetAppPath(), true);
        else
            DebugOutput("PullCloudConfig: the set is not sound");
        files.KillDir(folder, false);
        pc::RemoveFile(archive);
    }
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
