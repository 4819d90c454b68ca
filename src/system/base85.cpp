#include "system/base85.h"

#include <cstdint>

std::string Base85EncodeBytes(const std::string& source, bool bFramed) {
    std::string text = bFramed ? "<~" : "";
    text.reserve(source.size() / 4 * 5 + 11);
    for (size_t i = 0; i < source.size(); i += 4) {
        size_t count = source.size() - i < 4 ? source.size() - i : 4;
        uint32_t value = 0;
        for (size_t k = 0; k < 4; ++k)
            value = value << 8 | (k < count ? static_cast<unsigned char>(source[i + k]) : 0u);
        if (value == 0 && count == 4) {
            text += 'z';
            continue;
        }
        char digits[5];
        for (int k = 4; k >= 0; --k, value /= 85) digits[k] = static_cast<char>('!' + value % 85);
        text.append(digits, count + 1);
    }
    return text + "~>";
}

bool Base85DecodeBytes(const std::string& source, std::string& destination) {
    destination.clear();
    std::string digits;  // values 0 to 84
    size_t i = 0;
    // "<" is also a digit, and the one that every scrambled password begins with.
    if (source.compare(0, 2, "<~") == 0) i = 2;
    bool ended = false;
    for (; i < source.size() && !ended; ++i) {
        char c = source[i];
        if (c >= '!' && c <= 'u') {
            digits += static_cast<char>(c - '!');
        } else if (c == 'z' && digits.size() % 5 == 0) {
            digits.append(5, '\0');
        } else if (c == '~' && i + 1 < source.size() && source[i + 1] == '>') {
            ended = true;
        } else if (static_cast<unsigned char>(c) >= '!') {
            return false;
        }
    }
    if (!ended) return false;
    size_t rest = digits.size() % 5;
    size_t size = digits.size() / 5 * 4 + (rest ? rest - 1 : 0);
    if (rest) digits.append(5 - rest, static_cast<char>(84));
    for (size_t group = 0; group < digits.size(); group += 5) {
        uint64_t value = 0;
        for (size_t k = 0; k < 5; ++k) value = value * 85 + static_cast<unsigned char>(digits[group + k]);
        // A group above the largest 32-bit number wraps, as its four lowest bytes say.
        for (int shift = 24; shift >= 0; shift -= 8) destination += static_cast<char>(value >> shift & 0xFF);
    }
    destination.resize(size);
    return true;
}
