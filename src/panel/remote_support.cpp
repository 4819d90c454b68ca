#include "panel/remote_support.h"

#include "controls/panel_links.h"
#include "platform/files.h"
#include "platform/machine.h"
#include "system/files.h"
#include "system/macros.h"
#include "system/operating_system.h"
#include "system/processes.h"
#include "system/program_state.h"
#include "system/registry.h"
#include "system/settings.h"
#include "system/text.h"
#include "system/trace.h"
#include "system/usage.h"
#include "transfer/archives.h"
#include "transfer/download.h"
#include "transfer/zip_format.h"

namespace {

// insideKey of section Branding asks for the panel's own browser.
void OpenAddress(const std::string& address, const char* insideKey) {
    OpenInBrowser(ExpandMacros(address), Num1(Setting("Branding", insideKey)));
}

void ShowPreSupportPage() {
    std::string target = Setting("Branding", "PreRemoteURL");
    if (!target.empty() && DoesFileExist(GetAppPath() + target)) target = GetAppPath() + target;
    OpenAddress(target, "UseIBForPreSupportURL");
}

// Systems from Windows 10 on may lack the tool, but have a quick help of their own, found by its address scheme.
void StartRemoteAssistance() {
    std::string root = pc::Environment("systemroot");
    if (!IsVistaOrLater()) {
        ShellX(root + "\\system32\\rcimlby.exe", "-LaunchRA", false, 1);
        return;
    }
    std::string tool = root + "\\system32\\msra.exe";
    if (DoesFileExist(tool) || clsOpSys().MajorVersion < 10) {
        ShellX(tool, "", false, 1);
        return;
    }
    DebugOutput("StartRemoteSupport: no msra.exe, opening the system's quick help");
    OpenDocument("ms-quick-assist:");
}

void StartBundledProgram(const std::string& parameters) {
    std::string path = GetAppPath() + State().remoteSupportTarget;
    if (DoesFileExist(path)) RunSupportApp(path, parameters);
}

void StartConfiguredMode() {
    std::string parameters = Setting("Branding", "RemoteSupportAppParms");
    std::string type = LowerCase(Setting("Branding", "RemoteSupportType"));
    if (type.empty() || type == "exe")
        StartBundledProgram(parameters);
    else if (type == "url")
        OpenAddress(State().remoteSupportTarget, "UseIBForSupportURL");
    else
        DownloadAndRunSupportApp(State().remoteSupportTarget, parameters);
}

std::string ProgramInFolder(const std::string& folder, const std::string& exeInZip) {
    if (!exeInZip.empty()) {
        auto safe = zip::SafePath(exeInZip);
        return safe ? folder + "\\" + *safe : "";
    }
    clsFSO files;
    for (const char* pattern : {"*.exe", "*.com", "*.msi"}) {
        std::string program = files.ReturnNewestFileFromSpec(folder, pattern, true);
        if (!program.empty()) return program;
    }
    return "";
}

// Where a download of this name goes. What is there is deleted first, so it must lie in the application folder and be
// none of the panel's own files; empty otherwise.
std::string DownloadPath(const std::string& name) {
    auto safe = zip::SafePath(name);
    std::string path = safe ? GetAppPath() + *safe : "";
    return EqualNoCase(path, GetEXEPath()) || EqualNoCase(path, State().settingsFile) ? "" : path;
}

}  // namespace

void StartRemoteSupport() {
    if (Num1(Setting("Branding", "ShowPreRemoteURL"))) ShowPreSupportPage();
    KillPreRemoteProcesses();
    if (!TryTeamviewerOverride()) {
        if (Eq1(Setting("Branding", "RemoteUseMSRA")))
            StartRemoteAssistance();
        else
            StartConfiguredMode();
    }
    AddUsage("RemoteSupport");
}

void KillPreRemoteProcesses() {
    for (const std::string& name : Split(Setting("Branding", "PreRemoteKillProc"), ','))
        if (!name.empty()) KillProcess(name);
}

bool TryTeamviewerOverride() {
    if (!Eq1(Setting("Branding", "TeamviewerOverride"))) return false;
    std::string base = pc::Environment(IsOS64Bit() ? "programfiles(x86)" : "programfiles") + "\\Teamviewer\\Version";
    std::string found;
    for (int n = 1; n <= 9; ++n) {
        std::string path = base + NumberText(n) + "\\Teamviewer.exe";
        if (DoesFileExist(path)) found = path;
    }
    if (!found.empty()) ShellX(found, "", false, 1);
    return !found.empty();
}

void DownloadAndRunSupportApp(const std::string& sUrl, const std::string& sParms) {
    std::string name = Setting("Branding", "RemoteSupportDLName");
    if (name.empty()) return;
    DownloadAndRun({sUrl, sParms, name, "RemoteDL", Setting("Branding", "RemoteSupportEXEinZIP"),
                    "Downloading Remote Support App"});
}

void DownloadAndRun(const SupportDownload& download) {
    std::string path = DownloadPath(download.fileName), folder = GetAppPath() + download.scratchFolder;
    if (path.empty()) {
        DebugOutput("DownloadAndRun: no name for a download: " + download.fileName);
        return;
    }
    if (IsDownloading()) return;  // a second click: what the first one fetches stays
    pc::RemoveFile(path);
    if (DoesDirExist(folder)) clsFSO().KillDir(folder, false);
    if (!DownloadFile(download.url, path, download.title, false, true)) return;
    if (!EndsWithNoCase(path, ".zip")) {
        RunSupportApp(path, download.parameters);
        return;
    }
    if (!UnzipFile(path, folder, false)) return;
    std::string program = ProgramInFolder(folder, download.exeInZip);
    if (!program.empty()) RunSupportApp(program, download.parameters);
}

void RunSupportApp(const std::string& sPath, const std::string& sParms) {
    if (EndsWithNoCase(sPath, "msi"))
        StartCommand(pc::Environment("systemroot") + "\\system32\\msiexec.exe /i \"" + sPath + "\"" +
                         (sParms.empty() ? "" : " " + sParms),
                     1);
    else
        ShellX(sPath, sParms, false, 1);
}
