// The window of the reminder: how long it has been, and what the client wants done about it.
#pragma once

#include "controls/form.h"

extern const FormDefinition frmReminder;
