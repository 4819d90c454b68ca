// The client's window in its two faces: the classic one with push buttons and the new one with a sidebar.
//
// Both have the same health area and the same names for what actions reach, so one routine serves both.
#pragma once

#include "controls/form.h"

extern const FormDefinition frmMain;
extern const FormDefinition frmMainNew;

// The face that the settings ask for.
const FormDefinition& ConfiguredPanel();
// Hands the health display and the panel's labels to the rooms below; once at start.
void ConnectPanel();
