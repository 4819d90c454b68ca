// The questions that clsFSO answers about files, folders and drives.
#include "platform/files.h"
#include "platform/machine.h"
#include "platform/messages.h"
#include "platform/processes.h"
#include "system/file_walk.h"
#include "system/files.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

std::string DateAndTime(pc::FileTime time) {
    pc::ClockTime local = pc::LocalFromFileTime(time);
    return pc::ShortDateText(local) + " " + pc::LongTimeText(local);
}

bool IsDriveLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

// "0012-ABCD"
std::string SerialText(uint32_t serial) {
    std::string digits = HexText(serial);
    digits.insert(0, 8 - digits.size(), '0');
    return digits.substr(0, 4) + "-" + digits.substr(4);
}

// The file object's own numbers: 1 removable, 2 fixed, 3 network, 4 CD, 5 RAM.
int DriveTypeNumber(const pc::DriveInfo& drive) { return drive.type >= 2 ? static_cast<int>(drive.type) - 1 : 0; }

}  // namespace

bool clsFSO::Get_FileProperties(const std::string& path) {
    RedirectionOff redirectionOff;
    return pc::ShowProperties(path);
}

bool clsFSO::File_Exist(const std::string& path) {
    DebugOutput("clsFSO\\File_Exist: ");
    DebugOutput("\t- strSearchItem=" + path);
    std::optional<pc::FileInfo> file = pc::GetFileInfo(path);
    return file && !file->IsFolder();
}

bool clsFSO::Folder_Exist(const std::string& path) {
    DebugOutput("clsFSO\\Folder_Exist: ");
    DebugOutput("\t- strFolder=" + path);
    std::optional<pc::FileInfo> folder = pc::GetFileInfo(path);
    return folder && folder->IsFolder();
}

bool clsFSO::IsDriveReady(const std::string& drive) {
    DebugOutput("clsFSO\\IsDriveReady: ");
    DebugOutput("\t  strDrive=" + drive);
    if (drive.empty() || !IsDriveLetter(drive[0])) return false;
    std::optional<pc::DriveInfo> info = pc::GetDriveInfo(UpperCase(drive.substr(0, 1)) + ":\\");
    return info && info->ready;
}

bool clsFSO::Drive_Exist(const std::string& drive, int& type) {
    DebugOutput("clsFSO\\Drive_Exist: ");
    DebugOutput("\t strDrive=" + drive);
    if (drive.substr(0, 2).find(':') != 1) return false;
    std::string letter = UpperCase(drive.substr(0, 1)), root = letter + ":\\";
    std::optional<pc::DriveInfo> info = pc::GetDriveInfo(root);
    if (!info || !IsDriveReady(drive)) return false;
    type = DriveTypeNumber(*info);
    pc::DiskSpace space = pc::GetDiskSpace(root).value_or(pc::DiskSpace{});
    driveFields = {letter,
                   info->shareName,
                   letter + ":",
                   root,
                   SerialText(info->serial),
                   info->volumeName,
                   FixedText(space.total, 0),
                   FixedText(space.available, 0),
                   FixedText(space.free, 0),
                   NumberText(type),
                   info->fileSystem,
                   info->ready ? "1" : "0"};
    return true;
}

std::vector<std::string> clsFSO::Available_Drives() {
    std::vector<std::string> roots = Split(pc::LogicalDrives(), '\0');
    std::erase(roots, std::string());
    return roots;
}

bool clsFSO::Get_Disk_Space(const std::string& drive, double& total, double& free, double& available) {
    std::optional<pc::DiskSpace> space = pc::GetDiskSpace(drive.substr(0, 1) + ":\\");
    if (!space) return false;
    total = space->total;
    free = space->free;
    available = space->available;
    return true;
}

bool clsFSO::Get_FileInfo(const std::string& file) {
    fileFields = {};
    std::optional<pc::FileInfo> info = pc::GetFileInfo(file);
    if (!info || info->IsFolder()) return false;
    constexpr uint32_t shownAttributes = 0x3F;
    fileFields = {file.substr(1, 1) == ":" ? file.substr(0, 2) : "",
                  file,
                  Get_Path(file),
                  NumberText(static_cast<int64_t>(info->size)),
                  pc::FileTypeName(file),
                  Get_Extension(file),
                  DateAndTime(info->accessed),
                  DateAndTime(info->modified),
                  DateAndTime(info->created),
                  Attribute_String(static_cast<int>(info->attributes & shownAttributes))};
    return true;
}

bool clsFSO::IsFileHidden(const std::string& file) {
    Get_FileInfo(file);
    const std::string& letters = fileFields[fieldAttributes];
    pc::ShowMessage(letters);
    return letters.find('H') != std::string::npos;
}

std::string clsFSO::Attribute_String(int attributes) {
    static constexpr struct {
        int bit;
        char letter;
    } rows[] = {{16, 'D'}, {1, 'R'}, {2, 'H'}, {4, 'S'}, {32, 'A'}};
    constexpr int volume = 8, largest = 55;
    if (attributes == volume) return "V";
    if (attributes < 1 || attributes > largest || (attributes & volume) != 0) return "";
    std::string letters;
    for (const auto& row : rows)
        if ((attributes & row.bit) != 0) letters += row.letter;
    return letters;
}

uint64_t clsFSO::GetFileCreationDate(const std::string& file) {
    std::optional<pc::FileInfo> info = pc::GetFileInfo(file);
    return info && !info->IsFolder() ? info->created : 0;
}

bool clsFSO::IsThisRestricted(const std::string& folder) {
    if (folder.empty()) return true;
    std::string path = JoinPath(folder, "_Test.$$$");
    bool isWritten = pc::WriteWholeFile(path, "X");
    pc::File file;
    isWritten = isWritten && file.Open(path, pc::FileMode::append) && file.Write("ABC", 3);
    file.Close();
    return !pc::RemoveFile(path) || !isWritten;
}
