// Windows shortcut files (".lnk") through the shell's own objects, and the shell's special folders.
#pragma once

#include <cstdint>
#include <string>

// One shortcut: its fields, read and written.
class cShellLinkA {
public:
    std::string ExeName, ExeArgs, WorkingDir, Description, IconFile;
    int32_t IconIndex = 0;
    int32_t ShowCommand = 0;

    // Virtual key and modifier bits of the hot key.
    void GetHotKeyInfo(uint8_t& key, uint8_t& modifier) const;
    static uint16_t MakeHotKey(uint8_t modifier, uint8_t key);
    // Folder by CSIDL number; empty when unknown.
    static std::string GetSystemFolderPath(intptr_t ownerWindow, int folderIdentifier);
    // showCommand: 1 normal, 3 maximised, 7 minimised. An empty iconFile is replaced by the target.
    bool CreateLink(const std::string& linkPath, const std::string& target, const std::string& arguments,
                    const std::string& workingFolder, const std::string& description, int32_t showCommand,
                    uint16_t hotKey, int32_t iconIndex, const std::string& iconFile);
    // False when the file is no shortcut; the properties are empty then.
    bool GetLinkInfo(const std::string& linkPath);

private:
    uint16_t hotKey = 0;
};
