#include "system/text.h"

#include <cmath>

namespace {

// What Next gives for a byte that is no part of valid UTF-8: no letter of any alphabet.
constexpr uint32_t strayByte = 0xFFFFFFFF;

// The code point at i, and i behind it. A stray byte counts as one character and is kept as it is.
uint32_t Next(std::string_view text, size_t& i) {
    auto byte = [&](size_t at) { return static_cast<unsigned char>(text[at]); };
    unsigned char first = byte(i++);
    if (first < 0x80) return first;
    size_t more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
    if (first < 0xC2 || first > 0xF4 || i + more > text.size()) return strayByte;
    uint32_t code = first & (0x3Fu >> more);
    for (size_t k = 0; k < more; ++k) {
        if ((byte(i + k) & 0xC0) != 0x80) return strayByte;
        code = code << 6 | (byte(i + k) & 0x3Fu);
    }
    if (more > 1 && code < 0x800) return strayByte;  // a longer form than it needs
    i += more;
    return code;
}

void Append(std::string& text, uint32_t code) {
    if (code < 0x80) {
        text += static_cast<char>(code);
    } else {
        text += static_cast<char>(0xC0 | code >> 6);
        text += static_cast<char>(0x80 | (code & 0x3F));
    }
}

// Runs of letters beyond ASCII whose small form lies at a fixed distance: Latin-1, Greek, Cyrillic.
struct CaseRun {
    uint32_t firstUpper, lastUpper, distance;
};
constexpr CaseRun caseRuns[] = {{0xC0, 0xD6, 32},   {0xD8, 0xDE, 32},   {0x386, 0x386, 38}, {0x388, 0x38A, 37},
                                {0x38C, 0x38C, 64}, {0x38E, 0x38F, 63}, {0x391, 0x3A1, 32}, {0x3A3, 0x3AB, 32},
                                {0x400, 0x40F, 80}, {0x410, 0x42F, 32}};

char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }
char UpperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }

// Most text is ASCII and is settled without decoding it.
template <typename Map>
std::string MapCase(std::string_view text, char (*ascii)(char), Map map) {
    std::string result;
    result.reserve(text.size());
    for (size_t i = 0; i < text.size();) {
        if (static_cast<unsigned char>(text[i]) < 0x80) {
            result += ascii(text[i++]);
            continue;
        }
        size_t start = i;
        uint32_t code = Next(text, i), mapped = map(code);
        if (mapped == code)
            result.append(text.substr(start, i - start));
        else
            Append(result, mapped);
    }
    return result;
}

// Position of part in text from start on, ASCII case ignored.
size_t FindNoCase(std::string_view text, std::string_view part, size_t start) {
    for (size_t i = start; i + part.size() <= text.size(); ++i) {
        size_t k = 0;
        while (k < part.size() && LowerAscii(text[i + k]) == LowerAscii(part[k])) ++k;
        if (k == part.size()) return i;
    }
    return std::string::npos;
}

template <typename Find>
std::string Replace(std::string_view text, std::string_view from, std::string_view to, Find find) {
    std::string result;
    size_t start = 0;
    for (size_t at; !from.empty() && (at = find(start)) != std::string::npos; start = at + from.size()) {
        result.append(text.substr(start, at - start));
        result.append(to);
    }
    return result.append(text.substr(start));
}

}  // namespace

std::string LowerCase(std::string_view text) {
    return MapCase(text, LowerAscii, [](uint32_t code) {
        for (const CaseRun& run : caseRuns)
            if (code >= run.firstUpper && code <= run.lastUpper) return code + run.distance;
        return code;
    });
}

std::string UpperCase(std::string_view text) {
    return MapCase(text, UpperAscii, [](uint32_t code) {
        if (code == 0x3C2) return uint32_t{0x3A3};  // final sigma
        for (const CaseRun& run : caseRuns)
            if (code >= run.firstUpper + run.distance && code <= run.lastUpper + run.distance)
                return code - run.distance;
        return code;
    });
}

bool EqualNoCase(std::string_view left, std::string_view right) {
    if (left.size() != right.size()) return false;  // both forms of a letter are equally long
    for (size_t i = 0; i < left.size(); ++i) {
        if (LowerAscii(left[i]) == LowerAscii(right[i])) continue;
        bool isAscii = static_cast<unsigned char>(left[i] | right[i]) < 0x80;
        return !isAscii && LowerCase(left) == LowerCase(right);
    }
    return true;
}

bool ContainsNoCase(std::string_view text, std::string_view part) {
    return LowerCase(text).find(LowerCase(part)) != std::string::npos;
}

bool StartsWith(std::string_view text, std::string_view head) { return text.starts_with(head); }
bool EndsWith(std::string_view text, std::string_view tail) { return text.ends_with(tail); }
bool EndsWithNoCase(std::string_view text, std::string_view tail) { return LowerCase(text).ends_with(LowerCase(tail)); }

std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to) {
    return Replace(text, from, to, [&](size_t start) { return text.find(from, start); });
}

std::string ReplaceAllNoCase(std::string_view text, std::string_view from, std::string_view to) {
    return Replace(text, from, to, [&](size_t start) { return FindNoCase(text, from, start); });
}

std::vector<std::string> Split(std::string_view text, char separator) {
    std::vector<std::string> pieces;
    size_t start = 0;
    for (size_t at; (at = text.find(separator, start)) != std::string::npos; start = at + 1)
        pieces.emplace_back(text.substr(start, at - start));
    pieces.emplace_back(text.substr(start));
    return pieces;
}

std::string Trim(std::string_view text) {
    size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) return "";
    return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

std::string NumberText(int64_t number) { return std::to_string(number); }

std::string HexText(uint32_t number) {
    std::string text;
    do {
        text.insert(text.begin(), "0123456789ABCDEF"[number & 15]);
        number >>= 4;
    } while (number);
    return text;
}

std::string FixedText(double value, int decimals) {
    double scale = std::pow(10.0, decimals);
    // The nudge mends halves that binary numbers cannot hold, such as 1.005.
    double rounded = std::floor(std::fabs(value) * scale + 0.5 + 1e-9);
    auto scaled = rounded < 9e18 ? static_cast<int64_t>(rounded) : INT64_MAX;
    std::string digits = NumberText(scaled);
    auto wanted = static_cast<size_t>(decimals);
    if (digits.size() <= wanted) digits.insert(0, wanted + 1 - digits.size(), '0');
    if (decimals > 0) digits.insert(digits.size() - wanted, ".");
    return (value < 0 && scaled != 0 ? "-" : "") + digits;
}

std::string GroupedText(double value, int maxDecimals) {
    std::string text = FixedText(value, maxDecimals), fraction;
    size_t point = text.find('.');
    if (point != std::string::npos) {
        fraction = text.substr(point + 1);
        text.resize(point);
    }
    while (!fraction.empty() && fraction.back() == '0') fraction.pop_back();
    if (text == "0") text.clear();
    for (size_t at = text.size(); at > 3 && text[at - 4] != '-';) text.insert(at -= 3, ",");
    return fraction.empty() ? text : text + "." + fraction;
}

size_t CharacterCount(std::string_view text) {
    size_t count = 0;
    for (size_t i = 0; i < text.size(); ++count) Next(text, i);
    return count;
}

std::string FirstCharacters(std::string_view text, size_t count) {
    size_t i = 0;
    while (count-- > 0 && i < text.size()) Next(text, i);
    return std::string(text.substr(0, i));
}

std::string LowBytes(std::string_view text) {
    std::string bytes;
    for (size_t i = 0; i < text.size();) {
        uint32_t code = Next(text, i);
        // A character beyond 16 bits is a pair there: upper and lower ten bits above 0x10000.
        if (code > 0xFFFF && code != strayByte) bytes += static_cast<char>((code - 0x10000) >> 10);
        bytes += static_cast<char>(code);
    }
    return bytes;
}
