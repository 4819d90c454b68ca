#include "panel/external_ip.h"

#include "platform/files.h"
#include "system/processes.h"
#include "system/resources.h"
#include "system/settings.h"
#include "system/trace.h"

namespace {

std::string ToolPath() { return GetAppPath() + "GetExternalIP.exe"; }
std::string AnswerPath() { return GetAppPath() + "External.IP"; }

}  // namespace

void ExtractExternalIPTool() { ExtractResource("getexternalip", ToolPath()); }

void RequestExternalAddress(Form& form) {
    ExtractExternalIPTool();
    ShellX(ToolPath(), "", false, 0);
    if (Control* timer = form.Find("Timer1")) {
        timer->SetInterval(1000);
        timer->SetEnabled(true);
    }
}

void TakeExternalAddress(Form& form) {
    if (!DoesFileExist(AnswerPath())) return;
    form.SetText("lblExtIP", ReadIni(AnswerPath(), "IP", "External"));
    pc::RemoveFile(AnswerPath());
    pc::RemoveFile(ToolPath());
    form.SetEnabled("Timer1", false);
}
