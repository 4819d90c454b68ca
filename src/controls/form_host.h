// What draws forms and brings the user's doings: one implementation in controls/win32, a headless one in tests/pc.
#pragma once

#include "controls/form.h"

namespace host {

// Common controls and the like; once, before the first form.
void Start();
// Makes the (hidden) window of a form and of its controls.
void Create(Form& form);
void Destroy(Form& form);
// A property of a control has changed.
void Update(Control& control, Change change);
void UpdateCaption(Form& form);
void UpdateIcon(Form& form);
void SetShown(Form& form, bool shown);
// Handles events until the form is hidden or unloaded; other forms take no input meanwhile.
void RunModal(Form& form);
// Handles events until no form is loaded.
void RunUntilNoForms();
// Sets the pointer to the system's hand until the next mouse move.
void ShowHandCursor();
// Native window handle of a form, or of a control; 0 in the headless host.
intptr_t WindowOf(const Form& form);
intptr_t WindowOf(const Control& control);
// Pixels per inch times 100 / 96: 100, 125, 150, 200.
int ScalePercent();

}  // namespace host
