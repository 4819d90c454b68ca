#include "panel/custom_buttons.h"

#include "controls/panel_links.h"
#include "panel/dialogs.h"
#include "panel/remote_support.h"
#include "system/macros.h"
#include "system/processes.h"
#include "system/settings.h"
#include "system/text.h"
#include "system/trace.h"
#include "system/usage.h"

namespace {

struct CustomButton {
    const char* section;
    const char* counter;
    const char* zipSection;  // whose CustomEXEinZIP is read; the fifth button has always used the second one's
    const char* title;       // of the download window
};
constexpr CustomButton buttons[] = {
    {"CustomButton", "CustomButton0", "CustomButton", "Downloading Remote Support App"},
    {"CustomButton1", "CustomButton1", "CustomButton1", "Downloading..."},
    {"CustomButton2", "CustomButton2", "CustomButton2", "Downloading..."},
    {"CustomButton3", "CustomButton3", "CustomButton3", "Downloading..."},
    {"CustomButton4", "CustomButton4", "CustomButton1", "Downloading..."},
};

// What a button's keys say at the moment of the click.
struct Press {
    const CustomButton& button;
    std::string action, parameters, downloadName, caption, appName;
};

void DownloadCustomApp(const Press& press) {
    if (!ConfirmCustomAction(press.appName, press.caption)) return;
    DownloadAndRun({press.action, press.parameters, press.downloadName, "CustomDL",
                    Setting(press.button.zipSection, "CustomEXEinZIP"), press.button.title});
}

void RunCustomProgram(const Press& press) {
    if (!ConfirmCustomAction(press.appName, press.caption)) return;
    std::string program = ExpandEnvVars(press.action);
    // The doubled backslash is accepted by the system, and relative paths work through it.
    if (!DoesFileExist(program)) program = GetAppPath() + "\\" + program;
    ShellX(program, press.parameters, false, 1);
}

// As it stands: macros are for the technician's other pages.
void OpenCustomUrl(const Press& press) {
    OpenInBrowser(press.action, Num1(Setting(press.button.section, "ShowCustomURLinIB")));
}

void StartBootRepairTool(const Press&) { ShellX(GetAppPath() + "Pelmark.exe", "", false, 2); }

struct TypeAction {
    const char* type;
    void (*run)(const Press&);
};
constexpr TypeAction typeActions[] = {
    {"", [](const Press&) { OpenWindowsUpdate(); }},
    {"WU", [](const Press&) { OpenWindowsUpdate(); }},
    {"EXE", RunCustomProgram},
    {"URL", OpenCustomUrl},
    {"SR", [](const Press&) { OpenSystemRestore(); }},
    {"CPQ", [](const Press&) { ClearPrintQueue(); }},
    {"SAFE", StartBootRepairTool},
    {"DOWNLOAD", DownloadCustomApp},
};

}  // namespace

bool ConfirmCustomAction(const std::string&, const std::string&) { return true; }

void RunCustomButton(int n) {
    const CustomButton& button = buttons[n];
    AddUsage(button.counter);
    auto read = [&](const char* key) { return Setting(button.section, key); };
    Press press = {button,
                   read("ButtonAction"),
                   read("CustomEXEParms"),
                   UpperCase(read("DownloadName")),
                   read("ButtonCaption"),
                   read("CustomAppName")};
    std::string type = UpperCase(read("Type"));
    for (const TypeAction& row : typeActions)
        if (type == row.type) row.run(press);
}
