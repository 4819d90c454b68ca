// BrevantaMCStub.exe: started at each logon; reminds the client, politely, when the last maintenance was long ago.
#include "controls/form_host.h"
#include "platform/processes.h"
#include "reminder.h"
#include "reminder_form.h"
#include "system/processes.h"
#include "system/program_state.h"
#include "system/trace.h"

int main() {
    InitPaths(true, true);
    State().bHandle64BitRedirect = true;
    State().settingsFile = GetAppPath() + "Brevanta.ini";
    if (!IsReminderDue() || !pc::HoldSingleInstance("BrevantaReminder")) return 0;
    host::Start();
    ShowForm(frmReminder);
    host::RunUntilNoForms();
    return 0;
}
