#include "controls/form_host.h"
#include "startup/modes.h"
#include "startup/startup.h"
#include "system/program_state.h"
#include "system/text.h"
#include "system/trace.h"

int ProgramMain() {
    PrepareStart();
    // A copy that an update moved aside is started only to put a cut-off update right, which it has now done.
    if (EndsWithNoCase(GetEXEName(), "_old")) return 0;
    RunMode(ChooseMode(State().commandLine));
    FreeShellLibrary();
    if (!LoadedForms().empty()) host::RunUntilNoForms();
    return 0;
}
