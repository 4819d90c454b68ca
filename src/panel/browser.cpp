#include "panel/browser.h"

#include <memory>

#include "controls/branding.h"
#include "controls/form_resizer.h"
#include "controls/panel_links.h"
#include "system/processes.h"
#include "system/program_state.h"

namespace {

const ControlSpec controls[] = {
    {Kind::browser, "WebBrowser1", "", {0, 0, 13200, 8700}},
};

}  // namespace

const FormDefinition frmPanelBrowser = {"frmPanelBrowser", "", 13200, 8700, Border::sizable, controls, [](Form& form) {
                                            auto resizer = std::make_shared<FormResizer>();
                                            form.onLoad = [&form, resizer] {
                                                resizer->InitResizeArray(form);
                                                SetFormIcon(form);
                                                State().AppName = BrandName();
                                                form.SetCaption(State().AppName);
                                                form.Find("WebBrowser1")->Navigate(State().browserAddress);
                                            };
                                            form.onResize = [resizer] { resizer->ResizeControls(); };
                                            // The host tells by a change that the control could not be made or the page
                                            // not be shown.
                                            form.Find("WebBrowser1")->onChange = [&form] {
                                                OpenDocument(form.Find("WebBrowser1")->Address());
                                                UnloadForm(form);
                                            };
                                        }};

void ShowPanelBrowser(bool modal) {
    if (modal)
        ShowFormModal(frmPanelBrowser);
    else
        ShowForm(frmPanelBrowser);
}
