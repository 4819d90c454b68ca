#include "system/resources.h"

#include <zlib.h>

#include "platform/files.h"
#include "platform/machine.h"
#include "system/trace.h"

namespace {

// The build carries programs deflated: "DEFL", the size in four bytes, a zlib stream.
std::string Inflated(std::string bytes) {
    if (bytes.size() < 8 || bytes.compare(0, 4, "DEFL") != 0) return bytes;
    uLongf size = 0;
    for (size_t i = 7; i >= 4; --i) size = size << 8 | static_cast<unsigned char>(bytes[i]);
    std::string whole(size, '\0');
    if (uncompress(reinterpret_cast<Bytef*>(whole.data()), &size, reinterpret_cast<const Bytef*>(bytes.data()) + 8,
                   static_cast<uLong>(bytes.size() - 8)) != Z_OK)
        return "";
    return whole;
}

}  // namespace

bool ExtractResource(const std::string& name, const std::string& path) {
    if (DoesFileExist(path) || pc::CanOpenFile(path)) return true;
    auto bytes = pc::LoadProgramResource("CUSTOM", name);
    if (!bytes) return false;
    if (pc::WriteWholeFile(path, Inflated(std::move(*bytes)))) return true;
    pc::RemoveFile(path);
    return false;
}

bool RefreshResource(const std::string& name, const std::string& path) {
    auto carried = pc::LoadProgramResource("CUSTOM", name);
    if (!carried) return false;
    std::string bytes = Inflated(std::move(*carried));
    auto present = pc::ReadWholeFile(path);
    return (present && *present == bytes) || pc::WriteWholeFile(path, bytes);
}
