// Open files.
#include <algorithm>
#include <cstring>

#include "pc/names.h"
#include "pc/simulated_disk.h"

namespace {

uintptr_t nextHandle = 0x104;

OpenFile* Opened(uintptr_t handle) {
    auto found = TheDisk().open.find(handle);
    return found == TheDisk().open.end() ? nullptr : &found->second;
}

// The code with which opening is refused, or 0.
uint32_t RefusedOpening(const Place& place, pc::FileMode mode) {
    if (mode == pc::FileMode::read && !place.node) return place.error;
    if (mode == pc::FileMode::createNew && place.node) return 80;
    if (!place.node) return RefusedChange(place);
    const FileNode& node = *place.node;
    if (node.IsFolder() || node.denied) return 5;
    if (node.locked || node.writers) return 32;
    if (mode == pc::FileMode::read) return 0;
    if (node.attributes & pc::attributeReadOnly) return 5;
    // A file cannot be made anew as an ordinary one in the place of a hidden or system file.
    if (mode == pc::FileMode::write && (node.attributes & (pc::attributeHidden | pc::attributeSystem))) return 5;
    if (node.readers || node.images) return 32;
    return RefusedChange(place);
}

// Where a new file comes when the last part is a link into nothing.
Place ForWriting(const std::string& path, pc::FileMode mode) { return Resolve(path, mode != pc::FileMode::createNew); }

}  // namespace

namespace pc {

File& File::operator=(File&& other) noexcept {
    if (this != &other) {
        Close();
        handle = other.handle;
        other.handle = none;
    }
    return *this;
}

bool File::Open(const std::string& path, FileMode mode) {
    Close();
    Pc().Begin();
    Place place = ForWriting(path, mode);
    bool sink = place.device && Fold(LastPart(path)).starts_with("NUL");
    uint32_t code = sink ? 0 : RefusedOpening(place, mode);
    if (code) return Pc().Refuse(code);
    bool changes = !sink && mode != FileMode::read && (!place.node || mode == FileMode::write);
    if (changes ? Pc().ChangeFails(5) : Pc().Fails(32)) return false;
    OpenFile file;
    file.path = place.path;
    file.reads = mode != FileMode::write && mode != FileMode::append;
    file.writes = mode != FileMode::read;
    file.appends = mode == FileMode::append;
    file.changed = changes;
    if (!sink) {
        file.node = place.node ? place.node : AddNode(place, attributeArchive);
        if (mode == FileMode::write) file.node->bytes.clear();
        if (file.appends) file.position = file.node->bytes.size();
        ++(file.writes ? file.node->writers : file.node->readers);
    }
    handle = nextHandle += 4;
    TheDisk().open[handle] = file;
    return true;
}

std::optional<size_t> File::Read(void* buffer, size_t size) {
    OpenFile* file = Opened(handle);
    if (!file || !file->reads) {
        Pc().Refuse(file ? 5 : 6);
        return {};
    }
    if (Pc().Fails(1117)) return {};
    size_t left = file->node && file->position < file->node->bytes.size()
                      ? file->node->bytes.size() - static_cast<size_t>(file->position)
                      : 0;
    size_t count = std::min(size, left);
    if (count) std::memcpy(buffer, file->node->bytes.data() + file->position, count);
    file->position += count;
    return count;
}

bool File::Write(const void* data, size_t size) {
    OpenFile* file = Opened(handle);
    if (!file || !file->writes) return Pc().Refuse(file ? 5 : 6);
    if (!file->node) return true;
    auto put = [&](size_t count) {
        std::string& bytes = file->node->bytes;
        size_t end = static_cast<size_t>(file->position) + count;
        size_t growth = end > bytes.size() ? end - bytes.size() : 0;
        count -= growth - TakeSpace(growth);
        end = static_cast<size_t>(file->position) + count;
        if (end > bytes.size()) bytes.resize(end);
        if (count) std::memcpy(bytes.data() + file->position, data, count);
        file->position += count;
        file->written += count;
        file->changed = true;
        file->node->modified = Pc().Now();
        return count;
    };
    bool failed;
    try {
        failed = Pc().ChangeFails(112);
    } catch (const PlugPulled&) {
        put(size / 2);
        throw;
    }
    if (failed) {
        put(size / 2);
        return Pc().Refuse(112);
    }
    return put(size) == size || Pc().Refuse(112);
}

bool File::Seek(uint64_t position) {
    OpenFile* file = Opened(handle);
    if (!file) return Pc().Refuse(6);
    file->position = position;
    return true;
}

uint64_t File::Size() const {
    OpenFile* file = Opened(handle);
    return file && file->node ? file->node->bytes.size() : 0;
}

void File::Close() {
    OpenFile* file = IsOpen() ? Opened(handle) : nullptr;
    if (file && file->node) {
        --(file->writes ? file->node->writers : file->node->readers);
        if (file->changed && file->appends)
            Pc().Note("append " + file->path + " (" + Decimal(file->written) + " bytes)");
        else if (file->changed)
            Pc().Note("write " + file->path + " (" + Decimal(file->node->bytes.size()) + " bytes)");
    }
    TheDisk().open.erase(handle);
    handle = none;
}

std::optional<std::string> ReadWholeFile(const std::string& path, uint64_t limit) {
    File file;
    if (!file.Open(path, FileMode::read)) return {};
    if (file.Size() > limit) {
        Pc().Refuse(223);
        return {};
    }
    std::string bytes(static_cast<size_t>(file.Size()), '\0');
    auto count = file.Read(bytes.data(), bytes.size());
    if (!count) return {};
    bytes.resize(*count);
    return bytes;
}

bool WriteWholeFile(const std::string& path, const std::string& bytes) {
    File file;
    return file.Open(path, FileMode::write) && file.Write(bytes.data(), bytes.size());
}

}  // namespace pc
