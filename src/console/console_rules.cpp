#include <algorithm>

#include "console/console_parts.h"
#include "system/settings.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

// Controls that follow a check box, and the words that say why they are grey.
struct Follow {
    const char* box;
    const char* control;
    const char* why;
};
constexpr Follow follows[] = {
    {"chkSecondEmail", "txtEmailURLOnly", "Needs the second option above."},
    {"chkSecondEmail", "txtEmailCaption1", "Needs the second option above."},
    {"chkSecondEmail", "txtEmailCaption2", "Needs the second option above."},
    {"chkUseEmailSMTP", "chkEmailInfoPrompt", ""},
};

// What each way of remote support needs; a way not listed for a control greys it.
struct RemoteNeed {
    const char* control;
    bool download, exe, url, msra;
    const char* why;
};
constexpr RemoteNeed remoteNeeds[] = {
    {"txtRemoteDLFileName", true, false, false, false, "Only for Download & Execute."},
    {"txtRemoteDLEXEName", true, false, false, false, "Only for Download & Execute."},
    {"txtSupportApp", true, true, true, false, "Not used by Remote Assistance."},
    {"txtSupportAppParms", true, true, false, false, "Only for a program."},
    {"chkUseIBForSupportURL", false, false, true, false, ""},
};

void Note(Form& form, const std::string& control, const std::string& text, bool warning) {
    Control* label = form.Find(control + "Note");
    if (!label) return;
    label->SetText(text);
    label->SetColour(warning ? colourWarning : colourButtonText);
}

void Enable(Form& form, const char* control, bool enabled, const char* why) {
    form.SetEnabled(control, enabled);
    Note(form, control, enabled ? "" : why, false);
}

void ApplyRemoteRules(Form& form) {
    bool download = form.Checked("optRemoteDLandEXE"), exe = form.Checked("optRemoteEXE"),
         url = form.Checked("optRemoteURL"), msra = form.Checked("optUseMSRA");
    if (!download && !exe && !url && !msra) return;
    for (const RemoteNeed& need : remoteNeeds)
        Enable(form, need.control,
               (download && need.download) || (exe && need.exe) || (url && need.url) || (msra && need.msra), need.why);
}

// Checks. Each gives the reason why a text cannot be right, or nothing. An empty text is never wrong.
std::string CheckPort(const std::string& text) {
    bool digits = std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    return digits && text.size() <= 5 && (text.size() < 5 || text <= "65535") && text != "0" ? ""
                                                                                             : "Not a port number.";
}

std::string CheckTime(const std::string& text) {
    auto two = [&](size_t at, int limit) {
        char tens = text[at], ones = text[at + 1];
        return tens >= '0' && tens <= '9' && ones >= '0' && ones <= '9' && (tens - '0') * 10 + (ones - '0') < limit;
    };
    bool right = text.size() == 8 && text[2] == ':' && text[5] == ':' && two(0, 24) && two(3, 60) && two(6, 60);
    return right ? "" : "Not a time of the form hh:mm:ss.";
}

std::string CheckAddress(const std::string& text) {
    return text.find("://") != std::string::npos || StartsWith(LowerCase(text), "mailto:")
               ? ""
               : "An address begins with http:// or https://.";
}

std::string CheckPage(const std::string& text) {
    return CheckAddress(text).empty() || DoesFileExist(GetAppPath() + text)
               ? ""
               : "Neither an address nor a file in the program's folder.";
}

std::string CheckMailOrUrl(const std::string& text) {
    return text.find('@') != std::string::npos || StartsWith(LowerCase(text), "http")
               ? ""
               : "Neither a mail address nor an address that begins with http.";
}

std::string CheckMail(const std::string& text) {
    return text.find('@') != std::string::npos ? "" : "Not a mail address.";
}

struct FieldCheck {
    const char* control;
    std::string (*check)(const std::string&);
};
constexpr FieldCheck checks[] = {
    {"comboSMTPPort", CheckPort},         {"txtFromEmail", CheckMail},      {"txtEmail", CheckMailOrUrl},
    {"txtEmailURLOnly", CheckAddress},    {"txtLogoWebsite", CheckAddress}, {"txtShortcutWebsite", CheckAddress},
    {"txtLargeCustomLink", CheckAddress}, {"txtPreRemoteURL", CheckPage},   {"txtPostMaintURL", CheckAddress},
    {"txtNetRestartURL", CheckAddress},   {"txtUpdateLoc", CheckAddress},   {"txtRPTime(0)", CheckTime},
    {"txtRPTime(1)", CheckTime},          {"txtRPTime(2)", CheckTime},      {"txtAppURL(0)", CheckAddress},
    {"txtAppURL(1)", CheckAddress},
};

// The bundled program must be in the folder; the other ways want an address.
std::string CheckSupportApp(Form& form, const std::string& text) {
    if (form.Checked("optRemoteURL") || form.Checked("optRemoteDLandEXE")) return CheckAddress(text);
    if (form.Checked("optRemoteEXE") && !DoesFileExist(GetAppPath() + text))
        return "No file of that name in the program's folder.";
    return "";
}

void Mark(Form& form, const char* control, const std::string& reason) {
    const Control* box = form.Find(control);
    if (box && box->Enabled()) Note(form, control, box->Text().empty() ? "" : reason, true);
}

void RunCheck(Form& form, const FieldCheck& row) { Mark(form, row.control, row.check(form.Text(row.control))); }

void RunSupportAppCheck(Form& form) { Mark(form, "txtSupportApp", CheckSupportApp(form, form.Text("txtSupportApp"))); }

void OnTick(Form& form, const char* control, std::function<void()> handler) {
    if (Control* box = form.Find(control)) box->onChange = std::move(handler);
}

}  // namespace

void ApplyRules(Form& form) {
    for (const Follow& row : follows) Enable(form, row.control, form.Checked(row.box), row.why);
    ApplyRemoteRules(form);
    for (const FieldCheck& row : checks) RunCheck(form, row);
    RunSupportAppCheck(form);
}

void AttachRules(Form& form) {
    for (const char* box :
         {"chkSecondEmail", "chkUseEmailSMTP", "optRemoteDLandEXE", "optRemoteEXE", "optRemoteURL", "optUseMSRA"})
        OnTick(form, box, [&form] { ApplyRules(form); });
    for (const FieldCheck& row : checks) OnTick(form, row.control, [&form, &row] { RunCheck(form, row); });
    OnTick(form, "txtSupportApp", [&form] { RunSupportAppCheck(form); });
}
