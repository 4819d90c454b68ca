#include "system/file_walk.h"
#include "system/paths.h"
#include "system/processes.h"
#include "system/program_state.h"
#include "system/text.h"

namespace {

constexpr size_t filesBetweenPumps = 128;

bool IsInsideCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

// * and ?, the latter for one character of UTF-8. Steps back to the last star only, so the time is bounded.
bool Matches(std::string_view name, std::string_view pattern) {
    size_t p = 0, n = 0, star = std::string::npos, mark = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            mark = n;
        } else if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == name[n])) {
            bool wholeCharacter = pattern[p++] == '?';
            ++n;
            while (wholeCharacter && n < name.size() && IsInsideCharacter(name[n])) ++n;
        } else if (star != std::string::npos) {
            p = star + 1;
            n = ++mark;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == std::string::npos;
}

}  // namespace

void FindFiles(const std::string& folder, const std::string& patterns, std::vector<std::string>& found, bool recurse) {
    std::vector<std::string> wanted;
    for (const std::string& pattern : Split(LowerCase(patterns), ';')) {
        wanted.push_back(pattern);
        // As the system has it, ".*" at the end stands for no extension too: "*.*" is every file.
        if (EndsWith(pattern, ".*")) wanted.push_back(pattern.substr(0, pattern.size() - 2));
    }
    size_t seen = 0;
    State().bCancelSearch = false;
    auto take = [&](const std::string& path, const pc::FileInfo& file) {
        if (++seen % filesBetweenPumps == 0) DoEvents();
        if (State().bCancelSearch) return false;
        std::string name = LowerCase(file.name);
        for (const std::string& pattern : wanted) {
            if (!Matches(name, pattern)) continue;
            found.push_back(path);
            break;
        }
        return true;
    };
    WalkTree(folder, recurse, take, [](const std::string&) {
        DoEvents();
        return !State().bCancelSearch;
    });
    State().bCancelSearch = false;
}
