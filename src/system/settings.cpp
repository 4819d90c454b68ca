#include "system/settings.h"

#include <cmath>
#include <cstdlib>

#include "platform/registry.h"
#include "system/program_state.h"
#include "system/text.h"

namespace {

// Fixed buffer of every read: 254 characters and the closing NUL.
constexpr size_t readCapacity = 255;

std::optional<int16_t> FromHex(const std::string& digits) {
    if (digits.empty() || digits.find_first_not_of("0123456789ABCDEFabcdef") != std::string::npos) return {};
    unsigned long value = std::strtoul(digits.c_str(), nullptr, 16);
    if (value > 0xFFFF) return {};
    return static_cast<int16_t>(value);
}

bool IsNumber(const std::string& text) {
    size_t i = text[0] == '-' || text[0] == '+' ? 1 : 0, digits = 0;
    auto skipDigits = [&] {
        for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) ++digits;
    };
    skipDigits();
    if (i < text.size() && text[i] == '.') {
        ++i;
        skipDigits();
    }
    if (digits == 0) return false;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        if (i < text.size() && (text[i] == '-' || text[i] == '+')) ++i;
        digits = 0;
        skipDigits();
        if (digits == 0) return false;
    }
    return i == text.size();
}

}  // namespace

std::string ReadIni(const std::string& file, const std::string& section, const std::string& key) {
    return pc::ReadProfileText(file, section, key, "", readCapacity);
}

bool WriteIni(const std::string& file, const std::string& section, const std::string& key, const std::string& value) {
    return pc::WriteProfileText(file, section, key, value);
}

std::string Setting(const std::string& section, const std::string& key) {
    return ReadIni(State().settingsFile, section, key);
}

bool WriteSetting(const std::string& section, const std::string& key, const std::string& value) {
    return WriteIni(State().settingsFile, section, key, value);
}

std::string SettingOr(const std::string& section, const std::string& key, const std::string& fallback) {
    std::string value = Setting(section, key);
    return value.empty() ? fallback : value;
}

std::optional<int16_t> ToInt16(const std::string& given) {
    std::string text = Trim(ReplaceAll(given, "\t", " "));
    if (text.empty()) return {};
    if (StartsWith(LowerCase(text), "&h")) return FromHex(text.substr(2));
    if (!IsNumber(text)) return {};
    // The default rounding mode sends halves to the even neighbour.
    double value = std::nearbyint(std::strtod(text.c_str(), nullptr));
    if (!(value >= -32768 && value <= 32767)) return {};
    return static_cast<int16_t>(value);
}

bool Eq1(const std::string& value) { return value == "1"; }
bool Ne0(const std::string& value) { return value != "0"; }
bool Num1(const std::string& value) { return ToInt16(value).value_or(1) == 1; }
bool NumPositive(const std::string& value) { return ToInt16(value).value_or(1) > 0; }
bool NumNot1(const std::string& value) { return ToInt16(value).value_or(0) != 1; }
bool BlankOr1(const std::string& value) { return value.empty() || value == "1"; }
