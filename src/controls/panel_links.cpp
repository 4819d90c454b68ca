#include "controls/panel_links.h"

#include "system/trace.h"

PanelLinks& Links() {
    static PanelLinks links;
    return links;
}

void SetFormIcon(Form& form) {
    std::string file = GetAppPath() + "applogo.ico";
    form.SetIcon(DoesFileExist(file) ? file : "a1");
}
