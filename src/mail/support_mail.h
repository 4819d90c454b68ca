// The client's request to the technician, by the route that the settings choose.
#pragma once

#include <string>

#include "controls/form.h"

// The panel's entry. bChosen: the client has already picked the way, in the sidebar.
void EmailAction(bool bChosen);
// Counts the use, then shows the form or opens the mail program.
void OpenEmailRoute();
// The second way of the sidebar: counts it and opens its page.
void OpenSecondaryEmail();
// "@" and one of ".co", ".net", ".org", anywhere.
bool IsEmailAddress(const std::string& text);

extern const FormDefinition frmEmail;
extern const FormDefinition frmEmailOptions;
