// Keys, values and access lists of the registry.
#include "platform/registry.h"

#include "pc/names.h"
#include "pc/simulated_hives.h"

namespace {

constexpr int32_t invalidHandle = 6, badPath = 161, keyDeleted = 1018, badDescriptor = 1338;
constexpr uint32_t deleteAccess = 0x10000;

uintptr_t nextHandle = 0x203;

// The open entry that grants the access, or null with the code.
OpenKeyEntry* Entry(const pc::Key& key, uint32_t access, int32_t& code) {
    auto found = TheHives().open.find(key.value);
    OpenKeyEntry* entry = found == TheHives().open.end() ? nullptr : &found->second;
    code = !entry                               ? invalidHandle
           : entry->node->deleted               ? keyDeleted
           : (entry->access & access) != access ? pc::errorAccessDenied
                                                : 0;
    return code ? nullptr : entry;
}

int32_t Opened(const KeyNode& node, uint32_t access, const std::string& shown, pc::Key& key) {
    key = pc::Key();
    key.value = nextHandle += 4;
    TheHives().open[key.value] = {node, access & pc::keyAllAccess, shown};
    return 0;
}

// 0 when the path can be a key's.
int32_t CheckPath(uint32_t root, const std::string& path) {
    if (root == pc::dynData) return invalidHandle;
    return path.starts_with('\\') ? badPath : 0;
}

std::string Shown(uint32_t type, const std::string& data) {
    std::string text = data;
    if (text.ends_with('\0')) text.pop_back();
    if (type == pc::typeSz) return text;
    if (type == pc::typeExpandSz) return "expand " + text;
    if (type == pc::typeMultiSz) {
        if (text.ends_with('\0')) text.pop_back();
        return "multi " + Joined(Pieces(text, '\0'), "|");
    }
    std::string bytes;
    for (char byte : data) bytes += " " + Hex(static_cast<unsigned char>(byte));
    if (type != pc::typeDword || data.size() != 4) return "binary" + bytes;
    uint32_t number = 0;
    for (size_t i = 4; i-- > 0;) number = number << 8 | static_cast<unsigned char>(data[i]);
    return "dword " + Decimal(number);
}

uint16_t Word(const std::string& bytes, size_t at) {
    return static_cast<uint16_t>(static_cast<unsigned char>(bytes[at]) | static_cast<unsigned char>(bytes[at + 1])
                                                                             << 8);
}

}  // namespace

namespace pc {

Key::~Key() {
    if (value) TheHives().open.erase(value);
}

Key& Key::operator=(Key&& other) noexcept {
    if (this != &other) {
        if (value) TheHives().open.erase(value);
        value = other.value;
        other.value = 0;
    }
    return *this;
}

namespace {

int32_t OpenExisting(uint32_t root, const std::string& path, uint32_t access, Key& key) {
    if (Pc().Fails(errorAccessDenied)) return errorAccessDenied;
    std::string shown;
    KeyNode node = FindKey(root, path, access, shown);
    if (!node) return errorFileNotFound;
    return Grants(*node, access, shown) ? Opened(node, access, shown, key) : errorAccessDenied;
}

}  // namespace

int32_t OpenKey(uint32_t root, const std::string& path, uint32_t access, Key& key) {
    Pc().Begin();
    key = Key();
    int32_t code = CheckPath(root, path);
    return code ? code : OpenExisting(root, path, access, key);
}

int32_t CreateKey(uint32_t root, const std::string& path, uint32_t access, Key& key) {
    Pc().Begin();
    key = Key();
    if (int32_t code = CheckPath(root, path)) return code;
    std::string shown, above;
    if (FindKey(root, path, access, shown)) return OpenExisting(root, path, access, key);
    // The nearest key that is there must let its subkeys be made.
    KeyNode parent;
    for (std::string folder = path; !parent && !folder.empty();) {
        folder = FolderPart(folder);
        parent = FindKey(root, folder, access, above);
    }
    if (!parent) return errorFileNotFound;
    if (!Grants(*parent, keyCreateSubKey, above) || Pc().ChangeFails(errorAccessDenied)) return errorAccessDenied;
    KeyNode node = FindKey(root, path, access, shown, true);
    Pc().Note("make key " + shown);
    return Opened(node, access, shown, key);
}

int32_t CloseKey(Key& key) {
    bool wasOpen = TheHives().open.erase(key.value) != 0;
    key.value = 0;
    return wasOpen ? 0 : invalidHandle;
}

int32_t QueryValue(const Key& key, const std::string& name, uint32_t& type, std::string& data) {
    Pc().Begin();
    data.clear();
    int32_t code;
    OpenKeyEntry* entry = Entry(key, keyQueryValue, code);
    if (!entry) return code;
    if (Pc().Fails(errorAccessDenied)) return errorAccessDenied;
    const RegistryValue* value = entry->node->Find(name);
    if (!value) return errorFileNotFound;
    type = value->type;
    data = value->data;
    return 0;
}

int32_t SetValue(const Key& key, const std::string& name, uint32_t type, const std::string& data) {
    Pc().Begin();
    int32_t code;
    OpenKeyEntry* entry = Entry(key, keySetValue, code);
    if (!entry) return code;
    if (Pc().ChangeFails(errorAccessDenied)) return errorAccessDenied;
    if (RegistryValue* value = entry->node->Find(name))
        *value = {value->name, type, data};
    else
        entry->node->values.push_back({name, type, data});
    Pc().Note("set " + entry->path + "\\" + name + " = " + Shown(type, data));
    return 0;
}

int32_t DeleteValue(const Key& key, const std::string& name) {
    Pc().Begin();
    int32_t code;
    OpenKeyEntry* entry = Entry(key, keySetValue, code);
    if (!entry) return code;
    RegistryValue* value = entry->node->Find(name);
    if (!value) return errorFileNotFound;
    if (Pc().ChangeFails(errorAccessDenied)) return errorAccessDenied;
    entry->node->values.erase(entry->node->values.begin() + (value - entry->node->values.data()));
    Pc().Note("delete value " + entry->path + "\\" + name);
    return 0;
}

int32_t EnumKey(const Key& key, uint32_t index, std::string& name) {
    Pc().Begin();
    name.clear();
    int32_t code;
    OpenKeyEntry* entry = Entry(key, keyEnumerateSubKeys, code);
    if (!entry) return code;
    if (Pc().Fails(errorAccessDenied)) return errorAccessDenied;
    if (index >= entry->node->keys.size()) return errorNoMoreItems;
    name = std::next(entry->node->keys.begin(), index)->second->name;
    return 0;
}

int32_t EnumValue(const Key& key, uint32_t index, std::string& name, uint32_t& type, std::string& data) {
    Pc().Begin();
    name.clear();
    int32_t code;
    OpenKeyEntry* entry = Entry(key, keyQueryValue, code);
    if (!entry) return code;
    if (Pc().Fails(errorAccessDenied)) return errorAccessDenied;
    if (index >= entry->node->values.size()) return errorNoMoreItems;
    const RegistryValue& value = entry->node->values[index];
    name = value.name;
    type = value.type;
    data = value.data;
    return 0;
}

int32_t DeleteSubkey(const Key& parent, const std::string& name, uint32_t) {
    Pc().Begin();
    int32_t code;
    OpenKeyEntry* entry = Entry(parent, 0, code);
    if (!entry) return code;
    if (name.empty()) return 87;
    KeyNode above = entry->node, node = above;
    for (const std::string& part : Pieces(name, '\\')) {
        above = node;
        auto found = node->keys.find(Fold(part));
        if (found == node->keys.end()) return errorFileNotFound;
        node = found->second;
    }
    if (!node->keys.empty() || !Grants(*node, deleteAccess, entry->path)) return errorAccessDenied;
    if (Pc().ChangeFails(errorAccessDenied)) return errorAccessDenied;
    node->deleted = true;
    above->keys.erase(Fold(node->name));
    Pc().Note("delete key " + entry->path + "\\" + name);
    return 0;
}

int32_t GetKeySecurity(const Key& key, std::string& descriptor) {
    Pc().Begin();
    descriptor.clear();
    int32_t code;
    OpenKeyEntry* entry = Entry(key, keyReadControl, code);
    if (!entry) return code;
    if (Pc().Fails(errorAccessDenied)) return errorAccessDenied;
    std::string list = entry->node->accessList;
    if (list.empty())
        list = AccessList({{"S-1-5-32-544", keyAllAccess}, {"S-1-5-18", keyAllAccess}, {"S-1-5-32-545", 0x20019}});
    // Revision, control bits, no owner, group and audit list, and the access list behind the header of 20 bytes.
    descriptor = std::string("\x01\0", 2);
    descriptor += static_cast<char>(entry->node->control & 0xFF);
    descriptor += static_cast<char>(entry->node->control >> 8);
    descriptor += std::string(12, '\0') + std::string("\x14\0\0\0", 4) + list;
    return 0;
}

int32_t SetKeySecurity(const Key& key, const std::string& descriptor) {
    Pc().Begin();
    int32_t code;
    OpenKeyEntry* entry = Entry(key, keyWriteDac, code);
    if (!entry) return code;
    if (descriptor.size() < 20 || descriptor[0] != 1) return badDescriptor;
    uint32_t at = Word(descriptor, 16) | static_cast<uint32_t>(Word(descriptor, 18)) << 16;
    uint16_t control = Word(descriptor, 2);
    if (at && (at + 8 > descriptor.size() || at + Word(descriptor, at + 2) > descriptor.size())) return badDescriptor;
    if (Pc().ChangeFails(errorAccessDenied)) return errorAccessDenied;
    // Without a list everybody may do everything.
    bool hasList = (control & 4) && at;
    entry->node->accessList =
        hasList ? descriptor.substr(at, Word(descriptor, at + 2)) : AccessList({{"S-1-1-0", keyAllAccess}});
    entry->node->control = control | 0x8004;
    Pc().Note("security " + entry->path);
    return 0;
}

}  // namespace pc
