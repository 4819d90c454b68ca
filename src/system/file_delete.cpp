// Deleting files and trees, with one attempt to take over what refuses.
//
// A link (junction, mount point, symbolic link) is only ever removed itself: it is not entered, and its owner and
// attributes, which may be those of what it points to, are left alone.
#include <algorithm>

#include "system/file_walk.h"
#include "system/files.h"
#include "system/paths.h"
#include "system/permissions.h"
#include "system/processes.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

constexpr uint32_t toolTimeOut = 2000000000;  // milliseconds

// A drive's or share's root, or nothing at all: never deleted as a tree.
bool IsRoot(const std::string& path) {
    std::string full = path.empty() ? "" : pc::FullPath(path);
    while (EndsWith(full, "\\")) full.pop_back();
    if (!StartsWith(full, "\\\\")) return full.find('\\') == std::string::npos || EndsWith(path, ":");
    size_t share = full.find('\\', 2);
    return share == std::string::npos || full.find('\\', share + 1) == std::string::npos;
}

bool IsLink(const std::string& path) {
    RedirectionOff redirectionOff;
    std::optional<pc::FileInfo> item = pc::GetFileInfo(path);
    return item && item->IsLink();
}

// Removes a file, an empty folder or a link as the listing described it, read-only or not.
bool RemoveItem(const std::string& path, uint32_t attributes) {
    auto remove = (attributes & pc::attributeFolder) != 0 ? pc::RemoveFolder : pc::RemoveFile;
    bool isReadOnly = (attributes & pc::attributeReadOnly) != 0;
    bool isLink = (attributes & pc::attributeReparse) != 0;
    if (isReadOnly && !isLink) pc::ChangeAttributes(path, pc::attributeNormal);
    return remove(path);
}

// Removes the tree from its leaves up and goes on past what refuses. False when anything is left.
bool RemoveTree(const std::string& root, uint32_t rootAttributes) {
    struct Pending {
        std::string path;
        uint32_t attributes;
        bool isEmptied;
    };
    constexpr uint32_t kindBits = pc::attributeFolder | pc::attributeReparse;
    bool isGone = true;
    std::vector<Pending> pending{{root, rootAttributes, (rootAttributes & kindBits) != pc::attributeFolder}};
    while (!pending.empty()) {
        if (pending.back().isEmptied) {
            isGone &= RemoveItem(pending.back().path, pending.back().attributes);
            pending.pop_back();
            continue;
        }
        pending.back().isEmptied = true;
        std::string folder = pending.back().path;
        size_t first = pending.size();
        for (const pc::FileInfo& entry : ListEntries(folder)) {
            std::string path = JoinPath(folder, entry.name);
            if ((entry.attributes & kindBits) == pc::attributeFolder) {
                pending.push_back({std::move(path), entry.attributes, false});
            } else {
                isGone &= RemoveItem(path, entry.attributes);
            }
        }
        std::reverse(pending.begin() + static_cast<ptrdiff_t>(first), pending.end());  // as they lie on the disk
    }
    return isGone;
}

void TraceKill(const char* procedure, const std::string& path, bool result) {
    DebugOutput(std::string("clsFSO\\") + procedure + ": ");
    DebugOutput("\t- passed: " + path);
    DebugOutput("\t- returned: " + TraceValue(result).Text());
}

void Recreate(const std::string& folder) {
    if (!MakeFolderPath(folder)) DebugOutput(folder + "clsFSO\\KillDir - Error recreating:  ");
}

}  // namespace

void clsFSO::ResetAttributes(const std::string& path) {
    if (IsLink(path)) return;
    std::string owner;
    TakeControl(path, true, toolTimeOut, owner);
    ChangeOwnerOfFile(path, owner);
    RedirectionOff redirectionOff;
    pc::ChangeAttributes(path, pc::attributeNormal);
    pc::ChangeAttributes(path, pc::attributeArchive);
}

bool clsFSO::KillFile(const std::string& path) {
    bool isGone = false;
    for (int attempt = 1; attempt <= 2 && !isGone; ++attempt) {
        if (attempt == 2) ResetAttributes(path);
        {
            RedirectionOff redirectionOff;
            pc::RemoveFile(path);
        }
        isGone = !DoesFileExist(path);
    }
    if (!isGone) DebugOutput(path + "clsFSO\\KillFile - Unable to delete:  ");
    TraceKill("KillFile", path, isGone);
    return isGone;
}

bool clsFSO::DelTree32(const std::string& path) {
    RedirectionOff redirectionOff;
    std::optional<pc::FileInfo> root = pc::GetFileInfo(path);
    if (!root) return pc::LastError() == 2 || pc::LastError() == 3;  // nothing is left of what was not there
    return root->IsFolder() && !IsRoot(path) && RemoveTree(path, root->attributes);
}

bool clsFSO::KillDir(const std::string& path, bool bRecreate) {
    if (!DoesDirExist(path)) {
        if (bRecreate) Recreate(path);
        TraceKill("KillDir", path, true);
        return true;
    }
    if (IsRoot(path)) {
        TraceKill("KillDir", path, false);
        return false;
    }
    for (int attempt = 1; attempt <= 2; ++attempt) {
        if (attempt == 2) ResetAttributes(path);
        if (!DelTree32(path)) continue;
        if (bRecreate) Recreate(path);
        return true;
    }
    if (!IsLink(path)) KillWhatIsLeft(path);
    return false;
}

// File by file, with the taking over of each, then the subfolders.
void clsFSO::KillWhatIsLeft(const std::string& folder) {
    std::vector<std::string> files, folders;
    {
        RedirectionOff redirectionOff;
        WalkTree(
            folder, true,
            [&](const std::string& path, const pc::FileInfo&) {
                files.push_back(path);
                return true;
            },
            [](const std::string&) { return true; });
        for (const pc::FileInfo& entry : ListEntries(folder))
            if (entry.IsFolder()) folders.push_back(JoinPath(folder, entry.name));
    }
    for (const std::string& path : files) {
        DoEvents();
        KillFile(path);
    }
    for (const std::string& path : folders) DelTree32(path);
}
