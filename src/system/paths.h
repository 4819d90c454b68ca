// Cutting texts and paths, the Windows folders of the system under work, and date and version text.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The system under work. SetCleanTarget fills it; this program always works on the running system.
struct TargetSystem {
    std::string sTargetDrive;  // "C:"
    std::string sWinDir, sSysDir;
    std::vector<std::string> profiles;  // profile folders
};
TargetSystem& Target();

std::string StripDriveLetter(const std::string& path);
std::string StripPath(const std::string& path);          // behind the last backslash
std::string StripNameFromPath(const std::string& path);  // before the last backslash; empty without one
std::string StripNameFromPathNoDebug(const std::string& path);
std::string Strip(std::string text, const std::string& remove);
std::string StripEndOfString(const std::string& text, const std::string& delimiter, bool useFirstDelimiter = false,
                             bool trimLeft = false, bool trimRight = false);
std::string StripBeginningOfString(const std::string& text, const std::string& delimiter,
                                   bool useFirstDelimiter = false, bool trimLeft = false, bool trimRight = false);
std::string StripTrailingCharacters(const std::string& text, char character);
std::string StripPreceedingCharacters(const std::string& text, char character);
std::string StripCommandArguments(const std::string& command);

// Whether the drive ("D:") belongs to another Windows than the running one.
bool IsGuestOS(const std::string& drive);
std::string GetWinDir(bool askUser = false);
std::string GetSysDir(bool askUser = false);
std::string GetUserProf(bool askUser = false);
bool IsVistaProfileLayout();
std::string GetRealFilePath(const std::string& commandText);
void LoadProfileList(bool askUser = false);

// Makes the folder; appends or overwrites (in the ANSI code page, closed by CR LF). noDuplicates: a line that is there
// already (case ignored) is not added again.
bool SaveTextToFile(const std::string& file, const std::string& text, bool overwrite, bool noDuplicates = false);
bool SaveTextToFileNoDebug(const std::string& file, const std::string& text, bool overwrite, bool noDuplicates = false);
// Date text, today when dateText is empty; order by the setting FormatDateDayFirst.
std::string FormatDate(bool withHyphens, const std::string& dateText);
// Date and time now in the system's short text form, as the last-run facts hold it.
std::string NowText();
std::string VersionString(const std::string& tag = "", const std::string& suffix = "");
// Three numbers with points between; false when newVersion is not newer or either is malformed.
bool IsNewerVersion(const std::string& oldVersion, const std::string& newVersion);
std::string FileOrDir(const std::string& path);  // "file", "dir" or "neither"
// Silent copy and move over what is there, wildcards allowed in the last part, redirection off. A missing target folder
// is made for a wildcard. A move goes on past a file that is in use, which then stays; false when anything stayed.
bool CopyFileQuiet(const std::string& source, const std::string& target, bool renameOnCollision = false);
bool MoveFileQuiet(const std::string& source, const std::string& target, bool renameOnCollision = false);
bool MakeFolderPath(const std::string& folder);
// Full paths of the files that match one of the patterns (joined by ";"); a link to a folder is not entered.
void FindFiles(const std::string& folder, const std::string& patterns, std::vector<std::string>& found, bool recurse);
std::string ShowFilePicker(const std::string& startFolder, const std::string& title, const std::string& filter);
