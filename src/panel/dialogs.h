// Small dialogs around the panel, and the actions that open a Windows tool.
#pragma once

#include "controls/form.h"

extern const FormDefinition frmClientInfoPrompt;  // shown modally
extern const FormDefinition frmSetClientID;       // shown modally

// Asks, then opens the logo's website, if there is one.
void OpenLogoLink();
void ClearPrintQueue();
void OpenSystemRestore();
void OpenWindowsUpdate();
