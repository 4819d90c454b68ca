#include <algorithm>
#include <vector>

#include "contract/contract.h"
#include "platform/machine.h"

namespace {

using FilesContract = ContractTest;

std::string Names(const std::string& folder, const std::string& pattern) {
    std::vector<std::string> names;
    EXPECT_TRUE(pc::ListFolder(folder, pattern, [&](const pc::FileInfo& info) {
        names.push_back(info.name);
        return true;
    })) << pattern;
    std::sort(names.begin(), names.end());
    std::string list;
    for (const std::string& name : names) list += (list.empty() ? "" : " ") + name;
    return list;
}

TEST_F(FilesContract, WhatIsMissingOrOfTheOtherKindFailsWithItsCode) {
    Write("file");
    ASSERT_TRUE(pc::MakeFolder(In("folder")));
    Write("folder\\inner");
    pc::File file;

    EXPECT_CODE(2, pc::GetFileInfo(In("none")).has_value());
    EXPECT_CODE(3, pc::GetFileInfo(In("none\\none")).has_value());
    EXPECT_CODE(2, pc::RemoveFile(In("none")));
    EXPECT_CODE(3, pc::RemoveFile(In("none\\none")));
    EXPECT_CODE(5, pc::RemoveFile(In("folder")));
    EXPECT_CODE(2, pc::RemoveFolder(In("none")));
    EXPECT_CODE(267, pc::RemoveFolder(In("file")));
    EXPECT_CODE(145, pc::RemoveFolder(In("folder")));
    EXPECT_CODE(3, pc::MakeFolder(In("none\\none")));
    EXPECT_CODE(183, pc::MakeFolder(In("folder")));
    EXPECT_CODE(183, pc::MakeFolder(In("file")));
    EXPECT_CODE(2, pc::ChangeAttributes(In("none"), pc::attributeNormal));
    EXPECT_CODE(2, file.Open(In("none"), pc::FileMode::read));
    EXPECT_CODE(3, file.Open(In("none\\none"), pc::FileMode::write));
    EXPECT_CODE(5, file.Open(In("folder"), pc::FileMode::read));
    EXPECT_CODE(5, file.Open(In("folder"), pc::FileMode::write));
    EXPECT_CODE(80, file.Open(In("file"), pc::FileMode::createNew));
    EXPECT_CODE(2, pc::MovePath(In("none"), In("new"), true));
    EXPECT_CODE(3, pc::MovePath(In("file"), In("none\\new"), true));
    EXPECT_CODE(2, pc::CopyOneFile(In("none"), In("new"), false));
    EXPECT_CODE(3, pc::CopyOneFile(In("file"), In("none\\new"), false));
    EXPECT_CODE(5, pc::CopyOneFile(In("folder"), In("new"), false));
    EXPECT_CODE(3, pc::ListFolder(In("none"), "*", [](const pc::FileInfo&) { return true; }));
    EXPECT_CODE(3, pc::GetFileInfo("").has_value());
    EXPECT_TRUE(pc::CanOpenFile(In("file")));
    EXPECT_FALSE(pc::CanOpenFile(In("folder")));
    EXPECT_EQ("text", Read("file"));
}

TEST_F(FilesContract, ReadOnlyKeepsTheContentButNotTheName) {
    Write("file");
    ASSERT_TRUE(pc::ChangeAttributes(In("file"), pc::attributeReadOnly));
    pc::File file;
    EXPECT_CODE(5, pc::RemoveFile(In("file")));
    EXPECT_CODE(5, file.Open(In("file"), pc::FileMode::write));
    EXPECT_CODE(5, file.Open(In("file"), pc::FileMode::append));
    EXPECT_CODE(5, file.Open(In("file"), pc::FileMode::readWrite));
    EXPECT_TRUE(pc::MovePath(In("file"), In("moved"), false));
    Write("other");
    EXPECT_CODE(5, pc::CopyOneFile(In("other"), In("moved"), false));
    EXPECT_EQ("text", Read("moved"));
    EXPECT_TRUE(pc::CopyOneFile(In("moved"), In("copy"), true));
    EXPECT_TRUE(pc::GetFileInfo(In("copy"))->attributes & pc::attributeReadOnly);
    EXPECT_TRUE(pc::ChangeAttributes(In("moved"), pc::attributeNormal));
    EXPECT_TRUE(pc::RemoveFile(In("moved")));
}

TEST_F(FilesContract, OpenFilesAreSharedForReadingOnly) {
    Write("file");
    pc::File first, second;
    ASSERT_TRUE(first.Open(In("file"), pc::FileMode::read));
    EXPECT_TRUE(second.Open(In("file"), pc::FileMode::read));
    second.Close();
    EXPECT_CODE(32, second.Open(In("file"), pc::FileMode::append));
    EXPECT_CODE(32, second.Open(In("file"), pc::FileMode::write));
    EXPECT_CODE(32, pc::RemoveFile(In("file")));
    EXPECT_CODE(32, pc::MovePath(In("file"), In("new"), true));
    Write("other");
    EXPECT_CODE(32, pc::CopyOneFile(In("other"), In("file"), false));
    EXPECT_CODE(5, pc::MovePath(In("other"), In("file"), true));
    EXPECT_EQ("text", Read("file"));
    first.Close();

    ASSERT_TRUE(first.Open(In("file"), pc::FileMode::append));
    EXPECT_CODE(32, second.Open(In("file"), pc::FileMode::read));
    EXPECT_CODE(32, pc::RemoveFile(In("file")));
    EXPECT_TRUE(pc::GetFileInfo(In("file")).has_value());
    first.Close();
    EXPECT_TRUE(pc::RemoveFile(In("file")));
}

TEST_F(FilesContract, ReadWriteSeekAndAppend) {
    pc::File file;
    ASSERT_TRUE(file.Open(In("file"), pc::FileMode::createNew));
    EXPECT_TRUE(file.Write("abcdef", 6));
    EXPECT_TRUE(file.Seek(2));
    EXPECT_TRUE(file.Write("XY", 2));
    char buffer[16] = "";
    EXPECT_EQ(2u, file.Read(buffer, sizeof buffer).value_or(99));
    EXPECT_EQ('e', buffer[0]);
    EXPECT_EQ(0u, file.Read(buffer, sizeof buffer).value_or(99));
    EXPECT_EQ(6u, file.Size());
    ASSERT_TRUE(file.Open(In("file"), pc::FileMode::append));
    EXPECT_TRUE(file.Write("+", 1));
    EXPECT_FALSE(file.Read(buffer, 1));
    ASSERT_TRUE(file.Open(In("file"), pc::FileMode::readWrite));
    EXPECT_TRUE(file.Write("0", 1));
    ASSERT_TRUE(file.Open(In("file"), pc::FileMode::read));
    EXPECT_FALSE(file.Write("x", 1));
    file.Close();
    EXPECT_EQ("0bXYef+", Read("file"));
    Write("file", "");
    EXPECT_EQ("", Read("file"));
    Write("file", "12345");
    EXPECT_FALSE(pc::ReadWholeFile(In("file"), 4));
    EXPECT_EQ("12345", pc::ReadWholeFile(In("file"), 5).value_or(""));
    pc::File moved;
    ASSERT_TRUE(file.Open(In("file"), pc::FileMode::read));
    moved = std::move(file);
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(5u, moved.Size());
}

TEST_F(FilesContract, MovesAndCopies) {
    Write("a", "A");
    Write("b", "B");
    EXPECT_CODE(183, pc::MovePath(In("a"), In("b"), false));
    EXPECT_TRUE(pc::MovePath(In("a"), In("A"), false));
    EXPECT_TRUE(pc::MovePath(In("a"), In("b"), true));
    EXPECT_EQ("A", Read("b"));
    EXPECT_FALSE(IsThere("a"));
    EXPECT_CODE(80, pc::CopyOneFile(In("b"), In("b"), true));
    Write("c", "long content");
    EXPECT_TRUE(pc::CopyOneFile(In("b"), In("c"), false));
    EXPECT_EQ("A", Read("c"));
    ASSERT_TRUE(pc::MakeFolder(In("one")));
    ASSERT_TRUE(pc::MakeFolder(In("two")));
    Write("one\\inner", "I");
    EXPECT_CODE(183, pc::MovePath(In("one"), In("two"), false));
    EXPECT_CODE(5, pc::MovePath(In("one"), In("two"), true));
    EXPECT_CODE(5, pc::MovePath(In("b"), In("two"), true));
    EXPECT_TRUE(pc::MovePath(In("one"), In("two\\one"), false));
    EXPECT_EQ("I", Read("two\\one\\inner"));
}

TEST_F(FilesContract, ListingsMatchTheLongNameOnly) {
    for (const char* name : {"a.tmp", "B.TMP", "c.tmpx", "readme", "x.y.log"}) Write(name);
    ASSERT_TRUE(pc::MakeFolder(In("sub.tmp")));
    EXPECT_EQ("B.TMP a.tmp c.tmpx readme sub.tmp x.y.log", Names(folder, "*"));
    EXPECT_EQ("B.TMP a.tmp c.tmpx readme sub.tmp x.y.log", Names(folder, "*.*"));
    EXPECT_EQ("B.TMP a.tmp sub.tmp", Names(folder, "*.tmp"));
    EXPECT_EQ("B.TMP a.tmp", Names(folder, "?.TMP"));
    EXPECT_EQ("x.y.log", Names(folder, "x*.log"));
    EXPECT_EQ("readme", Names(folder, "README"));
    EXPECT_EQ("", Names(folder, "none*"));
    EXPECT_EQ("", Names(In("sub.tmp"), "*"));
    EXPECT_EQ("readme", Names(folder + "\\", "readme"));
    int seen = 0;
    EXPECT_TRUE(pc::ListFolder(folder, "*", [&](const pc::FileInfo&) { return ++seen < 2; }));
    EXPECT_EQ(2, seen);
    EXPECT_TRUE(pc::ListFolder(folder, "*", [&](const pc::FileInfo& info) {
        if (!info.IsFolder()) pc::RemoveFile(In(info.name));
        return true;
    }));
    EXPECT_EQ("sub.tmp", Names(folder, "*"));
}

TEST_F(FilesContract, NamesAsThePlatformReadsThem) {
    Write("Mixed Case.txt", "M");
    EXPECT_EQ("M", Read("mixed case.TXT"));
    EXPECT_EQ("M", Read("mixed case.txt. ."));
    EXPECT_EQ("M", pc::ReadWholeFile(folder + "/mixed case.txt").value_or(""));
    EXPECT_EQ("M", Read(".\\x\\..\\Mixed Case.txt"));
    Write("caf\xC3\xA9 \xD0\x96", "U");
    EXPECT_EQ("U", Read("CAF\xC3\x89 \xD0\xB6"));
    EXPECT_EQ("caf\xC3\xA9 \xD0\x96", Names(folder, "caf*"));
    EXPECT_FALSE(IsThere("Mixed*"));
    EXPECT_CODE(123, pc::MakeFolder(In("a*b")));
    EXPECT_CODE(123, pc::MakeFolder(In("a<b")));
    EXPECT_TRUE(pc::MakeFolder(In("closed\\")));
    EXPECT_TRUE(pc::GetFileInfo(In("closed\\"))->IsFolder());
    EXPECT_TRUE(pc::RemoveFolder(In("closed\\")));
}

TEST_F(FilesContract, FoldersWithTheirParents) {
    EXPECT_TRUE(pc::MakeSureFolderPathExists(In("a\\b\\c")));
    EXPECT_TRUE(IsThere("a\\b"));
    EXPECT_FALSE(IsThere("a\\b\\c"));
    EXPECT_TRUE(pc::MakeSureFolderPathExists(In("a\\b\\c\\")));
    EXPECT_TRUE(IsThere("a\\b\\c"));
    Write("file");
    EXPECT_CODE(267, pc::MakeSureFolderPathExists(In("file\\x\\")));
    EXPECT_EQ(0u, pc::ShellMakeFolder(In("s\\t")));
    EXPECT_EQ(183u, pc::ShellMakeFolder(In("s\\t")));
    EXPECT_EQ(161u, pc::ShellMakeFolder("relative\\path"));
    // Deeper than the classic limit of 260 characters.
    std::string deep = "deep";
    for (int i = 0; i < 30; ++i) deep += "\\level " + std::string(1, static_cast<char>('a' + i % 26)) + "..padded";
    EXPECT_TRUE(pc::MakeSureFolderPathExists(In(deep) + "\\"));
    Write(deep + "\\file", "D");
    EXPECT_EQ("D", Read(deep + "\\file"));
    EXPECT_EQ("file", Names(In(deep), "*"));
}

TEST_F(FilesContract, Attributes) {
    Write("file");
    EXPECT_TRUE(pc::ChangeAttributes(In("file"), pc::attributeReadOnly | pc::attributeArchive));
    EXPECT_EQ(pc::attributeReadOnly | pc::attributeArchive, pc::GetFileInfo(In("file"))->attributes);
    EXPECT_TRUE(pc::ChangeAttributes(In("file"), pc::attributeHidden | pc::attributeArchive));
    EXPECT_EQ(pc::attributeHidden | pc::attributeArchive, pc::GetFileInfo(In("file"))->attributes);
    auto info = pc::GetFileInfo(In("file"));
    ASSERT_TRUE(info);
    EXPECT_EQ(4u, info->size);
    EXPECT_EQ("file", info->name);
}

TEST_F(FilesContract, TemporaryFiles) {
    std::string temp = pc::TempFolder();
    EXPECT_TRUE(temp.ends_with("\\"));
    EXPECT_TRUE(pc::GetFileInfo(temp).has_value());
    std::string first = pc::MakeTempFile(folder, "_abcd"), second = pc::MakeTempFile(folder, "_abcd");
    EXPECT_NE(first, second);
    EXPECT_EQ(folder + "\\_ab", first.substr(0, folder.size() + 4));
    EXPECT_EQ(0u, pc::GetFileInfo(first)->size);
    EXPECT_CODE(267, !pc::MakeTempFile(In("none"), "x").empty());
}

TEST_F(FilesContract, FullPaths) {
    EXPECT_EQ("C:\\a\\c", pc::FullPath("C:\\a\\b\\..\\.\\c"));
    EXPECT_EQ("C:\\c", pc::FullPath("C:\\..\\..\\c"));
    EXPECT_EQ("C:\\a\\b\\", pc::FullPath("C:/a//b\\"));
    EXPECT_EQ("C:\\a b", pc::FullPath("C:\\a b. "));
    EXPECT_EQ("\\\\server\\share\\x", pc::FullPath("\\\\server\\share\\y\\..\\x"));
    EXPECT_EQ("C:\\", pc::FullPath("C:\\"));
}

TEST_F(FilesContract, DrivesTellOfThemselves) {
    auto space = pc::GetDiskSpace("C:\\");
    ASSERT_TRUE(space);
    EXPECT_GT(space->total, 1e6);
    EXPECT_LE(space->free, space->total);
    EXPECT_FALSE(pc::GetDiskSpace(In("none")));
    EXPECT_NE(std::string::npos, pc::LogicalDrives().find(std::string("C:\\\0", 4)));
    EXPECT_TRUE(pc::LogicalDrives().ends_with(std::string("\0\0", 2)));
    auto drive = pc::GetDriveInfo("C:\\");
    ASSERT_TRUE(drive);
    EXPECT_EQ(3u, drive->type);
    EXPECT_TRUE(drive->ready);
    EXPECT_FALSE(pc::GetDriveInfo("Q:\\"));
    EXPECT_FALSE(pc::GetFileInfo("Q:\\file"));
    EXPECT_EQ("", pc::FileVersion(In("none")));
    Write("plain.txt");
    EXPECT_EQ("", pc::FileVersion(In("plain.txt")));
}

TEST_F(FilesContract, ShellCopies) {
    constexpr uint32_t quiet = 0x4 | 0x10 | 0x200 | 0x400;
    ASSERT_TRUE(pc::MakeFolder(In("from")));
    ASSERT_TRUE(pc::MakeFolder(In("from\\sub")));
    Write("from\\1.txt", "1");
    Write("from\\2.log", "2");
    Write("from\\3.txt", "3");
    Write("from\\sub\\3.txt", "3");
    EXPECT_EQ(0, pc::ShellCopy(In("from"), In("copy"), quiet));
    EXPECT_EQ("3", Read("copy\\sub\\3.txt"));
    EXPECT_EQ(0, pc::ShellCopy(In("from"), In("copy"), quiet));  // now into the folder
    EXPECT_EQ("3", Read("copy\\from\\sub\\3.txt"));
    EXPECT_EQ(0, pc::ShellCopy(In("from\\*.txt"), In("texts"), quiet));
    EXPECT_EQ("1.txt 3.txt", Names(In("texts"), "*"));
    EXPECT_EQ(0, pc::ShellCopy(In("from\\1.txt"), In("renamed.txt"), quiet));
    EXPECT_EQ("1", Read("renamed.txt"));
    EXPECT_NE(0, pc::ShellCopy(In("none"), In("x"), quiet));
}

TEST_F(FilesContract, RunningProgramsAndTheEmptyDevice) {
    pc::File file;
    EXPECT_CODE(5, pc::RemoveFile(pc::ProgramPath()));
    EXPECT_CODE(32, file.Open(pc::ProgramPath(), pc::FileMode::append));
    EXPECT_TRUE(file.Open(In("nul"), pc::FileMode::write));
    EXPECT_TRUE(file.Write("x", 1));
    EXPECT_FALSE(IsThere("nul"));
    Write("file");
    EXPECT_CODE(32, pc::CopyOneFile(In("file"), In("file"), false));
    ASSERT_TRUE(file.Open(In("file"), pc::FileMode::append));
    EXPECT_TRUE(pc::CopyOneFile(In("file"), In("copy"), false));
    EXPECT_EQ("text", Read("copy"));
}

TEST_F(FilesContract, RedirectionHidesTheSystemFolderOfTheOtherWidth) {
    uintptr_t cookie = 0;
    EXPECT_EQ(place.hasTwoViews, pc::DisableRedirection(cookie));
    if (!place.hasTwoViews) return;
    std::string name = pc::SystemFolder() + "\\brevanta_contract.txt";
    EXPECT_TRUE(pc::WriteWholeFile(name, "64"));
    pc::RevertRedirection(cookie);
    EXPECT_FALSE(pc::GetFileInfo(name));
    EXPECT_EQ("64", pc::ReadWholeFile(pc::WindowsFolder() + "\\sysnative\\brevanta_contract.txt").value_or(""));
    ASSERT_TRUE(pc::DisableRedirection(cookie));
    EXPECT_TRUE(pc::RemoveFile(name));
    pc::RevertRedirection(cookie);
}

}  // namespace
