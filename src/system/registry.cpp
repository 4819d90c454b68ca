#include "system/registry.h"

#include <algorithm>

#include "platform/files.h"
#include "platform/machine.h"
#include "system/registry_view.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

constexpr size_t profileTextCapacity = 255;
constexpr const char* errorInvalidCall = "5 Invalid procedure call or argument";
constexpr const char* errorOverflow = "6 Overflow";

char UpperLetter(char type) { return type >= 'a' && type <= 'z' ? static_cast<char>(type - 'a' + 'A') : type; }

void DropLastCharacter(std::string& text) {
    while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0) == 0x80) text.pop_back();
    if (!text.empty()) text.pop_back();
}

bool IsTextType(uint32_t type) { return type == pc::typeSz || type == pc::typeExpandSz || type == pc::typeMultiSz; }

// The first bytes of the data as a number, least significant first.
int32_t NumberFromBytes(const std::string& data) {
    uint32_t number = 0;
    for (size_t i = 0; i < data.size() && i < sizeof number; ++i)
        number |= uint32_t{static_cast<unsigned char>(data[i])} << (8 * i);
    return static_cast<int32_t>(number);
}

std::string BytesOfNumber(int32_t number) {
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(static_cast<uint32_t>(number) >> shift & 0xFF);
    return bytes;
}

// Data of a text value as it is stored: the platform closes a text that is not empty with a NUL of its own.
std::string StoredText(const std::string& text) { return text.empty() || text.back() == '\0' ? text : text + '\0'; }

void TraceRead(const std::string& root, const std::string& key, const std::string& valueName, const std::string& result,
               int32_t status) {
    DebugOutput("modRegistry\\fReadValue: ");
    TraceKeyAndValue(root, key, valueName);
    DebugOutput("\t- Returned Value: " + result);
    TraceStatus(status);
}

// Where a read of either kind begins. done: status is the answer already.
struct ReadStart {
    bool done = true;
    int32_t status = statusNone;
    uint32_t hive = hiveBad;
    std::string path;
    pc::Key key;
};

ReadStart StartRead(const std::string& root, const std::string& key) {
    ReadStart start;
    start.hive = fGetHive(root);
    if (start.hive == hiveIniFile) start.status = 0;
    if (start.hive == hiveIniFile || start.hive == hiveBad) return start;
    RegistryView view = ChooseView(key, pc::keyQueryValue);
    start.path = view.path;
    start.status = pc::OpenKey(start.hive, view.path, view.access, start.key);
    start.done = start.status != 0;
    return start;
}

// The lists that enumerations give end in one NUL behind the last entry, or are two NULs.
void CloseList(std::string& list) {
    list += '\0';
    if (list.size() == 1) list += '\0';
}

std::string ShowNulls(std::string list) {
    for (char& c : list)
        if (c == '\0') c = '|';
    return list;
}

enum class EntryForm {
    asStored,  // a text's own NUL parts it from the next entry
    clean,     // NULs taken out of name and text, one put behind
};

// One value as "name=value"; nothing for types that are not listed.
void AppendEntry(std::string name, uint32_t type, std::string data, EntryForm form, std::string& list) {
    bool isText = type == pc::typeSz;
    bool isNumber = type == pc::typeDword || (type == pc::typeBinary && data.size() < 3);
    if (!isText && !isNumber) return;
    if (form == EntryForm::clean) {
        std::erase(name, '\0');
        if (isText) std::erase(data, '\0');
    }
    list += name;
    list += '=';
    list += isText ? data : NumberText(NumberFromBytes(data));
    if (isNumber || form == EntryForm::clean) list += '\0';
}

// An INI section as the platform leaves it in a buffer of blanks: entries, a NUL more, and the blanks.
std::string SectionBuffer(const std::string& file, const std::string& section) {
    constexpr size_t capacity = 8192;
    std::string buffer = pc::ReadProfileSection(file, section, capacity);
    CloseList(buffer);
    if (buffer.size() < capacity) buffer.resize(capacity, ' ');
    return buffer;
}

int32_t EnumValues(const char* procedure, EntryForm form, const std::string& root, const std::string& keyPath,
                   std::string& list) {
    uint32_t hive = fGetHive(root);
    if (hive == hiveBad) return statusNone;
    if (hive == hiveIniFile) {
        list = SectionBuffer(root, keyPath);
        return 0;
    }
    RegistryView view = ChooseView(keyPath, pc::keyQueryValue);
    pc::Key key;
    if (int32_t status = pc::OpenKey(hive, view.path, view.access, key); status != 0) return status;
    std::string name, data;
    uint32_t type = 0;
    int32_t ended = 0;
    for (uint32_t index = 0; (ended = pc::EnumValue(key, index, name, type, data)) == 0; ++index)
        AppendEntry(name, type, data, form, list);
    if (ended != pc::errorNoMoreItems) {  // a value that went away before it was read
        if (!list.empty()) list += '\0';
        return ended;
    }
    CloseList(list);
    int32_t status = pc::CloseKey(key);
    DebugOutput(std::string("modRegistry\\") + procedure + ": ");
    DebugOutput("\t- Passed Key: " + root + "\\" + view.path);
    DebugOutput("\t- Returned String:  (where | = vbNullChar)");
    DebugOutput("\t  " + ShowNulls(list));
    TraceStatus(status);
    return status;
}

// What a multiple text becomes when one more is added to it.
std::string AppendedList(const std::string& root, const std::string& key, const std::string& valueName,
                         const std::string& added) {
    std::string present, data;
    if (fReadValue(root, key, valueName, 'M', "", present) == 0)
        for (const std::string& piece : SplitList(present)) data += piece + '\0';
    data += added;
    data.append(2, '\0');
    return data;
}

int32_t TraceWriteFailure(const std::string& root, const std::string& key, const std::string& valueName,
                          int32_t status) {
    DebugOutput("modRegistry\\fWriteValue: ");
    TraceKeyAndValue(root, key, valueName);
    TraceStatus(status);
    return status;
}

// Opens the key for a write, making it when missing. A path with "Wow6432Node" is taken literally here.
int32_t CreateForWrite(uint32_t hive, const std::string& path, pc::Key& key) {
    uint32_t access = pc::keySetValue | pc::keyCreateSubKey;
    if (IsOS64Bit()) access |= pc::keyWow64_64;
    return pc::CreateKey(hive, path, access, key);
}

// A refused set is traced, but the caller is told 0 all the same.
int32_t SetAndClose(pc::Key& key, const std::string& root, const std::string& path, const std::string& valueName,
                    uint32_t type, const std::string& data) {
    if (int32_t status = pc::SetValue(key, valueName, type, data); status != 0) {
        TraceWriteFailure(root, path, valueName, status);
        return 0;
    }
    return pc::CloseKey(key);
}

}  // namespace

RegistryView ChooseView(const std::string& path, uint32_t baseAccess) {
    if (!IsOS64Bit()) return {baseAccess, path};
    std::string lowered = LowerCase(path);
    if (lowered.find("wow6432node") == std::string::npos) return {baseAccess | pc::keyWow64_64, path};
    if (IsRedirectedPath(path)) return {baseAccess, ReplaceAll(lowered, "wow6432node\\", "")};
    return {baseAccess, path};
}

bool IsRedirectedPath(const std::string& path) {
    return ContainsNoCase(path, "wow6432node") && !ContainsNoCase(path, "guest_");
}

void TraceRuntimeError(const char* procedure, const char* numberAndText) {
    DebugOutput(std::string("modRegistry\\") + procedure + " - VB ERROR: " + numberAndText);
}

void TraceKeyAndValue(const std::string& root, const std::string& key, const std::string& valueName) {
    DebugOutput("\t- Passed Key: " + root + "\\" + key);
    DebugOutput("\t- Passed Value: " + valueName);
}

void TraceStatus(int32_t status) { DebugOutput("\t- lResult (0 is successful): " + NumberText(status)); }

uint32_t fGetHive(const std::string& root) {
    static constexpr struct {
        const char* name;
        uint32_t hive;
    } roots[] = {
        {"HKCU", pc::currentUser}, {"HKLM", pc::localMachine},  {"HKU", pc::usersRoot},
        {"HKCR", pc::classesRoot}, {"HKCC", pc::currentConfig}, {"HKDD", pc::dynData},
    };
    std::string upper = UpperCase(root);
    for (const auto& row : roots)
        if (upper == row.name) return row.hive;
    std::optional<pc::FileInfo> file = pc::GetFileInfo(root);
    return file && !file->IsFolder() ? hiveIniFile : hiveBad;
}

bool IsOS64Bit() { return !pc::Environment("ProgramFiles(x86)").empty(); }

std::vector<std::string> SplitList(const std::string& list) {
    std::vector<std::string> pieces = Split(list, '\0');
    std::erase(pieces, std::string());
    return pieces;
}

int32_t fReadValue(const std::string& root, const std::string& key, const std::string& valueName, char type,
                   const std::string& defaultValue, std::string& result) {
    result = defaultValue;
    char letter = UpperLetter(type);
    ReadStart start = StartRead(root, key);
    if (start.hive == hiveIniFile && letter == 'S')
        result = pc::ReadProfileText(root, key, valueName, defaultValue, profileTextCapacity);
    if (start.done) return start.status;
    if (letter == 'S' || letter == 'M') {
        uint32_t storedType = 0;
        std::string data;
        if (int32_t status = pc::QueryValue(start.key, valueName, storedType, data); status != 0) return status;
        if (data.empty()) {  // nothing to take the last character from
            TraceRuntimeError("fReadValue", errorInvalidCall);
            TraceKeyAndValue(root, start.path, valueName);
            TraceStatus(0);
            return 0;
        }
        result = IsTextType(storedType) ? std::move(data) : pc::FromAnsi(data);
        DropLastCharacter(result);
    }
    int32_t status = pc::CloseKey(start.key);
    TraceRead(root, start.path, valueName, result, status);
    return status;
}

int32_t fReadValue(const std::string& root, const std::string& key, const std::string& valueName, char type,
                   int32_t defaultValue, int32_t& result) {
    result = defaultValue;
    char letter = UpperLetter(type);
    ReadStart start = StartRead(root, key);
    if (start.done) return start.status;
    if (letter == 'D' || letter == 'B') {
        size_t room = letter == 'D' ? 32 : 2;
        uint32_t storedType = 0;
        std::string data;
        if (int32_t status = pc::QueryValue(start.key, valueName, storedType, data); status != 0) return status;
        if (data.size() > room) return pc::errorMoreData;
        result = NumberFromBytes(data);
    }
    int32_t status = pc::CloseKey(start.key);
    TraceRead(root, start.path, valueName, letter == 'B' ? TraceValue(result != 0).Text() : NumberText(result), status);
    return status;
}

std::string ReadRegistryText(const std::string& root, const std::string& key, const std::string& valueName) {
    std::string text;
    fReadValue(root, key, valueName, 'S', "", text);
    return text;
}

int32_t fWriteValue(const std::string& root, const std::string& key, const std::string& valueName, char type,
                    const std::string& data) {
    char letter = UpperLetter(type);
    uint32_t hive = fGetHive(root);
    if (hive == hiveIniFile && letter == 'S') {
        pc::WriteProfileText(root, key, valueName, data);
        return 0;
    }
    if (hive == hiveBad || hive == hiveIniFile) return TraceWriteFailure(root, key, valueName, statusNone);
    pc::Key opened;
    if (int32_t status = CreateForWrite(hive, key, opened); status != 0)
        return TraceWriteFailure(root, key, valueName, status);
    switch (letter) {
        case 'S': return SetAndClose(opened, root, key, valueName, pc::typeSz, StoredText(data));
        case 'E': return SetAndClose(opened, root, key, valueName, pc::typeExpandSz, StoredText(data));
        case 'M':
            return SetAndClose(opened, root, key, valueName, pc::typeMultiSz, AppendedList(root, key, valueName, data));
        default: return pc::CloseKey(opened);
    }
}

int32_t fWriteValue(const std::string& root, const std::string& key, const std::string& valueName, char type,
                    int32_t data) {
    if (UpperLetter(type) != 'D') return fWriteValue(root, key, valueName, type, NumberText(data));
    uint32_t hive = fGetHive(root);
    if (hive == hiveBad || hive == hiveIniFile) return TraceWriteFailure(root, key, valueName, statusNone);
    pc::Key opened;
    if (int32_t status = CreateForWrite(hive, key, opened); status != 0)
        return TraceWriteFailure(root, key, valueName, status);
    if (data < INT16_MIN || data > INT16_MAX) {
        TraceRuntimeError("fWriteValue", errorOverflow);
        TraceKeyAndValue(root, key, valueName);
        TraceStatus(0);
        return 0;
    }
    return SetAndClose(opened, root, key, valueName, pc::typeDword, BytesOfNumber(data));
}

int32_t fEnumKey(const std::string& root, const std::string& keyPath, std::string& list) {
    uint32_t hive = fGetHive(root);
    if (hive == hiveBad) return statusNone;
    RegistryView view = ChooseView(keyPath, pc::keyEnumerateSubKeys);
    pc::Key key;
    if (int32_t status = pc::OpenKey(hive, view.path, view.access, key); status != 0) return status;
    std::string name;
    int32_t ended = 0;
    for (uint32_t index = 0; (ended = pc::EnumKey(key, index, name)) == 0; ++index) {
        list.append(name, std::min(name.find_first_not_of(' '), name.size()));
        list += '\0';
    }
    CloseList(list);
    int32_t status = pc::CloseKey(key);
    DebugOutput("modRegistry\\fEnumKey: ");
    DebugOutput("\t- Passed Key: " + root + "\\" + view.path);
    DebugOutput("\t- Returned Values: " + ShowNulls(list));
    TraceStatus(ended);
    return status;
}

int32_t fEnumValue(const std::string& root, const std::string& key, std::string& list) {
    return EnumValues("fEnumValue", EntryForm::asStored, root, key, list);
}

int32_t fEnumValue2(const std::string& root, const std::string& key, std::string& list) {
    return EnumValues("fEnumValue2", EntryForm::clean, root, key, list);
}
