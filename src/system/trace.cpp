#include "system/trace.h"

#include "platform/files.h"
#include "platform/machine.h"
#include "system/build_constants.h"
#include "system/paths.h"
#include "system/program_state.h"
#include "system/text.h"

namespace {

uintptr_t oldRedirectValue = 0;
bool redirectionSwitched = false;

// A relative path is never looked for.
bool IsFullPath(const std::string& path) { return path.size() >= 2 && (path[1] == ':' || path[1] == '\\'); }

void TraceTest(const char* name, const std::string& path, bool found) {
    DebugOutput(std::string(name) + (found ? "0" : "-1"));
    DebugOutput("\t- Passed: " + path);
    DebugOutput("\t- Returns: " + TraceValue(found).Text());
}

bool IsFolder(const std::string& path) {
    if (!IsFullPath(path)) return false;
    auto info = pc::GetFileInfo(path);
    return info && info->IsFolder();
}

void OpenDebugFile() {
    std::string folder = GetAppPath() + "Debug";
    if (!DoesDirExistNoDebug(folder)) pc::MakeFolder(folder);
    if (!DoesDirExistNoDebug(folder)) {
        State().bDebugToFile = false;
        return;
    }
    int files = 0;
    pc::ListFolder(folder, "*", [&](const pc::FileInfo& item) {
        files += !item.IsFolder();
        return true;
    });
    State().sDebugFile = folder + "\\DebugOutput - " + GetEXEName() + " " + NumberText(files + 1) + ".txt";
}

void FindSettingsFile(bool besideProgram) {
    std::string folder = GetAppPath();
    if (!besideProgram) {
        folder += "Config\\";
        if (!DoesDirExist(folder)) pc::MakeFolder(GetAppPath() + "Config");
    }
    std::string file = folder + GetEXEName() + ".ini", module = GetAppPath() + "Modules\\Brevanta.ini";
    bool asModule = !DoesFileExist(file) && pc::ProductName() == build::productName && DoesFileExist(module);
    State().settingsFile = asModule ? module : file;
}

}  // namespace

void DebugOutputLine(std::initializer_list<TraceValue> values) {
    std::string line;
    for (const TraceValue& value : values) line += "\t" + value.Text();
    pc::DebugLine(line);
    if (State().bDebugToFile) SaveTextToFileNoDebug(State().sDebugFile, NowText() + line, false);
}

void InitPaths(bool initPaths, bool besideProgram) {
    if (initPaths) FindSettingsFile(besideProgram);
    if (State().bDebugToFile) OpenDebugFile();
    DebugOutput();
    DebugOutput(NowText() + " - Starting " + VersionString());
    DebugOutput(std::string(40, '-'));
}

std::string GetAppPath() { return StripNameFromPathNoDebug(pc::ProgramPath()) + "\\"; }
std::string GetEXEPath() { return pc::ProgramPath(); }

std::string GetEXEName() {
    std::string name = pc::ProgramPath();
    name = name.substr(name.rfind('\\') + 1);
    return EndsWithNoCase(name, ".exe") ? name.substr(0, name.size() - 4) : name;
}

bool DoesFileExist(const std::string& path, bool trace) {
    if (!IsFullPath(path)) return false;
    RedirectionOff redirection;
    bool found = pc::CanOpenFile(path);
    if (trace) TraceTest("CommonModule\\DoesFileExist: ", path, found);
    return found;
}

bool DoesDirExist(const std::string& path, bool trace) {
    bool found = DoesDirExistNoDebug(path);
    if (trace) TraceTest("CommonModule\\DoesDirExist: ", path, found);
    return found;
}

bool DoesDirExistNo64bitCheck(const std::string& path, bool trace) {
    bool found = IsFolder(path);
    if (trace) TraceTest("CommonModule\\DoesDirExistNo64bitCheck: ", path, found);
    return found;
}

bool DoesDirExistNoDebug(const std::string& path) {
    RedirectionOff redirection;
    return IsFolder(path);
}

bool IsDrive64Bit(const std::string& drive) {
    if (drive.empty()) return !pc::Environment("ProgramFiles(x86)").empty();
    return DoesDirExistNo64bitCheck(drive + "\\Program Files (x86)");
}

void Disable64BitRedirect() {
    if (State().bRedirectIsOff) return;
    redirectionSwitched = State().bHandle64BitRedirect && IsDrive64Bit("") && pc::DisableRedirection(oldRedirectValue);
    State().bRedirectIsOff = true;
}

void Revert64BitRedirect() {
    if (!State().bRedirectIsOff) return;
    if (redirectionSwitched) pc::RevertRedirection(oldRedirectValue);
    redirectionSwitched = false;
    State().bRedirectIsOff = false;
}

RedirectionOff::RedirectionOff() : wasOff(State().bRedirectIsOff) { Disable64BitRedirect(); }

RedirectionOff::~RedirectionOff() {
    if (!wasOff) Revert64BitRedirect();
}
