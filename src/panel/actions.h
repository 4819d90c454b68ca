// Which control or sidebar item leads to which action. The action routines live elsewhere; here is only the dispatch.
#pragma once

#include "controls/form.h"

// What a button or item of the panel can do.
enum class PanelAction {
    none,
    maintenance,
    fixInternet,
    remoteSupport,
    firstEmail,     // the classic button
    chosenEmail,    // first mail item of the sidebar
    secondEmail,    // second mail item
    customButton0,  // section CustomButton
    customButton1,
    customButton2,
    customButton3,
    customButton4,
    logoLink,
    restorePointPage,
    closePanel,
};

// Action behind a sidebar item, both numbers from 1. Goes by position and not by caption: it reads the settings that
// filled the first places and takes no account of custom buttons that are switched off.
PanelAction SideBarAction(int group, int item);
// Runs the action's routine; an action without one does nothing.
void RunPanelAction(PanelAction action, Form& form);

// Give the controls of a face their actions.
void AttachClassicActions(Form& form);
void AttachNewActions(Form& form);
// The large custom text of the new face as a link, if the settings ask for it.
void DressLargeTextLink(Form& form);
