#include "panel/panel_layout.h"

#include <algorithm>

#include "controls/branding.h"
#include "controls/panel_links.h"
#include "controls/sidebar.h"
#include "panel/health.h"
#include "panel/skin.h"
#include "platform/machine.h"
#include "system/build_constants.h"
#include "system/language.h"
#include "system/processes.h"
#include "system/program_state.h"
#include "system/settings.h"
#include "system/text.h"
#include "system/trace.h"
#include "transfer/cloud.h"

namespace {

std::string Branding(const char* key) { return Setting("Branding", key); }
std::string BrandingOr(const char* key, const char* fallback) { return SettingOr("Branding", key, fallback); }

constexpr LanguageCaption panelCaptions[] = {
    {"MainForm", "YourPCHealth", "frameHealth"},
    {"MainForm", "LastMaintenance", "Label6"},
    {"MainForm", "StorageSpace", "Label4"},
    {"MainForm", "RAM", "Label5"},
    {"MainForm", "WinVer", "Label3"},
    {"MainForm", "AntiVirus", "Label2"},
    {"MainForm", "Firewall", "Label8"},
    {"MainForm", "AutomaticUpdates", "Label10"},
    {"MainForm", "SystemRestore", "Label1"},
    {"MainForm", "UAC", "Label9"},
    {"MainForm", "InternetAccess", "Label7"},
    {"MainForm", "InternalIP", "lblIntIPLabel"},
    {"MainForm", "ExternalIP", "Label11"},
    {"Misc", "Close", "cmdClose"},
};

struct ButtonCaption {
    const char* control;
    const char* section;
    const char* key;
    const char* fallback;
};
constexpr ButtonCaption buttonCaptions[] = {
    {"cmdFix", "Branding", "FixButtonCaption", "Fix Internet"},
    {"cmdMaint", "Branding", "MaintButtonCaption", "Run Maintenance"},
    {"cmdStartSupport", "Branding", "RemoteSupportButtonCaption", "Start Support Session"},
    {"cmdEmailSupport", "Branding", "EmailButtonCaption", "Email Support"},
    {"cmdCustom", "CustomButton", "ButtonCaption", "Custom Button"},
};

struct HiddenBy {
    const char* key;  // of section Branding; "0" hides
    const char* control;
};
constexpr HiddenBy hiddenButtons[] = {
    {"ShowEmailButton", "cmdEmailSupport"},
    {"ShowFixButton", "cmdFix"},
    {"ShowSupportAppButton", "cmdStartSupport"},
};
constexpr HiddenBy hiddenTexts[] = {
    {"ShowPhoneAndCaption", "lblTel"},
    {"ShowPhoneAndCaption", "lblPhone"},
    {"ShowLargeCustomText", "lblCustomLarge"},
    {"ShowSmallCustomText", "lblCustomSmall"},
};

void HideIfOff(Form& form, std::span<const HiddenBy> rows) {
    for (const HiddenBy& row : rows)
        if (!Ne0(Branding(row.key))) form.SetVisible(row.control, false);
}

// Logo boxes of the two faces. The classic one knows no longer rectangle.
struct LogoBox {
    LogoKind kind;
    Box classic, modern;
};
constexpr LogoBox logoBoxes[] = {
    {LogoKind::square, {360, 360, 1815, 1575}, {3720, 360, 1815, 1575}},
    {LogoKind::rectangle, {60, 60, 2355, 1335}, {3360, 480, 2455, 1335}},
    {LogoKind::longRectangle, {60, 60, 2355, 1335}, {3360, 360, 3960, 1455}},
    {LogoKind::large, {120, 120, 2295, 2055}, {3360, 60, 2295, 2055}},
};

void PlaceLogo(Form& form, bool modern) {
    Control* logo = form.Find("AlphaImgCtl1");
    if (!logo) return;
    for (const LogoBox& box : logoBoxes)
        if (box.kind == ConfiguredLogoKind()) logo->SetPlace(modern ? box.modern : box.classic);
    if (Eq1(Branding("StretchLogo"))) logo->SetStretch(true);
    logo->SetPicture(LogoFile());
}

// Phone caption and number go where the logo leaves room: below it in the classic face, beside it in the new one, and
// into its place where there is none.
void PlacePhone(Form& form, bool modern) {
    Control *logo = form.Find("AlphaImgCtl1"), *caption = form.Find("lblTel"), *number = form.Find("lblPhone");
    if (!logo || !caption || !number) return;
    bool hasLogo = DoesFileExist(LogoFile());
    logo->SetVisible(hasLogo);
    Box box = logo->Place(), first = caption->Place(), second = number->Place();
    constexpr int gap = 300;
    if (modern) {
        int right = first.left + first.width;
        first.left = hasLogo ? box.left + box.width + gap : box.left;
        first.width = right - first.left;
        first.top = box.top + (box.height - first.height - second.height / 2) / 2;  // the number has room for two lines
    } else {
        first.left = box.left + (box.width - first.width) / 2;
        first.top = hasLogo ? box.top + box.height + gap : box.top;
    }
    caption->SetPlace(first);
    number->SetPlace({first.left, first.top + first.height, first.width, second.height});
}

std::string VersionText() {
    pc::ProgramVersion version = pc::GetProgramVersion();
    std::string text = "   v" + NumberText(version.major) + "." + NumberText(version.minor);
    return version.revision >= 1 ? text + "." + NumberText(version.revision) : text;
}

void SetTitle(Form& form) {
    std::string title =
        State().AppName + "  -  " + LanguageText("TitleBar", "SupportControlPanel", "Support Control Panel");
    if (Eq1(Branding("ShowVersion"))) title += " " + VersionText();
    form.SetCaption(title);
}

void DressButtons(Form& form) {
    for (const ButtonCaption& row : buttonCaptions)
        form.SetText(row.control, SettingOr(row.section, row.key, row.fallback));
    form.SetVisible("cmdCustom", Eq1(Setting("CustomButton", "ShowButton")));
    HideIfOff(form, hiddenButtons);
}

// What both faces take from the settings.
void DressPanel(Form& form, bool modern) {
    State().AppName = BrandName();
    SetTitle(form);
    form.SetText("lblTel", Branding("PhoneCaption"));
    State().phoneNumber = BrandingOr("PhoneNumber", build::defaultPhone);
    form.SetText("lblPhone", State().phoneNumber);
    State().strSupportEmail = BrandingOr("SupportEmail", build::placeholderEmail);
    State().remoteSupportTarget = SettingOr("Branding", "RemoteSupportApp", GetAppPath() + "RemoteSupportApp.exe");
    DressButtons(form);
    PlaceLogo(form, modern);
    PlacePhone(form, modern);
}

// Closes the gaps that hidden buttons leave in the classic row, and shares the row's width among the others.
void PackButtons(Form& form) {
    std::vector<Control*> shown;
    for (const ButtonCaption& row : buttonCaptions)
        if (Control* button = form.Find(row.control); button && button->Visible()) shown.push_back(button);
    if (shown.empty()) return;
    constexpr int left = 240, gap = 120, widest = 2700, pixel = 15;
    int count = static_cast<int>(shown.size());
    int room = form.Width() - 2 * left - gap * (count - 1);
    int width = std::min(widest, room / count / pixel * pixel);
    for (int i = 0; i < count; ++i) {
        Box box = shown[i]->Place();
        shown[i]->SetPlace({left + i * (width + gap), box.top, width, box.height});
    }
}

void AddSupportItems(XPexplorerbar& bar) {
    int group = bar.AddNormalItem(BrandingOr("SupportHeading", "Get Support"));
    if (Ne0(Branding("ShowEmailButton"))) {
        if (Eq1(Setting("EmailConfig", "OfferTwoOptions"))) {
            bar.AddSubItem(group, SettingOr("EmailConfig", "PrimaryOptionCaption", "Email Support"));
            bar.AddSubItem(group, SettingOr("EmailConfig", "SecondaryOptionCaption", "Email Support"));
        } else {
            bar.AddSubItem(group, BrandingOr("EmailButtonCaption", "Email Support"));
        }
    }
    if (Ne0(Branding("ShowSupportAppButton")))
        bar.AddSubItem(group, BrandingOr("RemoteSupportButtonCaption", "Start Support Session"));
}

void AddTaskItems(XPexplorerbar& bar) {
    int group = bar.AddNormalItem(BrandingOr("PCTasksHeading", "PC Tasks"));
    if (Eq1(Setting("CustomRP", "ShowOption")))
        bar.AddSubItem(group, SettingOr("CustomRP", "ButtonCaption", "System Restore Points"));
    bar.AddSubItem(group, BrandingOr("MaintButtonCaption", "Run Maintenance"));
    bar.AddSubItem(group, BrandingOr("FixButtonCaption", "Fix Internet"));
    for (int i = 0; i < 5; ++i) {
        std::string number = i == 0 ? "" : NumberText(i);
        std::string section = "CustomButton" + number;
        if (Eq1(Setting(section, "ShowButton")))
            bar.AddSubItem(group,
                           SettingOr(section, "ButtonCaption", i == 0 ? "Custom Button" : "Custom Button " + number));
    }
}

void AlignTexts(Form& form) {
    std::string align = LowerCase(Branding("NewUITextAlign"));
    if (align != "center" && align != "right") return;
    uint32_t flag = align == "center" ? alignCenter : alignRight;
    for (const char* name : {"lblTel", "lblPhone", "lblCustomSmall", "lblCustomLarge"})
        if (Control* label = form.Find(name)) label->SetAlign(flag);
}

// The values give way to labels that a translation has made longer than the design has room for, as far as they can.
void WidenHealthLabels(Form& form) {
    constexpr int letter = 90, widest = 900;  // twips
    int labelWidth = 0, more = 0;
    std::vector<Control*> labels, values;
    for (const auto& control : form.Controls())
        if (control->GetKind() == Kind::label && EqualNoCase(control->Container(), "frameHealth"))
            (control->Flags() & noPrefix ? values : labels).push_back(control.get());
    for (Control* label : labels) {
        labelWidth = label->Place().width;
        more = std::max(more, static_cast<int>(CharacterCount(label->Text())) * letter - labelWidth);
    }
    more = std::min(more, widest);
    if (more <= 0) return;
    for (Control* label : labels) {
        Box box = label->Place();
        label->SetPlace({box.left, box.top, labelWidth + more, box.height});
    }
    for (Control* value : values) {
        Box box = value->Place();
        value->SetPlace({box.left + more, box.top, box.width - more, box.height});
    }
}

}  // namespace

void ApplyLanguageCaptions(Form& form) {
    ApplyLanguage(panelCaptions,
                  [&form](const char* control, const std::string& text) { form.SetText(control, text); });
    WidenHealthLabels(form);
}

void LoadPanelCommon(Form& form) {
    SetFormIcon(form);
    ApplyLanguageCaptions(form);
    if (!Num1(Branding("LogoToWebsite"))) return;
    State().logoIsLink = true;
    if (Control* logo = form.Find("AlphaImgCtl1")) logo->SetToolTip(Branding("LogoWebsite"));
}

void LayoutClassicPanel(Form& form) {
    DressPanel(form, false);
    PackButtons(form);
    if (Control* first = form.Find("cmdFix")) first->SetFocus();  // not the logo, though it is read first
}

void LayoutNewPanel(Form& form) {
    HideIfOff(form, hiddenTexts);
    form.SetText("lblCustomSmall", BrandingOr("SmallCustomText", "Custom text can go here, whatever you want"));
    form.SetText("lblCustomLarge", BrandingOr("LargeCustomText", "Custom text, optional hyperlink"));
    DressPanel(form, true);
}

void BuildSideBar(Form& form) {
    Control* sideBar = form.Find("SideBar");
    if (!sideBar) return;
    XPexplorerbar bar(*sideBar);
    bar.Clear();
    AddSupportItems(bar);
    AddTaskItems(bar);
    if (Eq1(Branding("ShowDetails")))
        bar.AddDetailItem(BrandingOr("DetailsHeading", "Come Visit Us!"),
                          BrandingOr("DetailsSubHeading", "Store Hours:"),
                          ReplaceAll(BrandingOr("DetailsText", "|Mon-Fri 9am - 6pm||Sat. 10am - 4pm"), "|", "\r\n"));
    AlignTexts(form);
}

void ShowAndMeasure(Form& form) {
    form.SetText("txtStatus", LanguageText("Misc", "GatherInfo", "Gathering Information..."));
    form.SetVisible(true);
    DoEvents();
    if (!IsFormLoaded(form.Name())) return;
    GetHealth(form);
    form.SetText("txtStatus", "");
}

void LeavePanel(Form& form) {
    RemoveSkin();
    if (form.Name() == "frmMainNew" && State().commandLine == "/config") return;
    form.SetVisible(false);
    LoadForm(frmCloudUL);
}
