#include "controls/panel_links.h"

#include "system/processes.h"
#include "system/program_state.h"
#include "system/trace.h"

PanelLinks& Links() {
    static PanelLinks links;
    return links;
}

void OpenInBrowser(const std::string& address, bool inside, bool modal) {
    if (!inside || !Links().showPanelBrowser) return OpenDocument(address);
    State().browserAddress = address;
    Links().showPanelBrowser(modal);
}

void SetFormIcon(Form& form) {
    std::string file = GetAppPath() + "applogo.ico";
    form.SetIcon(DoesFileExist(file) ? file : "a1");
}
