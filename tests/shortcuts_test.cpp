#include "system/shortcuts.h"

#include "pc/pc_test.h"

namespace {

class ShortcutsTest : public PcTest {};

}  // namespace

TEST_F(ShortcutsTest, WhatIsWrittenIsReadBack) {
    const std::string path = "C:\\Panel\\Run it.lnk";
    cShellLinkA written, read;
    uint16_t hotKey = cShellLinkA::MakeHotKey(6, 0x41);
    EXPECT_EQ(hotKey, 0x641);
    ASSERT_TRUE(written.CreateLink(path, "C:\\Panel\\Brevanta.exe", "/maintenance", "C:\\Panel", "\xC3\x9C" "ber", 7,
                                   hotKey, 2, "C:\\Panel\\applogo.ico"));
    ASSERT_TRUE(read.GetLinkInfo(path));
    EXPECT_EQ(read.ExeName, "C:\\Panel\\Brevanta.exe");
    EXPECT_EQ(read.ExeArgs, "/maintenance");
    EXPECT_EQ(read.WorkingDir, "C:\\Panel");
    EXPECT_EQ(read.Description, "\xC3\x9C" "ber");
    EXPECT_EQ(read.IconFile, "C:\\Panel\\applogo.ico");
    EXPECT_EQ(read.IconIndex, 2);
    EXPECT_EQ(read.ShowCommand, 7);
    uint8_t key = 0, modifier = 0;
    read.GetHotKeyInfo(key, modifier);
    EXPECT_EQ(key, 0x41);
    EXPECT_EQ(modifier, 6);
    ASSERT_TRUE(written.CreateLink(path, "C:\\A.exe", "", "", "", 1, 0, 0, ""));
    ASSERT_TRUE(read.GetLinkInfo(path));
    EXPECT_EQ(read.IconFile, "C:\\A.exe");
    EXPECT_EQ(read.ExeArgs, "");
}

TEST_F(ShortcutsTest, WhatIsNoShortcutLeavesThePropertiesEmpty) {
    Pc().AddFile("C:\\Text.lnk", "no shortcut");
    cShellLinkA link;
    ASSERT_TRUE(link.CreateLink("C:\\Good.lnk", "C:\\A.exe", "", "", "", 1, 0, 0, ""));
    for (const char* path : {"C:\\Text.lnk", "C:\\None.lnk", ""}) {
        ASSERT_TRUE(link.GetLinkInfo("C:\\Good.lnk"));
        EXPECT_FALSE(link.GetLinkInfo(path)) << path;
        EXPECT_EQ(link.ExeName + link.IconFile, "") << path;
    }
    EXPECT_FALSE(link.CreateLink("", "C:\\A.exe", "", "", "", 1, 0, 0, ""));
    EXPECT_FALSE(link.CreateLink("C:\\B.lnk", "", "", "", "", 1, 0, 0, ""));
    EXPECT_FALSE(link.CreateLink("C:\\No folder\\B.lnk", "C:\\A.exe", "", "", "", 1, 0, 0, ""));
    EXPECT_EQ(cShellLinkA::GetSystemFolderPath(0, 0x7777), "");
    EXPECT_NE(cShellLinkA::GetSystemFolderPath(0, 0x10), "");
}
