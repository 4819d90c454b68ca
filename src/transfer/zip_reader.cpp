#include "transfer/zip_reader.h"

#include <zlib.h>

#include <algorithm>

#include "system/paths.h"
#include "system/processes.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

// Deflate cannot give more than 1032 bytes for one (RFC 1951: 258 bytes for two bits at best).
constexpr uint64_t maxDeflateRatio = 1032;

// A directory larger than this is damage; ordinary ones take some hundred bytes an entry.
constexpr uint64_t maxDirectorySize = 256u << 20;

bool IsOrdinary(uint64_t size) { return size <= 0x7FFFFFFF; }

uint32_t Checksum(const ZipBuffer& data) {
    return static_cast<uint32_t>(
        crc32(0, reinterpret_cast<const Bytef*>(data.bytes.get()), static_cast<uInt>(data.size)));
}

}  // namespace

void ZipExtractionClass::Say(const std::string& text) {
    if (Status) Status(text);
}

bool ZipExtractionClass::Fail(int32_t code, const std::string& text) {
    if (ZipError) ZipError(code, text);
    return false;
}

std::string ZipExtractionClass::ZLibVersion() {
    const char* version = zlibVersion();
    return version ? version : "";
}

bool ZipExtractionClass::ReadAt(uint64_t position, void* buffer, size_t size) {
    if (position > fileSize || fileSize - position < size || !file.Seek(position)) return false;
    auto count = file.Read(buffer, size);
    return count && *count == size;
}

bool ZipExtractionClass::OpenZip(const std::string& path) {
    Say("Opening Zip");
    CloseZip();
    if (!DoesFileExist(path)) return Fail(zipFileMissing, "The file " + path + " doesn't exist");
    RedirectionOff redirection;
    zipPath = path;
    if (file.Open(path, pc::FileMode::read)) fileSize = file.Size();
    if (!file.IsOpen() || !FindEndRecord()) {
        file.Close();
        return Fail(zipNotAZip, "The file " + path + " is not a Zip file");
    }
    Say("Zip Opened");
    return true;
}

void ZipExtractionClass::CloseZip() {
    if (!file.IsOpen()) return;
    file.Close();
    Say("Zip Closed");
}

// Scans backwards for the end record; the match nearest the end of the file wins.
bool ZipExtractionClass::FindEndRecord() {
    constexpr size_t chunk = 64 * 1024;
    std::string bytes;
    for (uint64_t top = fileSize; top >= 4;) {
        uint64_t start = top > chunk ? top - chunk : 0;
        // Three bytes more, so that a signature across the border is seen.
        auto size = static_cast<size_t>(std::min<uint64_t>(top + 3, fileSize) - start);
        bytes.resize(size);
        if (!ReadAt(start, bytes.data(), size)) return false;
        size_t at = bytes.rfind("PK\x05\x06");
        if (at != std::string::npos) {
            uint64_t position = start + at;
            char record[zip::endSize];
            if (!ReadAt(position, record, sizeof record)) return false;
            std::string_view view(record, zip::endSize);
            end = {zip::Get16(view, 4),  zip::Get16(view, 6),  zip::Get16(view, 10),
                   zip::Get32(view, 12), zip::Get32(view, 16), ""};
            auto commentSize =
                static_cast<size_t>(std::min<uint64_t>(zip::Get16(view, 20), fileSize - position - zip::endSize));
            end.comment.resize(commentSize);
            return ReadAt(position + zip::endSize, end.comment.data(), commentSize) && ReadEnd64(position);
        }
        if (start == 0) break;
        top = start;
    }
    return false;
}

// Counts and offset beyond the old record's fields stand in a record of their own, found through its locator.
bool ZipExtractionClass::ReadEnd64(uint64_t endPosition) {
    if (end.entries != 0xFFFF && end.directorySize != 0xFFFFFFFF && end.directoryOffset != 0xFFFFFFFF) return true;
    if (endPosition < zip::end64LocatorSize) return true;
    char bytes[zip::end64Size];
    std::string_view view(bytes, sizeof bytes);
    if (!ReadAt(endPosition - zip::end64LocatorSize, bytes, zip::end64LocatorSize)) return false;
    if (zip::Get32(view, 0) != zip::end64LocatorSignature) return true;
    if (!ReadAt(zip::Get64(view, 8), bytes, sizeof bytes) || zip::Get32(view, 0) != zip::end64Signature) return true;
    end.entries = zip::Get64(view, 32);
    end.directorySize = zip::Get64(view, 40);
    end.directoryOffset = zip::Get64(view, 48);
    return true;
}

bool ZipExtractionClass::ReadDirectory(std::vector<zip::Entry>& entries) {
    if (end.directoryOffset > fileSize || end.directorySize > fileSize - end.directoryOffset ||
        end.directorySize > maxDirectorySize)
        return Fail(zipDamaged, "The directory lies outside the file " + zipPath);
    std::string directory(static_cast<size_t>(end.directorySize), '\0');
    if (!ReadAt(end.directoryOffset, directory.data(), directory.size()))
        return Fail(zipDamaged, "The directory of " + zipPath + " can't be read");
    size_t position = 0;
    for (uint64_t i = 0; i < end.entries; ++i) {
        auto entry = zip::ParseCentralHeader(directory, position);
        if (!entry) return Fail(zipDamaged, "The directory of " + zipPath + " is damaged");
        entries.push_back(std::move(*entry));
    }
    return true;
}

bool ZipExtractionClass::ClaimsAreSound(const std::vector<zip::Entry>& entries, const std::string& folder) {
    std::vector<std::pair<uint64_t, uint64_t>> ranges;
    double total = 0;
    for (const zip::Entry& entry : entries) {
        uint64_t head = zip::localSize + entry.name.size();
        if (entry.offset > fileSize || entry.compressedSize > fileSize || head > fileSize ||
            entry.offset + head + entry.compressedSize > fileSize)
            return Fail(zipDamaged, "An entry lies outside the file " + zipPath);
        ranges.emplace_back(entry.offset, entry.offset + head + entry.compressedSize);
        total += static_cast<double>(entry.size);
    }
    std::sort(ranges.begin(), ranges.end());
    for (size_t i = 1; i < ranges.size(); ++i)
        if (ranges[i].first < ranges[i - 1].second) return Fail(zipDamaged, "Entries of " + zipPath + " overlap");
    if (folder.empty()) return true;
    auto space = pc::GetDiskSpace(folder);
    if (space && total > space->available)
        return Fail(zipTooLarge, "The file " + zipPath + " claims more than the disk has free");
    return true;
}

bool ZipExtractionClass::Extract(const std::string& folderGiven, bool bKeepFolders, bool bOverwrite) {
    Say("Extracting Files");
    if (!file.IsOpen()) return Fail(zipNoneOpen, "There is no Zip File Open");
    RedirectionOff redirection;
    std::string folder = StripTrailingCharacters(folderGiven, '\\');
    if (!DoesDirExistNoDebug(folder) && !MakeFolderPath(folder))
        return Fail(zipNoFolder, "Can't create the folder " + folder);
    if (end.thisDisk != end.directoryDisk) {
        Say("Extraction Complete");
        return false;
    }
    std::vector<zip::Entry> entries;
    if (!ReadDirectory(entries) || !ClaimsAreSound(entries, folder)) return false;
    soundFolders.clear();
    for (size_t i = 0; i < entries.size(); ++i) {
        if (entries[i].size >= 1) ExtractEntry(entries[i], folder, bKeepFolders, bOverwrite);
        DoEventsNowAndThen();
        bool cancel = false;
        if (Progress) Progress(static_cast<int32_t>((i + 1) * 100 / entries.size()), cancel);
        if (cancel) return false;
    }
    Say("Extraction Complete");
    return true;
}

void ZipExtractionClass::ExtractEntry(const zip::Entry& entry, const std::string& folder, bool bKeepFolders,
                                      bool bOverwrite) {
    std::string name = zip::EntryName(entry);
    if (!bKeepFolders) name = StripPath(name);
    auto path = zip::SafePath(name);
    if (!path) {
        Fail(zipUnsafeName, "The name " + name + " would leave the folder " + folder);
        return;
    }
    if (!MakeFoldersOf(folder, *path)) return;
    Say("Extracting ...\\" + *path);
    std::string target = folder + "\\" + *path;
    auto present = pc::GetFileInfo(target);
    if (present && !bOverwrite) {
        Fail(zipTargetExists, "The file " + target + " already exists");
        return;
    }
    if (present && present->IsFolder() && !present->IsLink()) {
        Fail(zipTargetKept, "Can't remove the file " + target);
        return;
    }
    ZipBuffer data;
    if (ReadData(entry, *path, target, data)) Replace(target, *path, data, present.has_value());
}

// Makes the folders of the path one level at a time; a level that is a link is refused.
bool ZipExtractionClass::MakeFoldersOf(const std::string& folder, const std::string& path) {
    for (size_t cut = path.find('\\'); cut != std::string::npos; cut = path.find('\\', cut + 1)) {
        std::string level = path.substr(0, cut);
        if (!soundFolders.insert(LowerCase(level)).second) continue;
        std::string full = folder + "\\" + level;
        auto present = pc::GetFileInfo(full);
        if (present && present->IsLink()) {
            soundFolders.erase(LowerCase(level));
            return Fail(zipThroughLink, "The folder " + full + " is a link");
        }
        if (!present) pc::MakeFolder(full);
    }
    return true;
}

// The entry's data, checked as its method allows. Before anything on disk is touched.
bool ZipExtractionClass::ReadData(const zip::Entry& entry, const std::string& shownName, const std::string& target,
                                  ZipBuffer& data) {
    if (entry.flags & zip::flagEncrypted) return Fail(zipEncrypted, "The entry " + shownName + " is encrypted");
    if (entry.method == zip::methodStored) return ReadCompressed(entry, 0, 0, data);
    if (entry.method != zip::methodDeflated)
        return Fail(zipUnsupported, "The compression Method for " + shownName + " is unsupported");
    // A zlib stream is wanted: two header bytes in front and, for the missing trailer, one zero behind.
    ZipBuffer stream;
    if (entry.size > (entry.compressedSize + 1) * maxDeflateRatio || !IsOrdinary(entry.size) ||
        !data.Allocate(static_cast<size_t>(entry.size)))
        return Fail(zipTooLarge, "The entry " + shownName + " claims more than its data can hold");
    if (!ReadCompressed(entry, 2, 1, stream)) return false;
    stream.bytes[0] = '\x78';
    stream.bytes[1] = '\x9C';
    auto size = static_cast<uLongf>(data.size);
    // No checksum of its own closes the stream, so the result code says nothing; the archive's checksum judges.
    uncompress(reinterpret_cast<Bytef*>(data.bytes.get()), &size, reinterpret_cast<const Bytef*>(stream.bytes.get()),
               static_cast<uLong>(stream.size));
    if (size != data.size || Checksum(data) != entry.crc) return Fail(zipChecksum, "Data checksum error in " + target);
    return true;
}

// The compressed bytes with room before and a zeroed room behind. False when the local header is not one.
bool ZipExtractionClass::ReadCompressed(const zip::Entry& entry, size_t before, size_t behind, ZipBuffer& buffer) {
    char header[zip::localSize];
    std::string_view view(header, sizeof header);
    if (!ReadAt(entry.offset, header, sizeof header) || zip::Get32(view, 0) != zip::localSignature)
        return Fail(zipDamaged, "An entry of " + zipPath + " has no header");
    uint64_t start = entry.offset + zip::localSize + zip::Get16(view, 26) + zip::Get16(view, 28);
    if (!IsOrdinary(entry.compressedSize) || start > fileSize || entry.compressedSize > fileSize - start)
        return Fail(zipDamaged, "An entry lies outside the file " + zipPath);
    auto size = static_cast<size_t>(entry.compressedSize);
    if (!buffer.Allocate(before + size + behind)) return Fail(zipTooLarge, "No memory for an entry of " + zipPath);
    std::fill_n(buffer.bytes.get() + before + size, behind, '\0');
    return ReadAt(start, buffer.bytes.get() + before, size) ||
           Fail(zipDamaged, "The file " + zipPath + " can't be read");
}

// A file gets its name only once all bytes are on the disk: a full disk or a pulled plug leaves no half of it, and what
// was there stays until then.
void ZipExtractionClass::Replace(const std::string& target, const std::string& shownName, const ZipBuffer& data,
                                 bool exists) {
    std::string written = target + ".unzip";
    pc::File out;
    bool opened = out.Open(written, pc::FileMode::createNew);
    // Left over from a run that was cut off.
    if (!opened && pc::RemoveFile(written)) opened = out.Open(written, pc::FileMode::createNew);
    bool whole = opened && out.Write(data.bytes.get(), data.size);
    out.Close();
    if (whole && pc::MovePath(written, target, true)) return;
    if (whole && exists) {
        pc::ChangeAttributes(target, pc::attributeNormal);  // a read-only file refuses to be replaced
        if (pc::MovePath(written, target, true)) return;
    }
    pc::RemoveFile(written);
    Fail(whole ? zipTargetKept : zipWriteFailed,
         (whole ? "Can't remove the file " : "Can't write the file ") + (whole ? target : shownName));
}

bool ZipExtractionClass::Test(std::vector<std::string>& names) {
    std::vector<zip::Entry> entries;
    if (!file.IsOpen() || end.thisDisk != end.directoryDisk || !ReadDirectory(entries) || !ClaimsAreSound(entries, ""))
        return false;
    for (const zip::Entry& entry : entries) {
        auto path = zip::SafePath(zip::EntryName(entry));
        if (!path) return Fail(zipUnsafeName, "The name " + zip::EntryName(entry) + " is not safe");
        if (entry.size < 1) continue;
        ZipBuffer data;
        if (!ReadData(entry, *path, *path, data)) return false;
        if (Checksum(data) != entry.crc) return Fail(zipChecksum, "Data checksum error in " + *path);
        names.push_back(*path);
    }
    return true;
}
