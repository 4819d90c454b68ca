// Builds a security descriptor byte for byte: the self-relative form of MS-DTYP 2.4.6, its access list as 2.4.5, the
// list's entries as 2.4.4. All numbers are stored least significant byte first.
#include <algorithm>
#include <optional>

#include "system/permissions.h"

namespace {

constexpr size_t descriptorHeader = 20;  // revision, filler, control, offsets of owner, group, SACL and DACL
constexpr size_t listHeader = 8;         // revision, filler, size, number of entries, filler
constexpr size_t entryHeader = 4;        // type, flags, size
constexpr size_t sidOffset = 8;          // behind an entry's header and mask

constexpr uint16_t daclPresent = 0x4;
constexpr uint16_t daclAutoInherited = 0x400;
constexpr uint16_t daclProtected = 0x1000;
constexpr uint16_t selfRelative = 0x8000;
constexpr uint8_t inheritedEntry = 16;

uint8_t Byte(const std::string& bytes, size_t at) { return static_cast<uint8_t>(bytes[at]); }

uint32_t Number(const std::string& bytes, size_t at, size_t size) {
    uint32_t number = 0;
    for (size_t i = size; i-- > 0;) number = number << 8 | Byte(bytes, at + i);
    return number;
}

void Append(std::string& bytes, uint32_t number, size_t size) {
    for (size_t i = 0; i < size; ++i) bytes += static_cast<char>(number >> (8 * i) & 0xFF);
}

bool IsSid(const std::string& sid) {
    return sid.size() >= 8 && Byte(sid, 0) == 1 && Byte(sid, 1) <= 15 && sid.size() == 8 + size_t{4} * Byte(sid, 1);
}

// The entries of the old list, each with its header. Nothing when the descriptor is damaged.
std::optional<std::vector<std::string>> OldEntries(const std::string& descriptor) {
    std::vector<std::string> entries;
    if (descriptor.empty()) return entries;
    if (descriptor.size() < descriptorHeader) return std::nullopt;
    size_t start = Number(descriptor, 16, 4);
    if ((Number(descriptor, 2, 2) & daclPresent) == 0 || start == 0) return entries;
    if (start > descriptor.size() || descriptor.size() - start < listHeader) return std::nullopt;
    size_t listSize = Number(descriptor, start + 2, 2), count = Number(descriptor, start + 4, 2);
    if (listSize < listHeader || listSize > descriptor.size() - start) return std::nullopt;
    size_t end = start + listSize;
    for (size_t at = start + listHeader; count > 0; --count) {
        if (end - at < entryHeader) return std::nullopt;
        size_t size = Number(descriptor, at + 2, 2);
        if (size < entryHeader || size > end - at) return std::nullopt;
        entries.push_back(descriptor.substr(at, size));
        at += size;
    }
    return entries;
}

bool IsInherited(const std::string& entry) { return (Byte(entry, 1) & inheritedEntry) != 0; }

bool IsForOneOf(const std::string& entry, const std::vector<AccessEntry>& accounts) {
    return std::any_of(accounts.begin(), accounts.end(), [&](const AccessEntry& account) {
        return entry.size() >= sidOffset + account.sid.size() &&
               entry.compare(sidOffset, account.sid.size(), account.sid) == 0;
    });
}

void AppendEntries(std::string& list, const std::vector<AccessEntry>& entries, uint8_t type, uint32_t& count) {
    for (const AccessEntry& entry : entries) {
        if (entry.aceType != type) continue;
        Append(list, entry.aceType, 1);
        Append(list, entry.aceFlags, 1);
        Append(list, static_cast<uint32_t>(sidOffset + entry.sid.size()), 2);
        Append(list, entry.mask, 4);
        list += entry.sid;
        ++count;
    }
}

// The control bits that live on: the list came by inheritance, or else is protected from it.
uint16_t KeptControl(const std::string& descriptor) {
    if (descriptor.empty()) return 0;
    uint32_t control = Number(descriptor, 2, 2);
    if ((control & daclAutoInherited) != 0) return daclAutoInherited;
    return control & daclProtected;
}

}  // namespace

std::string BuildNewSecurityDescriptor(const std::string& oldDescriptor, const std::vector<AccessEntry>& entries,
                                       bool supportsInheritance) {
    constexpr uint8_t allow = 0, deny = 1;
    std::optional<std::vector<std::string>> old = OldEntries(oldDescriptor);
    if (!old) return "";
    size_t size = listHeader;
    for (const std::string& entry : *old) size += entry.size();
    for (const AccessEntry& entry : entries) {
        if (!IsSid(entry.sid)) return "";
        size += sidOffset + entry.sid.size();
    }
    if (size > UINT16_MAX) return "";

    std::string body;
    uint32_t count = 0;
    AppendEntries(body, entries, deny, count);
    auto inherited = std::find_if(old->begin(), old->end(), IsInherited);
    for (auto own = old->begin(); own != inherited; ++own) {
        if (IsForOneOf(*own, entries)) continue;
        body += *own;
        ++count;
    }
    AppendEntries(body, entries, allow, count);
    for (auto rest = inherited; rest != old->end(); ++rest, ++count) body += *rest;
    body.resize(size - listHeader);  // the room of entries left out stays free

    std::string descriptor;
    uint16_t kept = supportsInheritance ? KeptControl(oldDescriptor) : uint16_t{0};
    Append(descriptor, 1, 2);
    Append(descriptor, uint32_t{selfRelative} | daclPresent | kept, 2);
    for (uint32_t offset : {uint32_t{0}, uint32_t{0}, uint32_t{0}, uint32_t{descriptorHeader}})
        Append(descriptor, offset, 4);
    Append(descriptor, 2, 2);  // revision of the list
    Append(descriptor, static_cast<uint32_t>(size), 2);
    Append(descriptor, count, 2);
    Append(descriptor, 0, 2);
    return descriptor + body;
}
