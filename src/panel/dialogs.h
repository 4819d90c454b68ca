// Small dialogs around the panel, and the actions that open a Windows tool.
#pragma once

#include "controls/form.h"

extern const FormDefinition frmClientInfoPrompt;  // shown modally
extern const FormDefinition frmSetClientID;       // shown modally

// Asks, then opens the logo's website, if there is one.
void OpenLogoLink();
// Deletes the spooler's folder while it is stopped; tells the client so in any case.
void ClearPrintQueue();
// Windows' own tools, at the place that this Windows has them; a missing one leaves a line in the trace.
void OpenSystemRestore();
void OpenWindowsUpdate();
