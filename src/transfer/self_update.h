// The program's own update: fetches a newer release and swaps the program files, which a running program allows by
// renaming them aside.
#pragma once

#include "controls/form.h"

// Shown modally by the scheduled update; ends the process at its end, always.
extern const FormDefinition frmCompUpdateBeta;

// Puts right what an update left that was cut off (power loss): a sound update archive is unpacked to its end,
// otherwise the moved-aside files are put back. Nothing happens when no "_old" file waits.
void RecoverInterruptedUpdate();
