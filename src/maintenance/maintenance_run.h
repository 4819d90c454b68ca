// The maintenance run: everything that the panel's Maintenance button does, from the question to the closing message.
#pragma once

#include <string>

#include "controls/form.h"

// Asks, then takes each step that section Maint of the settings asks for, one after the other. form is the panel that
// is showing; its txtStatus tells the step. A step that fails is passed over.
void RunMaintenance(Form& form);

// Selects all handlers of the system's Disk Cleanup but those that compress, drop memory dumps, empty the recycle bin
// or remove Office's setup files, and runs it.
void RunCleanMgr();

// What the settings make the run start of other makers' programs.
struct ThirdPartyNotice {
    bool any = false;
    std::string text;  // for a message box: the list of names between two sentences
};
ThirdPartyNotice BuildThirdPartyNotice();
