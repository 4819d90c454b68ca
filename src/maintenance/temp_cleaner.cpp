#include "maintenance/temp_cleaner.h"

#include <span>

#include "controls/status_window.h"
#include "maintenance/clean_guard.h"
#include "platform/machine.h"
#include "system/file_walk.h"
#include "system/files.h"
#include "system/operating_system.h"
#include "system/paths.h"
#include "system/processes.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

// A folder below a profile.
struct Folder {
    const char* tail;
    bool listed = false;  // a failure goes to the list of failures
    bool remade = false;  // made again where the system is older than Vista
};

// Something in each subfolder of a browser's store; every user of the browser has such a subfolder.
struct StoreItem {
    enum Kind { folder, file, pattern } kind;
    const char* tail;
};
struct Store {
    const char* folder;
    std::span<const StoreItem> items;
};

// One pass over all profiles.
struct Stage {
    bool CleanerFlags::*asked;  // null: in any case
    const char* status;         // first line ahead of the profiles; may be null
    const char* profileStatus;  // first line at each profile
    const char* label;          // what stands before the profile's name on the second line
    std::span<const Folder> folders;
    std::span<const Store> stores;
};

#define LOCAL_SETTINGS "\\local settings"
#define LOCAL "\\AppData\\Local"
#define CHROME_XP "\\Local Settings\\Application Data\\Google\\Chrome\\User Data"
#define CHROME LOCAL "\\Google\\Chrome\\User Data"
#define FIREFOX_XP "\\Application Data\\Mozilla\\Firefox\\Profiles"
#define FIREFOX "\\AppData\\Roaming\\Mozilla\\Firefox\\Profiles"

// Children before their parents. Paths of all systems are tried on every system.
constexpr Folder internetFolders[] = {
    {LOCAL_SETTINGS "\\temporary internet files\\content.ie5", true},
    {LOCAL_SETTINGS "\\temporary internet files", true},
    {LOCAL "\\Microsoft\\Windows\\Temporary Internet Files\\content.ie5", true},
    {LOCAL "\\Microsoft\\Windows\\Temporary Internet Files", true},
    {LOCAL_SETTINGS "\\temp\\temporary internet files\\content.ie5", true},
    {LOCAL_SETTINGS "\\temp\\temporary internet files", true},
};
constexpr StoreItem cacheItems[] = {{StoreItem::folder, "\\Cache"}};
constexpr Store cacheStores[] = {
    {CHROME_XP, cacheItems},
    {CHROME, cacheItems},
    {"\\Local Settings\\Application Data\\Mozilla\\Firefox\\Profiles", cacheItems},
    {LOCAL "\\Mozilla\\Firefox\\Profiles", cacheItems},
};

constexpr Folder tempFolders[] = {
    {LOCAL_SETTINGS "\\temp", true},
    {LOCAL "\\Temp"},
    {LOCAL "\\Microsoft\\Windows\\Burn\\Temporary Burn Folder"},
    {"\\Local Settings\\Application Data\\Microsoft\\CD Burning", false, true},
};

constexpr Folder cookieFolders[] = {{"\\AppData\\Roaming\\Microsoft\\Windows\\Cookies"}, {"\\cookies"}};
constexpr StoreItem chromeCookies[] = {
    {StoreItem::file, "\\Cookies"},
    {StoreItem::file, "\\cookies-journal"},
    {StoreItem::file, "\\Extension Cookies"},
    {StoreItem::file, "\\Extension Cookies-journal"},
};
constexpr StoreItem firefoxCookies[] = {{StoreItem::file, "\\cookies.sqlite"}};
constexpr Store cookieStores[] = {
    {CHROME_XP, chromeCookies},
    {CHROME, chromeCookies},
    {FIREFOX_XP, firefoxCookies},
    {FIREFOX, firefoxCookies},
};

constexpr Folder historyFolders[] = {{LOCAL "\\Microsoft\\Windows\\History"}, {LOCAL_SETTINGS "\\history"}};
constexpr StoreItem chromeHistory[] = {
    {StoreItem::file, "\\archived history"},       {StoreItem::file, "\\archived history-journal"},
    {StoreItem::file, "\\history provider cache"}, {StoreItem::file, "\\history"},
    {StoreItem::file, "\\history-journal"},        {StoreItem::pattern, "history*.*"},
};
constexpr StoreItem firefoxHistory[] = {
    {StoreItem::file, "\\places.sqlite"},
    {StoreItem::file, "\\search.sqlite"},
    {StoreItem::file, "\\downloads.sqlite"},
};
constexpr Store historyStores[] = {
    {CHROME_XP, chromeHistory},
    {CHROME, chromeHistory},
    {FIREFOX_XP, firefoxHistory},
    {FIREFOX, firefoxHistory},
};

const Stage stages[] = {
    {&CleanerFlags::bDelTempInternet, "Deleting Temporary Internet Files...", "Deleting Temp Internet Files... ",
     "Internet - ", internetFolders, cacheStores},
    {nullptr, nullptr, "Deleting Temp Files... ", "", tempFolders, {}},
    {&CleanerFlags::bDelCookies, "Deleting Cookies...", "Deleting Cookies... ", "Cookies - ", cookieFolders,
     cookieStores},
    {&CleanerFlags::bDelHistory, "Deleting History...", "Deleting History... ", "Internet History - ", historyFolders,
     historyStores},
};

// Folders of the account that services run under, below the system folder.
struct SystemFolder {
    const char* tail;
    const char* secondLine;
    bool CleanerFlags::*asked;
};
const SystemFolder systemFolders[] = {
    {"\\config\\systemprofile\\local settings\\temp", "SYSTEM PROFILE - Temp Files", nullptr},
    {"\\config\\systemprofile\\local settings\\temporary internet files", "SYSTEM PROFILE - Internet Temp", nullptr},
    {"\\config\\systemprofile\\cookies", "SYSTEM PROFILE - Cookies", &CleanerFlags::bDelCookies},
    {"\\config\\systemprofile\\local settings\\history", "SYSTEM PROFILE - History", &CleanerFlags::bDelHistory},
};

class Cleaner {
public:
    Cleaner(const CleanerFlags& cleanerFlags, CleanerStatus& cleanerStatus)
        : flags(cleanerFlags), status(cleanerStatus), userProf(GetUserProf()) {}

    void RunStage(const Stage& stage) {
        if (!Asked(stage.asked)) return;
        if (stage.status) status.ShowFirst(stage.status);
        const std::vector<std::string> profiles = Target().profiles;
        for (const std::string& profile : profiles) {
            if (!IsRealUserProfile(profile) || !IsProfileFolder(profile, userProf)) continue;
            status.Show(stage.profileStatus, std::string("(") + stage.label + StripPath(profile) + ")");
            for (const Folder& folder : stage.folders) CleanFolder(profile, folder);
            for (const Store& store : stage.stores) CleanStore(profile, store);
        }
    }

    void CleanSystem() {
        const std::string windows = Target().sWinDir, system = Target().sSysDir;
        status.ShowFirst("Deleting Temp Files...");
        if (DoesDirExist(windows + "\\temp")) {
            status.Show("Deleting Windows Temp Files...", "(" + windows + "\\Temp)");
            if (!Remove(windows, "\\temp")) AddFailure(windows + "\\temp");
        }
        status.Show("Deleting System Profile Temp Files...", "(System Profile)");
        for (const SystemFolder& folder : systemFolders) {
            if (!Asked(folder.asked) || !DoesDirExist(system + folder.tail)) continue;
            status.ShowSecond(folder.secondLine);
            Remove(system, folder.tail);
        }
        status.ShowSecond("(Windows Update)");
        ClearWindowsUpdateCache(status);
        status.ShowFirst("Idle...");
    }

private:
    bool Asked(bool CleanerFlags::*flag) const { return !flag || flags.*flag; }

    // True also when there is nothing to remove or the way there leads through a link.
    bool Remove(const std::string& root, const std::string& tail) {
        return !IsOwnPath(root, tail) || KillDirAndLog(root + tail, false);
    }

    void AddFailure(const std::string& folder) {
        if (status.failures) status.failures->AddItem(folder);
    }

    void CleanFolder(const std::string& profile, const Folder& folder) {
        const std::string path = profile + folder.tail;
        const bool wasThere = IsOwnPath(profile, folder.tail) && DoesDirExist(path);
        if (!Remove(profile, folder.tail) && folder.listed && !IsServiceProfile(profile)) AddFailure(path);
        if (folder.remade && wasThere && !IsVistaOrLater()) MakeFolderPath(path);
    }

    bool IsServiceProfile(const std::string& profile) const {
        return EqualNoCase(profile, userProf + "\\localservice") || EqualNoCase(profile, userProf + "\\networkservice");
    }

    void CleanStore(const std::string& profile, const Store& store) {
        if (!IsOwnPath(profile, store.folder)) return;
        // Entry by entry: a list of paths parted by ";" would break at a name that holds one.
        for (const pc::FileInfo& user : ListEntries(profile + store.folder)) {
            if (!user.IsFolder()) continue;
            for (const StoreItem& item : store.items) CleanStoreItem(profile, store.folder + ("\\" + user.name), item);
        }
    }

    void CleanStoreItem(const std::string& profile, const std::string& tail, const StoreItem& item) {
        switch (item.kind) {
            case StoreItem::folder: Remove(profile, tail + item.tail); break;
            case StoreItem::file: RemoveFile(profile, tail + item.tail); break;
            case StoreItem::pattern:
                std::vector<std::string> found;
                FindFiles(profile + tail, item.tail, found, false);
                for (const std::string& file : found) RemoveFile(profile, file.substr(profile.size()));
                break;
        }
    }

    void RemoveFile(const std::string& profile, const std::string& tail) {
        if (IsOwnPath(profile, tail) && DoesFileExist(profile + tail)) fso.KillFile(profile + tail);
    }

    const CleanerFlags& flags;
    CleanerStatus& status;
    const std::string userProf;
    clsFSO fso;
};

}  // namespace

void CleanerStatus::Show(const std::string& newFirst, const std::string& newSecond) {
    first = newFirst;
    second = newSecond;
    if (firstLine) firstLine->SetText(first);
    if (secondLine) secondLine->SetText(second);
    ShowStatusWindow(first, second);
}

bool IsRealUserProfile(const std::string& profile) {
    if (profile.empty()) return false;
    const std::string name = LowerCase(StripPath(profile));
    return name != "default user" && name != "default" && name != "all users" && name != "public";
}

bool KillDirAndLog(const std::string& folder, bool recreate) {
    if (!DoesDirExist(folder)) return true;
    const bool removed = clsFSO().KillDir(folder, recreate);
    DebugOutput((removed ? "    DIR DELETED:  " : "    DIR DELETION ERROR:  ") + folder);
    return removed;
}

void SetCleanTarget(const std::string& drive) {
    Target().sTargetDrive = drive;
    Target().sWinDir = GetWinDir();
    Target().sSysDir = GetSysDir();
    LoadProfileList();
}

void CleanTempFiles(const CleanerFlags& flags, CleanerStatus status) {
    DebugOutput("Starting temp file deletion on " + UpperCase(Target().sTargetDrive));
    DebugOutput("\tTemp Internet Files=" + TraceValue(flags.bDelTempInternet).Text() + " Cookies=" +
                TraceValue(flags.bDelCookies).Text() + " History=" + TraceValue(flags.bDelHistory).Text());
    SetCleanTarget(pc::Environment("systemdrive"));
    status.ShowFirst("Deleting Temp Files...");
    Cleaner cleaner(flags, status);
    for (const Stage& stage : stages) cleaner.RunStage(stage);
    if (flags.bDelTemps) cleaner.CleanSystem();
    UnloadStatusWindow();
    DebugOutput("Completed temp file deletion on " + UpperCase(Target().sTargetDrive));
}

void ClearWindowsUpdateCache(CleanerStatus& status) {
    status.ShowFirst("Stopping Services...");
    RunAndWait("cmd /c net stop wuauserv /y", 0);
    RunAndWait("cmd /c net stop bits /y", 0);
    status.Show("Deleting files...", "Deleting Files...");
    const std::string windows = GetWinDir(), store = "\\SoftwareDistribution\\Download";
    if (IsOwnPath(windows, store)) clsFSO().KillDir(windows + store, false);
    status.ShowFirst("Starting Services...");
    RunAndWait("net start bits", 0);
    RunAndWait("net start wuauserv", 0);
    status.ShowFirst("Idle...");
}
