// What the machine and the program are: environment, folders, versions, clock, accounts, resources, trace channel.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace pc {

// Empty when not set.
std::string Environment(const std::string& name);
std::string WindowsFolder();  // without trailing backslash, as all folders here
std::string SystemFolder();
// Path of the shell's folder by CSIDL number (0x10 desktop, 0x19 common desktop, 0x1A app data ...); empty if none.
std::string SpecialFolder(int csidl);
// Full path of the running executable.
std::string ProgramPath();
// Everything behind the program name on the command line, as typed.
std::string CommandLine();

// The running Windows as it really is (not what a missing manifest pretends).
struct OsVersion {
    uint32_t major = 0, minor = 0, build = 0;
    uint32_t platform = 2;  // 1 Windows 9x, 2 NT
    uint16_t servicePackMajor = 0, servicePackMinor = 0;
    uint16_t suiteMask = 0;
    uint8_t productType = 1;  // 1 workstation, 2 domain controller, 3 server
    std::string csdVersion;
};
OsVersion GetOsVersion();
// Edition number of Vista and later; 0 when the system cannot tell.
uint32_t ProductSku(uint32_t major, uint32_t minor);
// Total physical memory in bytes; 0 when unknown.
uint64_t TotalMemory();

// A moment by the calendar.
struct ClockTime {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, millisecond = 0;
    int dayOfWeek = 0;  // 0 Sunday
};
// The PC's clock, in its own zone.
ClockTime LocalNow();
// Local time of a file time (100 ns since 1601 UTC).
ClockTime LocalFromFileTime(uint64_t fileTime);
// The system's short text forms, e.g. "11/22/2026" and "10:15:30 AM".
std::string ShortDateText(const ClockTime& time);
std::string LongTimeText(const ClockTime& time);
// Order of day, month and year in the user's short date: 0 month first, 1 day first, 2 year first.
int ShortDateOrder();

// Security identifier bytes of an account name; 0 or the platform's code.
uint32_t LookupAccount(const std::string& name, std::string& sid, std::string& domain);
// Sets the password of a local account. 0, or the platform's code.
uint32_t SetAccountPassword(const std::string& user, const std::string& password);

// A resource of the executable: type such as "CUSTOM", name such as "GETEXTERNALIP". Nothing when absent.
std::optional<std::string> LoadProgramResource(const std::string& type, const std::string& name);
// Of the executable's version resource.
std::string ProductName();
struct ProgramVersion {
    uint16_t major = 0, minor = 0, revision = 0;
};
ProgramVersion GetProgramVersion();

// One line to the platform's debug channel.
void DebugLine(const std::string& line);

// UTF-8 to the system's ANSI code page and back; characters it lacks become "?".
std::string ToAnsi(const std::string& utf8);
std::string FromAnsi(const std::string& ansi);
// From the code page of the console and of DOS tools.
std::string FromOem(const std::string& oem);

}  // namespace pc
