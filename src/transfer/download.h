// The download engine: one call for all rooms, and the class and form behind it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "controls/form.h"

// Fetches url (macros are expanded) to the file dest and returns when it is there or the attempt has failed. What was
// at dest is deleted first. True only says that a file is there: an error page counts, so check what came.
// bOfferBrowser asks the user to try with the browser after a failure; bVisible shows the progress window.
// While another download runs, which a click in its window events may find, it is false at once and touches nothing.
bool DownloadFile(const std::string& url, const std::string& dest, const std::string& message, bool bOfferBrowser,
                  bool bVisible);
// True while DownloadFile runs further down the stack.
bool IsDownloading();

// Text for a result code of the URL library, "Unknown Error." for others.
std::string DownloadErrorText(uint32_t result);

// An adapter over the platform's fetch: one transfer at a time, told by events.
class Download {
public:
    std::function<void()> DownloadStarted, DownloadComplete;
    std::function<void(uint32_t code, const std::string& text)> DownloadAborted;
    std::function<void(uint32_t progress, uint32_t maximum)> DownloadProgress;
    std::function<void(std::string& user, std::string& password)> DownloadAuthenticate;

    // Blocks until the transfer ends. Nothing happens while another one runs.
    void StartDownload(const std::string& url, const std::string& path, const std::string& newUser,
                       const std::string& newPassword);
    void StopDownload();

    // What the platform calls back.
    void IAuthenticate_Authenticate(std::string& userOut, std::string& passwordOut);
    void IBindStatusCallback_OnProgress(uint32_t progress, uint32_t maximum);
    void IBindStatusCallback_OnStartBinding();
    void IBindStatusCallback_OnStopBinding(uint32_t result);

private:
    bool active = false;
    std::string user, password;
};

extern const FormDefinition frmDownload;
