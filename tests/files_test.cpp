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

// Members that no feature calls: what they promise, in short.
TEST_F(FilesTest, ListsTotalsAndNames) {
    Pc().AddFile(precious);
    for (const char* path : {"C:\\L\\a.log", "C:\\L\\b.LOG", "C:\\L\\c.txt", "C:\\L\\s\\d.log"}) Pc().AddFile(path);
    Pc().AddJunction("C:\\L\\link", "C:\\Precious");
    EXPECT_EQ(fso.Get_FileList("C:\\L", false, "*.Log"), "C:\\L\\a.log;C:\\L\\b.LOG;");
    EXPECT_EQ(fso.Get_FileList("C:\\L", true, "*.*"), "C:\\L\\a.log;C:\\L\\b.LOG;C:\\L\\c.txt;C:\\L\\s\\d.log;");
    EXPECT_EQ(fso.Get_DirList("C:\\L\\", true), "C:\\L\\link;C:\\L\\s;");
    EXPECT_EQ(fso.Get_FileList("", true, "*.*") + fso.Get_DirList("C:\\Nowhere", true), "");
    fso.onFileFound = [&](const std::string&, double) { fso.cancel = true; };
    EXPECT_EQ(fso.Get_FileList("C:\\L", false, "*.log"), "C:\\L\\a.log;");
    fso.cancel = false;
    EXPECT_EQ(fso.Get_Totals("C:\\L", 1, "*.log", true), 0);
    EXPECT_EQ(fso.Get_Totals("C:\\L", 4, "2026-03-14", true), 4);
    EXPECT_EQ(fso.Attribute_String(55) + fso.Attribute_String(9), "DRHSA");
    const std::string path = "C:\\Program Files\\Folder\\file.tar.gz";
    EXPECT_EQ(fso.Get_Filename(path) + "|" + fso.Get_FileNoExtension(path) + "|" + fso.Get_Extension(path) + "|" +
                  fso.Get_Path(path) + "|" + fso.Get_Filename("C:\\"),
              "file.tar.gz|file.tar|gz|C:\\Program Files\\Folder|");
    for (size_t length = 0; length < 40; ++length) EXPECT_LE(fso.Shrink_2_Fit(path, length).size(), length);
    EXPECT_NE(fso.Create_Tmp_Name(8), fso.Create_Tmp_Name(8));
}

TEST_F(FilesTest, WhatIsMovedCopiedOrRenamedLosesNothing) {
    for (int call = 1; call <= 12; ++call) {
        SimulatedPc& pc = SimulatedPc::UseWindows(Windows::seven);
        pc.AddFile("C:\\from", "new");
        pc.AddFile("C:\\to", "old");
        pc.FailCall(call);
        bool isMoved = fso.Move_File("C:\\from", "C:\\to", true);
        EXPECT_EQ(pc.FileText("C:\\to"), isMoved ? "new" : "old") << call;
        EXPECT_NE(pc.Exists("C:\\from"), isMoved) << call;
    }
    SimulatedPc& pc = SimulatedPc::UseWindows(Windows::seven);
    pc.AddFile("C:\\from", "new", pc::attributeReadOnly);
    pc.AddFile("C:\\to", "old", pc::attributeReadOnly | pc::attributeHidden);
    pc.Answer(pc::answerNo);
    EXPECT_FALSE(fso.Copy_File("C:\\from", "C:\\to", false));
    EXPECT_EQ(pc.FileText("C:\\to"), "old");
    EXPECT_FALSE(fso.Copy_File("C:\\to", "c:\\TO", true));  // onto itself
    EXPECT_FALSE(fso.Move_File("C:\\to", "c:\\TO", true));
    EXPECT_LINES(pc.Journal("attributes"), {});
    pc.Lock("C:\\from");
    EXPECT_FALSE(fso.Copy_File("C:\\from", "C:\\to", true));
    EXPECT_EQ(pc.Attributes("C:\\to"), pc::attributeReadOnly | pc::attributeHidden);
    pc.Unlock("C:\\from");
    EXPECT_TRUE(fso.Copy_File("C:\\from", "C:\\to", true));
    EXPECT_EQ(pc.FileText("C:\\to"), "new");
    EXPECT_EQ(pc.Attributes("C:\\to"), pc::attributeReadOnly);
    EXPECT_TRUE(fso.RenFile("C:\\to", "D:\\ignored\\FROM"));
    EXPECT_FALSE(fso.RenFile("C:\\none", "from"));  // and what has the name stays
    EXPECT_FALSE(pc.Exists("C:\\to"));
    EXPECT_TRUE(pc.Exists("C:\\from"));
}
