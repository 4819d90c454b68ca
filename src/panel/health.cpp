#include "panel/health.h"

#include <optional>

#include "maintenance/restore_points.h"
#include "panel/external_ip.h"
#include "platform/wmi.h"
#include "repair/internet.h"
#include "system/language.h"
#include "system/paths.h"
#include "system/program_state.h"
#include "system/registry.h"
#include "system/settings.h"
#include "system/trace.h"

namespace {

void ShowLastMaintenance(Form& form) {
    std::string lastRun = ReadRegistryText("HKLM", "Software\\Talvenmoor\\Maintenance", "LastRun");
    if (lastRun.empty()) lastRun = Setting("General", "LastMaintenance");
    form.SetText("lblLastMaint", lastRun.empty() ? "N/A" : FormatDate(false, lastRun));
}

bool ShowInternet(Form& form) {
    if (!IsInternetPresent())
        return ShowHealth(form, "lblInternet", MiscText("Disconnected", "Disconnected"), HealthState::warning);
    ShowHealth(form, "lblInternet", MiscText("Connected", "Connected"), HealthState::normal);
    RequestExternalAddress(form);
    return false;
}

struct AdapterAddress {
    std::string address, caption;
    bool dhcp = false;
};

// The first address of the first adapter that has one.
std::optional<AdapterAddress> FirstAddress() {
    std::optional<AdapterAddress> first;
    std::string error;
    auto status = pc::WmiQuery(
        "root\\cimv2", "Select * from Win32_NetworkAdapterConfiguration where IPEnabled=TRUE",
        {"IPAddress", "DHCPEnabled", "Caption"}, wmiTimeout,
        [&](const pc::WmiRow& row) {
            if (row[0].list.empty()) return true;
            first = {row[0].list[0], row[2].text, row[1].boolean};
            return false;
        },
        error);
    if (status == pc::WmiStatus::failed || status == pc::WmiStatus::timedOut)
        DebugOutput("Health\\GetInternalIP: " + error);
    return first;
}

}  // namespace

bool SetHealthState(Form& form, const char* label, HealthState state) {
    if (Control* control = form.Find(label)) {
        control->SetColour(state == HealthState::warning  ? colourWarning
                           : state == HealthState::notice ? colourHighlight
                                                          : colourButtonText);
        control->SetBold(state == HealthState::warning);
    }
    return state == HealthState::warning;
}

bool ShowHealth(Form& form, const char* label, const std::string& text, HealthState state) {
    form.SetText(label, text);
    return SetHealthState(form, label, state);
}

bool AdviseUpgrade(Form& form, const char* label) {
    std::string advice = LanguageText("MainForm", "ConsiderUpgrade", "Consider an Upgrade!");
    return ShowHealth(form, label, form.Text(label) + "  " + advice, HealthState::warning);
}

std::string MiscText(const char* key, const char* builtIn) { return LanguageText("Misc", key, builtIn); }

void GetInternalIP(Form& form) {
    auto found = FirstAddress();
    if (!found || found->address == "0.0.0.0") return;
    for (const char* name : {"lblIntIPLabel", "lblIntIP"})
        if (Control* label = form.Find(name)) label->SetColour(found->dhcp ? colourButtonText : colourHighlight);
    if (!found->dhcp) State().bHasStaticIP = true;
    // The label's own caption stays: colour and trace are all that tells a static address.
    DebugOutput("Health\\GetInternalIP: Object variable or With block variable not set");
    if (Control* label = form.Find("lblIntIP")) {
        label->SetText(found->address);
        label->SetToolTip(found->caption);
    }
}

void GetHealth(Form& form) {
    ShowLastMaintenance(form);
    bool fault = false;
    for (auto item :
         {GetRAM, GetHDD, ShowInternet, GetAV, GetFirewall, GetAutoUpdates, GetSystemRestore, GetOS, GetUAC})
        if (item(form)) fault = true;
    GetInternalIP(form);
    if (Control* ball = form.Find("imgBall")) ball->SetPicture(fault ? "#red" : "#green");
}
