#include "panel/actions.h"

#include "controls/form_host.h"
#include "mail/support_mail.h"
#include "maintenance/maintenance_run.h"
#include "panel/custom_buttons.h"
#include "panel/dialogs.h"
#include "panel/external_ip.h"
#include "panel/remote_support.h"
#include "panel/restore_point_page.h"
#include "repair/fix_internet.h"
#include "system/processes.h"
#include "system/program_state.h"
#include "system/settings.h"
#include "system/usage.h"

namespace {

struct ControlAction {
    const char* control;
    PanelAction action;
};
constexpr ControlAction classicActions[] = {
    {"cmdFix", PanelAction::fixInternet},
    {"cmdMaint", PanelAction::maintenance},
    {"cmdStartSupport", PanelAction::remoteSupport},
    {"cmdEmailSupport", PanelAction::firstEmail},
    {"cmdCustom", PanelAction::customButton0},
    {"cmdClose", PanelAction::closePanel},
};

struct ActionRoutine {
    PanelAction action;
    void (*run)(Form&);
};
constexpr ActionRoutine routines[] = {
    {PanelAction::maintenance, RunMaintenance},
    {PanelAction::fixInternet, FixInternet},
    {PanelAction::remoteSupport, [](Form&) { StartRemoteSupport(); }},
    {PanelAction::firstEmail, [](Form&) { EmailAction(false); }},
    {PanelAction::chosenEmail, [](Form&) { EmailAction(true); }},
    {PanelAction::secondEmail, [](Form&) { OpenSecondaryEmail(); }},
    {PanelAction::customButton0, [](Form&) { RunCustomButton(0); }},
    {PanelAction::customButton1, [](Form&) { RunCustomButton(1); }},
    {PanelAction::customButton2, [](Form&) { RunCustomButton(2); }},
    {PanelAction::customButton3, [](Form&) { RunCustomButton(3); }},
    {PanelAction::customButton4, [](Form&) { RunCustomButton(4); }},
    {PanelAction::logoLink, [](Form&) { OpenLogoLink(); }},
    {PanelAction::restorePointPage, ShowRestorePointPage},
    {PanelAction::closePanel, [](Form& form) { UnloadForm(form); }},
};

PanelAction SupportItem(int item) {
    if (item == 1)
        return Ne0(Setting("Branding", "ShowEmailButton")) ? PanelAction::chosenEmail : PanelAction::remoteSupport;
    if (item == 2 && Eq1(Setting("EmailConfig", "OfferTwoOptions"))) return PanelAction::secondEmail;
    return item <= 3 ? PanelAction::remoteSupport : PanelAction::none;
}

constexpr PanelAction taskItems[] = {
    PanelAction::maintenance,   PanelAction::fixInternet,   PanelAction::customButton0, PanelAction::customButton1,
    PanelAction::customButton2, PanelAction::customButton3, PanelAction::customButton4,
};

PanelAction TaskItem(int item) {
    if (Eq1(Setting("CustomRP", "ShowOption")) && --item == 0) return PanelAction::restorePointPage;
    return item <= static_cast<int>(std::size(taskItems)) ? taskItems[item - 1] : PanelAction::none;
}

// Handlers that both faces have.
void AttachCommon(Form& form) {
    if (Control* logo = form.Find("AlphaImgCtl1")) {
        if (Num1(Setting("Branding", "LogoToWebsite")))
            logo->onClick = [&form] { RunPanelAction(PanelAction::logoLink, form); };
        logo->onMouseMove = [] {
            if (State().logoIsLink) host::ShowHandCursor();
        };
    }
    if (Control* timer = form.Find("Timer1")) timer->onTimer = [&form] { TakeExternalAddress(form); };
}

}  // namespace

PanelAction SideBarAction(int group, int item) {
    if (item < 1) return PanelAction::none;
    if (group == 1) return SupportItem(item);
    return group == 2 ? TaskItem(item) : PanelAction::none;
}

void RunPanelAction(PanelAction action, Form& form) {
    for (const ActionRoutine& routine : routines)
        if (routine.action == action) routine.run(form);
}

void AttachClassicActions(Form& form) {
    for (const ControlAction& row : classicActions)
        form.OnClick(row.control, [&form, action = row.action] { RunPanelAction(action, form); });
    AttachCommon(form);
}

void AttachNewActions(Form& form) {
    if (Control* sideBar = form.Find("SideBar"))
        sideBar->onItemClick = [&form](int group, int item) { RunPanelAction(SideBarAction(group, item), form); };
    AttachCommon(form);
}

void DressLargeTextLink(Form& form) {
    Control* label = form.Find("lblCustomLarge");
    if (!label || !Eq1(Setting("Branding", "UseLargeCustomTextLink"))) return;
    label->SetUnderline(true);
    label->SetColour(colourLink);
    label->onMouseMove = host::ShowHandCursor;
    label->onClick = [] {
        OpenDocument(Setting("Branding", "LargeCustomTextLink"));
        AddUsage("ClickOnMsg");
    };
}
