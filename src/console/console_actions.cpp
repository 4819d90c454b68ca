#include <algorithm>

#include "console/console.h"
#include "console/console_parts.h"
#include "controls/panel_links.h"
#include "mail/mail_sender.h"
#include "maintenance/scheduled_tasks.h"
#include "panel/browser.h"
#include "panel/dialogs.h"
#include "panel/panel_forms.h"
#include "platform/files.h"
#include "platform/machine.h"
#include "platform/messages.h"
#include "system/files.h"
#include "system/operating_system.h"
#include "system/paths.h"
#include "system/processes.h"
#include "system/program_state.h"
#include "system/settings.h"
#include "system/text.h"
#include "system/trace.h"
#include "transfer/archives.h"
#include "transfer/cloud.h"
#include "transfer/config_set.h"
#include "transfer/zip_reader.h"

namespace {

std::string UploadFolder() { return GetAppPath() + "ConfigUpload"; }
std::string ConfigArchive() { return GetAppPath() + "BrevantaConfig.zip"; }

// The set that panels fetch: settings, apps, icon and logo, zipped flat. True when the archive is there and whole: what
// was saved or packed in part goes to nobody.
bool PackConfig(Form& form) {
    if (!SaveConsole(form)) return false;
    // What an earlier pack left behind is no part of this one.
    clsFSO().KillDir(UploadFolder(), false);
    MakeFolderPath(UploadFolder());
    bool isWhole = true;
    std::vector<std::string> wanted, names;
    for (const char* pattern : {"*.ini", "*.cfg", "*.ico", "supportlogo.*"}) {
        isWhole &= pc::ListFolder(GetAppPath(), pattern, [&](const pc::FileInfo& file) {
            if (!file.IsFolder()) wanted.push_back(LowerCase(file.name));
            return true;
        });
        CopyFileQuiet(GetAppPath() + pattern, UploadFolder());
    }
    ZipFolderRelative(UploadFolder(), ConfigArchive(), false);
    // The shell and the archive pass over what cannot be read, so the outcome is looked at.
    ZipExtractionClass zip;
    isWhole = isWhole && zip.OpenZip(ConfigArchive()) && zip.Test(names);
    for (std::string& name : names) name = LowerCase(name);
    for (const std::string& file : wanted)
        isWhole = isWhole && std::find(names.begin(), names.end(), file) != names.end();
    zip.CloseZip();
    clsFSO().KillDir(UploadFolder(), false);
    if (isWhole) return true;
    pc::RemoveFile(ConfigArchive());
    pc::ShowMessage("Your config could not be packed whole.  Nothing was handed on.", "", pc::styleExclamation);
    return false;
}

std::string CommonDesktop() { return pc::Environment(IsVistaOrLater() ? "public" : "allusersprofile") + "\\Desktop"; }

void UploadNow(Form& form) {
    if (PackConfig(form)) ShowFormModal(frmFTPUL);
    pc::RemoveFile(ConfigArchive());
}

void DownloadNow(Form& form) {
    CloudSet set = FetchCloudSet();
    if (set == CloudSet::damaged)
        pc::ShowMessage("The configuration that came down is damaged.  Nothing was changed.", "", pc::styleExclamation);
    if (set != CloudSet::applied) return;
    // The new process shows what came down; this one must not save over it.
    ShellX(GetEXEPath(), "/config", false, 1);
    UnloadForm(form);
}

void ViewPage(Form& form, const char* box) {
    std::string text = form.Text(box);
    if (!text.empty() && DoesFileExist(GetAppPath() + text)) text = GetAppPath() + text;
    for (const char* ending : {".exe", ".scr", ".com"})
        if (EndsWithNoCase(text, ending)) return;
    State().browserAddress = text;
    ShowPanelBrowser(true);
}

struct Schedule {
    const char* button;
    std::vector<std::string> controls;
    void (*set)();
};

const std::vector<Schedule>& Schedules() {
    static const std::vector<Schedule> schedules = {
        {"Command1", {"chkUpdateConfig", "txtUpdateLoc", "chkUpdateApp", "chkOpenTS"}, SetUpdateTasks},
        {"Command10",
         {"comboRPDay(0)", "comboRPDay(1)", "comboRPDay(2)", "txtRPTime(0)", "txtRPTime(1)", "txtRPTime(2)",
          "txtRPName(0)", "txtRPName(1)", "txtRPName(2)", "chkEnableRP(0)", "chkEnableRP(1)", "chkEnableRP(2)"},
         SetRPSchedules},
        {"Command9", {"comboMaintReminder", "chkMaintCheck"}, SetMaintCheck},
    };
    return schedules;
}

void SetSchedule(Form& form, const Schedule& schedule) {
    SaveFields(form, schedule.controls);
    schedule.set();
    pc::ShowMessage("Schedules Set!");
}

void SendConsoleTestMail(Form& form) {
    WriteEmailConfig(form);
    SendTestEmail("Test Email", "Please Disregard.", "");
}

}  // namespace

void SaveAndZip(Form& form) {
    if (!PackConfig(form)) return;
    // All users' desktop takes no file from a user without rights; the archive then stays where it is.
    bool isMoved = MoveFileQuiet(ConfigArchive(), CommonDesktop());
    pc::ShowMessage(isMoved ? "Your config is saved to your desktop."
                            : "Your config is saved here:\r\n" + ConfigArchive());
}

void SaveAndTest(Form& form) {
    SaveConsole(form);
    ShowForm(Eq1(Setting("Branding", "UseNewInterface")) ? frmMainNew : frmMain);
}

void SaveAndClose(Form& form) {
    if (SaveConsole(form)) UnloadForm(form);
}

void AttachActions(Form& form) {
    form.OnClick("cmdSetClientID", [] { ShowFormModal(frmSetClientID); });
    form.OnClick("cmdSetClientInfoNow", [] { ShowFormModal(frmClientInfoPrompt); });
    form.OnClick("cmdTestEmail", [&form] { SendConsoleTestMail(form); });
    form.OnClick("cmdViewPreURL", [&form] { ViewPage(form, "txtPreRemoteURL"); });
    form.OnClick("cmdViewRSURL", [&form] { ViewPage(form, "txtSupportApp"); });
    form.OnClick("Command2", [&form] { UploadNow(form); });
    form.OnClick("Command3", [&form] { DownloadNow(form); });
    for (const Schedule& schedule : Schedules())
        form.OnClick(schedule.button, [&form, &schedule] { SetSchedule(form, schedule); });
}
