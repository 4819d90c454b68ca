#include "system/processes.h"

#include <algorithm>
#include <cmath>

#include "platform/files.h"
#include "platform/machine.h"
#include "platform/messages.h"
#include "platform/processes.h"
#include "platform/wmi.h"
#include "system/paths.h"
#include "system/program_state.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

constexpr uint32_t pollMilliseconds = 100;

std::string InQuotes(const std::string& text) { return '"' + text + '"'; }

// True with the code once the process has ended, or can no longer be asked (code 0).
bool HasEnded(const pc::Process& process, uint32_t& exitCode) {
    if (!pc::GetExitCode(process, exitCode)) exitCode = 0;
    return exitCode != pc::stillActive;
}

// Starts a command line with redirection off, and opens the process when the caller will wait for it.
uint32_t Start(const std::string& commandLine, uint16_t windowStyle, pc::Process* process) {
    RedirectionOff redirectionOff;
    uint32_t processId = pc::StartProcess(commandLine, windowStyle);
    if (processId != 0 && process != nullptr) pc::OpenProcessById(processId, pc::processQueryInformation, *process);
    return processId;
}

// Puts psexec before the command when it is there and can work; otherwise traces why not.
void RaiseToSystem(std::string& command, bool wait, uint16_t& windowStyle) {
    std::string psexec = GetAppPath() + "3rd Party Tools\\psexec.exe";
    if (StartsWith(GetAppPath(), "\\\\")) {
        DebugOutput("ShellX:  Cannot run app as system with PSEXEC on a UNC path.");
    } else if (!DoesFileExist(psexec)) {
        DebugOutput("ShellX:  Cannot find PSEXEC.EXE");
    } else {
        command = InQuotes(psexec) + (wait ? " -s -i " : " -s -i -d ") + command;
        windowStyle = 0;
    }
}

bool IsOwnProgram(const std::string& name) { return EqualNoCase(name, StripPath(GetEXEPath())); }

// 0 when the text is not all digits or too large for an identifier.
uint32_t ProcessIdFromText(const std::string& text) {
    uint64_t number = 0;
    for (char c : text) {
        if (c < '0' || c > '9' || number > INT32_MAX) return 0;
        number = number * 10 + static_cast<uint64_t>(c - '0');
    }
    return number > INT32_MAX ? 0 : static_cast<uint32_t>(number);
}

void TraceKill(const char* procedure, const std::string& name) {
    if (!State().bVerboseTrace) return;
    DebugOutput(std::string("CommonModule\\") + procedure + ": ");
    DebugOutput("\t- Passed: " + name);
}

}  // namespace

void DoEvents() { pc::PumpMessages(); }

void DoEventsNowAndThen() {
    constexpr uint32_t interval = 20;
    static uint32_t last = 0;
    if (pc::TickCount() - last < interval) return;
    DoEvents();
    last = pc::TickCount();
}

void WaitFor(const std::function<bool()>& done) {
    while (!done()) {
        DoEvents();
        pc::SleepFor(pollMilliseconds);
    }
}

void Pause(double seconds) {
    if (!(seconds > 0)) return;
    uint32_t started = pc::TickCount();
    auto milliseconds = static_cast<uint32_t>(std::ceil(std::min(seconds * 1000, 2e9)));
    while (pc::TickCount() - started < milliseconds) {
        pc::SleepFor(pollMilliseconds);
        DoEvents();
    }
}

bool ShellX(std::string pathAndFileName, const std::string& arguments, bool wait, uint16_t windowStyle,
            int32_t* exitCode, bool asSystem) {
    if (pathAndFileName.find('\\') != std::string::npos && !DoesFileExist(pathAndFileName)) {
        DebugOutput("CommonModule\\ShellX FILE NOT FOUND");
        DebugOutput("\t- sPathAndFileName=" + pathAndFileName);
        return false;
    }
    std::string command = pathAndFileName.find(' ') != std::string::npos ? InQuotes(pathAndFileName) : pathAndFileName;
    if (!arguments.empty()) command += ' ' + arguments;
    if ((asSystem || State().bRunAllAsSystem) && !IsSystemAccess(false)) RaiseToSystem(command, wait, windowStyle);

    pc::Process process;
    uint32_t processId = Start(command, windowStyle, wait ? &process : nullptr);
    if (processId == 0)
        DebugOutput("CommonModule\\ShellX - VB ERROR: " + NumberText(pc::LastError()) + " Could not be started");
    if (processId == 0 || (wait && process.value == 0)) {
        DebugOutput("ShellX (Failed):  " + command);
        return false;
    }
    if (wait) {
        uint32_t code = 0;
        WaitFor([&] { return HasEnded(process, code); });
        if (exitCode != nullptr) *exitCode = static_cast<int32_t>(code);
    }
    return true;
}

bool RunAsSystem(const std::string& path, const std::string& arguments, bool wait) {
    return ShellX(path, arguments, wait, 0, nullptr, true);
}

bool ShellandWaitForTermination(const std::string& commandLine, uint16_t windowStyle, std::string& failureMessage,
                                uint32_t timeOutMilliseconds, bool timeOutMatters) {
    DebugOutput("ShellandWaitForTermination:  " + commandLine);
    pc::Process process;
    Start(commandLine, windowStyle, &process);
    bool success = process.value != 0;
    if (!success) {
        failureMessage =
            "This program could not determine whether the process started."
            "Please watch the program and check it completes.";
    } else {
        uint32_t started = pc::TickCount(), code = 0;
        WaitFor([&] {
            if (timeOutMatters && pc::TickCount() - started > timeOutMilliseconds) {
                failureMessage = "The process has timed out.";
                success = false;
            }
            return HasEnded(process, code);
        });
    }
    DebugOutput("\tSuccess=" + TraceValue(success).Text());
    return success;
}

bool RunAndWait(const std::string& commandLine, uint16_t windowStyle) {
    std::string failureMessage;
    return ShellandWaitForTermination(commandLine, windowStyle, failureMessage);
}

bool StartCommand(const std::string& commandLine, uint16_t windowStyle) {
    return Start(commandLine, windowStyle, nullptr) != 0;
}

bool IsSystemAccess(bool showMessage) {
    std::string user = pc::Environment("username");
    bool isSystem = user.empty() || user == pc::Environment("computername") + "$" ||
                    LowerCase(pc::Environment("systemdrive")) == "x:";
    if (isSystem && showMessage) pc::ShowMessage("It appears you now have SYSTEM access.  Congrats!");
    return isSystem;
}

void KillProcessEverywhere(const std::string& pathOrName, bool wait) {
    std::string name = StripPath(pathOrName);
    KillProcess(name);
    if (name.empty() || IsOwnProgram(name)) return;  // the roads below would end the panel too
    if (uint32_t processId = ProcessIdFromText(name); processId != 0) KillProcessByID(processId, 0);
    KillProcessViaWMI(name);
    ShellX("cmd.exe", "/c tskill " + InQuotes(name) + " /a", wait, 0);
    ShellX("cmd.exe", "/c taskkill /f /t /im " + InQuotes(name), wait, 0);
}

bool KillProcess(const std::string& nameTail) {
    TraceKill("KillProcess", nameTail);
    pc::OsVersion version = pc::GetOsVersion();
    bool hasSnapshots = version.platform != 2 || version.major >= 5;
    if (nameTail.empty() || !hasSnapshots) return false;
    for (const pc::ProcessEntry& entry : pc::ListProcesses()) {
        if (entry.id == pc::OwnProcessId() || !EndsWithNoCase(entry.name, nameTail)) continue;
        pc::Process process;
        if (pc::OpenProcessById(entry.id, pc::processTerminate, process)) pc::Terminate(process, 0);
    }
    return false;
}

bool KillProcessByID(uint32_t processId, uint32_t exitCode) {
    constexpr const char* debugPrivilege = "SeDebugPrivilege";
    if (processId == pc::OwnProcessId()) return false;
    bool isNt = pc::GetOsVersion().platform == 2;
    bool wasOff = false;
    if (isNt && pc::SetPrivilege(debugPrivilege, true, &wasOff) != pc::PrivilegeStep::done) return false;
    pc::Process process;
    bool ended = pc::OpenProcessById(processId, pc::processAllAccess, process) && pc::Terminate(process, exitCode);
    if (wasOff) pc::SetPrivilege(debugPrivilege, false);
    return ended;
}

void KillProcessViaWMI(const std::string& name) {
    TraceKill("KillProcessViaWMI", name);
    if (!IsOwnProgram(name)) pc::WmiTerminateProcesses(name);
}

void OpenDocument(const std::string& document) { pc::ShellOpen(document, "", "", 1); }

void RemoveOldRightsTools() {
    for (const char* tool : {"psexec.exe", "MSBv_Fix.exe"}) pc::RemoveFile(GetAppPath() + tool);
}
