// Open files.
#include "platform/files.h"

#include <windows.h>

#include "platform/win32/last_error.h"
#include "platform/win32/wide.h"

namespace pc {

namespace {

HANDLE Native(uintptr_t handle) { return reinterpret_cast<HANDLE>(handle); }

struct OpenWay {
    DWORD access, creation, flags;
};
// In the order of FileMode.
constexpr OpenWay ways[] = {
    {GENERIC_READ, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL},
    {GENERIC_WRITE, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL},
    {GENERIC_WRITE, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL},
    {GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL},
    {GENERIC_READ | GENERIC_WRITE, CREATE_NEW, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT},
};

}  // namespace

File& File::operator=(File&& other) noexcept {
    if (this != &other) {
        Close();
        handle = other.handle;
        other.handle = none;
    }
    return *this;
}

bool File::Open(const std::string& path, FileMode mode) {
    Close();
    const OpenWay& way = ways[static_cast<size_t>(mode)];
    HANDLE opened =
        CreateFileW(WidePath(path).c_str(), way.access, FILE_SHARE_READ, nullptr, way.creation, way.flags, nullptr);
    if (opened == INVALID_HANDLE_VALUE) return Fail(GetLastError());
    handle = reinterpret_cast<uintptr_t>(opened);
    LARGE_INTEGER start = {};
    if (mode != FileMode::append || SetFilePointerEx(opened, start, nullptr, FILE_END)) return true;
    Fail(GetLastError());
    Close();
    return false;
}

std::optional<size_t> File::Read(void* buffer, size_t size) {
    DWORD count = 0;
    if (!Done(ReadFile(Native(handle), buffer, static_cast<DWORD>(size), &count, nullptr))) return {};
    return count;
}

bool File::Write(const void* data, size_t size) {
    DWORD count = 0;
    if (!Done(WriteFile(Native(handle), data, static_cast<DWORD>(size), &count, nullptr))) return false;
    return count == size || Fail(ERROR_DISK_FULL);
}

bool File::Seek(uint64_t position) {
    LARGE_INTEGER target;
    target.QuadPart = static_cast<LONGLONG>(position);
    return Done(SetFilePointerEx(Native(handle), target, nullptr, FILE_BEGIN));
}

uint64_t File::Size() const {
    LARGE_INTEGER size = {};
    return Done(GetFileSizeEx(Native(handle), &size)) ? static_cast<uint64_t>(size.QuadPart) : 0;
}

void File::Close() {
    if (IsOpen()) CloseHandle(Native(handle));
    handle = none;
}

std::optional<std::string> ReadWholeFile(const std::string& path, uint64_t limit) {
    File file;
    if (!file.Open(path, FileMode::read)) return {};
    if (file.Size() > limit) {
        Fail(ERROR_FILE_TOO_LARGE);
        return {};
    }
    std::string bytes(static_cast<size_t>(file.Size()), '\0');
    auto count = file.Read(bytes.data(), bytes.size());
    if (!count) return {};
    bytes.resize(*count);
    return bytes;
}

bool WriteWholeFile(const std::string& path, const std::string& bytes) {
    File file;
    return file.Open(path, FileMode::write) && file.Write(bytes.data(), bytes.size());
}

}  // namespace pc
