// Shortcut files of the simulated PC: a text of their fields behind the real format's first bytes.
#include "pc/simulated_pc.h"
#include "platform/shell_link.h"
#include "system/text.h"

namespace pc {

constexpr const char* linkHead = "L\x01\x14\x02";

bool SaveShellLink(const std::string& path, const ShellLink& link) {
    std::string bytes = linkHead;
    for (const std::string& field : {link.target, link.arguments, link.workingFolder, link.description, link.iconFile,
                                     NumberText(link.iconIndex), NumberText(link.showCommand), NumberText(link.hotKey)})
        bytes += "\n" + field;
    return WriteWholeFile(path, bytes);
}

bool LoadShellLink(const std::string& path, ShellLink& link) {
    auto bytes = ReadWholeFile(path);
    if (!bytes) return false;
    std::vector<std::string> fields = Split(*bytes, '\n');
    if (fields.size() != 9 || fields[0] != linkHead) return false;
    std::string* const texts[] = {&link.target, &link.arguments, &link.workingFolder, &link.description,
                                  &link.iconFile};
    for (size_t i = 0; i < std::size(texts); ++i) *texts[i] = fields[i + 1];
    link.iconIndex = std::stoi(fields[6]);
    link.showCommand = std::stoi(fields[7]);
    link.hotKey = static_cast<uint16_t>(std::stoi(fields[8]));
    return true;
}

}  // namespace pc
