#include "platform/win32/wide.h"

#include <windows.h>

#include <cstdint>

namespace pc {

namespace {

constexpr char32_t replacement = 0xFFFD;

bool IsHighHalf(wchar_t unit) { return (unit & 0xFC00) == 0xD800; }
bool IsLowHalf(wchar_t unit) { return (unit & 0xFC00) == 0xDC00; }

// The code point at position, which moves behind it.
char32_t NextCodePoint(std::string_view text, size_t& position) {
    auto lead = static_cast<unsigned char>(text[position++]);
    if (lead < 0x80) return lead;
    size_t following = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    if (lead < 0xC2 || lead > 0xF4 || following > text.size() - position) return replacement;
    char32_t value = lead & (0x3Fu >> following);
    for (size_t i = 0; i < following; ++i) {
        auto next = static_cast<unsigned char>(text[position + i]);
        if ((next & 0xC0) != 0x80) return replacement;
        value = value << 6 | (next & 0x3Fu);
    }
    bool tooLong = (following == 2 && value < 0x800) || (following == 3 && value < 0x10000);
    if (tooLong || value > 0x10FFFF) return replacement;
    position += following;
    return value;
}

void AppendUtf8(std::string& out, char32_t value) {
    if (value < 0x80) {
        out += static_cast<char>(value);
        return;
    }
    int following = value < 0x800 ? 1 : value < 0x10000 ? 2 : 3;
    constexpr unsigned leads[] = {0, 0xC0, 0xE0, 0xF0};
    out += static_cast<char>(leads[following] | value >> (6 * following));
    while (following-- > 0) out += static_cast<char>(0x80 | (value >> (6 * following) & 0x3F));
}

}  // namespace

std::wstring Wide(std::string_view utf8) {
    std::wstring out;
    out.reserve(utf8.size());
    for (size_t position = 0; position < utf8.size();) {
        char32_t value = NextCodePoint(utf8, position);
        if (value >= 0x10000) {
            value -= 0x10000;
            out += static_cast<wchar_t>(0xD800 | value >> 10);
            value = 0xDC00 | (value & 0x3FF);
        }
        out += static_cast<wchar_t>(value);
    }
    return out;
}

std::string Utf8(std::wstring_view text) {
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        char32_t value = text[i];
        if (IsHighHalf(text[i]) && i + 1 < text.size() && IsLowHalf(text[i + 1]))
            value = 0x10000 + ((value & 0x3FF) << 10) + (text[++i] & 0x3FFu);
        AppendUtf8(out, value);
    }
    return out;
}

std::wstring WidePath(const std::string& path) {
    constexpr size_t classicLimit = 248;  // of a folder, which must leave room for a short file name
    std::wstring wide = Wide(path);
    if (wide.find(L'\0') != std::wstring::npos) return L"";
    if (wide.size() < classicLimit || wide.starts_with(L"\\\\?\\") || wide.starts_with(L"\\\\.\\")) return wide;

    std::wstring full(GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr), L'\0');
    DWORD length = GetFullPathNameW(wide.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    if (length == 0 || length >= full.size()) return wide;
    full.resize(length);
    return full.starts_with(L"\\\\") ? L"\\\\?\\UNC" + full.substr(1) : L"\\\\?\\" + full;
}

}  // namespace pc
