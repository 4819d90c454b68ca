#include "system/trace.h"

#include "pc/pc_test.h"
#include "system/program_state.h"

using TraceTest = PcTest;

TEST_F(TraceTest, EveryValueStandsBehindATab) {
    DebugOutput();
    DebugOutput("");
    DebugOutput("modX\\Y: ", true, false, -5, 7u, std::string("ü"));
    DebugOutput("\t- Passed: ", int64_t{1} << 40);
    EXPECT_LINES(Pc().trace, {"", "\t", "\tmodX\\Y: \tTrue\tFalse\t-5\t7\tü", "\t\t- Passed: \t1099511627776"});
}

TEST_F(TraceTest, TheFirstLinesTellTimeAndVersion) {
    Pc().programVersion = {4, 2, 7};
    Pc().SetClock(2026, 11, 3, 14, 5, 9);
    InitPaths(true, true);
    EXPECT_LINES(Pc().trace, {"", "\t11/3/2026 2:05:09 PM - Starting Brevanta   v4.2.7",
                              "\t----------------------------------------"});
    EXPECT_JOURNAL({});
}

TEST_F(TraceTest, WhereTheSettingsFileLies) {
    const std::string beside = "C:\\Panel\\Brevanta.ini", module = "C:\\Panel\\Modules\\Brevanta.ini";
    struct {
        const char *program, *product;
        std::vector<std::string> files;
        bool besideProgram;
        std::string expected;
    } rows[] = {{"C:\\Panel\\Brevanta.exe", "Brevanta", {}, true, beside},
                {"C:\\Panel\\Brevanta.exe", "Brevanta", {beside, module}, true, beside},
                {"C:\\Panel\\Brevanta.exe", "Brevanta", {module}, true, module},
                {"C:\\Panel\\Brevanta.exe", "Other", {module}, true, beside},
                {"C:\\Panel\\Shop.Panel.EXE", "Brevanta", {beside}, true, "C:\\Panel\\Shop.Panel.ini"},
                {"D:\\Brevanta.exe", "Brevanta", {}, true, "D:\\Brevanta.ini"},
                {"C:\\Panel\\Brevanta.exe", "Brevanta", {}, false, "C:\\Panel\\Config\\Brevanta.ini"}};
    for (const auto& row : rows) {
        SimulatedPc& pc = SimulatedPc::UseWindows(Windows::sevenX64);
        pc.programPath = row.program;
        pc.productName = row.product;
        for (const std::string& file : row.files) pc.AddFile(file);
        InitPaths(true, row.besideProgram);
        EXPECT_EQ(State().settingsFile, row.expected);
        EXPECT_EQ(pc.Exists("C:\\Panel\\Config"), !row.besideProgram);
    }
}

TEST_F(TraceTest, EachRunGetsATraceFileOfItsOwn) {
    for (const char* name : {"DebugOutput - Brevanta 1.txt", "DebugOutput - Brevanta 9.txt", "notes.txt"})
        Pc().AddFile(std::string("C:\\Panel\\Debug\\") + name, "old");
    Pc().AddFolder("C:\\Panel\\Debug\\Old");
    Pc().SetClock(2026, 11, 3, 14, 5, 9);
    State().bDebugToFile = true;
    InitPaths(true, true);
    DebugOutput("x", 1);
    EXPECT_EQ(State().sDebugFile, "C:\\Panel\\Debug\\DebugOutput - Brevanta 4.txt");
    std::string bytes = Pc().FileText(State().sDebugFile);
    EXPECT_TRUE(bytes.ends_with("11/3/2026 2:05:09 PM\tx\t1\r\n")) << bytes;
    EXPECT_EQ(std::count(bytes.begin(), bytes.end(), '\n'), 4);
    EXPECT_EQ(Pc().trace.size(), 4u);
}

TEST_F(TraceTest, NoTraceFileWhereItsFolderCannotBeMade) {
    Pc().AddFile("C:\\Panel\\Debug", "a file is in the way");
    State().bDebugToFile = true;
    InitPaths(true, true);
    EXPECT_FALSE(State().bDebugToFile);
    EXPECT_EQ(Pc().FileText("C:\\Panel\\Debug"), "a file is in the way");
    EXPECT_JOURNAL({});
}

TEST_F(TraceTest, FilesAndFoldersAreToldApart) {
    Pc().AddFile("C:\\d\\file.txt", "", pc::attributeReadOnly | pc::attributeHidden);
    Pc().AddJunction("C:\\d\\link", "C:\\Windows");
    Pc().AddJunction("C:\\d\\gone", "C:\\nowhere");
    struct {
        const char* path;
        bool file, folder;
    } rows[] = {{"C:\\d\\file.txt", true, false},
                {"c:\\D\\FILE.TXT", true, false},
                {"C:\\d", false, true},
                {"C:\\", false, true},
                {"C:\\d\\link", false, true},
                {"C:\\d\\gone", false, true},
                {"C:\\none", false, false},
                {"Z:\\d", false, false},
                {"d\\file.txt", false, false},
                {"file.txt", false, false},
                {"", false, false},
                {"C", false, false},
                {"C:\\d\\file.txt\\x", false, false}};
    for (const auto& row : rows) {
        EXPECT_EQ(DoesFileExist(row.path), row.file) << row.path;
        EXPECT_EQ(DoesDirExist(row.path), row.folder) << row.path;
        EXPECT_EQ(DoesDirExistNoDebug(row.path), row.folder) << row.path;
        EXPECT_EQ(DoesDirExistNo64bitCheck(row.path), row.folder) << row.path;
    }
    EXPECT_TRUE(Pc().trace.empty());
    int calls = Pc().calls;
    DoesFileExist("relative.txt");
    DoesDirExist("relative");
    EXPECT_EQ(Pc().calls, calls);
    DoesFileExist("C:\\none", true);
    EXPECT_LINES(Pc().trace, {"\tCommonModule\\DoesFileExist: -1", "\t\t- Passed: C:\\none", "\t\t- Returns: False"});
}

TEST_F(TraceTest, TestsSeeBehindTheRedirection) {
    Pc().AddFile("C:\\Windows\\System32\\only64.exe");
    EXPECT_FALSE(DoesFileExist("C:\\Windows\\System32\\only64.exe"));
    State().bHandle64BitRedirect = true;
    EXPECT_TRUE(DoesFileExist("C:\\Windows\\System32\\only64.exe"));
    EXPECT_FALSE(Pc().redirectionOff);
    {
        RedirectionOff outer;
        DoesDirExist("C:\\Windows\\System32");
        EXPECT_TRUE(Pc().redirectionOff);
        Disable64BitRedirect();
        Revert64BitRedirect();
        EXPECT_FALSE(Pc().redirectionOff);
    }
    EXPECT_FALSE(Pc().redirectionOff);
    EXPECT_FALSE(State().bRedirectIsOff);
    EXPECT_TRUE(IsDrive64Bit(""));
    EXPECT_TRUE(IsDrive64Bit("D:") == Pc().Exists("D:\\Program Files (x86)"));
}
