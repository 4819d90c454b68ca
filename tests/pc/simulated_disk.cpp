// How a path finds its node, and what a test prepares on the disk.
#include "pc/simulated_disk.h"

#include <array>
#include <stdexcept>

#include "pc/names.h"

Disk& TheDisk() { return Pc().Of<Disk>(); }

namespace {

constexpr int mostLinks = 31;
constexpr uint32_t invalidName = 123, cantResolve = 1921;

struct Parsed {
    uint32_t error = 0;
    std::string root;  // "C:" or "\\server\share"
    std::vector<std::string> parts;
    bool closed = false, device = false;
};

bool IsDevice(std::string name) {
    name = Fold(name.substr(0, name.find_first_of(".:")));
    while (name.ends_with(' ')) name.pop_back();
    if (name.size() == 4 && (name.starts_with("COM") || name.starts_with("LPT")))
        return name[3] >= '1' && name[3] <= '9';
    return name == "CON" || name == "PRN" || name == "AUX" || name == "NUL";
}

// What Windows drops from a name: all trailing points and blanks of the last part, one point of the others.
void Trim(Parsed& parsed) {
    for (size_t i = 0; i < parsed.parts.size(); ++i) {
        std::string& part = parsed.parts[i];
        if (i + 1 == parsed.parts.size() && !parsed.closed) {
            while (part.ends_with('.') || part.ends_with(' ')) part.pop_back();
            parsed.device = IsDevice(part);
        } else if (part.ends_with('.')) {
            part.pop_back();
        }
    }
    std::erase(parsed.parts, "");
}

std::string MadeAbsolute(const std::string& path) {
    std::string current = FolderPart(Pc().programPath);
    if (path.starts_with("\\")) return current.substr(0, 2) + path;
    if (path.size() < 2 || path[1] != ':') return current + "\\" + path;
    if (path.size() > 2 && path[2] == '\\') return path;
    bool sameDrive = SameName(path.substr(0, 2), current.substr(0, 2));
    return (sameDrive ? current : path.substr(0, 2)) + "\\" + path.substr(2);
}

Parsed Parse(std::string path) {
    Parsed parsed;
    if (path.empty() || path.find('\0') != std::string::npos) return {.error = 3, .root = {}, .parts = {}};
    bool literal = path.starts_with("\\\\?\\");
    if (literal) path = path.substr(4);
    if (literal && SameName(path.substr(0, 4), "UNC\\")) path = "\\\\" + path.substr(4);
    if (!literal)
        for (char& character : path)
            if (character == '/') character = '\\';
    size_t start = 3;
    if (path.starts_with("\\\\")) {
        size_t share = path.find('\\', 2);
        if (share == std::string::npos || share + 1 == path.size()) return {.error = 161, .root = {}, .parts = {}};
        start = path.find('\\', share + 1);
        parsed.root = path.substr(0, start);
    } else {
        path = MadeAbsolute(path);
        parsed.root = path.substr(0, 2);
    }
    parsed.closed = path.ends_with('\\');
    for (std::string& part : Pieces(start < path.size() ? path.substr(start) : "", '\\')) {
        if (part == ".." && !literal) {
            if (!parsed.parts.empty()) parsed.parts.pop_back();
        } else if (!part.empty() && (part != "." || literal)) {
            parsed.parts.push_back(part);
        }
    }
    if (!literal) Trim(parsed);
    for (const std::string& part : parsed.parts)
        if (part.find_first_of("<>\"|?*:/") != std::string::npos || Units(part) > 255) parsed.error = invalidName;
    return parsed;
}

// A 32-bit program on a 64-bit system sees other folders at some names.
void Redirect(std::vector<std::string>& parts) {
    if (!Pc().is64Bit || Pc().redirectionOff || parts.size() < 2 || !SameName(parts[0], "Windows")) return;
    std::string second = Fold(parts[1]), third = parts.size() > 2 ? Fold(parts[2]) : "";
    if (second == "SYSNATIVE" && Pc().version.major >= 6) parts[1] = "System32";
    if (second == "REGEDIT.EXE" && parts.size() == 2) parts.insert(parts.begin() + 1, "SysWOW64");
    if (second != "SYSTEM32") return;
    for (const char* same : {"CATROOT", "CATROOT2", "DRIVERSTORE", "LOGFILES", "SPOOL"})
        if (third == same) return;
    if (third == "DRIVERS" && parts.size() > 3 && SameName(parts[3], "etc")) return;
    parts[1] = "SysWOW64";
}

std::string PathOf(const std::string& root, const std::vector<std::string>& parts) {
    return root + "\\" + Joined(parts, "\\");
}

Place Walk(const std::string& root, std::vector<std::string> parts, bool follow, int links) {
    Place place;
    place.root = root;
    place.path = PathOf(root, parts);
    auto drive = TheDisk().drives.find(Fold(root));
    if (drive == TheDisk().drives.end())
        place.error = root.starts_with("\\\\") ? 53 : 3;
    else if (!drive->second.ready)
        place.error = 21;
    if (place.error) return place;
    Node node = drive->second.root;
    for (size_t i = 0; i < parts.size(); ++i) {
        bool last = i + 1 == parts.size();
        auto child = node->children.find(Fold(parts[i]));
        if (child == node->children.end()) {
            place.error = last ? 2 : 3;
            if (last) place.parent = node;
            place.name = parts[i];
            return place;
        }
        if (child->second->IsLink() && (!last || follow)) {
            if (links >= mostLinks) {
                place.error = cantResolve;
                return place;
            }
            Parsed target = Parse(child->second->linkTarget);
            target.parts.insert(target.parts.end(), parts.begin() + static_cast<ptrdiff_t>(i) + 1, parts.end());
            return Walk(target.root, target.parts, follow, links + 1);
        }
        if (!last && !child->second->IsFolder()) {
            place.error = 3;
            return place;
        }
        place.parent = node;
        node = child->second;
    }
    place.node = node;
    if (!parts.empty()) place.name = parts.back();
    return place;
}

}  // namespace

Place Resolve(const std::string& path, bool follow, bool redirect) {
    Parsed parsed = Parse(path);
    Place place;
    place.device = parsed.device;
    place.error = parsed.device ? 2 : parsed.error;
    if (place.error) return place;
    if (redirect) Redirect(parsed.parts);
    place = Walk(parsed.root, parsed.parts, follow, 0);
    place.closed = parsed.closed && !parsed.parts.empty();
    // A backslash behind a file's name spoils it.
    if (place.node && place.closed && !place.node->IsFolder()) {
        place.node = nullptr;
        place.error = invalidName;
    }
    return place;
}

std::string PlainPath(const std::string& path) {
    Parsed parsed = Parse(path);
    if (parsed.root.empty()) return "";
    if (parsed.device) return "\\\\.\\" + parsed.parts.back();
    return PathOf(parsed.root, parsed.parts) + (parsed.closed && !parsed.parts.empty() ? "\\" : "");
}

Node AddNode(const Place& place, uint32_t attributes) {
    auto node = std::make_shared<FileNode>();
    node->name = place.name;
    node->attributes = attributes;
    node->created = node->accessed = node->modified = place.parent->modified = Pc().Now();
    node->owner = SidBytes("S-1-5-32-544");
    place.parent->children[Fold(place.name)] = node;
    return node;
}

void RemoveNode(const Place& place) {
    place.parent->children.erase(Fold(place.node->name));
    place.parent->modified = Pc().Now();
}

uint32_t RefusedChange(const Place& place) {
    if (!place.node && !place.CanBeMade()) return place.closed && place.error == 2 ? invalidName : place.error;
    if (place.node ? place.node->denied : place.parent->denied) return 5;
    std::string path = Fold(place.path);
    bool shared = path.starts_with("C:\\WINDOWS\\") || path.starts_with("C:\\PROGRAM FILES");
    return Pc().ordinaryUser && shared && !path.starts_with("C:\\WINDOWS\\TEMP\\") ? 5 : 0;
}

size_t TakeSpace(size_t size) {
    uint64_t taken = std::min<uint64_t>(size, Pc().bytesLeft);
    if (Pc().bytesLeft != UINT64_MAX) Pc().bytesLeft -= taken;
    return static_cast<size_t>(taken);
}

pc::FileInfo InfoOf(const FileNode& node, const std::string& name) {
    uint32_t attributes = node.attributes ? node.attributes : pc::attributeNormal;
    return {name, attributes, node.IsFolder() ? 0 : node.bytes.size(), node.created, node.accessed, node.modified};
}

bool StoreBytes(const std::string& path, const std::string& bytes) {
    Place place = Resolve(path, true);
    uint32_t code = RefusedChange(place);
    if (!code && place.node && (place.node->IsFolder() || (place.node->attributes & pc::attributeReadOnly))) code = 5;
    if (!code && place.node && place.node->InUse()) code = 32;
    if (code) return Pc().Refuse(code);
    Node node = place.node ? place.node : AddNode(place, pc::attributeArchive);
    size_t before = node->bytes.size();
    if (bytes.size() > before && TakeSpace(bytes.size() - before) < bytes.size() - before) return Pc().Refuse(112);
    node->bytes = bytes;
    node->modified = Pc().Now();
    return true;
}

// --- what a test prepares --------------------------------------------------------------------------------------------

namespace {

// Place of a path whose folders are made where they lack.
Place Prepare(const std::string& path) {
    Place place = Resolve(path, false, false);
    if (place.error == 3 && place.root.empty() == false) {
        std::string folder = FolderPart(PlainPath(path));
        if (folder != place.root && !folder.empty()) {
            Pc().AddFolder(folder);
            place = Resolve(path, false, false);
        }
    }
    if (!place.node && (place.error != 2 || place.device))
        throw std::invalid_argument("no such place on the simulated PC: " + path);
    return place;
}

FileNode& There(const std::string& path, bool follow = false) {
    Place place = Resolve(path, follow, false);
    if (!place.node) throw std::invalid_argument("not on the simulated PC: " + path);
    return *place.node;
}

}  // namespace

void SimulatedPc::AddFile(const std::string& path, const std::string& bytes, uint32_t attributes) {
    Place place = Prepare(path);
    Node node = place.node ? place.node : AddNode(place, attributes);
    node->attributes = attributes;
    node->bytes = bytes;
    node->modified = Now();
}

void SimulatedPc::AddFolder(const std::string& path, uint32_t attributes) {
    Place place = Prepare(path.ends_with('\\') ? path.substr(0, path.size() - 1) : path);
    Node node = place.node ? place.node : AddNode(place, attributes);
    node->attributes = attributes | pc::attributeFolder;
}

void SimulatedPc::AddJunction(const std::string& path, const std::string& target) {
    AddNode(Prepare(path), pc::attributeFolder | pc::attributeReparse)->linkTarget = target;
}

void SimulatedPc::AddFileLink(const std::string& path, const std::string& target) {
    AddNode(Prepare(path), pc::attributeArchive | pc::attributeReparse)->linkTarget = target;
}

void SimulatedPc::AddDrive(const std::string& root, uint32_t type, bool ready) {
    Drive& drive = TheDisk().drives[Fold(root)];
    drive.root = std::make_shared<FileNode>();
    drive.root->attributes = pc::attributeFolder | pc::attributeHidden | pc::attributeSystem;
    drive.type = type;
    drive.ready = ready;
}

void SimulatedPc::SetDisk(const std::string& drive, double totalBytes, double freeBytes) {
    TheDisk().drives.at(Fold(drive)).total = totalBytes;
    TheDisk().drives.at(Fold(drive)).free = freeBytes;
}

void SimulatedPc::Lock(const std::string& path) { There(path).locked = true; }
void SimulatedPc::Unlock(const std::string& path) { There(path).locked = false; }
void SimulatedPc::Deny(const std::string& path) { There(path).denied = true; }
void SimulatedPc::Allow(const std::string& path) { There(path).denied = false; }

void SimulatedPc::SetTimes(const std::string& path, pc::FileTime created, pc::FileTime accessed,
                           pc::FileTime modified) {
    FileNode& node = There(path);
    node.created = created;
    node.accessed = accessed;
    node.modified = modified;
}

bool SimulatedPc::Exists(const std::string& path) const { return Resolve(path, false, false).Found(); }

std::string SimulatedPc::FileText(const std::string& path) const {
    Place place = Resolve(path, true, false);
    return place.node ? place.node->bytes : "";
}

uint32_t SimulatedPc::Attributes(const std::string& path) const {
    Place place = Resolve(path, false, false);
    return place.node ? InfoOf(*place.node, "").attributes : 0;
}

std::string SimulatedPc::OwnerOf(const std::string& path) const { return SidText(There(path).owner); }

void SimulatedPc::DeleteTree(const std::string& path) {
    Place place = Resolve(path, false, false);
    if (place.node && place.parent) RemoveNode(place);
}

namespace {

void Collect(const FileNode& folder, const std::string& path, std::vector<std::string>& found) {
    for (const auto& [folded, child] : folder.children) {
        std::string full = path + "\\" + child->name;
        found.push_back(full + (child->IsFolder() ? "\\" : ""));
        if (!child->IsLink()) Collect(*child, full, found);
    }
}

}  // namespace

std::vector<std::string> SimulatedPc::Tree(const std::string& folder) const {
    std::vector<std::string> found;
    std::string path = folder.ends_with('\\') ? folder.substr(0, folder.size() - 1) : folder;
    Place place = Resolve(path, true, false);
    if (place.node) Collect(*place.node, path, found);
    return found;
}
