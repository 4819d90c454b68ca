#include "reminder_form.h"

#include "controls/branding.h"
#include "controls/panel_links.h"
#include "platform/processes.h"
#include "reminder.h"
#include "system/processes.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

const ControlSpec controls[] = {
    {Kind::image, "AlphaImgCtl1", "", {300, 300, 2280, 1575}},
    {Kind::label, "lblTitle", "Time for maintenance", {2880, 300, 4620, 480}, "", heading},
    {Kind::label, "lblDays", "", {2880, 900, 4620, 540}, "", wrap | noPrefix},
    {Kind::label, "lblAdvice", "Regular maintenance keeps your PC clean and quick.", {2880, 1500, 4620, 540}, "", wrap},
    {Kind::button, "cmdRun", "&Run Now", {300, 2400, 2280, 480}, "", defaultButton},
    {Kind::button, "cmdLater", "Remind Me &Later", {2760, 2400, 2280, 480}, "", cancelButton},
    {Kind::button, "cmdStop", "&Stop Reminding", {5220, 2400, 2280, 480}},
};

std::string PanelProgram() { return GetAppPath() + "Brevanta.exe"; }

std::string DaysText() {
    auto days = DaysSinceMaintenance();
    if (!days) return "Your PC has not had its maintenance yet.";
    return "The last maintenance of your PC was " + NumberText(*days) + " days ago.";
}

// Without a logo the texts take its place.
void ShowLogo(Form& form) {
    form.Find("AlphaImgCtl1")->SetPicture(LogoFile());
    if (DoesFileExist(LogoFile())) return;
    form.SetVisible("AlphaImgCtl1", false);
    for (const char* name : {"lblTitle", "lblDays", "lblAdvice"}) {
        Box box = form.Find(name)->Place();
        form.Find(name)->SetPlace({300, box.top, 7200, box.height});
    }
}

}  // namespace

const FormDefinition frmReminder = {"frmReminder", "", 7800, 3180, Border::fixed, controls, [](Form& form) {
                                        form.onLoad = [&form] {
                                            SetFormIcon(form);
                                            form.SetCaption(BrandName());
                                            ShowLogo(form);
                                            form.SetText("lblDays", DaysText());
                                        };
                                        form.OnClick("cmdRun", [&form] {
                                            ShellX(PanelProgram(), "/maintenance", false, 1);
                                            UnloadForm(form);
                                        });
                                        form.OnClick("cmdLater", [&form] { UnloadForm(form); });
                                        // The entry stands in the machine's part of the registry, so the panel asks for
                                        // the rights to remove it.
                                        form.OnClick("cmdStop", [&form] {
                                            pc::ShellOpen(PanelProgram(), "runas", "/disablemaintenance", 1);
                                            UnloadForm(form);
                                        });
                                    }};
