#include "repair/fix_internet.h"

#include "controls/panel_links.h"
#include "platform/files.h"
#include "platform/internet.h"
#include "platform/machine.h"
#include "platform/messages.h"
#include "repair/browser_addons.h"
#include "system/files.h"
#include "system/language.h"
#include "system/macros.h"
#include "system/operating_system.h"
#include "system/paths.h"
#include "system/processes.h"
#include "system/program_state.h"
#include "system/registry.h"
#include "system/resources.h"
#include "system/settings.h"
#include "system/text.h"
#include "system/trace.h"
#include "system/usage.h"

namespace {

constexpr const char* internetSettings = "Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings";
constexpr const char* profileList = "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\ProfileList";
// Shorter names in the profile list are no security identifiers of users.
constexpr size_t shortestSid = 11;

void SwitchProxyOff(const std::string& root, const std::string& key) {
    bool notFound = false;
    fWriteValue(root, key, "ProxyEnable", 'D', 0);
    fDeleteValue(root, key, "ProxyServer", notFound);
}

void RunVisible(const std::string& command) { RunAndWait(command, 1); }

// Windows XP and earlier: the socket catalogue back to its stock state.
void RestoreWinsockKeys() {
    bool notFound = false;
    fDeleteKey("HKLM", "System\\CurrentControlSet\\Services", "Winsock", notFound);
    fDeleteKey("HKLM", "System\\CurrentControlSet\\Services", "Winsock2", notFound);
    std::string file = GetAppPath() + "WinsockXP.reg";
    ExtractResource("REGWINSOCKXP", file);
    RunVisible("regedit.exe /s \"" + file + "\"");
    Pause(1);
    pc::RemoveFile(file);
}

// When a command of the network reset runs.
enum class When { always, dynamicAddress, beforeVista };
struct NetworkCommand {
    const char* line;
    When when;
};
constexpr NetworkCommand networkCommands[] = {
    {"cmd /c netsh winsock reset", When::always},
    {"cmd /c netsh winsock reset catalog", When::always},
    {"cmd /c netsh interface ip reset C:\\int-resetlog.txt", When::dynamicAddress},
    {"cmd /c netsh interface reset all", When::dynamicAddress},
    {"cmd /c netsh interface ip delete arpcache", When::always},
    {"cmd /c ipconfig /flushdns", When::always},
    {"cmd /c ipconfig /registerdns", When::always},
    {"rundll32.exe setupapi.dll,InstallHinfSection DefaultInstall 132 C:\\WINDOWS\\inf\\nettcpip.inf",
     When::beforeVista},
    {"cmd /c ipconfig /release all", When::always},
    {"cmd /c ipconfig /renew all", When::always},
};

// The hidden work of the add-on form is done while it loads.
void CleanBrowser(bool& flag) {
    flag = true;
    UnloadForm(LoadForm(frmCleanIE));
}

struct FixStep {
    const char* key;
    void (*run)();
};
constexpr FixStep fixSteps[] = {
    {"ClearProxy", ClearProxySettings},
    {"ResetNet", ResetNetworking},
    {"ResetHosts", ResetHostsFile},
    {"RestartIE", RestartInternetExplorer},
    {"RemIEToolbars", [] { CleanBrowser(State().bRemoveIEToolbars); }},
    {"RemIEBHOs", [] { CleanBrowser(State().bRemoveIEBHOs); }},
};

void ShowClosingPage() {
    std::string address = Setting("Fix", "NetURL");
    bool inside = Num1(Setting("Fix", "UseIBForNetURL"));
    if (inside || CharacterCount(address) > 1) OpenInBrowser(ExpandMacros(address), inside);
}

}  // namespace

void FixInternet(Form& form) {
    AddUsage("Fix");
    std::string question = SettingOr("Fix", "FixConfirmation", "Attempt to fix internet problems?");
    if (pc::ShowMessage(question, "", pc::styleOkCancel | pc::styleExclamation) != pc::answerOk) return;
    form.SetText("txtStatus",
                 LanguageText("StatusBarText", "FixingInternetProperties", "Fixing Internet Properties..."));
    for (const FixStep& step : fixSteps)
        if (NumPositive(Setting("Fix", step.key))) step.run();
    if (Links().getHealth) Links().getHealth(form);
    form.SetText("txtStatus", "");
    if (Num1(Setting("Fix", "ShowNetURL")))
        ShowClosingPage();
    else if (NumPositive(Setting("Fix", "ShowNetMsg")))
        pc::ShowMessage(LanguageText("MessageBoxes", "InternetFixIsComplete",
                                     "Try to access the internet now.  If not working, please restart your computer, "
                                     "then try to access the internet again."));
}

void ClearProxySettings() {
    pc::SetDirectConnection("");
    std::string names;
    if (fEnumKey("HKLM", profileList, names) != 0) DebugOutput("Error enumerating HKLM!");
    for (const std::string& sid : SplitList(names))
        if (CharacterCount(sid) >= shortestSid) ClearProxyForUser(sid);
    SwitchProxyOff("HKCU", internetSettings);
    SwitchProxyOff("HKLM", internetSettings);
    if (IsVistaOrLater()) RunVisible("cmd /c netsh winhttp reset proxy");
}

void ClearProxyForUser(const std::string& sid) { SwitchProxyOff("HKU", sid + "\\" + internetSettings); }

void ResetNetworking() {
    bool beforeVista = !IsVistaOrLater(), dynamicAddress = !State().bHasStaticIP;
    if (beforeVista) RestoreWinsockKeys();
    for (const NetworkCommand& command : networkCommands) {
        if (command.when == When::dynamicAddress && !dynamicAddress) continue;
        if (command.when == When::beforeVista && !beforeVista) continue;
        RunVisible(command.line);
    }
}

void ResetHostsFile() {
    std::string hosts = pc::Environment("systemroot") + "\\system32\\drivers\\etc\\hosts";
    if (DoesFileExist(hosts)) clsFSO().ResetAttributes(hosts);
    RedirectionOff redirection;
    const std::string aside = hosts + ".RENAMED", v6 = IsVistaOrLater() ? "\r\n::1       localhost" : "";
    bool isAside = pc::MovePath(hosts, aside, false);
    // In one piece: with half a file or none the one set aside serves on.
    if (!SaveTextToFile(hosts, "127.0.0.1       localhost" + v6, true) && isAside) pc::MovePath(aside, hosts, true);
}

void RestartInternetExplorer() {
    KillProcess("iexplore.exe");
    KillProcessViaWMI("iexplore.exe");
    RunAndWait("cmd /c tskill iexplore.exe /a", 0);
    fWriteValue("HKCU", internetSettings, "GlobalUserOffline", 'D', 0);
    std::string tail = "\\Internet Explorer\\iexplore.exe", wide = pc::Environment("programfiles(x86)") + tail;
    StartCommand("\"" + (DoesFileExist(wide) ? wide : pc::Environment("programfiles") + tail) + "\"", 1);
}
