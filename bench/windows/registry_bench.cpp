// The registry layer against bare loops of the platform's calls.
#include "comparison.h"

#include "system/registry.h"

namespace {

constexpr const wchar_t* root = L"Software\\BrevantaBench";
constexpr REGSAM access = KEY_ALL_ACCESS | KEY_WOW64_64KEY;

void PlantValues(int count) {
    HKEY key;
    RegCreateKeyExW(HKEY_CURRENT_USER, root, 0, nullptr, 0, access, nullptr, &key, nullptr);
    for (int i = 0; i < count; ++i)
        RegSetValueExW(key, (L"value" + std::to_wstring(i)).c_str(), 0, REG_SZ,
                       reinterpret_cast<const BYTE*>(L"some text"), 20);
    RegCloseKey(key);
}

size_t BareValues() {
    HKEY key;
    RegOpenKeyExW(HKEY_CURRENT_USER, root, 0, access, &key);
    size_t bytes = 0;
    wchar_t name[300], data[300];
    for (DWORD i = 0;; ++i) {
        DWORD nameSize = 300, size = sizeof data, type = 0;
        if (RegEnumValueW(key, i, name, &nameSize, nullptr, &type, reinterpret_cast<BYTE*>(data), &size)) break;
        bytes += size;
    }
    RegCloseKey(key);
    return bytes;
}

void PlantKeys(int count) {
    for (int i = 0; i < count; ++i) {
        HKEY key;
        std::wstring path = std::wstring(root) + L"\\k" + std::to_wstring(i / 50) + L"\\s" + std::to_wstring(i);
        RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, access, nullptr, &key, nullptr);
        RegCloseKey(key);
    }
}

// What the ladder does for each key: rights for five accounts, then the keys below, then the key.
void BareDelete(HKEY parent, const wchar_t* name) {
    HKEY key;
    if (RegOpenKeyExW(parent, name, 0, access, &key)) return;
    wchar_t child[300];
    std::vector<std::wstring> children;
    for (DWORD i = 0;; ++i) {
        if (RegEnumKeyW(key, i, child, 300)) break;
        children.push_back(child);
    }
    for (const std::wstring& below : children) BareDelete(key, below.c_str());
    RegCloseKey(key);
    RegDeleteKeyW(parent, name);
}

}  // namespace

int main() {
    Head();
    PlantValues(10000);
    std::vector<double> ours, bare;
    for (int round = 0; round < 5; ++round) {
        std::string list;
        ours.push_back(Measure([&] { fEnumValue("HKCU", "Software\\BrevantaBench", list); }));
        bare.push_back(Measure([] { BareValues(); }));
    }
    Row("enumerate 10000 values, ms", Median(ours), Median(bare), 1.2);
    ours.clear();
    bare.clear();
    for (int round = 0; round < 3; ++round) {
        bool notFound = false;
        PlantKeys(5000);
        ours.push_back(Measure([&] { fDeleteKey("HKCU", "Software", "BrevantaBench", notFound); }));
        PlantKeys(5000);
        bare.push_back(Measure([] { BareDelete(HKEY_CURRENT_USER, root); }));
    }
    Row("delete a tree of 5000 keys, ms", Median(ours), Median(bare), 1.2);
    std::printf("(ours grants rights to five accounts on each key before it is deleted; the bare loop does not)\n");
    return 0;
}
