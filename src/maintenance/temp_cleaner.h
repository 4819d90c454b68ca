// Removes temporary, cache, cookie and history data of every profile on the machine. It works from paths alone: no
// browser is asked, and what a browser holds open stays.
#pragma once

#include <string>

#include "controls/form.h"

// What is asked for. The profiles' own temp folders go in any case.
struct CleanerFlags {
    bool bDelTemps = false;  // the Windows folder's and the system profile's part, and the update downloads
    bool bDelTempInternet = false;
    bool bDelCookies = false;
    bool bDelHistory = false;
};

// Where a run shows its state besides the status window. The controls may be null.
struct CleanerStatus {
    Control* firstLine = nullptr;
    Control* secondLine = nullptr;
    Control* failures = nullptr;  // a list that takes the folders that could not be removed
    std::string first, second;    // as shown now

    // Each shows and lets events run.
    void Show(const std::string& newFirst, const std::string& newSecond);
    void ShowFirst(const std::string& text) { Show(text, second); }
    void ShowSecond(const std::string& text) { Show(first, text); }
};

// The whole cleaning, stage by stage over all profiles, with the status window up meanwhile. A folder that cannot be
// removed stays, and the run goes on.
void CleanTempFiles(const CleanerFlags& flags, CleanerStatus status = {});
// Makes the drive ("C:") the system under work: its Windows and system folders and its profiles.
void SetCleanTarget(const std::string& drive);
// Empties the Windows Update download store with its services stopped.
void ClearWindowsUpdateCache(CleanerStatus& status);
// False for an empty text and for the shared and template profiles.
bool IsRealUserProfile(const std::string& profile);
// Removes the folder with all that is in it and traces it. False when some of it may be left.
bool KillDirAndLog(const std::string& folder, bool recreate);
