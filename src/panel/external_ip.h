// The PC's public address, learned by the small companion "GetExternalIP.exe", which leaves it in "External.IP".
#pragma once

#include "controls/form.h"

// Writes the companion from the program's resources if it is missing.
void ExtractExternalIPTool();
// Starts the companion and the form's Timer1, which looks for the answer each second, without a limit.
void RequestExternalAddress(Form& form);
// A tick: once the answer is there it goes to lblExtIP, answer and companion are deleted and the timer stops.
void TakeExternalAddress(Form& form);
