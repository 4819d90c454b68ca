#include "startup/modes.h"

#include "console/console.h"
#include "maintenance/restore_points.h"
#include "panel/skin.h"
#include "startup/config_update.h"
#include "startup/install.h"
#include "startup/startup.h"
#include "transfer/self_update.h"

namespace {

constexpr Mode modes[] = {
    {"/maintenance", true, true, RunMaintenanceMode},
    {"/disablemaintenance", false, false, DisableMaintenanceCheck},
    {"/config", true, true, [] { ShowForm(frmConfig()); }},
    {"/configskin", true, true, [] { ShowPage(ShowForm(frmConfig()), "picSkins"); }},
    {"/updateonly", true, false, [] { ShowFormModal(frmCompUpdateBeta); }},
    {"/installoemlink", false, false, InstallOEMLink},
    {"/installer", false, false, PostInstall},
    {"/updateconfig", false, false, ConfigUpdate},
    {"/uninstaller", false, false, Uninstall},
    {"/clientinfo", true, false, PromptClientInfo},
    {"/rp0", false, false, [] { CreateScheduledRestorePoint(0); }},
    {"/rp1", false, false, [] { CreateScheduledRestorePoint(1); }},
    {"/rp2", false, false, [] { CreateScheduledRestorePoint(2); }},
    {nullptr, true, true, RunPanelMode},
};

}  // namespace

std::span<const Mode> Modes() { return modes; }

const Mode& ChooseMode(const std::string& commandLine) {
    const Mode* mode = modes;
    while (mode->argument && commandLine != mode->argument) ++mode;
    return *mode;
}

void RunMode(const Mode& mode) {
    if (mode.usesControls) InitControls();
    if (mode.usesSkin) LoadConfiguredSkin();
    mode.run();
}
