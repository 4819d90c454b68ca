// Environment, folders, versions, accounts, resources, trace, code pages.
#include "platform/machine.h"

#include "pc/names.h"
#include "pc/simulated_disk.h"

namespace {

// What code pages 1252 (from 0x80 to 0x9F; above it is Latin-1) and 437 (from 0x80) hold.
constexpr uint16_t ansi[] = {0x20AC, 0x81,   0x201A, 0x192,  0x201E, 0x2026, 0x2020, 0x2021, 0x2C6,  0x2030, 0x160,
                             0x2039, 0x152,  0x8D,   0x17D,  0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
                             0x2013, 0x2014, 0x2DC,  0x2122, 0x161,  0x203A, 0x153,  0x9D,   0x17E,  0x178};
constexpr char16_t oem[] =
    u"ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜ¢£¥₧ƒáíóúñÑªº¿⌐¬½¼¡«»░▒▓│┤╡╢╖╕╣║╗╝╜╛┐└┴┬├─┼╞╟╚╔╩╦╠═╬╧╨╤╥╙╘╒╓╫╪┘┌█▄▌▐▀"
    u"αßΓπΣσµτΦΘΩδ∞φε∩≡±≥≤⌠⌡÷≈°∙·√ⁿ²■\u00A0";

void Append(std::string& out, uint32_t point) {
    if (point < 0x80) {
        out += static_cast<char>(point);
    } else if (point < 0x800) {
        out += static_cast<char>(0xC0 | point >> 6);
        out += static_cast<char>(0x80 | (point & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | point >> 12);
        out += static_cast<char>(0x80 | (point >> 6 & 0x3F));
        out += static_cast<char>(0x80 | (point & 0x3F));
    }
}

uint32_t PointOf(unsigned char byte) { return byte >= 0x80 && byte < 0xA0 ? ansi[byte - 0x80] : byte; }

}  // namespace

std::string SidBytes(const std::string& text) {
    std::vector<std::string> parts = Pieces(text, '-');
    if (parts.size() < 3 || !SameName(parts[0], "S")) return "";
    std::string bytes = {static_cast<char>(std::stoi(parts[1])), static_cast<char>(parts.size() - 3), 0, 0, 0, 0, 0};
    bytes += static_cast<char>(std::stoi(parts[2]));
    for (size_t i = 3; i < parts.size(); ++i) {
        auto number = static_cast<uint32_t>(std::stoul(parts[i]));
        for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(number >> shift);
    }
    return bytes;
}

std::string SidText(const std::string& bytes) {
    if (bytes.size() < 8 || bytes.size() < 8u + 4u * static_cast<unsigned char>(bytes[1])) return "";
    std::string text =
        "S-" + Decimal(static_cast<unsigned char>(bytes[0])) + "-" + Decimal(static_cast<unsigned char>(bytes[7]));
    for (size_t i = 0; i < static_cast<unsigned char>(bytes[1]); ++i) {
        uint32_t number = 0;
        for (size_t k = 4; k-- > 0;) number = number << 8 | static_cast<unsigned char>(bytes[8 + 4 * i + k]);
        text += "-" + Decimal(number);
    }
    return text;
}

std::string SimulatedPc::Env(const std::string& name) const {
    auto found = environment.find(Fold(name));
    return found == environment.end() ? "" : found->second;
}

void SimulatedPc::SetEnv(const std::string& name, const std::string& value) {
    if (value.empty())
        environment.erase(Fold(name));
    else
        environment[Fold(name)] = value;
}

void SimulatedPc::AddAccount(const std::string& name, const std::string& sid) { accounts[Fold(name)] = {name, sid}; }
std::string SimulatedPc::UserSid() const { return accounts.at("CLIENT").second; }

void SimulatedPc::AddResource(const std::string& type, const std::string& name, const std::string& bytes) {
    resources[Fold(type + "\\" + name)] = bytes;
}

namespace pc {

std::string Environment(const std::string& name) { return Pc().Env(name); }
std::string WindowsFolder() { return "C:\\Windows"; }
std::string SystemFolder() { return "C:\\Windows\\System32"; }

std::string SpecialFolder(int csidl) {
    auto found = Pc().specialFolders.find(csidl & 0xFF);
    return found == Pc().specialFolders.end() ? "" : found->second;
}

std::string ProgramPath() { return Pc().programPath; }
std::string CommandLine() { return Pc().commandLine; }
OsVersion GetOsVersion() { return Pc().version; }
uint32_t ProductSku(uint32_t major, uint32_t) { return major >= 6 ? Pc().sku : 0; }
uint64_t TotalMemory() { return Pc().memory; }

uint32_t LookupAccount(const std::string& name, std::string& sid, std::string& domain) {
    Pc().Begin();
    sid.clear();
    domain.clear();
    if (Pc().Fails(1332)) return 1332;
    size_t slash = name.find('\\');
    auto found = Pc().accounts.find(Fold(slash == std::string::npos ? name : name.substr(slash + 1)));
    if (found == Pc().accounts.end()) return 1332;
    const std::string& text = found->second.second;
    sid = SidBytes(text);
    domain = text.starts_with("S-1-5-21")   ? Pc().Env("computername")
             : text.starts_with("S-1-5-32") ? "BUILTIN"
             : text == "S-1-1-0"            ? ""
                                            : "NT AUTHORITY";
    return 0;
}

uint32_t SetAccountPassword(const std::string& user, const std::string& password) {
    Pc().Begin();
    auto found = Pc().accounts.find(Fold(user));
    if (found == Pc().accounts.end() || !found->second.second.starts_with("S-1-5-21")) return 2221;
    if (Pc().ChangeFails(2245)) return 2245;
    Pc().passwords[found->second.first] = password;
    Pc().Note("password " + found->second.first);
    return 0;
}

std::optional<std::string> LoadProgramResource(const std::string& type, const std::string& name) {
    auto found = Pc().resources.find(Fold(type + "\\" + name));
    if (found == Pc().resources.end()) return {};
    return found->second;
}

std::string ProductName() { return Pc().productName; }
ProgramVersion GetProgramVersion() { return Pc().programVersion; }
void DebugLine(const std::string& line) { Pc().trace.push_back(line); }

std::string FromAnsi(const std::string& bytes) {
    std::string text;
    for (char byte : bytes) Append(text, PointOf(static_cast<unsigned char>(byte)));
    return text;
}

std::string FromOem(const std::string& bytes) {
    std::string text;
    for (char byte : bytes) {
        auto code = static_cast<unsigned char>(byte);
        Append(text, code < 0x80 ? code : oem[code - 0x80]);
    }
    return text;
}

std::string ToAnsi(const std::string& utf8) {
    std::string bytes;
    for (size_t i = 0; i < utf8.size();) {
        size_t end = i + 1;
        while (end < utf8.size() && (static_cast<unsigned char>(utf8[end]) & 0xC0) == 0x80) ++end;
        std::string character = utf8.substr(i, end - i), made;
        if (static_cast<unsigned char>(character[0]) < 0x80) made = character;
        for (int code = 0x80; code < 256 && made.empty(); ++code)
            if (FromAnsi(std::string(1, static_cast<char>(code))) == character) made = static_cast<char>(code);
        // A character beyond the sixteen bits counts as two.
        bytes += !made.empty() ? made : std::string(character.size() == 4 ? 2 : 1, '?');
        i = end;
    }
    return bytes;
}

}  // namespace pc
