// What a run of the program is: one mode, chosen by the whole command line.
#pragma once

#include <span>
#include <string>

// A row of the table of modes.
struct Mode {
    const char* argument;  // lower case; null in the last row, which takes everything else
    bool usesControls;     // common controls first
    bool usesSkin;         // then the configured skin
    void (*run)();
};

// In the order tested.
std::span<const Mode> Modes();
// commandLine is the whole line behind the program name, lower-cased. It must equal an argument; there is no parsing.
const Mode& ChooseMode(const std::string& commandLine);
// Does what the mode needs first, then runs it.
void RunMode(const Mode& mode);

// Mode routines.
void RunPanelMode();             // the panel
void RunMaintenanceMode();       // the panel with a maintenance run at once
void DisableMaintenanceCheck();  // no more reminder at log-on; the setting stays
void PromptClientInfo();         // asks for the client's data, as the settings want
