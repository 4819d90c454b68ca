// The technician's own five buttons.
#pragma once

#include <string>

// n from 0 to 4. Counts the use, then does what the button's type says.
void RunCustomButton(int n);
// The single place where a warning about an outside program would go; always true.
bool ConfirmCustomAction(const std::string& sAppName, const std::string& sCaption);
