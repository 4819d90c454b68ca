#include "repair/internet.h"

#include "platform/internet.h"
#include "system/build_constants.h"
#include "system/processes.h"
#include "system/program_state.h"

bool IsInternetPresent() {
    bool present = pc::CheckConnection(build::presenceUrl);
    State().bInternetPresent = present;
    DoEvents();
    return present;
}
