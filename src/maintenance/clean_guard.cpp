#include "maintenance/clean_guard.h"

#include "platform/files.h"
#include "system/text.h"
#include "system/trace.h"

bool IsPlainName(const std::string& name) {
    return !name.empty() && name.find_first_of("\\/:*?\"<>|") == std::string::npos && name.back() != '.' &&
           name.back() != ' ';
}

bool IsProfileFolder(const std::string& profile, const std::string& userProf) {
    const std::string head = userProf + "\\";
    return profile.size() > head.size() && EqualNoCase(profile.substr(0, head.size()), head) &&
           IsPlainName(profile.substr(head.size())) && IsOwnPath(userProf, profile.substr(userProf.size()));
}

bool IsOwnPath(const std::string& root, const std::string& tail) {
    if (root.size() < 3 || root[1] != ':' || tail.size() < 2) return false;
    const RedirectionOff off;
    size_t end = 0;
    while (end < tail.size()) {
        const size_t start = end + 1;
        end = tail.find('\\', start);
        if (end == std::string::npos) end = tail.size();
        if (!IsPlainName(tail.substr(start, end - start))) return false;
        const auto info = pc::GetFileInfo(root + tail.substr(0, end));
        if (!info) return false;
        if (info->IsLink()) {
            DebugOutput("    LINK PASSED OVER:  " + root + tail.substr(0, end));
            return false;
        }
    }
    return true;
}
