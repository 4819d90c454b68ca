// The modes that show the panel, and the small ones around it.

#include "maintenance/maintenance_run.h"
#include "maintenance/scheduled_tasks.h"
#include "panel/dialogs.h"
#include "panel/panel_forms.h"
#include "panel/password_prompt.h"
#include "startup/config_update.h"
#include "startup/modes.h"
#include "system/registry.h"
#include "system/settings.h"
#include "system/usage.h"

void RunPanelMode() {
    if (IsPasswordPromptSet()) {
        ShowForm(frmPW);
        return;
    }
    if (Eq1(Setting("Nimbra", "UpdateAtLaunch"))) PullCloudConfig();
    AddUsage("AppLaunch");
    ShowForm(ConfiguredPanel());
}

void RunMaintenanceMode() {
    Form& panel = ShowForm(ConfiguredPanel());
    if (IsFormLoaded(panel.Name())) RunMaintenance(panel);
}

void DisableMaintenanceCheck() {
    bool notFound = false;
    fDeleteValue("HKLM", runKey, maintCheckValue, notFound);
}

void PromptClientInfo() {
    if (Eq1(Setting("EmailConfig", "UseInternalSMTP"))) ShowFormModal(frmClientInfoPrompt);
    if (Eq1(Setting("Install", "PromptForClientID"))) ShowFormModal(frmSetClientID);
}
