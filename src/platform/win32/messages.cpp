#include "platform/messages.h"

#include <windows.h>
// behind windows.h
#include <commdlg.h>
#include <shlobj.h>

#include <algorithm>

#include "platform/machine.h"
#include "platform/win32/handles.h"
#include "platform/win32/lookup.h"

namespace pc {

namespace {

const Late<decltype(GetOpenFileNameW)> pickFile{L"comdlg32.dll", "GetOpenFileNameW"};

BOOL CALLBACK TakeFirstUsable(HWND window, LPARAM found) {
    if (!IsWindowVisible(window) || !IsWindowEnabled(window)) return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

// The form in use. While another program is in front none is active: then the topmost that takes input.
HWND Owner() {
    HWND window = GetActiveWindow();
    if (!window) EnumThreadWindows(GetCurrentThreadId(), TakeFirstUsable, reinterpret_cast<LPARAM>(&window));
    return window;
}

// The owner's caption bears the technician's brand.
std::wstring BrandTitle(HWND owner) {
    wchar_t caption[256] = L"";
    if (owner) GetWindowTextW(owner, caption, 256);
    return caption[0] ? caption : Wide(ProductName());
}

}  // namespace

int ShowMessage(const std::string& text, const std::string& title, uint32_t style) {
    HWND owner = Owner();
    std::wstring wideTitle = title.empty() ? BrandTitle(owner) : Wide(title);
    return MessageBoxW(owner, Wide(text).c_str(), wideTitle.c_str(), style);
}

std::string PickFile(const std::string& startFolder, const std::string& title, const std::string& filter) {
    ComApartment apartment;
    std::wstring parts = Wide(filter) + L'|', folder = Wide(startFolder), wideTitle = Wide(title);
    std::replace(parts.begin(), parts.end(), L'|', L'\0');
    std::wstring path(32768, L'\0');
    OPENFILENAMEW pick = {};
    pick.lStructSize = sizeof pick;
    pick.hwndOwner = Owner();
    pick.lpstrFilter = parts.c_str();
    pick.lpstrFile = path.data();
    pick.nMaxFile = static_cast<DWORD>(path.size());
    pick.lpstrInitialDir = folder.c_str();
    pick.lpstrTitle = title.empty() ? nullptr : wideTitle.c_str();
    pick.Flags = OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    return pickFile(&pick) ? Utf8(path.c_str()) : "";
}

std::string PickFolder(const std::string& prompt) {
    ComApartment apartment;
    std::wstring widePrompt = Wide(prompt);
    wchar_t name[MAX_PATH + 1] = L"", folder[MAX_PATH + 1] = L"";
    BROWSEINFOW browse = {};
    browse.hwndOwner = Owner();
    browse.pszDisplayName = name;
    browse.lpszTitle = widePrompt.c_str();
    browse.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE;
    LPITEMIDLIST place = SHBrowseForFolderW(&browse);
    TaskMemory owner(place);
    return place && SHGetPathFromIDListW(place, folder) ? Utf8(folder) : "";
}

}  // namespace pc
