#include "address_text.h"

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsHexDigit(char c) { return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

bool IsVersion4(const char* text) {
    for (int part = 0; part < 4; ++part) {
        int number = 0, digits = 0;
        for (; IsDigit(*text) && digits < 4; ++text, ++digits) number = number * 10 + (*text - '0');
        if (digits == 0 || digits > 3 || number > 255) return false;
        if (*text++ != (part < 3 ? '.' : '\0')) return false;
    }
    return true;
}

bool IsVersion6(const char* text) {
    int groups = 0;
    bool hasGap = false;
    if (text[0] == ':' && text[1] != ':') return false;
    while (*text) {
        if (text[0] == ':' && text[1] == ':') {
            if (hasGap) return false;
            hasGap = true;
            text += 2;
            if (*text == ':') return false;
            continue;
        }
        if (*text == ':') ++text;
        int digits = 0;
        for (; IsHexDigit(*text); ++text) ++digits;
        if (digits == 0 || digits > 4) return false;
        ++groups;
        if (*text && *text != ':') return false;
    }
    return hasGap ? groups <= 7 : groups == 8;
}

}  // namespace

bool IsAddressText(const char* text) { return IsVersion4(text) || IsVersion6(text); }
