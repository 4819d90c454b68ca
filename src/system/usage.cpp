#include "system/usage.h"

#include "system/settings.h"
#include "system/text.h"
#include "system/trace.h"

void AddUsage(const std::string& name) {
    std::string file = GetAppPath() + "Usage.ini", value = ReadIni(file, "Usage", name);
    auto count = ToInt16(value.empty() ? "0" : value);
    // Past the largest 16-bit number the addition fails, and the counter keeps its text.
    if (count && *count < 32767) value = NumberText(*count + 1);
    WriteIni(file, "Usage", name, value);
}
