// Processes, privileges, time and the message pump, at the height of the platform's own calls.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace pc {

// Access bits of a process, and the exit code of one that runs, as the platform has them.
inline constexpr uint32_t processTerminate = 0x1;
inline constexpr uint32_t processQueryInformation = 0x400;
inline constexpr uint32_t processAllAccess = 0x1F0FFF;
inline constexpr uint32_t stillActive = 259;

// An open process; closes itself. value 0 means none.
class Process {
public:
    Process() = default;
    ~Process() { Close(); }
    Process(Process&& other) noexcept : value(other.value) { other.value = 0; }
    Process& operator=(Process&& other) noexcept;
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    void Close();

    uintptr_t value = 0;
};

// Starts a command line. windowStyle: 0 hidden, 1 normal with focus, 2 minimised with focus.
// The result is the new process identifier; 0 on failure, with the platform's code in LastError().
uint32_t StartProcess(const std::string& commandLine, uint16_t windowStyle);
// Starts a hidden program, writes input to its standard input, and returns when it has ended, with window messages
// handled meanwhile. output takes its standard output. False when it did not start.
bool RunWithInput(const std::string& commandLine, const std::string& input, std::string& output, uint32_t& exitCode);
// False when there is no such process or it refuses the access bits.
bool OpenProcessById(uint32_t processId, uint32_t access, Process& process);
// False when the code cannot be had; stillActive while it runs.
bool GetExitCode(const Process& process, uint32_t& exitCode);
// Ends it at once. False when the platform refuses.
bool Terminate(const Process& process, uint32_t exitCode);

// A process of the snapshot.
struct ProcessEntry {
    uint32_t id = 0;
    std::string name;  // executable name without folder
};
// A snapshot of all processes; empty when there is none to be had.
std::vector<ProcessEntry> ListProcesses();
// Identifier of this process.
uint32_t OwnProcessId();

// How far the switching of a privilege came.
enum class PrivilegeStep { done, openToken, lookup, adjust };
// Switches one privilege of the own token; changed (may be null) tells whether it was otherwise before. On failure the
// step that failed, with the code in LastError().
PrivilegeStep SetPrivilege(const std::string& name, bool enable, bool* changed = nullptr);

// Opens a document, folder or address with the system's handler. verb may be empty ("open"), so may parameters.
// Above 32 is success, else the shell's code.
intptr_t ShellOpen(const std::string& file, const std::string& verb, const std::string& parameters, int showCommand);
// Shows the shell's property sheet of a file.
bool ShowProperties(const std::string& path);

// Milliseconds since some start; wraps.
uint32_t TickCount();
// Waits without handling window messages.
void SleepFor(uint32_t milliseconds);
// Handles all pending window messages and returns. Event handlers run inside.
void PumpMessages();
// Ends the process at once; nothing after it runs (the simulated PC throws ProgramEnded to its own test).
[[noreturn]] void EndProcess(uint32_t exitCode);
// True when this is the only running program that holds the named mutex; held until the process ends.
bool HoldSingleInstance(const std::string& name);

}  // namespace pc
