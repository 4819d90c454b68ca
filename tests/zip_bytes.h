// Zip archives laid out by hand, for what no tool would make.
#pragma once

#include <zlib.h>

#include <string>
#include <vector>

#include "transfer/zip_format.h"

struct HandEntry {
    std::string name, bytes;
    uint16_t method = zip::methodDeflated, flags = 0;
    std::string localExtra = {}, centralExtra = {};
    int64_t sizeClaim = -1, compressedClaim = -1, offsetClaim = -1;
    int64_t crcClaim = -1;
    bool descriptor = false;  // sizes follow the data, the local header says 0
};

inline std::string RawDeflate(const std::string& bytes) {
    uLongf size = compressBound(static_cast<uLong>(bytes.size()));
    std::string stream(size, '\0');
    compress(reinterpret_cast<Bytef*>(stream.data()), &size, reinterpret_cast<const Bytef*>(bytes.data()),
             static_cast<uLong>(bytes.size()));
    return stream.substr(2, size - 6);
}

inline std::string Number(uint64_t value, int size) {
    std::string bytes;
    for (int i = 0; i < size; ++i) bytes += static_cast<char>(value >> (8 * i) & 0xFF);
    return bytes;
}

// Fields of both headers from the flags to the extra length.
inline std::string SharedFields(const HandEntry& entry, const std::string& data, bool local) {
    uint32_t crc = static_cast<uint32_t>(
        crc32(0, reinterpret_cast<const Bytef*>(entry.bytes.data()), static_cast<uInt>(entry.bytes.size())));
    bool later = local && entry.descriptor;
    auto claim = [](int64_t given, uint64_t real) { return given < 0 ? real : static_cast<uint64_t>(given); };
    return Number(20, 2) + Number(static_cast<uint64_t>(entry.flags | (entry.descriptor ? 8 : 0)), 2) +
           Number(entry.method, 2) + Number(0x6000, 2) + Number(0x5A21, 2) +
           Number(later ? 0 : claim(entry.crcClaim, crc), 4) +
           Number(later ? 0 : claim(entry.compressedClaim, data.size()), 4) +
           Number(later ? 0 : claim(entry.sizeClaim, entry.bytes.size()), 4) + Number(entry.name.size(), 2) +
           Number((local ? entry.localExtra : entry.centralExtra).size(), 2);
}

inline std::string HandZip(const std::vector<HandEntry>& entries, const std::string& comment = "") {
    std::string archive, directory;
    for (const HandEntry& entry : entries) {
        std::string data = entry.method == zip::methodDeflated ? RawDeflate(entry.bytes) : entry.bytes;
        uint64_t offset = entry.offsetClaim < 0 ? archive.size() : static_cast<uint64_t>(entry.offsetClaim);
        directory += Number(zip::centralSignature, 4) + Number(20, 2) + SharedFields(entry, data, false) +
                     std::string(2 + 2 + 2 + 4, '\0') + Number(offset, 4) + entry.name + entry.centralExtra;
        archive +=
            Number(zip::localSignature, 4) + SharedFields(entry, data, true) + entry.name + entry.localExtra + data;
        if (entry.descriptor)
            archive += Number(0x08074B50, 4) + Number(0, 4) + Number(data.size(), 4) + Number(entry.bytes.size(), 4);
    }
    zip::EndRecord end;
    end.entries = entries.size();
    end.directorySize = directory.size();
    end.directoryOffset = archive.size();
    end.comment = comment;
    return archive + directory + zip::EndOfDirectory(end);
}
