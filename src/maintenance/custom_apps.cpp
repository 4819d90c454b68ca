#include "maintenance/custom_apps.h"

#include "platform/files.h"
#include "platform/machine.h"
#include "repair/internet.h"
#include "system/build_constants.h"
#include "system/files.h"
#include "system/language.h"
#include "system/macros.h"
#include "system/operating_system.h"
#include "system/paths.h"
#include "system/processes.h"
#include "system/program_state.h"
#include "system/registry.h"
#include "system/settings.h"
#include "system/text.h"
#include "system/trace.h"
#include "transfer/archives.h"
#include "transfer/download.h"
#include "transfer/zip_format.h"

namespace {

// Names that mark a path as one of the system's; the third from the end catches the "(x86)" form as well.
constexpr const char* knownVariables[] = {
    "%windir%",          "%systemroot%",        "%systemdrive%",       "%homedrive%",
    "%programfiles%",    "%programfiles(x86)%", "%commonprogramfiles", "%userprofile%",
    "%allusersprofile%", "%appdata%",           "%programdata%",       "%localappdata%",
};

std::string ToolsFolder() { return GetAppPath() + "3rd Party Tools\\"; }

// One app as its file describes it for this machine.
struct App {
    explicit App(const std::string& name);
    bool Flag(const char* key) const { return Eq1(ReadIni(file, "Config", key)); }
    // The 64-bit key on a 64-bit system, else or when empty the plain one.
    std::string Choose(const char* key, const char* key64) const;

    std::string file, program, parameters, url, downloadName;
};

std::string App::Choose(const char* key, const char* key64) const {
    std::string value = IsOS64Bit() ? ReadIni(file, "Config", key64) : "";
    return value.empty() ? ReadIni(file, "Config", key) : value;
}

App::App(const std::string& name) : file(AppFile(name)) {
    program = Choose("App", "App64");
    parameters = ExpandAppVars(ReadIni(file, "Config", "AppParms"));
    url = Choose("AppURL", "AppURL64");
    downloadName = Choose("AppDLName", "AppDLName64");
}

bool HoldsKnownVariable(const std::string& path) {
    std::string lower = LowerCase(path);
    for (const char* variable : knownVariables)
        if (lower.find(variable) != std::string::npos) return true;
    return false;
}

struct FinalPath {
    std::string path;
    bool runAtOnce = false;
};

FinalPath ResolvePath(const std::string& value) {
    if (value.find('%') != std::string::npos) {
        std::string expanded = ExpandAppVars(value);
        if (DoesFileExist(expanded)) return {expanded, HoldsKnownVariable(value)};
        return {ToolsFolder() + expanded};
    }
    return {StartsWith(value, "\\\\") ? value : ToolsFolder() + value};
}

// A server's error page or a log-in page in the place of a program.
bool IsPageForProgram(const std::string& path) {
    if (!EndsWithNoCase(path, ".exe")) return false;
    char head[2] = {};
    pc::File file;
    return !file.Open(path, pc::FileMode::read) || file.Read(head, sizeof head) != sizeof head || head[0] != 'M' ||
           head[1] != 'Z';
}

// Unpacks beside the folder and takes its place only with the program in it: the folder holds the copy that works.
bool ReplaceFolder(const std::string& archive, const std::string& folder, const std::string& finalPath) {
    std::string fresh = folder + ".new";
    clsFSO files;
    files.KillDir(fresh, false);
    UnzipFile(archive, fresh, false);
    pc::RemoveFile(archive);
    bool inside = LowerCase(finalPath).starts_with(LowerCase(folder) + "\\");
    if (DoesFileExist(inside ? fresh + finalPath.substr(folder.size()) : finalPath)) {
        files.KillDir(folder, false);
        // What is in use stays, and the rest moves around it.
        if (!pc::MovePath(fresh, folder, false)) MoveFileQuiet(fresh + "\\*.*", folder);
    }
    files.KillDir(fresh, false);
    return DoesFileExist(finalPath);
}

// True when the program is at its final path afterwards, or a download that is no archive came.
bool FetchApp(const App& app, const std::string& finalPath) {
    if (app.url.empty() || (!State().bInternetPresent && !IsInternetPresent())) return false;
    // The folder of the archive's name is emptied, so both names must stay below the tools folder; less its ending
    // "...zip" would be the folder above.
    auto name = zip::SafePath(app.downloadName);
    if (!name) return false;
    auto folderName = zip::SafePath(name->substr(0, name->size() < 4 ? 0 : name->size() - 4));
    bool isArchive = EndsWithNoCase(*name, "zip");
    if (isArchive && !folderName) return false;
    std::string archive = ToolsFolder() + *name, folder = ToolsFolder() + folderName.value_or("");
    pc::RemoveFile(archive);
    if (!DownloadFile(app.url, archive, "Receiving:  " + StripPath(archive), false, true)) return false;
    if (isArchive) return ReplaceFolder(archive, folder, finalPath);
    return !IsPageForProgram(archive);
}

// Makes sure of a program to run; the copy from before a failed attempt comes back. False: nothing to run.
bool ProvideApp(const App& app, const std::string& finalPath) {
    std::string kept = finalPath + ".old";
    bool always = app.Flag("AlwaysAttemptDownload");
    if (always && DoesFileExist(finalPath)) {
        pc::RemoveFile(kept);
        pc::MovePath(finalPath, kept, false);
    }
    if (!always && DoesFileExist(finalPath)) return true;
    if (FetchApp(app, finalPath)) return true;
    if (!always || !DoesFileExist(kept)) return false;
    // What half an attempt left must not stand in the way of the copy that works.
    pc::RemoveFile(finalPath);
    MakeFolderPath(StripNameFromPath(finalPath));
    return pc::MovePath(kept, finalPath, false);
}

int32_t RunInBatch(const App& app, const std::string& finalPath, bool asSystem) {
    int32_t exitCode = 0;
    std::string batch = StripEndOfString(finalPath, ".") + ".cmd";
    SaveTextToFile(batch, "@echo off&pushd \"%~dp0\"", true);
    SaveTextToFile(batch, "start \"\" /wait \"" + StripPath(finalPath) + "\" " + app.parameters, false);
    ShellX(batch, "", true, 0, &exitCode, asSystem);
    pc::RemoveFile(batch);
    return exitCode;
}

int32_t StartApp(const App& app, const std::string& finalPath) {
    int32_t exitCode = 0;
    bool asSystem = app.Flag("RunWithSystemAccess");
    if (EndsWithNoCase(finalPath, "msi"))
        ShellX(pc::Environment("systemroot") + "\\system32\\msiexec.exe", "/i \"" + finalPath + "\"", true, 1,
               &exitCode);
    else if (app.Flag("RunInCMD"))
        exitCode = RunInBatch(app, finalPath, asSystem);
    else
        ShellX(finalPath, app.parameters, true, 1, &exitCode, asSystem);
    return exitCode;
}

// The two tools that earlier versions had as fixed options.
struct FormerTool {
    const char* key;
    const char* app;
    const char* app64;
    const char* parameters;
    const char* urlPath;
};
constexpr FormerTool formerTools[] = {
    {"CCleaner", "CCleaner\\CCleaner.exe", "CCleaner\\CCleaner64.exe", "/auto",
     "/ccleaner/download/portable/downloadfile"},
    {"Defraggler", "Defraggler\\Df.exe", "Defraggler\\Df64.exe", "%systemdrive% ",
     "/defraggler/download/portable/downloadfile"},
};

void AppendToOrder(const std::string& name) {
    WriteIni(SortOrderFile(), "SortOrder", "SortOrder",
             ReadIni(SortOrderFile(), "SortOrder", "SortOrder") + name + "|");
}

void ConvertFormerTool(const FormerTool& tool) {
    if (!Eq1(Setting("Maint", tool.key))) return;
    std::string parameters = tool.parameters;
    if (EndsWith(parameters, " ")) parameters += Setting("Maint", "DefragglerParms");
    const std::pair<const char*, std::string> values[] = {
        {"App", tool.app},
        {"App64", tool.app64},
        {"AppParms", parameters},
        {"AppURL64", ""},
        {"AppDLName64", ""},
        {"AppURL", std::string("http://") + build::appsHost + tool.urlPath},
        {"AppDLName", std::string(tool.key) + ".zip"},
        {"AlwaysAttemptDownload", "0"},
        {"32", "1"},
        {"64", "1"},
        {"XP", "1"},
        {"Vista", "1"},
        {"7", "1"},
        {"8", "1"},
    };
    for (const auto& [key, value] : values) WriteIni(AppFile(tool.key), "Config", key, value);
    AppendToOrder(tool.key);
}

}  // namespace

std::string AppFile(const std::string& name) { return GetAppPath() + name + ".cfg"; }
std::string SortOrderFile() { return GetAppPath() + "SortOrder.cfg"; }

std::string CleanAppName(const std::string& name) {
    return ReplaceAll(ReplaceAll(ReplaceAll(name, "\\", "-"), "/", "-"), "&", "-");
}

std::string ExpandAppVars(const std::string& text) { return ExpandEnvVars(text); }

std::vector<std::string> ReadSortOrder() {
    auto bytes = pc::ReadWholeFile(SortOrderFile(), 1u << 20);
    std::string order;
    for (std::string line : Split(ReplaceAll(bytes ? pc::FromAnsi(*bytes) : "", "\r", ""), '\n'))
        if (!line.empty() && line[0] != '[') order = Strip(line, "SortOrder=");
    std::vector<std::string> names;
    for (std::string& name : Split(order, '|'))
        if (!name.empty()) names.push_back(std::move(name));
    return names;
}

void RunCustomMaintApps(Form& form) {
    std::string running = LanguageText("StatusBarText", "Running", "Running");
    std::string pleaseWait = LanguageText("StatusBarText", "PleaseWait", "Please Wait...");
    for (const std::string& name : ReadSortOrder()) {
        if (!DoesFileExist(AppFile(name))) continue;
        form.SetText("txtStatus", running + " " + name + ", " + pleaseWait);
        RunCustomMaintApp(name);
    }
}

bool IsCustomAppAllowed(const std::string& name) {
    clsOpSys system;
    const char* family = system.IsWin8 ? "8" : system.IsWin7 ? "7" : !system.IsVista ? "XP" : "Vista";
    for (const char* key : {IsOS64Bit() ? "64" : "32", family})
        if (ReadIni(AppFile(name), "Config", key) == "0") return false;
    return true;
}

int32_t RunCustomMaintApp(const std::string& name) {
    if (!IsCustomAppAllowed(name)) return 0;
    App app(name);
    if (app.program.empty()) return 0;
    FinalPath path = ResolvePath(app.program);
    int32_t exitCode = 0;
    if (path.runAtOnce)
        ShellX(path.path, app.parameters, true, 1, &exitCode);
    else if (ProvideApp(app, path.path))
        exitCode = StartApp(app, path.path);
    // Where it could not be put back it is the only copy.
    if (DoesFileExist(path.path)) pc::RemoveFile(path.path + ".old");
    return exitCode;
}

void ConvertCustomApps() {
    if (Eq1(Setting("Confirmations", "ConvertedCustomApps"))) return;
    WriteSetting("Confirmations", "ConvertedCustomApps", "1");
    for (int index = 1; index <= 3; ++index) ConvertCustomApp(index);
    for (const FormerTool& tool : formerTools) ConvertFormerTool(tool);
}

void ConvertCustomApp(int index) {
    std::string number = NumberText(index);
    auto read = [&](const char* key) { return Setting("CustomMaintApps", key + number); };
    std::string name = CleanAppName(read("AppName"));
    if (name.empty()) return;
    for (const char* key : {"App", "AppParms", "AppURL", "AppDLName"})
        WriteIni(AppFile(name), "Config", key, read(key));
    AppendToOrder(name);
}
