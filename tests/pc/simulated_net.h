// The web, the technician's FTP area and the mail object of the simulated PC.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

// Journal lines: "fetch <address>", "ftp <command>", "mail <call>".
struct SimulatedNet {
    struct Page {
        std::string bytes;
        uint32_t result = 0;  // a failure code of the URL library; the fetch ends with it
        bool tellsLength = true;
        size_t cutAfter = SIZE_MAX;  // bytes that come, while the library still says success
        std::string user;            // asked for when not empty
    };
    std::map<std::string, Page> web;
    std::function<void(size_t done)> atProgress;  // between two pieces

    bool ftpOnline = true;
    std::string ftpUser = "tech", ftpPassword = "secret";
    std::set<std::string> ftpFolders = {"/"};
    std::map<std::string, std::string> ftpFiles;  // full path to bytes
    size_t ftpCutAfter = SIZE_MAX;                // bytes of a transfer, then the line is gone
    bool ftpReadOnly = false;

    bool mailObject = true;  // registered
    bool mailSends = true;
    std::vector<std::string> smtpRequests;  // what the mail companion was given, NULs shown as "|"
    bool smtpSends = true;

    int screenWidth = 64, screenHeight = 48;
};
SimulatedNet& Net();
