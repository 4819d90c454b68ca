// The one-click repair of the PC's internet connection.
#pragma once

#include <string>

#include "controls/form.h"

// The whole sequence with its confirmation; form is the panel, whose txtStatus tells the progress.
void FixInternet(Form& form);

// The steps.
void ClearProxySettings();
void ClearProxyForUser(const std::string& sid);
void ResetNetworking();
void ResetHostsFile();
void RestartInternetExplorer();
