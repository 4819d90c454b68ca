#include "startup/install.h"

#include "controls/input_box.h"
#include "maintenance/scheduled_tasks.h"
#include "platform/messages.h"
#include "system/operating_system.h"
#include "system/paths.h"
#include "system/processes.h"
#include "system/registry.h"
#include "system/settings.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

constexpr const char* oemLinkClass = "{2559a1f6-21d7-11d4-bdaf-00c04f60b9f0}";

// One value of the class key. Texts in angle brackets stand for the program and what the technician named.
struct LinkValue {
    const char* subkey;
    const char* name;
    char type;
    const char* data;
};
constexpr LinkValue linkValues[] = {
    {"\\DefaultIcon", "", 'S', "\"<exe>\",0"},
    {"", "", 'S', "<name>"},
    {"", "LocalizedString", 'S', "<name>"},
    {"", "InfoTip", 'S', "<tip>"},
    {"\\Instance\\InitPropertyBag", "CLSID", 'S', "{13709620-C279-11CE-A49E-444553540000}"},
    {"\\Instance\\InitPropertyBag", "method", 'S', "ShellExecute"},
    {"\\Instance\\InitPropertyBag", "Command", 'S', "<name>"},
    {"\\Instance\\InitPropertyBag", "Param1", 'S', "\"<exe>\""},
    {"\\Instance", "CLSID", 'S', "{3f454f0e-42ae-4d7c-8ea3-328250d6e272}"},
    {"\\ShellFolder", "Attributes", 'D', "0"},
    {"\\shellex\\ContextMenuHandlers\\{2559a1f6-21d7-11d4-bdaf-00c04f60b9f0}", "", 'S', ""},
    {"\\shellex\\MayChangeDefaultMenu", "", 'S', ""},
    {"\\InProcServer32", "", 'E', "%SystemRoot%\\system32\\shdocvw.dll"},
    {"\\InProcServer32", "ThreadingModel", 'S', "Apartment"},
};

void WriteLinkValue(const LinkValue& row, const std::string& name, const std::string& tip) {
    std::string key = std::string("CLSID\\") + oemLinkClass + row.subkey, data = row.data;
    if (row.type == 'D') {
        fWriteValue("HKCR", key, row.name, 'D', 0);
        return;
    }
    if (data == "<name>") data = name;
    if (data == "<tip>") data = tip;
    fWriteValue("HKCR", key, row.name, row.type, ReplaceAll(data, "<exe>", GetEXEPath()));
}

void OpenTaskScheduler() {
    if (IsVistaOrLater())
        StartCommand("mmc.exe taskschd.msc", 1);
    else
        StartCommand("control.exe schedtasks", 1);
}

}  // namespace

void PostInstall() {
    RemoveOldRightsTools();
    SetRPSchedules();
    SetMaintCheck();
    SetUpdateTasks();
    std::string now = NowText();
    WriteSetting("General", "LastMaintenance", now);
    fWriteValue("HKLM", "Software\\Talvenmoor\\Maintenance", "LastRun", 'S', now);
    if (Num1(Setting("ScheduledTasks", "OpenTSAfterInstall")) &&
        pc::ShowMessage("Open Task Scheduler to modify tasks?", "", pc::styleYesNo) == pc::answerYes)
        OpenTaskScheduler();
}

void InstallOEMLink() {
    if (IsVistaOrLater()) return;
    std::string name = Setting("Branding", "OEMLinkName"), tip = Setting("Branding", "OEMLinkToolTip");
    if (name.empty()) return;
    if (tip.empty()) tip = InputBox("Input the Tool Tip Text for your OEM Start Menu Link:");
    for (const LinkValue& row : linkValues) WriteLinkValue(row, name, tip);
}

void RemoveVendorKeyIfEmpty() {
    std::string subkeys;
    bool notFound = false;
    if (fEnumKey("HKLM", "Software\\Talvenmoor", subkeys) == 0 && SplitList(subkeys).empty())
        fDeleteKey("HKLM", "Software", "Talvenmoor", notFound);
}

void Uninstall() {
    bool notFound = false;
    fDeleteKey("HKLM", "Software\\Talvenmoor", "Brevanta", notFound);
    fDeleteKey("HKCR", "CLSID", oemLinkClass, notFound);
    fDeleteValue("HKLM", runKey, maintCheckValue, notFound);
    DeleteTask(appUpdateTask);
    DeleteTask(configUpdateTask);
    RemoveVendorKeyIfEmpty();
    for (int i = 0; i < 3; ++i) DeleteTask(RestorePointTaskName(i));
}
