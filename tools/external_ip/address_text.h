// Whether a server's answer is an internet address. Kept apart from the program so that it is tested natively.
#pragma once

// text is NUL-terminated. True for four decimal numbers from 0 to 255 with points between, or an IPv6 address:
// groups of up to four hexadecimal digits with colons between, eight of them, or fewer with one "::".
bool IsAddressText(const char* text);
