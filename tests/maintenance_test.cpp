// The maintenance run as a whole: what is asked, in which order the steps come, and how it ends.
#include "maintenance/maintenance_run.h"

#include <algorithm>

#include "controls/panel_links.h"
#include "pc/pc_test.h"
#include "system/program_state.h"

namespace {

const std::string question =
    "Maintenance may take from 15 minutes to several hours depending on how much maintenance your PC needs.  Continue?";
const std::string handlers = "HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\VolumeCaches\\";

const ControlSpec panelControls[] = {{Kind::textBox, "txtStatus", "", {}}};
const FormDefinition panel = {"frmMain", "", 100, 100, Border::fixed, panelControls, [](Form&) {}};
const FormDefinition other = {"frmOther", "", 100, 100, Border::fixed, {}, [](Form&) {}};

class MaintenanceTest : public PcTest {
protected:
    MaintenanceTest() { Prepare(Windows::seven); }

    // A PC whose settings ask for nothing.
    void Prepare(Windows windows) {
        ForgetForms();
        SimulatedPc::UseWindows(windows);
        State() = {};
        State().settingsFile = "C:\\Panel\\Brevanta.ini";
        State().bHandle64BitRedirect = true;
        Pc().DeleteTree(Pc().Profile() + "\\AppData\\Local\\Temp");
        for (const char* key :
             {"DelTemps", "DelTempInternet", "CleanMgr", "DefragReg", "DefragStartup", "ProcIdleTasks", "DoSystemRP",
              "ShowURLAfterMaint", "ShowURLAfterMaintInIB", "CloseAppAfterMaint"})
            Set(key, "0");
        Pc().SetClock(2026, 11, 22, 10, 15, 30);
        Links().getHealth = [](Form& form) { Pc().Note("health of " + form.Name()); };
        Links().showPanelBrowser = [](bool modal) {
            Pc().Note(std::string(modal ? "modal" : "modeless") + " browser at " + State().browserAddress);
        };
    }

    static void Set(const std::string& key, const std::string& value) {
        Pc().SetIni(State().settingsFile, "Maint", key, value);
    }

    static void Run() {
        Pc().Answer(pc::answerOk);
        RunMaintenance(ShowForm(panel));
    }

    static bool Did(const std::string& head) { return !Pc().Journal(head).empty(); }
};

TEST_F(MaintenanceTest, CancelCountsTheUseAndDoesNothingElse) {
    Pc().AddFile("C:\\Users\\Ann\\AppData\\Local\\Temp\\a.tmp");
    Set("CleanMgr", "1");
    Pc().Answer(pc::answerCancel);
    RunMaintenance(ShowForm(panel));
    EXPECT_JOURNAL({"ini C:\\Panel\\Usage.ini [Usage] Maintenance=1", "show \"" + question + "\" (33) -> 2"});
}

TEST_F(MaintenanceTest, RunWithNothingAskedStillRecordsAndTellsTheEnd) {
    Run();
    EXPECT_JOURNAL({"ini C:\\Panel\\Usage.ini [Usage] Maintenance=1", "show \"" + question + "\" (33) -> 1",
                    "ini C:\\Panel\\Brevanta.ini [General] LastMaintenance=11/22/2026 10:15:30 AM",
                    "make key HKLM\\Software\\Talvenmoor\\Maintenance",
                    "set HKLM\\Software\\Talvenmoor\\Maintenance\\LastRun = 11/22/2026 10:15:30 AM",
                    "health of frmMain", "show \"Maintenance is complete!\" (0) -> 1"});
    EXPECT_EQ(TextOn("frmMain", "txtStatus"), "");
    EXPECT_TRUE(IsFormLoaded("frmMain"));
}

TEST_F(MaintenanceTest, WholeRunTakesTheStepsInOrder) {
    Prepare(Windows::xp);
    for (const char* key : {"DelTemps", "CleanMgr", "DefragReg", "DefragStartup", "ProcIdleTasks", "DoSystemRP"})
        Set(key, "1");
    Set("SystemRPName", "After maintenance");
    Pc().AddFile("C:\\Documents and Settings\\Ann\\Local Settings\\Temp\\a.tmp");
    Pc().AddFile("C:\\Panel\\CCleaner.ini", "[Options]");
    Pc().AddFile("C:\\Panel\\3rd Party Tools\\CCleaner\\CCleaner.ini", "old");
    Pc().AddFile("C:\\Panel\\3rd Party Tools\\pagedfrg.exe");
    Pc().AddFile("C:\\Panel\\3rd Party Tools\\contig.exe");
    Pc().AddFile("C:\\Panel\\3rd Party Tools\\Tool.exe");
    Pc().SetIni("C:\\Panel\\SortOrder.cfg", "SortOrder", "SortOrder", "Tool|");
    Pc().SetIni("C:\\Panel\\Tool.cfg", "Config", "App", "Tool.exe");
    Pc().SetText("HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run", "Tray", "C:\\Tray\\tray.exe");
    Pc().AddFile("C:\\Tray\\tray.exe");
    Pc().AddKey(handlers + "Old Files");
    std::vector<std::string> steps;
    auto noteStatus = [&](SimulatedPc&) { steps.push_back(TextOn("frmMain", "txtStatus")); };
    for (const char* tool : {"cleanmgr", "rundll32"}) Pc().Program(tool, {.effect = noteStatus});
    Run();
    EXPECT_LINES(Pc().Journal("run"),
                 {"run hidden cmd /c net stop wuauserv /y", "run hidden cmd /c net stop bits /y",
                  "run hidden net start bits", "run hidden net start wuauserv", "run cleanmgr.exe /sagerun:44",
                  "run \"C:\\Panel\\3rd Party Tools\\Tool.exe\"", "run \"C:\\Panel\\3rd Party Tools\\pagedfrg.exe\" -o",
                  "run \"C:\\Panel\\3rd Party Tools\\contig.exe\" -v C:\\Tray\\tray.exe",
                  "run rundll32.exe advapi32.dll,ProcessIdleTasks"});
    EXPECT_LINES(steps, {"Running CleanMgr.exe", "Windows is processing background tasks..."});
    // The restore point takes in all changes, and the record of the run is written behind it.
    const auto place = [](const char* head) {
        const auto& lines = Pc().journal;
        return std::find_if(lines.begin(), lines.end(),
                            [&](const std::string& line) { return line.starts_with(head); }) -
               lines.begin();
    };
    EXPECT_LT(place("run rundll32.exe"), place("wmi restore point \"After maintenance\" 0 100"));
    EXPECT_LT(place("wmi restore point"), place("ini C:\\Panel\\Brevanta.ini [General] LastMaintenance="));
    EXPECT_FALSE(Pc().Exists("C:\\Documents and Settings\\Ann\\Local Settings\\Temp\\a.tmp"));
    EXPECT_EQ(Pc().FileText("C:\\Panel\\3rd Party Tools\\CCleaner\\CCleaner.ini"), "[Options]");
    EXPECT_EQ(Pc().journal.back(), "show \"Maintenance is complete!\" (0) -> 1");
}

// A file and what a value of a key makes of it.
TEST_F(MaintenanceTest, CleaningKeysHaveTheirOwnDefaults) {
    struct Case {
        const char* key;
        const char* file;
        bool whenAbsent;
    };
    const Case cases[] = {
        {"DelTemps", "C:\\Windows\\Temp\\w.tmp", true},
        {"DelTempInternet", "C:\\Users\\Ann\\AppData\\Local\\Microsoft\\Windows\\Temporary Internet Files\\i.gif",
         true},
        {"DelHistory", "C:\\Users\\Ann\\AppData\\Local\\Microsoft\\Windows\\History\\h.dat", false},
        {"DelCookies", "C:\\Users\\Ann\\AppData\\Roaming\\Microsoft\\Windows\\Cookies\\c.txt", false},
    };
    for (const Case& one : cases) {
        for (const std::string value : {"", "0", "1", "yes"}) {
            SCOPED_TRACE(one.key + ("=" + value));
            Prepare(Windows::seven);
            for (const Case& each : cases) Pc().AddFile(each.file);
            Set(one.key, value);
            Run();
            for (const Case& each : cases) {
                const bool removed = &each == &one && (value == "1" || (value.empty() && one.whenAbsent));
                EXPECT_EQ(Pc().Exists(each.file), !removed) << each.file;
            }
        }
    }
}

TEST_F(MaintenanceTest, ToolKeysFollowTheirTests) {
    struct Case {
        const char* key;
        const char* value;
        const char* run;
        bool runs;
    };
    const Case cases[] = {
        {"CleanMgr", "1", "run cleanmgr.exe", true},
        {"CleanMgr", "", "run cleanmgr.exe", false},
        {"CleanMgr", "yes", "run cleanmgr.exe", false},
        {"ProcIdleTasks", "2", "run rundll32.exe", true},
        {"ProcIdleTasks", "-1", "run rundll32.exe", false},
        {"ProcIdleTasks", "", "run rundll32.exe", true},
        {"DefragReg", "1", "run \"C:\\Panel\\3rd Party Tools\\pagedfrg.exe\"", true},
        {"DefragReg", "2", "run \"C:\\Panel\\3rd Party Tools\\pagedfrg.exe\"", false},
        {"DefragReg", "x", "run \"C:\\Panel\\3rd Party Tools\\pagedfrg.exe\"", true},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.key + (std::string("=") + one.value));
        Prepare(Windows::seven);
        Pc().AddFile("C:\\Panel\\3rd Party Tools\\pagedfrg.exe");
        Set(one.key, one.value);
        Run();
        EXPECT_EQ(Did(one.run), one.runs);
    }
}

TEST_F(MaintenanceTest, EndsAsTheSettingsSay) {
    struct Case {
        const char* close;
        const char* showUrl;
        const char* inBrowser;
        const char* end;  // what the journal holds behind the health refresh
        bool stays;
    };
    const Case cases[] = {
        {"0", "0", "0", "show \"Maintenance is complete!\" (0) -> 1", true},
        {"0", "1", "0", "open http://x.example/?c=pc1", true},
        {"0", "1", "1", "modal browser at http://x.example/?c=pc1", true},
        {"1", "0", "0", "", false},
        {"1", "1", "0", "open http://x.example/?c=pc1", false},
        {"", "0", "0", "", false},  // no number counts as on
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(std::string(one.close) + one.showUrl + one.inBrowser);
        Prepare(Windows::seven);
        Pc().SetEnv("computername", "PC1");
        Set("CloseAppAfterMaint", one.close);
        Set("ShowURLAfterMaint", one.showUrl);
        Set("ShowURLAfterMaintInIB", one.inBrowser);
        Set("PostMaintURL", "http://x.example/?c=[computername]");
        ShowForm(other);
        Run();
        const auto health = std::find(Pc().journal.begin(), Pc().journal.end(), "health of frmMain");
        ASSERT_NE(health, Pc().journal.end());
        const std::vector<std::string> expected =
            *one.end ? std::vector<std::string>{one.end} : std::vector<std::string>{};
        EXPECT_LINES(std::vector<std::string>(health + 1, Pc().journal.end()), expected);
        EXPECT_EQ(IsFormLoaded("frmMain"), one.stays);
        EXPECT_EQ(IsFormLoaded("frmOther"), one.stays);
        EXPECT_EQ(
            Pc().Journal("show").front(),
            "show \"" + question +
                (one.stays ? "" : "\r\n\r\n(The Support Control Panel will close after maintenance is complete.)") +
                "\" (33) -> 1");
    }
}

TEST_F(MaintenanceTest, LanguageFileReplacesTheTexts) {
    const std::string file = "C:\\Panel\\AltLang.INI";
    Pc().SetIni(file, "MessageBoxes", "PreMaintanceMsg", "Weiter?");
    Pc().SetIni(file, "MessageBoxes", "MaintenanceIsComplete", "Fertig!");
    Pc().SetIni(file, "StatusBarText", "Running", "Es arbeitet");
    Set("CleanMgr", "1");
    std::string status;
    Pc().Program("cleanmgr", {.effect = [&](SimulatedPc&) { status = TextOn("frmMain", "txtStatus"); }});
    Run();
    EXPECT_EQ(Pc().Journal("show").front(), "show \"Weiter?\" (33) -> 1");
    EXPECT_EQ(Pc().Journal("show").back(), "show \"Fertig!\" (0) -> 1");
    EXPECT_EQ(status, "Es arbeitet CleanMgr.exe");
}

TEST_F(MaintenanceTest, NoticeNamesTheToolsInOrderAndIsNotShown) {
    EXPECT_FALSE(BuildThirdPartyNotice().any);
    for (const char* key : {"CCleaner", "Defraggler", "DefragStartup"}) Set(key, "1");
    Set("DefragReg", "2");
    Pc().SetIni(State().settingsFile, "CustomMaintApps", "AppEnabled3", "1");
    Pc().SetIni(State().settingsFile, "CustomMaintApps", "AppName3", "My Tool");
    Pc().SetIni(State().settingsFile, "CustomMaintApps", "AppName2", "Off");
    const ThirdPartyNotice notice = BuildThirdPartyNotice();
    EXPECT_TRUE(notice.any);
    EXPECT_EQ(notice.text,
              "Maintenance was configured by your computer technician to download/execute the following 3rd Party "
              "Applications:\r\n\r\nPiriform CCleaner\r\n\r\nPiriform Defraggler\r\n\r\nSysinternals Contig "
              "(Microsoft)\r\n\r\nMy Tool\r\n\r\nIf you do not trust these applications, click NO to run Maintenance "
              "WITHOUT them, or YES to include them in your Maintenance routine.");
    Set("DefragStartup", "0");
    Run();
    EXPECT_EQ(Pc().Journal("show").size(), 2u);
}

TEST_F(MaintenanceTest, DiskCleanupSelectsAllHandlersButTheExcluded) {
    const std::string names[] = {"Active Setup Temp Folders",
                                 "Compress old files",
                                 "DECOMPRESSED Leftovers",
                                 "Microsoft OFFICE Setup Files",
                                 "Recycle Bin",
                                 "System error memory dump files",
                                 "Memory",
                                 "Temporary Files"};
    for (const std::string& name : names) Pc().AddKey(handlers + name);
    Pc().SetNumber(handlers + "Recycle Bin", "StateFlags0044", 2);
    Pc().SetNumber(handlers + "Recycle Bin", "StateFlags0043", 2);
    Pc().SetNumber(handlers + "Temporary Files", "StateFlags0044", 0);
    RunCleanMgr();
    for (const std::string& name : names) {
        const bool selected = name == names[0] || name == names[6] || name == names[7];
        EXPECT_EQ(Pc().NumberOf(handlers + name, "StateFlags0044"), selected ? 2u : 0u) << name;
        EXPECT_EQ(Pc().HasValue(handlers + name, "StateFlags0044"), selected) << name;
    }
    EXPECT_EQ(Pc().NumberOf(handlers + "Recycle Bin", "StateFlags0043"), 2u);
    EXPECT_EQ(Pc().journal.back(), "run cleanmgr.exe /sagerun:44");
}

TEST_F(MaintenanceTest, PanelClosedDuringAWaitDoesNotCrashTheRun) {
    for (const char* close : {"0", "1"}) {
        Prepare(Windows::seven);
        Set("ProcIdleTasks", "1");
        Set("CloseAppAfterMaint", close);
        Pc().Program("rundll32", {.effect = [](SimulatedPc&) {
                         CloseByUser("frmMain");
                         HandlerScope nextEvent;  // where forms that nobody works with any more are freed
                     }});
        Run();
        EXPECT_FALSE(IsFormLoaded("frmMain"));
        EXPECT_EQ(Pc().TextOf("HKLM\\Software\\Talvenmoor\\Maintenance", "LastRun"), "11/22/2026 10:15:30 AM");
    }
}

TEST_F(MaintenanceTest, AnySingleFailureCostsOneEffectAtMost) {
    for (int n = 1;; ++n) {
        SCOPED_TRACE(n);
        Prepare(Windows::seven);
        for (const char* key : {"DelTemps", "CleanMgr", "ProcIdleTasks"}) Set(key, "1");
        Pc().AddFile("C:\\Users\\Ann\\AppData\\Local\\Temp\\a.tmp");
        Pc().AddFile("C:\\Users\\Ann\\Documents\\keep.doc");
        Pc().AddFile("C:\\Windows\\Temp\\w.tmp");
        Pc().AddKey(handlers + "Temporary Files");
        const int before = Pc().calls;
        Pc().FailCall(n);
        Run();
        const int calls = Pc().calls - before;

        const bool effects[] = {
            !Pc().Ini("C:\\Panel\\Usage.ini", "Usage", "Maintenance").empty(),
            !Pc().Exists("C:\\Users\\Ann\\AppData\\Local\\Temp\\a.tmp"),
            !Pc().Exists("C:\\Windows\\Temp\\w.tmp"),
            Did("run hidden net start bits") && Did("run hidden net start wuauserv"),
            Did("run cleanmgr.exe /sagerun:44"),
            !Did("run cleanmgr.exe") || Pc().NumberOf(handlers + "Temporary Files", "StateFlags0044") == 2,
            Did("run rundll32.exe advapi32.dll,ProcessIdleTasks"),
            !Pc().Ini(State().settingsFile, "General", "LastMaintenance").empty(),
            !Pc().TextOf("HKLM\\Software\\Talvenmoor\\Maintenance", "LastRun").empty(),
            Pc().journal.back() == "show \"Maintenance is complete!\" (0) -> 1",
        };
        EXPECT_GE(std::count(std::begin(effects), std::end(effects), true), static_cast<long>(std::size(effects)) - 1);
        EXPECT_TRUE(Pc().Exists("C:\\Users\\Ann\\Documents\\keep.doc"));
        EXPECT_LINES(Pc().Journal("health"), {"health of frmMain"});
        EXPECT_FALSE(IsFormLoaded("frmStatusWin"));
        if (HasFailure() || calls < n) break;
    }
}

}  // namespace
