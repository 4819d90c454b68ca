#include "panel/dialogs.h"

#include "controls/panel_links.h"
#include "platform/machine.h"
#include "platform/messages.h"
#include "system/build_constants.h"
#include "system/files.h"
#include "system/language.h"
#include "system/macros.h"
#include "system/operating_system.h"
#include "system/processes.h"
#include "system/registry.h"
#include "system/settings.h"
#include "system/trace.h"

namespace {

constexpr const char* clientKey = "Software\\Brevanta";

struct ClientField {
    const char* value;
    const char* control;
};
constexpr ClientField clientFields[] = {
    {"ClientName", "txtName"}, {"ClientPhone", "txtPhone"}, {"ClientEmail", "txtEmail"}};

void LoadClientInfo(Form& form) {
    SetFormIcon(form);
    for (const ClientField& field : clientFields) {
        std::string text = ReadRegistryText("HKLM", clientKey, field.value);
        if (!text.empty()) form.SetText(field.control, text);
    }
}

void SaveClientInfo(Form& form) {
    for (const ClientField& field : clientFields)
        fWriteValue("HKLM", clientKey, field.value, 'S', form.Text(field.control));
    pc::ShowMessage("Client Information Saved.");
    UnloadForm(form);
}

void LoadClientId(Form& form) {
    SetFormIcon(form);
    Control& combo = *form.Find("Combo1");
    combo.SetItems({"Home", "Business"});
    std::string id = ReadRegistryText("HKLM", clientKey, "ClientID");
    if (!id.empty()) combo.SetText(id);
}

void SaveClientId(Form& form) {
    fWriteValue("HKLM", clientKey, "ClientID", 'S', form.Text("Combo1"));
    pc::ShowMessage("Client ID Saved.");
    UnloadForm(form);
}

const ControlSpec clientInfoControls[] = {
    {Kind::label, "Label1", "Client &Name:", {300, 360, 2160, 300}},
    {Kind::textBox, "txtName", "", {2520, 300, 4080, 360}},
    {Kind::label, "Label2", "Client &Email Address:", {300, 840, 2160, 300}},
    {Kind::textBox, "txtEmail", "", {2520, 780, 4080, 360}},
    {Kind::label, "Label3", "Client &Phone Number:", {300, 1320, 2160, 300}},
    {Kind::textBox, "txtPhone", "", {2520, 1260, 4080, 360}},
    {Kind::label,
     "Label4",
     "This information is stored in the registry and is only used to pre-populate the Email fields in the custom email "
     "form if you have enabled the internal SMTP configuration for when the client attempts to send an email to you "
     "via "
     "the Email button.",
     {300, 1860, 6300, 960},
     "",
     note | wrap},
    {Kind::button, "Command1", "&Save && Close", {4800, 3000, 1800, 420}, "", defaultButton},
};

const ControlSpec clientIdControls[] = {
    {Kind::label, "Label1", "Set Client &ID for This PC:", {300, 360, 2340, 300}},
    {Kind::combo, "Combo1", "", {2700, 300, 3900, 360}},
    {Kind::label,
     "Label2",
     "This information is stored in the registry and is only used to fill in the [ClientID] variable which can be used "
     "in URL strings throughout the Brevanta configuration.",
     {300, 900, 6300, 720},
     "",
     note | wrap},
    {Kind::label,
     "Label3",
     "You may enter in anything in this field, for example a specific client / business name, ID number from your "
     "POS/CRM, or just a descriptive name for a particular group of customers.",
     {300, 1740, 6300, 720},
     "",
     note | wrap},
    {Kind::button, "Command1", "&Save && Close", {4800, 2640, 1800, 420}, "", defaultButton},
};

void StartUnder(const char* variable, const std::string& tail, const std::string& arguments = "") {
    ShellX(pc::Environment(variable) + tail, arguments, false, 1);
}

}  // namespace

const FormDefinition frmClientInfoPrompt = {
    "frmClientInfoPrompt", "Client Information", 6900, 3660, Border::dialog, clientInfoControls, [](Form& form) {
        form.onLoad = [&form] { LoadClientInfo(form); };
        form.OnClick("Command1", [&form] { SaveClientInfo(form); });
    }};

const FormDefinition frmSetClientID = {
    "frmSetClientID", "Set Client ID:", 6900, 3300, Border::dialog, clientIdControls, [](Form& form) {
        form.onLoad = [&form] { LoadClientId(form); };
        form.OnClick("Command1", [&form] { SaveClientId(form); });
    }};

void OpenLogoLink() {
    if (!Num1(Setting("Branding", "LogoToWebsite"))) return;
    std::string address = Setting("Branding", "LogoWebsite");
    if (pc::ShowMessage(address, "Go to website:", pc::styleOkCancel | pc::styleQuestion) == pc::answerOk)
        OpenDocument(ExpandMacros(address));
}

void ClearPrintQueue() {
    std::string cleared =
        LanguageText("MessageBoxes", "PrintQueueCleared", "Print Queue Cleared!  You may now try to print again.");
    RunAndWait("cmd /c net stop spooler /y", 0);
    std::string queue = pc::Environment("windir") + "\\System32\\spool\\PRINTERS";
    if (DoesDirExist(queue)) clsFSO().KillDir(queue, false);
    RunAndWait("cmd /c net start spooler", 0);
    pc::ShowMessage(cleared);
}

void OpenSystemRestore() {
    bool vista = IsVistaOrLater();
    DebugOutput(vista ? "Windows 7 or Vista" : "Windows XP or below");
    StartUnder("systemroot", vista ? "\\system32\\rstrui.exe" : "\\system32\\restore\\rstrui.exe");
}

void OpenWindowsUpdate() {
    bool vista = IsVistaOrLater();
    DebugOutput(vista ? "Windows 7 or Vista" : "Windows XP or below");
    if (!vista) {
        StartUnder("programfiles", "\\Internet Explorer\\iexplore.exe", build::windowsUpdateUrl);
    } else if (clsOpSys().MajorVersion >= 10 &&
               !DoesFileExist(pc::Environment("systemroot") + "\\system32\\wuapp.exe")) {
        // Windows 10 moved the old program's work to a settings page.
        OpenDocument("ms-settings:windowsupdate");
    } else {
        StartUnder("systemroot", "\\system32\\wuapp.exe");
    }
}
