// Texts that "AltLang.INI" in the application folder may replace.
#pragma once

#include <span>
#include <string>

// The file's entry, or builtIn when file or key is missing or the entry has fewer than one character.
std::string LanguageText(const std::string& section, const std::string& key, const std::string& builtIn);

// One caption of a form that the file may replace.
struct LanguageCaption {
    const char* section;
    const char* key;
    const char* control;
};
// Entry of each row whose value is not empty, handed to set(control, text); nothing when the file is missing.
template <typename Set>
void ApplyLanguage(std::span<const LanguageCaption> rows, Set set);

// Whether a translation lies beside the program.
bool LanguageFileExists();
// Empty when the file or the entry is missing.
std::string LanguageEntry(const std::string& section, const std::string& key);

template <typename Set>
void ApplyLanguage(std::span<const LanguageCaption> rows, Set set) {
    if (!LanguageFileExists()) return;
    for (const LanguageCaption& row : rows) {
        std::string value = LanguageEntry(row.section, row.key);
        if (!value.empty()) set(row.control, value);
    }
}
