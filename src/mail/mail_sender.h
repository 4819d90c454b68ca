// The program's own way of sending mail, stamped with the computer and the user it came from.
#pragma once

#include <string>
#include <vector>

// One mail account, as the settings have it. The two switches are only ever set to true by a load.
struct MailConfig {
    std::string strToEmail, strFromEmail, strSMTPUserName, strSMTPPassword, strSMTPPort, strSMTPServer;
    bool bSMTPAuth = false, bUseSSL = false;
};
MailConfig& MailAccount();

// True when sender, receiver, port and server are all there; all keys are read in any case.
bool LoadEmailConfig();
// attachment names a file or a folder (all its own files). Silent; the result goes to the trace.
bool SendClientEmail(const std::string& subject, const std::string& body, const std::string& attachment,
                     const std::string& fromAddress);
// The same with the result told to the user.
void SendTestEmail(const std::string& subject, const std::string& body, const std::string& attachment);
// Builds and sends one message. An empty fromAddress means the configured sender.
bool SendEmail(const std::string& subject, const std::string& body, const std::string& attachment,
               const std::string& fromAddress);
