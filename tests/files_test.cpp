#include "system/files.h"

#include "pc/pc_test.h"

using namespace std::string_literals;

namespace {

class FilesTest : public PcTest {
protected:
    clsFSO fso;
};

constexpr const char* precious = "C:\\Precious\\keep.txt";

// A tree with all that can stand in the way of deleting it, and three links to what must stay.
void PlantTree() {
    Pc().AddFile(precious, "keep", pc::attributeReadOnly);
    Pc().AddFile("C:\\T\\a.txt");
    Pc().AddFile("C:\\T\\read only.txt", "x", pc::attributeReadOnly | pc::attributeHidden);
    Pc().AddFile("C:\\T\\semi;colon.txt");
    Pc().AddFile("C:\\T\\sub\\deep\\b.log");
    Pc().AddFolder("C:\\T\\sub\\empty", pc::attributeFolder | pc::attributeReadOnly);
    Pc().AddJunction("C:\\T\\sub\\junction", "C:\\Precious");
    Pc().AddJunction("C:\\T\\dangling", "C:\\Nowhere");
    Pc().AddFileLink("C:\\T\\link.txt", precious);
}

void ExpectPreciousUntouched() {
    EXPECT_EQ(Pc().FileText(precious), "keep");
    EXPECT_EQ(Pc().Attributes(precious), pc::attributeReadOnly);
    for (const std::string& line : Pc().journal) EXPECT_EQ(line.find("Precious"), std::string::npos) << line;
}

std::vector<std::string> Items(const std::string& list) {
    std::vector<std::string> items;
    for (size_t start = 0, end; (end = list.find(';', start)) != std::string::npos; start = end + 1)
        items.push_back(list.substr(start, end - start));
    return items;
}

}  // namespace

TEST_F(FilesTest, KillFileClearsTheWayOnce) {
    struct {
        const char* path;
        bool result, stays;
        std::vector<std::string> journal;
    } cases[] = {
        {"C:\\plain", true, false, {"delete C:\\plain"}},
        {"C:\\none", true, false, {}},
        {"C:\\readonly",
         true,
         false,
         {"owner C:\\readonly = Ann", "attributes C:\\readonly = 128", "attributes C:\\readonly = 32",
          "delete C:\\readonly"}},
        {"C:\\denied", false, true, {}},
    };
    Pc().AddAccount("Ann", "S-1-5-21-1-2-3-1001");
    Pc().SetEnv("username", "Ann");
    Pc().AddFile("C:\\plain");
    Pc().AddFile("C:\\readonly", "x", pc::attributeReadOnly);
    Pc().AddFile("C:\\denied");
    Pc().Deny("C:\\denied");
    for (const auto& c : cases) {
        Pc().journal.clear();
        Pc().trace.clear();
        EXPECT_EQ(fso.KillFile(c.path), c.result) << c.path;
        EXPECT_EQ(Pc().Exists(c.path), c.stays) << c.path;
        if (!c.stays) {
            EXPECT_JOURNAL(c.journal);
        }
        EXPECT_EQ(Pc().Traced("C:\\denied"s + "clsFSO\\KillFile - Unable to delete:  "), c.stays);
        std::vector<std::string> last(Pc().trace.end() - 3, Pc().trace.end());
        EXPECT_LINES(last, {"\tclsFSO\\KillFile: ", "\t\t- passed: "s + c.path,
                            c.result ? "\t\t- returned: True" : "\t\t- returned: False"});
    }
}

TEST_F(FilesTest, DelTreeTakesAllAndNothingBehindALink) {
    PlantTree();
    std::string deep = "C:\\T";
    for (int level = 0; level < 300; ++level) deep += "\\d";
    Pc().AddFolder(deep);
    EXPECT_TRUE(fso.DelTree32("C:\\T"));
    EXPECT_FALSE(Pc().Exists("C:\\T"));
    ExpectPreciousUntouched();
    Pc().AddJunction("C:\\Link", "C:\\Precious");
    EXPECT_TRUE(fso.DelTree32("C:\\Link"));
    EXPECT_FALSE(Pc().Exists("C:\\Link"));
    ExpectPreciousUntouched();
    EXPECT_TRUE(fso.DelTree32("C:\\T"));  // nothing left of it
    EXPECT_FALSE(fso.DelTree32(precious));
}

TEST_F(FilesTest, ALinkThatStaysIsNotTakenOver) {
    PlantTree();
    Pc().FailCall(1);
    EXPECT_TRUE(fso.KillFile("C:\\T\\link.txt"));
    EXPECT_JOURNAL({"delete C:\\T\\link.txt"});
    ExpectPreciousUntouched();
}

TEST_F(FilesTest, DelTreeClearsReadOnlyOnlyWhereItIs) {
    Pc().AddFile("C:\\T\\a");
    Pc().AddFile("C:\\T\\b", "", pc::attributeReadOnly);
    int before = Pc().calls;
    EXPECT_TRUE(fso.DelTree32("C:\\T"));
    EXPECT_LE(Pc().calls - before, 6);  // the folder's own attributes, a listing, a clearing, three removals
    EXPECT_JOURNAL({"delete C:\\T\\a", "attributes C:\\T\\b = 128", "delete C:\\T\\b", "remove folder C:\\T"});
}

TEST_F(FilesTest, DelTreeGoesOnPastAFileInUse) {
    PlantTree();
    Pc().Lock("C:\\T\\sub\\deep\\b.log");
    EXPECT_FALSE(fso.DelTree32("C:\\T"));
    EXPECT_EQ(Pc().Tree("C:\\T"),
              (std::vector<std::string>{"C:\\T\\sub\\", "C:\\T\\sub\\deep\\", "C:\\T\\sub\\deep\\b.log"}));
    ExpectPreciousUntouched();
}

TEST_F(FilesTest, RootsAreNeverDeletedAsTrees) {
    Pc().AddFile(precious);
    Pc().AddDrive("\\\\srv\\share");
    for (const char* root : {"C:\\", "C:", "C:\\\\", "C:\\Windows\\..", "\\\\srv\\share\\", "\\", ""}) {
        fso.DelTree32(root);
        fso.KillDir(root, false);
    }
    EXPECT_TRUE(Pc().Exists(precious));
    EXPECT_TRUE(Pc().journal.empty());
}

TEST_F(FilesTest, EveryFailingCallLeavesDelTreeHonest) {
    for (int call = 1;; ++call) {
        SimulatedPc& pc = SimulatedPc::UseWindows(Windows::seven);
        PlantTree();
        pc.FailCall(call);
        int before = pc.calls;
        bool isGone = fso.DelTree32("C:\\T");
        EXPECT_EQ(isGone, !pc.Exists("C:\\T")) << call;
        ExpectPreciousUntouched();
        if (pc.calls - before < call) break;
        ASSERT_LT(call, 1000);
    }
}

TEST_F(FilesTest, KillDirClimbsItsLadder) {
    EXPECT_TRUE(fso.KillDir("C:\\Gone", false));
    EXPECT_TRUE(fso.KillDir("C:\\New\\Deep", true));
    EXPECT_TRUE(Pc().Exists("C:\\New\\Deep"));
    Pc().AddFile("C:\\New\\Deep\\file");
    EXPECT_TRUE(fso.KillDir("C:\\New\\Deep", true));
    EXPECT_EQ(Pc().Tree("C:\\New"), std::vector<std::string>{"C:\\New\\Deep\\"});
    PlantTree();
    Pc().Deny("C:\\T\\sub\\deep\\b.log");
    EXPECT_FALSE(fso.KillDir("C:\\T", true));
    EXPECT_TRUE(Pc().Exists("C:\\T\\sub\\deep\\b.log"));
    EXPECT_FALSE(Pc().Exists("C:\\T\\a.txt"));
    EXPECT_TRUE(Pc().Traced("C:\\T\\sub\\deep\\b.logclsFSO\\KillFile - Unable to delete:  "));
    ExpectPreciousUntouched();
}

TEST_F(FilesTest, ListsByExtensionAndNotThroughLinks) {
    Pc().AddFile(precious);
    for (const char* path : {"C:\\L\\a.log", "C:\\L\\b.LOG", "C:\\L\\c.txt", "C:\\L\\none", "C:\\L\\s\\d.log"})
        Pc().AddFile(path);
    Pc().AddJunction("C:\\L\\link", "C:\\Precious");
    Pc().AddFolder("C:\\L\\s\\t");
    struct {
        const char* pattern;
        bool subFolders;
        std::vector<std::string> items;
        double count;
    } cases[] = {
        {"*.Log", false, {"C:\\L\\a.log", "C:\\L\\b.LOG"}, 2},
        {"zz*.log", true, {"C:\\L\\a.log", "C:\\L\\b.LOG", "C:\\L\\s\\d.log"}, 3},
        {"a.log", false, {"C:\\L\\a.log", "C:\\L\\b.LOG", "C:\\L\\c.txt", "C:\\L\\none"}, 0},
        {"*.*", true, {"C:\\L\\a.log", "C:\\L\\b.LOG", "C:\\L\\c.txt", "C:\\L\\none", "C:\\L\\s\\d.log"}, 0},
        {"*.exe", true, {}, 0},
    };
    for (const auto& c : cases) {
        clsFSO lister;
        EXPECT_EQ(Items(lister.Get_FileList("C:\\L", c.subFolders, c.pattern)), c.items) << c.pattern;
        EXPECT_EQ(lister.Count, c.count) << c.pattern;
    }
    EXPECT_EQ(fso.Get_DirList("C:\\L", false), "C:\\L\\link;C:\\L\\s;");
    EXPECT_EQ(fso.Get_DirList("C:\\L\\", true), "C:\\L\\link;C:\\L\\s;C:\\L\\s\\t;");
    EXPECT_EQ(fso.Get_FileList("C:\\Nowhere", true, "*.*") + fso.Get_DirList("C:\\Nowhere", true), "");
    EXPECT_EQ(fso.Get_FileList("", true, "*.*") + fso.Get_DirList("", true), "");
    EXPECT_TRUE(Pc().Traced("\tcFSO\\Get_FileList - Passed no string, aborting!"));
    EXPECT_TRUE(Pc().Traced("\tcFSO\\Get_DirList - Passed no string, aborting!"));
}

TEST_F(FilesTest, AHandlerCancelsAListingBetweenItems) {
    for (const char* path : {"C:\\L\\a.log", "C:\\L\\b.log", "C:\\L\\c.log", "C:\\L\\s\\d.log"}) Pc().AddFile(path);
    fso.onFileFound = [&](const std::string&, double count) { fso.cancel = count == 2; };
    EXPECT_EQ(fso.Get_FileList("C:\\L", false, "*.log"), "C:\\L\\a.log;C:\\L\\b.log;");
    EXPECT_EQ(fso.Get_FileList("C:\\L", false, "*.log") + fso.Get_DirList("C:\\L", false), "");  // still set
    fso.cancel = false;
    fso.Count = 0;
    EXPECT_EQ(fso.Get_FileList("C:\\L", true, "*.log"), "");  // what it had is dropped
}

TEST_F(FilesTest, TotalsTestWhatTheTypeSays) {
    Pc().AddFile("C:\\L\\old.txt", "12345");
    Pc().AddFile("C:\\L\\new.log", "123");
    pc::FileTime old = FileTimeOf(2010, 5, 3, 12), recent = FileTimeOf(2012, 5, 3, 23, 59);
    Pc().SetTimes("C:\\L\\old.txt", old, recent, old);
    Pc().SetTimes("C:\\L\\new.log", recent, recent, recent);
    struct {
        int type;
        const char* patterns;
        double total;
    } cases[] = {{1, "*.*", 8},          {1, "*.txt", 5},     {2, "5/3/2012", 2},
                 {3, "5/3/2012", 1},     {4, "5-4-2012", 0},  {4, "2010-05-03", 2},
                 {5, "no such type", 0}, {3, "2/30/2012", 0}, {3, "soon", 0}};
    for (const auto& c : cases)
        EXPECT_EQ(fso.Get_Totals("C:\\L", c.type, c.patterns, true), c.total) << c.type << c.patterns;
    EXPECT_EQ(Pc().Journal("show \"An invalid date was passed.\" titled \"Invalid date format\"").size(), 2u);
}

TEST_F(FilesTest, AttributesAsLetters) {
    std::pair<int, const char*> cases[] = {{3, "RH"},   {7, "RHS"},    {8, "V"}, {9, ""}, {23, "DRHS"},
                                           {35, "RHA"}, {55, "DRHSA"}, {56, ""}, {0, ""}, {-1, ""}};
    for (const auto& [number, letters] : cases) EXPECT_EQ(fso.Attribute_String(number), letters) << number;
}

TEST_F(FilesTest, PartsOfPaths) {
    struct {
        const char *path, *name, *base, *extension, *parent;
    } cases[] = {
        {"C:\\a.b\\file.tar.gz", "file.tar.gz", "file.tar", "gz", "C:\\a.b"},
        {"C:\\file", "file", "file", "", "C:\\"},
        {"C:\\", "", "", "", ""},
        {"", "", "", "", ""},
        {"C:\\dir\\", "dir", "dir", "", "C:\\"},
        {"\\\\srv\\share\\x.y", "x.y", "x", "y", "\\\\srv\\share"},
        {"plain.txt", "plain.txt", "plain", "txt", ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(fso.Get_Filename(c.path) + "|" + fso.Get_FileNoExtension(c.path), c.name + "|"s + c.base);
        EXPECT_EQ(fso.Get_Extension(c.path) + "|" + fso.Get_Path(c.path), c.extension + "|"s + c.parent);
    }
    const std::string path = "C:\\Program Files\\Folder\\Sub\\name.txt";
    for (size_t length = 0; length < 40; ++length) EXPECT_LE(fso.Shrink_2_Fit(path, length).size(), length);
    EXPECT_EQ(fso.Shrink_2_Fit(path, 30), "C:\\Program Files\\...\\name.txt");
    EXPECT_NE(fso.Create_Tmp_Name(8), fso.Create_Tmp_Name(8));
}

TEST_F(FilesTest, MovesAndCopiesAskBeforeTheyReplace) {
    struct {
        bool isMove, overwrite, thereBefore;
        int answer;
        bool result;
        const char* text;
    } cases[] = {
        {true, false, false, 0, true, "new"},
        {false, false, false, 0, true, "new"},
        {true, true, true, 0, true, "new"},
        {false, true, true, 0, true, "new"},
        {true, false, true, pc::answerYes, true, "new"},
        {false, false, true, pc::answerNo, false, "old"},
    };
    for (const auto& c : cases) {
        SimulatedPc& pc = SimulatedPc::UseWindows(Windows::seven);
        pc.AddFile("C:\\from", "new", pc::attributeReadOnly);
        if (c.thereBefore) pc.AddFile("C:\\to", "old", pc::attributeReadOnly | pc::attributeHidden);
        if (c.answer != 0) pc.Answer(c.answer);
        EXPECT_EQ(c.isMove ? fso.Move_File("C:\\from", "C:\\to", c.overwrite)
                           : fso.Copy_File("C:\\from", "C:\\to", c.overwrite),
                  c.result);
        EXPECT_EQ(pc.FileText("C:\\to"), c.text);
        EXPECT_EQ(pc.Attributes("C:\\to"),
                  c.result ? pc::attributeReadOnly : pc::attributeReadOnly | pc::attributeHidden);
        EXPECT_EQ(pc.Exists("C:\\from"), !(c.isMove && c.result));
        EXPECT_EQ(pc.Journal("show").size(), c.answer != 0 ? 1u : 0u);
    }
    EXPECT_FALSE(fso.Copy_File("C:\\none", "C:\\to", true));
    EXPECT_TRUE(Pc().Traced("\tclsFSO\\Copy_File - Source file does not exist, aborting routine."));
    EXPECT_FALSE(fso.Copy_File("C:\\to", "c:\\TO", true));  // onto itself: stays whole
    EXPECT_TRUE(Pc().Exists("C:\\to"));
}

TEST_F(FilesTest, AFailedReplacementLeavesTheOldFile) {
    for (int call = 1; call <= 12; ++call) {
        SimulatedPc& pc = SimulatedPc::UseWindows(Windows::seven);
        pc.AddFile("C:\\from", "new");
        pc.AddFile("C:\\to", "old");
        pc.FailCall(call);
        bool isMoved = fso.Move_File("C:\\from", "C:\\to", true);
        EXPECT_EQ(pc.FileText("C:\\to"), isMoved ? "new" : "old") << call;
        EXPECT_NE(pc.Exists("C:\\from"), isMoved) << call;
    }
}

TEST_F(FilesTest, RenamesOverWhatIsThere) {
    Pc().AddFile("C:\\Dir\\a", "a");
    Pc().AddFile("C:\\Dir\\b", "b");
    EXPECT_TRUE(fso.RenFile("C:\\Dir\\a", "D:\\ignored\\b"));
    EXPECT_EQ(Pc().FileText("C:\\Dir\\b"), "a");
    EXPECT_TRUE(Pc().Traced("\tclsFSO\\RenFile: Rename to \"C:\\Dir\\b\" succeeded."));
    EXPECT_TRUE(fso.RenFile("C:\\Dir\\b", "B"));
    EXPECT_EQ(Pc().Tree("C:\\Dir"), std::vector<std::string>{"C:\\Dir\\B"});
    EXPECT_FALSE(fso.RenFile("C:\\Dir\\none", "b"));  // and what has the name stays
    EXPECT_TRUE(Pc().Exists("C:\\Dir\\b"));
    Pc().AddFile("C:\\Dir\\c", "c");
    Pc().Deny("C:\\Dir\\B");
    EXPECT_FALSE(fso.RenFile("C:\\Dir\\c", "b"));
    EXPECT_EQ(Pc().FileText("C:\\Dir\\c"), "c");
}

TEST_F(FilesTest, TheNewestFileIsFoundByItsCreation) {
    for (int year : {2010, 2012, 2011}) {
        std::string path = "C:\\D\\" + std::to_string(year) + ".exe";
        Pc().AddFile(path);
        Pc().SetTimes(path, FileTimeOf(year, 1, 1), FileTimeOf(2015 - year % 5, 1, 1), FileTimeOf(2013, 1, 1));
    }
    EXPECT_EQ(fso.ReturnNewestFileFromSpec("C:\\D\\", "*.exe;*.com", true), "C:\\D\\2012.exe");
    EXPECT_EQ(fso.ReturnNewestFileFromSpec("C:\\D", "*.msi", true), "");
    EXPECT_EQ(fso.ReturnNewerFile("C:\\none", "C:\\D\\2010.exe"), "C:\\D\\2010.exe");
    EXPECT_EQ(fso.ReturnNewerFile("C:\\none", "C:\\neither"), "C:\\none");
}
