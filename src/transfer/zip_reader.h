// Reads zip archives. What an archive claims is not believed: names stay below the target folder, nothing is written
// through a link, memory is bounded by what the compressed data can give.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <new>
#include <set>
#include <string>
#include <vector>

#include "platform/files.h"
#include "transfer/zip_format.h"

// Codes of ZipError.
enum ZipErrorCode : int32_t {
    zipNotAZip = 2,
    zipNoneOpen = 3,
    zipUnsupported = 4,
    zipChecksum = 5,
    zipFileMissing = 10,
    zipTargetExists = 11,
    zipTargetKept = 12,
    zipNoFolder = 13,
    zipUnsafeName = 20,   // the name would leave the target folder
    zipDamaged = 21,      // the directory lies outside the file, entries overlap, a header is wrong
    zipTooLarge = 22,     // claims more than its data can hold, or than the disk has free
    zipThroughLink = 23,  // a folder on the way is a link
    zipWriteFailed = 24,  // the file could not be written whole; what there was is kept
    zipEncrypted = 25,
};

// Bytes whose memory may be refused: what an archive asks for is no reason to end the program.
struct ZipBuffer {
    std::unique_ptr<char[]> bytes;
    size_t size = 0;

    bool Allocate(size_t wanted) {
        bytes.reset(new (std::nothrow) char[wanted + 1]);
        size = bytes ? wanted : 0;
        return bytes != nullptr;
    }
};

// Reads an archive. Failures go to the event and to its error number.
class ZipExtractionClass {
public:
    ~ZipExtractionClass() { CloseZip(); }

    // False when there is no such file or it is no archive; an open one is closed first.
    bool OpenZip(const std::string& path);
    void CloseZip();
    // True when the directory could be walked to its end; errors of single entries do not change that.
    bool Extract(const std::string& folder, bool bKeepFolders, bool bOverwrite);
    // Inflates every entry and compares its checksum without writing. True when all are right and names are safe.
    // names takes the safe paths.
    bool Test(std::vector<std::string>& names);
    static std::string ZLibVersion();

    std::function<void(int32_t percent, bool& cancel)> Progress;
    std::function<void(const std::string& text)> Status;
    std::function<void(int32_t code, const std::string& text)> ZipError;

private:
    bool FindEndRecord();
    bool ReadEnd64(uint64_t endPosition);
    bool ReadDirectory(std::vector<zip::Entry>& entries);
    bool ClaimsAreSound(const std::vector<zip::Entry>& entries, const std::string& folder);
    void ExtractEntry(const zip::Entry& entry, const std::string& folder, bool bKeepFolders, bool bOverwrite);
    bool MakeFoldersOf(const std::string& folder, const std::string& path);
    bool ReadData(const zip::Entry& entry, const std::string& shownName, const std::string& target, ZipBuffer& data);
    bool ReadCompressed(const zip::Entry& entry, size_t before, size_t behind, ZipBuffer& buffer);
    void Replace(const std::string& target, const std::string& shownName, const ZipBuffer& data, bool exists);
    bool ReadAt(uint64_t position, void* buffer, size_t size);
    void Say(const std::string& text);
    bool Fail(int32_t code, const std::string& text);

    std::string zipPath;
    pc::File file;
    uint64_t fileSize = 0;
    zip::EndRecord end;
    std::set<std::string> soundFolders;  // made or looked at in this extraction
};
