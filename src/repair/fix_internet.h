// The one-click repair of the PC's internet connection.
#pragma once

#include <string>

#include "controls/form.h"

// The whole sequence with its confirmation; form is the panel, whose txtStatus tells the progress.
void FixInternet(Form& form);

// The steps. None tells of a failure: what cannot be done is passed over, and the trace has it.

// The LAN connection, every loaded user with a full identifier, the present user and the machine.
void ClearProxySettings();
// sid as text, a key of HKEY_USERS; a hive that is not loaded is passed over.
void ClearProxyForUser(const std::string& sid);
// Commands of the system, each waited for; on a static address (State().bHasStaticIP) those that would lose it are
// left out, before Vista the socket keys go back to their stock state first.
void ResetNetworking();
// The old file stays as "hosts.RENAMED", unless there is one already.
void ResetHostsFile();
// Ends all its processes, takes it out of offline mode and starts it, where there is one.
void RestartInternetExplorer();
