// Pelmark.exe: restarts the PC once in safe mode with network, after saying in plain words what that means.
#include "controls/form_host.h"
#include "platform/machine.h"
#include "safe_form.h"
#include "safe_start.h"
#include "system/processes.h"
#include "system/program_state.h"
#include "system/text.h"
#include "system/trace.h"

int main() {
    InitPaths(true, true);
    State().bHandle64BitRedirect = true;
    // The brand stands in the panel's settings.
    State().settingsFile = GetAppPath() + "Brevanta.ini";
    if (LowerCase(pc::CommandLine()) == "/undo") {
        UndoSafeStart();
        return 0;
    }
    host::Start();
    ShowForm(frmSafeMode);
    host::RunUntilNoForms();
    return 0;
}
