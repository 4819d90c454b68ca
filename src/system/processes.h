// Starting and stopping other programs, and waiting while the window lives on.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

// Handles pending window messages; event handlers run inside.
void DoEvents();
// The same inside a loop of short steps: only when 20 ms have passed since the last time, which no hand notices.
void DoEventsNowAndThen();
// Polls every 100 ms with DoEvents in between until done() is true.
void WaitFor(const std::function<bool()>& done);
// Waits that long with the window alive.
void Pause(double seconds);

// Starts a program; true when it started. windowStyle: 0 hidden, 1 normal. With wait it returns when the program has
// ended, exitCode (may be null) then holds its code. asSystem goes by way of psexec when that is there.
bool ShellX(std::string pathAndFileName, const std::string& arguments, bool wait, uint16_t windowStyle,
            int32_t* exitCode = nullptr, bool asSystem = false);
bool RunAsSystem(const std::string& path, const std::string& arguments, bool wait);
// Starts a command line and waits for its end. The time-out only changes what is reported, it never ends the wait.
bool ShellandWaitForTermination(const std::string& commandLine, uint16_t windowStyle, std::string& failureMessage,
                                uint32_t timeOutMilliseconds = 2000000000, bool timeOutMatters = false);
// The same where nobody asks for the message.
bool RunAndWait(const std::string& commandLine, uint16_t windowStyle);
// Starts a command line with redirection off and returns at once; true when it started.
bool StartCommand(const std::string& commandLine, uint16_t windowStyle);

// Whether the program runs as the system's own account.
bool IsSystemAccess(bool showMessage);
// By every road there is: name, number, management service, tskill, taskkill. The panel itself is spared.
void KillProcessEverywhere(const std::string& pathOrName, bool wait);
// Ends every process whose name ends in the text, case ignored, but never the panel itself. Always false.
bool KillProcess(const std::string& nameTail);
// False when it is the panel, is not there or refuses.
bool KillProcessByID(uint32_t processId, uint32_t exitCode);
void KillProcessViaWMI(const std::string& name);

// Opens a file, folder or address with the system's handler.
void OpenDocument(const std::string& document);
void RemoveOldRightsTools();
