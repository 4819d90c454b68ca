// Files and folders: names, attributes, whole items.
#include "platform/files.h"

#include <algorithm>

#include "pc/names.h"
#include "pc/simulated_disk.h"

namespace {

constexpr uint32_t notFound = 2, pathMissing = 3, denied = 5, inUse = 32, exists = 80, alreadyExists = 183,
                   notAFolder = 267, notEmpty = 145;
constexpr uint32_t settable = 0x27 | 0x80 | 0x2000;  // what SetFileAttributes changes

bool HoldsUsedFile(const FileNode& folder) {
    return std::any_of(folder.children.begin(), folder.children.end(), [](const auto& child) {
        return child.second->InUse() || child.second->images ||
               (!child.second->IsLink() && HoldsUsedFile(*child.second));
    });
}

// Why this item cannot go away from where it is; 0 when it can.
uint32_t RefusedRemoval(const Place& place) {
    if (!place.node) return place.error;
    if (!place.parent) return denied;
    if (uint32_t code = RefusedChange(place)) return code;
    return place.node->attributes & pc::attributeReadOnly ? denied : place.node->InUse() ? inUse : 0;
}

}  // namespace

namespace pc {

uint32_t LastError() { return Pc().lastError; }

std::optional<FileInfo> GetFileInfo(const std::string& path) {
    if (Pc().Fails(denied)) return {};
    Place place = Resolve(path);
    if (!place.node) {
        Pc().Refuse(place.error);
        return {};
    }
    std::string name = path;
    while (name.ends_with('\\')) name.pop_back();
    return InfoOf(*place.node, LastPart(name));
}

bool ChangeAttributes(const std::string& path, uint32_t attributes) {
    Pc().Begin();
    Place place = Resolve(path);
    uint32_t code = place.node ? RefusedChange(place) : place.error;
    if (code) return Pc().Refuse(code);
    if (Pc().ChangeFails(denied)) return false;
    uint32_t& kept = place.node->attributes;
    kept = (kept & ~settable) | (attributes & settable & ~attributeNormal);
    Pc().Note("attributes " + place.path + " = " + Decimal(attributes));
    return true;
}

bool CanOpenFile(const std::string& path) {
    auto info = GetFileInfo(path);
    return info && !info->IsFolder();
}

bool RemoveFile(const std::string& path) {
    Pc().Begin();
    Place place = Resolve(path);
    uint32_t code = RefusedRemoval(place);
    if (!code && (place.node->IsFolder() || place.node->images)) code = denied;
    if (code) return Pc().Refuse(code);
    if (Pc().ChangeFails(inUse)) return false;
    RemoveNode(place);
    Pc().Note("delete " + place.path);
    return true;
}

bool RemoveFolder(const std::string& path) {
    Pc().Begin();
    Place place = Resolve(path);
    uint32_t code = place.node && !place.node->IsFolder() ? notAFolder : RefusedRemoval(place);
    if (!code && !place.node->IsLink() && !place.node->children.empty()) code = notEmpty;
    if (code) return Pc().Refuse(code);
    if (Pc().ChangeFails(inUse)) return false;
    RemoveNode(place);
    Pc().Note("remove folder " + place.path);
    return true;
}

bool MakeFolder(const std::string& path) {
    Pc().Begin();
    // Here, and only here, a backslash at the end says nothing new.
    Place place = Resolve(path.size() > 3 && path.ends_with('\\') ? path.substr(0, path.size() - 1) : path);
    uint32_t code = place.device   ? notAFolder
                    : !place.node  ? RefusedChange(place)
                    : place.parent ? alreadyExists
                                   : denied;
    if (code) return Pc().Refuse(code);
    if (Pc().ChangeFails(denied)) return false;
    AddNode(place, attributeFolder);
    Pc().Note("make folder " + place.path);
    return true;
}

bool MakeSureFolderPathExists(const std::string& path) {
    size_t start = path.size() > 1 && path[1] == ':' ? 3 : 1;
    if (path.starts_with("\\\\")) {
        size_t share = path.find('\\', 2);
        start = share == std::string::npos ? 0 : path.find('\\', share + 1) + 1;
        if (start == 0) return Pc().Refuse(161);
    }
    for (size_t end; (end = path.find('\\', start)) != std::string::npos; start = end + 1) {
        std::string folder = path.substr(0, end);
        auto info = GetFileInfo(folder);
        if (info && !info->IsFolder()) return Pc().Refuse(notAFolder);
        if (!info && !MakeFolder(folder) && Pc().lastError != alreadyExists) return false;
    }
    return true;
}

uint32_t ShellMakeFolder(const std::string& path) {
    if (path.size() < 2 || (path[1] != ':' && !path.starts_with("\\\\"))) return 161;
    if (Resolve(path).node) return alreadyExists;
    return MakeSureFolderPathExists(path.ends_with('\\') ? path : path + "\\") ? 0 : Pc().lastError;
}

namespace {

bool IsBelow(const std::string& path, const std::string& folder) { return Fold(path).starts_with(Fold(folder) + "\\"); }

uint32_t RefusedMove(const Place& from, const Place& to, bool replace) {
    if (!from.node) return from.error;
    if (!from.parent) return denied;
    if (uint32_t code = RefusedChange(from)) return code;
    if (from.node->InUse()) return inUse;
    if (from.node->IsFolder() && !from.node->IsLink() && HoldsUsedFile(*from.node)) return denied;
    if (!to.node) return RefusedChange(to) ? RefusedChange(to) : IsBelow(to.path, from.path) ? inUse : 0;
    if (to.node == from.node) return 0;
    if (!replace) return alreadyExists;
    uint32_t lost = attributeReadOnly | attributeFolder;
    if ((to.node->attributes & lost) || to.node->InUse() || to.node->images || from.node->IsFolder()) return denied;
    return RefusedChange(to);
}

}  // namespace

bool MovePath(const std::string& from, const std::string& to, bool replace) {
    Pc().Begin();
    Place source = Resolve(from), target = Resolve(to);
    uint32_t code = RefusedMove(source, target, replace);
    if (!code && source.node->IsFolder() && !SameName(source.root, target.root)) code = denied;
    if (!code && source.node->images && !SameName(source.root, target.root)) code = denied;
    if (code) return Pc().Refuse(code);
    if (Pc().ChangeFails(inUse)) return false;
    if (target.node && target.node != source.node) RemoveNode(target);
    Node node = source.node;
    RemoveNode(source);
    node->name = target.name;
    target.parent->children[Fold(target.name)] = node;
    Pc().Note("move " + source.path + " -> " + target.path);
    return true;
}

bool CopyOneFile(const std::string& from, const std::string& to, bool failIfExists) {
    Pc().Begin();
    Place source = Resolve(from, true), target = Resolve(to, true);
    uint32_t code = !source.node                                                   ? source.error
                    : source.node->IsFolder() || source.node->denied               ? denied
                    : source.node->locked                                          ? inUse
                    : target.node && failIfExists                                  ? exists
                    : target.node && (target.node->attributes & 0x13)              ? denied
                    : target.node && (target.node->InUse() || target.node->images) ? inUse
                                                                                   : RefusedChange(target);
    if (!code && source.node == target.node) code = inUse;
    if (code) return Pc().Refuse(code);
    if (Pc().ChangeFails(112)) return false;
    if (target.node) RemoveNode(target);
    if (TakeSpace(source.node->bytes.size()) < source.node->bytes.size()) return Pc().Refuse(112);
    Node node = AddNode(target, source.node->attributes | attributeArchive);
    node->bytes = source.node->bytes;
    node->modified = source.node->modified;
    Pc().Note("copy " + source.path + " -> " + target.path);
    return true;
}

bool ListFolder(const std::string& folder, const std::string& pattern,
                const std::function<bool(const FileInfo&)>& each) {
    if (folder.empty()) return Pc().Refuse(pathMissing);
    if (Pc().Fails(denied)) return false;
    Place place = Resolve(folder, true);
    if (!place.node) return Pc().Refuse(place.error == notFound ? pathMissing : place.error);
    if (!place.node->IsFolder()) return Pc().Refuse(notAFolder);
    if (place.node->denied) return Pc().Refuse(denied);
    std::vector<FileInfo> found;
    for (const auto& [folded, child] : place.node->children)
        if (MatchesPattern(child->name, pattern)) found.push_back(InfoOf(*child, child->name));
    for (const FileInfo& info : found)
        if (!each(info)) return true;
    return true;
}

bool DisableRedirection(uintptr_t& cookie) {
    if (!Pc().is64Bit) return Pc().Refuse(Pc().version.major < 6 && Pc().version.minor < 2 ? 120 : 1);
    cookie = Pc().redirectionOff;
    return Pc().redirectionOff = true;
}

void RevertRedirection(uintptr_t cookie) { Pc().redirectionOff = cookie != 0; }

std::string FullPath(const std::string& path) { return PlainPath(path); }

uint32_t SetFileOwner(const std::string& path, const std::string& sid) {
    Pc().Begin();
    SimulatedPc& machine = Pc();
    Place place = Resolve(path, true);
    std::string text = SidText(sid);
    if (text.empty()) return 1337;
    if (!place.node) return place.error;
    if (place.node->denied) return denied;
    const auto& held = machine.heldPrivileges;
    bool own = text == machine.UserSid() || text == "S-1-5-32-544";
    if (!own && std::find(held.begin(), held.end(), "SeRestorePrivilege") == held.end()) return 1307;
    if (machine.ChangeFails(denied)) return machine.lastError;
    place.node->owner = sid;
    for (const auto& [folded, known] : machine.accounts)
        if (known.second == text) {
            text = known.first;
            break;
        }
    machine.Note("owner " + place.path + " = " + text);
    return 0;
}

}  // namespace pc
