// Text as the simulated PC needs it. Case folding as Windows has it for the alphabets that the tests use.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Upper case of ASCII, Latin-1, Greek and Cyrillic letters in UTF-8.
std::string Fold(std::string_view text);
inline bool SameName(std::string_view left, std::string_view right) { return Fold(left) == Fold(right); }
inline bool HoldsName(std::string_view text, std::string_view part) {
    return Fold(text).find(Fold(part)) != std::string::npos;
}
bool EndsInName(std::string_view text, std::string_view tail);
std::vector<std::string> Pieces(std::string_view text, char separator);
std::string Joined(const std::vector<std::string>& pieces, const std::string& separator);
// Number of UTF-16 units of UTF-8 text; the longest head of at most that many units.
size_t Units(std::string_view text);
std::string CutToUnits(std::string_view text, size_t units);
// What * and ? of a file pattern match; "*.*" matches all.
bool MatchesPattern(std::string_view name, std::string_view pattern);
std::string Decimal(uint64_t number);
std::string Hex(uint32_t number);
// Behind the last backslash; before it (without the backslash); behind the last point of the name, folded.
std::string LastPart(const std::string& path);
std::string FolderPart(const std::string& path);
std::string FoldedExtension(const std::string& path);
