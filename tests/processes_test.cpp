#include "system/processes.h"

#include "pc/pc_test.h"
#include "system/program_state.h"

using namespace std::string_literals;

namespace {

class ProcessesTest : public PcTest {
protected:
    ProcessesTest() {
        Pc().AddFile("C:\\Tools\\a b.exe");
        Pc().AddFile("C:\\Tools\\tool.exe");
        Pc().SetEnv("username", "Ann");
        Pc().SetEnv("computername", "PC");
    }
};

constexpr const char* psexec = "C:\\Panel\\3rd Party Tools\\psexec.exe";

}  // namespace

TEST_F(ProcessesTest, ShellXBuildsTheCommandLine) {
    struct {
        const char *path, *arguments;
        uint16_t style;
        std::vector<std::string> journal;
    } cases[] = {
        {"C:\\Tools\\a b.exe", "/x y", 1, {"run \"C:\\Tools\\a b.exe\" /x y"}},
        {"C:\\Tools\\tool.exe", "", 0, {"run hidden C:\\Tools\\tool.exe"}},
        {"cmd.exe", "/c dir", 0, {"run hidden cmd.exe /c dir"}},
        {"C:\\Tools\\none.exe", "", 0, {}},
        {"Tools\\tool.exe", "", 0, {}},
    };
    for (const auto& c : cases) {
        Pc().journal.clear();
        EXPECT_EQ(ShellX(c.path, c.arguments, false, c.style), !c.journal.empty()) << c.path;
        EXPECT_JOURNAL(c.journal);
    }
    EXPECT_TRUE(Pc().Traced("\tCommonModule\\ShellX FILE NOT FOUND"));
    EXPECT_TRUE(Pc().Traced("\t\t- sPathAndFileName=C:\\Tools\\none.exe"));
    EXPECT_FALSE(ShellX("nothere.exe", "", true, 0));
    EXPECT_TRUE(Pc().Traced("ShellX (Failed):  nothere.exe"));
}

TEST_F(ProcessesTest, TheSystemAccountIsReachedByPsexecWhenItCan) {
    struct {
        bool hasPsexec, wait, flag, always;
        const char *user, *program, *expected, *traced;
    } cases[] = {
        {true, true, true, false, "Ann", "C:\\Panel\\B.exe",
         "run hidden \"C:\\Panel\\3rd Party Tools\\psexec.exe\" -s -i cmd.exe x", ""},
        {true, false, false, true, "Ann", "C:\\Panel\\B.exe",
         "run hidden \"C:\\Panel\\3rd Party Tools\\psexec.exe\" -s -i -d cmd.exe x", ""},
        {false, true, true, false, "Ann", "C:\\Panel\\B.exe", "run cmd.exe x", "ShellX:  Cannot find PSEXEC.EXE"},
        {true, true, true, false, "Ann", "\\\\srv\\share\\B.exe", "run cmd.exe x",
         "ShellX:  Cannot run app as system with PSEXEC on a UNC path."},
        {true, true, true, false, "PC$", "C:\\Panel\\B.exe", "run cmd.exe x", ""},
        {true, true, false, false, "Ann", "C:\\Panel\\B.exe", "run cmd.exe x", ""},
    };
    for (const auto& c : cases) {
        SimulatedPc& pc = SimulatedPc::UseWindows(Windows::seven);
        pc.SetEnv("username", c.user);
        pc.SetEnv("computername", "PC");
        pc.programPath = c.program;
        if (c.hasPsexec) pc.AddFile(psexec);
        State().bRunAllAsSystem = c.always;
        EXPECT_TRUE(ShellX("cmd.exe", "x", c.wait, 1, nullptr, c.flag));
        EXPECT_JOURNAL({c.expected});
        EXPECT_TRUE(*c.traced == 0 || pc.Traced(c.traced)) << c.traced;
    }
}

TEST_F(ProcessesTest, WaitingGivesTheExitCodeAndKeepsTheWindowAlive) {
    Pc().Program("tool.exe", {.exitCode = 7, .runs = 5000});
    Pc().AtPump(3, [] { EXPECT_TRUE(RunAndWait("cmd.exe /c nested", 0)); });  // a click meanwhile
    int32_t code = -1;
    uint32_t started = Pc().ticks;
    EXPECT_TRUE(ShellX("C:\\Tools\\tool.exe", "", true, 0, &code));
    EXPECT_EQ(code, 7);
    EXPECT_JOURNAL({"run hidden C:\\Tools\\tool.exe", "run hidden cmd.exe /c nested"});
    EXPECT_GE(Pc().ticks - started, 5000u);
    EXPECT_LE(Pc().ticks - started, 5200u);
    EXPECT_TRUE(ShellX("C:\\Tools\\tool.exe", "", false, 0, &code));
    EXPECT_TRUE(Pc().IsRunning("tool.exe"));
}

TEST_F(ProcessesTest, AProgramGoneBeforeItCouldBeOpenedCountsAsFailed) {
    Pc().Program("tool.exe", {.runs = 0});
    std::string message;
    EXPECT_FALSE(ShellX("C:\\Tools\\tool.exe", "", true, 0));
    EXPECT_FALSE(ShellandWaitForTermination("C:\\Tools\\tool.exe", 0, message));
    EXPECT_EQ(message,
              "This program could not determine whether the process started."
              "Please watch the program and check it completes.");
}

TEST_F(ProcessesTest, TheTimeOutIsToldButNeverEndsTheWait) {
    struct {
        uint32_t timeOut;
        bool matters, success;
    } cases[] = {{1000, true, false}, {1000, false, true}, {60000, true, true}};
    Pc().Program("tool.exe", {.runs = 5000});
    for (const auto& c : cases) {
        uint32_t started = Pc().ticks;
        std::string message;
        EXPECT_EQ(ShellandWaitForTermination("C:\\Tools\\tool.exe", 0, message, c.timeOut, c.matters), c.success);
        EXPECT_EQ(message, c.success ? "" : "The process has timed out.");
        EXPECT_GE(Pc().ticks - started, 5000u);
        EXPECT_EQ(Pc().trace.back(), c.success ? "\t\tSuccess=True" : "\t\tSuccess=False");
    }
    Pc().Program("tool.exe", {.runs = Behaviour::forever});
    std::string message;
    EXPECT_THROW(ShellandWaitForTermination("C:\\Tools\\tool.exe", 0, message, 1000, true), WaitsForever);
    EXPECT_TRUE(Pc().IsRunning("tool.exe"));
}

TEST_F(ProcessesTest, KillProcessTakesEveryNameThatEndsSo) {
    for (const char* name : {"iexplore.exe", "IExplore.EXE", "myiexplore.exe", "explore.exe.txt", "other.exe"})
        Pc().AddProcess(name);
    EXPECT_FALSE(KillProcess("Explore.exe"));
    EXPECT_LINES(Pc().Journal("kill"), {"kill iexplore.exe", "kill IExplore.EXE", "kill myiexplore.exe"});
    Pc().journal.clear();
    KillProcess("");
    KillProcess("brevanta.exe");  // itself
    KillProcess(std::string(300, 'x'));
    EXPECT_TRUE(Pc().journal.empty());
    EXPECT_TRUE(Pc().IsRunning("other.exe"));
}

TEST_F(ProcessesTest, KillProcessSurvivesAListThatChanges) {
    for (int call = 1; call <= 6; ++call) {
        SimulatedPc& pc = SimulatedPc::UseWindows(Windows::seven);
        for (const char* name : {"a.exe", "b.exe", "c.exe"}) pc.AddProcess(name);
        pc.AtCall(call, [] { Pc().EndProcesses("b.exe"); });
        KillProcess(".exe");
        for (const char* name : {"a.exe", "b.exe", "c.exe"}) EXPECT_FALSE(pc.IsRunning(name)) << call << name;
    }
    SimulatedPc& old = SimulatedPc::UseWindows(Windows::seven);
    old.version.major = 4;
    old.AddProcess("a.exe");
    KillProcess("a.exe");
    EXPECT_TRUE(old.IsRunning("a.exe"));  // no snapshots there
}

TEST_F(ProcessesTest, KillByIdNeedsTheDebugPrivilege) {
    uint32_t id = Pc().AddProcess("a.exe");
    Pc().refusedPrivileges = {"SeDebugPrivilege"};
    EXPECT_FALSE(KillProcessByID(id, 3));
    Pc().refusedPrivileges.clear();
    EXPECT_FALSE(KillProcessByID(987654, 3));
    EXPECT_FALSE(KillProcessByID(pc::OwnProcessId(), 3));
    EXPECT_TRUE(KillProcessByID(id, 3));
    EXPECT_TRUE(Pc().heldPrivileges.empty());
    Pc().heldPrivileges = {"SeDebugPrivilege"};
    KillProcessByID(987654, 3);
    EXPECT_EQ(Pc().heldPrivileges.size(), 1u);  // was on before
    EXPECT_LINES(Pc().Journal("kill"), {"kill a.exe"});
}

TEST_F(ProcessesTest, KillEverywhereTakesAllRoads) {
    uint32_t id = Pc().AddProcess("odd");
    std::string digits = std::to_string(id);
    KillProcessEverywhere(digits, true);
    KillProcessEverywhere("C:\\Tools\\tool.exe", true);
    EXPECT_JOURNAL({"kill odd", "run hidden cmd.exe /c tskill \"" + digits + "\" /a",
                    "run hidden cmd.exe /c taskkill /f /t /im \"" + digits + "\"",
                    "run hidden cmd.exe /c tskill \"tool.exe\" /a",
                    "run hidden cmd.exe /c taskkill /f /t /im \"tool.exe\""});
    Pc().journal.clear();
    for (const char* name : {"", "C:\\Tools\\", "C:\\Panel\\BREVANTA.exe"}) KillProcessEverywhere(name, true);
    EXPECT_TRUE(Pc().journal.empty());
}
