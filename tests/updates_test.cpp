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
#include "system/text.h"
#include "zip_bytes.h"

namespace {

constexpr const char* folder = "C:\\Panel\\";
const std::string oldProgram = "MZ old version=4.2.0.0;", newProgram = "MZ new version=5.0.0.0;";
const char* const companions[] = {"Pelmark.exe", "BrevantaMCStub.exe"};

class UpdatesTest : public PcTest {
protected:
    void Prepare(Windows windows = Windows::sevenX64) {
        SimulatedPc::UseWindows(windows);
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

// A mode, what stands on the PC before, and all it does to it.
struct ModeRow {
    const char* what;
    Windows windows;
    const char* commandLine;
    std::map<std::string, std::string> settings;  // "Section/Key"
    void (*prepare)();
    // Line by line, with short names for the places; without the access lists of keys on their way out and the names
    // that files have while they are unpacked.
    const char* journal;
};

std::string ShortJournal() {
    constexpr std::pair<const char*, const char*> names[] = {
        {"HKCR\\CLSID\\{2559a1f6-21d7-11d4-bdaf-00c04f60b9f0}", "<link>"},
        {"HKLM\\Software\\Talvenmoor", "<vendor>"},
        {"HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\", "<windows>"},
        {"C:\\Panel\\", "<panel>"},
        {"http://update.brevanta.example/", "<updates>"},
        {"run hidden schtasks.exe", "task"},
    };
    std::string text;
    for (std::string line : Pc().journal) {
        if (line.starts_with("security") || line.find(".unzip") != std::string::npos) continue;
        for (const auto& [place, name] : names) line = ReplaceAll(line, place, name);
        text += "\n" + line;
    }
    return text;
}

void CloudHolds(const std::string& archive) {
    Pc().SetIni("C:\\Panel\\Brevanta.ini", "Nimbra", "UserName", "tech");
    Pc().SetIni("C:\\Panel\\Brevanta.ini", "Nimbra", "Password", EncryptString("secret", passwordKey));
    Net().ftpFolders.insert("/Brevanta");
    if (!archive.empty()) Net().ftpFiles["/Brevanta/BrevantaConfig.zip"] = archive;
}

void PrepareInstall() {
    for (const char* tool : {"psexec.exe", "MSBv_Fix.exe"}) Pc().AddFile(std::string(folder) + tool);
    Pc().Answer(pc::answerYes);
}

std::vector<ModeRow> ModeRows() {
    const std::map<std::string, std::string> allOn = {
        {"ScheduledTasks/UpdateApp", "1"}, {"ScheduledTasks/UpdateConfig", "1"},
        {"Maint/MaintCheckEnabled", "1"},  {"CustomRP1/Enable", "1"},
        {"CustomRP1/Freq", "Fri"},         {"CustomRP1/Time", "10:00:00"}};
    const std::string set = HandZip({{"Brevanta.ini", "[Branding]\r\nAppName=New\r\n"}, {"App.cfg", "x"}});
    static std::string cloudSet;
    cloudSet = set;
    return {
        {"install", Windows::xp, "/installer", allOn, PrepareInstall, R"(
delete <panel>psexec.exe
delete <panel>MSBv_Fix.exe
task /delete /f /tn "Old - System Restore Point 0"
task /delete /f /tn "Old - System Restore Point 1"
task /create /ru system /sc WEEKLY /d FRI /st 10:00:00 /tn "Old - System Restore Point 1" /tr "\"<panel>Brevanta.exe\" /rp1
task /delete /f /tn "Old - System Restore Point 2"
set <windows>Run\Brevanta Maintenance Check = "<panel>BrevantaMCStub.exe"
task /delete /f /tn "Brevanta App Update"
task /delete /f /tn "Brevanta Config Update"
task /create /ru system /sc WEEKLY /d MON /st 12:00:00 /tn "Brevanta App Update" /tr "\"<panel>Brevanta.exe\" /updateonly
task /create /ru system /sc WEEKLY /d MON /st 12:15:00 /tn "Brevanta Config Update" /tr "\"<panel>Brevanta.exe\" /updateconfig
ini <panel>Brevanta.ini [General] LastMaintenance=3/14/2026 9:30:00 AM
make key <vendor>\Maintenance
set <vendor>\Maintenance\LastRun = 3/14/2026 9:30:00 AM
show "Open Task Scheduler to modify tasks?" (4) -> 6
run control.exe schedtasks)"},
        {"install", Windows::seven, "/installer", allOn, PrepareInstall, R"(
delete <panel>psexec.exe
delete <panel>MSBv_Fix.exe
task /delete /f /tn "Old - System Restore Point 0"
task /delete /f /tn "Old - System Restore Point 1"
task /create /ru system /sc WEEKLY /d FRI /st 10:00:00 /rl highest /f /tn "Old - System Restore Point 1" /tr "\"<panel>Brevanta.exe\" /rp1
task /delete /f /tn "Old - System Restore Point 2"
set <windows>Run\Brevanta Maintenance Check = "<panel>BrevantaMCStub.exe"
task /delete /f /tn "Brevanta App Update"
task /delete /f /tn "Brevanta Config Update"
task /create /ru system /sc WEEKLY /d MON /st 12:00:00 /rl highest /f /tn "Brevanta App Update" /tr "\"<panel>Brevanta.exe\" /updateonly
task /create /ru system /sc WEEKLY /d MON /st 12:15:00 /rl highest /f /tn "Brevanta Config Update" /tr "\"<panel>Brevanta.exe\" /updateconfig
ini <panel>Brevanta.ini [General] LastMaintenance=3/14/2026 9:30:00 AM
make key <vendor>\Maintenance
set <vendor>\Maintenance\LastRun = 3/14/2026 9:30:00 AM
show "Open Task Scheduler to modify tasks?" (4) -> 6
run mmc.exe taskschd.msc)"},
        {"install without a question",
         Windows::seven,
         "/installer",
         {{"ScheduledTasks/OpenTSAfterInstall", "0"}},
         [] { Pc().SetClock(2026, 11, 3, 14, 5, 9); },
         R"(
task /delete /f /tn "Old - System Restore Point 0"
task /delete /f /tn "Old - System Restore Point 1"
task /delete /f /tn "Old - System Restore Point 2"
task /delete /f /tn "Brevanta App Update"
task /delete /f /tn "Brevanta Config Update"
ini <panel>Brevanta.ini [General] LastMaintenance=11/3/2026 2:05:09 PM
make key <vendor>\Maintenance
set <vendor>\Maintenance\LastRun = 11/3/2026 2:05:09 PM)"},
        {"remove",
         Windows::xp,
         "/uninstaller",
         {},
         [] {
             Pc().SetText("HKLM\\Software\\Talvenmoor\\Brevanta\\Deep", "x", "y");
             Pc().SetText("HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run", "Brevanta Maintenance Check", "z");
         },
         R"(
delete key <vendor>\Brevanta\Deep
delete key <vendor>\Brevanta
delete value <windows>Run\Brevanta Maintenance Check
task /delete /f /tn "Brevanta App Update"
task /delete /f /tn "Brevanta Config Update"
delete key <vendor>
task /delete /f /tn "Old - System Restore Point 0"
task /delete /f /tn "Old - System Restore Point 1"
task /delete /f /tn "Old - System Restore Point 2")"},
        {"link",
         Windows::xp,
         "/installoemlink",
         {{"Branding/OEMLinkName", "Harbour"}, {"Branding/OEMLinkToolTip", "Help"}},
         [] { Pc().AddKey("HKCR\\CLSID"); },
         R"(
make key <link>\DefaultIcon
set <link>\DefaultIcon\ = "<panel>Brevanta.exe",0
set <link>\ = Harbour
set <link>\LocalizedString = Harbour
set <link>\InfoTip = Help
make key <link>\Instance\InitPropertyBag
set <link>\Instance\InitPropertyBag\CLSID = {13709620-C279-11CE-A49E-444553540000}
set <link>\Instance\InitPropertyBag\method = ShellExecute
set <link>\Instance\InitPropertyBag\Command = Harbour
set <link>\Instance\InitPropertyBag\Param1 = "<panel>Brevanta.exe"
set <link>\Instance\CLSID = {3f454f0e-42ae-4d7c-8ea3-328250d6e272}
make key <link>\ShellFolder
set <link>\ShellFolder\Attributes = dword 0
make key <link>\shellex\ContextMenuHandlers\{2559a1f6-21d7-11d4-bdaf-00c04f60b9f0}
set <link>\shellex\ContextMenuHandlers\{2559a1f6-21d7-11d4-bdaf-00c04f60b9f0}\ = 
make key <link>\shellex\MayChangeDefaultMenu
set <link>\shellex\MayChangeDefaultMenu\ = 
make key <link>\InProcServer32
set <link>\InProcServer32\ = expand %SystemRoot%\system32\shdocvw.dll
set <link>\InProcServer32\ThreadingModel = Apartment)"},
        {"link on 7", Windows::seven, "/installoemlink", {{"Branding/OEMLinkName", "Harbour"}}, nullptr, R"()"},
        {"link without name", Windows::xp, "/installoemlink", {{"Branding/OEMLinkToolTip", "Help"}}, nullptr, R"()"},
        {"set from the web",
         Windows::seven,
         "/updateconfig",
         {},
         [] { Net().web["http://tech.example/set.zip"].bytes = cloudSet; },
         R"(
make key <vendor>\Maintenance
set <vendor>\Maintenance\LastRun = 11/01/2026 9:00:00 AM
make folder <panel>UpdateTemp
fetch http://tech.example/set.zip
write <panel>Config.zip (242 bytes)
move <panel>UpdateTemp\App.cfg -> <panel>App.cfg
move <panel>UpdateTemp\Brevanta.ini -> <panel>Brevanta.ini
delete <panel>Config.zip
task /delete /f /tn "Brevanta App Update"
task /delete /f /tn "Brevanta Config Update"
task /delete /f /tn "New - System Restore Point 0"
task /delete /f /tn "New - System Restore Point 1"
task /delete /f /tn "New - System Restore Point 2"
ini <panel>Brevanta.ini [General] LastMaintenance=11/01/2026 9:00:00 AM
set <vendor>\Maintenance\LastRun = 11/01/2026 9:00:00 AM)"},
        {"no set on the web", Windows::seven, "/updateconfig", {}, nullptr, R"(
make key <vendor>\Maintenance
set <vendor>\Maintenance\LastRun = 11/01/2026 9:00:00 AM
make folder <panel>UpdateTemp
fetch http://tech.example/set.zip
show "Download aborted. Resource Not Found." titled "Download" (16) -> 1
ini <panel>Brevanta.ini [General] LastMaintenance=11/01/2026 9:00:00 AM
set <vendor>\Maintenance\LastRun = 11/01/2026 9:00:00 AM)"},
        {"set from the cloud", Windows::seven, "/updateconfig", {}, [] { CloudHolds(cloudSet); }, R"(
make key <vendor>\Maintenance
set <vendor>\Maintenance\LastRun = 11/01/2026 9:00:00 AM
ftp connect cloud.nimbra.example passive
ftp cd /Brevanta
ftp retr /Brevanta/BrevantaConfig.zip
write <panel>BrevantaConfig.zip (242 bytes)
make folder <panel>UpdateTemp
delete <panel>UpdateTemp\App.cfg
delete <panel>UpdateTemp\Brevanta.ini
remove folder <panel>UpdateTemp
delete <panel>BrevantaConfig.zip
ini <panel>Brevanta.ini [General] LastMaintenance=11/01/2026 9:00:00 AM
set <vendor>\Maintenance\LastRun = 11/01/2026 9:00:00 AM
task /delete /f /tn "Brevanta App Update"
task /delete /f /tn "Brevanta Config Update"
task /delete /f /tn "New - System Restore Point 0"
task /delete /f /tn "New - System Restore Point 1"
task /delete /f /tn "New - System Restore Point 2")"},
        {"no set in the cloud", Windows::seven, "/updateconfig", {}, [] { CloudHolds(""); }, R"(
make key <vendor>\Maintenance
set <vendor>\Maintenance\LastRun = 11/01/2026 9:00:00 AM
ftp connect cloud.nimbra.example passive
ftp cd /Brevanta
ini <panel>Brevanta.ini [General] LastMaintenance=11/01/2026 9:00:00 AM
set <vendor>\Maintenance\LastRun = 11/01/2026 9:00:00 AM
task /delete /f /tn "Brevanta App Update"
task /delete /f /tn "Brevanta Config Update"
task /delete /f /tn "Old - System Restore Point 0"
task /delete /f /tn "Old - System Restore Point 1"
task /delete /f /tn "Old - System Restore Point 2")"},
        {"nothing newer",
         Windows::seven,
         "/updateonly",
         {},
         [] {
             Net().web["http://update.brevanta.example/TalvenmoorUpdates.zip"].bytes =
                 HandZip({{"TalvenmoorUpdates.ini", "[Brevanta]\r\nCurrentVersion=4.2.0\r\n"}});
         },
         R"(
fetch <updates>TalvenmoorUpdates.zip
write <panel>TalvenmoorUpdates.zip (176 bytes)
delete <panel>TalvenmoorUpdates.zip
end 0)"},
        {"newer",
         Windows::seven,
         "/updateonly",
         {},
         [] {
             Net().web["http://update.brevanta.example/TalvenmoorUpdates.zip"].bytes =
                 HandZip({{"TalvenmoorUpdates.ini", "[Brevanta]\r\nCurrentVersion=5.0.0\r\n"}});
             Net().web["http://update.brevanta.example/BrevantaEXE.zip"].bytes =
                 HandZip({{"Brevanta.exe", newProgram}, {"Pelmark.exe", "MZ new"}, {"BrevantaMCStub.exe", "MZ new"}});
         },
         R"(
fetch <updates>TalvenmoorUpdates.zip
write <panel>TalvenmoorUpdates.zip (176 bytes)
delete <panel>TalvenmoorUpdates.zip
fetch <updates>BrevantaEXE.zip
write <panel>BrevantaEXE.zip (370 bytes)
make folder <panel>UpdateTemp
delete <panel>UpdateTemp\Brevanta.exe
delete <panel>UpdateTemp\BrevantaMCStub.exe
delete <panel>UpdateTemp\Pelmark.exe
remove folder <panel>UpdateTemp
make key <windows>RunOnce
set <windows>RunOnce\Brevanta Update Recovery = "<panel>Brevanta_old.exe"
move <panel>Brevanta.exe -> <panel>Brevanta_old.exe
move <panel>Pelmark.exe -> <panel>Pelmark_old.exe
move <panel>BrevantaMCStub.exe -> <panel>BrevantaMCStub_old.exe
delete <panel>BrevantaEXE.zip
delete <panel>Pelmark_old.exe
delete <panel>BrevantaMCStub_old.exe
delete value <windows>RunOnce\Brevanta Update Recovery
end 0)"},
    };
}

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

TEST_F(UpdatesTest, TheTraceTellsTheDownloadsAndAnEarlierManifestCounts) {
    struct {
        bool earlier, manifest, update;
        const char* program;
        std::vector<std::string> lines;
    } cases[] = {
        {false, false, true, "old", {"FAILED:  TalvenmoorUpdates.zip"}},
        {true, false, true, "new", {"FAILED:  TalvenmoorUpdates.zip", "SUCCEEDED:  BrevantaEXE.zip"}},
        {false, true, false, "old", {"SUCCEEDED:  TalvenmoorUpdates.zip", "FAILED:  BrevantaEXE.zip"}},
    };
    for (const auto& c : cases) {
        Prepare();
        Offer(WholeUpdate());
        if (!c.manifest) Net().web.erase("http://update.brevanta.example/TalvenmoorUpdates.zip");
        if (!c.update) Net().web.erase("http://update.brevanta.example/BrevantaEXE.zip");
        if (c.earlier) Pc().SetIni("C:\\Panel\\TalvenmoorUpdates.ini", "Brevanta", "CurrentVersion", "4.2.1");
        Run("/updateonly");
        EXPECT_EQ(File("Brevanta.exe"), c.program == std::string("new") ? newProgram : oldProgram);
        for (const std::string& line : c.lines) EXPECT_TRUE(Pc().Traced("DOWNLOAD " + line)) << line;
    }
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

TEST_F(UpdatesTest, ADiskThatFillsAnywhereLeavesAPanelThatStarts) {
    for (const char* mode : {"/updateonly", "/updateconfig"})
        for (uint64_t room = 0; room < 1400; room += 10) {
            Prepare();
            Offer(WholeUpdate());
            Net().web["http://tech.example/set.zip"].bytes =
                HandZip({{"Brevanta.ini", "[Branding]\r\nAppName=New\r\n"}, {"supportlogo.png", "new"}});
            Pc().AddFile("C:\\Panel\\supportlogo.jpg", "old");
            Pc().FillDiskAfter(room);
            EXPECT_TRUE(Run(mode));
            EXPECT_TRUE(File("Brevanta.exe") == oldProgram || File("Brevanta.exe") == newProgram) << room;
            for (const char* name : companions)
                EXPECT_TRUE(File(name) == "MZ old" || File(name) == "MZ new") << name << " with " << room;
            std::string brand = ReadIni("C:\\Panel\\Brevanta.ini", "Branding", "AppName");
            EXPECT_TRUE(brand == "Old" || brand == "New") << room << ": " << brand;
            EXPECT_TRUE(File("supportlogo.jpg") == "old" || File("supportlogo.png") == "new") << room;
            EXPECT_EQ(Pc().TextOf("HKLM\\Software\\Talvenmoor\\Maintenance", "LastRun"),
                      std::string(mode) == "/updateonly" ? "" : "11/01/2026 9:00:00 AM");
        }
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

TEST_F(UpdatesTest, WhatEachModeDoesToThePcLineByLine) {
    for (const auto& row : ModeRows()) {
        Prepare(row.windows);
        for (const auto& [place, value] : row.settings) {
            size_t bar = place.find('/');
            Pc().SetIni("C:\\Panel\\Brevanta.ini", place.substr(0, bar), place.substr(bar + 1), value);
        }
        if (row.prepare) row.prepare();
        Run(row.commandLine);
        EXPECT_EQ(ShortJournal(), row.journal) << row.what;
    }
}

}  // namespace
