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

// Two columns inside the health frame, below its title.
constexpr int HealthTop(int row) { return 570 + 330 * row; }
constexpr int healthHeight = HealthTop(12) + 90;

constexpr ControlSpec HealthLabel(int row, const char* name, const char* caption) {
    return {.kind = Kind::label,
            .name = name,
            .caption = caption,
            .box = {240, HealthTop(row), 1800, 240},
            .container = "frameHealth"};
}
constexpr ControlSpec HealthValue(int row, const char* name, int width) {
    return {.kind = Kind::label,
            .name = name,
            .caption = "---",
            .box = {2160, HealthTop(row), width, 240},
            .container = "frameHealth",
            .flags = noPrefix};
}
constexpr std::array<ControlSpec, 25> HealthControls(int valueWidth) {
    return {HealthLabel(0, "Label6", "Last Maintenance:"),
            HealthValue(0, "lblLastMaint", valueWidth),
            HealthLabel(1, "Label4", "Storage Space:"),
            HealthValue(1, "lblHDD", valueWidth),
            HealthLabel(2, "Label5", "RAM (Memory):"),
            HealthValue(2, "lblRAM", valueWidth),
            HealthLabel(3, "Label3", "Windows Version:"),
            HealthValue(3, "lblOS", valueWidth),
            HealthLabel(4, "Label2", "Antivirus Installed:"),
            HealthValue(4, "lblAV", valueWidth),
            HealthLabel(5, "Label8", "Firewall Installed:"),
            HealthValue(5, "lblFirewall", valueWidth),
            HealthLabel(6, "Label10", "Automatic Updates:"),
            HealthValue(6, "lblAutoUpdates", valueWidth),
            HealthLabel(7, "Label1", "System Restore:"),
            HealthValue(7, "lblSystemRestore", valueWidth),
            HealthLabel(8, "Label9", "User Acct. Control:"),
            HealthValue(8, "lblUAC", valueWidth),
            HealthLabel(9, "Label7", "Internet Access:"),
            HealthValue(9, "lblInternet", valueWidth),
            HealthLabel(10, "lblIntIPLabel", "Internal IP"),
            HealthValue(10, "lblIntIP", valueWidth),
            HealthLabel(11, "Label11", "External IP"),
            HealthValue(11, "lblExtIP", valueWidth),
            {Kind::image, "imgBall", "", {2160 + valueWidth - 480, 90, 480, 480}, "frameHealth"}};
}

// Logo and phone on the left, health beside them, a row of buttons below.
constexpr int classicWidth = 11400, classicHeight = 6480;

constexpr ControlSpec ActionButton(int column, const char* name, const char* caption) {
    return {.kind = Kind::button, .name = name, .caption = caption, .box = {240 + 2208 * column, 5100, 2088, 540}};
}

constexpr auto classicControls = Join(
    std::array<ControlSpec, 12>{
        ControlSpec{Kind::image, "AlphaImgCtl1", "Logo", {360, 360, 1815, 1575}},
        ActionButton(0, "cmdFix", "Fix Internet"),
        ActionButton(1, "cmdMaint", "Run Maintenance"),
        ActionButton(2, "cmdStartSupport", "Start Support Session"),
        ActionButton(3, "cmdEmailSupport", "Email Support"),
        ActionButton(4, "cmdCustom", "Custom Button"),
        {Kind::button, "cmdClose", "Close", {9780, 5880, 1380, 360}},
        {Kind::label, "lblTel", "Telephone:", {60, 2235, 2400, 240}, "", alignCenter | noPrefix},
        {Kind::label, "lblPhone", "", {60, 2475, 2400, 780}, "", heading | alignCenter | noPrefix | wrap},
        {Kind::frame, "frameHealth", "Your PC Health", {2760, 240, 8400, healthHeight}},
        {Kind::label, "txtStatus", "", {240, 5940, 9360, 240}, "", noPrefix},
        {Kind::timer, "Timer1", "", {}, "", disabled},
    },
    HealthControls(6060));

constexpr ControlSpec OnPage(Kind kind, const char* name, const char* caption, Box box) {
    return {.kind = kind, .name = name, .caption = caption, .box = box, .container = "picSRP"};
}
constexpr ControlSpec InSchedule(Kind kind, const char* name, const char* caption, Box box, uint32_t flags = 0) {
    return {.kind = kind, .name = name, .caption = caption, .box = box, .container = "frameSRP", .flags = flags};
}
constexpr std::array<ControlSpec, 4> ScheduleRow(int row, const char* enable, const char* day, const char* time,
                                                 const char* name) {
    int top = 1110 + 480 * row;
    std::array<ControlSpec, 4> specs{InSchedule(Kind::checkBox, enable, "Enable Schedule", {240, top, 1860, 345}),
                                     InSchedule(Kind::combo, day, "Daily", {2220, top, 1260, 345}),
                                     InSchedule(Kind::textBox, time, "10:00:00", {3600, top, 2160, 345}),
                                     InSchedule(Kind::textBox, name, "", {5880, top, 3180, 345})};
    specs[1].items = "Daily|Mon|Tue|Wed|Thu|Fri|Sat|Sun";
    return specs;
}

constexpr auto restorePage = Join(
    Join(
        Join(
            Join(
                std::array<ControlSpec, 4>{
                    OnPage(Kind::label, "Label12", "<< Back to Main Screen", {480, 420, 2580, 240}),
                    InSchedule(Kind::label, "lblRPTime", "Specify Time (hh:mm:ss)", {3600, 570, 2160, 240}),
                    InSchedule(Kind::label, "lblRPTimeNote", "Must be 24 hour format!", {3600, 810, 2160, 240}, note),
                    InSchedule(Kind::label, "lblRPName", "Restore Point Name:", {5880, 570, 3180, 240}),
                },
                ScheduleRow(0, "chkEnableRP(0)", "comboRPDay(0)", "txtRPTime(0)", "txtRPName(0)")),
            ScheduleRow(1, "chkEnableRP(1)", "comboRPDay(1)", "txtRPTime(1)", "txtRPName(1)")),
        ScheduleRow(2, "chkEnableRP(2)", "comboRPDay(2)", "txtRPTime(2)", "txtRPName(2)")),
    std::array<ControlSpec, 4>{
        InSchedule(Kind::button, "cmdSaveRP", "Save Schedule", {240, 2700, 2580, 420}),
        OnPage(Kind::frame, "frameSRP", "Automatic System Restore Point Schedule", {480, 840, 9300, 3360}),
        OnPage(Kind::button, "Command1", "Create Restore Point Now", {480, 4440, 2580, 420}),
        OnPage(Kind::button, "cmdOpenSR", "Open System Restore", {3180, 4440, 2580, 420}),
    });

// Sidebar on the left, logo, phone, custom texts, health and the status line beside it. The restore point page covers
// everything but the status line, which its actions write to.
constexpr int newWidth = 10260, newHeight = 8400, statusTop = 7920;

constexpr auto newControls =
    Join(std::array<ControlSpec, 10>{{
             {Kind::sideBar, "SideBar", "", {0, 0, 3120, newHeight}},
             {Kind::image, "AlphaImgCtl1", "Logo", {3360, 360, 2400, 1575}},
             {Kind::label, "lblTel", "Telephone:", {7500, 780, 2520, 240}, "", noPrefix},
             {Kind::label, "lblPhone", "", {7500, 1020, 2520, 780}, "", heading | noPrefix | wrap},
             {Kind::label, "lblCustomLarge", "", {3360, 2160, 6660, 390}, "", heading | noPrefix},
             {Kind::label, "lblCustomSmall", "", {3360, 2550, 6660, 510}, "", noPrefix | wrap},
             {Kind::frame, "frameHealth", "Your PC Health", {3360, 3120, 6660, healthHeight}},
             {Kind::label, "txtStatus", "", {3360, statusTop + 90, 6660, 240}, "", noPrefix},
             {Kind::timer, "Timer1", "", {}, "", disabled},
             {Kind::picture, "picSRP", "", {0, 0, newWidth, statusTop}},
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

const FormDefinition frmMain{"frmMain",     "Support Control Panel", classicWidth,     classicHeight,
                             Border::fixed, classicControls,         BuildClassicPanel};
const FormDefinition frmMainNew{"frmMainNew", "Support Control Panel", newWidth, newHeight, Border::fixed, newControls,
                                BuildNewPanel};

const FormDefinition& ConfiguredPanel() { return Eq1(Setting("Branding", "UseNewInterface")) ? frmMainNew : frmMain; }

void ConnectPanel() {
    Links().getHealth = GetHealth;
    Links().showPanelBrowser = ShowPanelBrowser;
    SetPanelLabelSource(PanelLabel);
}
