#include "system/shortcuts.h"

#include "pc/pc_test.h"

namespace {

class ShortcutsTest : public PcTest {};

}  // namespace

TEST_F(ShortcutsTest, WhatIsWrittenIsReadBack) {
    cShellLinkA written, read;
    uint16_t hotKey = cShellLinkA::MakeHotKey(6, 0x41);
    ASSERT_TRUE(written.CreateLink("C:\\a.lnk", "C:\\Panel\\B.exe", "/x", "C:\\Panel",
                                   "\xC3\x9C"
                                   "ber",
                                   7, hotKey, 2, ""));
    ASSERT_TRUE(read.GetLinkInfo("C:\\a.lnk"));
    EXPECT_EQ(read.ExeName + "|" + read.ExeArgs + "|" + read.WorkingDir + "|" + read.Description + "|" + read.IconFile,
              "C:\\Panel\\B.exe|/x|C:\\Panel|\xC3\x9C"
              "ber|C:\\Panel\\B.exe");  // the icon is the target's own
    EXPECT_EQ(read.IconIndex, 2);
    EXPECT_EQ(read.ShowCommand, 7);
    uint8_t key = 0, modifier = 0;
    read.GetHotKeyInfo(key, modifier);
    EXPECT_EQ(key, 0x41);
    EXPECT_EQ(modifier, 6);
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
