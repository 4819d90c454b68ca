// What lower rooms need of the panel, set once at start: they stand below it and cannot include it.
#pragma once

#include <string>

#include "controls/form.h"

// Calls upward; empty in a program without a panel.
struct PanelLinks {
    void (*getHealth)(Form& form) = nullptr;         // refreshes the health display
    void (*showPanelBrowser)(bool modal) = nullptr;  // shows the internal browser at State().browserAddress
};
PanelLinks& Links();

// Shows a page in the panel's own browser (modal: until the client closes it) or, when inside is false, in the
// system's.
void OpenInBrowser(const std::string& address, bool inside, bool modal = true);

// Gives the form the technician's icon ("applogo.ico" in the application folder) or the program's.
void SetFormIcon(Form& form);
