// Version resources, and what the executable carries.
#include <windows.h>

#include "platform/machine.h"
#include "platform/win32/version_block.h"
#include "platform/win32/wide.h"

namespace pc {

VersionBlock::VersionBlock(const std::string& path) {
    std::wstring wide = WidePath(path);
    DWORD handle = 0;
    DWORD size = GetFileVersionInfoSizeW(wide.c_str(), &handle);
    bytes.resize(size);
    if (size && !GetFileVersionInfoW(wide.c_str(), 0, size, bytes.data())) bytes.clear();
}

const VS_FIXEDFILEINFO* VersionBlock::Numbers() const {
    void* found = nullptr;
    UINT size = 0;
    if (bytes.empty() || !VerQueryValueW(bytes.data(), L"\\", &found, &size) || size < sizeof(VS_FIXEDFILEINFO))
        return nullptr;
    return static_cast<const VS_FIXEDFILEINFO*>(found);
}

std::string VersionBlock::Text(const std::string& name) const {
    void* found = nullptr;
    UINT size = 0;
    if (bytes.empty() || !VerQueryValueW(bytes.data(), L"\\VarFileInfo\\Translation", &found, &size) || size < 4)
        return "";
    auto* translation = static_cast<const WORD*>(found);
    char path[160];
    wsprintfA(path, "\\StringFileInfo\\%04X%04X\\%.100s", translation[0], translation[1], name.c_str());
    if (!VerQueryValueW(bytes.data(), Wide(path).c_str(), &found, &size) || size == 0) return "";
    return Utf8(static_cast<const wchar_t*>(found));
}

std::string ProductName() { return VersionBlock(ProgramPath()).Text("ProductName"); }

ProgramVersion GetProgramVersion() {
    VersionBlock block(ProgramPath());
    const VS_FIXEDFILEINFO* numbers = block.Numbers();
    if (!numbers) return {};
    return {HIWORD(numbers->dwFileVersionMS), LOWORD(numbers->dwFileVersionMS), HIWORD(numbers->dwFileVersionLS)};
}

std::optional<std::string> LoadProgramResource(const std::string& type, const std::string& name) {
    HRSRC place = FindResourceW(nullptr, Wide(name).c_str(), Wide(type).c_str());
    HGLOBAL loaded = place ? LoadResource(nullptr, place) : nullptr;
    auto* bytes = loaded ? static_cast<const char*>(LockResource(loaded)) : nullptr;
    if (!bytes) return {};
    return std::string(bytes, SizeofResource(nullptr, place));
}

}  // namespace pc
