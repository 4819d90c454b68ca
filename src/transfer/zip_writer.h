// Writes zip archives: every entry is read and deflated when added, the file is laid out at the end.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "transfer/zip_format.h"

// One entry with its deflated data.
struct ZipFile {
    zip::Entry header;
    std::string data;
};

// Makes an archive in memory and writes it.
class ZipClass {
public:
    size_t FileCount() const { return files.size(); }
    void Comment(const std::string& text) { comment = text; }
    // Empty nameInZip: the last component of path. Names go into the archive with forward slashes.
    // False when the file is missing or unreadable, over 2 GB, or the archive holds 65,535 entries.
    bool AddFile(const std::string& path, const std::string& nameInZip, const std::string& entryComment);
    // False when the file is there and bOverwrite is not set, or it could not be written whole (nothing is left then).
    bool WriteZip(const std::string& path, bool bOverwrite);

private:
    std::vector<ZipFile> files;
    std::string comment;
};
