#include "transfer/cloud.h"

#include "controls/panel_links.h"
#include "platform/files.h"
#include "platform/machine.h"
#include "platform/processes.h"
#include "system/build_constants.h"
#include "system/processes.h"
#include "system/scramble.h"
#include "system/settings.h"
#include "system/trace.h"
#include "transfer/ftp_client.h"

namespace {

constexpr const char* archiveName = "BrevantaConfig.zip";

void FetchConfiguration(cFTP& mFTP) {
    mFTP.SetFTPDirectory("/Brevanta");
    mFTP.FTPDownloadFile(GetAppPath() + archiveName, archiveName);
}

void SendUsage(cFTP& mFTP) {
    mFTP.CreateFTPDirectory("/Brevanta/Usage");
    mFTP.SetFTPDirectory("/Brevanta/Usage");
    std::string local = GetAppPath() + "Usage.ini", remote = pc::Environment("computername") + ".usage";
    if (!mFTP.FTPUploadFile(local, remote)) return;
    // A line cut near the end shows only in what has arrived; a server that cannot tell is believed.
    auto sent = pc::GetFileInfo(local);
    int32_t arrived = mFTP.GetFTPFileSize(remote);
    if (arrived >= 0 && sent && static_cast<uint64_t>(arrived) != sent->size) return;
    Pause(1);
    pc::RemoveFile(local);
}

void SendConfiguration(cFTP& mFTP) {
    mFTP.CreateFTPDirectory("/Brevanta");
    mFTP.SetFTPDirectory("/Brevanta");
    std::string local = GetAppPath() + archiveName;
    if (DoesFileExist(local)) mFTP.FTPUploadFile(local, archiveName);
}

void ShowTransferProgress(Form& form, int32_t bytesDone, int32_t bytesTotal) {
    Control* bar = form.Find("pb");
    bar->SetMaximum(bytesTotal);
    if (bytesDone <= bytesTotal) bar->SetValue(bytesDone);
    DoEventsNowAndThen();
}

// What all three do on load; transfer is the part that differs.
void LoadTransferForm(Form& form, void (*transfer)(cFTP&)) {
    SetFormIcon(form);
    form.SetVisible(true);
    cFTP mFTP;
    mFTP.FileTransferProgress = [&form](int32_t done, int32_t total) { ShowTransferProgress(form, done, total); };
    mFTP.SetModePassive();
    mFTP.SetTransferBinary();
    std::string password = Setting("Nimbra", "Password"), user = Setting("Nimbra", "UserName");
    if (!password.empty()) password = DecryptString(password, passwordKey);
    if (!user.empty() && !password.empty()) {
        DoEvents();
        if (mFTP.OpenConnection(build::cloudHost, user, password)) {
            transfer(mFTP);
            mFTP.CloseConnection();
        }
        if (!mFTP.GetLastErrorMessage().empty()) DebugOutput("Cloud transfer: " + mFTP.GetLastErrorMessage());
    }
    form.Find("Timer1")->SetInterval(100);
    form.SetEnabled("Timer1", true);
}

template <void (*transfer)(cFTP&)>
void BuildTransferForm(Form& form) {
    form.onLoad = [&form] { LoadTransferForm(form, transfer); };
    form.Find("Timer1")->onTimer = [&form] {
        form.SetEnabled("Timer1", false);
        UnloadForm(form);
    };
    // The transfer runs inside the load; a close in the midst of it would take the form from under it.
    form.onQueryUnload = [](bool fromUser) { return !fromUser; };
}

const ControlSpec controls[] = {
    {Kind::label, "Label1", "Please Wait...", {240, 240, 5040, 300}},
    {Kind::progress, "pb", "", {240, 660, 5040, 300}},
    {Kind::timer, "Timer1", "", {}, "", disabled},
};

}  // namespace

const FormDefinition frmCloudDL = {"frmCloudDL", "Looking for new settings",           5520, 1200, Border::fixed,
                                   controls,     BuildTransferForm<FetchConfiguration>};

const FormDefinition frmCloudUL = {"frmCloudUL", "Closing", 5520, 1200, Border::fixed, controls, [](Form& form) {
                                       BuildTransferForm<SendUsage>(form);
                                       form.onUnload = [&form] {
                                           UnloadAllFormsBut(&form);
                                           pc::EndProcess(0);
                                       };
                                   }};

const FormDefinition frmFTPUL = {
    "frmFTPUL", "Sending the settings", 5520, 1200, Border::fixed, controls, BuildTransferForm<SendConfiguration>};
