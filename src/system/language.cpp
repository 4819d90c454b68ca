#include "system/language.h"

#include "system/settings.h"
#include "system/trace.h"

namespace {
std::string LanguageFile() { return GetAppPath() + "AltLang.INI"; }
}  // namespace

bool LanguageFileExists() { return DoesFileExist(LanguageFile()); }

std::string LanguageEntry(const std::string& section, const std::string& key) {
    return ReadIni(LanguageFile(), section, key);
}

std::string LanguageText(const std::string& section, const std::string& key, const std::string& builtIn) {
    std::string value = LanguageFileExists() ? LanguageEntry(section, key) : "";
    return value.empty() ? builtIn : value;
}
