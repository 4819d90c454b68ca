// The name services of clsFSO: parts of paths, temporary names, paths for labels.
#include "platform/files.h"
#include "platform/machine.h"
#include "platform/processes.h"
#include "system/file_walk.h"
#include "system/files.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

std::string WithoutTrailingSlashes(std::string path) {
    while (EndsWith(path, "\\")) path.pop_back();
    return path;
}

std::string TempFolderOrRoot() {
    std::string folder = pc::TempFolder();
    return folder.empty() ? "C:\\" : folder;
}

std::string TraceSlash(const char* procedure, const std::string& path, const std::string& result) {
    DebugOutput(std::string("clsFSO\\") + procedure + ": ");
    DebugOutput("\t- strPath=" + path);
    DebugOutput("\t- returns: " + result);
    return result;
}

// How much of the path's front always stays: to the first backslash behind the third character.
size_t HeadLength(const std::string& path) {
    if (!StartsWith(path, "\\\\") && path.substr(1, 1) != ":") return 0;
    size_t slash = path.find('\\', 3);
    return slash == std::string::npos ? 0 : slash + 1;
}

}  // namespace

std::string JoinPath(const std::string& folder, const std::string& name) {
    return EndsWith(folder, "\\") ? folder + name : folder + "\\" + name;
}

std::string ExtensionInName(const std::string& name) {
    size_t dot = name.rfind('.');
    return dot == std::string::npos ? "" : name.substr(dot + 1);
}

std::string clsFSO::StripDrive(const std::string& path) {
    if (StartsWith(path, "{") && EndsWith(path, "}")) {
        DebugOutput("clsFSO\\StripDrive: Error: It appears a CLSID was passed.  Exiting Function.");
        return path;
    }
    if (path.substr(0, 2).find(':') != 1) {
        DebugOutput("clsFSO\\StripDrive: Error: It appears no drive letter was passed.  Exiting Function.");
        return path;
    }
    return path.substr(2);
}

std::string clsFSO::Get_Extension(const std::string& path) { return ExtensionInName(Get_Filename(path)); }

std::string clsFSO::Get_FileNoExtension(const std::string& path) {
    std::string name = Get_Filename(path);
    return name.substr(0, name.rfind('.'));
}

std::string clsFSO::Get_Filename(const std::string& path) {
    std::string whole = WithoutTrailingSlashes(path);
    if (EndsWith(whole, ":")) return "";
    return whole.substr(whole.rfind('\\') + 1);
}

std::string clsFSO::Get_Path(const std::string& path) {
    std::string whole = WithoutTrailingSlashes(path);
    size_t slash = whole.rfind('\\');
    if (slash == std::string::npos) return "";
    std::string parent = WithoutTrailingSlashes(whole.substr(0, slash));
    return EndsWith(parent, ":") ? parent + "\\" : parent;
}

std::string clsFSO::Get_Version(const std::string& file) { return pc::FileVersion(file); }

std::string clsFSO::Get_VB_Version(const std::string& file) {
    std::string version = pc::FileVersion(file);
    return version.empty() ? "" : version.substr(0, 4) + version.back();
}

std::string clsFSO::Add_Trailing_Slash(const std::string& path) {
    return TraceSlash("Add_Trailing_Slash", path, WithoutTrailingSlashes(path) + "\\");
}

std::string clsFSO::Remove_Trailing_Slash(const std::string& path) {
    return TraceSlash("Remove_Trailing_Slash", path, WithoutTrailingSlashes(path));
}

std::string clsFSO::Remove_Nulls(const std::string& text) { return text.substr(0, text.find('\0')); }

std::string clsFSO::Shrink_2_Fit(const std::string& path, size_t length) {
    if (CharacterCount(path) <= length) return path;
    size_t headLength = HeadLength(path);
    std::string head = path.substr(0, headLength) + "...";
    for (size_t slash = path.find('\\', headLength); slash != std::string::npos; slash = path.find('\\', slash + 1)) {
        std::string shrunk = head + path.substr(slash);
        if (CharacterCount(shrunk) <= length) return shrunk;
    }
    return FirstCharacters(head, length);
}

double clsFSO::Rnd2(double low, double high) {
    static uint32_t state = 0;
    pc::ClockTime now = pc::LocalNow();
    state ^= pc::TickCount() + static_cast<uint32_t>(now.day * 86400 + now.second * 1000 + now.millisecond);
    state = state * 1664525u + 1013904223u;  // constants of a well-known linear congruential generator
    return low + state / 4294967296.0 * (high - low);
}

std::string clsFSO::Create_Tmp_Name(int length) {
    std::string name = "_";
    for (int i = 1; i < length; ++i) {
        int code = static_cast<int>(Rnd2(48, 122));
        bool isBetweenLetters = (code >= 58 && code <= 64) || (code >= 91 && code <= 96);
        name += static_cast<char>(isBetweenLetters ? code + 7 : code);
    }
    return LowerCase(name);
}

std::string clsFSO::Create_Tmp_Filename(std::string& folder) {
    if (folder.empty()) folder = TempFolderOrRoot();
    std::string file = pc::MakeTempFile(folder, Create_Tmp_Name(4));
    DebugOutput("clsFSO\\Create_Tmp_Filename: " + file);
    return file;
}

std::string clsFSO::Create_Tmp_Folder() {
    constexpr int nameLength = 8;
    std::string folder = JoinPath(TempFolderOrRoot(), Create_Tmp_Name(nameLength));
    if (!DoesDirExist(folder)) pc::MakeFolder(folder);
    DebugOutput("clsFSO\\Create_Tmp_Folder: " + folder);
    return folder;
}
