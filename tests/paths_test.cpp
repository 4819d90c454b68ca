#include "system/paths.h"

#include "pc/pc_test.h"
#include "system/dates.h"
#include "system/program_state.h"
#include "system/trace.h"

namespace {

class PathsTest : public PcTest {
protected:
    PathsTest() { Target() = {}; }
    ~PathsTest() override { Target() = {}; }
};

using Cut = std::string (*)(const std::string&);

}  // namespace

TEST_F(PathsTest, CutsOfPaths) {
    struct {
        Cut cut;
        const char *given, *expected;
    } rows[] = {{StripDriveLetter, "C:\\a\\b", "\\a\\b"},
                {StripDriveLetter, "\"C:\\a b\" /x", "\"\\a b\" /x"},
                {StripDriveLetter, "a", "a"},
                {StripDriveLetter, "\"", "\""},
                {StripDriveLetter, "\\\\server\\a", "\\\\server\\a"},
                {StripPath, "C:\\a\\b.txt", "b.txt"},
                {StripPath, "b.txt", "b.txt"},
                {StripPath, "C:\\a\\", ""},
                {StripNameFromPath, "C:\\a\\b.txt", "C:\\a"},
                {StripNameFromPath, "b.txt", ""},
                {StripNameFromPath, "", ""},
                {StripCommandArguments, "C:\\a.exe /s /q", "C:\\a.exe /s "},
                {StripCommandArguments, "C:\\x.dll,Entry", "C:\\x.dll"},
                {StripCommandArguments, "C:\\a-b\\c.exe -tray on", "C:\\a-b\\c.exe"},
                {StripCommandArguments, "C:\\a-b\\c.exe", "C:\\a-b\\c.exe"},
                {StripCommandArguments, "C:\\a b\\c.exe tray", "C:\\a b\\c.exe tray"}};
    for (const auto& row : rows) EXPECT_EQ(row.cut(row.given), row.expected) << row.given;
    EXPECT_LINES(Pc().trace, {"\tStripNameFromPath Function was passed an empty string!"});
    StripNameFromPathNoDebug("");
    EXPECT_EQ(Pc().trace.size(), 1u);
}

TEST_F(PathsTest, CutsOfTexts) {
    EXPECT_EQ(Strip("aababbc", "ab"), "c");  // also what a removal brings together
    EXPECT_EQ(Strip("aXbXc", "X"), "abc");
    EXPECT_EQ(Strip("abc", ""), "abc");
    EXPECT_EQ(Strip("aaaa", "aaa"), "a");
    std::string nested = std::string(20000, 'a') + std::string(20000, 'b');
    EXPECT_EQ(Strip(nested, "ab"), "");
    EXPECT_EQ(StripEndOfString("a.b.c", "."), "a.b");
    EXPECT_EQ(StripEndOfString("a.b.c", ".", true), "a");
    EXPECT_EQ(StripEndOfString("  a ; b", ";", false, true, true), "a");
    EXPECT_EQ(StripEndOfString("abc", ";"), "abc");
    EXPECT_EQ(StripEndOfString("abc", ""), "abc");
    EXPECT_EQ(StripBeginningOfString("a=>b=>c", "=>"), "c");
    EXPECT_EQ(StripBeginningOfString("a=>b=>c", "=>", true), "b=>c");
    EXPECT_EQ(StripTrailingCharacters("a\\\\", '\\'), "a");
    EXPECT_EQ(StripPreceedingCharacters("  ", ' '), "");
    EXPECT_TRUE(Pc().trace.empty());
    State().bVerboseTrace = true;
    StripEndOfString("a.b", ".");
    EXPECT_LINES(Pc().trace, {"\tCommonModule\\StripEndOfString: ", "\t\t- Passed: a.b", "\t\t- Delimeter: .",
                              "\t\t- bUseFirstDelimiter=False", "\t\t- Returned: a"});
}

TEST_F(PathsTest, CommandsOfTheRegistryBecomeFilePaths) {
    struct {
        const char *given, *expected;
    } rows[] = {{"C:\\Program Files\\Bar\\Bar.DLL", "C:\\program files\\bar\\bar.dll"},
                {"\"C:\\Program Files\\Bar\\bar.dll\"", "C:\\program files\\bar\\bar.dll"},
                {"\"C:\\Bar\\bar.exe\" -embed \"x\" y", "C:\\bar\\bar.exe"},
                {"\"C:\\Bar\\bar.exe", "C:\\bar\\bar.exe"},
                {"%SystemRoot%\\system32\\ieframe.dll", "C:\\windows\\system32\\ieframe.dll"},
                {"%ProgramFiles(x86)%\\Bar\\b.dll,Run", "C:\\program files (x86)\\bar\\b.dll"},
                {"%windir%\\system32\\RunDll32.exe\"C:\\b.dll\",Run", "C:\\b.dll"},
                {"System32\\drivers\\b.sys", "C:\\windows\\system32\\drivers\\b.sys"},
                {"\\SystemRoot\\b.sys", "C:\\windows\\b.sys"},
                {"\\??\\D:\\b.sys", "C:\\b.sys"},
                {"\\\\.\\globalroot\\b.sys", "C:\\b.sys"},
                {"mscoree.dll", "C:mscoree.dll"},
                {"", "C:"},
                {"\"", "C:"},
                {"\"\"", "C:"}};
    for (const auto& row : rows) EXPECT_EQ(GetRealFilePath(row.given), row.expected) << row.given;
    Pc().trace.clear();
    GetRealFilePath("A.DLL");
    EXPECT_LINES(Pc().trace,
                 {"\tGetRealFilePath: (bRegistryGuestMode=False)", "\t\t- Passed:  A.DLL", "\t\t- Returned:  C:a.dll"});
}

TEST_F(PathsTest, FoldersOfTheRunningSystem) {
    EXPECT_EQ(Target().sTargetDrive, "C:");
    EXPECT_FALSE(IsGuestOS("c:"));
    EXPECT_TRUE(IsGuestOS("D:"));
    Pc().SetEnv("homedrive", "H:");
    EXPECT_FALSE(IsGuestOS("h:"));
    EXPECT_FALSE(IsGuestOS("c:"));  // by "windir"
    EXPECT_EQ(GetWinDir(), "C:\\Windows");
    EXPECT_EQ(GetSysDir(), "C:\\Windows\\System32");
    EXPECT_TRUE(Pc().Traced("IsGuestOS is false, GetWinDir is using GetWindowsDirectory, returns:  C:\\Windows"));
}

TEST_F(PathsTest, FoldersOfAGuestSystem) {
    Target().sTargetDrive = "d:";
    Pc().AddDrive("D:");
    EXPECT_EQ(GetWinDir(), "");
    EXPECT_EQ(GetUserProf(), "");
    EXPECT_TRUE(Pc().Traced("GetWinDir:  could not find %windir%, moving to manual selection."));
    EXPECT_TRUE(Pc().Traced("GetUserProf:  Win9x suspected, no code here."));
    EXPECT_JOURNAL({});
    Pc().Pick("D:\\WinDir");
    EXPECT_EQ(GetWinDir(true), "D:\\WinDir");
    EXPECT_JOURNAL(
        {"pick folder \"D: drive.                 Please select the correct Windows folder for D: drive now:\" -> "
         "D:\\WinDir"});
    Pc().AddFile("D:\\Windows\\explorer.exe");
    Pc().AddFile("D:\\Windows\\system\\system.dat");
    EXPECT_EQ(GetSysDir(), "d:\\Windows\\system");
    Pc().AddFile("D:\\Winnt\\explorer.exe");
    Pc().AddFile("D:\\Winnt\\system32\\winlogon.exe");
    EXPECT_EQ(GetWinDir(), "d:\\Winnt");
    EXPECT_EQ(GetSysDir(), "d:\\Winnt\\system32");
}

TEST_F(PathsTest, TheProfileLayoutNeedsAllItsMarks) {
    Target().sTargetDrive = "D:";
    Pc().AddDrive("D:");
    Pc().AddFolder("D:\\Documents and Settings\\Anna");
    const char* marks[] = {"D:\\Users\\Default User", "D:\\Users\\All Users", "D:\\ProgramData"};
    for (const char* missing : marks) {
        for (const char* mark : marks) Pc().AddFolder(mark);
        Pc().DeleteTree(missing);
        EXPECT_FALSE(IsVistaProfileLayout()) << missing;
        EXPECT_EQ(GetUserProf(), "D:\\Documents and Settings");
    }
    LoadProfileList();
    EXPECT_LINES(Target().profiles, {"D:\\Documents and Settings\\Anna"});
    for (const char* mark : marks) Pc().AddFolder(mark);
    Pc().AddFolder("D:\\Users\\Anna;Bob");
    Pc().AddFile("D:\\Users\\desktop.ini");
    LoadProfileList();
    EXPECT_LINES(Target().profiles, {"D:\\Users\\All Users", "D:\\Users\\Anna;Bob", "D:\\Users\\Default User"});
}

TEST_F(PathsTest, TextIsSavedLineByLine) {
    const std::string file = "C:\\New\\Folder\\a.txt";
    EXPECT_TRUE(SaveTextToFile(file, "One", false));
    EXPECT_TRUE(SaveTextToFile(file, "Zwölf", false));
    EXPECT_TRUE(SaveTextToFile(file, "ZWÖLF", false, true));
    EXPECT_TRUE(SaveTextToFile(file, "Zw", false, true));
    EXPECT_EQ(Pc().FileText(file), "One\r\nZw\xF6lf\r\nZw\r\n");
    EXPECT_TRUE(SaveTextToFile(file, "Two", true));
    EXPECT_EQ(Pc().FileText(file), "Two\r\n");
    EXPECT_FALSE(SaveTextToFile("relative.txt", "x", true));
    EXPECT_FALSE(SaveTextToFile("Z:\\a\\b.txt", "x", true));
    EXPECT_LINES(Pc().trace, {"\tSaveTextToFile - Directory does not exist / Cannot create directory:  ",
                              "\tSaveTextToFile - Directory does not exist / Cannot create directory:  Z:\\a"});
    Pc().trace.clear();
    EXPECT_FALSE(SaveTextToFileNoDebug("Z:\\a\\b.txt", "x", true));
    Pc().Lock(file);
    EXPECT_FALSE(SaveTextToFile(file, "Three", true));
    EXPECT_TRUE(Pc().trace.empty());
    EXPECT_EQ(Pc().FileText(file), "Two\r\n");
}

TEST_F(PathsTest, DatesOfAnySystemComeInTheOrderAsked) {
    State().settingsFile = "C:\\Panel\\Brevanta.ini";
    struct {
        int systemOrder;
        const char *text, *monthFirst, *dayFirst;
    } rows[] = {{0, "3/4/2026 1:02:03 PM", "03/04/2026", "04/03/2026"},
                {0, "22/11/2026", "11/22/2026", "22/11/2026"},  // cannot be meant month first
                {0, "3-4-26", "03/04/2026", "04/03/2026"},
                {0, "3/4/99", "03/04/1999", "04/03/1999"},
                {1, "03/04/2026 13:02:03", "04/03/2026", "03/04/2026"},
                {1, "3.4.2026 13:02:03", "04/03/2026", "03/04/2026"},
                {1, "2026-04-03", "04/03/2026", "03/04/2026"},
                {2, "2026-04-03 13:02:03", "04/03/2026", "03/04/2026"},
                {2, "26/04/03", "04/03/2026", "03/04/2026"},
                {2, "4/22/2026 1:02:03 PM", "04/22/2026", "22/04/2026"},  // written while the system had another order
                {0, "never", "never", "never"},
                {0, "10:15", "10:15", "10:15"},
                {0, "99/99/9999", "99/99/9999", "99/99/9999"},
                {0, "1/2/99999999999999999999", "1/2/99999999999999999999", "1/2/99999999999999999999"}};
    for (const auto& row : rows) {
        Pc().dateOrder = row.systemOrder;
        Pc().SetIni(State().settingsFile, "Config", "FormatDateDayFirst", "0");
        EXPECT_EQ(FormatDate(false, row.text), row.monthFirst) << row.text;
        Pc().SetIni(State().settingsFile, "Config", "FormatDateDayFirst", "1");
        EXPECT_EQ(FormatDate(false, row.text), row.dayFirst) << row.text;
    }
    Pc().SetClock(2026, 2, 5, 23, 0, 1);
    for (int order : {0, 1, 2}) {
        Pc().dateOrder = order;
        EXPECT_EQ(FormatDate(true, ""), "05-02-2026");
        EXPECT_EQ(FormatDate(true, NowText()), "05-02-2026");
    }
    Pc().DeleteTree(State().settingsFile);
    EXPECT_EQ(FormatDate(true, ""), "02-05-2026");
}

TEST(Dates, DaysAreCountedOverLeapYears) {
    auto days = [](CalendarDate from, CalendarDate to) { return DayNumber(to) - DayNumber(from); };
    EXPECT_EQ(days({2024, 2, 28}, {2024, 3, 1}), 2);
    EXPECT_EQ(days({2023, 2, 28}, {2023, 3, 1}), 1);
    EXPECT_EQ(days({1999, 12, 31}, {2000, 1, 1}), 1);
    EXPECT_EQ(days({1900, 1, 1}, {2000, 1, 1}), 36524);
    EXPECT_EQ(days({2026, 3, 1}, {2025, 3, 1}), -365);
}

TEST_F(PathsTest, Versions) {
    struct {
        const char *old, *fresh;
        bool newer;
    } rows[] = {{"1.2.3", "1.2.4", true},
                {"1.9.9", "1.10.0", true},
                {"1.2.3", "1.2.3", false},
                {"2.0.0", "1.99.99", false},
                {"1.0.0", "0.100.0", false},
                {"1.0.0", "0.100.1", true},  // a minor of 100 runs into the next field
                {"1.2.3", "", false},
                {"", "1.2.3", false},
                {"1.2.3", "1.3", false},
                {"1.2.3", "1.3.0.0", false},
                {"1.2.3", "1.x.9", false},
                {"1.2.3", "9.-1.0", false},
                {"1.2.3", "1..9", false},
                {"1.2.3", "99999999999999999999.0.0", false},
                {"0.0.1", "999999999.999999999.999999999", true}};
    for (const auto& row : rows)
        EXPECT_EQ(IsNewerVersion(row.old, row.fresh), row.newer) << row.old << " " << row.fresh;
    Pc().programVersion = {4, 10, 0};
    EXPECT_EQ(VersionString(), "Brevanta   v4.10");
    Pc().programVersion = {4, 10, 2};
    EXPECT_EQ(VersionString("A"), "Brevanta   v4.10.2 ALPHA");
    EXPECT_EQ(VersionString("B", "x"), "Brevanta   v4.10.2 BETA  - x");
    EXPECT_EQ(VersionString("rc1"), "Brevanta   v4.10.2 rc1");
}

TEST_F(PathsTest, FilePicker) {
    Pc().Pick("C:\\Panel\\Skins\\a.urf");
    EXPECT_EQ(ShowFilePicker("C:\\Panel\\Skins", "Pick a Skin:", "*.urf"), "C:\\Panel\\Skins\\a.urf");
    Pc().Pick("");
    EXPECT_EQ(ShowFilePicker("C:\\", "Pick:", "Programs|*.exe"), "");
}
