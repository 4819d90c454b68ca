// Turns the settings into a dressed panel. Every setting is read at the moment of use; a control that a face lacks is
// passed over.
#pragma once

#include "controls/form.h"

// Icon, translated captions and the logo's link.
void LoadPanelCommon(Form& form);
// Captions that "AltLang.INI" replaces.
void ApplyLanguageCaptions(Form& form);
// Texts, buttons, logo and phone of the face, and what the actions read in State().
void LayoutClassicPanel(Form& form);
void LayoutNewPanel(Form& form);
// Groups and items of the new face's sidebar. Items lead to actions by their position (actions.h).
void BuildSideBar(Form& form);
// Shows the dressed window, then measures the PC with the window in sight.
void ShowAndMeasure(Form& form);
// What closing a panel does: the skin goes, the form hides, and the usage upload takes over, which ends the process.
void LeavePanel(Form& form);
