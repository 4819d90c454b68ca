// What drives, versions and the shell tell about files, temporary files, and the shell's operations on many files.
#include "pc/names.h"
#include "pc/simulated_disk.h"

namespace {

constexpr uint32_t flagRenameOnCollision = 0x8;
constexpr int32_t deniedSource = 0x78;

Drive* DriveOf(const std::string& path) {
    auto found = TheDisk().drives.find(Fold(path.substr(0, 2)));
    return found == TheDisk().drives.end() ? nullptr : &found->second;
}

// A name beside the taken one, as the shell finds it.
std::string FreePath(const std::string& path) {
    std::string extension = FoldedExtension(path), stem = path;
    if (!extension.empty()) stem = path.substr(0, path.size() - extension.size() - 1);
    std::string tail = path.substr(stem.size()), copy = stem + " - Copy" + tail;
    for (uint64_t i = 2; Resolve(copy).node; ++i) copy = stem + " - Copy (" + Decimal(i) + ")" + tail;
    return copy;
}

int32_t Copy(const Place& from, std::string to, uint32_t flags) {
    Place target = Resolve(to);
    bool folder = from.node->IsFolder();
    if (target.node && (flags & flagRenameOnCollision)) target = Resolve(to = FreePath(to));
    if (!target.node) {
        if (uint32_t code = RefusedChange(target)) return static_cast<int32_t>(code);
    } else if (target.node->IsFolder() != folder || target.node == from.node) {
        return deniedSource;
    } else if (!folder && (target.node->InUse() || target.node->images)) {
        return 32;
    }
    if (from.node->locked) return 32;
    if (from.node->denied) return deniedSource;
    Node node = target.node ? target.node : AddNode(target, from.node->attributes & ~pc::attributeReparse);
    if (!folder) {
        if (TakeSpace(from.node->bytes.size()) < from.node->bytes.size()) return 112;
        node->bytes = from.node->bytes;
        node->modified = from.node->modified;
        return 0;
    }
    std::vector<Node> children;
    for (const auto& child : from.node->children) children.push_back(child.second);
    for (const Node& child : children)
        if (int32_t code = Copy(Resolve(from.path + "\\" + child->name), to + "\\" + child->name, flags)) return code;
    return 0;
}

std::vector<std::string> Sources(const std::string& item) {
    std::string pattern = LastPart(item);
    if (pattern.find_first_of("*?") == std::string::npos) return {item};
    std::vector<std::string> sources;
    Place folder = Resolve(FolderPart(item), true);
    if (!folder.node) return {};
    for (const auto& [folded, child] : folder.node->children)
        if (MatchesPattern(child->name, pattern)) sources.push_back(FolderPart(item) + "\\" + child->name);
    return sources;
}

}  // namespace

namespace pc {

std::optional<DiskSpace> GetDiskSpace(const std::string& folder) {
    if (Pc().Fails(21)) return {};
    Place place = Resolve(folder, true);
    Drive* drive = DriveOf(PlainPath(folder));
    if (!place.node || !drive) {
        Pc().Refuse(place.error == 2 ? 3 : place.error);
        return {};
    }
    return DiskSpace{drive->total, drive->free, drive->free};
}

std::optional<DriveInfo> GetDriveInfo(const std::string& root) {
    Drive* drive = DriveOf(root);
    if (!drive) return {};
    DriveInfo info;
    info.type = drive->type;
    info.ready = drive->ready;
    if (!drive->ready) return info;
    info.serial = drive->serial;
    info.volumeName = drive->type == 3 ? "System" : "Volume";
    info.fileSystem = drive->type == 5 ? "CDFS" : drive->type == 2 ? "FAT32" : "NTFS";
    if (drive->type == 4) info.shareName = "\\\\server\\share";
    return info;
}

std::string LogicalDrives() {
    std::string roots;
    for (const auto& [root, drive] : TheDisk().drives)
        if (root.size() == 2) roots += root + "\\" + '\0';
    return roots + '\0';
}

std::string FileVersion(const std::string& path) {
    // A program carries its version in its bytes here.
    std::string bytes = Pc().FileText(path);
    size_t at = bytes.find("version="), end = bytes.find(';', at);
    return at == std::string::npos ? "" : bytes.substr(at + 8, end - at - 8);
}

std::string FileTypeName(const std::string& path) {
    static const std::map<std::string, std::string> known = {
        {"TXT", "Text Document"}, {"EXE", "Application"}, {"BAT", "Windows Batch File"}, {"LNK", "Shortcut"}};
    Place place = Resolve(path, true);
    if (!place.node) return "";
    if (place.node->IsFolder()) return "File folder";
    std::string extension = FoldedExtension(path);
    auto found = known.find(extension);
    return found != known.end() ? found->second : extension.empty() ? "File" : extension + " File";
}

std::string TempFolder() {
    std::string folder = Environment("tmp").empty() ? Environment("temp") : Environment("tmp");
    return folder.empty() ? WindowsFolder() + "\\" : folder + "\\";
}

std::string MakeTempFile(const std::string& folder, const std::string& prefix) {
    Place place = Resolve(folder, true);
    if (!place.node || !place.node->IsFolder()) {
        Pc().Refuse(267);
        return "";
    }
    std::string head = folder.ends_with('\\') ? folder : folder + "\\", path;
    do path = head + CutToUnits(prefix, 3) + Hex(TheDisk().tempNumber++) + ".tmp";
    while (Resolve(path).node);
    File file;
    return file.Open(path, FileMode::createNew) ? path : "";
}

int32_t ShellCopy(const std::string& from, const std::string& to, uint32_t flags) {
    Pc().Begin();
    std::vector<std::string> sources = Sources(from);
    int32_t missing = Pc().version.major < 6 ? 0x402 : 2;
    if (sources.empty()) return missing;
    if (Pc().ChangeFails(5)) return deniedSource;
    std::string head = to.ends_with('\\') ? to.substr(0, to.size() - 1) : to;
    bool wild = from.find_first_of("*?") != std::string::npos;
    Place folder = Resolve(head, true);
    bool into = (folder.node && folder.node->IsFolder()) || wild;
    if (into && !folder.node && !MakeSureFolderPathExists(head + "\\")) return static_cast<int32_t>(Pc().lastError);
    int32_t result = 0;
    for (const std::string& source : sources) {
        Place place = Resolve(source);
        if (!result) result = place.node ? Copy(place, into ? head + "\\" + LastPart(source) : head, flags) : missing;
    }
    if (!result) Pc().Note("shell copy " + from + " -> " + to);
    return result;
}

}  // namespace pc
