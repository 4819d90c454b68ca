// The internal browser: a technician's page inside a branded window.
#pragma once

#include "controls/form.h"

extern const FormDefinition frmPanelBrowser;

// Shows State().browserAddress, modally or beside the panel. Where the platform's browser control cannot show it, the
// address opens in the system's browser and the caller goes on as if the page had been closed.
void ShowPanelBrowser(bool modal);
