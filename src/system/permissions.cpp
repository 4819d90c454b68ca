#include "system/permissions.h"

#include "platform/files.h"
#include "platform/machine.h"
#include "platform/processes.h"
#include "system/paths.h"
#include "system/processes.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

constexpr uint32_t toolTimeOut = 2000000000;  // milliseconds
constexpr const char* restorePrivilege = "SeRestorePrivilege";

bool SwitchPrivilege(const std::string& name, bool enable) {
    const char* failed = nullptr;
    switch (pc::SetPrivilege(name, enable)) {
        case pc::PrivilegeStep::done: return true;
        case pc::PrivilegeStep::openToken: failed = "OpenProcessToken"; break;
        case pc::PrivilegeStep::lookup: failed = "LookupPrivilegeValue"; break;
        case pc::PrivilegeStep::adjust: failed = "AdjustTokenPrivileges"; break;
    }
    DebugOutput(std::string(failed) + " failed with error code " + NumberText(pc::LastError()));
    return false;
}

std::string UserName() { return pc::Environment("username"); }

// Full access for words it does not know.
uint32_t AccessMask(const std::string& access) {
    static constexpr struct {
        const char* word;
        uint32_t mask;
    } rows[] = {{"R", 0x20019},       {"Read", 0x20019}, {"X", 0x20019},
                {"Execute", 0x20019}, {"W", 0x20006},    {"Write", 0x20006}};
    for (const auto& row : rows)
        if (access == row.word) return row.mask;
    return pc::keyAllAccess;
}

uint32_t PermissionRoot(const std::string& root) {
    static constexpr struct {
        const char* name;
        uint32_t handle;
    } rows[] = {
        {"HKCU", pc::currentUser}, {"HKLM", pc::localMachine}, {"HKU", pc::usersRoot}, {"HKCR", pc::classesRoot}};
    for (const auto& row : rows)
        if (EqualNoCase(root, row.name)) return row.handle;
    DebugOutput("SetPerm\\RegSetKeyPermission - Bad skey passed:  " + root);
    DebugOutput("\tDefaulting to HKLM...");
    return pc::localMachine;
}

// The tool's own names of the roots; two of them hold a blank that belongs to its command line.
std::string LongRootForTool(const std::string& root) {
    static constexpr const char* rows[][2] = {
        {"HKCU", "HKEY_CURRENT_USER\\"}, {"HKLM", "HKEY_LOCAL_MACHINE\\"},   {"HKU", "HKEY_USERS\\"},
        {"HKDD", "HKEY_DYN_DATA\\"},     {"HKCC", "HKEY_CURRENT_CONFIG\\ "}, {"HKCR", "HKEY_CLASSES_ROOT\\ "},
    };
    for (const auto& row : rows)
        if (EqualNoCase(root, row[0])) return row[1];
    return "";
}

// Path of subinacl.exe; the last place that has it wins. Empty when there is none.
std::string FindTool(bool alsoInTools) {
    std::string windows = pc::Environment("systemroot"), tool;
    for (const std::string& place :
         {windows + "\\subinacl.exe", windows + "\\System32\\subinacl.exe", GetAppPath() + "subinacl.exe",
          GetAppPath() + "..\\3rd Party Tools\\subinacl.exe"}) {
        bool isInTools = StartsWith(place, GetAppPath() + "..");
        if ((alsoInTools || !isInTools) && DoesFileExist(place)) tool = place;
    }
    return tool;
}

void RunTool(const std::string& tool, const std::string& option, const std::string& target, const std::string& tail,
             uint32_t wait) {
    std::string failureMessage;
    ShellandWaitForTermination("\"" + tool + "\"" + option + "\"" + target + "\"" + tail, 0, failureMessage, wait,
                               false);
}

}  // namespace

bool EnablePrivilege(const std::string& name) { return SwitchPrivilege(name, true); }

bool DisablePrivilege(const std::string& name) { return SwitchPrivilege(name, false); }

void ChangeOwnerOfFile(const std::string& path, std::string owner) {
    DebugOutput("SetOwnerFS\\ChangeOwnerOfFile:");
    DebugOutput("\t- Passed: " + path);
    DebugOutput("\t- Optional Parm OwnerAccountName=" + owner);
    if (owner.empty()) owner = UserName();
    EnablePrivilege(restorePrivilege);
    std::string sid, domain;
    if (uint32_t code = pc::LookupAccount(owner, sid, domain); code != 0) {
        DebugOutput("LookupAccountName failed with error code " + NumberText(code));
        return;
    }
    uint32_t code = 0;
    {
        RedirectionOff redirectionOff;
        code = pc::SetFileOwner(path, sid);
    }
    if (code != 0) {  // the privilege stays enabled
        DebugOutput("SetFileSecurity failed with error code " + NumberText(code));
        return;
    }
    DebugOutput("Owner of " + path + " changed to " + owner);
    DisablePrivilege(restorePrivilege);
}

bool UpdatePermissionsOfRegistryKey(const pc::Key& key, std::vector<AccessEntry> entries) {
    auto failed = [](const char* step, int32_t code) {
        DebugOutput(std::string("SetPerm\\UpdatePermissionsOfRegistryKey - ") + step + ": " + NumberText(code));
        return false;
    };
    std::string old, domain;
    if (int32_t code = pc::GetKeySecurity(key, old); code != 0) return failed("RegGetKeySecurity", code);
    for (AccessEntry& entry : entries) {
        if (!entry.sid.empty()) continue;
        if (uint32_t code = pc::LookupAccount(entry.account, entry.sid, domain); code != 0)
            return failed("LookupAccountName", static_cast<int32_t>(code));
    }
    pc::OsVersion version = pc::GetOsVersion();
    std::string descriptor = BuildNewSecurityDescriptor(old, entries, version.platform == 2 && version.major >= 5);
    constexpr int32_t invalidSecurityDescriptor = 1338;
    if (descriptor.empty()) return failed("BuildNewSecurityDescriptor", invalidSecurityDescriptor);
    if (int32_t code = pc::SetKeySecurity(key, descriptor); code != 0) return failed("RegSetKeySecurity", code);
    DebugOutput("SetPerm\\UpdatePermissionsOfRegistryKey: True");
    return true;
}

bool RegSetKeyPermission(const std::string& root, const std::string& key, const std::string& account,
                         const std::string& mode, const std::string& access) {
    constexpr uint32_t readAndWriteList = 0x60000;
    pc::Key opened;
    if (pc::OpenKey(PermissionRoot(root), key, readAndWriteList, opened) != 0) return false;
    AccessEntry entry;
    entry.account = account.empty() ? UserName() : account;
    entry.mask = AccessMask(access);
    entry.aceType = mode == "Deny" ? 1 : 0;
    return UpdatePermissionsOfRegistryKey(opened, {entry});
}

bool RegSetKeyPermissionAll(const std::string& root, const std::string& key) {
    bool isGranted = false;
    for (const char* account : {"", "System", "Administrators", "Power Users", "Users"})
        isGranted |= RegSetKeyPermission(root, key, account, "Allow", "ALL");
    return isGranted;
}

void TakeControlOfRegKey(const std::string& root, const std::string& key, std::string owner, std::string grantee) {
    std::string longRoot = LongRootForTool(root);
    if (longRoot.empty()) return;
    if (EqualNoCase(root, "HKCU") && owner.empty()) owner = UserName();
    if (owner.empty()) owner = "administrators";
    if (grantee.empty()) grantee = UserName();
    if (grantee.empty()) grantee = "System";
    std::string tool = FindTool(false);
    if (tool.empty()) return;
    for (const char* option : {" /keyreg ", " /subkeyreg "})
        RunTool(tool, option, longRoot + key, " /setowner=" + owner + " /grant=" + grantee + "=f", toolTimeOut);
}

void TakeControl(const std::string& path, bool bSubDirectories, uint32_t wait, std::string& owner,
                 const std::string& grantee) {
    std::string tool = FindTool(true);
    if (tool.empty()) return;
    std::string kind = FileOrDir(path);
    if (kind != "file" && kind != "dir") return;
    if (owner.empty()) owner = UserName();
    if (owner.empty() || EqualNoCase(owner, pc::Environment("computername") + "$")) owner = "System";
    std::string granted = !grantee.empty() ? grantee : owner == "System" ? "Everyone" : owner;
    std::string target = EndsWith(path, "\\") ? path.substr(0, path.size() - 1) : path;
    std::string tail = " /setowner=" + owner + " /grant=" + granted + "=F";
    RunTool(tool, " /file ", target, tail, wait);
    if (bSubDirectories && kind == "dir") RunTool(tool, " /subdirectories ", target + "\\*.*", tail, wait);
    DebugOutput(path + "TakeControl:  ");
}
