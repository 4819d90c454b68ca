// Header lines of a message (RFC 5322, RFC 2047).
#pragma once

#include <string>
#include <vector>

// Text as it may stand in a header: as it is when it is plain ASCII, otherwise in encoded words of UTF-8.
std::string EncodedHeader(const std::string& text);
// "a@b" of "Name <a@b>" in angle brackets, as the envelope wants it.
std::string AddressOf(const std::string& mailbox);
// Date, From, To, Subject, Message-ID. No line holds a line end, whatever the texts do.
std::vector<std::string> MessageHeaders(const std::string& from, const std::vector<std::string>& to,
                                        const std::string& subject);
