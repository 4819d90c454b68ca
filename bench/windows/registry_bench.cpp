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

// The grants that the ladder makes on a key: each opens it, reads its access list and writes it back.
void BareGrants(HKEY hive, const std::wstring& path) {
    for (int account = 0; account < 5; ++account) {
        HKEY key;
        if (RegOpenKeyExW(hive, path.c_str(), 0, READ_CONTROL | WRITE_DAC, &key)) continue;
        BYTE descriptor[1024];
        DWORD size = sizeof descriptor;
        if (!RegGetKeySecurity(key, DACL_SECURITY_INFORMATION, descriptor, &size))
            RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, descriptor);
        RegCloseKey(key);
    }
}

// The platform's calls of the ladder and nothing else: for each key the grants, what lies below it, the key. Below the
// second level the grants go to the machine's branch, where the key is not.
void BareDelete(int level, HKEY parent, const std::wstring& path, const wchar_t* name) {
    BareGrants(level > 2 ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER, path);
    HKEY key;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, access, &key)) return;
    wchar_t child[300];
    std::vector<std::wstring> children;
    for (DWORD i = 0; !RegEnumKeyW(key, i, child, 300); ++i) children.push_back(child);
    for (const std::wstring& below : children) BareDelete(level + 1, key, path + L"\\" + below, below.c_str());
    RegCloseKey(key);
    RegDeleteKeyExW(parent, name, KEY_WOW64_64KEY, 0);
}

void BareDeleteTree() {
    HKEY software;
    RegOpenKeyExW(HKEY_CURRENT_USER, L"Software", 0, access, &software);
    BareDelete(1, software, root, L"BrevantaBench");
    RegCloseKey(software);
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
    for (int round = 0; round < 5; ++round) {
        bool notFound = false;
        PlantKeys(5000);
        ours.push_back(Measure([&] { fDeleteKey("HKCU", "Software", "BrevantaBench", notFound); }));
        PlantKeys(5000);
        bare.push_back(Measure(BareDeleteTree));
    }
    Row("delete a tree of 5000 keys, ms", Median(ours), Median(bare), 1.2);
    std::printf("(both grant rights to five accounts on each key before it is deleted)\n");
    return 0;
}
