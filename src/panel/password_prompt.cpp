#include "panel/password_prompt.h"

#include "controls/branding.h"
#include "controls/panel_links.h"
#include "platform/machine.h"
#include "platform/messages.h"
#include "system/build_constants.h"
#include "system/language.h"
#include "system/paths.h"
#include "system/settings.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

constexpr const char* promptSection = "PromptForPasswordSet";

// The section has one key for each user: the name of the profile folder.
std::string PromptKey() { return StripPath(pc::Environment("userprofile")); }

constexpr LanguageCaption captions[] = {
    {"PasswordForm", "Title", ""},
    {"PasswordForm", "Description1", "Label3"},
    {"PasswordForm", "Description2", "Label4"},
    {"PasswordForm", "Description3", "Label5"},
    {"PasswordForm", "NewPassword", "Label1"},
    {"PasswordForm", "ConfirmNewPassword", "Label2"},
    {"PasswordForm", "SetNewPasswordButton", "Command1"},
    {"PasswordForm", "NoPasswordButton", "Command2"},
};

void ApplyPasswordFormLanguage(Form& form) {
    ApplyLanguage(captions, [&form](const std::string& control, const std::string& text) {
        if (control.empty())
            form.SetCaption(text);
        else
            form.SetText(control, text);
    });
}

Box LogoBox() {
    switch (ConfiguredLogoKind()) {
        case LogoKind::square: return {300, 300, 1815, 1575};
        case LogoKind::rectangle: return {300, 300, 2355, 1335};
        case LogoKind::longRectangle: return {300, 300, 3960, 1455};
        case LogoKind::large: return {300, 180, 2295, 1815};
        default: return {300, 300, 2295, 1575};
    }
}

void LayoutPasswordForm(Form& form) {
    form.SetText("lblTel", Setting("Branding", "PhoneCaption"));
    form.SetText("lblPhone", SettingOr("Branding", "PhoneNumber", build::defaultPhone));
    Control& logo = *form.Find("AlphaImgCtl1");
    logo.SetPlace(LogoBox());
    if (Eq1(Setting("Branding", "StretchLogo"))) logo.SetStretch(true);
    logo.SetPicture(LogoFile());
}

void CheckPasswords(Form& form, bool& bMatch) {
    std::string first = form.Text("Text1");
    bMatch = !first.empty() && first == form.Text("Text2");
}

void ClearPasswordPrompt() { WriteSetting(promptSection, PromptKey(), "0"); }

void SetNewPassword(Form& form) {
    std::string set = LanguageText("MessageBoxes", "PasswordSet", "Password Set!");
    std::string mismatch =
        LanguageText("MessageBoxes", "PasswordMismatch",
                     "You either did not enter a password, or your passwords do not match!  Please try again!");
    bool bMatch = false;
    CheckPasswords(form, bMatch);
    if (!bMatch) {
        pc::ShowMessage(mismatch);
        return;
    }
    uint32_t code = pc::SetAccountPassword(pc::Environment("username"), form.Text("Text2"));
    DebugOutput("frmPW: setting the password answered " + NumberText(code));
    ClearPasswordPrompt();
    pc::ShowMessage(set);
    UnloadForm(form);
}

constexpr int left = 300, width = 7200;

const ControlSpec controls[] = {
    {Kind::image, "AlphaImgCtl1", "", {300, 300, 2295, 1575}},
    {Kind::label, "lblTel", "", {4500, 480, 3000, 300}, "", alignRight | noPrefix},
    {Kind::label, "lblPhone", "", {4500, 780, 3000, 420}, "", alignRight | heading | noPrefix},
    {Kind::label,
     "Label3",
     "During the course of repairing your computer, we may have removed your Windows password.",
     {left, 2160, width, 540},
     "",
     bold | wrap},
    {Kind::label,
     "Label4",
     "If you would like to set a new password for your computer, please enter that password below.",
     {left, 2760, width, 540},
     "",
     wrap},
    {Kind::label,
     "Label5",
     "If you do not wish to have a password, simply click I don't want a password!",
     {left, 3360, width, 540},
     "",
     wrap},
    {Kind::label, "Label1", "&New Password:", {left, 4140, 2880, 300}},
    {Kind::textBox, "Text1", "", {3240, 4080, 4260, 360}, "", password},
    {Kind::label, "Label2", "&Confirm New Password:", {left, 4620, 2880, 300}},
    {Kind::textBox, "Text2", "", {3240, 4560, 4260, 360}, "", password},
    {Kind::button, "Command1", "&Set new password!", {2280, 5220, 2520, 480}, "", defaultButton},
    {Kind::button, "Command2", "I &don't want a password!", {4980, 5220, 2520, 480}},
};

}  // namespace

const FormDefinition frmPW = {
    "frmPW", "ATTENTION:  Set your password!", 7800, 6000, Border::fixed, controls, [](Form& form) {
        form.onLoad = [&form] {
            SetFormIcon(form);
            LayoutPasswordForm(form);
            ApplyPasswordFormLanguage(form);
        };
        form.OnClick("Command1", [&form] { SetNewPassword(form); });
        form.OnClick("Command2", [&form] {
            ClearPasswordPrompt();
            UnloadForm(form);
        });
    }};

bool IsPasswordPromptSet() { return Eq1(Setting(promptSection, PromptKey())); }
