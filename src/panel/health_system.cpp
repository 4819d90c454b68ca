// Health items of Windows itself: memory, disk, version, updates, restore, account control.

#include <cstdlib>

#include "maintenance/restore_points.h"
#include "panel/health.h"
#include "platform/machine.h"
#include "system/files.h"
#include "system/operating_system.h"
#include "system/registry.h"
#include "system/text.h"

namespace {

constexpr double bytesPerMegabyte = 1024.0 * 1024.0;
constexpr double bytesPerGigabyte = bytesPerMegabyte * 1024.0;

std::string GigabyteText(double bytes) { return GroupedText(bytes / bytesPerGigabyte, 2) + " GB"; }

}  // namespace

bool Is64Bit() { return !pc::Environment("ProgramFiles(x86)").empty(); }

bool GetRAM(Form& form) {
    std::string text = GroupedText(static_cast<double>(pc::TotalMemory()) / bytesPerMegabyte, 0);
    long megabytes = std::strtol(ReplaceAll(text, ",", "").c_str(), nullptr, 10);
    if (megabytes < 1) {
        form.SetText("lblRAM", "Error");
        return false;
    }
    form.SetText("lblRAM", text + " MB");
    clsOpSys system;
    if (!system.IsWinXP) return false;
    if (megabytes < (system.IsVista ? 1700 : 900)) return AdviseUpgrade(form, "lblRAM");
    return SetHealthState(form, "lblRAM", HealthState::normal);
}

bool GetHDD(Form& form) {
    double total = 0, free = 0, available = 0;
    std::string drive = pc::Environment("systemroot").substr(0, 2);
    if (!clsFSO().Get_Disk_Space(drive, total, free, available)) return false;
    form.SetText("lblHDD", GigabyteText(total) + ", " + GigabyteText(free) + " " + MiscText("Available", "Available"));
    if (total * 0.1 > free) return AdviseUpgrade(form, "lblHDD");
    return SetHealthState(form, "lblHDD", HealthState::normal);
}

bool GetAutoUpdates(Form& form) {
    int32_t option = 0;
    fReadValue("HKLM", "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\WindowsUpdate\\Auto Update", "AUOptions", 'D', 0,
               option);
    constexpr const char* label = "lblAutoUpdates";
    if (option == 4) return ShowHealth(form, label, MiscText("Enabled", "Enabled"), HealthState::normal);
    if (option == 2 || option == 3)
        return ShowHealth(form, label, MiscText("EnabledNotAuto", "Enabled (Not Automatic)"), HealthState::notice);
    return ShowHealth(form, label, MiscText("Disabled", "Disabled"), HealthState::warning);
}

bool GetSystemRestore(Form& form) {
    if (IsSystemRestoreEnabled())
        return ShowHealth(form, "lblSystemRestore", MiscText("Enabled", "Enabled"), HealthState::normal);
    return ShowHealth(form, "lblSystemRestore", MiscText("Disabled", "Disabled"), HealthState::warning);
}

bool GetOS(Form& form) {
    clsOpSys system;
    std::string name = system.Platform();
    if (ContainsNoCase(name, "Unknown"))
        name = ReadRegistryText("HKLM", "Software\\Microsoft\\Windows NT\\CurrentVersion", "ProductName");
    std::string pack = system.ServicePackMajor != 0 ? "SP" + NumberText(system.ServicePackMajor) : "";
    std::string text = name + " (" + (Is64Bit() ? "64 bit" : "32 bit") + pack + ") ";
    if (Control* label = form.Find("lblOS")) {
        label->SetText(text);
        label->SetToolTip(text);
    }
    return GetOSUpdate(form);
}

bool GetOSUpdate(Form& form) {
    clsOpSys system;
    int wanted = 0;
    if (system.IsServer)
        wanted = system.Is2008 ? (system.Is2008R2 ? 0 : 2) : (system.Is2003 ? 2 : 0);
    else
        wanted = system.IsVista ? (system.IsWin7 ? 0 : 2) : (system.IsWinXP ? 3 : 0);
    if (wanted == 0 || system.ServicePackMajor == wanted) return false;
    std::string demand = " - " + MiscText("UpdateTo", "Update to") + " SP" + NumberText(wanted);
    return ShowHealth(form, "lblOS", form.Text("lblOS") + demand, HealthState::warning);
}

bool GetUAC(Form& form) {
    constexpr const char* label = "lblUAC";
    if (!IsVistaOrLater()) return ShowHealth(form, label, MiscText("NotApplicable", "N/A"), HealthState::normal);
    int32_t enabled = 0;
    // An absent value leaves the label as it was.
    if (fReadValue("HKLM", "Software\\Microsoft\\Windows\\CurrentVersion\\Policies\\System", "EnableLUA", 'D', -1,
                   enabled) != 0)
        return false;
    if (enabled == 0) return ShowHealth(form, label, "UAC " + MiscText("Disabled", "Disabled"), HealthState::warning);
    if (enabled == 1) return ShowHealth(form, label, "UAC " + MiscText("Enabled", "Enabled"), HealthState::normal);
    return false;
}
