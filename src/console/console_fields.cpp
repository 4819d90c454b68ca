#include "console/console.h"
#include "console/console_parts.h"
#include "platform/messages.h"
#include "system/program_state.h"
#include "system/scramble.h"
#include "system/settings.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

bool IsTick(Item item) { return item == Item::check || item == Item::option; }

// A value stands on one line of the file.
std::string OneLine(const std::string& text) {
    return ReplaceAll(ReplaceAll(ReplaceAll(text, "\r\n", " "), "\r", " "), "\n", " ");
}

std::string FromSetting(const Field& field, const std::string& value) {
    if (field.keep == Keep::asLines) return ReplaceAll(value, "|", "\r\n");
    if (field.keep == Keep::scrambled) return value.empty() ? "" : DecryptString(value, passwordKey);
    return value;
}

std::string ToSetting(const Field& field, const std::string& text) {
    if (field.keep == Keep::asLines) return ReplaceAll(ReplaceAll(ReplaceAll(text, "\r\n", "|"), "\r", "|"), "\n", "|");
    if (field.keep == Keep::scrambled) return EncryptString(text, passwordKey);
    return OneLine(text);
}

// What the controls held when they were last loaded or saved.
std::string savedState;

// All that the user can change on the form, as one text to compare.
std::string Snapshot(Form& form) {
    std::string snapshot;
    for (const Field& field : ConsoleFields())
        if (const Control* control = form.Find(field.control))
            snapshot += control->Text() + '\0' + NumberText(control->Value()) + '\0';
    return snapshot;
}

// The mail account's keys in the order of their writing.
struct MailField {
    const char* key;
    const char* control;
    bool tick, secret;
};
constexpr MailField mailFields[] = {
    {"SMTPServer", "txtSMTPServer", false, false},     {"SMTPPort", "comboSMTPPort", false, false},
    {"SMTPUserName", "txtSMTPUserName", false, false}, {"SMTPPassword", "txtSMTPPassword", false, true},
    {"FromEmail", "txtFromEmail", false, false},       {"ToEmail", "txtEmail", false, false},
    {"SMTPAuth", "chkSMTPAuth", true, false},          {"UseSSL", "chkUseSSL", true, false},
};

}  // namespace

void LoadField(Form& form, const Field& field) {
    Control* control = form.Find(field.control);
    if (!control || field.keep == Keep::none) return;
    std::string value = Setting(field.section, field.key);
    if (field.keep == Keep::whenChosen) {
        if (EqualNoCase(value, field.value)) control->SetValue(1);
    } else if (IsTick(field.item)) {
        // A value that is no number leaves the box as designed.
        if (auto number = ToInt16(value)) control->SetValue(*number != 0);
    } else {
        control->SetText(FromSetting(field, value));
    }
}

bool SaveField(Form& form, const Field& field) {
    const Control* control = form.Find(field.control);
    if (!control || field.keep == Keep::none) return true;
    if (field.keep == Keep::whenChosen) return !control->Value() || WriteSetting(field.section, field.key, field.value);
    std::string value = IsTick(field.item) ? NumberText(control->Value()) : ToSetting(field, control->Text());
    return WriteSetting(field.section, field.key, value);
}

void SaveFields(Form& form, const std::vector<std::string>& controls) {
    for (const std::string& name : controls)
        for (const Field& field : ConsoleFields())
            if (field.control == name) SaveField(form, field);
}

bool WriteEmailConfig(Form& form) {
    bool saved = true;
    for (const MailField& field : mailFields) {
        std::string value = field.tick ? NumberText(form.Checked(field.control)) : OneLine(form.Text(field.control));
        if (field.secret) value = EncryptString(value, passwordKey);
        saved = WriteSetting("EmailConfig", field.key, value) && saved;
    }
    return saved;
}

void ReadEmailConfig(Form& form) {
    for (const MailField& field : mailFields) {
        std::string value = Setting("EmailConfig", field.key);
        if (value.empty()) continue;
        if (field.tick) {
            if (auto number = ToInt16(value)) form.SetValue(field.control, *number != 0);
        } else {
            form.SetText(field.control, field.secret ? DecryptString(value, passwordKey) : value);
        }
    }
    std::string sendEmail = Setting("General", "SendEmail");
    if (auto number = ToInt16(sendEmail)) form.SetValue("chkSendEmail", *number != 0);
}

void LoadConsole(Form& form) {
    if (!DoesFileExist(State().settingsFile)) return;
    ReadEmailConfig(form);
    for (const Field& field : ConsoleFields()) LoadField(form, field);
}

bool SaveConsole(Form& form) {
    bool saved = true, mailWritten = false;
    for (const Field& field : ConsoleFields()) {
        // The mail account goes with the keys of mail and brand, ahead of the custom buttons.
        if (!mailWritten && StartsWith(field.section, "CustomButton")) {
            saved = WriteEmailConfig(form) && saved;
            mailWritten = true;
        }
        saved = SaveField(form, field) && saved;
    }
    if (saved)
        RememberSaved(form);
    else
        pc::ShowMessage("The settings could not be saved:\r\n" + State().settingsFile, "", pc::styleExclamation);
    return saved;
}

void RememberSaved(Form& form) { savedState = Snapshot(form); }

bool HasUnsavedChanges(Form& form) { return Snapshot(form) != savedState; }
