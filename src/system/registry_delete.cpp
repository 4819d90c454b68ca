// Deleting keys and values, and the ladder that is climbed when the running account may not.
//
// A step that acts is always given the path as the caller wrote it, so that it reaches the same view of a 64-bit
// system; the trace shows the path as it was opened.
#include "platform/machine.h"
#include "system/permissions.h"
#include "system/processes.h"
#include "system/registry.h"
#include "system/registry_view.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

constexpr uint32_t toolTimeOut = 2000000000;  // milliseconds

bool IsFinished(int32_t status) { return status == 0 || status == pc::errorFileNotFound; }

void TraceDeleteStatus(int32_t status) {
    if (status == 0) {
        DebugOutput("\t- lResult: 0 SUCCESS");
    } else if (status == pc::errorFileNotFound) {
        DebugOutput("\t- lResult: 2 NOT FOUND");
    } else {
        DebugOutput("\t- lResult (0=Success 2=Not Found): " + NumberText(status));
    }
}

// The optional tool beside the program that deletes with the rights of SYSTEM.
void RunDelReg(const std::string& argument) {
    std::string tool = GetAppPath() + "DelReg.exe";
    if (DoesFileExist(tool)) RunAsSystem(tool, argument, true);
}

// What the tool for access lists calls the root; empty for roots it does not serve.
std::string LongRootName(const std::string& root) {
    static constexpr const char* names[][2] = {
        {"HKCU", "hkey_current_user\\"},
        {"HKLM", "hkey_local_machine\\"},
        {"HKU", "hkey_users\\"},
        {"HKCR", "hkey_classes_root\\"},
    };
    for (const auto& row : names)
        if (EqualNoCase(root, row[0])) return row[1];
    return "";
}

// Makes the user of this program the owner of the key with full rights, all below it included.
void TakeOverByTool(const std::string& root, const std::string& key) {
    std::string longRoot = LongRootName(root);
    if (longRoot.empty()) {
        DebugOutput("modRegistry\\fDeleteValue:  TopKeys supported: HKLM, HKCU, HKU, HKCR");
        DebugOutput("\t- Passed: " + root);
        DebugOutput("\tThere may be an error in code.");
        return;
    }
    if (!DoesFileExist(GetAppPath() + "subinacl.exe")) return;
    std::string account = pc::Environment("computername") + "\\" + pc::Environment("username");
    std::string command = GetAppPath() + "subinacl.exe /subkeyreg \"" + longRoot + key + "\" ";
    for (const std::string& tail : {"/setowner=" + account, "/sgrant=" + account + "=F", "/grant=" + account + "=F"}) {
        std::string failureMessage;
        ShellandWaitForTermination(command + tail, 0, failureMessage, toolTimeOut, false);
    }
}

int32_t DeleteValueOnce(uint32_t hive, const RegistryView& view, const std::string& valueName) {
    pc::Key opened;
    int32_t status = pc::OpenKey(hive, view.path, view.access, opened);
    return status == 0 ? pc::DeleteValue(opened, valueName) : status;
}

int32_t DeleteKeyOnce(const std::string& root, const RegistryView& view, const std::string& path,
                      const std::string& name) {
    uint32_t hive = fGetHive(root);
    pc::Key opened;
    int32_t status = pc::OpenKey(hive, view.path, view.access, opened);
    if (status != 0) return status;
    fDeleteSubkeys(hive, path, root);
    return pc::DeleteSubkey(opened, name, view.Bit());
}

// The last rung: other programs try. 2 when the key is gone, 0 when it is still there.
int32_t DeleteKeyByTools(const std::string& root, const std::string& parent, const std::string& name) {
    std::string path = root + "\\" + parent + "\\" + name;
    DebugOutput("modRegistry\\fDeleteKey:  Still not working, attempting deletion with reg.exe");
    DebugOutput("\tcmd:  reg.exe delete \"" + path + "\" /f");
    ShellX("reg.exe", "DELETE \"" + path + "\" /f", true, 0);
    RunDelReg("key=" + root + "," + parent + "," + name);
    std::string subkeys;
    return fEnumKey(root, parent + "\\" + name, subkeys);
}

std::vector<std::string> SubkeyNames(const pc::Key& key) {
    std::vector<std::string> names;
    std::string name;
    while (pc::EnumKey(key, static_cast<uint32_t>(names.size()), name) == 0) names.push_back(name);
    return names;
}

}  // namespace

void fDeleteSubkeys(uint32_t rootHandle, const std::string& key, const std::string& rootName) {
    DebugOutput("modRegistry\\fDeleteSubkeys passed: " + rootName + "\\" + key);
    RegistryView view = ChooseView(key, pc::keyAllAccess);
    if (IsOS64Bit() && IsRedirectedPath(key)) {
        // A redirected path keeps its "Wow6432Node" here; the conversion of it to a number fails and is passed over.
        TraceRuntimeError("fDeleteSubkeys", "13 Type mismatch");
        DebugOutput("\t- Key: " + key);
        view.path = key;
    }
    pc::Key opened;
    if (pc::OpenKey(rootHandle, view.path, view.access, opened) != 0) {
        DebugOutput("modRegistry\\fDeleteSubkeys: Error opening key: " + key);
        return;
    }
    for (const std::string& name : SubkeyNames(opened)) {
        std::string path = key + "\\" + name;
        RegSetKeyPermissionAll(rootName, path);
        fDeleteSubkeys(rootHandle, path, "HKLM");  // whatever the root is
        pc::DeleteSubkey(opened, name, view.Bit());
    }
}

int32_t fDeleteKey(const std::string& root, const std::string& parent, const std::string& name, bool& notFound) {
    RegistryView view = ChooseView(parent, pc::keyCreateSubKey);
    std::string path = parent + "\\" + name;
    std::string shownPath = root + "\\" + view.path + "\\" + name;
    uint32_t hive = fGetHive(root);
    // A nameless key would be the parent itself, with all that it holds.
    bool isRefused = hive == hiveBad || hive == hiveIniFile || name.find_first_not_of('\\') == std::string::npos;
    int32_t status = statusNone, result = isRefused ? statusNone : 0;
    for (int pass = 1; pass <= 2 && !isRefused; ++pass) {
        if (pass == 2) {
            DebugOutput("\t- Attempting second run using subinacl...");
            TakeControlOfRegKey(root, path);
        }
        RegSetKeyPermissionAll(root, path);
        status = DeleteKeyOnce(root, view, path, name);
        if (IsFinished(status)) break;
        result = status;
        DebugOutput("modRegistry\\fDeleteKey - Error:  " + NumberText(status));
        DebugOutput("\tKey:  " + shownPath);
    }
    if (!isRefused && !IsFinished(status)) status = DeleteKeyByTools(root, parent, name);
    if (status == pc::errorFileNotFound) notFound = true;
    DebugOutput("modRegistry\\fDeleteKey: ");
    DebugOutput("\t- Key: " + shownPath);
    TraceDeleteStatus(status);
    return result;
}

int32_t fDeleteValue(const std::string& root, const std::string& key, const std::string& valueName, bool& notFound) {
    uint32_t hive = fGetHive(root);
    RegistryView view = ChooseView(key, pc::keySetValue);
    int32_t status = statusNone, result = 0;
    if (hive == hiveBad) {
        result = statusNone;
    } else if (hive == hiveIniFile) {
        pc::WriteProfileText(root, key, valueName, "");
        status = 0;
    } else {
        status = DeleteValueOnce(hive, view, valueName);
        if (!IsFinished(status)) {
            TakeOverByTool(root, key);
            RegSetKeyPermissionAll(root, key);
            RunDelReg("value=" + root + "," + key + "," + valueName);
            status = DeleteValueOnce(hive, view, valueName);
            if (!IsFinished(status)) result = status;
        }
    }
    if (status == pc::errorFileNotFound) notFound = true;
    DebugOutput("modRegistry\\fDeleteValue:");
    TraceKeyAndValue(root, view.path, valueName);
    TraceDeleteStatus(status);
    return result;
}
