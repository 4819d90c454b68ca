#include "pc/pc_test.h"
#include "system/paths.h"
#include "system/program_state.h"

namespace {

class FindAndMoveTest : public PcTest {
protected:
    std::vector<std::string> Find(const std::string& folder, const std::string& patterns, bool recurse = true) {
        std::vector<std::string> found;
        FindFiles(folder, patterns, found, recurse);
        return found;
    }
};

}  // namespace

TEST_F(FindAndMoveTest, PatternsMatchAsTheSystemsListingHasThem) {
    for (const char* name :
         {"History", "History Index-journal", "history.bak", "prehistory.txt", "a.TXT", "é.txt", "noext"})
        Pc().AddFile(std::string("C:\\f\\") + name);
    Pc().AddFile("C:\\f\\sub\\b.txt", "", pc::attributeHidden | pc::attributeSystem | pc::attributeReadOnly);
    struct {
        const char* patterns;
        bool recurse;
        std::vector<std::string> names;
    } rows[] = {{"history*.*", false, {"History", "History Index-journal", "history.bak"}},
                {"history.*", false, {"History", "history.bak"}},
                {"*.txt", false, {"a.TXT", "prehistory.txt", "é.txt"}},
                {"*.txt;a.*;*.TXT", true, {"a.TXT", "prehistory.txt", "é.txt", "sub\\b.txt"}},
                {"?.txt", false, {"a.TXT", "é.txt"}},
                {"*o*e*t", false, {"noext"}},
                {"sub", true, {}},
                {"", true, {}},
                {";;", true, {}}};
    for (const auto& row : rows) {
        std::vector<std::string> paths;
        for (const std::string& name : row.names) paths.push_back("C:\\f\\" + name);
        EXPECT_LINES(Find("C:\\f", row.patterns, row.recurse), paths) << row.patterns;
    }
    EXPECT_EQ(Find("C:\\f\\", "*.*").size(), 8u);
    EXPECT_EQ(Find("C:\\f\\", "*.*")[0].find("\\\\"), std::string::npos);
    EXPECT_TRUE(Find("C:\\missing", "*.*").empty());
    EXPECT_TRUE(Find("", "*.*").empty());
}

TEST_F(FindAndMoveTest, ALinkToAFolderIsNotEntered) {
    Pc().AddFile("C:\\elsewhere\\precious.txt");
    Pc().AddFile("C:\\f\\own.txt");
    Pc().AddJunction("C:\\f\\link", "C:\\elsewhere");
    Pc().AddJunction("C:\\f\\round", "C:\\f");
    Pc().AddFileLink("C:\\f\\zlink.txt", "C:\\elsewhere\\precious.txt");
    EXPECT_LINES(Find("C:\\f", "*.*"), {"C:\\f\\own.txt", "C:\\f\\zlink.txt"});
}

TEST_F(FindAndMoveTest, ALongSearchLetsTheWindowLiveAndCanBeCancelled) {
    for (int i = 0; i < 20000; ++i) Pc().AddFile("C:\\f\\" + std::to_string(i % 7) + "\\" + std::to_string(i) + ".txt");
    State().bCancelSearch = true;  // left from an earlier search
    EXPECT_EQ(Find("C:\\f", "*.txt").size(), 20000u);
    Pc().AtPump(10, [] { State().bCancelSearch = true; });
    size_t found = Find("C:\\f", "*.txt").size();
    EXPECT_GT(found, 0u);
    EXPECT_LT(found, 3000u);
    EXPECT_FALSE(State().bCancelSearch);
}

TEST_F(FindAndMoveTest, AMoveReplacesMergesAndGoesOnPastWhatIsInUse) {
    Pc().AddFile("C:\\u\\a.ini", "new", pc::attributeArchive);
    Pc().AddFile("C:\\u\\b.png", "new");
    Pc().AddFile("C:\\u\\locked.dll", "new");
    Pc().AddFile("C:\\u\\Skins\\s.urf", "new");
    Pc().AddFile("C:\\u\\Skins\\busy.urf", "new");
    Pc().AddFile("C:\\u\\Fresh\\x\\y.txt", "new");
    Pc().AddFile("C:\\u\\Half\\z.txt", "new");
    Pc().AddFile("C:\\u\\Half\\held.txt", "new");
    Pc().AddFile("C:\\p\\a.ini", "old", pc::attributeReadOnly);
    Pc().AddFile("C:\\p\\locked.dll", "old");
    Pc().AddFile("C:\\p\\Skins\\s.urf", "old");
    Pc().AddFile("C:\\p\\Skins\\mine.urf", "mine");
    Pc().Lock("C:\\p\\locked.dll");
    Pc().Lock("C:\\u\\Skins\\busy.urf");
    Pc().Lock("C:\\u\\Half\\held.txt");
    EXPECT_FALSE(MoveFileQuiet("C:\\u\\*.*", "C:\\p\\"));
    EXPECT_LINES(Pc().Tree("C:\\u"), {"C:\\u\\Half\\", "C:\\u\\Half\\held.txt", "C:\\u\\locked.dll", "C:\\u\\Skins\\",
                                      "C:\\u\\Skins\\busy.urf"});
    for (const char* name : {"a.ini", "b.png", "Skins\\s.urf", "Fresh\\x\\y.txt", "Half\\z.txt"})
        EXPECT_EQ(Pc().FileText(std::string("C:\\p\\") + name), "new") << name;
    EXPECT_EQ(Pc().FileText("C:\\p\\Skins\\mine.urf"), "mine");
    EXPECT_EQ(Pc().FileText("C:\\p\\locked.dll"), "old");
}

TEST_F(FindAndMoveTest, AReadOnlyTargetThatCannotBeReplacedStaysReadOnly) {
    Pc().AddFile("C:\\u\\a.ini", "new");
    Pc().AddFile("C:\\p\\a.ini", "old", pc::attributeReadOnly);
    Pc().Lock("C:\\u\\a.ini");
    EXPECT_FALSE(MoveFileQuiet("C:\\u\\*.*", "C:\\p"));
    EXPECT_EQ(Pc().Attributes("C:\\p\\a.ini"), pc::attributeReadOnly);
    EXPECT_EQ(Pc().FileText("C:\\p\\a.ini"), "old");
}

TEST_F(FindAndMoveTest, SingleItems) {
    Pc().AddFile("C:\\u\\a.zip", "new");
    Pc().AddFile("C:\\p\\a.zip", "old");
    EXPECT_TRUE(MoveFileQuiet("C:\\u\\a.zip", "C:\\p", true));
    EXPECT_EQ(Pc().FileText("C:\\p\\a (2).zip"), "new");
    EXPECT_EQ(Pc().FileText("C:\\p\\a.zip"), "old");
    EXPECT_TRUE(MoveFileQuiet("C:\\p\\a.zip", "C:\\p\\b.zip"));
    EXPECT_TRUE(MoveFileQuiet("C:\\p\\*.zip", "C:\\made\\for it"));
    EXPECT_LINES(Pc().Tree("C:\\made"),
                 {"C:\\made\\for it\\", "C:\\made\\for it\\a (2).zip", "C:\\made\\for it\\b.zip"});
    EXPECT_FALSE(MoveFileQuiet("C:\\nothing.txt", "C:\\p"));
    EXPECT_FALSE(MoveFileQuiet("C:\\made\\*.*", "C:\\made\\for it"));  // into itself
    EXPECT_TRUE(CopyFileQuiet("C:\\made\\for it\\*.zip", "C:\\p"));
    EXPECT_EQ(Pc().FileText("C:\\p\\b.zip"), "old");
    EXPECT_EQ(Pc().FileText("C:\\made\\for it\\b.zip"), "old");
    EXPECT_EQ(FileOrDir("C:\\p"), "dir");
    EXPECT_EQ(FileOrDir("C:\\p\\b.zip"), "file");
    EXPECT_EQ(FileOrDir("p"), "neither");
    EXPECT_TRUE(MakeFolderPath("C:\\x\\y\\z"));
    EXPECT_FALSE(MakeFolderPath("C:\\p\\b.zip\\z"));
    EXPECT_FALSE(MakeFolderPath(""));
}
