// Ownership and access lists of files and registry keys.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/registry.h"

// One account to grant or deny.
struct AccessEntry {
    std::string account;  // looked up when sid is empty
    uint32_t mask = 0;
    uint8_t aceFlags = 2;  // container inherit
    uint8_t aceType = 0;   // 0 allow, 1 deny
    std::string sid;       // bytes
};

// owner empty: the current user. Traces what failed.
void ChangeOwnerOfFile(const std::string& path, std::string owner = "");
// Of this process, by the system's name such as "SeRestorePrivilege". False, with a trace line, when refused.
bool EnablePrivilege(const std::string& name);
bool DisablePrivilege(const std::string& name);
// Rewrites the access list of a key opened for that. False, with a trace line, when a step failed.
bool UpdatePermissionsOfRegistryKey(const pc::Key& key, std::vector<AccessEntry> entries);
// account empty: the current user; mode "Allow" or "Deny"; access a word such as "R", "Write", "ALL".
bool RegSetKeyPermission(const std::string& root, const std::string& key, const std::string& account,
                         const std::string& mode, const std::string& access);
// Full access for the current user, System, Administrators, Power Users and Users; true if any grant worked.
bool RegSetKeyPermissionAll(const std::string& root, const std::string& key);
// By subinacl.exe; nothing happens without that tool. owner and grantee empty: administrators and the current user.
void TakeControlOfRegKey(const std::string& root, const std::string& key, std::string owner = "",
                         std::string grantee = "");
// The same for a file or folder; wait is the tool's time-out in milliseconds. owner comes back as it was settled.
void TakeControl(const std::string& path, bool bSubDirectories, uint32_t wait, std::string& owner,
                 const std::string& grantee = "");

// Pure: a new self-relative descriptor whose access list has the entries' denials, the old list's own entries (less
// those for the same accounts), the entries' grants, then the inherited ones. Every entry's sid must be filled.
// oldDescriptor empty: no old list. Empty on a damaged old descriptor.
std::string BuildNewSecurityDescriptor(const std::string& oldDescriptor, const std::vector<AccessEntry>& entries,
                                       bool supportsInheritance);
