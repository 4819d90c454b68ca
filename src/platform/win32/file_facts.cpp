// What drives, versions and the shell tell about files, and temporary files.
#include "platform/files.h"

#include <windows.h>
// behind windows.h
#include <shellapi.h>
#include <winnetwk.h>

#include "platform/win32/handles.h"
#include "platform/win32/last_error.h"
#include "platform/win32/lookup.h"
#include "platform/win32/version_block.h"

namespace pc {

namespace {

const Late<decltype(WNetGetConnectionW)> connection{L"mpr.dll", "WNetGetConnectionW"};

// The system shall not ask for a disk while this lives.
class QuietDrives {
public:
    QuietDrives() : before(SetErrorMode(SEM_FAILCRITICALERRORS)) {}
    ~QuietDrives() { SetErrorMode(before); }
    QuietDrives(const QuietDrives&) = delete;
    QuietDrives& operator=(const QuietDrives&) = delete;

private:
    UINT before;
};

std::string ShareOf(const std::string& root) {
    wchar_t share[1024] = L"";
    DWORD size = 1024;
    return connection(Wide(root.substr(0, 2)).c_str(), share, &size) == NO_ERROR ? Utf8(share) : "";
}

}  // namespace

std::optional<DiskSpace> GetDiskSpace(const std::string& folder) {
    QuietDrives quiet;
    ULARGE_INTEGER available, total, free;
    if (!Done(GetDiskFreeSpaceExW(WidePath(folder).c_str(), &available, &total, &free))) return {};
    return DiskSpace{static_cast<double>(total.QuadPart), static_cast<double>(free.QuadPart),
                     static_cast<double>(available.QuadPart)};
}

std::optional<DriveInfo> GetDriveInfo(const std::string& root) {
    QuietDrives quiet;
    DriveInfo drive;
    drive.type = GetDriveTypeW(Wide(root).c_str());
    if (drive.type == DRIVE_UNKNOWN || drive.type == DRIVE_NO_ROOT_DIR) return {};
    wchar_t name[MAX_PATH + 1] = L"", system[MAX_PATH + 1] = L"";
    DWORD serial = 0;
    drive.ready = GetVolumeInformationW(Wide(root).c_str(), name, MAX_PATH + 1, &serial, nullptr, nullptr, system,
                                        MAX_PATH + 1) != FALSE;
    drive.serial = serial;
    drive.volumeName = Utf8(name);
    drive.fileSystem = Utf8(system);
    if (drive.type == DRIVE_REMOTE) drive.shareName = ShareOf(root);
    return drive;
}

std::string LogicalDrives() {
    std::wstring roots(GetLogicalDriveStringsW(0, nullptr), L'\0');
    DWORD length = GetLogicalDriveStringsW(static_cast<DWORD>(roots.size()), roots.data());
    roots.resize(length < roots.size() ? length + 1 : 0);
    return Utf8(roots);
}

std::string FileVersion(const std::string& path) {
    VersionBlock block(path);
    const VS_FIXEDFILEINFO* numbers = block.Numbers();
    if (!numbers) return "";
    char text[48];
    wsprintfA(text, "%u.%u.%u.%u", HIWORD(numbers->dwFileVersionMS), LOWORD(numbers->dwFileVersionMS),
              HIWORD(numbers->dwFileVersionLS), LOWORD(numbers->dwFileVersionLS));
    return text;
}

std::string FileTypeName(const std::string& path) {
    ComApartment apartment;
    SHFILEINFOW info = {};
    return SHGetFileInfoW(WidePath(path).c_str(), 0, &info, sizeof info, SHGFI_TYPENAME) ? Utf8(info.szTypeName) : "";
}

std::string TempFolder() {
    wchar_t folder[MAX_PATH + 2] = L"";
    DWORD length = GetTempPathW(MAX_PATH + 1, folder);
    return length <= MAX_PATH ? Utf8({folder, length}) : "";
}

std::string MakeTempFile(const std::string& folder, const std::string& prefix) {
    wchar_t path[MAX_PATH + 1] = L"";
    if (!Done(GetTempFileNameW(Wide(folder).c_str(), Wide(prefix).c_str(), 0, path) != 0)) return "";
    return Utf8(path);
}

}  // namespace pc
