#include "maintenance/custom_apps.h"

#include "maintenance/defrag.h"
#include "pc/pc_test.h"
#include "pc/simulated_net.h"
#include "system/paths.h"
#include "system/program_state.h"
#include "system/settings.h"
#include "system/shortcuts.h"
#include "system/text.h"
#include "zip_bytes.h"

namespace {

using Lines = std::vector<std::string>;
using Keys = std::map<std::string, std::string>;
constexpr const char* ini = "C:\\Panel\\Brevanta.ini";
const std::string tools = "C:\\Panel\\3rd Party Tools\\";
const std::string url = "http://a.example/tool";

class CustomAppsTest : public PcTest {
protected:
    CustomAppsTest() { Use(Windows::sevenX64); }
    static void Use(Windows windows) {
        ForgetForms();
        SimulatedPc::UseWindows(windows);
        State() = {};
        State().settingsFile = ini;
        Target() = {};
    }
    static void Describe(const std::string& name, const Keys& keys) {
        for (const auto& [key, value] : keys) Pc().SetIni("C:\\Panel\\" + name + ".cfg", "Config", key, value);
    }
    // The program starts quoted, since its folder has blanks.
    static std::string Run(const std::string& path, const std::string& arguments = "") {
        return "run \"" + tools + path + "\"" + (arguments.empty() ? "" : " " + arguments);
    }
};

}  // namespace

TEST_F(CustomAppsTest, AnAppRunsWhereItsKeysDoNotForbidIt) {
    struct {
        Windows windows;
        const char *bits, *otherBits, *system;
    } systems[] = {
        {Windows::xp, "32", "64", "XP"},          {Windows::xpX64, "64", "32", "XP"},
        {Windows::w2000, "32", "64", "XP"},       {Windows::vista, "32", "64", "Vista"},
        {Windows::vistaX64, "64", "32", "Vista"}, {Windows::seven, "32", "64", "7"},
        {Windows::sevenX64, "64", "32", "7"},     {Windows::eight, "32", "64", "8"},
        {Windows::eightOneX64, "64", "32", "8"},  {Windows::ten, "32", "64", "8"},
        {Windows::eleven, "64", "32", "8"},
    };
    for (const auto& s : systems) {
        Use(s.windows);
        EXPECT_TRUE(IsCustomAppAllowed("none")) << s.system;
        for (const char* key : {"32", "64", "XP", "Vista", "7", "8"}) {
            bool asked = std::string(key) == s.bits || std::string(key) == s.system;
            Describe(key, {{key, "0"}});
            EXPECT_EQ(IsCustomAppAllowed(key), !asked) << s.system << " " << s.bits << " " << key;
            Describe(key, {{key, "no"}});
            EXPECT_TRUE(IsCustomAppAllowed(key));
        }
    }
}

TEST_F(CustomAppsTest, ThePathDecidesWhatRunsAndHow) {
    struct {
        Windows windows;
        const char *keys, *files, *run;  // "@" is the folder of the tools
    } cases[] = {
        // In place, at once: the other keys are not asked.
        {Windows::seven, "App=%WinDir%\\a.exe|AppParms=/X %SystemDrive%|RunInCMD=1|AlwaysAttemptDownload=1",
         "C:\\Windows\\a.exe", "run c:\\windows\\a.exe /x c:"},
        {Windows::seven, "App=%windir%\\b.exe", "", ""},
        {Windows::seven, "App=A.exe|AppParms=/Q", "@A.exe", "run \"@A.exe\" /q"},
        {Windows::seven, "App=C:\\A.exe", "C:\\A.exe", ""},
        {Windows::seven, "App=\\\\srv\\share\\a.exe", "\\\\srv\\share\\a.exe", "run \\\\srv\\share\\a.exe"},
        {Windows::seven, "App=|App64=b.exe", "@b.exe", ""},
        {Windows::sevenX64, "App=a.exe|App64=b.exe", "@a.exe|@b.exe", "run \"@b.exe\""},
        {Windows::tenX64, "App=a.exe", "@a.exe", "run \"@a.exe\""},
        {Windows::seven, "App=a.MSI|AppParms=/q|RunInCMD=1", "@a.MSI",
         "run C:\\Windows\\system32\\msiexec.exe /i \"@a.MSI\""},
        {Windows::seven, "App=a.exe|RunWithSystemAccess=1", "@a.exe|@psexec.exe",
         "run hidden \"@psexec.exe\" -s -i \"@a.exe\""},
    };
    for (const auto& c : cases) {
        Use(c.windows);
        Pc().AddDrive("\\\\srv\\share");
        for (const std::string& file : Listed(ReplaceAll(c.files, "@", tools))) Pc().AddFile(file);
        for (const std::string& key : Listed(c.keys))
            Describe("app", {{key.substr(0, key.find('=')), key.substr(key.find('=') + 1)}});
        RunCustomMaintApp("app");
        EXPECT_LINES(Pc().Journal("run"), Listed(ReplaceAll(c.run, "@", tools)));
        EXPECT_TRUE(Pc().contacted.empty());
    }
}

TEST_F(CustomAppsTest, TheExitCodeComesBackAndABatchFileLivesForItsRun) {
    Pc().AddFile(tools + "a.b.exe");
    Describe("app", {{"App", "a.b.exe"}, {"AppParms", "/Go"}, {"RunInCMD", "1"}});
    std::string batch;
    Pc().Program("a.b.cmd",
                 {.exitCode = 5, .effect = [&](SimulatedPc& pc) { batch = pc.FileText(tools + "a.b.cmd"); }});
    EXPECT_EQ(RunCustomMaintApp("app"), 5);
    EXPECT_EQ(batch, "@echo off&pushd \"%~dp0\"\r\nstart \"\" /wait \"a.b.exe\" /go\r\n");
    EXPECT_EQ(Pc().Journal("run hidden").size(), 1u);
    EXPECT_FALSE(Pc().Exists(tools + "a.b.cmd"));
    EXPECT_EQ(RunCustomMaintApp("unknown"), 0);
}

TEST_F(CustomAppsTest, DownloadsReplaceTheProgramAndTheOldCopyReturnsWhenTheyFail) {
    struct {
        const char* what;
        bool there, always, online, served;
        const char *app, *downloadName, *runs;  // bytes that ran
    } cases[] = {
        {"there", true, false, true, true, "a.exe", "a.exe", "old"},
        {"absent", false, false, true, true, "a.exe", "a.exe", "MZ new"},
        {"absent, no internet", false, false, false, true, "a.exe", "a.exe", ""},
        {"fresh copy", true, true, true, true, "a.exe", "a.exe", "MZ new"},
        {"a script", true, true, true, true, "a.cmd", "a.cmd", "MZ new"},
        {"no internet", true, true, false, true, "a.exe", "a.exe", "old"},
        {"not served", true, true, true, false, "a.exe", "a.exe", "old"},
        {"absent, not served", false, true, true, false, "a.exe", "a.exe", ""},
        {"archive", false, false, true, true, "z\\a.exe", "z.zip", "zipped"},
        {"archive without it", true, true, true, true, "b.exe", "Z.ZIP", "old"},
        {"other name", false, false, true, true, "a.exe", "c.exe", ""},
        {"no name", true, true, true, true, "a.exe", "", "old"},
        {"outside", true, true, true, true, "a.exe", "..\\Brevanta.exe", "old"},
        {"elsewhere", true, true, true, true, "a.exe", "C:\\Windows\\explorer.exe", "old"},
        {"ending alone", true, true, true, true, "a.exe", ".zip", "old"},
        {"this folder", true, true, true, true, "a.exe", "..zip", "old"},
        {"this folder by detour", true, true, true, true, "a.exe", ".\\.zip", "old"},
        {"folder above", true, true, true, true, "a.exe", "...zip", "old"},
    };
    for (const auto& c : cases) {
        Use(Windows::sevenX64);
        std::string program = tools + c.app, name = c.downloadName, ran;
        Pc().AddFile("C:\\Panel\\Brevanta.exe", "panel");
        Pc().AddFile("C:\\Windows\\explorer.exe", "shell");
        Pc().AddFile(tools + "neighbour.exe", "kept");
        if (c.there) Pc().AddFile(program, "old");
        Pc().online = c.online;
        bool archive = name.ends_with("zip") || name.ends_with("ZIP");
        if (c.served) Net().web[url].bytes = archive ? HandZip({{"a.exe", "zipped"}}) : "MZ new";
        Describe(
            "app",
            {{"App", c.app}, {"AppURL", url}, {"AppDLName", name}, {"AlwaysAttemptDownload", c.always ? "1" : "0"}});
        Pc().Program(c.app, {.effect = [&](SimulatedPc& pc) { ran = pc.FileText(program); }});
        RunCustomMaintApp("app");
        EXPECT_EQ(ran, c.runs) << c.what;
        EXPECT_EQ(Pc().FileText(program), c.runs) << c.what;
        EXPECT_FALSE(Pc().Exists(program + ".old")) << c.what;
        EXPECT_FALSE(archive && Pc().Exists(tools + name)) << c.what;
        EXPECT_EQ(Pc().FileText("C:\\Panel\\Brevanta.exe") + Pc().FileText("C:\\Windows\\explorer.exe") +
                      Pc().FileText(tools + "neighbour.exe"),
                  "panelshellkept")
            << c.what;
    }
}

TEST_F(CustomAppsTest, AddressAndNameFallBackEachByItself) {
    Describe("app",
             {{"App", "a.exe"}, {"AppURL", "http://a.example/32"}, {"AppDLName", "x.exe"}, {"AppDLName64", "a.exe"}});
    Net().web["http://a.example/32"].bytes = "MZ new";
    RunCustomMaintApp("app");
    EXPECT_EQ(Pc().FileText(tools + "a.exe"), "MZ new");
}

TEST_F(CustomAppsTest, APageInThePlaceOfAProgramLosesNothing) {
    for (const char* page : {"<html>Log in first</html>", "M", ""}) {
        Use(Windows::seven);
        Pc().AddFile(tools + "a.exe", "old");
        Net().web[url].bytes = page;
        Describe("app", {{"App", "a.exe"}, {"AppURL", url}, {"AppDLName", "a.exe"}, {"AlwaysAttemptDownload", "1"}});
        RunCustomMaintApp("app");
        EXPECT_LINES(Pc().Journal("run"), {Run("a.exe")});
        EXPECT_EQ(Pc().FileText(tools + "a.exe"), "old");
    }
}

TEST_F(CustomAppsTest, AFaultAnywhereNeverLosesTheProgram) {
    const struct {
        const char *app, *name;
        std::string served;
    } cases[] = {{"a.exe", "a.exe", "MZ new"},
                 {"z\\a.exe", "z.zip", HandZip({{"a.exe", "MZ new"}})},
                 {"z\\a.exe", "z.zip", HandZip({{"b.exe", "MZ new"}})},
                 {"z\\a.exe", "z.zip", HandZip({{"a.exe", "MZ new"}}).substr(0, 60)}};
    for (const auto& c : cases) {
        for (int n = 1; n < 400; ++n) {
            Use(Windows::seven);
            std::string program = tools + c.app;
            Pc().AddFile(program, "old");
            Net().web[url].bytes = c.served;
            Describe("app", {{"App", c.app}, {"AppURL", url}, {"AppDLName", c.name}, {"AlwaysAttemptDownload", "1"}});
            int before = Pc().calls;
            Pc().FailCall(n);
            RunCustomMaintApp("app");
            std::string left = Pc().FileText(program), kept = Pc().FileText(program + ".old");
            EXPECT_TRUE(left == "old" || left == "MZ new" || kept == "old")
                << c.name << " " << n << " " << left << " " << kept;
            if (Pc().calls - before < n) break;
        }
    }
}

TEST_F(CustomAppsTest, TheOrderFileIsReadInBothShapes) {
    EXPECT_LINES(ReadSortOrder(), {});
    const std::pair<const char*, const char*> cases[] = {{"[SortOrder]\r\nSortOrder=b|a|\r\n", "b|a"},
                                                         {"b|a|", "b|a"},
                                                         {"b|a|\r\n\r\n", "b|a"},
                                                         {"x|\r\n[c]\r\nSortOrder=a||b|\r\n", "a|b"},
                                                         {"\xFE\r\n", "\xC3\xBE"},
                                                         {"", ""},
                                                         {"[SortOrder]", ""}};
    for (const auto& [text, names] : cases) {
        Pc().AddFile("C:\\Panel\\SortOrder.cfg", text);
        EXPECT_LINES(ReadSortOrder(), Listed(names));
    }
}

TEST_F(CustomAppsTest, TheListRunsInItsOrderAndPassesOverWhatIsMissing) {
    static const ControlSpec controls[] = {{Kind::textBox, "txtStatus", "", {0, 0, 1000, 300}}};
    static const FormDefinition panel = {"frmPanel", "", 1000, 1000, Border::fixed, controls, [](Form&) {}};
    Form& form = LoadForm(panel);
    Pc().AddFile("C:\\Panel\\SortOrder.cfg", "b|none|gone|a|");
    for (const char* name : {"a", "b", "gone"}) Describe(name, {{"App", name + std::string(".exe")}});
    Lines status;
    for (const char* name : {"a.exe", "b.exe"}) {
        Pc().AddFile(tools + name);
        Pc().Program(name, {.effect = [&](SimulatedPc&) { status.push_back(form.Text("txtStatus")); }});
    }
    RunCustomMaintApps(form);
    EXPECT_LINES(Pc().Journal("run"), {Run("b.exe"), Run("a.exe")});
    EXPECT_LINES(status, {"Running b, Please Wait...", "Running a, Please Wait..."});
}

TEST_F(CustomAppsTest, FormerSettingsAreConvertedOnce) {
    Pc().SetIni(ini, "CustomMaintApps", "AppName1", "A&B/C\\D");
    Pc().SetIni(ini, "CustomMaintApps", "App1", "x.exe");
    Pc().SetIni(ini, "CustomMaintApps", "AppParms1", "/p");
    Pc().SetIni(ini, "CustomMaintApps", "AppName3", "third");
    Pc().SetIni(ini, "Maint", "CCleaner", "1");
    Pc().SetIni(ini, "Maint", "Defraggler", "1");
    Pc().SetIni(ini, "Maint", "DefragglerParms", "/Q");
    ConvertCustomApps();
    Pc().SetIni(ini, "CustomMaintApps", "AppName2", "late");
    ConvertCustomApps();
    EXPECT_LINES(ReadSortOrder(), {"A-B-C-D", "third", "CCleaner", "Defraggler"});
    EXPECT_EQ(
        Pc().Ini("C:\\Panel\\A-B-C-D.cfg", "Config", "App") + Pc().Ini("C:\\Panel\\A-B-C-D.cfg", "Config", "AppParms"),
        "x.exe/p");
    EXPECT_FALSE(Pc().Exists("C:\\Panel\\late.cfg"));
    auto key = [](const char* app, const char* name) {
        return Pc().Ini("C:\\Panel\\" + std::string(app) + ".cfg", "Config", name);
    };
    EXPECT_EQ(key("Defraggler", "AppParms"), "%systemdrive% /Q");
    EXPECT_EQ(key("Defraggler", "App64"), "Defraggler\\Df64.exe");
    EXPECT_EQ(key("CCleaner", "AppDLName") + key("CCleaner", "AppParms") + key("CCleaner", "8"), "CCleaner.zip/auto1");
    EXPECT_EQ(key("CCleaner", "AppURL"), "http://apps.brevanta.example/ccleaner/download/portable/downloadfile");
}

TEST_F(CustomAppsTest, WhatStartsWithWindowsIsDefragmentedFileByFile) {
    Use(Windows::sevenX64);
    Net().web["http://live-tools.brevanta.example/Contig.exe"].bytes = "tool";
    const std::string current = "Microsoft\\Windows\\CurrentVersion\\",
                      terminal =
                          "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Terminal Server\\Install\\Software\\",
                      policies = "Software\\" + current + "Policies\\Explorer\\Run";
    const std::string five[] = {"SOFTWARE\\" + current + "Run", "SOFTWARE\\" + current + "RunOnce", policies,
                                terminal + current + "Run", terminal + current + "Runonce"};
    Lines keys, files;
    for (const std::string& key : five) keys.push_back("HKLM\\" + key);
    for (const char* name : {"Run", "RunOnce"}) keys.push_back("HKLM\\SOFTWARE\\wow6432node\\" + current + name);
    for (const std::string& key : five) keys.push_back("HKCU\\" + key);
    for (int i = 0; i < 4; ++i) keys.push_back("HKU\\.DEFAULT\\" + five[i]);
    keys.push_back("HKCU\\.DEFAULT\\" + five[4]);
    for (const std::string& key : keys) {
        files.push_back("C:\\Apps\\" + std::to_string(files.size()) + ".exe");
        Pc().AddFile(files.back());
        Pc().SetText(key, "One", files.back() + " -x=1");
        Pc().SetText(key, "Gone", "C:\\Apps\\gone.exe");
    }
    const std::string menu = "\\Start Menu\\Programs\\Startup\\", ann = "C:\\Users\\Ann",
                      all = "C:\\ProgramData\\Microsoft\\Windows" + menu;
    for (const std::string& file : {ann + "\\AppData\\Roaming\\Microsoft\\Windows" + menu + "a.exe",
                                    ann + menu + "b.exe", all + "below\\plain.exe"}) {
        Pc().AddFile(file);
        files.push_back(file);
    }
    Pc().AddFile(all + "Desktop.ini");
    Pc().AddFile("C:\\Users\\All Users" + menu + "never.exe");
    Pc().AddFile("C:\\Apps\\linked.exe");
    cShellLinkA().CreateLink(ann + menu + "l.lnk", "C:\\Apps\\linked.exe", "", "C:\\Apps", "", 1, 0, 0, "");
    files.insert(files.end() - 1, "C:\\Apps\\linked.exe");
    DefragStartupFiles();
    for (std::string& file : files) file = Run("contig.exe", "-v " + file);
    EXPECT_LINES(Pc().Journal("run"), files);
    EXPECT_EQ(Pc().NumberOf("HKCU\\Software\\Sysinternals\\C", "EulaAccepted"), 1u);
}

TEST_F(CustomAppsTest, ThePageFileToolRunsOnlyWhenItCouldBeFetched) {
    DefragRegistryAndPageFile();
    EXPECT_TRUE(Pc().Journal("run").empty());
    EXPECT_TRUE(Pc().Journal("set").empty());
    Net().web["http://live-tools.brevanta.example/pagedfrg.exe"].bytes = "tool";
    DefragRegistryAndPageFile();
    EXPECT_LINES(Pc().Journal("run"), {Run("pagedfrg.exe", "-o")});
    EXPECT_EQ(Pc().NumberOf("HKCU\\Software\\Sysinternals\\PageDefrag", "EulaAccepted"), 1u);
}
