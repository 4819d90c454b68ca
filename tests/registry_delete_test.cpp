#include "pc/pc_test.h"
#include "system/registry.h"

using namespace std::string_literals;

namespace {

class RegistryDeleteTest : public PcTest {
protected:
    bool notFound = false;
};

constexpr const char* place = "HKLM\\Software\\P";

std::vector<std::string> Security(const std::string& key) {
    return std::vector<std::string>(5, "security " + key);  // user, System, Administrators, Power Users, Users
}

void Append(std::vector<std::string>& lines, const std::vector<std::string>& more) {
    lines.insert(lines.end(), more.begin(), more.end());
}

// The last three lines that a delete of a key traces.
void ExpectClosingTrace(const std::string& path, const std::string& result) {
    std::vector<std::string> last(Pc().trace.end() - 3, Pc().trace.end());
    EXPECT_LINES(last, {"\tmodRegistry\\fDeleteKey: ", "\t\t- Key: " + path, "\t\t" + result});
}

}  // namespace

TEST_F(RegistryDeleteTest, ValuesAndKeysThatAreMissingAreNoFailure) {
    Pc().AddKey(place);
    EXPECT_EQ(fDeleteValue("HKLM", "Software\\P", "None", notFound), 0);
    EXPECT_TRUE(notFound);
    EXPECT_LINES(Pc().trace, {"\tmodRegistry\\fDeleteValue:", "\t\t- Passed Key: HKLM\\Software\\P",
                              "\t\t- Passed Value: None", "\t\t- lResult: 2 NOT FOUND"});
    notFound = false;
    EXPECT_EQ(fDeleteKey("HKLM", "Software\\P", "None", notFound), 0);
    EXPECT_TRUE(notFound);
    ExpectClosingTrace("HKLM\\Software\\P\\None", "- lResult: 2 NOT FOUND");
    EXPECT_TRUE(Pc().journal.empty());
}

TEST_F(RegistryDeleteTest, DeletesOfNothingNamedAreRefused) {
    Pc().AddKey("HKLM\\Software\\P\\Child");
    for (const char* name : {"", "\\", "\\\\"}) EXPECT_EQ(fDeleteKey("HKLM", "Software\\P", name, notFound), 99);
    EXPECT_EQ(fDeleteKey("HKEY_LOCAL_MACHINE", "Software", "P", notFound), 99);
    EXPECT_EQ(fDeleteValue("HKEY_LOCAL_MACHINE", "Software", "P", notFound), 99);
    EXPECT_FALSE(notFound);
    EXPECT_TRUE(Pc().journal.empty());
}

TEST_F(RegistryDeleteTest, AValueInAnIniFileIsLeftEmpty) {
    Pc().SetIni("C:\\Some.ini", "Sect", "Name", "value");
    EXPECT_EQ(fDeleteValue("C:\\Some.ini", "Sect", "Name", notFound), 0);
    EXPECT_NE(Pc().FileText("C:\\Some.ini").find("Name="), std::string::npos);
    EXPECT_EQ(Pc().Ini("C:\\Some.ini", "Sect", "Name"), "");
}

TEST_F(RegistryDeleteTest, AValueUnderADeniedKeyGoesOnceRightsAreGranted) {
    SimulatedPc::UseWindows(Windows::seven);
    Pc().SetText(place, "V", "x");
    Pc().DenyKey(place);
    EXPECT_EQ(fDeleteValue("HKLM", "Software\\P", "V", notFound), 0);
    std::vector<std::string> expected = Security(place);
    expected.push_back("delete value HKLM\\Software\\P\\V");
    EXPECT_JOURNAL(expected);
}

TEST_F(RegistryDeleteTest, TheValueLadderRunsItsToolsInOrder) {
    Pc().AddFile("C:\\Panel\\subinacl.exe");
    Pc().AddFile("C:\\Panel\\DelReg.exe");
    Pc().SetEnv("computername", "PC");
    Pc().SetEnv("username", "Ann");
    Pc().SetText(place, "V", "x");
    Pc().DenyKey(place, false);
    Pc().Program("DelReg.exe", {.effect = [](SimulatedPc& pc) { pc.AllowKey(place); }});
    EXPECT_EQ(fDeleteValue("HKLM", "Software\\P", "V", notFound), 0);
    const std::string tool = "run hidden C:\\Panel\\subinacl.exe /subkeyreg \"hkey_local_machine\\Software\\P\" ";
    EXPECT_JOURNAL({tool + "/setowner=PC\\Ann", tool + "/sgrant=PC\\Ann=F", tool + "/grant=PC\\Ann=F",
                    "run hidden C:\\Panel\\DelReg.exe value=HKLM,Software\\P,V", "delete value HKLM\\Software\\P\\V"});
}

TEST_F(RegistryDeleteTest, AValueThatStaysGivesTheLastCode) {
    Pc().SetText("HKCC\\Software\\P", "V", "x");
    Pc().DenyKey("HKCC\\Software\\P", false);
    EXPECT_EQ(fDeleteValue("HKCC", "Software\\P", "V", notFound), 5);
    EXPECT_TRUE(Pc().Traced("\tmodRegistry\\fDeleteValue:  TopKeys supported: HKLM, HKCU, HKU, HKCR"));
    EXPECT_EQ(Pc().trace.back(), "\t\t- lResult (0=Success 2=Not Found): 5");
    EXPECT_TRUE(Pc().HasValue("HKCC\\Software\\P", "V"));
}

TEST_F(RegistryDeleteTest, EachChildIsGivenRightsAndBelowTheFirstLevelInTheNameOfHKLM) {
    SimulatedPc::UseWindows(Windows::seven);
    Pc().AddKey("HKCU\\Software\\K\\A\\Deep");
    Pc().AddKey("HKLM\\Software\\K\\A\\Deep");  // stands in the way of the slip: it gets the rights
    EXPECT_EQ(fDeleteKey("HKCU", "Software", "K", notFound), 0);
    std::vector<std::string> expected = Security("HKCU\\Software\\K");
    Append(expected, Security("HKCU\\Software\\K\\A"));
    Append(expected, Security("HKLM\\Software\\K\\A\\Deep"));
    Append(expected, {"delete key HKCU\\Software\\K\\A\\Deep", "delete key HKCU\\Software\\K\\A",
                      "delete key HKCU\\Software\\K"});
    EXPECT_JOURNAL(expected);
    EXPECT_TRUE(Pc().Traced("modRegistry\\fDeleteSubkeys passed: HKLM\\Software\\K\\A\\Deep"));
}

TEST_F(RegistryDeleteTest, ARedirectedPathEmptiesTheTreeOf32BitProgramsOnly) {
    Pc().AddKey("HKLM\\Software\\Wow6432Node\\P\\K\\Child");
    Pc().AddKey("HKLM\\Software\\P\\K\\Child");
    EXPECT_EQ(fDeleteKey("HKLM", "Software\\Wow6432Node\\P", "K", notFound), 0);
    EXPECT_FALSE(Pc().HasKey("HKLM\\Software\\Wow6432Node\\P\\K"));
    EXPECT_TRUE(Pc().HasKey("HKLM\\Software\\P\\K\\Child"));
    EXPECT_TRUE(Pc().Traced("modRegistry\\fDeleteSubkeys - VB ERROR: 13 Type mismatch"));
    ExpectClosingTrace("HKLM\\software\\p\\K", "- lResult: 0 SUCCESS");
}

// What comes of the rungs below the first does not change the result: the code of the last attempt that failed.
TEST_F(RegistryDeleteTest, TheKeyLadderEndsWithRegExe) {
    struct {
        const char* whatWorks;
        bool hasDelReg;
        const char* closing;
    } cases[] = {{"reg.exe", false, "- lResult: 2 NOT FOUND"},
                 {"/subkeyreg", false, "- lResult: 2 NOT FOUND"},
                 {"nothing", true, "- lResult: 0 SUCCESS"}};
    for (const auto& c : cases) {
        SimulatedPc::UseWindows(Windows::seven);
        Pc().SetEnv("username", "Ann");
        Pc().AddFile("C:\\Panel\\subinacl.exe");
        if (c.hasDelReg) Pc().AddFile("C:\\Panel\\DelReg.exe");
        Pc().AddKey("HKLM\\Software\\P\\K");
        Pc().DenyKey("HKLM\\Software\\P\\K", false);
        Pc().Program(c.whatWorks, {.effect = [](SimulatedPc& pc) { pc.RemoveKey("HKLM\\Software\\P\\K"); }});
        notFound = false;
        EXPECT_EQ(fDeleteKey("HKLM", "Software\\P", "K", notFound), 5);
        EXPECT_EQ(notFound, !c.hasDelReg);
        const std::string tail = "\"HKEY_LOCAL_MACHINE\\Software\\P\\K\" /setowner=administrators /grant=Ann=f";
        std::vector<std::string> expected = {"run hidden \"C:\\Panel\\subinacl.exe\" /keyreg " + tail,
                                             "run hidden \"C:\\Panel\\subinacl.exe\" /subkeyreg " + tail};
        if (c.whatWorks != "/subkeyreg"s) expected.push_back("run hidden reg.exe DELETE \"HKLM\\Software\\P\\K\" /f");
        if (c.hasDelReg) expected.push_back("run hidden C:\\Panel\\DelReg.exe key=HKLM,Software\\P,K");
        EXPECT_LINES(Pc().Journal("run"), expected);
        EXPECT_TRUE(Pc().Traced("\tmodRegistry\\fDeleteKey - Error:  5"));
        EXPECT_TRUE(Pc().Traced("\t\t- Attempting second run using subinacl..."));
        ExpectClosingTrace("HKLM\\Software\\P\\K", c.closing);
    }
}

TEST_F(RegistryDeleteTest, AKeyThatVanishesOnTheWayIsNoTrouble) {
    for (int call = 1; call <= 30; ++call) {
        SimulatedPc::UseWindows(Windows::seven);
        Pc().AddKey("HKLM\\Software\\P\\K\\A\\Deep");
        Pc().AtCall(call, [] { Pc().RemoveKey("HKLM\\Software\\P\\K"); });
        notFound = false;
        fDeleteKey("HKLM", "Software\\P", "K", notFound);
        EXPECT_FALSE(Pc().HasKey("HKLM\\Software\\P\\K")) << call;
        EXPECT_TRUE(Pc().HasKey(place)) << call;
    }
}
