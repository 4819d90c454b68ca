#include "system/resources.h"

#include "platform/files.h"
#include "platform/machine.h"
#include "system/trace.h"

bool ExtractResource(const std::string& name, const std::string& path) {
    if (DoesFileExist(path)) return true;
    auto bytes = pc::LoadProgramResource("CUSTOM", name);
    if (!bytes) return false;
    if (pc::WriteWholeFile(path, *bytes)) return true;
    pc::RemoveFile(path);
    return false;
}
