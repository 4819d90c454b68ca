#include "contract/contract.h"
#include "platform/shell_link.h"

namespace {

using ShellContract = ContractTest;

pc::ShellLink LinkTo(const std::string& target) {
    pc::ShellLink link;
    link.target = target;
    return link;
}

TEST_F(ShellContract, ShortcutsKeepTheirFields) {
    // Some systems forget the window state: it stays the usual one here.
    const pc::ShellLink link = {
        In("none.exe"), "/a \"b c\"", folder, "caf\xC3\xA9 \xD0\x96", In("icon.ico"), 2, 0x0641, 1};
    ASSERT_TRUE(pc::SaveShellLink(In("a.lnk"), LinkTo(In("old.exe"))));
    ASSERT_TRUE(pc::SaveShellLink(In("a.lnk"), link));
    pc::ShellLink read;
    ASSERT_TRUE(pc::LoadShellLink(In("a.lnk"), read));
    EXPECT_EQ(link.target, read.target);
    EXPECT_EQ(link.arguments, read.arguments);
    EXPECT_EQ(link.workingFolder, read.workingFolder);
    EXPECT_EQ(link.description, read.description);
    EXPECT_EQ(link.iconFile, read.iconFile);
    EXPECT_EQ(link.iconIndex, read.iconIndex);
    EXPECT_EQ(link.hotKey, read.hotKey);
    EXPECT_EQ(link.showCommand, read.showCommand);
}

TEST_F(ShellContract, WhatIsNoShortcutLeavesTheFieldsAlone) {
    Write("text.lnk", "This is no shortcut but a text, and longer than the head of one would be: 76 bytes.");
    Write("empty.lnk", "");
    for (const char* name : {"text.lnk", "empty.lnk", "none.lnk"}) {
        pc::ShellLink link = LinkTo("kept");
        EXPECT_FALSE(pc::LoadShellLink(In(name), link)) << name;
        EXPECT_EQ("kept", link.target) << name;
    }
    EXPECT_FALSE(pc::SaveShellLink(In("none\\a.lnk"), LinkTo(In("x.exe"))));
}

TEST_F(ShellContract, NamesThatAreNoTextSurvive) {
    const std::string half = "\xED\xA0\x80";  // one half of a pair, as UTF-8's scheme would write it
    pc::Key opened;
    ASSERT_EQ(0, pc::CreateKey(pc::currentUser, key, pc::keyAllAccess, opened));
    ASSERT_EQ(0, pc::SetValue(opened, half, pc::typeSz, half + "x" + '\0'));
    std::string name, data;
    uint32_t type = 0;
    ASSERT_EQ(0, pc::EnumValue(opened, 0, name, type, data));
    EXPECT_EQ(half, name);
    EXPECT_EQ(half + "x" + '\0', data);
    EXPECT_EQ(0, pc::QueryValue(opened, name, type, data));
    EXPECT_EQ(half + "x" + '\0', data);
}

}  // namespace
