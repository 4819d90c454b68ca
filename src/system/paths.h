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

// A quote before the drive stays.
std::string StripDriveLetter(const std::string& path);
std::string StripPath(const std::string& path);          // behind the last backslash
std::string StripNameFromPath(const std::string& path);  // before the last backslash; empty without one
// The same without a trace line for an empty path.
std::string StripNameFromPathNoDebug(const std::string& path);
// Every occurrence removed, also those that a removal brings together.
std::string Strip(std::string text, const std::string& remove);
// Before, and behind, the last delimiter (or the first); the whole text without one. The flags take blanks off.
std::string StripEndOfString(const std::string& text, const std::string& delimiter, bool useFirstDelimiter = false,
                             bool trimLeft = false, bool trimRight = false);
std::string StripBeginningOfString(const std::string& text, const std::string& delimiter,
                                   bool useFirstDelimiter = false, bool trimLeft = false, bool trimRight = false);
// The character removed from the end, or the front, as often as it stands there.
std::string StripTrailingCharacters(const std::string& text, char character);
std::string StripPreceedingCharacters(const std::string& text, char character);
// The file part of a command line from a Run value, as far as it can be told.
std::string StripCommandArguments(const std::string& command);

// Whether the drive ("D:") belongs to another Windows than the running one.
bool IsGuestOS(const std::string& drive);
// Folders of the system under work, without trailing backslash; empty when it is another one, nothing is found and the
// user is not asked or picks nothing.
std::string GetWinDir(bool askUser = false);
std::string GetSysDir(bool askUser = false);
std::string GetUserProf(bool askUser = false);
// Whether the drive under work has "\Users" with its companions, and "\ProgramData".
bool IsVistaProfileLayout();
// The file that a command text of the registry starts, in lower case, on the drive under work.
std::string GetRealFilePath(const std::string& commandText);
// Fills the profile folders of the system under work.
void LoadProfileList(bool askUser = false);

// Makes the folder; appends or overwrites (in the ANSI code page, closed by CR LF). noDuplicates: a line that is there
// already (case ignored) is not added again.
bool SaveTextToFile(const std::string& file, const std::string& text, bool overwrite, bool noDuplicates = false);
bool SaveTextToFileNoDebug(const std::string& file, const std::string& text, bool overwrite, bool noDuplicates = false);
// Date text, today when dateText is empty; order by the setting FormatDateDayFirst.
std::string FormatDate(bool withHyphens, const std::string& dateText);
// Date and time now in the system's short text form, as the last-run facts hold it.
std::string NowText();
// "Brevanta   v4.2 BETA  - suffix"; tag "A" and "B" stand for alpha and beta.
std::string VersionString(const std::string& tag = "", const std::string& suffix = "");
// Three numbers with points between; false when newVersion is not newer or either is malformed.
bool IsNewerVersion(const std::string& oldVersion, const std::string& newVersion);
std::string FileOrDir(const std::string& path);  // "file", "dir" or "neither"
// Silent copy and move over what is there, wildcards allowed in the last part, redirection off. A missing target folder
// is made for a wildcard. A move goes on past a file that is in use, which then stays; false when anything stayed.
bool CopyFileQuiet(const std::string& source, const std::string& target, bool renameOnCollision = false);
bool MoveFileQuiet(const std::string& source, const std::string& target, bool renameOnCollision = false);
// Makes the folder and its parents; true when it is there.
bool MakeFolderPath(const std::string& folder);
// Full paths of the files that match one of the patterns (joined by ";"); a link to a folder is not entered.
void FindFiles(const std::string& folder, const std::string& patterns, std::vector<std::string>& found, bool recurse);
// filter is pairs of text and pattern, all parted by "|"; one pattern alone is its own text. Empty on cancel.
std::string ShowFilePicker(const std::string& startFolder, const std::string& title, const std::string& filter);
