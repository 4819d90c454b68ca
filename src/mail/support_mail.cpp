#include "mail/support_mail.h"

#include "controls/branding.h"
#include "controls/panel_links.h"
#include "controls/status_window.h"
#include "mail/mail_sender.h"
#include "mail/pc_report.h"
#include "mail/screen_capture.h"
#include "platform/files.h"
#include "platform/messages.h"
#include "system/language.h"
#include "system/macros.h"
#include "system/processes.h"
#include "system/program_state.h"
#include "system/registry.h"
#include "system/settings.h"
#include "system/text.h"
#include "system/trace.h"
#include "system/usage.h"

namespace {

constexpr const char* clientKey = "Software\\Brevanta";

std::string RequestSubject() { return LanguageText("Misc", "SupportRequest", "Support Request"); }

std::string MailtoAddress(const std::string& subject) {
    return "mailto:" + State().strSupportEmail + "?Subject=" + subject;
}

// In the internal browser when the settings say so.
void OpenPage(const std::string& address, bool modal) {
    OpenInBrowser(ExpandMacros(address), Num1(Setting("Branding", "UseIBForEmail")), modal);
}

bool IsWebAddress() { return StartsWith(LowerCase(State().strSupportEmail), "http"); }

void ShowFormOrMailProgram() {
    if (Eq1(Setting("EmailConfig", "UseInternalSMTP")))
        ShowForm(frmEmail);
    else
        OpenDocument(MailtoAddress(RequestSubject()));
}

// Fields that also live in the registry, in the order of the message.
struct ClientField {
    const char* control;
    const char* label;
    const char* value;
};
constexpr ClientField clientFields[] = {{"txtName", "Name:  ", "ClientName"},
                                        {"txtPhone", "Phone:  ", "ClientPhone"},
                                        {"txtEmail", "Email:  ", "ClientEmail"}};

constexpr LanguageCaption captions[] = {
    {"EmailForm", "Name", "lblName"},
    {"EmailForm", "Email", "lblEmail"},
    {"EmailForm", "Phone", "lblPhone"},
    {"EmailForm", "Subject", "lblSubject"},
    {"EmailForm", "Body", "lblBody"},
    {"EmailForm", "Attachments", "lblAttachments"},
    {"EmailForm", "AttachInfo", "chkAttachInfo"},
    {"EmailForm", "AttachPic", "chkAttachPic"},
    {"EmailForm", "SendEmail", "Command1"},
    {"Misc", "SupportRequest", "txtSubject"},
};

void LoadMailForm(Form& form) {
    SetFormIcon(form);
    form.SetCaption(LanguageText("EmailForm", "Title", "Send an Email to") + " " + BrandName());
    bool asks = Eq1(Setting("EmailConfig", "EmailInfoPrompt"));
    form.SetVisible("picAttachments", asks);
    if (!asks) {  // the client's words take the room
        Box body = form.Find("txtBody")->Place(), ticks = form.Find("picAttachments")->Place();
        body.height = ticks.top + ticks.height - body.top;
        form.Find("txtBody")->SetPlace(body);
    }
    for (const ClientField& field : clientFields) {
        std::string text = ReadRegistryText("HKLM", clientKey, field.value);
        if (!text.empty()) form.SetText(field.control, text);
    }
    ApplyLanguage(captions, [&form](const char* control, const std::string& text) { form.SetText(control, text); });
}

// The three fields and the body; what the client typed goes back to the registry at once.
std::string MessageText(Form& form) {
    std::string text;
    for (const ClientField& field : clientFields) {
        std::string typed = form.Text(field.control);
        if (typed.empty()) continue;
        bool first = std::string(field.control) == "txtName";
        text += (first ? "" : "\r\n") + std::string(field.label) + typed;
        fWriteValue("HKLM", clientKey, field.value, 'S', typed);
    }
    return text + "\r\n\r\n" + form.Text("txtBody");
}

void ForPanelForms(void (*action)(Form&)) {
    for (const char* name : {"frmMain", "frmMainNew"})
        if (Form* panel = FindForm(name)) action(*panel);
}

void GatherAttachments(Form& form) {
    bool picture = form.Checked("chkAttachPic"), info = form.Checked("chkAttachInfo");
    if (picture) TakeScreenCapture();
    if (info) ForPanelForms(GatherInfo);
    if (picture || info) ZipInfo();
}

void SendRequest(Form& form) {
    form.SetVisible(false);
    ForPanelForms([](Form& panel) { panel.SetVisible(false); });
    std::string text = MessageText(form), subject = form.Text("txtSubject"), typed = form.Text("txtEmail");
    std::string sender = IsEmailAddress(LowerCase(typed)) ? typed : "";
    GatherAttachments(form);
    std::string archive = GetAppPath() + "Info.zip";
    ShowStatusWindow("Sending your message...", "");
    bool attached = DoesFileExist(archive);
    bool sent = SendClientEmail(subject, text, attached ? archive : "", sender);
    if (attached) pc::RemoveFile(archive);
    UnloadStatusWindow();
    if (sent)
        pc::ShowMessage(LanguageText("EmailForm", "Success", "Email sent!"));
    else
        OpenDocument(MailtoAddress(RequestSubject()) + "&body=" + text);
    ForPanelForms([](Form& panel) { panel.SetVisible(true); });
    UnloadForm(form);
}

const ControlSpec mailControls[] = {
    {Kind::label, "lblName", "Your &Name:", {300, 300, 2640, 300}},
    {Kind::textBox, "txtName", "", {3000, 240, 4800, 360}},
    {Kind::label, "lblEmail", "Your &Email Address:", {300, 780, 2640, 300}},
    {Kind::textBox, "txtEmail", "", {3000, 720, 4800, 360}},
    {Kind::label, "lblPhone", "Your P&hone Number:", {300, 1260, 2640, 300}},
    {Kind::textBox, "txtPhone", "", {3000, 1200, 4800, 360}},
    {Kind::label, "lblSubject", "Email Sub&ject:", {300, 1740, 2640, 300}},
    {Kind::textBox, "txtSubject", "Support Request", {3000, 1680, 4800, 360}},
    {Kind::label, "lblBody", "Email &Body:  (Please describe your issue here.)", {300, 2280, 7500, 300}},
    {Kind::textBox, "txtBody", "", {300, 2640, 7500, 2280}, "", multiLine},
    {Kind::picture, "picAttachments", "", {300, 5100, 7500, 1080}},
    {Kind::label, "lblAttachments", "Email Attachments:", {0, 0, 7440, 300}, "picAttachments", bold},
    {Kind::checkBox,
     "chkAttachInfo",
     "Attach &diagnostic information about your PC.",
     {0, 360, 7440, 300},
     "picAttachments"},
    {Kind::checkBox, "chkAttachPic", "Attach a &picture of your screen.", {0, 720, 7440, 300}, "picAttachments"},
    {Kind::button, "Command1", "&Send Email", {6060, 6300, 1740, 480}},
};

const ControlSpec optionControls[] = {
    {Kind::button, "cmdEmailSupport", "Email Support", {300, 300, 4200, 540}},
    {Kind::button, "cmdEmailSupport2", "Email Support", {300, 960, 4200, 540}},
};

}  // namespace

const FormDefinition frmEmail = {"frmEmail", "", 8100, 7020, Border::fixed, mailControls, [](Form& form) {
                                     form.SetValue("chkAttachInfo", 1);
                                     form.SetValue("chkAttachPic", 1);
                                     form.onLoad = [&form] { LoadMailForm(form); };
                                     form.OnClick("Command1", [&form] { SendRequest(form); });
                                 }};

const FormDefinition frmEmailOptions = {
    "frmEmailOptions", "", 4800, 1800, Border::dialog, optionControls, [](Form& form) {
        form.onLoad = [&form] {
            SetFormIcon(form);
            form.SetCaption(SettingOr("Branding", "EmailButtonCaption", "Email Support"));
            form.SetText("cmdEmailSupport", SettingOr("EmailConfig", "PrimaryOptionCaption", "Email Support"));
            form.SetText("cmdEmailSupport2", SettingOr("EmailConfig", "SecondaryOptionCaption", "Email Support"));
        };
        form.OnClick("cmdEmailSupport", [&form] {
            if (IsWebAddress())
                OpenPage(State().strSupportEmail, true);
            else
                ShowFormOrMailProgram();
            UnloadForm(form);
        });
        form.OnClick("cmdEmailSupport2", [&form] {
            OpenPage(Setting("EmailConfig", "SecondaryEmailURLOnly"), true);
            UnloadForm(form);
        });
    }};

void EmailAction(bool bChosen) {
    if (!bChosen && Eq1(Setting("EmailConfig", "OfferTwoOptions")))
        ShowForm(frmEmailOptions);
    else if (IsWebAddress())
        OpenPage(State().strSupportEmail, true);
    else
        OpenEmailRoute();
}

void OpenEmailRoute() {
    AddUsage("Email");
    ShowFormOrMailProgram();
}

void OpenSecondaryEmail() {
    AddUsage("Email2");
    OpenPage(Setting("EmailConfig", "SecondaryEmailURLOnly"), false);
}

bool IsEmailAddress(const std::string& text) {
    auto holds = [&](const char* part) { return text.find(part) != std::string::npos; };
    return holds("@") && (holds(".co") || holds(".net") || holds(".org"));
}
