#include "system/paths.h"

#include "platform/files.h"
#include "platform/machine.h"
#include "platform/messages.h"
#include "system/build_constants.h"
#include "system/dates.h"
#include "system/program_state.h"
#include "system/settings.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

// Silent copy and move: no questions, folders made, security left as the target has it.
constexpr uint32_t quietFlags = 0x0A10, renameOnCollisionFlag = 8;

// Label and value of each detail line of a helper's own trace.
using Details = std::initializer_list<std::pair<const char*, std::string_view>>;

void Verbose(const char* name, Details details) {
    if (!State().bVerboseTrace) return;
    DebugOutput(std::string("CommonModule\\") + name + ": ");
    for (const auto& [label, value] : details) DebugOutput(std::string("\t- ") + label + std::string(value));
}

void Verbose(const char* name, const std::string& passed, const std::string& returned) {
    Verbose(name, {{"Passed: ", passed}, {"Returned: ", returned}});
}

std::string TrimSides(std::string text, bool left, bool right) {
    if (left) text = StripPreceedingCharacters(text, ' ');
    if (right) text = StripTrailingCharacters(text, ' ');
    return text;
}

size_t FindDelimiter(const std::string& text, const std::string& delimiter, bool first) {
    return delimiter.empty() ? std::string::npos : first ? text.find(delimiter) : text.rfind(delimiter);
}

void VerboseDelimiter(const char* name, const std::string& passed, const std::string& delimiter, bool first,
                      const std::string& returned) {
    Verbose(name, {{"Passed: ", passed},
                   {"Delimeter: ", delimiter},
                   {"bUseFirstDelimiter=", TraceValue(first).Text()},
                   {"Returned: ", returned}});
}

bool AppendText(const std::string& file, const std::string& text, bool overwrite) {
    pc::File out;
    if (!out.Open(file, overwrite ? pc::FileMode::write : pc::FileMode::append)) return false;
    std::string bytes = pc::ToAnsi(text) + "\r\n";
    return out.Write(bytes.data(), bytes.size());
}

bool HoldsLine(const std::string& file, const std::string& line) {
    auto bytes = pc::ReadWholeFile(file);
    if (!bytes) return false;
    for (const std::string& present : Split(ReplaceAll(pc::FromAnsi(*bytes), "\r", ""), '\n'))
        if (EqualNoCase(present, line)) return true;
    return false;
}

// The path, or the first of "name (2).txt", "name (3).txt" ... that is not taken.
std::string FreeName(const std::string& path) {
    size_t point = path.rfind('.');
    if (point == std::string::npos || path.find('\\', point) != std::string::npos) point = path.size();
    std::string name = path;
    for (int n = 2; pc::GetFileInfo(name); ++n)
        name = path.substr(0, point) + " (" + NumberText(n) + ")" + path.substr(point);
    return name;
}

// Moves a file over what is there, as the shell does also when that is read-only.
bool MoveOver(const std::string& from, const std::string& to) {
    if (pc::MovePath(from, to, true)) return true;
    auto there = pc::GetFileInfo(to);
    if (!there || there->IsFolder() || !(there->attributes & pc::attributeReadOnly)) return false;
    if (!pc::ChangeAttributes(to, pc::attributeNormal)) return false;
    if (pc::MovePath(from, to, true)) return true;
    pc::ChangeAttributes(to, there->attributes);
    return false;
}

// Moves one item to a path. A folder goes whole, or item by item into one that is there or when something in it is
// in use.
bool MoveItem(const std::string& from, const pc::FileInfo& item, const std::string& to) {
    if (!item.IsFolder() || item.IsLink()) return MoveOver(from, to);
    if (StartsWith(LowerCase(to + "\\"), LowerCase(from + "\\"))) return false;  // into itself
    if (!pc::GetFileInfo(to) && pc::MovePath(from, to, false)) return true;
    if (!MakeFolderPath(to)) return false;
    bool all = MoveFileQuiet(from + "\\*.*", to);
    return pc::RemoveFolder(from) && all;
}

}  // namespace

TargetSystem& Target() {
    static TargetSystem target;
    if (target.sTargetDrive.empty()) target.sTargetDrive = pc::Environment("systemdrive");
    return target;
}

std::string StripDriveLetter(const std::string& path) {
    std::string result = path;
    if (path.size() >= 2 && path[1] == ':') result = path.substr(2);
    if (path.size() >= 3 && path[0] == '"' && path[2] == ':') result = "\"" + path.substr(3);
    Verbose("StripDriveLetter", path, result);
    return result;
}

std::string StripPath(const std::string& path) {
    size_t at = path.rfind('\\');
    std::string result = at == std::string::npos ? path : path.substr(at + 1);
    Verbose("StripPath", path, result);
    return result;
}

std::string StripNameFromPathNoDebug(const std::string& path) {
    size_t at = path.rfind('\\');
    return at == std::string::npos ? "" : path.substr(0, at);
}

std::string StripNameFromPath(const std::string& path) {
    if (path.empty()) {
        DebugOutput("StripNameFromPath Function was passed an empty string!");
        return "";
    }
    std::string result = StripNameFromPathNoDebug(path);
    Verbose("StripNameFromPath", path, result);
    return result;
}

std::string Strip(std::string text, const std::string& remove) {
    std::string passed = State().bVerboseTrace ? text : "";
    // From the start each time, so that what a removal brings together goes too. Looking a little before the gap is
    // enough for that, and stays linear.
    size_t at = remove.empty() ? std::string::npos : text.find(remove);
    while (at != std::string::npos) {
        text.erase(at, remove.size());
        at = text.find(remove, at >= remove.size() ? at - remove.size() + 1 : 0);
    }
    Verbose("Strip", {{"Passed: ", passed}, {"Remove String: ", remove}, {"Returned: ", text}});
    return text;
}

std::string StripEndOfString(const std::string& text, const std::string& delimiter, bool useFirstDelimiter,
                             bool trimLeft, bool trimRight) {
    size_t at = FindDelimiter(text, delimiter, useFirstDelimiter);
    std::string result = TrimSides(at == std::string::npos ? text : text.substr(0, at), trimLeft, trimRight);
    VerboseDelimiter("StripEndOfString", text, delimiter, useFirstDelimiter, result);
    return result;
}

std::string StripBeginningOfString(const std::string& text, const std::string& delimiter, bool useFirstDelimiter,
                                   bool trimLeft, bool trimRight) {
    size_t at = FindDelimiter(text, delimiter, useFirstDelimiter);
    std::string result =
        TrimSides(at == std::string::npos ? text : text.substr(at + delimiter.size()), trimLeft, trimRight);
    VerboseDelimiter("StripBeginningOfString", text, delimiter, useFirstDelimiter, result);
    return result;
}

std::string StripTrailingCharacters(const std::string& text, char character) {
    size_t last = text.find_last_not_of(character);
    std::string result = last == std::string::npos ? "" : text.substr(0, last + 1);
    Verbose("StripTrailingCharacters",
            {{"Passed: ", text}, {"sTrailingCharacter: ", {&character, 1}}, {"Returned: ", result}});
    return result;
}

std::string StripPreceedingCharacters(const std::string& text, char character) {
    size_t first = text.find_first_not_of(character);
    std::string result = first == std::string::npos ? "" : text.substr(first);
    Verbose("StripPreceedingCharacters",
            {{"Passed: ", text}, {"sCharacter: ", {&character, 1}}, {"Returned: ", result}});
    return result;
}

std::string StripCommandArguments(const std::string& command) {
    std::string text = StripEndOfString(StripEndOfString(command, "/"), ",");
    size_t point = text.rfind('.');
    if (text.find('-') == std::string::npos || point == std::string::npos) return text;
    size_t blank = text.find(' ', point);
    return blank == std::string::npos ? text : text.substr(0, blank);
}

bool SaveTextToFileNoDebug(const std::string& file, const std::string& text, bool overwrite, bool noDuplicates) {
    std::string folder = StripNameFromPathNoDebug(file);
    RedirectionOff redirection;
    if (!DoesDirExistNoDebug(folder)) {
        pc::ShellMakeFolder(folder);
        if (!DoesDirExistNoDebug(folder)) pc::MakeFolder(folder);
        if (!DoesDirExistNoDebug(folder)) return false;
    }
    if (!overwrite && noDuplicates && HoldsLine(file, text)) return true;
    return AppendText(file, text, overwrite);
}

bool SaveTextToFile(const std::string& file, const std::string& text, bool overwrite, bool noDuplicates) {
    bool saved = SaveTextToFileNoDebug(file, text, overwrite, noDuplicates);
    std::string folder = StripNameFromPathNoDebug(file);
    if (!saved && !DoesDirExistNoDebug(folder))
        DebugOutput("SaveTextToFile - Directory does not exist / Cannot create directory:  " + folder);
    return saved;
}

std::string NowText() {
    pc::ClockTime now = pc::LocalNow();
    return pc::ShortDateText(now) + " " + pc::LongTimeText(now);
}

std::string FormatDate(bool withHyphens, const std::string& dateText) {
    auto date = ParseDate(dateText.empty() ? pc::ShortDateText(pc::LocalNow()) : dateText);
    if (!date) return dateText;
    bool dayFirst = DoesFileExist(State().settingsFile) && Eq1(Setting("Config", "FormatDateDayFirst"));
    auto two = [](int number) { return (number < 10 ? "0" : "") + NumberText(number); };
    std::string separator = withHyphens ? "-" : "/";
    std::string day = two(date->day), month = two(date->month);
    return (dayFirst ? day : month) + separator + (dayFirst ? month : day) + separator + NumberText(date->year);
}

std::string VersionString(const std::string& tag, const std::string& suffix) {
    pc::ProgramVersion version = pc::GetProgramVersion();
    std::string text = pc::ProductName() + "   v" + NumberText(version.major) + "." + NumberText(version.minor);
    if (version.revision != 0) text += "." + NumberText(version.revision);
    if (!tag.empty()) text += tag == "A" ? " ALPHA" : tag == "B" ? " BETA" : " " + tag;
    return suffix.empty() ? text : text + "  - " + suffix;
}

bool IsNewerVersion(const std::string& oldVersion, const std::string& newVersion) {
    // The weights are as panels in the field have them.
    constexpr int64_t weights[] = {100000, 1000, 10};
    int64_t numbers[2] = {};
    const std::string* texts[] = {&oldVersion, &newVersion};
    for (int i = 0; i < 2; ++i) {
        std::vector<std::string> parts = Split(*texts[i], '.');
        if (parts.size() != 3) return false;
        for (size_t k = 0; k < 3; ++k) {
            const std::string& part = parts[k];
            if (part.empty() || part.size() > 9 || part.find_first_not_of("0123456789") != std::string::npos)
                return false;
            numbers[i] += weights[k] * std::stoll(part);
        }
    }
    return numbers[1] > numbers[0];
}

std::string FileOrDir(const std::string& path) {
    return DoesFileExist(path) ? "file" : DoesDirExist(path) ? "dir" : "neither";
}

bool CopyFileQuiet(const std::string& source, const std::string& target, bool renameOnCollision) {
    RedirectionOff redirection;
    return pc::ShellCopy(source, target, quietFlags | (renameOnCollision ? renameOnCollisionFlag : 0)) == 0;
}

bool MoveFileQuiet(const std::string& source, const std::string& target, bool renameOnCollision) {
    RedirectionOff redirection;
    std::string pattern = StripPath(source), folder = StripNameFromPathNoDebug(source);
    std::string to = StripTrailingCharacters(target, '\\');
    auto place = [&](const std::string& path) { return renameOnCollision ? FreeName(path) : path; };
    if (pattern.find_first_of("*?") == std::string::npos) {
        auto item = pc::GetFileInfo(source);
        return item && MoveItem(source, *item, place(DoesDirExistNoDebug(to) ? to + "\\" + pattern : to));
    }
    // One by one: a file that is in use does not keep the others from moving.
    std::vector<pc::FileInfo> items;
    bool all = pc::ListFolder(folder, pattern, [&](const pc::FileInfo& item) {
        items.push_back(item);
        return true;
    });
    if (!items.empty() && !MakeFolderPath(to)) return false;
    for (const pc::FileInfo& item : items)
        all = MoveItem(folder + "\\" + item.name, item, place(to + "\\" + item.name)) && all;
    return all;
}

bool MakeFolderPath(const std::string& folder) {
    RedirectionOff redirection;
    pc::MakeSureFolderPathExists(EndsWith(folder, "\\") ? folder : folder + "\\");
    return DoesDirExist(folder);
}

std::string ShowFilePicker(const std::string& startFolder, const std::string& title, const std::string& filter) {
    // Pairs of text and pattern; one part alone is both.
    std::string parts = ReplaceAll(filter, ":", "|");
    return pc::PickFile(startFolder, title, parts.find('|') == std::string::npos ? parts + "|" + parts : parts);
}
