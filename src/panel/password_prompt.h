// Gives a client whose Windows password was removed for a repair the chance to set a new one. Shown instead of the
// panel, once for each user.
#pragma once

#include "controls/form.h"

extern const FormDefinition frmPW;

// Whether the settings ask for the prompt for the present user.
bool IsPasswordPromptSet();
