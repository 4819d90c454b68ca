// Environment, folders, Windows version, trace channel and code pages.
#include "platform/machine.h"

#include <windows.h>
// behind windows.h
#include <shlobj.h>

#include "platform/win32/handles.h"
#include "platform/win32/lookup.h"

namespace pc {

namespace {

// Without the trailing backslash that a root has.
std::string FolderText(const wchar_t* folder) {
    std::string text = Utf8(folder);
    if (text.ends_with('\\')) text.pop_back();
    return text;
}

std::string FromCodePage(UINT codePage, const std::string& bytes) {
    int size = static_cast<int>(bytes.size());
    std::wstring wide(static_cast<size_t>(MultiByteToWideChar(codePage, 0, bytes.data(), size, nullptr, 0)), L'\0');
    MultiByteToWideChar(codePage, 0, bytes.data(), size, wide.data(), static_cast<int>(wide.size()));
    return Utf8(wide);
}

}  // namespace

std::string Environment(const std::string& name) {
    std::wstring wideName = Wide(name), value;
    DWORD size = 128;
    do {
        value.resize(size);
        size = GetEnvironmentVariableW(wideName.c_str(), value.data(), static_cast<DWORD>(value.size()));
    } while (size > value.size());
    value.resize(size);
    return Utf8(value);
}

std::string WindowsFolder() {
    wchar_t folder[MAX_PATH + 1] = L"";
    GetWindowsDirectoryW(folder, MAX_PATH);
    return FolderText(folder);
}

std::string SystemFolder() {
    wchar_t folder[MAX_PATH + 1] = L"";
    GetSystemDirectoryW(folder, MAX_PATH);
    return FolderText(folder);
}

std::string SpecialFolder(int csidl) {
    ComApartment apartment;
    LPITEMIDLIST place = nullptr;
    if (FAILED(SHGetSpecialFolderLocation(nullptr, csidl, &place))) return "";
    TaskMemory owner(place);
    wchar_t folder[MAX_PATH + 1] = L"";
    return SHGetPathFromIDListW(place, folder) ? FolderText(folder) : "";
}

std::string ProgramPath() {
    std::wstring path(MAX_PATH, L'\0');
    DWORD length;
    while ((length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()))) >= path.size())
        path.resize(path.size() * 2);
    path.resize(length);
    return Utf8(path);
}

std::string CommandLine() {
    std::wstring_view line = GetCommandLineW();
    size_t end = line.starts_with(L'"') ? line.find(L'"', 1) : line.find_first_of(L" \t");
    if (end == std::wstring_view::npos) return "";
    size_t start = line.find_first_not_of(L" \t", end + 1);
    return start == std::wstring_view::npos ? "" : Utf8(line.substr(start));
}

OsVersion GetOsVersion() {
    OSVERSIONINFOEXW info = {};
    info.dwOSVersionInfoSize = sizeof info;
    auto* plain = reinterpret_cast<OSVERSIONINFOW*>(&info);
    static auto* trueVersion = Lookup<LONG WINAPI(OSVERSIONINFOW*)>(L"ntdll.dll", "RtlGetVersion");
    if (!trueVersion || trueVersion(plain) != 0) GetVersionExW(plain);
    OsVersion version;
    version.major = info.dwMajorVersion;
    version.minor = info.dwMinorVersion;
    version.build = info.dwBuildNumber;
    version.platform = info.dwPlatformId;
    version.servicePackMajor = info.wServicePackMajor;
    version.servicePackMinor = info.wServicePackMinor;
    version.suiteMask = info.wSuiteMask;
    version.productType = info.wProductType;
    version.csdVersion = Utf8(info.szCSDVersion);
    return version;
}

uint32_t ProductSku(uint32_t major, uint32_t minor) {
    using ProductInfo = BOOL WINAPI(DWORD, DWORD, DWORD, DWORD, DWORD*);
    static auto* productInfo = Lookup<ProductInfo>(L"kernel32.dll", "GetProductInfo");
    DWORD sku = 0;
    return productInfo && productInfo(major, minor, 0, 0, &sku) ? sku : 0;
}

uint64_t TotalMemory() {
    MEMORYSTATUSEX status = {};
    status.dwLength = sizeof status;
    return GlobalMemoryStatusEx(&status) ? status.ullTotalPhys : 0;
}

// A debugger, or a viewer of debug output, which owns this shared memory. Asked anew every tenth of a second.
static bool SomebodyListens() {
    static DWORD asked = 0;
    static bool listens = false;
    DWORD now = GetTickCount();
    if (asked && now - asked < 100) return listens;
    asked = now | 1;
    KernelHandle viewer(OpenFileMappingW(FILE_MAP_READ, FALSE, L"DBWIN_BUFFER"));
    listens = viewer || IsDebuggerPresent();
    return listens;
}

// Raising what nobody hears costs an exception for each line.
// The 8-bit form, to which the system brings the wide one anyway: Wine shows only this one to a debug-output viewer.
void DebugLine(const std::string& line) {
    if (SomebodyListens()) OutputDebugStringA(ToAnsi(line).c_str());
}

std::string ToAnsi(const std::string& utf8) {
    if (GetACP() == CP_UTF8) return utf8;  // takes neither flag nor default character
    std::wstring wide = Wide(utf8);
    int units = static_cast<int>(wide.size());
    auto convert = [&](char* buffer, int size) {
        return WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, wide.data(), units, buffer, size, "?", nullptr);
    };
    std::string ansi(static_cast<size_t>(convert(nullptr, 0)), '\0');
    convert(ansi.data(), static_cast<int>(ansi.size()));
    return ansi;
}

std::string FromAnsi(const std::string& ansi) { return FromCodePage(CP_ACP, ansi); }
std::string FromOem(const std::string& oem) { return FromCodePage(CP_OEMCP, oem); }

}  // namespace pc
