// The one door to the registry: roots and types by name, the two views of a 64-bit system, INI files as roots.
//
// Statuses: 0 success, a platform code on failure (2 not found), 99 nothing answered yet. Lists have a NUL behind
// each entry and one more at the end; an empty list is two NULs.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

inline constexpr int32_t statusNone = 99;

// Type "S" and "M": text; "M" keeps its NULs, less the last character.
int32_t fReadValue(const std::string& root, const std::string& key, const std::string& valueName, char type,
                   const std::string& defaultValue, std::string& result);
// Type "D": 32-bit number. Type "B": exactly two bytes as a number, for booleans.
int32_t fReadValue(const std::string& root, const std::string& key, const std::string& valueName, char type,
                   int32_t defaultValue, int32_t& result);
// The text, or "" when it cannot be read; the most common read.
std::string ReadRegistryText(const std::string& root, const std::string& key, const std::string& valueName);

// Types "S", "E", "M" (appends to what is there).
int32_t fWriteValue(const std::string& root, const std::string& key, const std::string& valueName, char type,
                    const std::string& data);
// Type "D", within -32768 to 32767; others are traced and refused.
int32_t fWriteValue(const std::string& root, const std::string& key, const std::string& valueName, char type,
                    int32_t data);

// Append to the list, which should be empty: subkey names, or values as "name=value" (texts, numbers, and binary data
// of one or two bytes as a number). fEnumValue parts texts by the NUL that is stored with them, fEnumValue2 by one of
// its own. For an INI file the section as it stands in a buffer of 8192 blanks.
int32_t fEnumKey(const std::string& root, const std::string& key, std::string& list);
int32_t fEnumValue(const std::string& root, const std::string& key, std::string& list);
int32_t fEnumValue2(const std::string& root, const std::string& key, std::string& list);

// notFound is only ever set to true; a value or key that was missing gives 0. Where rights are missing, rights are
// granted and other tools tried; what then stays gives the last code.
int32_t fDeleteValue(const std::string& root, const std::string& key, const std::string& valueName, bool& notFound);
int32_t fDeleteKey(const std::string& root, const std::string& parent, const std::string& name, bool& notFound);
// Empties a key; rootHandle is what fGetHive gives for rootName. What refuses stays.
void fDeleteSubkeys(uint32_t rootHandle, const std::string& key, const std::string& rootName);

// Root number, 1 for the path of an existing file, 0 for a bad root.
uint32_t fGetHive(const std::string& root);
// By the environment variable "ProgramFiles(x86)".
bool IsOS64Bit();

// The non-empty pieces of a NUL-separated list.
std::vector<std::string> SplitList(const std::string& list);
