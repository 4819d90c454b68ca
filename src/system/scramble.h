// Light scrambling of the two passwords in the settings file: against a glance, not against an attack.
#pragma once

#include <string>

// The one key of all stored passwords.
inline constexpr const char* passwordKey = "4205173";

// The stored form: guard "a" at both ends, repeating-key XOR over the ANSI codes, Ascii85 without opening mark. ASCII
// reads back exactly; of other characters some do not.
std::string EncryptString(const std::string& text, const std::string& key);
// The password; a wrong key or damaged text gives wrong text, never an error.
std::string DecryptString(const std::string& stored, const std::string& key);

// Armours the low byte of each 16-bit character.
std::string Base85EncodeString(const std::string& text, bool bFramed);
// Empty when the text is no Ascii85.
std::string Base85DecodeString(const std::string& text);
