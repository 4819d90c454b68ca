// Shortcut files (".lnk"), through the shell's own link object.
#pragma once

#include <cstdint>
#include <string>

namespace pc {

// What a shortcut file holds.
struct ShellLink {
    std::string target, arguments, workingFolder, description, iconFile;
    int32_t iconIndex = 0;
    uint16_t hotKey = 0;      // modifier * 256 + virtual key
    int32_t showCommand = 1;  // 1 normal, 3 maximised, 7 minimised
};

// Writes the shortcut; sets target, icon, hot key, show command, arguments, folder and description in this order.
// An existing file is replaced. False when the shell refuses.
bool SaveShellLink(const std::string& path, const ShellLink& link);
// Reads a shortcut, each text cut at its first NUL and at 259 characters. False leaves link as it was: no such file,
// or no shortcut.
bool LoadShellLink(const std::string& path, ShellLink& link);

}  // namespace pc
