// The debug trace, the tests for files and folders, and the application folder.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

// One value of a trace line: booleans print "True" or "False", numbers in decimal.
class TraceValue {
public:
    TraceValue(const char* value) : text(value) {}
    TraceValue(std::string value) : text(std::move(value)) {}
    TraceValue(std::string_view value) : text(value) {}
    TraceValue(bool value) : text(value ? "True" : "False") {}
    TraceValue(int value) : text(std::to_string(value)) {}
    TraceValue(unsigned value) : text(std::to_string(value)) {}
    TraceValue(long value) : text(std::to_string(value)) {}
    TraceValue(unsigned long value) : text(std::to_string(value)) {}
    TraceValue(long long value) : text(std::to_string(value)) {}
    TraceValue(unsigned long long value) : text(std::to_string(value)) {}
    const std::string& Text() const { return text; }

private:
    std::string text;
};

// What DebugOutput calls.
void DebugOutputLine(std::initializer_list<TraceValue> values);

// Sends one line to the debug channel, each value behind a tab, also the first. Never fails visibly.
template <typename... Values>
void DebugOutput(const Values&... values) {
    DebugOutputLine({TraceValue(values)...});
}

// Fixes the settings file path and opens the trace; the first thing the process does.
// besideProgram false puts the settings into the folder "Config".
void InitPaths(bool initPaths, bool besideProgram);

// Application folder, always with a trailing backslash.
std::string GetAppPath();
// Full path of the running program.
std::string GetEXEPath();
// Its file name without folder and extension.
std::string GetEXEName();

// A path whose second character is neither ":" nor "\" is never found. trace switches the call's own trace on.
bool DoesFileExist(const std::string& path, bool trace = false);
bool DoesDirExist(const std::string& path, bool trace = false);
bool DoesDirExistNo64bitCheck(const std::string& path, bool trace = false);
bool DoesDirExistNoDebug(const std::string& path);

// drive such as "C:"; empty asks the running system.
bool IsDrive64Bit(const std::string& drive);
// The pair is idempotent; keep what stands between short.
void Disable64BitRedirect();
void Revert64BitRedirect();

// Redirection off for a block; a block within a block leaves it off.
class RedirectionOff {
public:
    RedirectionOff();
    ~RedirectionOff();
    RedirectionOff(const RedirectionOff&) = delete;
    RedirectionOff& operator=(const RedirectionOff&) = delete;

private:
    bool wasOff;
};
