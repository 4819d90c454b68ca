#include "safe_form.h"

#include "controls/branding.h"
#include "controls/panel_links.h"
#include "platform/machine.h"
#include "platform/messages.h"
#include "safe_start.h"
#include "system/processes.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

const ControlSpec controls[] = {
    {Kind::label, "lblTitle", "Restart in Safe Mode", {360, 300, 6480, 480}, "", heading},
    {Kind::label,
     "lblWhat",
     "Your PC will restart now, in safe mode with network.  Windows looks plainer there, and only what it needs to run "
     "is "
     "loaded, so that your technician can repair it.",
     {360, 960, 6480, 780},
     "",
     wrap},
    {Kind::label,
     "lblBack",
     "Nothing needs to be set back:  the start after that is a normal one again.",
     {360, 1860, 6480, 300},
     "",
     wrap},
    {Kind::label,
     "lblSave",
     "Please save your work and close your programs first.",
     {360, 2340, 6480, 300},
     "",
     bold | wrap},
    {Kind::button, "cmdRestart", "&Restart Now", {3120, 3000, 1800, 480}},
    {Kind::button, "cmdCancel", "Cancel", {5040, 3000, 1800, 480}, "", cancelButton | defaultButton},
};

void Restart(Form& form) {
    if (!SetSafeStart()) {
        pc::ShowMessage("Safe mode could not be set.  Nothing was changed.", "", pc::styleExclamation);
        return;
    }
    ShellX(pc::Environment("systemroot") + "\\system32\\shutdown.exe", "-r -t 0", false, 0);
    UnloadForm(form);
}

}  // namespace

const FormDefinition frmSafeMode = {"frmSafeMode", "", 7200, 3840, Border::fixed, controls, [](Form& form) {
                                        form.onLoad = [&form] {
                                            SetFormIcon(form);
                                            form.SetCaption(BrandName() + "  -  Safe Mode");
                                            form.Find("cmdCancel")->SetFocus();
                                        };
                                        form.OnClick("cmdRestart", [&form] { Restart(form); });
                                        form.OnClick("cmdCancel", [&form] { UnloadForm(form); });
                                    }};
