// Names, attributes and whole items; open files stand in file_streams.cpp, drives and shell facts in file_facts.cpp.
#include "platform/files.h"

#include <windows.h>
// behind windows.h
#include <shellapi.h>
#include <shlobj.h>
#include <shlwapi.h>

#include <vector>

#include "platform/win32/handles.h"
#include "platform/win32/last_error.h"
#include "platform/win32/lookup.h"

namespace pc {

namespace {

uint32_t lastError = 0;

uint64_t Join(uint32_t high, uint32_t low) { return static_cast<uint64_t>(high) << 32 | low; }
FileTime Join(const FILETIME& time) { return Join(time.dwHighDateTime, time.dwLowDateTime); }

// Of the two structures in which the platform tells of a file.
template <typename Data>
FileInfo InfoFrom(std::string name, const Data& data) {
    return {std::move(name),           data.dwFileAttributes,       Join(data.nFileSizeHigh, data.nFileSizeLow),
            Join(data.ftCreationTime), Join(data.ftLastAccessTime), Join(data.ftLastWriteTime)};
}

std::string LastPart(std::string path) {
    while (path.ends_with('\\')) path.pop_back();
    return path.substr(path.find_last_of('\\') + 1);
}

bool IsDots(const wchar_t* name) { return name[0] == L'.' && (!name[1] || (name[1] == L'.' && !name[2])); }

}  // namespace

uint32_t LastError() { return lastError; }

bool Fail(uint32_t code) {
    lastError = code;
    return false;
}

std::optional<FileInfo> GetFileInfo(const std::string& path) {
    std::wstring wide = WidePath(path);
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (GetFileAttributesExW(wide.c_str(), GetFileExInfoStandard, &data)) return InfoFrom(LastPart(path), data);
    uint32_t code = GetLastError();
    // A file that somebody holds for himself alone still tells of itself in its folder.
    if ((code == ERROR_SHARING_VIOLATION || code == ERROR_ACCESS_DENIED) &&
        path.find_first_of("*?") == std::string::npos) {
        WIN32_FIND_DATAW entry;
        FindHandle find(FindFirstFileW(wide.c_str(), &entry));
        if (find) return InfoFrom(Utf8(entry.cFileName), entry);
    }
    Fail(code);
    return {};
}

bool ChangeAttributes(const std::string& path, uint32_t attributes) {
    return Done(SetFileAttributesW(WidePath(path).c_str(), attributes));
}

bool CanOpenFile(const std::string& path) {
    auto info = GetFileInfo(path);
    return info && !info->IsFolder();
}

bool RemoveFile(const std::string& path) { return Done(DeleteFileW(WidePath(path).c_str())); }

bool RemoveFolder(const std::string& path) { return Done(RemoveDirectoryW(WidePath(path).c_str())); }

bool MakeFolder(const std::string& path) { return Done(CreateDirectoryW(WidePath(path).c_str(), nullptr)); }

bool MakeSureFolderPathExists(const std::string& path) {
    size_t start = path.size() > 1 && path[1] == ':' ? 3 : 1;  // behind the drive
    if (path.starts_with("\\\\")) {                            // behind server and share
        size_t share = path.find('\\', 2);
        start = share == std::string::npos ? 0 : path.find('\\', share + 1) + 1;
        if (start == 0) return Fail(ERROR_BAD_PATHNAME);
    }
    for (size_t end; (end = path.find('\\', start)) != std::string::npos; start = end + 1) {
        std::string folder = path.substr(0, end);
        auto info = GetFileInfo(folder);
        if (info && !info->IsFolder()) return Fail(ERROR_DIRECTORY);
        if (!info && !MakeFolder(folder) && lastError != ERROR_ALREADY_EXISTS) return false;
    }
    return true;
}

uint32_t ShellMakeFolder(const std::string& path) {
    std::wstring wide = WidePath(path);
    // The shell does not take the prefix of long paths.
    if (!wide.starts_with(L"\\\\?\\"))
        return static_cast<uint32_t>(SHCreateDirectoryExW(nullptr, wide.c_str(), nullptr));
    if (GetFileInfo(path)) return ERROR_ALREADY_EXISTS;
    return MakeSureFolderPathExists(path + "\\") ? ERROR_SUCCESS : lastError;
}

bool MovePath(const std::string& from, const std::string& to, bool replace) {
    DWORD flags = MOVEFILE_COPY_ALLOWED | (replace ? MOVEFILE_REPLACE_EXISTING : 0u);
    return Done(MoveFileExW(WidePath(from).c_str(), WidePath(to).c_str(), flags));
}

bool CopyOneFile(const std::string& from, const std::string& to, bool failIfExists) {
    return Done(CopyFileW(WidePath(from).c_str(), WidePath(to).c_str(), failIfExists));
}

bool ListFolder(const std::string& folder, const std::string& pattern,
                const std::function<bool(const FileInfo&)>& each) {
    if (folder.empty()) return Fail(ERROR_PATH_NOT_FOUND);  // a backslash alone would be the root of the drive
    std::wstring mask = Wide(pattern);
    bool takesAll = pattern == "*";
    WIN32_FIND_DATAW entry;
    FindHandle find(FindFirstFileW(WidePath(folder + (folder.ends_with('\\') ? "" : "\\") + pattern).c_str(), &entry));
    if (!find) return GetLastError() == ERROR_FILE_NOT_FOUND || Fail(GetLastError());
    do {
        // The platform also matches the short name: "*.tmp" would find "notes.tmpl".
        if (IsDots(entry.cFileName) || !(takesAll || PathMatchSpecW(entry.cFileName, mask.c_str()))) continue;
        if (!each(InfoFrom(Utf8(entry.cFileName), entry))) return true;
    } while (FindNextFileW(find.Get(), &entry));
    return true;
}

bool DisableRedirection(uintptr_t& cookie) {
    static auto* disable = Lookup<BOOL WINAPI(PVOID*)>(L"kernel32.dll", "Wow64DisableWow64FsRedirection");
    void* old = nullptr;
    if (!disable) return Fail(ERROR_CALL_NOT_IMPLEMENTED);
    if (!Done(disable(&old))) return false;
    cookie = reinterpret_cast<uintptr_t>(old);
    return true;
}

void RevertRedirection(uintptr_t cookie) {
    static auto* revert = Lookup<BOOL WINAPI(PVOID)>(L"kernel32.dll", "Wow64RevertWow64FsRedirection");
    if (revert) revert(reinterpret_cast<void*>(cookie));
}

std::string FullPath(const std::string& path) {
    std::wstring wide = Wide(path);
    std::wstring full(GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr), L'\0');
    DWORD length = GetFullPathNameW(wide.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    full.resize(length < full.size() ? length : 0);
    return Utf8(full);
}

int32_t ShellCopy(const std::string& from, const std::string& to, uint32_t flags) {
    ComApartment apartment;
    std::wstring fromList = Wide(from) + L'\0', toList = Wide(to) + L'\0';
    SHFILEOPSTRUCTW step = {};
    step.wFunc = FO_COPY;
    step.pFrom = fromList.c_str();
    step.pTo = toList.c_str();
    step.fFlags = static_cast<FILEOP_FLAGS>(flags);
    int result = SHFileOperationW(&step);
    return result == 0 && step.fAnyOperationsAborted ? ERROR_CANCELLED : result;
}

uint32_t SetFileOwner(const std::string& path, const std::string& sid) {
    std::string copy = sid;
    PSID owner = copy.data();
    if (copy.size() < 8 || !IsValidSid(owner) || GetLengthSid(owner) > copy.size()) return ERROR_INVALID_SID;
    SECURITY_DESCRIPTOR descriptor;
    if (!InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION) ||
        !SetSecurityDescriptorOwner(&descriptor, owner, FALSE) ||
        !SetFileSecurityW(WidePath(path).c_str(), OWNER_SECURITY_INFORMATION, &descriptor))
        return GetLastError();
    return ERROR_SUCCESS;
}

}  // namespace pc
