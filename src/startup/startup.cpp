#include "startup/startup.h"

#include "controls/form_host.h"
#include "maintenance/custom_apps.h"
#include "panel/panel_forms.h"
#include "platform/library.h"
#include "platform/machine.h"
#include "system/program_state.h"
#include "system/resources.h"
#include "system/text.h"
#include "system/trace.h"
#include "transfer/self_update.h"

namespace {

pc::Library shellLibrary;

}  // namespace

void PrepareStart() {
    InitPaths(true, true);
    State().bHandle64BitRedirect = true;
    RecoverInterruptedUpdate();
    ConvertCustomApps();
    ExtractProgressControl();
    State().commandLine = LowerCase(pc::CommandLine());
    ConnectPanel();
}

void InitControls() {
    shellLibrary.Load("shell32.dll");
    host::Start();
}

void FreeShellLibrary() { shellLibrary.Free(); }

void ExtractProgressControl() { ExtractResource("ccpb", GetAppPath() + "ccrpprg6.ocx"); }
