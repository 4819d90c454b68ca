// Records of the zip format (PKWARE's APPNOTE) and the rules for names in an archive.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zip {

inline constexpr uint32_t localSignature = 0x04034B50;
inline constexpr uint32_t centralSignature = 0x02014B50;
inline constexpr uint32_t endSignature = 0x06054B50;
inline constexpr uint32_t end64Signature = 0x06064B50;
inline constexpr uint32_t end64LocatorSignature = 0x07064B50;
inline constexpr size_t localSize = 30, centralSize = 46, endSize = 22, end64LocatorSize = 20, end64Size = 56;
inline constexpr uint16_t flagEncrypted = 1;
inline constexpr uint16_t flagUtf8 = 0x800;
inline constexpr uint16_t methodStored = 0, methodDeflated = 8;

// What local and central headers share, and the central header's own fields. Texts are raw bytes.
struct Entry {
    uint16_t versionMadeBy = 20, versionNeeded = 20, flags = 2, method = methodDeflated, time = 0, date = 0;
    uint32_t crc = 0;
    uint64_t compressedSize = 0, size = 0;  // bytes; 64 bits by the extra field
    uint16_t internalAttributes = 32;       // the writer's mark; readers ignore it
    uint32_t externalAttributes = 0;
    uint64_t offset = 0;  // of the local header, from the start of the file
    std::string name, comment;
};

// The record at an archive's end, of either size.
struct EndRecord {
    uint16_t thisDisk = 0, directoryDisk = 0;
    uint64_t entries = 0, directorySize = 0, directoryOffset = 0;
    std::string comment;
};

// Little-endian numbers in a byte text; the caller has checked that they lie inside.
uint16_t Get16(std::string_view bytes, size_t offset);
uint32_t Get32(std::string_view bytes, size_t offset);
uint64_t Get64(std::string_view bytes, size_t offset);

// Records as they stand in the file.
std::string LocalHeader(const Entry& entry);    // with the name behind it
std::string CentralHeader(const Entry& entry);  // with name and comment behind it
std::string EndOfDirectory(const EndRecord& end);

// Parses the central header at position and moves position behind it; nothing when the signature is wrong or the
// record does not lie wholly inside.
std::optional<Entry> ParseCentralHeader(std::string_view directory, size_t& position);

// DOS date (day, month, year less 1980) and time (two-second steps) of a file time, in local time.
void DosDateTime(uint64_t fileTime, uint16_t& date, uint16_t& time);

// The entry's name as UTF-8 with backslashes: by its flag, otherwise in the code page of the tool that made it.
std::string EntryName(const Entry& entry);
// The name as a path that stays below any folder it is joined to: "." and doubled separators dropped. Nothing for a
// name that could leave the folder or mean a device: "..", a drive or stream colon, a leading separator, NUL and
// other characters no file name holds, reserved device names, trailing dots or blanks that the system would drop.
std::optional<std::string> SafePath(const std::string& name);

}  // namespace zip
