#include "controls/status_window.h"

#include "controls/panel_links.h"
#include "system/processes.h"
#include "system/program_state.h"

static const ControlSpec controls[] = {
    {Kind::label, "lblStatus", "", {240, 240, 5520, 300}, "", bold | noPrefix},
    {Kind::label, "lblStatus2", "", {240, 600, 5520, 300}, "", noPrefix},
};

const FormDefinition frmStatusWin = {
    "frmStatusWin", "Please Wait...", 6000, 1140, Border::fixed, controls, [](Form& form) {
        form.onLoad = [&form] {
            SetFormIcon(form);
            if (!State().AppName.empty()) form.SetCaption(State().AppName);
        };
        // The work goes on behind it, so the window does not leave before the work does.
        form.onQueryUnload = [](bool fromUser) { return !fromUser; };
    }};

void ShowStatusWindow(const std::string& firstLine, const std::string& secondLine) {
    Form& form = LoadForm(frmStatusWin);
    form.SetText("lblStatus", firstLine);
    form.SetText("lblStatus2", secondLine);
    form.SetVisible(true);
    DoEvents();
}

void UnloadStatusWindow() {
    if (Form* form = FindForm("frmStatusWin")) UnloadForm(*form);
}
