#include "platform/registry.h"

#include <windows.h>

#include <vector>

#include "platform/win32/lookup.h"
#include "platform/win32/wide.h"

namespace pc {

namespace {

HKEY Native(const Key& key) { return reinterpret_cast<HKEY>(key.value); }
HKEY Root(uint32_t root) { return reinterpret_cast<HKEY>(static_cast<LONG_PTR>(static_cast<int32_t>(root))); }

void Keep(Key& key, HKEY opened) {
    key = Key();
    key.value = reinterpret_cast<uintptr_t>(opened);
}

bool IsText(uint32_t type) { return type == typeSz || type == typeExpandSz || type == typeMultiSz; }

// Half a character at the end of a damaged text is dropped.
std::string TextOf(const std::vector<BYTE>& data) {
    std::wstring text(data.size() / sizeof(wchar_t), L'\0');
    CopyMemory(text.data(), data.data(), text.size() * sizeof(wchar_t));
    return Utf8(text);
}

// Text becomes UTF-8, all else stays as it is.
std::string DataOf(uint32_t type, const std::vector<BYTE>& raw) {
    return IsText(type) ? TextOf(raw) : std::string(raw.begin(), raw.end());
}

constexpr DWORD usualSize = 512;  // bytes; most values are smaller

int32_t RawValue(HKEY key, const wchar_t* name, uint32_t& type, std::vector<BYTE>& data) {
    // Most values fit at the first try; a large one may grow between two.
    DWORD size = usualSize, found = 0;
    LSTATUS status = ERROR_MORE_DATA;
    while (status == ERROR_MORE_DATA) {
        data.resize(size + sizeof(wchar_t));
        size = static_cast<DWORD>(data.size());
        status = RegQueryValueExW(key, name, nullptr, &found, data.data(), &size);
    }
    data.resize(status == ERROR_SUCCESS ? size : 0);
    type = found;
    return status;
}

int32_t QueryWide(HKEY key, const wchar_t* name, uint32_t& type, std::string& data) {
    std::vector<BYTE> raw;
    int32_t status = RawValue(key, name, type, raw);
    data = DataOf(type, raw);
    return status;
}

}  // namespace

Key::~Key() {
    if (value) RegCloseKey(Native(*this));
}

Key& Key::operator=(Key&& other) noexcept {
    if (this != &other) {
        if (value) RegCloseKey(Native(*this));
        value = other.value;
        other.value = 0;
    }
    return *this;
}

int32_t OpenKey(uint32_t root, const std::string& path, uint32_t access, Key& key) {
    HKEY opened = nullptr;
    LSTATUS status = RegOpenKeyExW(Root(root), Wide(path).c_str(), 0, access, &opened);
    Keep(key, status == ERROR_SUCCESS ? opened : nullptr);
    return status;
}

int32_t CreateKey(uint32_t root, const std::string& path, uint32_t access, Key& key) {
    HKEY opened = nullptr;
    LSTATUS status = RegCreateKeyExW(Root(root), Wide(path).c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, access,
                                     nullptr, &opened, nullptr);
    Keep(key, status == ERROR_SUCCESS ? opened : nullptr);
    return status;
}

int32_t CloseKey(Key& key) {
    if (!key.value) return ERROR_INVALID_HANDLE;
    LSTATUS status = RegCloseKey(Native(key));
    key.value = 0;
    return status;
}

int32_t QueryValue(const Key& key, const std::string& name, uint32_t& type, std::string& data) {
    return QueryWide(Native(key), Wide(name).c_str(), type, data);
}

int32_t SetValue(const Key& key, const std::string& name, uint32_t type, const std::string& data) {
    // Behind a text stands a character that is no NUL: the platform would count one in.
    std::wstring text = Wide(IsText(type) ? data : "") + L'|';
    auto* bytes =
        IsText(type) ? reinterpret_cast<const BYTE*>(text.data()) : reinterpret_cast<const BYTE*>(data.data());
    size_t size = IsText(type) ? (text.size() - 1) * sizeof(wchar_t) : data.size();
    return RegSetValueExW(Native(key), Wide(name).c_str(), 0, type, bytes, static_cast<DWORD>(size));
}

int32_t DeleteValue(const Key& key, const std::string& name) {
    return RegDeleteValueW(Native(key), Wide(name).c_str());
}

int32_t EnumKey(const Key& key, uint32_t index, std::string& name) {
    wchar_t buffer[512];  // a key's name has at most 255 characters
    DWORD length = 512;
    LSTATUS status = RegEnumKeyExW(Native(key), index, buffer, &length, nullptr, nullptr, nullptr, nullptr);
    name = status == ERROR_SUCCESS ? Utf8({buffer, length}) : std::string();
    return status;
}

int32_t EnumValue(const Key& key, uint32_t index, std::string& name, uint32_t& type, std::string& data) {
    static wchar_t buffer[16384];  // the longest name of a value, with its NUL; there is one thread
    std::vector<BYTE> raw(usualSize);
    DWORD length = 16384, found = 0, size = static_cast<DWORD>(raw.size());
    LSTATUS status = RegEnumValueW(Native(key), index, buffer, &length, nullptr, &found, raw.data(), &size);
    if (status == ERROR_MORE_DATA) {
        length = 16384;
        status = RegEnumValueW(Native(key), index, buffer, &length, nullptr, &found, nullptr, &size);
        type = found;
        if (status == ERROR_SUCCESS) status = RawValue(Native(key), buffer, type, raw);
        size = static_cast<DWORD>(raw.size());
    }
    raw.resize(status == ERROR_SUCCESS ? size : 0);
    name = status == ERROR_SUCCESS ? Utf8({buffer, length}) : std::string();
    data = DataOf(type = found, raw);
    return status;
}

int32_t DeleteSubkey(const Key& parent, const std::string& name, uint32_t view) {
    std::wstring wide = Wide(name);
    if (wide.c_str()[0] == 0) return ERROR_INVALID_PARAMETER;  // the platform would delete the parent
    using DeleteInView = LONG WINAPI(HKEY, LPCWSTR, REGSAM, DWORD);
    static auto* deleteInView = Lookup<DeleteInView>(L"advapi32.dll", "RegDeleteKeyExW");
    if (view && deleteInView) return deleteInView(Native(parent), wide.c_str(), view, 0);
    return RegDeleteKeyW(Native(parent), wide.c_str());
}

int32_t GetKeySecurity(const Key& key, std::string& descriptor) {
    DWORD size = 256;
    LSTATUS status;
    do {
        descriptor.resize(size);
        status = RegGetKeySecurity(Native(key), DACL_SECURITY_INFORMATION, descriptor.data(), &size);
    } while (status == ERROR_INSUFFICIENT_BUFFER && size > descriptor.size());
    if (status == ERROR_SUCCESS) size = GetSecurityDescriptorLength(descriptor.data());
    descriptor.resize(status == ERROR_SUCCESS ? size : 0);
    return status;
}

int32_t SetKeySecurity(const Key& key, const std::string& descriptor) {
    std::string copy = descriptor;
    if (copy.size() < SECURITY_DESCRIPTOR_MIN_LENGTH) return ERROR_INVALID_SECURITY_DESCR;
    return RegSetKeySecurity(Native(key), DACL_SECURITY_INFORMATION, copy.data());
}

std::string ReadProfileText(const std::string& file, const std::string& section, const std::string& key,
                            const std::string& defaultText, size_t capacity) {
    std::wstring buffer(capacity, L'\0');
    DWORD length = GetPrivateProfileStringW(Wide(section).c_str(), Wide(key).c_str(), Wide(defaultText).c_str(),
                                            buffer.data(), static_cast<DWORD>(capacity), WidePath(file).c_str());
    return Utf8({buffer.data(), length});
}

std::string ReadProfileSection(const std::string& file, const std::string& section, size_t capacity) {
    std::wstring buffer(capacity, L'\0');
    DWORD length = GetPrivateProfileSectionW(Wide(section).c_str(), buffer.data(), static_cast<DWORD>(capacity),
                                             WidePath(file).c_str());
    buffer.resize(length);
    if (!buffer.empty() && buffer.back() != 0) buffer += L'\0';  // the last entry was cut
    return Utf8(buffer);
}

bool WriteProfileText(const std::string& file, const std::string& section, const std::string& key,
                      const std::string& value) {
    return WritePrivateProfileStringW(Wide(section).c_str(), Wide(key).c_str(), Wide(value).c_str(),
                                      WidePath(file).c_str()) != FALSE;
}

}  // namespace pc
