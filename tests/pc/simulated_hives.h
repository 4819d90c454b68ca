// The registry of the simulated PC: its nodes, and where a key path leads.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "pc/simulated_pc.h"

struct RegistryValue {
    std::string name;
    uint32_t type = 0;
    std::string data;  // texts in UTF-8 with the NULs that are stored
};

struct RegistryNode {
    std::string name;
    std::vector<RegistryValue> values;                          // in the order of making
    std::map<std::string, std::shared_ptr<RegistryNode>> keys;  // by folded name
    std::string accessList;                                     // empty: the ordinary one
    uint16_t control = 0x8004;
    bool owned = true;  // by the administrators
    bool deleted = false;

    RegistryValue* Find(const std::string& valueName);
};
using KeyNode = std::shared_ptr<RegistryNode>;

struct OpenKeyEntry {
    KeyNode node;
    uint32_t access = 0;
    std::string path;  // "HKLM\Software\..."
};

struct Hives {
    KeyNode machine = std::make_shared<RegistryNode>(), users = std::make_shared<RegistryNode>();
    std::map<uintptr_t, OpenKeyEntry> open;
};
Hives& TheHives();

// "HKLM\A\B" into root number and "A\B"; 0 for an unknown root.
uint32_t SplitKeyPath(const std::string& path, std::string& rest);
// The node of root\path in the view that the access bits choose; null when it is not there. shown takes the place.
KeyNode FindKey(uint32_t root, const std::string& path, uint32_t access, std::string& shown, bool make = false);
// Whether the key's access list grants all the bits to this user.
bool Grants(const RegistryNode& node, uint32_t wanted, const std::string& shown);
// A list with one grant each for these SID texts.
std::string AccessList(const std::vector<std::pair<std::string, uint32_t>>& grants);
