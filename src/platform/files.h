// Files and folders, at the height of the platform's own calls. Paths are UTF-8 with backslashes.
//
// Functions that return bool leave the platform's code in LastError() on failure (2 not found, 3 path not found,
// 5 denied, 32 in use, 80 or 183 exists, 112 disk full, 145 folder not empty, 267 not a folder).
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace pc {

inline constexpr uint32_t attributeReadOnly = 0x1;
inline constexpr uint32_t attributeHidden = 0x2;
inline constexpr uint32_t attributeSystem = 0x4;
inline constexpr uint32_t attributeFolder = 0x10;
inline constexpr uint32_t attributeArchive = 0x20;
inline constexpr uint32_t attributeNormal = 0x80;
inline constexpr uint32_t attributeReparse = 0x400;  // junction, mount point or symbolic link

// 100-nanosecond steps since 1601-01-01 UTC, as the platform counts file times.
using FileTime = uint64_t;

// An item of a folder as the platform lists it.
struct FileInfo {
    std::string name;  // without folder
    uint32_t attributes = 0;
    uint64_t size = 0;  // bytes
    FileTime created = 0;
    FileTime accessed = 0;
    FileTime modified = 0;

    bool IsFolder() const { return (attributes & attributeFolder) != 0; }
    bool IsLink() const { return (attributes & attributeReparse) != 0; }
};

// The platform's code of the last failed call of this header.
uint32_t LastError();

// Of the item itself, also when it is a link. Nothing when it is not there or cannot be read.
std::optional<FileInfo> GetFileInfo(const std::string& path);
// Bits as above. False when the item is not there or refuses.
bool ChangeAttributes(const std::string& path, uint32_t attributes);
// Whether the platform can open the file (a folder is none). Code -1 in the platform's old form means no.
bool CanOpenFile(const std::string& path);

// A file, or a link to one itself. False while it is open elsewhere or read-only.
bool RemoveFile(const std::string& path);
// Removes an empty folder, or a link to a folder without touching what it points to.
bool RemoveFolder(const std::string& path);
// False, with 183 in LastError(), when it is there.
bool MakeFolder(const std::string& path);
// Makes all missing parents as well. A path without trailing backslash loses its last part, as the platform has it.
bool MakeSureFolderPathExists(const std::string& path);
// As the shell makes a folder with its parents; 0, 183 when it was there, or the platform's code.
uint32_t ShellMakeFolder(const std::string& path);
// Moves or renames a file or folder; fails with 183 if the target exists and replace is false.
bool MovePath(const std::string& from, const std::string& to, bool replace);
// With its attributes. False, with 80 in LastError(), when the target is there and failIfExists is set.
bool CopyOneFile(const std::string& from, const std::string& to, bool failIfExists);

// Calls each for every entry of the folder but "." and "..", in the platform's order, until it returns false.
// pattern is a file name with * and ?. False when the folder cannot be listed; an empty result is true.
bool ListFolder(const std::string& folder, const std::string& pattern,
                const std::function<bool(const FileInfo&)>& each);

// How a file is opened.
enum class FileMode {
    read,       // must exist; shared for reading
    write,      // made or emptied
    append,     // made if missing; positioned at the end
    readWrite,  // made if missing; kept
    createNew,  // must not exist (80 otherwise); never follows a link
};

// An open file; closes itself.
class File {
public:
    File() = default;
    ~File() { Close(); }
    File(File&& other) noexcept : handle(other.handle) { other.handle = none; }
    File& operator=(File&& other) noexcept;
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    // False with the code in LastError(); an open file is closed first.
    bool Open(const std::string& path, FileMode mode);
    bool IsOpen() const { return handle != none; }
    // Bytes read, 0 at the end; nothing on failure.
    std::optional<size_t> Read(void* buffer, size_t size);
    // True when all was written; LastError() is 112 on a full disk.
    bool Write(const void* data, size_t size);
    bool Seek(uint64_t position);
    uint64_t Size() const;
    void Close();

private:
    static constexpr uintptr_t none = ~uintptr_t{0};
    uintptr_t handle = none;
};

// Whole file in one go. Nothing when it cannot be opened, or is larger than limit bytes.
std::optional<std::string> ReadWholeFile(const std::string& path, uint64_t limit = 64u << 20);
// Made or emptied first. False leaves a file that may be incomplete.
bool WriteWholeFile(const std::string& path, const std::string& bytes);

// Switches the file-system redirection of a 32-bit process off; cookie goes back to RevertRedirection.
// False where the system has no redirection.
bool DisableRedirection(uintptr_t& cookie);
void RevertRedirection(uintptr_t cookie);

// Room on a drive.
struct DiskSpace {
    double total = 0;      // bytes
    double free = 0;       // bytes
    double available = 0;  // bytes free to this user
};
// folder is such as "C:\". Nothing when the drive does not answer.
std::optional<DiskSpace> GetDiskSpace(const std::string& folder);

// A drive as the platform describes it.
struct DriveInfo {
    uint32_t type = 0;  // platform's GetDriveType number: 2 removable, 3 fixed, 4 remote, 5 CD, 6 RAM
    uint32_t serial = 0;
    std::string volumeName, fileSystem, shareName;
    bool ready = false;
};
// root is such as "C:\". Nothing when there is no such drive.
std::optional<DriveInfo> GetDriveInfo(const std::string& root);
// Roots such as "C:\", each closed by a NUL, the whole by one more.
std::string LogicalDrives();

// Four numbers of the version resource as "1.2.3.4"; empty when the file has none.
std::string FileVersion(const std::string& path);
// The shell's name of the file's type, such as "Text Document"; empty when unknown.
std::string FileTypeName(const std::string& path);
// Folder for temporary files with trailing backslash; empty when there is none.
std::string TempFolder();
// Makes an empty file with a new name in the folder; empty on failure.
std::string MakeTempFile(const std::string& folder, const std::string& prefix);
// Full path with "." and ".." resolved; no disk access.
std::string FullPath(const std::string& path);

// The shell's copy with the platform's flag bits. from may hold wildcards in its last part. 0 is success, else the
// shell's code.
int32_t ShellCopy(const std::string& from, const std::string& to, uint32_t flags);

// Sets the owner of a file; sid as bytes. 0 or the platform's code.
uint32_t SetFileOwner(const std::string& path, const std::string& sid);

}  // namespace pc
