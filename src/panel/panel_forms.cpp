#include "panel/panel_forms.h"

#include <array>

#include "controls/panel_links.h"
#include "panel/actions.h"
#include "panel/browser.h"
#include "panel/health.h"
#include "panel/panel_layout.h"
#include "panel/restore_point_page.h"
#include "panel/skin.h"
#include "system/macros.h"
#include "system/settings.h"

namespace {

template <size_t A, size_t B>
constexpr std::array<ControlSpec, A + B> Join(const std::array<ControlSpec, A>& first,
                                              const std::array<ControlSpec, B>& second) {
    std::array<ControlSpec, A + B> all{};
    for (size_t i = 0; i < A; ++i) all[i] = first[i];
    for (size_t i = 0; i < B; ++i) all[A + i] = second[i];
    return all;
}

// Two columns inside the health frame, a row each 300 twips.
constexpr ControlSpec HealthLabel(int row, const char* name, const char* caption) {
    return {.kind = Kind::label, .name = name, .caption = caption, .box = {240, 360 + 300 * row, 1800, 240},
            .container = "frameHealth"};
}
constexpr ControlSpec HealthValue(int row, const char* name, int width) {
    return {.kind = Kind::label, .name = name, .caption = "---", .box = {2160, 360 + 300 * row, width, 240},
            .container = "frameHealth", .flags = noPrefix};
}
constexpr int healthHeight = 360 + 300 * 12 + 120;

constexpr std::array<ControlSpec, 24> HealthControls(int valueWidth) {
    return {HealthLabel(0, "Label6", "Last Maintenance:"),    HealthValue(0, "lblLastMaint", valueWidth),
            HealthLabel(1, "Label4", "Storage Space:"),       HealthValue(1, "lblHDD", valueWidth),
            HealthLabel(2, "Label5", "RAM (Memory):"),        HealthValue(2, "lblRAM", valueWidth),
            HealthLabel(3, "Label3", "Windows Version:"),     HealthValue(3, "lblOS", valueWidth),
            HealthLabel(4, "Label2", "Antivirus Installed:"), HealthValue(4, "lblAV", valueWidth),
            HealthLabel(5, "Label8", "Firewall Installed:"),  HealthValue(5, "lblFirewall", valueWidth),
            HealthLabel(6, "Label10", "Automatic Updates:"),  HealthValue(6, "lblAutoUpdates", valueWidth),
            HealthLabel(7, "Label1", "System Restore:"),      HealthValue(7, "lblSystemRestore", valueWidth),
            HealthLabel(8, "Label9", "User Acct. Control:"),  HealthValue(8, "lblUAC", valueWidth),
            HealthLabel(9, "Label7", "Internet Access:"),     HealthValue(9, "lblInternet", valueWidth),
            HealthLabel(10, "lblIntIPLabel", "Internal IP"),  HealthValue(10, "lblIntIP", valueWidth),
            HealthLabel(11, "Label11", "External IP"),        HealthValue(11, "lblExtIP", valueWidth)};
}

// Logo and phone on the left, health beside them, a row of buttons below.
constexpr int classicWidth = 10260, classicHeight = 5880;

constexpr ControlSpec ActionButton(int column, const char* name, const char* caption) {
    return {.kind = Kind::button, .name = name, .caption = caption, .box = {240 + 1980 * column, 4560, 1860, 540}};
}

constexpr auto classicControls = Join(
    std::array<ControlSpec, 13>{
        ActionButton(0, "cmdFix", "Fix Internet"),
        ActionButton(1, "cmdMaint", "Run Maintenance"),
        ActionButton(2, "cmdStartSupport", "Start Support Session"),
        ActionButton(3, "cmdEmailSupport", "Email Support"),
        ActionButton(4, "cmdCustom", "Custom Button"),
        {.kind = Kind::button, .name = "cmdClose", .caption = "Close", .box = {8640, 5280, 1380, 360}},
        {.kind = Kind::image, .name = "AlphaImgCtl1", .box = {360, 360, 1815, 1575}},
        {.kind = Kind::label, .name = "lblTel", .caption = "Telephone:", .box = {240, 2460, 2280, 240},
         .flags = noPrefix},
        {.kind = Kind::label, .name = "lblPhone", .box = {240, 2700, 2400, 420}, .flags = heading | noPrefix},
        {.kind = Kind::frame, .name = "frameHealth", .caption = "Your PC Health",
         .box = {2760, 240, 7260, healthHeight}},
        {.kind = Kind::image, .name = "imgBall", .box = {9240, 120, 480, 480}},
        {.kind = Kind::label, .name = "txtStatus", .box = {240, 5340, 8160, 240}, .flags = noPrefix},
        {.kind = Kind::timer, .name = "Timer1", .box = {}, .flags = disabled},
    },
    HealthControls(4920));

constexpr ControlSpec OnPage(Kind kind, const char* name, const char* caption, Box box, uint32_t flags = 0) {
    return {.kind = kind, .name = name, .caption = caption, .box = box, .container = "picSRP", .flags = flags};
}
constexpr std::array<ControlSpec, 4> ScheduleRow(int row, const char* enable, const char* day, const char* time,
                                                 const char* name) {
    int top = 1680 + 480 * row;
    std::array<ControlSpec, 4> specs{OnPage(Kind::checkBox, enable, "Enable Schedule", {480, top, 1860, 315}),
                                     OnPage(Kind::combo, day, "Daily", {2460, top, 1260, 315}),
                                     OnPage(Kind::textBox, time, "10:00:00", {3840, top, 1980, 315}),
                                     OnPage(Kind::textBox, name, "", {5940, top, 3840, 315})};
    specs[1].items = "Daily|Mon|Tue|Wed|Thu|Fri|Sat|Sun";
    return specs;
}

constexpr auto restorePage = Join(
    Join(Join(ScheduleRow(0, "chkEnableRP(0)", "comboRPDay(0)", "txtRPTime(0)", "txtRPName(0)"),
              ScheduleRow(1, "chkEnableRP(1)", "comboRPDay(1)", "txtRPTime(1)", "txtRPName(1)")),
         ScheduleRow(2, "chkEnableRP(2)", "comboRPDay(2)", "txtRPTime(2)", "txtRPName(2)")),
    std::array<ControlSpec, 8>{
        OnPage(Kind::label, "lblRPTitle", "Automatic System Restore Point Schedule", {480, 420, 9300, 420}, heading),
        OnPage(Kind::label, "lblRPTimeHead", "Specify Time (hh:mm:ss)", {3840, 1140, 2100, 240}),
        OnPage(Kind::label, "lblRPTimeNote", "Must be 24 hour format!", {3840, 1380, 2100, 240}, note),
        OnPage(Kind::label, "lblRPNameHead", "Restore Point Name:", {5940, 1140, 3840, 240}),
        OnPage(Kind::button, "cmdSaveRP", "Save Schedule", {480, 3300, 2460, 420}),
        OnPage(Kind::button, "Command1", "Create Restore Point Now", {480, 4260, 2460, 420}),
        OnPage(Kind::button, "cmdOpenSR", "Open System Restore", {3060, 4260, 2460, 420}),
        OnPage(Kind::label, "Label12", "<< Back to Main Screen", {480, 6600, 2460, 240}),
    });

// Sidebar on the left, logo, phone, custom texts and health beside it, the status line below all. The restore point
// page covers everything but the status line, which its actions write to.
constexpr int newWidth = 10260, newHeight = 7620, statusTop = 7200;

constexpr auto newControls = Join(
    std::array<ControlSpec, 11>{{
        {.kind = Kind::sideBar, .name = "SideBar", .box = {0, 0, 3120, statusTop - 60}},
        {.kind = Kind::image, .name = "AlphaImgCtl1", .box = {3360, 360, 2400, 1575}},
        {.kind = Kind::label, .name = "lblTel", .caption = "Telephone:", .box = {7500, 420, 2520, 240},
         .flags = noPrefix},
        {.kind = Kind::label, .name = "lblPhone", .box = {7500, 660, 2520, 420}, .flags = heading | noPrefix},
        {.kind = Kind::label, .name = "lblCustomLarge", .box = {3360, 2220, 6660, 420}, .flags = heading | noPrefix},
        {.kind = Kind::label, .name = "lblCustomSmall", .box = {3360, 2640, 6660, 240}, .flags = noPrefix},
        {.kind = Kind::frame, .name = "frameHealth", .caption = "Your PC Health",
         .box = {3360, 3000, 6660, healthHeight}},
        {.kind = Kind::image, .name = "imgBall", .box = {9240, 2880, 480, 480}},
        {.kind = Kind::label, .name = "txtStatus", .box = {240, statusTop + 60, 9780, 240}, .flags = noPrefix},
        {.kind = Kind::timer, .name = "Timer1", .box = {}, .flags = disabled},
        {.kind = Kind::picture, .name = "picSRP", .box = {0, 0, newWidth, statusTop}},
    }},
    Join(HealthControls(4320), restorePage));

void BuildClassicPanel(Form& form) {
    form.onLoad = [&form] {
        LoadPanelCommon(form);
        LayoutClassicPanel(form);
        ShowAndMeasure(form);
    };
    form.onUnload = [&form] { LeavePanel(form); };
    AttachClassicActions(form);
}

void BuildNewPanel(Form& form) {
    form.onLoad = [&form] {
        LoadPanelCommon(form);
        LayoutNewPanel(form);
        form.SetVisible("picSRP", false);
        BuildSideBar(form);
        DressLargeTextLink(form);
        LoadRestorePointPage(form);
        ShowAndMeasure(form);
    };
    form.onActivate = [&form] { ExemptFromSkin(form.Find("SideBar")); };
    form.onUnload = [&form] { LeavePanel(form); };
    AttachNewActions(form);
    AttachRestorePage(form);
}

std::string PanelLabel(const std::string& label) {
    std::string text;
    for (const char* panel : {"frmMain", "frmMainNew"})
        if (Form* form = FindForm(panel)) text = form->Text(label);
    return text;
}

}  // namespace

const FormDefinition frmMain{"frmMain",    "Support Control Panel", classicWidth,     classicHeight,
                             Border::fixed, classicControls,         BuildClassicPanel};
const FormDefinition frmMainNew{"frmMainNew",  "Support Control Panel", newWidth,     newHeight,
                                Border::fixed, newControls,             BuildNewPanel};

const FormDefinition& ConfiguredPanel() { return Eq1(Setting("Branding", "UseNewInterface")) ? frmMainNew : frmMain; }

void ConnectPanel() {
    Links().getHealth = GetHealth;
    Links().showPanelBrowser = ShowPanelBrowser;
    SetPanelLabelSource(PanelLabel);
}
