#include "transfer/download.h"

#include "controls/panel_links.h"
#include "platform/files.h"
#include "platform/http.h"
#include "platform/messages.h"
#include "platform/processes.h"
#include "system/macros.h"
#include "system/paths.h"
#include "system/processes.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

// The one transfer: what DownloadFile tells the form.
struct TransferSlots {
    std::string strDownloadURL, strDownloadDest, strDownloadMsg;
    bool bDownloadVisible = false, bDownloading = false;
    bool cancelled = false;  // by the user, who needs no word about it
};
TransferSlots slots;
Download mobjDownload;

// The INET_E_ codes of the URL library.
struct ErrorText {
    uint32_t code;
    const char* text;
};
constexpr ErrorText errorTexts[] = {
    {0x800C0002, "Invalid URL."},
    {0x800C0003, "No Session."},
    {0x800C0004, "Cannot Connect"},
    {0x800C0005, "Resource Not Found."},
    {0x800C0006, "File Not Found."},
    {0x800C0007, "Data Not Available."},
    {0x800C0008, "Download Failure."},
    {0x800C0009, "Authentication Failure."},
    {0x800C000A, "No Valid Media."},
    {0x800C000B, "Connection Timeout."},
    {0x800C000C, "Invalid Request."},
    {0x800C000D, "Unknown Protocol."},
    {0x800C000E, "Security Problem."},
    {0x800C000F, "Cannot Load Data."},
    {0x800C0010, "Cannot Instantiate Object."},
    {0x800C0011, "Default Action."},
    {0x800C0013, "QueryOption Unknown."},
    {0x800C0014, "Redirect Failed."},
    {0x800C0015, "Redirect To Dir."},
    {0x800C0016, "Cannot Lock Request."},
    {0x800C0100, "Code Download Declined."},
    {0x800C0200, "Result Dispatched."},
    {0x800C0300, "Cannot Replace SFP File."},
};

std::string KilobyteText(uint32_t bytes) { return FixedText(bytes / 1024.0, 2) + "Kb"; }

void UnloadDownloadForm() {
    if (Form* form = FindForm("frmDownload")) UnloadForm(*form);
}

void ShowProgress(Form& form, uint32_t progress, uint32_t maximum) {
    form.SetText("lblReceived", KilobyteText(progress));
    form.SetText("lblTotal", KilobyteText(maximum));
    form.SetValue("prgDownload", static_cast<int>(static_cast<uint64_t>(progress) * 100 / maximum));
    DoEvents();
}

// Nobody sees a box of the scheduled update, which runs as SYSTEM: it would wait for ever.
void ShowAborted(const std::string& text) {
    if (!slots.cancelled && !IsSystemAccess(false))
        pc::ShowMessage("Download aborted. " + text, "Download", pc::styleStop);
}

void BeginDownload() {
    if (slots.strDownloadURL.empty() || slots.strDownloadDest.empty())
        pc::ShowMessage("Please enter a valid source and destination.", "Download", pc::styleExclamation);
    else
        mobjDownload.StartDownload(slots.strDownloadURL, slots.strDownloadDest, "", "");
    UnloadDownloadForm();
}

void Cancel() {
    slots.cancelled = true;
    mobjDownload.StopDownload();
    UnloadDownloadForm();
}

void LoadDownloadForm(Form& form) {
    if (slots.bDownloadVisible) {
        form.SetText("lblURL", slots.strDownloadURL);
        form.SetText("lblDest", slots.strDownloadDest);
        form.Find("lblURL")->SetToolTip(slots.strDownloadURL);
        form.Find("lblDest")->SetToolTip(slots.strDownloadDest);
        form.SetText("lblMsg", slots.strDownloadMsg);
        SetFormIcon(form);
        form.SetVisible(true);
    }
    form.Find("prgDownload")->SetMaximum(100);
    // The blocking transfer starts only once the load has returned.
    form.Find("Timer1")->SetInterval(100);
    form.Find("Timer1")->SetEnabled(true);
}

constexpr int labelLeft = 240, valueLeft = 1320, valueWidth = 5640;

const ControlSpec controls[] = {
    {Kind::label, "Label1", "Url:", {labelLeft, 240, 1020, 300}},
    {Kind::label, "lblURL", "", {valueLeft, 240, valueWidth, 300}, "", noPrefix},
    {Kind::label, "Label2", "Dest Path:", {labelLeft, 600, 1020, 300}},
    {Kind::label, "lblDest", "", {valueLeft, 600, valueWidth, 300}, "", noPrefix},
    {Kind::label, "Label3", "Status:", {labelLeft, 960, 1020, 300}},
    {Kind::label, "lblMsg", "", {valueLeft, 960, valueWidth, 300}, "", bold | noPrefix},
    {Kind::progress, "prgDownload", "", {labelLeft, 1440, 6720, 300}},
    {Kind::label, "lblReceived", "", {labelLeft, 1860, 1680, 300}},
    {Kind::label, "lblTotal", "", {1980, 1860, 1680, 300}},
    {Kind::button, "cmdCancel", "&Cancel", {5520, 1860, 1440, 420}, "", cancelButton},
    {Kind::timer, "Timer1", "", {}, "", disabled},
};

}  // namespace

const FormDefinition frmDownload = {
    "frmDownload", "File Download", 7200, 2520, Border::fixed, controls, [](Form& form) {
        form.onLoad = [&form] { LoadDownloadForm(form); };
        form.Find("Timer1")->onTimer = [&form] {
            form.SetEnabled("Timer1", false);
            BeginDownload();
        };
        form.OnClick("cmdCancel", Cancel);
        form.onQueryUnload = [](bool fromUser) {
            if (!fromUser) return true;
            if (pc::ShowMessage("Are you sure you wish to cancel any active downloads and exit?", "Download",
                                pc::styleYesNo) == pc::answerNo)
                return false;
            slots.cancelled = true;
            mobjDownload.StopDownload();
            return true;
        };
        form.onUnload = [] { slots.bDownloading = false; };
        mobjDownload.DownloadStarted = [&form] { form.SetValue("prgDownload", 0); };
        mobjDownload.DownloadProgress = [&form](uint32_t progress, uint32_t maximum) {
            ShowProgress(form, progress, maximum);
        };
        mobjDownload.DownloadComplete = UnloadDownloadForm;
        mobjDownload.DownloadAborted = [](uint32_t, const std::string& text) { ShowAborted(text); };
    }};

bool DownloadFile(const std::string& url, const std::string& dest, const std::string& message, bool bOfferBrowser,
                  bool bVisible) {
    // The one that runs lies below on the stack: to wait for it here would be to wait for ever.
    if (IsDownloading()) {
        DebugOutput("Another download is running, not started:  " + url);
        return false;
    }
    MakeFolderPath(StripNameFromPath(dest));
    {
        RedirectionOff redirection;
        pc::RemoveFile(dest);
    }
    // However this one ends, the next one may begin.
    struct Running {
        ~Running() { slots = {}; }
    } running;
    slots = {ExpandMacros(url), dest, message, bVisible, true, false};
    LoadForm(frmDownload);
    while (slots.bDownloading) {
        DoEvents();
        pc::SleepFor(55);
    }
    UnloadDownloadForm();
    bool there = DoesFileExist(dest);
    if (there) {
        DebugOutput("Successfully Downloaded:  " + slots.strDownloadURL + " - to - " + dest);
    } else {
        DebugOutput("Failed to download:  " + slots.strDownloadURL + " - to - " + dest);
        if (bOfferBrowser &&
            pc::ShowMessage("Failed to download file.  Try again with IE?", "", pc::styleYesNo) == pc::answerYes) {
            pc::ShowMessage("Be sure to save the file as:  " + dest);
            OpenDocument(slots.strDownloadURL);
        }
    }
    return there;
}

bool IsDownloading() { return slots.bDownloading; }

std::string DownloadErrorText(uint32_t result) {
    for (const ErrorText& row : errorTexts)
        if (row.code == result) return row.text;
    return "Unknown Error.";
}

void Download::StartDownload(const std::string& url, const std::string& path, const std::string& newUser,
                             const std::string& newPassword) {
    if (active) return;
    // However the transfer ends, the next one may begin.
    struct Running {
        explicit Running(bool& flag) : active(flag) { active = true; }
        ~Running() { active = false; }
        bool& active;
    } running(active);
    user = newUser;
    password = newPassword;
    pc::FetchEvents events;
    events.started = [this] { IBindStatusCallback_OnStartBinding(); };
    events.progress = [this](uint32_t done, uint32_t total) { IBindStatusCallback_OnProgress(done, total); };
    events.stopped = [this](uint32_t result) { IBindStatusCallback_OnStopBinding(result); };
    events.authenticate = [this](std::string& u, std::string& p) { IAuthenticate_Authenticate(u, p); };
    pc::FetchToFile(url, path, events);
    user.clear();
    password.clear();
}

void Download::StopDownload() {
    if (active) pc::AbortFetch();
}

void Download::IAuthenticate_Authenticate(std::string& userOut, std::string& passwordOut) {
    if (user.empty() && password.empty() && DownloadAuthenticate) DownloadAuthenticate(user, password);
    userOut = user;
    passwordOut = password;
}

void Download::IBindStatusCallback_OnProgress(uint32_t progress, uint32_t maximum) {
    if (maximum > 0 && DownloadProgress) DownloadProgress(progress, maximum);
}

void Download::IBindStatusCallback_OnStartBinding() {
    if (DownloadStarted) DownloadStarted();
}

void Download::IBindStatusCallback_OnStopBinding(uint32_t result) {
    // Every success code of the library completes; its failures have the top bit set.
    if (static_cast<int32_t>(result) < 0) {
        if (DownloadAborted) DownloadAborted(result, DownloadErrorText(result));
    } else if (DownloadComplete) {
        DownloadComplete();
    }
}
