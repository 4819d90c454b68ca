#include "system/shortcuts.h"

#include "platform/machine.h"
#include "platform/shell_link.h"

void cShellLinkA::GetHotKeyInfo(uint8_t& key, uint8_t& modifier) const {
    key = static_cast<uint8_t>(hotKey & 0xFF);
    modifier = static_cast<uint8_t>(hotKey >> 8);
}

uint16_t cShellLinkA::MakeHotKey(uint8_t modifier, uint8_t key) { return static_cast<uint16_t>(modifier * 256 + key); }

std::string cShellLinkA::GetSystemFolderPath(intptr_t, int folderIdentifier) {
    return pc::SpecialFolder(folderIdentifier);
}

bool cShellLinkA::CreateLink(const std::string& linkPath, const std::string& target, const std::string& arguments,
                             const std::string& workingFolder, const std::string& description, int32_t showCommand,
                             uint16_t linkHotKey, int32_t iconIndex, const std::string& iconFile) {
    if (linkPath.empty() || target.empty()) return false;
    pc::ShellLink link;
    link.target = target;
    link.arguments = arguments;
    link.workingFolder = workingFolder;
    link.description = description;
    link.iconFile = iconFile.empty() ? target : iconFile;
    link.iconIndex = iconIndex;
    link.hotKey = linkHotKey;
    link.showCommand = showCommand;
    return pc::SaveShellLink(linkPath, link);
}

bool cShellLinkA::GetLinkInfo(const std::string& linkPath) {
    *this = {};
    pc::ShellLink link;
    if (!pc::LoadShellLink(linkPath, link)) return false;
    ExeName = link.target;
    ExeArgs = link.arguments;
    WorkingDir = link.workingFolder;
    Description = link.description;
    IconFile = link.iconFile;
    IconIndex = link.iconIndex;
    ShowCommand = link.showCommand;
    hotKey = link.hotKey;
    return true;
}
