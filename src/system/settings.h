// The settings file: one read or write of a key, straight to disk, and the tests that keys are put to.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

// At most 254 characters; absent file, section, key and an empty value are all "".
std::string ReadIni(const std::string& file, const std::string& section, const std::string& key);
// A write that fails is lost in silence; the result is for the few callers that must tell.
bool WriteIni(const std::string& file, const std::string& section, const std::string& key, const std::string& value);

// The same on the program's settings file.
std::string Setting(const std::string& section, const std::string& key);
bool WriteSetting(const std::string& section, const std::string& key, const std::string& value);
// The value, or fallback when it has fewer than one character (blanks count).
std::string SettingOr(const std::string& section, const std::string& key, const std::string& fallback);

// A text as a 16-bit number the way a numeric test takes it: blanks around it allowed, decimals rounded half to even,
// nothing when it is no number or out of range.
std::optional<int16_t> ToInt16(const std::string& text);

// The tests. A numeric test of a text that is no number counts as passed: its expression fails, and a failing
// statement is passed over into what it guards. NumNot1 guards the other way round: no number counts as not 1.
bool Eq1(const std::string& value);          // exactly "1"
bool Ne0(const std::string& value);          // anything but "0"
bool Num1(const std::string& value);         // number equal to 1, or no number
bool NumPositive(const std::string& value);  // number above 0, or no number
bool NumNot1(const std::string& value);      // number other than 1, or no number
bool BlankOr1(const std::string& value);     // empty or "1"
