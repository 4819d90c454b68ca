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

// Files and folders with the second attempt: what refuses is taken over once. Also listings and details of files.
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

    // Opens the shell's property sheet.
    bool Get_FileProperties(const std::string& path);
    // Deletes, once more after taking the file over; true when no such file is left.
    bool KillFile(const std::string& path);
    // False: some of the tree may be left.
    bool KillDir(const std::string& path, bool bRecreate);
    // Without "x:"; a class identifier in braces and a path without drive come back as they are.
    std::string StripDrive(const std::string& path);
    // By the first character alone.
    bool IsDriveReady(const std::string& drive);
    // Makes a folder with its parents; false at the first that cannot be made.
    bool Create_Dir_Struct(const std::string& path);
    // Parts of a path by its text alone: "txt", "name", "name.txt" and "C:\folder" of "C:\folder\name.txt".
    std::string Get_Extension(const std::string& path);
    std::string Get_FileNoExtension(const std::string& path);
    std::string Get_Filename(const std::string& path);
    std::string Get_Path(const std::string& path);
    // "1.2.3.4" of the version resource, empty without one; the other its first four characters and the last one.
    std::string Get_Version(const std::string& file);
    std::string Get_VB_Version(const std::string& file);
    // drive such as "C:\"; fills driveFields. type: 1 removable, 2 fixed, 3 network, 4 CD, 5 RAM.
    bool Drive_Exist(const std::string& drive, int& type);
    bool File_Exist(const std::string& path);
    bool Folder_Exist(const std::string& path);
    // Roots such as "C:\".
    std::vector<std::string> Available_Drives();
    // Whether a file cannot be made, added to and deleted in the folder.
    bool IsThisRestricted(const std::string& folder);
    // Fills fileFields; false, and all empty, when there is no such file.
    bool Get_FileInfo(const std::string& file);
    // Shows the attribute letters in a message box besides.
    bool IsFileHidden(const std::string& file);
    // "DRHSA" by the attribute bits, "V" for 8 alone; empty for numbers beyond these.
    std::string Attribute_String(int attributes);
    // False when the source is no folder or something has the new name.
    bool Move_Dir(const std::string& source, const std::string& destination);
    // Without bOverwrite the user is asked before a file is replaced. False leaves both files as they were.
    bool Move_File(const std::string& source, const std::string& destination, bool bOverwrite);
    bool Copy_File(const std::string& source, const std::string& destination, bool bOverwrite);
    // Read-only ones too; goes on past what refuses. False when anything is left.
    bool DelTree32(const std::string& path);
    // With one trailing backslash, or with none.
    std::string Add_Trailing_Slash(const std::string& path);
    std::string Remove_Trailing_Slash(const std::string& path);
    // Files of the folder itself that hold the text, upper and lower case told apart; "N/A" alone when there is none.
    std::vector<std::string> TextSearch(const std::string& folder, const std::string& text);
    // searchType 1: bytes of the files that match the pattern. Number of files used (2), changed (3) or made (4) on the
    // date in patterns or later, or of the type named there (5).
    double Get_Totals(const std::string& folder, int searchType, const std::string& patterns, bool bSubFolders);
    // Only the extension of a pattern with a star counts; one without lists every file.
    std::string Get_FileList(const std::string& folder, bool bSubFolders, const std::string& pattern);
    std::string Get_DirList(const std::string& folder, bool bSubFolders);
    // Makes an empty file, or a folder, with a new name; full path. An empty folder becomes that for temporary files.
    std::string Create_Tmp_Filename(std::string& folder);
    std::string Create_Tmp_Folder();
    // Bytes, with all below.
    double GetDirSize(const std::string& folder);
    // Up to the first NUL.
    std::string Remove_Nulls(const std::string& text);
    // "_" and random letters and digits, in lower case.
    std::string Create_Tmp_Name(int length);
    double Rnd2(double low, double high);
    // Empty on cancel.
    std::string BrowseForFolder(const std::string& prompt);
    // Cut to that many characters for a label: head, "..." and as much of the tail as fits.
    std::string Shrink_2_Fit(const std::string& path, size_t length);
    // Bytes. False when the drive does not answer.
    bool Get_Disk_Space(const std::string& drive, double& total, double& free, double& available);
    // Lines of a text file into the elements there are; a missing file is made, empty.
    void FileToArray(const std::string& path, std::vector<std::string>& array);
    // newName's folder is passed over. What has the name already is deleted first.
    bool RenFile(const std::string& oldPath, const std::string& newName);
    uint64_t GetFileCreationDate(const std::string& file);  // file time, 0 when missing
    // Takes the file or tree over and clears its attributes but Archive.
    void ResetAttributes(const std::string& path);
    // By the time of making; the first when both are of one age.
    std::string ReturnNewerFile(const std::string& file1, const std::string& file2);
    // Empty when nothing matches.
    std::string ReturnNewestFileFromSpec(const std::string& folder, const std::string& pattern, bool bSubFolders);

private:
    void KillWhatIsLeft(const std::string& folder);
    bool PlaceFile(const char* procedure, const std::string& source, const std::string& destination, bool bOverwrite,
                   bool isMove);
    bool AskReplace(const std::string& source, const std::string& destination);
};
