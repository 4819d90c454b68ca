// Text between the program's UTF-8 and the platform's UTF-16.
//
// Half a surrogate pair, which names of files and keys may hold, becomes the three bytes that UTF-8's scheme gives it
// and comes back as it was. A byte that is no UTF-8 becomes U+FFFD.
#pragma once

#include <string>
#include <string_view>

namespace pc {

std::wstring Wide(std::string_view utf8);
std::string Utf8(std::wstring_view text);

// A path for the platform's wide calls: one near the classic limit of 260 characters is made full and gets the
// prefix that lifts the limit. A path with a NUL inside gives "", since the platform would take its head for the file.
std::wstring WidePath(const std::string& path);

}  // namespace pc
