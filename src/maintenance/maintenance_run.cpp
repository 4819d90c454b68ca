#include "maintenance/maintenance_run.h"

#include "controls/panel_links.h"
#include "maintenance/custom_apps.h"
#include "maintenance/defrag.h"
#include "maintenance/restore_points.h"
#include "maintenance/temp_cleaner.h"
#include "platform/messages.h"
#include "system/language.h"
#include "system/macros.h"
#include "system/paths.h"
#include "system/processes.h"
#include "system/registry.h"
#include "system/settings.h"
#include "system/text.h"
#include "system/trace.h"
#include "system/usage.h"

namespace {

std::string Maint(const char* key) { return Setting("Maint", key); }

void CleanTemps(Form& form) {
    CleanerFlags flags;
    flags.bDelTemps = BlankOr1(Maint("DelTemps"));
    flags.bDelTempInternet = BlankOr1(Maint("DelTempInternet"));
    flags.bDelHistory = Eq1(Maint("DelHistory"));
    flags.bDelCookies = Eq1(Maint("DelCookies"));
    CleanerStatus status;
    status.firstLine = form.Find("txtStatus");
    CleanTempFiles(flags, status);
}

// The technician's settings for CCleaner go to where it will be unpacked.
void PlaceCCleanerSettings(Form&) {
    const std::string source = GetAppPath() + "CCleaner.ini";
    const std::string folder = GetAppPath() + "3rd Party Tools\\CCleaner";
    if (!DoesFileExist(source)) return;
    MakeFolderPath(folder);
    CopyFileQuiet(source, folder + "\\CCleaner.ini");
}

void RunIdleTasks(Form&) { RunAndWait("rundll32.exe advapi32.dll,ProcessIdleTasks", 1); }

// One step of the run.
struct Step {
    const char* key;  // in section Maint; null: always
    bool (*asked)(const std::string& value);
    const char* statusKey;  // in section StatusBarText; null leaves the line as it is
    const char* status;
    const char* statusTail;  // behind the text, whatever its language
    bool thirdParty;
    void (*run)(Form& form);
};

// The order matters: the cleaners run ahead of what works on the remaining files, and a restore point comes last.
const Step steps[] = {
    {nullptr, nullptr, nullptr, "", "", false, CleanTemps},
    {"CleanMgr", Eq1, "Running", "Running", " CleanMgr.exe", false, [](Form&) { RunCleanMgr(); }},
    {nullptr, nullptr, nullptr, "", "", true, PlaceCCleanerSettings},
    {nullptr, nullptr, nullptr, "", "", true, RunCustomMaintApps},
    {"DefragReg", Num1, nullptr, "", "", true, [](Form&) { DefragRegistryAndPageFile(); }},
    {"DefragStartup", Num1, nullptr, "", "", true, [](Form&) { DefragStartupFiles(); }},
    {"ProcIdleTasks", NumPositive, "ProcessIdleTasks", "Windows is processing background tasks...", "", false,
     RunIdleTasks},
    {"DoSystemRP", Num1, "CreatingRestorePoint", "Creating System Restore Point, Please Wait...", "", false,
     [](Form&) { CreateRestorePoint(Maint("SystemRPName")); }},
};

void RunStep(const Step& step, Form& form) {
    if (step.key && !step.asked(Maint(step.key))) return;
    if (step.statusKey)
        form.SetText("txtStatus", LanguageText("StatusBarText", step.statusKey, step.status) + step.statusTail);
    step.run(form);
}

bool Confirmed(bool closeApp) {
    std::string prompt = LanguageText("MessageBoxes", "PreMaintanceMsg",
                                      "Maintenance may take from 15 minutes to several hours depending on how much "
                                      "maintenance your PC needs.  Continue?");
    if (closeApp)
        prompt += "\r\n\r\n" + LanguageText("MessageBoxes", "PreMaintanceMsgAutoClose",
                                            "(The Support Control Panel will close after maintenance is complete.)");
    return pc::ShowMessage(prompt, "", pc::styleOkCancel | pc::styleQuestion) == pc::answerOk;
}

// The last-run facts, for all that read them.
void RecordRun() {
    const std::string now = NowText();
    WriteSetting("General", "LastMaintenance", now);
    fWriteValue("HKLM", "Software\\Talvenmoor\\Maintenance", "LastRun", 'S', now);
}

}  // namespace

ThirdPartyNotice BuildThirdPartyNotice() {
    struct Tool {
        const char* key;
        const char* name;
    };
    static const Tool tools[] = {
        {"CCleaner", "Piriform CCleaner"},
        {"Defraggler", "Piriform Defraggler"},
        {"DefragReg", "Sysinternals PageDefrag (Microsoft)"},
        {"DefragStartup", "Sysinternals Contig (Microsoft)"},
    };
    std::string names;
    for (const Tool& tool : tools)
        if (Eq1(Maint(tool.key))) names += "\r\n" + std::string(tool.name) + "\r\n";
    for (int app = 0; app < 4; ++app)
        if (Eq1(Setting("CustomMaintApps", "AppEnabled" + NumberText(app))))
            names += "\r\n" + Setting("CustomMaintApps", "AppName" + NumberText(app)) + "\r\n";

    const std::string first = LanguageText("MessageBoxes", "PreMaint3rdPartyFirstLine",
                                           "Maintenance was configured by your computer technician to "
                                           "download/execute the following 3rd Party Applications:");
    const std::string second = LanguageText("MessageBoxes", "PreMaint3rdPartySecondLine",
                                            "If you do not trust these applications, click NO to run Maintenance "
                                            "WITHOUT them, or YES to include them in your Maintenance routine.");
    return {!names.empty(), first + "\r\n" + names + "\r\n" + second};
}

void RunMaintenance(Form& form) {
    const HandlerScope formsStay;  // the panel may be closed during a wait
    const bool closeApp = Num1(Maint("CloseAppAfterMaint"));
    AddUsage("Maintenance");
    if (!Confirmed(closeApp)) return;

    // The notice is prepared for a question that is not put at present, so nothing is left out.
    const ThirdPartyNotice notice = BuildThirdPartyNotice();
    const bool withoutThirdParty = false;
    for (const Step& step : steps)
        if (!(step.thirdParty && notice.any && withoutThirdParty)) RunStep(step, form);

    RecordRun();
    if (Links().getHealth) Links().getHealth(form);
    form.SetText("txtStatus", "");
    if (Num1(Maint("ShowURLAfterMaint"))) {
        OpenInBrowser(ExpandMacros(Maint("PostMaintURL")), Num1(Maint("ShowURLAfterMaintInIB")));
    } else if (!closeApp) {
        pc::ShowMessage(LanguageText("MessageBoxes", "MaintenanceIsComplete", "Maintenance is complete!"));
    }
    if (closeApp) {
        UnloadAllFormsBut(&form);
        UnloadForm(form);
    }
}
