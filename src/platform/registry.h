// The registry and INI files, at the height of the platform's own calls.
//
// Texts are UTF-8; the Win32 side uses the wide calls. Every function answers with the platform's own 32-bit
// code: 0 success, 2 not found, 5 access denied, 234 more data, 259 no more items.
#pragma once

#include <cstdint>
#include <string>

namespace pc {

// Root numbers are those of the platform's predefined handles.
inline constexpr uint32_t classesRoot = 0x80000000;
inline constexpr uint32_t currentUser = 0x80000001;
inline constexpr uint32_t localMachine = 0x80000002;
inline constexpr uint32_t usersRoot = 0x80000003;
inline constexpr uint32_t currentConfig = 0x80000005;
inline constexpr uint32_t dynData = 0x80000006;

// Access bits as the platform counts them.
inline constexpr uint32_t keyQueryValue = 0x1;
inline constexpr uint32_t keySetValue = 0x2;
inline constexpr uint32_t keyCreateSubKey = 0x4;
inline constexpr uint32_t keyEnumerateSubKeys = 0x8;
inline constexpr uint32_t keyAllAccess = 0xF003F;
inline constexpr uint32_t keyWriteDac = 0x40000;
inline constexpr uint32_t keyWriteOwner = 0x80000;
inline constexpr uint32_t keyReadControl = 0x20000;
inline constexpr uint32_t keyWow64_64 = 0x100;

// Value types as stored.
inline constexpr uint32_t typeSz = 1;
inline constexpr uint32_t typeExpandSz = 2;
inline constexpr uint32_t typeBinary = 3;
inline constexpr uint32_t typeDword = 4;
inline constexpr uint32_t typeMultiSz = 7;

inline constexpr int32_t errorFileNotFound = 2;
inline constexpr int32_t errorAccessDenied = 5;
inline constexpr int32_t errorMoreData = 234;
inline constexpr int32_t errorNoMoreItems = 259;

// An open registry key; closes itself. value 0 means none.
class Key {
public:
    Key() = default;
    ~Key();
    Key(Key&& other) noexcept : value(other.value) { other.value = 0; }
    Key& operator=(Key&& other) noexcept;
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    uintptr_t value = 0;
};

// Opens root\path with the access bits (keyWow64_64 chooses the 64-bit view). An empty path opens the root.
int32_t OpenKey(uint32_t root, const std::string& path, uint32_t access, Key& key);
// As OpenKey, but makes the key and its parents when missing.
int32_t CreateKey(uint32_t root, const std::string& path, uint32_t access, Key& key);
// Closes now; the result is the platform's. A key not open gives 6.
int32_t CloseKey(Key& key);

// Whole data of a value. Text types come as UTF-8 with the NULs that are stored; others as raw bytes.
// An empty name is the key's default value.
int32_t QueryValue(const Key& key, const std::string& name, uint32_t& type, std::string& data);
// Data of text types is UTF-8 and is stored with exactly the characters given (terminate it yourself).
int32_t SetValue(const Key& key, const std::string& name, uint32_t type, const std::string& data);
int32_t DeleteValue(const Key& key, const std::string& name);
// index counts from 0; 259 past the last. The order is the platform's.
int32_t EnumKey(const Key& key, uint32_t index, std::string& name);
// The data as QueryValue gives it.
int32_t EnumValue(const Key& key, uint32_t index, std::string& name, uint32_t& type, std::string& data);
// Deletes one subkey, which must have no subkeys itself (else 5). view is 0 or keyWow64_64.
int32_t DeleteSubkey(const Key& parent, const std::string& name, uint32_t view);

// The discretionary access list of a key as a self-relative security descriptor, byte for byte.
int32_t GetKeySecurity(const Key& key, std::string& descriptor);
int32_t SetKeySecurity(const Key& key, const std::string& descriptor);

// INI files. file must be a full path. Text in the file is in the system's ANSI code page.
// At most capacity - 1 characters come back. An absent key, section or file gives defaultText.
std::string ReadProfileText(const std::string& file, const std::string& section, const std::string& key,
                            const std::string& defaultText, size_t capacity);
// "key=value" entries of a section, each closed by a NUL.
std::string ReadProfileSection(const std::string& file, const std::string& section, size_t capacity);
// Makes file, section and key when missing. False when the file cannot be written.
bool WriteProfileText(const std::string& file, const std::string& section, const std::string& key,
                      const std::string& value);

}  // namespace pc
