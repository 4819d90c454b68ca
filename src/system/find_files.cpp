#include "platform/files.h"
#include "system/paths.h"
#include "system/processes.h"
#include "system/program_state.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

// File name patterns with * and ?, case ignored. "*.*" is every name, also one without a dot.
bool Matches(std::string_view pattern, std::string_view name) {
    size_t p = 0, n = 0, star = std::string::npos, mark = 0;
    while (n < name.size()) {
        if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == name[n])) {
            ++p;
            ++n;
        } else if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            mark = n;
        } else if (star != std::string::npos) {
            p = star + 1;
            n = ++mark;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*') ++p;
    return p == pattern.size();
}

class Search {
public:
    Search(const std::string& patternList, std::vector<std::string>& foundPaths, bool recurseToo)
        : found(foundPaths), recurse(recurseToo) {
        for (const std::string& pattern : Split(LowerCase(patternList), ';')) {
            all = all || pattern == "*.*" || pattern == "*";
            if (!pattern.empty()) patterns.push_back(pattern);
        }
    }

    void Walk(const std::string& folder) {
        std::vector<std::string> deeper;
        pc::ListFolder(folder, "*", [&](const pc::FileInfo& item) {
            if (item.IsFolder()) {
                // A link to a folder is not entered: what it points to is no part of this tree.
                if (recurse && !item.IsLink()) deeper.push_back(folder + "\\" + item.name);
            } else if (IsWanted(item.name)) {
                found.push_back(folder + "\\" + item.name);
            }
            return true;
        });
        DoEvents();
        for (const std::string& next : deeper) {
            if (State().bCancelSearch) return;
            Walk(next);
        }
    }

private:
    bool IsWanted(const std::string& name) const {
        if (all) return true;
        std::string lower = LowerCase(name);
        for (const std::string& pattern : patterns)
            if (Matches(pattern, lower)) return true;
        return false;
    }

    std::vector<std::string> patterns;
    std::vector<std::string>& found;
    bool recurse, all = false;
};

}  // namespace

void FindFiles(const std::string& folder, const std::string& patterns, std::vector<std::string>& found, bool recurse) {
    State().bCancelSearch = false;
    RedirectionOff redirection;
    Search(patterns, found, recurse).Walk(StripTrailingCharacters(folder, '\\'));
    State().bCancelSearch = false;
}
