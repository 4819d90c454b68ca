// Process-wide state: what one routine fixes and others read.
#pragma once

#include <string>

// One instance a process; see State().
struct ProgramState {
    std::string settingsFile;  // full path of the settings INI
    std::string sDebugFile;    // trace file, used only while bDebugToFile
    std::string AppName;       // technician's company name
    std::string phoneNumber;
    std::string strSupportEmail;      // mail address, or web address that starts with "http"
    std::string remoteSupportTarget;  // file name, address or download address, by mode
    std::string browserAddress;       // what the internal browser opens next
    std::string commandLine;          // lower-cased, without the program name
    bool logoIsLink = false;
    bool skinActive = false;
    bool bHasStaticIP = false;  // set by the health display, read by the network reset
    bool bInternetPresent = false;
    bool bRemoveIEToolbars = false;
    bool bRemoveIEBHOs = false;
    bool bDebugToFile = false;
    bool bVerboseTrace = false;
    bool bHandle64BitRedirect = false;
    bool bRedirectIsOff = false;
    bool bRunAllAsSystem = false;
    bool bCancelSearch = false;
};

// The one instance. Tests reset it with State() = {}.
ProgramState& State();
