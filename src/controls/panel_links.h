// What lower rooms need of the panel, set once at start: they stand below it and cannot include it.
#pragma once

#include "controls/form.h"

struct PanelLinks {
    void (*getHealth)(Form& form) = nullptr;         // refreshes the health display
    void (*showPanelBrowser)(bool modal) = nullptr;  // shows the internal browser at State().browserAddress
};
PanelLinks& Links();

// Gives the form the technician's icon ("applogo.ico" in the application folder) or the program's.
void SetFormIcon(Form& form);
