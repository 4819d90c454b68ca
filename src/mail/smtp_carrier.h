// The second carrier of mail, for servers that the platform's message object cannot speak to: a carried companion with
// a TLS of today.
#pragma once

#include <string>
#include <vector>

// One message and the account that sends it.
struct SmtpMail {
    std::string server, port, user, password;
    bool authenticate = false;
    bool useTls = false;   // nothing is sent in clear then
    std::string from, to;  // to: addresses parted by ";" or ","
    std::string subject, text;
    std::vector<std::string> attachments;  // full paths
};

// Waits with the window alive; the companion bounds every single wait by 60 seconds. False with the reason in error.
bool SendBySmtp(const SmtpMail& mail, std::string& error);
