// The file services that features delete, move, copy, list and rename with.
//
// Lists are single strings with ";" behind every item. A tree delete never follows a junction, mount point or
// symbolic link: it removes the link itself, what it points to stays.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

class clsFSO {
public:
    double Count = 0;  // files found by Get_FileList and Get_Totals
    int AccessErrNum = 0;
    bool cancel = false;  // stops listings at the next item
    std::function<void(const std::string&path, double count)> onFileFound, onFileCounted;

    enum FileField {
        fieldDrive,
        fieldPath,
        fieldParentFolder,
        fieldSize,
        fieldType,
        fieldExtension,
        fieldDateLastAccessed,
        fieldDateLastModified,
        fieldDateCreated,
        fieldAttributes
    };
    std::array<std::string, 10> fileFields;  // filled by Get_FileInfo
    enum DriveField {
        driveLetter,
        shareName,
        drivePath,
        rootFolder,
        serialText,
        volumeName,
        totalSize,
        availableSpace,
        freeSpace,
        driveType,
        fileSystem,
        readyText
    };
    std::array<std::string, 12> driveFields;  // filled by Drive_Exist

    bool Get_FileProperties(const std::string& path);
    bool KillFile(const std::string& path);
    // False: some of the tree may be left.
    bool KillDir(const std::string& path, bool bRecreate);
    std::string StripDrive(const std::string& path);
    bool IsDriveReady(const std::string& drive);
    bool Create_Dir_Struct(const std::string& path);
    std::string Get_Extension(const std::string& path);
    std::string Get_FileNoExtension(const std::string& path);
    std::string Get_Filename(const std::string& path);
    std::string Get_Path(const std::string& path);
    std::string Get_Version(const std::string& file);
    std::string Get_VB_Version(const std::string& file);
    bool Drive_Exist(const std::string& drive, int& type);
    bool File_Exist(const std::string& path);
    bool Folder_Exist(const std::string& path);
    std::vector<std::string> Available_Drives();
    bool IsThisRestricted(const std::string& folder);
    bool Get_FileInfo(const std::string& file);
    bool IsFileHidden(const std::string& file);
    std::string Attribute_String(int attributes);
    bool Move_Dir(const std::string& source, const std::string& destination);
    bool Move_File(const std::string& source, const std::string& destination, bool bOverwrite);
    bool Copy_File(const std::string& source, const std::string& destination, bool bOverwrite);
    bool DelTree32(const std::string& path);
    std::string Add_Trailing_Slash(const std::string& path);
    std::string Remove_Trailing_Slash(const std::string& path);
    std::vector<std::string> TextSearch(const std::string& folder, const std::string& text);
    double Get_Totals(const std::string& folder, int searchType, const std::string& patterns, bool bSubFolders);
    std::string Get_FileList(const std::string& folder, bool bSubFolders, const std::string& pattern);
    std::string Get_DirList(const std::string& folder, bool bSubFolders);
    std::string Create_Tmp_Filename(std::string& folder);
    std::string Create_Tmp_Folder();
    double GetDirSize(const std::string& folder);
    std::string Remove_Nulls(const std::string& text);
    std::string Create_Tmp_Name(int length);
    double Rnd2(double low, double high);
    std::string BrowseForFolder(const std::string& prompt);
    std::string Shrink_2_Fit(const std::string& path, size_t length);
    // Bytes. False when the drive does not answer.
    bool Get_Disk_Space(const std::string& drive, double& total, double& free, double& available);
    void FileToArray(const std::string& path, std::vector<std::string>& array);
    bool RenFile(const std::string& oldPath, const std::string& newName);
    uint64_t GetFileCreationDate(const std::string& file);  // file time, 0 when missing
    void ResetAttributes(const std::string& path);
    std::string ReturnNewerFile(const std::string& file1, const std::string& file2);
    std::string ReturnNewestFileFromSpec(const std::string& folder, const std::string& pattern, bool bSubFolders);

private:
    void KillWhatIsLeft(const std::string& folder);
    bool PlaceFile(const char* procedure, const std::string& source, const std::string& destination, bool bOverwrite,
                   bool isMove);
    bool AskReplace(const std::string& source, const std::string& destination);
};
