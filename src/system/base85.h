// Ascii85 in the Adobe form: "!" to "u" as digits, "z" for four zero bytes, "~>" at the end.
#pragma once

#include <string>

// Bytes to armoured text; bFramed puts "<~" in front. No line breaks. Empty bytes give "~>" or "<~~>".
std::string Base85EncodeBytes(const std::string& source, bool bFramed);
// Armoured text to bytes; "<~" in front and white space are passed over. False when a character is no digit, "z"
// stands inside a group, or the end mark is missing; destination is empty then.
bool Base85DecodeBytes(const std::string& source, std::string& destination);
