// Updates of program and settings: what they do, and that a plug pulled at any moment leaves a panel that starts.
#include "maintenance/scheduled_tasks.h"
#include "pc/pc_test.h"
#include "pc/simulated_net.h"
#include "startup/config_update.h"
#include "startup/install.h"
#include "startup/startup.h"
#include "system/program_state.h"
#include "system/scramble.h"
#include "system/settings.h"
#include "zip_bytes.h"

namespace {

constexpr const char* folder = "C:\\Panel\\";
const std::string oldProgram = "MZ old version=4.2.0.0;", newProgram = "MZ new version=5.0.0.0;";
const char* const companions[] = {"Pelmark.exe", "BrevantaMCStub.exe"};

class UpdatesTest : public PcTest {
protected:
    void Prepare() {
        SimulatedPc::UseWindows(Windows::sevenX64);
        ForgetForms();
        State() = {};
        Pc().AddFile(std::string(folder) + "Brevanta.exe", oldProgram);
        for (const char* name : companions) Pc().AddFile(std::string(folder) + name, "MZ old");
        Pc().SetIni("C:\\Panel\\Brevanta.ini", "Branding", "AppName", "Old");
        Pc().SetIni("C:\\Panel\\Brevanta.ini", "General", "LastMaintenance", "11/01/2026 9:00:00 AM");
        Pc().SetIni("C:\\Panel\\Brevanta.ini", "ScheduledTasks", "UpdateConfigLoc", "http://tech.example/set.zip");
        Pc().SetIni("C:\\Panel\\Brevanta.ini", "Confirmations", "ConvertedCustomApps", "1");
    }
    void Offer(const std::string& update, const std::string& version = "5.0.0") {
        Net().web["http://update.brevanta.example/TalvenmoorUpdates.zip"].bytes =
            HandZip({{"TalvenmoorUpdates.ini", "[Brevanta]\r\nCurrentVersion=" + version + "\r\n"}});
        Net().web["http://update.brevanta.example/BrevantaEXE.zip"].bytes = update;
    }
    static std::string WholeUpdate() {
        return HandZip({{"Brevanta.exe", newProgram}, {"Pelmark.exe", "MZ new"}, {"BrevantaMCStub.exe", "MZ new"}});
    }
    std::string File(const std::string& name) { return Pc().FileText(folder + name); }

    // One run of the program; false when the plug was pulled in it.
    bool Run(const std::string& commandLine, const std::string& program = "Brevanta.exe") {
        State() = {};
        Pc().programPath = folder + program;
        Pc().commandLine = commandLine;
        try {
            ProgramMain();
        } catch (const ProgramEnded&) {
        } catch (const PlugPulled&) {
            Pc().RestartProgram();
            ForgetForms();
            return false;
        }
        ForgetForms();
        return true;
    }
};

TEST_F(UpdatesTest, AnUpdateSwapsTheProgramFiles) {
    Prepare();
    Offer(WholeUpdate());
    EXPECT_TRUE(Run("/updateonly"));
    EXPECT_EQ(File("Brevanta.exe"), newProgram);
    EXPECT_EQ(File("Pelmark.exe") + File("BrevantaMCStub.exe"), "MZ newMZ new");
    for (const std::string& path : Pc().Tree("C:\\Panel")) {
        // The running program's own file cannot go before the next update.
        EXPECT_TRUE(path.find("_old") == std::string::npos || path.ends_with("\\Brevanta_old.exe")) << path;
        EXPECT_EQ(path.find(".zip"), std::string::npos) << path;
    }
    EXPECT_FALSE(
        Pc().HasValue("HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce", "Brevanta Update Recovery"));
    EXPECT_TRUE(Pc().Journal("run").empty()) << "the scheduled update starts no panel";
}

TEST_F(UpdatesTest, UnsoundOrOlderUpdatesChangeNothing) {
    const std::string refused[] = {"",
                                   "no zip",
                                   WholeUpdate().substr(0, 80),
                                   HandZip({{"Pelmark.exe", "MZ new"}}),
                                   HandZip({{"Brevanta.exe", "text"}}),
                                   HandZip({{"Brevanta.exe", "MZ older version=4.1.9.0;"}}),
                                   HandZip({{"Brevanta.exe", newProgram}, {"..\\x", "x"}})};
    for (const std::string& update : refused) {
        Prepare();
        Offer(update);
        EXPECT_TRUE(Run("/updateonly"));
        EXPECT_EQ(File("Brevanta.exe"), oldProgram) << update;
        EXPECT_EQ(File("Pelmark.exe"), "MZ old");
    }
    for (const char* version : {"4.2.0", "", "1.2", "a.b.c", "99999999999.0.0", "4.1.9"}) {
        Prepare();
        Offer(WholeUpdate(), version);
        Run("/updateonly");
        EXPECT_EQ(File("Brevanta.exe"), oldProgram) << version;
    }
    Prepare();
    Offer(WholeUpdate());
    Pc().otherInstanceRuns = true;
    Run("/updateonly");
    EXPECT_EQ(File("Brevanta.exe"), oldProgram) << "two updates at once";
}

TEST_F(UpdatesTest, APlugPulledAnywhereInTheSwapLeavesWholePrograms) {
    int points = 0;
    for (bool through = false; !through && points < 500; ++points) {
        Prepare();
        Offer(WholeUpdate());
        Pc().StopAt(points + 1);
        through = Run("/updateonly");
        Pc().StopAt(-1000000);
        // What the user's shortcut or, with no main program in place, the entry for the next logon starts.
        bool mainThere = Pc().Exists("C:\\Panel\\Brevanta.exe");
        Run("/disablemaintenance", mainThere ? "Brevanta.exe" : "Brevanta_old.exe");
        EXPECT_TRUE(File("Brevanta.exe") == oldProgram || File("Brevanta.exe") == newProgram) << "point " << points;
        for (const char* name : companions)
            EXPECT_TRUE(File(name) == "MZ old" || File(name) == "MZ new") << name << " at point " << points;
        EXPECT_EQ(ReadIni("C:\\Panel\\Brevanta.ini", "Branding", "AppName"), "Old");
    }
    RecordProperty("points", points);
    EXPECT_GT(points, 20);
    EXPECT_LT(points, 500);
}

TEST_F(UpdatesTest, APlugPulledAnywhereInTheSettingsUpdateLosesNothing) {
    int points = 0;
    for (bool through = false; !through && points < 500; ++points) {
        Prepare();
        Net().web["http://tech.example/set.zip"].bytes =
            HandZip({{"Brevanta.ini", "[Branding]\r\nAppName=New\r\n[General]\r\nLastMaintenance=1/1/2000\r\n"},
                     {"App.cfg", "x"}});
        Pc().StopAt(points + 1);
        through = Run("/updateconfig");
        Pc().StopAt(-1000000);
        std::string name = ReadIni("C:\\Panel\\Brevanta.ini", "Branding", "AppName");
        EXPECT_TRUE(name == "Old" || name == "New") << "point " << points << ": " << name;
        std::string kept = Pc().TextOf("HKLM\\Software\\Talvenmoor\\Maintenance", "LastRun");
        if (kept.empty()) kept = ReadIni("C:\\Panel\\Brevanta.ini", "General", "LastMaintenance");
        EXPECT_EQ(kept, "11/01/2026 9:00:00 AM") << "point " << points;
    }
    RecordProperty("points", points);
    EXPECT_GT(points, 10);
    EXPECT_LT(points, 500);
}

TEST_F(UpdatesTest, SettingsComeFromTheWebOrTheCloud) {
    struct Case {
        std::string set;
        const char* name;
    };
    const Case cases[] = {
        {HandZip({{"Brevanta.ini", "[Branding]\r\nAppName=New\r\n"}, {"supportlogo.png", "png"}}), "New"},
        {HandZip({{"App.cfg", "x"}}), "Old"},
        {HandZip({{"Brevanta.ini", std::string("\0\0[A]", 5)}}), "Old"},
        {HandZip({{"Brevanta.ini", "no section at all"}}), "Old"},
        {HandZip({{"Brevanta.ini", "[Branding]\r\nAppName=New\r\n"}, {"../evil", "x"}}), "Old"},
        {"", "Old"},
    };
    for (const Case& row : cases) {
        for (bool cloud : {false, true}) {
            Prepare();
            Pc().AddFile("C:\\Panel\\supportlogo.jpg", "jpg");
            if (cloud) {
                Pc().SetIni("C:\\Panel\\Brevanta.ini", "Nimbra", "UserName", "tech");
                Pc().SetIni("C:\\Panel\\Brevanta.ini", "Nimbra", "Password", EncryptString("secret", passwordKey));
                Net().ftpFolders.insert("/Brevanta");
                Net().ftpFiles["/Brevanta/BrevantaConfig.zip"] = row.set;
            } else {
                Net().web["http://tech.example/set.zip"].bytes = row.set;
            }
            Run("/updateconfig");
            bool applies = std::string(row.name) == "New";
            // From the cloud a set without settings is unpacked all the same: it adds to what is there.
            EXPECT_EQ(ReadIni("C:\\Panel\\Brevanta.ini", "Branding", "AppName"), row.name) << cloud;
            EXPECT_EQ(ReadIni("C:\\Panel\\Brevanta.ini", "General", "LastMaintenance"), "11/01/2026 9:00:00 AM")
                << cloud;
            EXPECT_FALSE(Pc().Exists("C:\\evil"));
            if (!cloud) {
                EXPECT_EQ(Pc().Exists("C:\\Panel\\supportlogo.jpg"), !applies) << "an older logo must not win";
            }
        }
    }
}

TEST_F(UpdatesTest, InstallAndRemovalToTheLetter) {
    Prepare();
    Pc().SetIni("C:\\Panel\\Brevanta.ini", "ScheduledTasks", "UpdateApp", "1");
    Pc().SetIni("C:\\Panel\\Brevanta.ini", "ScheduledTasks", "OpenTSAfterInstall", "1");
    for (const char* tool : {"psexec.exe", "MSBv_Fix.exe"}) Pc().AddFile(std::string(folder) + tool);
    Pc().SetClock(2026, 11, 3, 14, 5, 9);
    Pc().Answer(pc::answerYes);
    Run("/installer");
    for (const char* tool : {"psexec.exe", "MSBv_Fix.exe"}) EXPECT_FALSE(Pc().Exists(std::string(folder) + tool));
    EXPECT_LINES(Pc().Journal("show"), {"show \"Open Task Scheduler to modify tasks?\" (4) -> 6"});
    EXPECT_LINES(
        Pc().Journal("run"),
        {"run hidden schtasks.exe /delete /f /tn \"Old - System Restore Point 0\"",
         "run hidden schtasks.exe /delete /f /tn \"Old - System Restore Point 1\"",
         "run hidden schtasks.exe /delete /f /tn \"Old - System Restore Point 2\"",
         "run hidden schtasks.exe /delete /f /tn \"Brevanta App Update\"",
         "run hidden schtasks.exe /delete /f /tn \"Brevanta Config Update\"",
         "run hidden schtasks.exe /create /ru system /sc WEEKLY /d MON /st 12:00:00 /rl highest /f /tn \"Brevanta "
         "App Update\" /tr \"\\\"C:\\Panel\\Brevanta.exe\\\" /updateonly",
         "run mmc.exe taskschd.msc"});
    EXPECT_EQ(Pc().TextOf("HKLM\\Software\\Talvenmoor\\Maintenance", "LastRun"), "11/3/2026 2:05:09 PM");
    EXPECT_EQ(ReadIni("C:\\Panel\\Brevanta.ini", "General", "LastMaintenance"), "11/3/2026 2:05:09 PM");
    Pc().SetIni("C:\\Panel\\Brevanta.ini", "ScheduledTasks", "OpenTSAfterInstall", "0");
    Run("/installer");
    EXPECT_EQ(Pc().Journal("show").size(), 1u);
    Pc().journal.clear();
    Pc().SetText("HKLM\\Software\\Talvenmoor\\Brevanta", "x", "y");
    Pc().SetText("HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run", "Brevanta Maintenance Check", "z");
    Run("/uninstaller");
    EXPECT_FALSE(Pc().HasKey("HKLM\\Software\\Talvenmoor\\Brevanta"));
    EXPECT_FALSE(
        Pc().HasValue("HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run", "Brevanta Maintenance Check"));
    EXPECT_EQ(Pc().Journal("run hidden schtasks.exe /delete").size(), 5u);

    SimulatedPc::UseWindows(Windows::xp);
    Pc().AddKey("HKCR\\CLSID");
    Pc().AddFile("C:\\Panel\\Brevanta.exe", oldProgram);
    Pc().SetIni("C:\\Panel\\Brevanta.ini", "Branding", "OEMLinkName", "Harbour");
    Pc().SetIni("C:\\Panel\\Brevanta.ini", "Branding", "OEMLinkToolTip", "Help");
    Run("/installoemlink");
    const std::string key = "HKCR\\CLSID\\{2559a1f6-21d7-11d4-bdaf-00c04f60b9f0}";
    EXPECT_EQ(Pc().TextOf(key, ""), "Harbour");
    EXPECT_EQ(Pc().TextOf(key + "\\Instance\\InitPropertyBag", "Param1"), "\"C:\\Panel\\Brevanta.exe\"");
    EXPECT_TRUE(Pc().HasValue(key + "\\ShellFolder", "Attributes"));
}

}  // namespace
