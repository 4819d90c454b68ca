// Listings, totals and the newest of several files.
#include <algorithm>

#include "platform/machine.h"
#include "platform/messages.h"
#include "system/file_walk.h"
#include "system/files.h"
#include "system/paths.h"
#include "system/processes.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

// Year, month and day as one number that sorts, such as 20261122.
int SortableDate(int year, int month, int day) { return (year * 100 + month) * 100 + day; }

int SortableDate(pc::FileTime time) {
    pc::ClockTime local = pc::LocalFromFileTime(time);
    return SortableDate(local.year, local.month, local.day);
}

bool IsRealDate(int year, int month, int day) {
    constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (year < 100 || month < 1 || month > 12 || day < 1) return false;
    bool isLeap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return day <= days[month - 1] + (month == 2 && isLeap ? 1 : 0);
}

// Three numbers in the order of the user's short date, or with a year of four digits first. 0 when it is no date.
int ParseDate(const std::string& text) {
    std::string plain = Trim(text);
    for (char& c : plain)
        if (c == '-' || c == '.') c = '/';
    std::vector<std::string> pieces = Split(plain, '/');
    if (pieces.size() != 3) return 0;
    int numbers[3];
    for (size_t i = 0; i < 3; ++i) {
        const std::string& piece = pieces[i];
        if (piece.empty() || piece.size() > 4 || piece.find_first_not_of("0123456789") != std::string::npos) return 0;
        numbers[i] = 0;
        for (char c : piece) numbers[i] = numbers[i] * 10 + (c - '0');
    }
    static constexpr int yearMonthDay[3][3] = {{2, 0, 1}, {2, 1, 0}, {0, 1, 2}};
    const int* place = yearMonthDay[pieces[0].size() == 4 ? 2 : pc::ShortDateOrder()];
    int year = numbers[place[0]], month = numbers[place[1]], day = numbers[place[2]];
    if (year < 30) year += 2000;
    if (year < 100) year += 1900;
    return IsRealDate(year, month, day) ? SortableDate(year, month, day) : 0;
}

// Of a pattern with a star only the extension counts; one without a star takes every file.
struct FilePattern {
    explicit FilePattern(const std::string& pattern)
        : takesAll(pattern == "*.*" || pattern.find('*') == std::string::npos), extension(ExtensionInName(pattern)) {}
    bool Matches(const std::string& name) const { return takesAll || EqualNoCase(ExtensionInName(name), extension); }

    bool takesAll;
    std::string extension;
};

bool AnyFolder(const std::string&) { return true; }

}  // namespace

std::vector<pc::FileInfo> ListEntries(const std::string& folder) {
    std::vector<pc::FileInfo> entries;
    pc::ListFolder(folder, "*", [&](const pc::FileInfo& entry) {
        entries.push_back(entry);
        return true;
    });
    return entries;
}

bool WalkTree(const std::string& folder, bool subFolders,
              const std::function<bool(const std::string& path, const pc::FileInfo&)>& onFile,
              const std::function<bool(const std::string& path)>& onFolder) {
    struct Pending {
        std::string path;
        bool isEntered;
    };
    std::vector<Pending> pending{{folder, true}};
    for (bool isRoot = true; !pending.empty(); isRoot = false) {
        Pending current = std::move(pending.back());
        pending.pop_back();
        if (!isRoot && !onFolder(current.path)) return false;
        if (!current.isEntered) continue;
        size_t first = pending.size();
        for (const pc::FileInfo& entry : ListEntries(current.path)) {
            std::string path = JoinPath(current.path, entry.name);
            if (entry.IsFolder()) {
                pending.push_back({std::move(path), subFolders && !entry.IsLink()});
            } else if (!onFile(path, entry)) {
                return false;
            }
        }
        std::reverse(pending.begin() + static_cast<std::ptrdiff_t>(first), pending.end());
    }
    return true;
}

std::string clsFSO::Get_FileList(const std::string& folder, bool bSubFolders, const std::string& pattern) {
    if (folder.empty()) {
        DebugOutput("cFSO\\Get_FileList - Passed no string, aborting!");
        return "";
    }
    auto goesOn = [this] {
        DoEvents();
        return !cancel;
    };
    if (!goesOn()) return "";
    FilePattern wanted(pattern);
    std::string list;
    auto addFile = [&](const std::string& path, const pc::FileInfo& file) {
        if (!goesOn()) return false;
        if (!wanted.Matches(file.name)) return true;
        list += path;
        list += ';';
        if (!wanted.takesAll) {
            ++Count;
            if (onFileFound) onFileFound(path, Count);
        }
        return true;
    };
    bool isWhole = WalkTree(folder, bSubFolders, addFile, [&](const std::string&) { return goesOn(); });
    if (!isWhole && bSubFolders) list.clear();
    return list;
}

std::string clsFSO::Get_DirList(const std::string& folder, bool bSubFolders) {
    if (folder.empty()) {
        DebugOutput("cFSO\\Get_DirList - Passed no string, aborting!");
        return "";
    }
    std::string list;
    auto addFolder = [&](const std::string& path) {
        if (cancel) return false;
        list += path;
        list += ';';
        return true;
    };
    WalkTree(
        folder, bSubFolders, [](const std::string&, const pc::FileInfo&) { return true; }, addFolder);
    return list;
}

double clsFSO::Get_Totals(const std::string& folder, int searchType, const std::string& patterns, bool bSubFolders) {
    bool comparesDates = searchType >= 2 && searchType <= 4;
    int date = comparesDates ? ParseDate(patterns) : 0;
    if (comparesDates && date == 0) {
        pc::ShowMessage("An invalid date was passed.", "Invalid date format");
        return 0;
    }
    FilePattern wanted(searchType == 1 ? patterns : "*.*");
    double total = 0;
    auto addFile = [&](const std::string& path, const pc::FileInfo& file) {
        DoEvents();
        if (cancel) return false;
        if (!wanted.Matches(file.name) || !Get_FileInfo(path)) return true;
        bool isHit = searchType == 1 || (searchType == 2 && date <= SortableDate(file.accessed)) ||
                     (searchType == 3 && date <= SortableDate(file.modified)) ||
                     (searchType == 4 && date <= SortableDate(file.created)) ||
                     (searchType == 5 && EqualNoCase(patterns, fileFields[fieldType]));
        if (!isHit) return true;
        total += searchType == 1 ? static_cast<double>(file.size) : 1;
        ++Count;
        if (onFileCounted) onFileCounted(path, Count);
        return true;
    };
    if (!folder.empty()) WalkTree(folder, bSubFolders, addFile, AnyFolder);
    return total;
}

double clsFSO::GetDirSize(const std::string& folder) {
    double size = 0;
    auto addSize = [&](const std::string&, const pc::FileInfo& file) {
        size += static_cast<double>(file.size);
        return true;
    };
    WalkTree(folder, true, addSize, AnyFolder);
    return size;
}

std::vector<std::string> clsFSO::TextSearch(const std::string& folder, const std::string& text) {
    std::vector<std::string> found;
    std::string bytes = pc::ToAnsi(text);
    auto searchFile = [&](const std::string& path, const pc::FileInfo&) {
        std::optional<std::string> content = pc::ReadWholeFile(path);
        if (content && content->find(bytes) != std::string::npos) found.push_back(path);
        return true;
    };
    WalkTree(folder, false, searchFile, AnyFolder);
    if (found.empty()) found.push_back("N/A");
    return found;
}

std::string clsFSO::ReturnNewerFile(const std::string& file1, const std::string& file2) {
    uint64_t created1 = GetFileCreationDate(file1), created2 = GetFileCreationDate(file2);
    if (created1 != created2) return created1 > created2 ? file1 : file2;
    return !DoesFileExist(file1) && DoesFileExist(file2) ? file2 : file1;
}

std::string clsFSO::ReturnNewestFileFromSpec(const std::string& folder, const std::string& pattern, bool bSubFolders) {
    std::vector<std::string> found;
    FindFiles(folder, pattern, found, bSubFolders);
    std::string newest;
    for (const std::string& path : found) newest = newest.empty() ? path : ReturnNewerFile(newest, path);
    return newest;
}
