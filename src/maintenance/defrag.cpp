#include "maintenance/defrag.h"

#include "system/build_constants.h"
#include "system/paths.h"
#include "system/processes.h"
#include "system/registry.h"
#include "system/shortcuts.h"
#include "system/text.h"
#include "system/trace.h"
#include "transfer/download.h"

namespace {

struct RunKey {
    const char* root;
    const char* key;
};
#define RUN "Microsoft\\Windows\\CurrentVersion\\Run"
#define POLICIES "Software\\Microsoft\\Windows\\CurrentVersion\\Policies\\Explorer\\Run"
#define TERMINAL "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Terminal Server\\Install\\Software\\" RUN
constexpr RunKey runKeys[] = {
    {"HKLM", "SOFTWARE\\" RUN},
    {"HKLM", "SOFTWARE\\" RUN "Once"},
    {"HKLM", POLICIES},
    {"HKLM", TERMINAL},
    {"HKLM", TERMINAL "once"},
    {"HKLM", "SOFTWARE\\wow6432node\\" RUN},
    {"HKLM", "SOFTWARE\\wow6432node\\" RUN "Once"},
    {"HKCU", "SOFTWARE\\" RUN},
    {"HKCU", "SOFTWARE\\" RUN "Once"},
    {"HKCU", POLICIES},
    {"HKCU", TERMINAL},
    {"HKCU", TERMINAL "once"},
    {"HKU", ".DEFAULT\\SOFTWARE\\" RUN},
    {"HKU", ".DEFAULT\\SOFTWARE\\" RUN "Once"},
    {"HKU", ".DEFAULT\\" POLICIES},
    {"HKU", ".DEFAULT\\" TERMINAL},
    // Under this root there is nothing to find; the row is kept as the list has always had it.
    {"HKCU", ".DEFAULT\\" TERMINAL "once"},
};
#undef RUN
#undef POLICIES
#undef TERMINAL

std::string Tool(const char* name) { return GetAppPath() + "3rd Party Tools\\" + name; }

void FetchTool(const std::string& path, const char* remoteName) {
    if (!DoesFileExist(path))
        DownloadFile(std::string("http://") + build::toolsHost + remoteName, path, "", false, false);
}

void DefragFile(const char* label, const std::string& path) {
    DebugOutput(label, path);
    ShellX(Tool("contig.exe"), "-v " + path, true, 1);
}

}  // namespace

void DefragRunKey(const std::string& root, const std::string& key) {
    std::string list;
    fEnumValue2(root, key, list);
    for (const std::string& entry : SplitList(list)) {
        size_t equals = entry.find('=');
        if (equals == std::string::npos) continue;
        std::string path = StripCommandArguments(entry.substr(equals + 1));
        if (DoesFileExist(path)) DefragFile("Defrag file:  ", path);
    }
}

std::string ResolveLinkTarget(const std::string& shortcut) {
    cShellLinkA link;
    return link.GetLinkInfo(shortcut) ? link.ExeName : "";
}

void DefragFolder(const std::string& folder) {
    std::vector<std::string> files;
    FindFiles(folder, "*.*", files, true);
    for (const std::string& file : files) {
        if (EqualNoCase(StripPath(file), "desktop.ini")) continue;
        DefragFile("Defrag File:  ", EndsWithNoCase(file, ".lnk") ? ResolveLinkTarget(file) : file);
    }
}

void DefragStartupFiles(bool askUser) {
    FetchTool(Tool("contig.exe"), "/Contig.exe");
    // The tool shows its licence in a dialog unless it is marked as accepted.
    fWriteValue("HKCU", "Software\\Sysinternals\\C", "EulaAccepted", 'D', 1);
    for (const RunKey& row : runKeys) DefragRunKey(row.root, row.key);
    LoadProfileList(askUser);
    for (const std::string& profile : Target().profiles) {
        std::string name = LowerCase(StripPath(profile));
        if (name == "all users" || name == "default user") continue;
        for (const char* tail : {"\\AppData\\Roaming\\Microsoft\\Windows\\Start Menu\\Programs\\Startup",
                                 "\\Start Menu\\Programs\\Startup"})
            if (DoesDirExist(profile + tail)) DefragFolder(profile + tail);
    }
    DefragFolder(Target().sTargetDrive + "\\ProgramData\\Microsoft\\Windows\\Start Menu\\Programs\\Startup");
    DebugOutput("Completed Defrag.");
}

void DefragRegistryAndPageFile(bool) {
    std::string tool = Tool("pagedfrg.exe");
    FetchTool(tool, "/pagedfrg.exe");
    if (!DoesFileExist(tool)) return;
    fWriteValue("HKCU", "Software\\Sysinternals\\PageDefrag", "EulaAccepted", 'D', 1);
    ShellX(tool, "-o", false, 1);
}
