// The platform's files on this machine's disk, in the place of the simulated ones: "C:\a\b" is diskRoot + "/a/b".
// Only what archives need; the linker takes these before the simulated ones.
#include "bench/real_disk.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "platform/files.h"

std::string diskRoot;

std::string HostPath(const std::string& path) {
    std::string host = diskRoot + path.substr(std::min<size_t>(path.size(), 2));
    std::replace(host.begin(), host.end(), '\\', '/');
    return host;
}

namespace pc {

namespace {

int Descriptor(uintptr_t handle) { return static_cast<int>(handle); }
bool Done(int result) { return result == 0; }

}  // namespace

uint32_t LastError() { return errno == ENOENT ? 2 : static_cast<uint32_t>(errno); }

std::optional<FileInfo> GetFileInfo(const std::string& path) {
    struct stat facts;
    if (lstat(HostPath(path).c_str(), &facts)) return {};
    FileInfo info;
    info.name = path.substr(path.rfind('\\') + 1);
    info.attributes = S_ISDIR(facts.st_mode) ? attributeFolder : attributeArchive;
    if (S_ISLNK(facts.st_mode)) info.attributes |= attributeReparse;
    info.size = static_cast<uint64_t>(facts.st_size);
    // From 1970 to the platform's 1601.
    info.modified = (static_cast<uint64_t>(facts.st_mtime) + 11644473600) * 10000000;
    return info;
}

bool CanOpenFile(const std::string& path) {
    auto info = GetFileInfo(path);
    return info && !info->IsFolder();
}

bool RemoveFile(const std::string& path) { return Done(unlink(HostPath(path).c_str())); }
bool MakeFolder(const std::string& path) { return Done(mkdir(HostPath(path).c_str(), 0755)); }

bool MakeSureFolderPathExists(const std::string& path) {
    std::error_code failed;
    std::filesystem::create_directories(HostPath(path.substr(0, path.rfind('\\'))), failed);
    return !failed;
}

uint32_t ShellMakeFolder(const std::string& path) { return MakeSureFolderPathExists(path + "\\") ? 0 : LastError(); }

bool MovePath(const std::string& from, const std::string& to, bool replace) {
    if (!replace && GetFileInfo(to)) return false;
    return Done(rename(HostPath(from).c_str(), HostPath(to).c_str()));
}

bool ListFolder(const std::string& folder, const std::string&, const std::function<bool(const FileInfo&)>& each) {
    std::error_code failed;
    for (const auto& item : std::filesystem::directory_iterator(HostPath(folder), failed)) {
        auto info = GetFileInfo(folder + "\\" + item.path().filename().string());
        if (info && !each(*info)) break;
    }
    return !failed;
}

bool File::Open(const std::string& path, FileMode mode) {
    Close();
    int flags = mode == FileMode::read        ? O_RDONLY
                : mode == FileMode::createNew ? O_WRONLY | O_CREAT | O_EXCL
                                              : O_WRONLY | O_CREAT | O_TRUNC;
    int descriptor = open(HostPath(path).c_str(), flags, 0644);
    if (descriptor >= 0) handle = static_cast<uintptr_t>(descriptor);
    return descriptor >= 0;
}

std::optional<size_t> File::Read(void* buffer, size_t size) {
    size_t have = 0;
    while (have < size) {
        ssize_t count = read(Descriptor(handle), static_cast<char*>(buffer) + have, size - have);
        if (count < 0) return {};
        if (count == 0) break;
        have += static_cast<size_t>(count);
    }
    return have;
}

bool File::Write(const void* data, size_t size) {
    return write(Descriptor(handle), data, size) == static_cast<ssize_t>(size);
}

bool File::Seek(uint64_t position) { return lseek(Descriptor(handle), static_cast<off_t>(position), SEEK_SET) >= 0; }

uint64_t File::Size() const {
    struct stat facts;
    return fstat(Descriptor(handle), &facts) ? 0 : static_cast<uint64_t>(facts.st_size);
}

void File::Close() {
    if (IsOpen()) close(Descriptor(handle));
    handle = none;
}

std::optional<std::string> ReadWholeFile(const std::string& path, uint64_t limit) {
    File file;
    if (!file.Open(path, FileMode::read) || file.Size() > limit) return {};
    std::string bytes(static_cast<size_t>(file.Size()), '\0');
    auto count = file.Read(bytes.data(), bytes.size());
    if (!count) return {};
    bytes.resize(*count);
    return bytes;
}

std::optional<DiskSpace> GetDiskSpace(const std::string&) {
    std::error_code failed;
    auto space = std::filesystem::space(diskRoot, failed);
    if (failed) return {};
    return DiskSpace{static_cast<double>(space.capacity), static_cast<double>(space.free),
                     static_cast<double>(space.available)};
}

}  // namespace pc
