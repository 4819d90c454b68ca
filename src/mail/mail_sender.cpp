#include "mail/mail_sender.h"

#include "mail/smtp_carrier.h"
#include "platform/files.h"
#include "platform/machine.h"
#include "platform/mail_object.h"
#include "platform/messages.h"
#include "system/paths.h"
#include "system/scramble.h"
#include "system/settings.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

constexpr int32_t sendOverNetwork = 2;
constexpr int32_t connectSeconds = 60;

std::string MailSetting(const char* key) { return Setting("EmailConfig", key); }

// Set only, never taken back, by a text that is the number 1.
void SetIfOne(const char* key, bool& flag) {
    std::string value = MailSetting(key);
    if (!value.empty() && ToInt16(value) == 1) flag = true;
}

bool CanAttach(const std::string& path) {
    return CharacterCount(path) < 2 || DoesFileExist(path) || DoesDirExist(path);
}

// A line end in a header would begin a header of somebody else's making.
std::string OneLine(const std::string& text) {
    return ReplaceAll(ReplaceAll(ReplaceAll(text, "\r\n", " "), "\r", " "), "\n", " ");
}

std::vector<std::string> AttachmentPaths(const std::string& attachment) {
    std::vector<std::string> paths;
    if (CharacterCount(attachment) <= 1) return paths;
    if (DoesFileExist(attachment))
        paths.push_back(attachment);
    else if (DoesDirExist(attachment))
        FindFiles(attachment, "*.*", paths, false);
    return paths;
}

std::string StampedBody(const std::string& body) {
    return body + "\r\n\r\n---\r\nComputer Name:  " + pc::Environment("computername") +
           "\r\nUser Name:  " + pc::Environment("username") + "\r\n\r\n\r\n\r\nThis message sent by " + VersionString();
}

struct Message {
    std::string from, subject, body;
    std::vector<std::string> attachments;
};

bool SendByMessageObject(const Message& message) {
    const MailConfig& account = MailAccount();
    pc::MessageObject object;
    object.Create();
    object.SetField("smtpserver", account.strSMTPServer);
    object.SetField("smtpconnectiontimeout", connectSeconds);
    object.SetField("sendusing", sendOverNetwork);
    object.SetField("smtpserverport", account.strSMTPPort);
    object.SetField("smtpauthenticate", account.bSMTPAuth);
    object.SetField("smtpusessl", account.bUseSSL);
    object.SetField("sendusername", account.strSMTPUserName);
    object.SetField("sendpassword", account.strSMTPPassword);
    object.SetProperty("To", OneLine(account.strToEmail));
    object.SetProperty("From", message.from);
    object.SetProperty("Subject", message.subject);
    object.SetProperty("TextBody", message.body);
    for (const std::string& path : message.attachments) object.AddAttachment(path);
    object.UpdateFields();
    int32_t errorNumber = 0;
    std::string errorText;
    if (object.Send(errorNumber, errorText)) return true;
    DebugOutput("SendEmail: (Resuming after error)");
    DebugOutput("- VB Error: " + NumberText(errorNumber) + " " + errorText);
    return false;
}

// What the message object cannot do, above all STARTTLS, the carried companion can.
bool SendByCompanion(const Message& message) {
    const MailConfig& account = MailAccount();
    SmtpMail mail = {account.strSMTPServer,
                     account.strSMTPPort,
                     account.strSMTPUserName,
                     account.strSMTPPassword,
                     account.bSMTPAuth,
                     account.bUseSSL,
                     message.from,
                     OneLine(account.strToEmail),
                     message.subject,
                     message.body,
                     message.attachments};
    std::string error;
    if (SendBySmtp(mail, error)) return true;
    DebugOutput("SendEmail: SMTP: " + error);
    return false;
}

}  // namespace

MailConfig& MailAccount() {
    static MailConfig account;
    return account;
}

bool LoadEmailConfig() {
    MailConfig& account = MailAccount();
    SetIfOne("UseSSL", account.bUseSSL);
    SetIfOne("SMTPAuth", account.bSMTPAuth);
    account.strFromEmail = MailSetting("FromEmail");
    account.strToEmail = MailSetting("ToEmail");
    std::string password = MailSetting("SMTPPassword");
    if (!password.empty()) account.strSMTPPassword = DecryptString(password, passwordKey);
    std::string user = MailSetting("SMTPUserName");
    if (!user.empty()) account.strSMTPUserName = user;
    account.strSMTPPort = MailSetting("SMTPPort");
    account.strSMTPServer = MailSetting("SMTPServer");
    return !account.strFromEmail.empty() && !account.strToEmail.empty() && !account.strSMTPPort.empty() &&
           !account.strSMTPServer.empty();
}

bool SendClientEmail(const std::string& subject, const std::string& body, const std::string& attachment,
                     const std::string& fromAddress) {
    if (!LoadEmailConfig() || !CanAttach(attachment)) return false;
    // Without an attachment the sender's address travels in its place, where it is no file, and the configured sender
    // stands: a client's own address only goes out with an attachment.
    bool sent = CharacterCount(attachment) > 1 ? SendEmail(subject, body, attachment, fromAddress)
                                               : SendEmail(subject, body, fromAddress, "");
    DebugOutput(sent ? "Email sent!" : "Email failed to send.");
    return sent;
}

void SendTestEmail(const std::string& subject, const std::string& body, const std::string& attachment) {
    if (!LoadEmailConfig()) {
        pc::ShowMessage("You must configure an email account before you can send email!");
        return;
    }
    if (!CanAttach(attachment)) return;
    bool sent = SendEmail(subject, body, attachment, "");
    pc::ShowMessage(sent ? "Test email sent!" : "Test email failed to send.");
}

bool SendEmail(const std::string& subject, const std::string& body, const std::string& attachment,
               const std::string& fromAddress) {
    Message message;
    message.from = OneLine(CharacterCount(fromAddress) >= 2 ? fromAddress : MailAccount().strFromEmail);
    message.subject = OneLine(subject) + " - ";
    message.body = StampedBody(body);
    message.attachments = AttachmentPaths(attachment);
    return SendByMessageObject(message) || SendByCompanion(message);
}
