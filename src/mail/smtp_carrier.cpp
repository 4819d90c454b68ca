#include "mail/smtp_carrier.h"

#include "platform/files.h"
#include "platform/processes.h"
#include "system/resources.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

// Beside the program; where a user may not write there, among the temporary files.
std::string Companion() {
    for (const std::string& folder : {GetAppPath(), pc::TempFolder()}) {
        std::string path = folder + "SendMail.exe";
        // It is handed the password, so it must be ours.
        if (RefreshResource("sendmail", path)) return path;
    }
    return "";
}

void Add(std::string& request, const char* name, const std::string& value) {
    request += name + std::string(1, '\0') + ReplaceAll(value, std::string_view("\0", 1), "") + std::string(1, '\0');
}

}  // namespace

bool SendBySmtp(const SmtpMail& mail, std::string& error) {
    std::string program = Companion(), request;
    if (program.empty()) {
        error = "no SendMail.exe";
        return false;
    }
    Add(request, "server", mail.server);
    Add(request, "port", Trim(mail.port));
    Add(request, "user", mail.user);
    // Through the pipe, not the command line, which others can read.
    Add(request, "password", mail.password);
    Add(request, "authenticate", mail.authenticate ? "1" : "0");
    Add(request, "tls", mail.useTls ? "1" : "0");
    Add(request, "from", mail.from);
    for (const std::string& receiver : Split(ReplaceAll(mail.to, ";", ","), ','))
        if (!Trim(receiver).empty()) Add(request, "to", Trim(receiver));
    Add(request, "subject", mail.subject);
    Add(request, "text", mail.text);
    for (const std::string& path : mail.attachments) Add(request, "attach", path);
    Add(request, "wait", "60");  // seconds
    Add(request, "end", "1");
    uint32_t exitCode = 1;
    if (!pc::RunWithInput("\"" + program + "\"", request, error, exitCode)) error = "SendMail.exe did not start";
    return exitCode == 0;
}
