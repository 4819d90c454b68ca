// The technician's console: one form, a sidebar, fifteen pages.
#pragma once

#include "controls/form.h"

// The console; laid out at its first use, which a panel never needs.
const FormDefinition& frmConfig();

// All pages from the settings; nothing when there is no settings file.
void LoadConsole(Form& form);
// All pages to the settings. False when they could not be written, which the user is told.
bool SaveConsole(Form& form);
// Every page is out of sight afterwards.
void HideAllPages(Form& form);
void ShowPage(Form& form, const char* page);
// The mail account of page picSMTP, the receiver from page picEmail; passwords scrambled. False when not all of it
// could be written.
bool WriteEmailConfig(Form& form);
void ReadEmailConfig(Form& form);
