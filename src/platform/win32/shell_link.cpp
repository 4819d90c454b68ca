#include "platform/shell_link.h"

#include <windows.h>
// behind windows.h
#include <shlobj.h>

#include "platform/win32/handles.h"

namespace pc {

namespace {

using Link = Com<IShellLinkW>;
using LinkFile = Com<IPersistFile>;

bool MakeLink(Link& link, LinkFile& file) {
    return SUCCEEDED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                      reinterpret_cast<void**>(link.Receive()))) &&
           SUCCEEDED(link.Get()->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(file.Receive())));
}

// The shell's own limit of a text in a link.
struct LinkText {
    wchar_t text[MAX_PATH] = L"";
    operator wchar_t*() { return text; }
    std::string Get() {
        text[MAX_PATH - 1] = 0;
        return Utf8(text);
    }
};

}  // namespace

bool SaveShellLink(const std::string& path, const ShellLink& link) {
    ComApartment apartment;
    Link object;
    LinkFile file;
    if (!MakeLink(object, file)) return false;
    IShellLinkW* shell = object.Get();
    return SUCCEEDED(shell->SetPath(Wide(link.target).c_str())) &&
           SUCCEEDED(shell->SetIconLocation(Wide(link.iconFile).c_str(), link.iconIndex)) &&
           SUCCEEDED(shell->SetHotkey(link.hotKey)) && SUCCEEDED(shell->SetShowCmd(link.showCommand)) &&
           SUCCEEDED(shell->SetArguments(Wide(link.arguments).c_str())) &&
           SUCCEEDED(shell->SetWorkingDirectory(Wide(link.workingFolder).c_str())) &&
           SUCCEEDED(shell->SetDescription(Wide(link.description).c_str())) &&
           SUCCEEDED(file.Get()->Save(Wide(path).c_str(), FALSE));
}

bool LoadShellLink(const std::string& path, ShellLink& link) {
    ComApartment apartment;
    Link object;
    LinkFile file;
    if (!MakeLink(object, file) || FAILED(file.Get()->Load(Wide(path).c_str(), STGM_READ))) return false;
    LinkText target, arguments, workingFolder, description, iconFile;
    int iconIndex = 0, showCommand = 0;
    WORD hotKey = 0;
    IShellLinkW* shell = object.Get();
    shell->GetPath(target, MAX_PATH, nullptr, 0);
    shell->GetIconLocation(iconFile, MAX_PATH, &iconIndex);
    shell->GetHotkey(&hotKey);
    shell->GetShowCmd(&showCommand);
    shell->GetArguments(arguments, MAX_PATH);
    shell->GetWorkingDirectory(workingFolder, MAX_PATH);
    shell->GetDescription(description, MAX_PATH);
    link = {target.Get(), arguments.Get(), workingFolder.Get(), description.Get(), iconFile.Get(),
            iconIndex,    hotKey,          showCommand};
    return true;
}

}  // namespace pc
