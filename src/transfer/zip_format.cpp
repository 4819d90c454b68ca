#include "transfer/zip_format.h"

#include <array>

#include "platform/machine.h"
#include "system/text.h"

namespace zip {

uint16_t Get16(std::string_view bytes, size_t offset) {
    auto at = [&](size_t i) { return static_cast<unsigned>(static_cast<unsigned char>(bytes[offset + i])); };
    return static_cast<uint16_t>(at(0) | at(1) << 8);
}

uint32_t Get32(std::string_view bytes, size_t offset) {
    return Get16(bytes, offset) | static_cast<uint32_t>(Get16(bytes, offset + 2)) << 16;
}

uint64_t Get64(std::string_view bytes, size_t offset) {
    return Get32(bytes, offset) | static_cast<uint64_t>(Get32(bytes, offset + 4)) << 32;
}

namespace {

class Record {
public:
    Record& Put16(uint64_t value) {
        bytes.push_back(static_cast<char>(value & 0xFF));
        bytes.push_back(static_cast<char>(value >> 8 & 0xFF));
        return *this;
    }
    Record& Put32(uint64_t value) { return Put16(value & 0xFFFF).Put16(value >> 16 & 0xFFFF); }
    // Method, time, date, checksum and sizes stand alike in both headers.
    Record& PutShared(const Entry& entry) {
        Put16(entry.versionNeeded).Put16(entry.flags).Put16(entry.method).Put16(entry.time).Put16(entry.date);
        return Put32(entry.crc).Put32(entry.compressedSize).Put32(entry.size).Put16(entry.name.size()).Put16(0);
    }
    std::string bytes;
};

// Sizes and offset beyond 32 bits stand in extra field 1, in the order in which the header says "all ones".
bool ReadExtra64(std::string_view extra, Entry& entry) {
    for (size_t at = 0; at + 4 <= extra.size();) {
        size_t length = Get16(extra, at + 2);
        if (at + 4 + length > extra.size()) return false;
        if (Get16(extra, at) == 1) {
            std::string_view field = extra.substr(at + 4, length);
            for (uint64_t* number : {&entry.size, &entry.compressedSize, &entry.offset}) {
                if (*number != 0xFFFFFFFF) continue;
                if (field.size() < 8) return false;
                *number = Get64(field, 0);
                field.remove_prefix(8);
            }
            return true;
        }
        at += 4 + length;
    }
    return true;
}

bool IsReservedDevice(std::string_view component) {
    std::string base = UpperCase(component.substr(0, component.find('.')));
    while (!base.empty() && base.back() == ' ') base.pop_back();
    static constexpr std::array<std::string_view, 6> names = {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"};
    for (std::string_view name : names)
        if (base == name) return true;
    // COM1 and LPT1 onward; the superscript digits one, two and three count as digits there.
    if (!StartsWith(base, "COM") && !StartsWith(base, "LPT")) return false;
    std::string_view tail = std::string_view(base).substr(3);
    return (tail.size() == 1 && tail[0] >= '0' && tail[0] <= '9') || tail == "\xC2\xB9" || tail == "\xC2\xB2" ||
           tail == "\xC2\xB3";
}

bool IsSafeComponent(std::string_view component) {
    if (component == ".." || component.back() == '.' || component.back() == ' ') return false;
    for (char c : component)
        if (static_cast<unsigned char>(c) < 32 || std::string_view("<>:\"|?*").find(c) != std::string_view::npos)
            return false;
    return !IsReservedDevice(component);
}

bool IsUtf8(std::string_view bytes) {
    for (size_t i = 0; i < bytes.size(); ++i) {
        auto c = static_cast<unsigned char>(bytes[i]);
        int more = c < 0x80                ? 0
                   : c >= 0xC2 && c < 0xE0 ? 1
                   : c >= 0xE0 && c < 0xF0 ? 2
                   : c >= 0xF0 && c < 0xF5 ? 3
                                           : -1;
        if (more < 0) return false;
        for (; more > 0; --more)
            if (++i >= bytes.size() || (static_cast<unsigned char>(bytes[i]) & 0xC0) != 0x80) return false;
    }
    return true;
}

}  // namespace

std::string LocalHeader(const Entry& entry) {
    return Record().Put32(localSignature).PutShared(entry).bytes + entry.name;
}

std::string CentralHeader(const Entry& entry) {
    Record record;
    record.Put32(centralSignature).Put16(entry.versionMadeBy).PutShared(entry);
    record.Put16(entry.comment.size()).Put16(0).Put16(entry.internalAttributes).Put32(entry.externalAttributes);
    record.Put32(entry.offset);
    return record.bytes + entry.name + entry.comment;
}

std::string EndOfDirectory(const EndRecord& end) {
    Record record;
    record.Put32(endSignature).Put16(end.thisDisk).Put16(end.directoryDisk).Put16(end.entries).Put16(end.entries);
    record.Put32(end.directorySize).Put32(end.directoryOffset).Put16(end.comment.size());
    return record.bytes + end.comment;
}

std::optional<Entry> ParseCentralHeader(std::string_view directory, size_t& position) {
    if (position > directory.size() || directory.size() - position < centralSize) return {};
    std::string_view header = directory.substr(position);
    if (Get32(header, 0) != centralSignature) return {};
    size_t nameLength = Get16(header, 28), extraLength = Get16(header, 30), commentLength = Get16(header, 32);
    size_t whole = centralSize + nameLength + extraLength + commentLength;
    if (header.size() < whole) return {};
    Entry entry;
    entry.versionMadeBy = Get16(header, 4);
    entry.versionNeeded = Get16(header, 6);
    entry.flags = Get16(header, 8);
    entry.method = Get16(header, 10);
    entry.time = Get16(header, 12);
    entry.date = Get16(header, 14);
    entry.crc = Get32(header, 16);
    entry.compressedSize = Get32(header, 20);
    entry.size = Get32(header, 24);
    entry.internalAttributes = Get16(header, 36);
    entry.externalAttributes = Get32(header, 38);
    entry.offset = Get32(header, 42);
    entry.name = header.substr(centralSize, nameLength);
    entry.comment = header.substr(centralSize + nameLength + extraLength, commentLength);
    if (!ReadExtra64(header.substr(centralSize + nameLength, extraLength), entry)) return {};
    position += whole;
    return entry;
}

void DosDateTime(uint64_t fileTime, uint16_t& date, uint16_t& time) {
    pc::ClockTime local = pc::LocalFromFileTime(fileTime);
    int year = local.year < 1980 ? 1980 : local.year > 2107 ? 2107 : local.year;
    date = static_cast<uint16_t>(local.day | local.month << 5 | (year - 1980) << 9);
    time = static_cast<uint16_t>(local.second / 2 | local.minute << 5 | local.hour << 11);
}

std::string EntryName(const Entry& entry) {
    // Unix tools (host 3) and Mac OS X (host 19) store UTF-8 without saying so; DOS and Windows tools the OEM code
    // page.
    int host = entry.versionMadeBy >> 8;
    bool utf8 = (entry.flags & flagUtf8) != 0 || ((host == 3 || host == 19) && IsUtf8(entry.name));
    return ReplaceAll(utf8 ? entry.name : pc::FromOem(entry.name), "/", "\\");
}

std::optional<std::string> SafePath(const std::string& name) {
    if (name.empty() || name[0] == '\\' || name[0] == '/') return {};
    std::string path;
    for (const std::string& component : Split(ReplaceAll(name, "/", "\\"), '\\')) {
        if (component.empty() || component == ".") continue;
        if (!IsSafeComponent(component)) return {};
        if (!path.empty()) path += '\\';
        path += component;
    }
    if (path.empty()) return {};
    return path;
}

}  // namespace zip
