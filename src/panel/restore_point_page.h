// The new face's page for restore points (picSRP): three schedules, and one point at once.
#pragma once

#include "controls/form.h"

// Takes the schedules from the settings.
void LoadRestorePointPage(Form& form);
// The same, then brings the page up.
void ShowRestorePointPage(Form& form);
// Gives the page's controls their handlers.
void AttachRestorePage(Form& form);
