// Gets the technician onto the client's desktop, by the way the technician chose.
#pragma once

#include <string>

void StartRemoteSupport();
// True when an installed Teamviewer was started.
bool TryTeamviewerOverride();
void KillPreRemoteProcesses();
void DownloadAndRunSupportApp(const std::string& sUrl, const std::string& sParms);
// Starts a program or hands a package to the installer; not waited for.
void RunSupportApp(const std::string& sPath, const std::string& sParms);

// What a download button does, for remote support and custom buttons alike.
struct SupportDownload {
    std::string url, parameters;
    std::string fileName;       // below the application folder
    std::string scratchFolder;  // "RemoteDL" or "CustomDL": emptied at each use
    std::string exeInZip;       // empty: the newest program of the archive
    std::string title;          // of the download window
};
void DownloadAndRun(const SupportDownload& download);
