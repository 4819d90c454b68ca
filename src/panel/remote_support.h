// Gets the technician onto the client's desktop, by the way the technician chose.
#pragma once

#include <string>

// The button: page before it, processes to end, then Teamviewer or the configured mode. Counted in any case.
void StartRemoteSupport();
// True when an installed Teamviewer was started.
bool TryTeamviewerOverride();
// Ends what PreRemoteKillProc names, parted by commas and not trimmed.
void KillPreRemoteProcesses();
// Into the name that RemoteSupportDLName gives; without one it does nothing.
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
// A failure is told by the download window alone.
void DownloadAndRun(const SupportDownload& download);
