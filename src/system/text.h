// Text helpers. All texts are UTF-8.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Case mapping of ASCII, Latin-1, Greek and Cyrillic letters; other characters stay.
std::string LowerCase(std::string_view text);
std::string UpperCase(std::string_view text);
bool EqualNoCase(std::string_view left, std::string_view right);
bool ContainsNoCase(std::string_view text, std::string_view part);
bool StartsWith(std::string_view text, std::string_view head);
bool EndsWith(std::string_view text, std::string_view tail);
bool EndsWithNoCase(std::string_view text, std::string_view tail);
std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to);
// ASCII case is ignored when matching.
std::string ReplaceAllNoCase(std::string_view text, std::string_view from, std::string_view to);
// An empty text gives one empty piece.
std::vector<std::string> Split(std::string_view text, char separator);
// Blanks (and only blanks) at both ends.
std::string Trim(std::string_view text);
// Decimal text. Decimal point ".".
std::string NumberText(int64_t number);
std::string HexText(uint32_t number);  // upper case, no leading zeros
// Rounded half away from zero to a fixed number of decimals, e.g. FixedText(1.005, 2).
std::string FixedText(double value, int decimals);
// "#,###.##" with up to maxDecimals optional decimals and grouping by thousands: 0.5 gives ".5", 2 gives "2".
// maxDecimals 0 gives "###,###,###,###": whole, grouped, empty for 0.
std::string GroupedText(double value, int maxDecimals);
// Number of characters (code points) of a UTF-8 text, and its first n characters.
size_t CharacterCount(std::string_view text);
std::string FirstCharacters(std::string_view text, size_t count);
// The low byte of each 16-bit character; the high one is lost.
std::string LowBytes(std::string_view text);
