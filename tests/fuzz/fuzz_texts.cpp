// Texts that come from settings, order files, manifests, stored passwords and servers: the first byte chooses what
// reads them. No crash, and what has a way back comes back.
#include <cstdlib>

#include "maintenance/custom_apps.h"
#include "pc/simulated_pc.h"
#include "system/base85.h"
#include "system/dates.h"
#include "system/macros.h"
#include "system/paths.h"
#include "system/permissions.h"
#include "system/scramble.h"
#include "system/settings.h"
#include "tools/external_ip/address_text.h"
#include "tools/safe_mode/safe_start.h"
#include "transfer/zip_format.h"

namespace {

void Must(bool holds) {
    if (!holds) std::abort();
}

void ReadBase85(const std::string& text) {
    std::string bytes;
    if (Base85DecodeBytes(text, bytes)) {
        std::string again;
        Must(Base85DecodeBytes(Base85EncodeBytes(bytes, true), again) && again == bytes);
    }
    DecryptString(text, passwordKey);
}

void ReadDates(const std::string& text) {
    if (auto date = ParseDate(text)) Must(date->month >= 1 && date->month <= 12 && date->day >= 1 && date->day <= 31);
    Pc().dateOrder = (Pc().dateOrder + 1) % 3;
}

void ReadVersions(const std::string& text) {
    Must(!IsNewerVersion(text, text));
    Must(!(IsNewerVersion(text, "4.2.0") && IsNewerVersion("4.2.0", text)));
}

void ReadPaths(const std::string& text) {
    StripCommandArguments(text);
    ExpandMacros(text);
    ExpandEnvVars(text);
    auto safe = zip::SafePath(text);
    Must(!safe || (zip::SafePath(*safe) == safe && safe->find("..\\") != 0 && safe->find(':') == std::string::npos));
}

// A key's security descriptor, and boot.ini.
void ReadSystemData(const std::string& text) {
    AccessEntry system;
    system.sid = std::string("\1\1\0\0\0\0\0\5\x12\0\0\0", 12);
    std::string made = BuildNewSecurityDescriptor(text, {system}, true);
    Must(made.empty() || !BuildNewSecurityDescriptor(made, {system}, true).empty());
    BootIniWithoutSafeMode(BootIniWithSafeMode(text));
}

// An app file, the order file and the settings file, all of the same bytes.
void ReadFiles(const std::string& text) {
    Pc().AddFile("C:\\Panel\\app.cfg", text);
    Pc().AddFile("C:\\Panel\\SortOrder.cfg", text);
    for (const std::string& name : ReadSortOrder()) Must(!name.empty() && name.find('|') == std::string::npos);
    IsCustomAppAllowed("app");
    ReadIni("C:\\Panel\\app.cfg", "Config", "App");
    WriteIni("C:\\Panel\\app.cfg", "Config", "App", "x");
    Must(ReadIni("C:\\Panel\\app.cfg", "Config", "App") == "x");
    Pc().AddFile("C:\\Panel\\app.cfg", text);
    RunCustomMaintApp("app");
    for (const std::string& path : Pc().Tree("C:\\Windows")) Must(path.find(".old") == std::string::npos);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static int runs = 0;
    if (runs++ % 2000 == 0) {
        SimulatedPc::UseWindows(Windows::sevenX64);
        Pc().online = false;
    }
    Pc().journal.clear();
    Pc().trace.clear();
    if (size == 0) return 0;
    std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
    constexpr void (*readers[])(const std::string&) = {
        ReadBase85, ReadDates, ReadVersions,
        ReadPaths,  ReadFiles, [](const std::string& address) { IsAddressText(address.c_str()); },
    };
    readers[data[0] % std::size(readers)](text);
    return 0;
}
