// Removing trees: the file services against a bare find-and-delete loop on the same disk.
#include "comparison.h"

#include "system/files.h"
#include "system/paths.h"
#include "system/program_state.h"

namespace {

const std::wstring root = L"C:\\bench\\tree";

void Plant(int files) {
    CreateDirectoryW(L"C:\\bench", nullptr);
    CreateDirectoryW(root.c_str(), nullptr);
    for (int i = 0; i < files; ++i) {
        std::wstring folder = root + L"\\f" + std::to_wstring(i / 100);
        if (i % 100 == 0) CreateDirectoryW(folder.c_str(), nullptr);
        HANDLE file = CreateFileW((folder + L"\\t" + std::to_wstring(i) + L".tmp").c_str(), GENERIC_WRITE, 0, nullptr,
                                  CREATE_ALWAYS, 0, nullptr);
        DWORD written = 0;
        WriteFile(file, "x", 1, &written, nullptr);
        CloseHandle(file);
    }
}

void BareDelete(const std::wstring& folder) {
    WIN32_FIND_DATAW data;
    HANDLE find = FindFirstFileW((folder + L"\\*").c_str(), &data);
    if (find == INVALID_HANDLE_VALUE) return;
    do {
        std::wstring name = data.cFileName;
        if (name == L"." || name == L"..") continue;
        if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
            BareDelete(folder + L"\\" + name);
        else
            DeleteFileW((folder + L"\\" + name).c_str());
    } while (FindNextFileW(find, &data));
    FindClose(find);
    RemoveDirectoryW(folder.c_str());
}

void BareFind(const std::wstring& folder, std::vector<std::wstring>& found) {
    WIN32_FIND_DATAW data;
    HANDLE find = FindFirstFileW((folder + L"\\*").c_str(), &data);
    if (find == INVALID_HANDLE_VALUE) return;
    do {
        std::wstring name = data.cFileName;
        if (name == L"." || name == L"..") continue;
        if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
            BareFind(folder + L"\\" + name, found);
        else
            found.push_back(folder + L"\\" + name);
    } while (FindNextFileW(find, &data));
    FindClose(find);
}

}  // namespace

int main() {
    State().bHandle64BitRedirect = true;
    Head();
    auto find = [] {
        std::vector<std::string> found;
        FindFiles("C:\\bench\\tree", "*.*", found, true);
    };
    auto bareFind = [] {
        std::vector<std::wstring> found;
        BareFind(root, found);
    };
    auto remove = [] { clsFSO().KillDir("C:\\bench\\tree", false); };
    auto bareRemove = [] { BareDelete(root); };
    for (int files : {1000, 10000, 100000}) {
        std::vector<double> ours, bare, oursFind, bareFinds;
        for (int round = 0; round < 6; ++round) {  // who goes first takes turns
            Plant(files);
            bool first = round % 2 == 0;
            if (first) oursFind.push_back(Measure(find));
            bareFinds.push_back(Measure(bareFind));
            if (!first) oursFind.push_back(Measure(find));
            if (first) ours.push_back(Measure(remove));
            if (!first) bare.push_back(Measure(bareRemove));
            Plant(files);
            if (first) bare.push_back(Measure(bareRemove));
            if (!first) ours.push_back(Measure(remove));
        }
        std::string count = std::to_string(files);
        Row(("remove " + count + " files, ms").c_str(), Median(ours), Median(bare), 1.05);
        Row(("FindFiles over " + count + " files, ms").c_str(), Median(oursFind), Median(bareFinds), 1.3);
    }
    return 0;
}
