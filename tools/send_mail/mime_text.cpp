#include "mime_text.h"

#include "platform/machine.h"
#include "platform/processes.h"
#include "system/text.h"

namespace {

// Base64 of RFC 4648.
std::string Base64(const std::string& bytes) {
    constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (size_t i = 0; i < bytes.size(); i += 3) {
        uint32_t group = 0;
        for (size_t k = 0; k < 3; ++k)
            group = group << 8 | (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0u);
        for (size_t k = 0; k < 4; ++k) text += i + k <= bytes.size() ? digits[group >> (18 - 6 * k) & 63] : '=';
    }
    return text;
}

std::string OneLine(const std::string& text) { return ReplaceAll(ReplaceAll(text, "\r", ""), "\n", " "); }

std::string Two(int number) { return (number < 10 ? "0" : "") + NumberText(number); }

// UTC would need the zone; "-0000" says that the time is local and the zone not told.
std::string DateHeader() {
    constexpr const char* days[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    constexpr const char* months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    pc::ClockTime now = pc::LocalNow();
    return std::string("Date: ") + days[now.dayOfWeek] + ", " + NumberText(now.day) + " " + months[now.month - 1] +
           " " + NumberText(now.year) + " " + Two(now.hour) + ":" + Two(now.minute) + ":" + Two(now.second) + " -0000";
}

std::string MessageId() {
    pc::ClockTime now = pc::LocalNow();
    return "Message-ID: <" + NumberText(now.year) + Two(now.month) + Two(now.day) + Two(now.hour) + Two(now.minute) +
           Two(now.second) + "." + NumberText(pc::OwnProcessId()) + "." + NumberText(pc::TickCount()) +
           "@brevanta.invalid>";
}

}  // namespace

std::string EncodedHeader(const std::string& given) {
    // Longest line that stays as it is; a message may have none over 998 (RFC 5322).
    constexpr size_t longestPlain = 800;
    std::string text = OneLine(given), encoded;
    bool plain = text.size() <= longestPlain && text.find("=?") == std::string::npos;
    for (char c : text) plain = plain && c >= 32 && c < 127;
    if (plain) return text;
    // An encoded word has at most 75 characters; 42 bytes make 56 digits, and letters are not cut apart.
    while (!text.empty()) {
        size_t take = std::min<size_t>(42, text.size());
        while (take < text.size() && take > 1 && (static_cast<unsigned char>(text[take]) & 0xC0) == 0x80) --take;
        encoded += (encoded.empty() ? "" : " ") + ("=?UTF-8?B?" + Base64(text.substr(0, take))) + "?=";
        text.erase(0, take);
    }
    return encoded;
}

std::string AddressOf(const std::string& mailbox) {
    std::string text = OneLine(mailbox);
    size_t open = text.rfind('<'), close = text.rfind('>');
    if (open != std::string::npos && close != std::string::npos && open < close)
        return text.substr(open, close - open + 1);
    return "<" + Trim(text) + ">";
}

std::string MailboxHeader(const std::string& mailbox) {
    std::string text = Trim(OneLine(mailbox)), address = AddressOf(text);
    // An address alone, without name or brackets.
    if (address == "<" + text + ">") return text;
    std::string name = Trim(text.substr(0, text.rfind('<')));
    std::string encoded = EncodedHeader(name);
    if (encoded != name && name.size() > 1 && name.front() == '"' && name.back() == '"')
        encoded = EncodedHeader(name.substr(1, name.size() - 2));  // the quotes are no part of the name
    return encoded + (encoded.empty() ? "" : " ") + address;
}

std::string ServerAddress(const std::string& server, const std::string& port, bool useTls) {
    auto only = [](const std::string& text, const char* allowed) {
        return !text.empty() && text.find_first_not_of(allowed) == std::string::npos;
    };
    std::string host = Trim(server);
    bool literal = host.size() > 2 && host.front() == '[' && host.back() == ']';
    if (literal ? !only(host.substr(1, host.size() - 2), "0123456789abcdefABCDEF:.")
                : !only(LowerCase(host), "abcdefghijklmnopqrstuvwxyz0123456789.-_"))
        return "";
    if (!only(port, "0123456789") || port.size() > 5) return "";
    // Port 465 speaks TLS from the first byte; on any other port it begins with STARTTLS.
    return (useTls && port == "465" ? "smtps://" : "smtp://") + host + ":" + port;
}

std::vector<std::string> MessageHeaders(const std::string& from, const std::vector<std::string>& to,
                                        const std::string& subject) {
    std::string receivers;
    for (const std::string& receiver : to) receivers += (receivers.empty() ? "" : ",\r\n ") + MailboxHeader(receiver);
    std::vector<std::string> headers = {DateHeader(), "From: " + MailboxHeader(from), "To: " + receivers,
                                        "Subject: " + EncodedHeader(subject), MessageId()};
    for (std::string& header : headers) header = ReplaceAll(header, "?= =?", "?=\r\n =?");
    return headers;
}
