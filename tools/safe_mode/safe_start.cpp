#include "safe_start.h"

#include "platform/files.h"
#include "platform/machine.h"
#include "system/operating_system.h"
#include "system/processes.h"
#include "system/registry.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

// A leading "*" makes the system run the value in safe mode as well.
constexpr const char* runOnceKey = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce";
constexpr const char* runOnceValue = "*Pelmark";
constexpr const char* safeSwitch = " /safeboot:network";

std::string BootEditor() { return pc::Environment("systemroot") + "\\system32\\bcdedit.exe"; }
std::string BootIni() { return pc::Environment("systemdrive") + "\\boot.ini"; }

bool EditBootIni(std::string (*edit)(const std::string&)) {
    auto text = pc::ReadWholeFile(BootIni());
    std::string edited = text ? edit(*text) : "";
    if (edited.empty()) return false;
    // The file is hidden, read-only and a system file; it is replaced only once the new text is whole on the disk.
    auto info = pc::GetFileInfo(BootIni());
    std::string written = BootIni() + ".new";
    if (!pc::WriteWholeFile(written, edited)) {
        pc::RemoveFile(written);
        return false;
    }
    pc::ChangeAttributes(BootIni(), pc::attributeNormal);
    bool moved = pc::MovePath(written, BootIni(), true);
    if (!moved) pc::RemoveFile(written);
    if (info) pc::ChangeAttributes(BootIni(), info->attributes);
    return moved;
}

bool RunBootEditor(const std::string& arguments) {
    int32_t code = 1;
    return ShellX(BootEditor(), arguments, true, 0, &code) && code == 0;
}

}  // namespace

std::string BootIniWithoutSafeMode(const std::string& bootIni) { return ReplaceAllNoCase(bootIni, safeSwitch, ""); }

std::string BootIniWithSafeMode(const std::string& bootIni) {
    std::string clean = BootIniWithoutSafeMode(bootIni), lower = LowerCase(clean);
    size_t at = lower.find("default=");
    if (at == std::string::npos) return "";
    std::string system = lower.substr(at + 8, lower.find_first_of("\r\n", at) - at - 8);
    size_t line = lower.find("\n" + system + "=", at);
    if (system.empty() || line == std::string::npos) return "";
    size_t end = clean.find_first_of("\r\n", line + 1);
    return clean.insert(end == std::string::npos ? clean.size() : end, safeSwitch);
}

bool SetSafeStart() {
    // The undoing first: safe mode without a way back would be worse than none.
    fWriteValue("HKLM", runOnceKey, runOnceValue, 'S', "\"" + GetEXEPath() + "\" /undo");
    if (ReadRegistryText("HKLM", runOnceKey, runOnceValue).empty()) return false;
    bool set = IsVistaOrLater() ? RunBootEditor("/set {current} safeboot network") : EditBootIni(BootIniWithSafeMode);
    if (set) return true;
    bool notFound = false;
    fDeleteValue("HKLM", runOnceKey, runOnceValue, notFound);
    return false;
}

void UndoSafeStart() {
    if (IsVistaOrLater())
        RunBootEditor("/deletevalue {current} safeboot");
    else
        EditBootIni(BootIniWithoutSafeMode);
}
