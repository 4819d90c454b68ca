#include "transfer/zip_writer.h"

#include <zlib.h>

#include <algorithm>

#include "platform/files.h"
#include "system/paths.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

constexpr uint64_t largestFile = 0x7FFFFFFF;
constexpr size_t mostEntries = 0xFFFF;

bool IsAscii(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// Deflates through a zlib stream, whose two header bytes and four checksum bytes are left out.
bool Deflate(const std::string& bytes, std::string& deflated) {
    auto size = std::max<uLongf>(compressBound(static_cast<uLong>(bytes.size())),
                                 static_cast<uLongf>(static_cast<double>(bytes.size()) * 1.01) + 12);
    auto stream = std::make_unique_for_overwrite<Bytef[]>(size);
    if (compress(stream.get(), &size, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uLong>(bytes.size())) !=
        Z_OK)
        return false;
    deflated.assign(reinterpret_cast<char*>(stream.get()) + 2, size - 6);
    return true;
}

}  // namespace

bool ZipClass::AddFile(const std::string& path, const std::string& nameInZip, const std::string& entryComment) {
    if (files.size() >= mostEntries || !DoesFileExist(path)) return false;
    RedirectionOff redirection;
    auto info = pc::GetFileInfo(path);
    auto bytes = pc::ReadWholeFile(path, largestFile);
    if (!info || !bytes) return false;
    ZipFile file;
    zip::Entry& header = file.header;
    zip::DosDateTime(info->modified, header.date, header.time);
    header.name = ReplaceAll(nameInZip.empty() ? StripPath(path) : nameInZip, "\\", "/");
    if (!IsAscii(header.name)) header.flags |= zip::flagUtf8;
    header.comment = entryComment.substr(0, 0xFFFF);
    header.size = bytes->size();
    header.crc = static_cast<uint32_t>(
        crc32(0, reinterpret_cast<const Bytef*>(bytes->data()), static_cast<uInt>(bytes->size())));
    if (header.name.size() > 0xFFFF || !Deflate(*bytes, file.data)) return false;
    header.compressedSize = file.data.size();
    files.push_back(std::move(file));
    return true;
}

bool ZipClass::WriteZip(const std::string& path, bool bOverwrite) {
    RedirectionOff redirection;
    if (DoesFileExist(path)) {
        if (!bOverwrite) return false;
        pc::RemoveFile(path);
    }
    pc::File out;
    if (!out.Open(path, pc::FileMode::write)) return false;
    uint64_t position = 0;
    bool whole = true;
    auto put = [&](const std::string& bytes) {
        whole = whole && out.Write(bytes.data(), bytes.size());
        position += bytes.size();
    };
    for (ZipFile& file : files) {
        file.header.offset = position;
        put(zip::LocalHeader(file.header));
        put(file.data);
    }
    zip::EndRecord end;
    end.directoryOffset = position;
    end.entries = files.size();
    end.comment = comment.substr(0, 0xFFFF);
    std::string directory;
    for (const ZipFile& file : files) directory += zip::CentralHeader(file.header);
    put(directory);
    end.directorySize = directory.size();
    put(zip::EndOfDirectory(end));
    out.Close();
    // Offsets are 32-bit numbers.
    if (whole && position <= 0xFFFFFFFF) return true;
    pc::RemoveFile(path);
    return false;
}
