// A Windows PC in memory: what src/platform declares, for the native tests. No call answers what Windows would not.
//
// One PC is current at a time (Pc()). A test prepares it, runs the code under test, and compares the journal: one line
// for every effect, in order. Time is virtual: it passes in SleepFor and in Pass, and nowhere else.
//
// Lines of the journal:
//   run <command line>               run hidden <command line>      run <command line> -> error 2
//   open <document>                  open (runas) <file> <parameters>                  properties <path>
//   kill <process name>
//   set HKLM\Key\Name = text         = dword 2   = expand text   = multi one|two   = binary 01 0A
//   make key HKLM\Key                delete value HKLM\Key\Name     delete key HKLM\Key     security HKLM\Key
//   write C:\File (12 bytes)         append C:\File (3 bytes)       (both when the file is closed)
//   delete C:\File                   remove folder C:\Dir           make folder C:\Dir
//   move C:\A -> C:\B                copy C:\A -> C:\B              attributes C:\A = 32
//   owner C:\A = account             shell copy C:\A\*.* -> C:\B    ini C:\X.ini [Section] Key=Value
//   show "text" (style) -> answer    show "text" titled "title" (36) -> 6
//   pick file "title" -> path        pick folder "prompt" -> path   direct connection "name"
//   wmi restore point "name" 12 100 -> 0   wmi terminate name       password user           end 0
// A registry path is where the value really lies (with Wow6432Node when a 32-bit program was taken there), a file path
// as well. What fails has no effect and no line, but for a program that could not be started.
#pragma once

#include <climits>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <typeindex>
#include <vector>

#include "platform/files.h"
#include "platform/machine.h"
#include "platform/messages.h"
#include "platform/processes.h"
#include "platform/registry.h"
#include "platform/wmi.h"

class SimulatedPc;
struct FileNode;
struct RegistryNode;

// The current PC.
SimulatedPc& Pc();

// Names without X64 are 32-bit systems, but for eleven and the servers from 2008 R2 on.
enum class Windows {
    w2000,
    xp,
    xpX64,
    server2003,
    vista,
    vistaX64,
    server2008,
    seven,
    sevenX64,
    server2008R2,
    eight,
    eightX64,
    eightOne,
    eightOneX64,
    server2012,
    server2012R2,
    ten,
    tenX64,
    eleven,
    server2022,
};

// What a program does when it is started.
struct Behaviour {
    uint32_t exitCode = 0;
    uint32_t runs = 100;  // milliseconds; 0: gone before anybody can look; forever: until it is killed
    std::function<void(SimulatedPc&)> effect = {};  // at its end; none when it is killed
    bool isProtected = false;                       // cannot be opened by others

    static constexpr uint32_t forever = UINT32_MAX;
};

// A property of a WMI row.
struct WmiCell : pc::WmiValue {
    WmiCell() = default;
    WmiCell(const char* value) : WmiCell(std::string(value)) {}
    WmiCell(std::string value);
    WmiCell(int value) : WmiCell(int64_t{value}) {}
    WmiCell(int64_t value);
    WmiCell(bool value);
    WmiCell(std::vector<std::string> values);
};

// The program under test has called EndProcess.
struct ProgramEnded {
    uint32_t exitCode;
};
// The mains plug was pulled ahead of an effect (StopAt).
struct PlugPulled {};
// The code under test waits for something that never comes: virtual time or the number of calls ran out.
struct WaitsForever {};

class SimulatedPc {
public:
    explicit SimulatedPc(Windows windows = Windows::sevenX64);
    ~SimulatedPc();
    SimulatedPc(const SimulatedPc&) = delete;
    SimulatedPc& operator=(const SimulatedPc&) = delete;

    // A fresh PC with this system; loses what was prepared before.
    static SimulatedPc& UseWindows(Windows windows);
    // The program starts anew on the same PC: its open files, keys, timers, privileges, faults and running scripts are
    // gone, disks, registry and the other processes stay. Journal and trace are emptied.
    void RestartProgram();

    // --- what happened ---------------------------------------------------------------------------------------------
    std::vector<std::string> journal;
    std::vector<std::string> trace;       // debug lines
    std::vector<std::string> shownForms;  // names, in the order they were shown
    std::vector<std::string> contacted;   // addresses and hosts the program has spoken to
    int profileReads = 0;                 // ReadProfileText, -Number, -Section
    // Lines of the journal that begin with the text.
    std::vector<std::string> Journal(std::string_view head) const;
    // Whether a line of the trace holds the text.
    bool Traced(std::string_view text) const;
    void Note(const std::string& line) { journal.push_back(line); }

    // --- files: paths as Windows takes them; setting up is not journalled -----------------------------------------
    // Parents are made. An existing file is replaced.
    void AddFile(const std::string& path, const std::string& bytes = "", uint32_t attributes = pc::attributeArchive);
    void AddFolder(const std::string& path, uint32_t attributes = pc::attributeFolder);
    void AddJunction(const std::string& path, const std::string& target);          // to a folder
    void AddFileLink(const std::string& path, const std::string& target);          // symbolic link to a file
    void AddDrive(const std::string& root, uint32_t type = 3, bool ready = true);  // "D:", or "\\server\share"
    void SetDisk(const std::string& drive, double totalBytes, double freeBytes);
    // Writes fail with 112 after this many more bytes on any drive.
    void FillDiskAfter(uint64_t bytes) { bytesLeft = bytes; }
    void Lock(const std::string& path);  // another process holds it open for itself alone: 32
    void Unlock(const std::string& path);
    void Deny(const std::string& path);  // the access list forbids all but looking: 5
    void Allow(const std::string& path);
    void SetTimes(const std::string& path, pc::FileTime created, pc::FileTime accessed, pc::FileTime modified);
    bool Exists(const std::string& path) const;
    // Bytes; "" when it is not there.
    std::string FileText(const std::string& path) const;
    uint32_t Attributes(const std::string& path) const;  // 0 when it is not there
    std::string OwnerOf(const std::string& path) const;  // SID as text
    void DeleteTree(const std::string& path);            // whatever its attributes
    // Full paths of all files and folders (these with a backslash at their end) below the folder, links not entered.
    std::vector<std::string> Tree(const std::string& folder) const;
    // Of the 32-bit program's view of "C:\Windows\System32" on a 64-bit system; the paths above never are redirected.
    bool redirectionOff = false;

    // --- registry: "HKLM\Software\..." is the 64-bit view, with "Wow6432Node" in it the 32-bit one ----------------
    void SetText(const std::string& key, const std::string& name, const std::string& text);  // stored with its NUL
    void SetNumber(const std::string& key, const std::string& name, uint32_t number);
    void SetRaw(const std::string& key, const std::string& name, uint32_t type, const std::string& bytes);
    void AddKey(const std::string& key);
    void RemoveKey(const std::string& key);  // with all below it
    bool HasKey(const std::string& key) const;
    bool HasValue(const std::string& key, const std::string& name) const;
    std::string TextOf(const std::string& key, const std::string& name) const;  // "" when missing; no closing NULs
    uint32_t NumberOf(const std::string& key, const std::string& name, uint32_t missing = 0) const;
    // The access list lets administrators only read. owned: it may be changed by SetKeySecurity (the usual case);
    // otherwise the key belongs to another account and only AllowKey opens it.
    void DenyKey(const std::string& key, bool owned = true);
    void HideKey(const std::string& key, bool owned = true);  // not even read
    void AllowKey(const std::string& key);

    // --- INI files -------------------------------------------------------------------------------------------------
    void SetIni(const std::string& file, const std::string& section, const std::string& key, const std::string& value);
    std::string Ini(const std::string& file, const std::string& section, const std::string& key) const;

    // --- processes and time ----------------------------------------------------------------------------------------
    // A command line that holds the text (case ignored) behaves so; the rule added last wins. The program must be on
    // the disk to start (AddFile); the tools of Windows are.
    void Program(const std::string& partOfCommandLine, Behaviour behaviour);
    // A process of somebody else; its identifier.
    uint32_t AddProcess(const std::string& name, Behaviour behaviour = {.runs = Behaviour::forever});
    bool IsRunning(const std::string& name) const;
    void EndProcesses(const std::string& name);  // at their normal end, with effect
    // After so many milliseconds something happens elsewhere on the PC, inside a SleepFor.
    void Later(uint32_t milliseconds, std::function<void()> action);
    // In the n-th PumpMessages from now (1 is the next) the user does something.
    void AtPump(int n, std::function<void()> action);
    // Lets time pass with the window alive; due timers and actions run.
    void Pass(uint32_t milliseconds);
    void SetClock(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);
    pc::FileTime Now() const;                 // UTC, which is local time as well
    int dateOrder = 0;                        // 0 month first, 1 day first, 2 year first
    uint32_t ticks = 100000;                  // TickCount
    uint64_t patience = 12ull * 3600 * 1000;  // virtual milliseconds until WaitsForever

    // --- machine ---------------------------------------------------------------------------------------------------
    pc::OsVersion version;
    bool is64Bit = false;
    uint32_t sku = 0;
    uint64_t memory = 4ull << 30;
    std::string programPath = "C:\\Panel\\Brevanta.exe";
    std::string commandLine;
    std::string productName = "Brevanta";
    pc::ProgramVersion programVersion{4, 2, 0};
    std::string Env(const std::string& name) const;
    void SetEnv(const std::string& name, const std::string& value);
    std::string Profile() const { return Env("userprofile"); }
    void AddAccount(const std::string& name, const std::string& sid);  // "S-1-5-21-..."
    std::string UserSid() const;
    // The current user is no administrator: the folders of Windows and of programs, and HKLM, refuse changes.
    void BeOrdinaryUser() { ordinaryUser = true; }
    void AddResource(const std::string& type, const std::string& name, const std::string& bytes);

    // --- WMI -------------------------------------------------------------------------------------------------------
    using WmiProperties = std::vector<std::pair<std::string, WmiCell>>;
    void AddWmiRow(const std::string& nameSpace, const std::string& wmiClass, WmiProperties row);
    void ClearWmi(const std::string& nameSpace, const std::string& wmiClass);
    void FailWmi(const std::string& nameSpace, const std::string& error);  // queries there fail from now on
    void HangWmi(const std::string& nameSpace);                            // ... time out
    int32_t restorePointResult = 0;                                        // what CreateRestorePoint returns

    // --- messages and pickers ----------------------------------------------------------------------------------------
    // Answers in order. A box without one is closed: OK, Cancel, or No where these are all there is.
    void Answer(int answer) { answers.push_back(answer); }
    void AnswerWith(std::function<int(const std::string& text)> answer) { answerer = std::move(answer); }
    std::function<size_t(size_t)> choose;                          // picks one of so many buttons, of every box
    void Pick(const std::string& path) { picks.push_back(path); }  // for pickers; "" is cancel

    // --- internet --------------------------------------------------------------------------------------------------
    bool online = true;

    // --- faults ------------------------------------------------------------------------------------------------------
    // Calls that may fail, reads too, since the PC was made; and those that change something.
    int calls = 0, changes = 0;
    // The n-th such call from now fails with a code that Windows could give there.
    void FailCall(int n) { failAt = calls + n; }
    bool notesCalls = false;
    std::vector<std::string_view> called;  // while it notes: the platform function of each such call, in order
    // The n-th change from now does not happen any more: PlugPulled is thrown. A write leaves the half of its bytes.
    void StopAt(int n) { stopAt = changes + n; }
    // Runs ahead of the n-th such call from now: another program interferes.
    void AtCall(int n, std::function<void()> action) { interference[calls + n] = std::move(action); }
    bool otherInstanceRuns = false;              // HoldSingleInstance finds another one
    std::vector<std::string> refusedPrivileges;  // "SeDebugPrivilege": adjusting it fails with 5
    std::vector<std::string> heldPrivileges;     // switched on

    // State of one simulated subject for the life of the PC (for simulated_*.cpp).
    template <typename Part>
    Part& Of() {
        auto& part = parts[typeid(Part)];
        if (!part) part = std::make_shared<Part>();
        return *static_cast<Part*>(part.get());
    }

    // --- for the platform functions (simulated_*.cpp) ---------------------------------------------------------------
    // First in a call that looks things up before it may fail: counts the call and lets others interfere.
    void Begin();
    // True when the call must fail now (the code is then in lastError). Begins the call when nobody has.
    bool Fails(uint32_t code, const char* call = __builtin_FUNCTION());
    // The same for a change; throws PlugPulled when the plug is pulled.
    bool ChangeFails(uint32_t code, const char* call = __builtin_FUNCTION());
    bool Refuse(uint32_t code) {
        begun = false;
        lastError = code;
        return false;
    }
    void CheckPatience();  // throws WaitsForever
    uint32_t lastError = 0;
    bool plugIsOut = false;

    std::vector<int> answers;
    std::function<int(const std::string&)> answerer;
    std::vector<std::string> picks;
    std::map<std::string, std::string> environment;                       // by folded name
    std::map<std::string, std::pair<std::string, std::string>> accounts;  // folded name to name and SID text
    std::map<std::string, std::string> resources;                         // folded "TYPE\NAME"
    std::map<std::string, std::string> passwords;                         // that were set
    std::map<int, std::string> specialFolders;                            // by CSIDL number
    uint64_t bytesLeft = UINT64_MAX;
    bool ordinaryUser = false;
    uint64_t elapsed = 0;          // virtual milliseconds since the PC was made
    uint64_t clockBase = 0;        // local file time at elapsed 0
    std::function<void()> onPump;  // the headless host's timers

private:
    int failAt = -1, stopAt = -1;
    bool begun = false;
    uint64_t looks = 0;  // at the clock and the queue, against endless loops
    std::map<int, std::function<void()>> interference;
    std::map<std::type_index, std::shared_ptr<void>> parts;
};

// Called when a test has the PC or its user do what could not be. The fixture makes it fail the test; without a
// fixture it throws std::logic_error.
extern void (*complain)(const std::string& text);

// SID text "S-1-5-32-544" to bytes and back; "" when it is none.
std::string SidBytes(const std::string& text);
std::string SidText(const std::string& bytes);
// File time of a UTC date.
pc::FileTime FileTimeOf(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);
