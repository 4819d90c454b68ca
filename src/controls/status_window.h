// A small window that says what a long step is doing: two lines of text.
#pragma once

#include <string>

#include "controls/form.h"

extern const FormDefinition frmStatusWin;

// Shows the window if needed (modeless) and sets its lines; lets events run.
void ShowStatusWindow(const std::string& firstLine, const std::string& secondLine);
void UnloadStatusWindow();
