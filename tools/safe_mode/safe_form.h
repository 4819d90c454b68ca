// The window that says what a restart in safe mode means, and does it.
#pragma once

#include "controls/form.h"

extern const FormDefinition frmSafeMode;
