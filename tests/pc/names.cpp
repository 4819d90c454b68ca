#include "pc/names.h"

#include <cstdio>

std::string Fold(std::string_view text) {
    std::string out(text);
    for (size_t i = 0; i < out.size(); ++i) {
        auto lead = static_cast<unsigned char>(out[i]);
        if (lead >= 'a' && lead <= 'z') out[i] = static_cast<char>(lead - 32);
        if ((lead & 0xE0) != 0xC0 || i + 1 >= out.size()) continue;
        unsigned point = (lead & 0x1Fu) << 6 | (static_cast<unsigned char>(out[i + 1]) & 0x3Fu);
        if ((point >= 0xE0 && point <= 0xFE && point != 0xF7) || (point >= 0x3B1 && point <= 0x3C9 && point != 0x3C2) ||
            (point >= 0x430 && point <= 0x44F))
            point -= 32;
        else if (point >= 0x450 && point <= 0x45F)
            point -= 80;
        out[i] = static_cast<char>(0xC0 | point >> 6);
        out[++i] = static_cast<char>(0x80 | (point & 0x3F));
    }
    return out;
}

bool EndsInName(std::string_view text, std::string_view tail) { return Fold(text).ends_with(Fold(tail)); }

std::vector<std::string> Pieces(std::string_view text, char separator) {
    std::vector<std::string> pieces(1);
    for (char character : text) {
        if (character == separator)
            pieces.emplace_back();
        else
            pieces.back() += character;
    }
    return pieces;
}

std::string Joined(const std::vector<std::string>& pieces, const std::string& separator) {
    std::string out;
    for (size_t i = 0; i < pieces.size(); ++i) out += (i ? separator : "") + pieces[i];
    return out;
}

size_t Units(std::string_view text) {
    size_t units = 0;
    for (char character : text) {
        auto byte = static_cast<unsigned char>(character);
        if ((byte & 0xC0) != 0x80) units += byte >= 0xF0 ? 2 : 1;
    }
    return units;
}

std::string CutToUnits(std::string_view text, size_t units) {
    size_t end = 0;
    while (end < text.size()) {
        size_t next = end + 1;
        while (next < text.size() && (static_cast<unsigned char>(text[next]) & 0xC0) == 0x80) ++next;
        if (Units(text.substr(0, next)) > units) break;
        end = next;
    }
    return std::string(text.substr(0, end));
}

namespace {

bool MatchesFolded(std::string_view name, std::string_view pattern) {
    if (pattern.empty()) return name.empty();
    if (pattern[0] == '*') {
        for (size_t skip = 0; skip <= name.size(); ++skip)
            if (MatchesFolded(name.substr(skip), pattern.substr(1))) return true;
        return false;
    }
    if (name.empty() || (pattern[0] != '?' && pattern[0] != name[0])) return false;
    size_t length = 1;
    while (pattern[0] == '?' && length < name.size() && (static_cast<unsigned char>(name[length]) & 0xC0) == 0x80)
        ++length;
    return MatchesFolded(name.substr(length), pattern.substr(1));
}

}  // namespace

bool MatchesPattern(std::string_view name, std::string_view pattern) {
    return pattern == "*.*" || MatchesFolded(Fold(name), Fold(pattern));
}

std::string Decimal(uint64_t number) { return std::to_string(number); }

std::string Hex(uint32_t number) {
    char text[12];
    std::snprintf(text, sizeof text, "%02X", number);
    return text;
}

std::string LastPart(const std::string& path) { return path.substr(path.find_last_of('\\') + 1); }

std::string FolderPart(const std::string& path) {
    size_t end = path.find_last_of('\\');
    return end == std::string::npos ? "" : path.substr(0, end);
}

std::string FoldedExtension(const std::string& path) {
    std::string name = LastPart(path);
    size_t point = name.find_last_of('.');
    return point == std::string::npos ? "" : Fold(name.substr(point + 1));
}
