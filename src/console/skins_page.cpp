// The skin half of page picSkins.
#include "console/console.h"
#include "console/console_parts.h"
#include "maintenance/scheduled_tasks.h"
#include "platform/machine.h"
#include "platform/messages.h"
#include "system/paths.h"
#include "system/processes.h"
#include "system/settings.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

// A skin cannot be taken on by a running console, so a new process shows it.
void PreviewSkin(Form& form) {
    std::string folder = GetAppPath() + "Skins";
    if (!DoesDirExist(folder)) MakeFolderPath(folder);
    std::string skin = ShowFilePicker(folder, "Pick a Skin:", "*.urf");
    if (skin.empty()) return;
    WriteSetting("Branding", "Skin", StripPath(skin));
    SaveConsole(form);
    if (LowerCase(pc::Environment("computername")) != "dev") SetRPSchedules();
    UnloadAllFormsBut(&form);
    ShellX(GetEXEPath(), "/configskin", false, 1);
    UnloadForm(form);
}

void UseSkin(Form& form) {
    std::string skin = form.Text("lblSkin");
    if (skin.empty()) return;
    WriteSetting("Branding", "Skin", skin);
    pc::ShowMessage("The selected skin is now set!");
}

void UseClassicView(Form& form) {
    WriteSetting("Branding", "Skin", "");
    form.SetText("lblSkin", "");
    pc::ShowMessage("The classic skin is now set!  (You may need to restart to see the effects.)");
}

}  // namespace

void AttachSkinsPage(Form& form) {
    form.OnClick("Command6", [&form] { PreviewSkin(form); });
    form.OnClick("Command7", [&form] { UseSkin(form); });
    form.OnClick("Command8", [&form] { UseClassicView(form); });
}
