#include "system/operating_system.h"

#include "pc/pc_test.h"

using OperatingSystemTest = PcTest;

namespace {

// The flags that hold, short.
std::string Flags(const clsOpSys& system) {
    std::string text;
    const std::pair<bool, const char*> flags[] = {
        {system.IsWin95, "95 "},     {system.IsWin98, "98 "},  {system.IsWinME, "Me "},  {system.IsWinNT, "NT "},
        {system.IsWin2K, "2K "},     {system.IsWinXP, "XP "},  {system.Is2003, "2003 "}, {system.IsVista, "Vista "},
        {system.Is2008, "2008 "},    {system.Is2008R2, "R2 "}, {system.IsWin7, "7 "},    {system.IsWin8, "8 "},
        {system.IsServer, "Server "}};
    for (const auto& [holds, name] : flags)
        if (holds) text += name;
    return text;
}

}  // namespace

TEST_F(OperatingSystemTest, FlagsAreCumulativeAndNewSystemsBearTheirOwnName) {
    struct {
        Windows windows;
        const char *flags, *platform;
    } rows[] = {
        {Windows::w2000, "NT 2K ", "Windows 2000"},
        {Windows::xp, "NT 2K XP ", "Windows XP"},
        {Windows::xpX64, "NT 2K XP 2003 ", "Windows Server 2003"},  // told by the number alone
        {Windows::server2003, "NT 2K XP 2003 Server ", "Windows Server 2003"},
        {Windows::vista, "NT 2K XP Vista ", "Windows Vista"},
        {Windows::server2008, "NT 2K XP Vista 2008 Server ", "Windows Server 2008"},
        {Windows::seven, "NT 2K XP Vista 7 ", "Windows 7"},
        {Windows::server2008R2, "NT 2K XP Vista 2008 R2 7 Server ", "Windows Server 2008 R2"},
        {Windows::eightX64, "NT 2K XP 2003 Vista 7 8 ", "Windows 8"},
        {Windows::eightOne, "NT 2K XP 2003 Vista 7 8 ", "Windows 8.1 Pro Build 9600"},
        {Windows::server2012, "NT 2K XP 2003 Vista 2008 R2 7 8 Server ", "Windows Server 2012 Standard Build 9200"},
        {Windows::server2012R2, "NT 2K XP 2003 Vista 2008 R2 7 8 Server ",
         "Windows Server 2012 R2 Standard Build 9600"},
        {Windows::ten, "NT 2K XP Vista 7 8 ", "Windows 10 Pro Build 19045"},
        {Windows::eleven, "NT 2K XP Vista 7 8 ", "Windows 11 Pro Build 22631"},
        {Windows::server2022, "NT 2K XP Vista 2008 R2 7 8 Server ", "Windows Server 2022 Standard Build 20348"}};
    for (const auto& row : rows) {
        SimulatedPc::UseWindows(row.windows);
        clsOpSys system;
        EXPECT_EQ(Flags(system), row.flags) << row.platform;
        EXPECT_EQ(system.Platform(), row.platform);
        EXPECT_EQ(IsVistaOrLater(), system.IsVista);
    }
}

TEST_F(OperatingSystemTest, SystemsBeforeTheNewTechnology) {
    struct {
        uint32_t minor;
        const char *flags, *platform;
    } rows[] = {{0, "95 ", "Windows 95"}, {10, "98 ", "Windows 98"}, {90, "Me ", "Windows Me"}};
    for (const auto& row : rows) {
        Pc().version = {4, row.minor, 950, 1, 0, 0, 0, 1, ""};
        EXPECT_EQ(Flags(clsOpSys()), row.flags);
        EXPECT_EQ(clsOpSys().Platform(), row.platform);
    }
    Pc().version = {4, 0, 1381, 2, 6, 0, 0, 1, "Service Pack 6"};
    EXPECT_EQ(clsOpSys().Platform(), "Windows NT");
}

TEST_F(OperatingSystemTest, EditionsByTheirNumber) {
    struct {
        uint32_t number;
        const char* text;
    } rows[] = {{4, " Enterprise "},           {10, " Enterprise "},
                {25, " SBS Premium "},         {26, " Unknown (SKU Bit 26) "},
                {103, " Pro w/Media Center "}, {0xABCDABCD, " Unknown (SKU Bit 2882382797) "}};
    for (const auto& row : rows) {
        Pc().sku = row.number;
        EXPECT_EQ(clsOpSys().VistaSKU(), row.text);
    }
    Pc().sku = 21;
    EXPECT_EQ(clsOpSys().Version(), "Windows 7 Storage Standard (Version 6.1, Build 7601)");
}

TEST_F(OperatingSystemTest, EditionsBeforeVistaStandInAFile) {
    SimulatedPc::UseWindows(Windows::xp);
    EXPECT_EQ(clsOpSys().Version(), "Windows XP  Undefined Edition  (Version 5.1, Build 2600)");
    struct {
        const char *product, *text;
    } rows[] = {{"Windows XP HOME Edition", " Home "},
                {"Windows XP Media Center", " Media Center "},
                {"Windows XP Professional", " Professional "},
                {"Something", ""}};
    for (const auto& row : rows) {
        Pc().SetIni("C:\\Windows\\System32\\prodspec.ini", "Product Specification", "Product", row.product);
        EXPECT_EQ(clsOpSys().VistaSKU(), row.text);
    }
    Pc().SetIni("C:\\Windows\\System32\\prodspec.ini", "Product Specification", "Product", "Professional");
    Pc().AddFile("C:\\Windows\\ehome\\ehtray.exe");
    EXPECT_EQ(clsOpSys().VistaSKU(), " Media Center ");
}

TEST_F(OperatingSystemTest, FactsOfTheVersionRecord) {
    Pc().version.suiteMask = 0x1 | 0x10 | 0x80;
    clsOpSys system;
    EXPECT_TRUE(system.HasSBS && system.HasTS && system.HasDC);
    EXPECT_FALSE(system.HasAS || system.HasBO || system.HasSBSr);
    Pc().version.suiteMask = 0x2 | 0x4 | 0x20;
    clsOpSys other;
    EXPECT_TRUE(other.HasAS && other.HasBO && other.HasSBSr);
    EXPECT_FALSE(other.HasSBS || other.HasTS || other.HasDC);
    const char* names[] = {"Unknown", "NT Workstation", "Domain Controller", "NT Server"};
    for (uint8_t type = 0; type < 4; ++type) {
        Pc().version.productType = type;
        EXPECT_EQ(clsOpSys().ProductTypeName(), names[type]);
    }
    EXPECT_EQ(clsOpSys().WindowsMode, "Normal");
    Pc().SetEnv("SAFEBOOT_OPTION", "NETWORK");
    EXPECT_EQ(clsOpSys().WindowsMode, "Safe Mode with Networking");
}
