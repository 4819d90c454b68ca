// Header lines of a message (RFC 5322, RFC 2047), and the address of the server that takes it.
#pragma once

#include <string>
#include <vector>

// Text as it may stand in a header: as it is when it is short plain ASCII, otherwise in encoded words of UTF-8, one
// blank between them.
std::string EncodedHeader(const std::string& text);
// "a@b" of "Name <a@b>" in angle brackets, as the envelope wants it.
std::string AddressOf(const std::string& mailbox);
// "Name <a@b>" or "a@b" with the name as EncodedHeader has it. The address stays as it is.
std::string MailboxHeader(const std::string& mailbox);
// Date, From, To, Subject, Message-ID. No text brings a line end of its own; long headers are folded.
std::vector<std::string> MessageHeaders(const std::string& from, const std::vector<std::string>& to,
                                        const std::string& subject);
// "smtp://host:port", "smtps://" for TLS from the first byte. Empty when server is no host name, IPv4 address or IPv6
// address in brackets, or port is no number: nothing else of an address may come from the settings.
std::string ServerAddress(const std::string& server, const std::string& port, bool useTls);
