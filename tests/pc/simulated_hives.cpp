// Where a key path leads, who may do what there, and what a test prepares in the registry.
#include "pc/simulated_hives.h"

#include <algorithm>
#include <stdexcept>

#include "pc/names.h"

Hives& TheHives() { return Pc().Of<Hives>(); }

RegistryValue* RegistryNode::Find(const std::string& valueName) {
    auto found = std::find_if(values.begin(), values.end(),
                              [&](const RegistryValue& value) { return SameName(value.name, valueName); });
    return found == values.end() ? nullptr : &*found;
}

namespace {

struct RootName {
    const char* name;
    uint32_t number;
};
constexpr RootName rootNames[] = {{"HKLM", pc::localMachine},
                                  {"HKCU", pc::currentUser},
                                  {"HKU", pc::usersRoot},
                                  {"HKCR", pc::classesRoot},
                                  {"HKCC", pc::currentConfig}};

// Keys below HKLM\Software that both views share.
constexpr const char* sharedKeys[] = {"WOW6432NODE",
                                      "POLICIES",
                                      "REGISTEREDAPPLICATIONS",
                                      "CLIENTS",
                                      "MICROSOFT\\SYSTEMCERTIFICATES",
                                      "MICROSOFT\\WINDOWS NT\\CURRENTVERSION\\PROFILELIST",
                                      "MICROSOFT\\WINDOWS\\CURRENTVERSION\\GROUP POLICY"};
// Keys below ...\Software\Classes that each view has of its own.
constexpr const char* splitClasses[] = {"CLSID", "INTERFACE", "DIRECTSHOW", "MEDIA TYPE", "MEDIAFOUNDATION"};

bool IsAtOrBelow(const std::string& folded, const std::string& top) {
    return folded == top || folded.starts_with(top + "\\");
}

// What a 32-bit program sees at this place; parts counts from behind the root.
void TakeView(const std::string& root, std::vector<std::string>& parts) {
    if (parts.empty() || !SameName(parts[0], "Software")) return;
    std::string below = Fold(Joined({parts.begin() + 1, parts.end()}, "\\"));
    if (IsAtOrBelow(below, "CLASSES")) {
        if (parts.size() > 2)
            for (const char* key : splitClasses)
                if (SameName(parts[2], key)) {
                    parts.insert(parts.begin() + 2, "Wow6432Node");
                    return;
                }
        return;
    }
    if (root != "HKLM" || parts.size() < 2) {
        if (root == "HKLM") parts.push_back("Wow6432Node");
        return;
    }
    for (const char* shared : sharedKeys)
        if (IsAtOrBelow(below, shared)) return;
    parts.insert(parts.begin() + 1, "Wow6432Node");
}

KeyNode Descend(KeyNode node, const std::vector<std::string>& parts, bool make) {
    for (const std::string& part : parts) {
        auto found = node->keys.find(Fold(part));
        if (found != node->keys.end()) {
            node = found->second;
            continue;
        }
        if (!make) return nullptr;
        auto child = std::make_shared<RegistryNode>();
        child->name = part;
        node->keys[Fold(part)] = child;
        node = child;
    }
    return node;
}

uint16_t Word(const std::string& bytes, size_t at) {
    return static_cast<uint16_t>(static_cast<unsigned char>(bytes[at]) | static_cast<unsigned char>(bytes[at + 1])
                                                                             << 8);
}
uint32_t Long(const std::string& bytes, size_t at) {
    return Word(bytes, at) | static_cast<uint32_t>(Word(bytes, at + 2)) << 16;
}
void Put(std::string& bytes, uint32_t number, int count) {
    for (int i = 0; i < count; ++i) bytes += static_cast<char>(number >> (8 * i));
}

uint32_t Mapped(uint32_t mask) {
    if (mask & 0x10000000) mask |= pc::keyAllAccess;
    if (mask & 0x40000000) mask |= 0x20006;
    if (mask & 0xA0000000) mask |= 0x20019;
    return mask;
}

}  // namespace

uint32_t SplitKeyPath(const std::string& path, std::string& rest) {
    std::string root = path.substr(0, path.find('\\'));
    rest = root.size() < path.size() ? path.substr(root.size() + 1) : "";
    for (const RootName& name : rootNames)
        if (SameName(name.name, root)) return name.number;
    return 0;
}

KeyNode FindKey(uint32_t root, const std::string& path, uint32_t access, std::string& shown, bool make) {
    const RootName* name = std::find_if(std::begin(rootNames), std::end(rootNames),
                                        [&](const RootName& entry) { return entry.number == root; });
    if (name == std::end(rootNames)) return nullptr;
    std::vector<std::string> parts = Pieces(path, '\\');
    std::erase(parts, "");
    std::string rootName = name->name;
    bool is32BitView = Pc().is64Bit && !(access & pc::keyWow64_64);
    if (root == pc::classesRoot) {
        parts.insert(parts.begin(), {"Software", "Classes"});
        if (is32BitView) TakeView("HKCR", parts);
        shown = "HKCR\\" + Joined({parts.begin() + 2, parts.end()}, "\\");
        return Descend(TheHives().machine, parts, make);
    }
    if (is32BitView && root != pc::usersRoot) TakeView(rootName, parts);
    shown = parts.empty() ? rootName : rootName + "\\" + Joined(parts, "\\");
    if (root == pc::currentUser) parts.insert(parts.begin(), Pc().UserSid());
    if (root == pc::currentConfig)
        parts.insert(parts.begin(), {"System", "CurrentControlSet", "Hardware Profiles", "Current"});
    bool below = root == pc::currentUser || root == pc::usersRoot;
    return Descend(below ? TheHives().users : TheHives().machine, parts, make);
}

std::string AccessList(const std::vector<std::pair<std::string, uint32_t>>& grants) {
    std::string entries, list;
    for (const auto& [account, mask] : grants) {
        std::string sid = SidBytes(account);
        entries += '\0';  // allow
        entries += '\2';  // to subkeys
        Put(entries, static_cast<uint32_t>(8 + sid.size()), 2);
        Put(entries, mask, 4);
        entries += sid;
    }
    Put(list, 2, 2);
    Put(list, static_cast<uint32_t>(8 + entries.size()), 2);
    Put(list, static_cast<uint32_t>(grants.size()), 2);
    Put(list, 0, 2);
    return list + entries;
}

bool Grants(const RegistryNode& node, uint32_t wanted, const std::string& shown) {
    // The user, users, everyone, authenticated users, administrators.
    std::vector<std::string> token = {Pc().UserSid(), "S-1-5-32-545", "S-1-1-0", "S-1-5-11", "S-1-5-32-544"};
    if (Pc().ordinaryUser) token.pop_back();
    const std::string& list = node.accessList;
    if (list.empty()) return !Pc().ordinaryUser || shown.starts_with("HKCU") || !(Mapped(wanted) & 0xD0026);
    uint32_t left = Mapped(wanted) & pc::keyAllAccess;
    if (node.owned && !Pc().ordinaryUser) left &= ~(pc::keyReadControl | pc::keyWriteDac);
    size_t at = 8;
    for (uint16_t count = Word(list, 4); count > 0 && at + 8 <= list.size(); --count) {
        uint16_t size = Word(list, at + 2);
        std::string account = SidText(list.substr(at + 8, size - 8u));
        uint32_t mask = Mapped(Long(list, at + 4));
        bool inheritOnly = (list[at + 1] & 8) != 0;
        if (!inheritOnly && std::find(token.begin(), token.end(), account) != token.end()) {
            if (list[at] == 1 && (left & mask)) return false;
            if (list[at] == 0) left &= ~mask;
        }
        if (size < 8) return false;
        at += size;
    }
    return left == 0;
}

// --- what a test prepares --------------------------------------------------------------------------------------------

namespace {

KeyNode Prepared(const std::string& key) {
    std::string rest, shown;
    uint32_t root = SplitKeyPath(key, rest);
    if (!root) throw std::invalid_argument("no such root on the simulated PC: " + key);
    return FindKey(root, rest, pc::keyWow64_64, shown, true);
}

KeyNode Existing(const std::string& key) {
    std::string rest, shown;
    uint32_t root = SplitKeyPath(key, rest);
    return FindKey(root, rest, pc::keyWow64_64, shown);
}

void Restrict(const std::string& key, bool owned, uint32_t rights) {
    KeyNode node = Prepared(key);
    node->accessList = AccessList({{"S-1-5-18", pc::keyAllAccess}, {"S-1-5-32-545", rights}});
    node->owned = owned;
}

}  // namespace

void SimulatedPc::SetRaw(const std::string& key, const std::string& name, uint32_t type, const std::string& bytes) {
    KeyNode node = Prepared(key);
    if (RegistryValue* value = node->Find(name))
        *value = {value->name, type, bytes};
    else
        node->values.push_back({name, type, bytes});
}

void SimulatedPc::SetText(const std::string& key, const std::string& name, const std::string& text) {
    SetRaw(key, name, pc::typeSz, text + '\0');
}

void SimulatedPc::SetNumber(const std::string& key, const std::string& name, uint32_t number) {
    std::string bytes;
    Put(bytes, number, 4);
    SetRaw(key, name, pc::typeDword, bytes);
}

void SimulatedPc::AddKey(const std::string& key) { Prepared(key); }

void SimulatedPc::RemoveKey(const std::string& key) {
    KeyNode node = Existing(key), parent = Existing(FolderPart(key));
    if (!node || !parent) return;
    auto forget = [](auto& self, RegistryNode& gone) -> void {
        gone.deleted = true;
        for (auto& [folded, child] : gone.keys) self(self, *child);
    };
    forget(forget, *node);
    parent->keys.erase(Fold(node->name));
}

bool SimulatedPc::HasKey(const std::string& key) const { return Existing(key) != nullptr; }

bool SimulatedPc::HasValue(const std::string& key, const std::string& name) const {
    KeyNode node = Existing(key);
    return node && node->Find(name);
}

std::string SimulatedPc::TextOf(const std::string& key, const std::string& name) const {
    KeyNode node = Existing(key);
    RegistryValue* value = node ? node->Find(name) : nullptr;
    std::string text = value ? value->data : "";
    while (text.ends_with('\0')) text.pop_back();
    return text;
}

uint32_t SimulatedPc::NumberOf(const std::string& key, const std::string& name, uint32_t missing) const {
    KeyNode node = Existing(key);
    RegistryValue* value = node ? node->Find(name) : nullptr;
    return value && value->data.size() >= 4 ? Long(value->data, 0) : missing;
}

void SimulatedPc::DenyKey(const std::string& key, bool owned) { Restrict(key, owned, 0x20019); }
void SimulatedPc::HideKey(const std::string& key, bool owned) { Restrict(key, owned, 0); }

void SimulatedPc::AllowKey(const std::string& key) {
    KeyNode node = Prepared(key);
    node->accessList.clear();
    node->owned = true;
}
