// Inner helpers of the registry module: which of the two views of a 64-bit system a path is opened in.
#pragma once

#include <cstdint>
#include <string>

#include "platform/registry.h"

// What fGetHive answers for a root that is an INI file, and for one that is nothing.
inline constexpr uint32_t hiveIniFile = 1;
inline constexpr uint32_t hiveBad = 0;

// Where a path is looked for: the access bits with the view, and the path without its mark.
struct RegistryView {
    uint32_t access = 0;
    std::string path;

    uint32_t Bit() const { return access & pc::keyWow64_64; }
};

// An ordinary path goes to the 64-bit view. A "Wow6432Node" path loses that element, and its case, and is left to the
// redirection of a 32-bit process; under a mounted "guest_" hive, which nothing redirects, it stays as it is.
RegistryView ChooseView(const std::string& path, uint32_t baseAccess);
// The element that marks the 32-bit part, in a path that is redirected.
bool IsRedirectedPath(const std::string& path);
// "modRegistry\name - VB ERROR: " with the number and text of a run-time error.
void TraceRuntimeError(const char* procedure, const char* numberAndText);
// The three detail lines that close the traces of reads and writes.
void TraceKeyAndValue(const std::string& root, const std::string& key, const std::string& valueName);
void TraceStatus(int32_t status);
