#include "system/operating_system.h"

#include "system/registry.h"
#include "system/settings.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

// Edition numbers of GetProductInfo. The blanks belong to the texts; number 21 has none.
struct Edition {
    uint32_t number;
    const char* text;
};
constexpr Edition editions[] = {
    {0, " Undefined Edition "},
    {1, " Ultimate "},
    {2, " Home Basic "},
    {3, " Home Premium "},
    {4, " Enterprise "},
    {5, " Home Basic N "},
    {6, " Business "},
    {7, " Standard "},
    {8, " Datacenter "},
    {9, " SBS "},
    {10, " Enterprise "},
    {11, " Starter "},
    {12, " Datacenter Core "},
    {13, " Standard Core "},
    {14, " Enterprise Core "},
    {15, " Enterprise IA64 "},
    {16, " Business N "},
    {17, " Web Server "},
    {18, " Cluster "},
    {19, " Home Server "},
    {20, " Storage Express "},
    {21, "Storage Standard"},
    {22, " Storage Workgroup "},
    {23, " Storage Enterprise "},
    {24, " For Small Business "},
    {25, " SBS Premium "},
    {42, " Hyper-V "},
    {48, " Professional "},
    {74, " Consumer Preview? "},
    {103, " Pro w/Media Center "},
};

// The first build of Windows 11, whose product name in the registry still says 10.
constexpr uint32_t firstBuildOfWindows11 = 22000;

// Before Vista the edition stands in a file of the system folder.
std::string EditionBeforeVista() {
    std::string file = pc::SystemFolder() + "\\prodspec.ini";
    if (!DoesFileExist(file)) return " Undefined Edition ";
    std::string product = LowerCase(ReadIni(file, "Product Specification", "Product"));
    auto holds = [&](const char* word) { return product.find(word) != std::string::npos; };
    if (holds("home")) return " Home ";
    if (holds("media")) return " Media Center ";
    if (!holds("professional")) return "";
    return DoesFileExist(pc::WindowsFolder() + "\\ehome\\ehtray.exe") ? " Media Center " : " Professional ";
}

// A system that the families below do not know, by its own name and build.
std::string NameOfNewerSystem(uint32_t build) {
    std::string name = ReadRegistryText("HKLM", "Software\\Microsoft\\Windows NT\\CurrentVersion", "ProductName");
    if (name.empty()) name = "Windows";
    if (build >= firstBuildOfWindows11) name = ReplaceAll(name, "Windows 10", "Windows 11");
    return name + " Build " + NumberText(build);
}

}  // namespace

clsOpSys::clsOpSys() {
    pc::OsVersion version = pc::GetOsVersion();
    BuildNumber = version.build;
    MajorVersion = version.major;
    MinorVersion = version.minor;
    PlatformID = version.platform;
    CSDVersion = version.csdVersion;
    ProductType = version.productType;
    ServicePackMajor = version.servicePackMajor;
    ServicePackMinor = version.servicePackMinor;
    SuiteMask = version.suiteMask;
    std::string safeBoot = pc::Environment("SAFEBOOT_OPTION");
    WindowsMode = safeBoot.empty() ? "Normal" : safeBoot == "NETWORK" ? "Safe Mode with Networking" : "Safe Mode";
    // Suite bits as the platform publishes them.
    HasSBS = SuiteMask & 0x1;
    HasAS = SuiteMask & 0x2;
    HasBO = SuiteMask & 0x4;
    HasTS = SuiteMask & 0x10;
    HasSBSr = SuiteMask & 0x20;
    HasDC = SuiteMask & 0x80;
    auto atLeast = [&](uint32_t major, uint32_t minor) {
        return MajorVersion > major || (MajorVersion == major && MinorVersion >= minor);
    };
    IsWinNT = PlatformID == 2;
    IsWin9x = PlatformID == 1;
    IsWin95 = IsWin9x && MinorVersion < 10;
    IsWin98 = IsWin9x && MinorVersion >= 10 && MinorVersion < 90;
    IsWinME = IsWin9x && MinorVersion >= 90;
    IsServer = IsWinNT && ProductType > 1;
    IsWin2K = IsWinNT && atLeast(5, 0);
    IsWinXP = IsWinNT && atLeast(5, 1);
    Is2003 = IsWinNT && MajorVersion >= 5 && MinorVersion >= 2;
    IsVista = IsWinNT && atLeast(6, 0);
    IsWin7 = IsWinNT && atLeast(6, 1);
    IsWin8 = IsWinNT && atLeast(6, 2);
    Is2008 = IsServer && IsVista;
    Is2008R2 = IsServer && IsWin7;
}

std::string clsOpSys::Platform() const {
    if (IsWin8 && (IsServer || MajorVersion > 6 || MinorVersion > 2)) return NameOfNewerSystem(BuildNumber);
    struct Family {
        bool holds;
        const char* name;
    };
    const Family families[] = {{IsWinME, "Windows Me"},         {IsWin98, "Windows 98"},
                               {IsWin95, "Windows 95"},         {Is2008R2, "Windows Server 2008 R2"},
                               {IsWin8, "Windows 8"},           {IsWin7, "Windows 7"},
                               {Is2008, "Windows Server 2008"}, {IsVista, "Windows Vista"},
                               {Is2003, "Windows Server 2003"}, {IsWinXP, "Windows XP"},
                               {IsWin2K, "Windows 2000"},       {IsWinNT, "Windows NT"}};
    for (const Family& family : families)
        if (family.holds) return family.name;
    return "Unknown";
}

std::string clsOpSys::Version() const {
    return Platform() + " " + VistaSKU() + " (Version " + NumberText(MajorVersion) + "." + NumberText(MinorVersion) +
           ", Build " + NumberText(BuildNumber) + ")";
}

std::string clsOpSys::ProductTypeName() const {
    return ProductType == 1   ? "NT Workstation"
           : ProductType == 2 ? "Domain Controller"
           : ProductType == 3 ? "NT Server"
                              : "Unknown";
}

std::string clsOpSys::VistaSKU() const {
    if (MajorVersion < 6) return EditionBeforeVista();
    uint32_t number = pc::ProductSku(MajorVersion, MinorVersion);
    for (const Edition& edition : editions)
        if (edition.number == number) return edition.text;
    return " Unknown (SKU Bit " + NumberText(number) + ") ";
}

bool IsVistaOrLater() { return clsOpSys().IsVista; }
