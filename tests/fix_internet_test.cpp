#include "repair/fix_internet.h"

#include "controls/panel_links.h"
#include "pc/pc_test.h"
#include "platform/machine.h"
#include "platform/messages.h"
#include "repair/browser_addons.h"
#include "system/paths.h"
#include "system/program_state.h"

namespace {

using Lines = std::vector<std::string>;

const ControlSpec panelControls[] = {{Kind::textBox, "txtStatus", "", {0, 0, 1000, 300}}};
const FormDefinition panel = {"frmPanel", "", 1000, 1000, Border::fixed, panelControls, [](Form&) {}};

constexpr const char* ini = "C:\\Panel\\Brevanta.ini";
constexpr const char* inet = "Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings";
constexpr const char* toolbars = "HKLM\\Software\\Microsoft\\Internet Explorer\\Toolbar";
constexpr const char* bhos = "HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Browser Helper Objects\\";
// The machine's are listed first, then the user's.
constexpr const char* scopeS1 = "HKLM\\Software\\Microsoft\\Internet Explorer\\SearchScopes\\{S1}";
constexpr const char* scopeS2 = "HKCU\\Software\\Microsoft\\Internet Explorer\\SearchScopes\\{S2}";

class FixInternetTest : public PcTest {
protected:
    FixInternetTest() { Use(Windows::sevenX64); }
    void Use(Windows windows) {
        ForgetForms();
        SimulatedPc::UseWindows(windows);
        State() = {};
        State().settingsFile = ini;
        Target() = {};
        Target().sTargetDrive = "C:";
    }
    // All repairs off but the ones named.
    void Switch(const std::map<std::string, std::string>& on) {
        for (const char* key : {"ClearProxy", "ResetNet", "ResetHosts", "RestartIE", "RemIEToolbars", "RemIEBHOs",
                                "ShowNetURL", "ShowNetMsg"})
            Pc().SetIni(ini, "Fix", key, on.count(key) ? on.at(key) : "0");
    }
};

}  // namespace

TEST_F(FixInternetTest, TheNetworkIsResetByTheseCommands) {
    const Lines reset = {"run cmd /c netsh winsock reset", "run cmd /c netsh winsock reset catalog"};
    const Lines dynamic = {"run cmd /c netsh interface ip reset C:\\int-resetlog.txt",
                           "run cmd /c netsh interface reset all"};
    const Lines flush = {"run cmd /c netsh interface ip delete arpcache", "run cmd /c ipconfig /flushdns",
                         "run cmd /c ipconfig /registerdns"};
    const Lines renew = {"run cmd /c ipconfig /release all", "run cmd /c ipconfig /renew all"};
    for (Windows windows : {Windows::xp, Windows::seven, Windows::tenX64})
        for (bool isStatic : {false, true}) {
            Use(windows);
            State().bHasStaticIP = isStatic;
            Pc().AddResource("CUSTOM", "REGWINSOCKXP", "stock");
            std::string imported;
            Pc().Program("regedit.exe",
                         {.effect = [&](SimulatedPc& pc) { imported = pc.FileText("C:\\Panel\\WinsockXP.reg"); }});
            bool xp = windows == Windows::xp;
            Lines expected;
            auto add = [&](const Lines& lines) { expected.insert(expected.end(), lines.begin(), lines.end()); };
            if (xp) add({"run regedit.exe /s \"C:\\Panel\\WinsockXP.reg\""});
            add(reset);
            if (!isStatic) add(dynamic);
            add(flush);
            if (xp)
                add(
                    {"run rundll32.exe setupapi.dll,InstallHinfSection DefaultInstall 132 "
                     "C:\\WINDOWS\\inf\\nettcpip.inf"});
            add(renew);
            ResetNetworking();
            EXPECT_LINES(Pc().Journal("run"), expected);
            EXPECT_EQ(imported, xp ? "stock" : "");
            EXPECT_FALSE(Pc().Exists("C:\\Panel\\WinsockXP.reg"));
        }
}

TEST_F(FixInternetTest, TheSocketKeysGoBeforeTheStockStateIsImportedAndAGivenFileIsTakenAsItIs) {
    Use(Windows::xp);
    const std::string services = "HKLM\\System\\CurrentControlSet\\Services\\";
    Pc().AddKey(services + "Winsock\\Parameters");
    Pc().AddKey(services + "Winsock2");
    Pc().AddFile("C:\\Panel\\WinsockXP.reg", "own");
    bool gone = false;
    Pc().Program("regedit.exe", {.effect = [&](SimulatedPc& pc) {
                     gone = !pc.HasKey(services + "Winsock") && !pc.HasKey(services + "Winsock2") &&
                            pc.FileText("C:\\Panel\\WinsockXP.reg") == "own";
                 }});
    uint32_t start = Pc().ticks;
    ResetNetworking();
    EXPECT_TRUE(gone);
    EXPECT_GE(Pc().ticks - start, 1000u);
    EXPECT_FALSE(Pc().Exists("C:\\Panel\\WinsockXP.reg"));
}

TEST_F(FixInternetTest, TheProxyIsSwitchedOffForTheMachineAndEveryLoadedUser) {
    const std::string list = "HKLM\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\ProfileList\\";
    for (Windows windows : {Windows::xp, Windows::seven}) {
        Use(windows);
        for (const char* name : {"S-1-5-18", "S-1-5-21-1-2-3-1001", "S-1-5-21-1-2-3-1002"}) Pc().AddKey(list + name);
        std::string loaded = std::string("HKU\\S-1-5-21-1-2-3-1001\\") + inet;
        Pc().SetText(loaded, "ProxyServer", "bad:80");
        Pc().SetText(std::string("HKU\\S-1-5-18\\") + inet, "ProxyServer", "kept:80");
        ClearProxySettings();
        EXPECT_EQ(Pc().journal.front(), "direct connection \"\"");
        EXPECT_EQ(Pc().NumberOf(loaded, "ProxyEnable", 9), 0u);
        EXPECT_FALSE(Pc().HasValue(loaded, "ProxyServer"));
        EXPECT_TRUE(Pc().HasValue(std::string("HKU\\S-1-5-18\\") + inet, "ProxyServer"));
        EXPECT_TRUE(Pc().HasValue(std::string("HKCU\\") + inet, "ProxyEnable"));
        EXPECT_TRUE(Pc().HasValue(std::string("HKLM\\") + inet, "ProxyEnable"));
        Lines expected;
        if (windows == Windows::seven) expected = {"run cmd /c netsh winhttp reset proxy"};
        EXPECT_LINES(Pc().Journal("run"), expected);
    }
}

TEST_F(FixInternetTest, TheHostsFileIsSetAsideAndWrittenAnew) {
    const std::string hosts = "C:\\Windows\\system32\\drivers\\etc\\hosts", aside = hosts + ".RENAMED";
    const std::string v4 = "127.0.0.1       localhost\r\n", v6 = "::1       localhost\r\n";
    struct {
        Windows windows;
        const char* before;  // what stands there
        std::string text, kept;
    } cases[] = {
        {Windows::xp, "file", v4, "old"},
        {Windows::sevenX64, "file", v4 + v6, "old"},
        {Windows::ten, "read-only", v4 + v6, "old"},
        {Windows::seven, "nothing", v4 + v6, ""},
        {Windows::seven, "both", v4 + v6, "older"},
        {Windows::seven, "locked", "old", ""},
    };
    for (const auto& c : cases) {
        Use(c.windows);
        std::string before = c.before;
        Pc().DeleteTree(hosts);
        if (before != "nothing")
            Pc().AddFile(hosts, "old", before == "read-only" ? pc::attributeReadOnly : pc::attributeArchive);
        if (before == "both") Pc().AddFile(aside, "older");
        if (before == "locked") Pc().Lock(hosts);
        ResetHostsFile();
        if (before == "locked") Pc().Unlock(hosts);
        EXPECT_EQ(Pc().FileText(hosts), c.text) << c.before;
        EXPECT_EQ(Pc().FileText(aside), c.kept) << c.before;
    }
    Use(Windows::seven);
    Pc().DeleteTree(hosts);
    Pc().AddFile(hosts + "\\inside.txt", "kept");
    ResetHostsFile();
    EXPECT_EQ(Pc().FileText(aside + "\\inside.txt"), "kept");
    EXPECT_EQ(Pc().FileText(hosts), v4 + v6);
}

TEST_F(FixInternetTest, InternetExplorerIsEndedThreeTimesOverAndStartedOnline) {
    for (bool wide : {false, true}) {
        Use(Windows::sevenX64);
        Pc().AddFile("C:\\Program Files\\Internet Explorer\\iexplore.exe");
        if (wide) Pc().AddFile("C:\\Program Files (x86)\\Internet Explorer\\iexplore.exe");
        Pc().SetEnv("programfiles", "C:\\Program Files");
        Pc().AddProcess("IEXPLORE.EXE");
        RestartInternetExplorer();
        EXPECT_EQ(Pc().Journal("kill").size(), 1u);
        EXPECT_LINES(Pc().Journal("run"), {"run hidden cmd /c tskill iexplore.exe /a",
                                           wide ? "run \"C:\\Program Files (x86)\\Internet Explorer\\iexplore.exe\""
                                                : "run \"C:\\Program Files\\Internet Explorer\\iexplore.exe\""});
        EXPECT_TRUE(Pc().HasValue(std::string("HKCU\\") + inet, "GlobalUserOffline"));
    }
}

TEST_F(FixInternetTest, EachKeySwitchesItsRepairAndWhatIsNoNumberSwitchesItOn) {
    struct {
        const char* value;
        bool on;
    } values[] = {{"1", true}, {"2", true}, {"0", false}, {"-1", false}, {"", true}, {"yes", true}, {"99999", true}};
    for (const auto& v : values)
        for (const char* key : {"ClearProxy", "ResetNet", "ResetHosts", "RestartIE", "RemIEToolbars", "RemIEBHOs"}) {
            Use(Windows::seven);
            Switch({{key, v.value}});
            Pc().SetText("HKLM\\Software\\Microsoft\\Internet Explorer\\Toolbar", "{1}", "Bar");
            Pc().AddKey("HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Browser Helper Objects\\{2}");
            Pc().Answer(pc::answerOk);
            FixInternet(LoadForm(panel));
            Lines effects;
            for (const std::string& line : Pc().journal)
                if (!line.starts_with("ini ") && !line.starts_with("show ") && !line.starts_with("write C:\\Panel\\"))
                    effects.push_back(line);
            EXPECT_EQ(!effects.empty(), v.on) << key << "=" << v.value;
            EXPECT_FALSE(IsFormLoaded("frmCleanIE"));
            EXPECT_FALSE(State().bRemoveIEToolbars || State().bRemoveIEBHOs);
        }
}

TEST_F(FixInternetTest, WithoutSettingsAllRepairsRunInTheirOrder) {
    Pc().SetText("HKLM\\Software\\Microsoft\\Internet Explorer\\Toolbar", "{1}", "Bar");
    Pc().AddKey("HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Browser Helper Objects\\{2}");
    Pc().HideKey("HKLM\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\ProfileList", false);
    Pc().Answer(pc::answerOk);
    Links().showPanelBrowser = [](bool) { Pc().Note("browser " + State().browserAddress); };
    FixInternet(LoadForm(panel));
    EXPECT_TRUE(Pc().Traced("Error enumerating HKLM!"));
    const Lines marks = {"Attempt to fix", "direct connection",
                         "winhttp reset",  "winsock reset catalog",
                         "renew all",      "etc\\hosts (",
                         "tskill",         "GlobalUserOffline",
                         "Toolbar\\{1}",   "{2}",
                         "browser "};
    Lines order;
    for (const std::string& line : Pc().journal)
        for (const std::string& mark : marks)
            if (line.find(mark) != std::string::npos && (order.empty() || order.back() != mark)) order.push_back(mark);
    EXPECT_LINES(order, marks);
}

TEST_F(FixInternetTest, CancelLeavesOnlyTheCountedUse) {
    Pc().SetIni(ini, "Fix", "FixConfirmation", "Really?");
    Pc().Answer(pc::answerCancel);
    FixInternet(LoadForm(panel));
    EXPECT_LINES(Pc().Journal("show"), {"show \"Really?\" (49) -> 2"});
    EXPECT_TRUE(Pc().Journal("run").empty());
    EXPECT_TRUE(Pc().Journal("set").empty());
    EXPECT_EQ(Pc().Ini("C:\\Panel\\Usage.ini", "Usage", "Fix"), "1");
}

TEST_F(FixInternetTest, TheEndIsAPageOrAMessage) {
    const std::string message =
        "show \"Try to access the internet now.  If not working, please restart your computer, then try to access the "
        "internet again.\" (0) -> 1";
    struct {
        const char *showUrl, *showMessage, *url, *internal;
        Lines end;
    } cases[] = {
        {"1", "1", "http://a.example/[UserName]", "0", {"open http://a.example/ann"}},
        {"1", "1", "x", "0", {}},
        {"1", "0", "http://a.example/[UserName]", "1", {"browser 1 http://a.example/ann"}},
        {"", "0", "", "", {"browser 1 "}},
        {"0", "1", "http://a.example/", "0", {message}},
        {"2", "x", "http://a.example/", "0", {message}},
        {"0", "0", "http://a.example/", "1", {}},
    };
    for (const auto& c : cases) {
        Use(Windows::seven);
        Links().getHealth = [](Form& form) { Pc().Note("health " + form.Text("txtStatus")); };
        Links().showPanelBrowser = [](bool modal) {
            Pc().Note("browser " + std::to_string(modal) + " " + State().browserAddress);
        };
        Pc().SetEnv("username", "Ann");
        Switch({{"ShowNetURL", c.showUrl}, {"ShowNetMsg", c.showMessage}});
        Pc().SetIni(ini, "Fix", "NetURL", c.url);
        Pc().SetIni(ini, "Fix", "UseIBForNetURL", c.internal);
        Pc().Answer(pc::answerOk);
        Form& form = LoadForm(panel);
        Pc().journal.clear();
        FixInternet(form);
        Lines lines = Pc().journal, end = c.end;
        auto health = std::find(lines.begin(), lines.end(), "health Fixing Internet Properties...");
        ASSERT_NE(health, lines.end());
        EXPECT_LINES(Lines(health + 1, lines.end()), end);
        EXPECT_EQ(form.Text("txtStatus"), "");
    }
}

namespace {

class AddonsTest : public FixInternetTest {
protected:
    AddonsTest() { Fill(); }
    static void Fill() {
        Pc().SetText(toolbars, "{T1}", "One");
        Pc().SetText(toolbars, "{T2}", "Two");
        Pc().SetText(std::string(bhos) + "{B1}", "", "Helper");
        Pc().AddKey(std::string(bhos) + "{B2}\\below");
        Pc().SetText(scopeS1, "DisplayName", "Search");
        Pc().AddKey(scopeS2);
    }
    // T1 T2 B1 B2 S1 S2, as far as they are there.
    static std::string Left() {
        std::string left;
        for (const char* name : {"T1", "T2"})
            if (Pc().HasValue(toolbars, "{" + std::string(name) + "}")) left += name;
        for (const char* name : {"B1", "B2"})
            if (Pc().HasKey(bhos + ("{" + std::string(name) + "}"))) left += name;
        for (const char* name : {"S1", "S2"})
            if (Pc().HasKey(name[1] == '1' ? scopeS1 : scopeS2)) left += name;
        return left;
    }
};

}  // namespace

TEST_F(AddonsTest, WhatIsCheckedGoesAndAllScopesOnlyAfterAWarning) {
    struct {
        const char *button, *checked;  // list and row
        int answer;                    // 0: not asked
        const char* left;
    } cases[] = {
        {"Command1", "", pc::answerNo, "T1T2B1B2S1S2"},
        {"Command1", "", pc::answerYes, ""},
        {"Command2", "", 0, "T1T2B1B2S1S2"},
        {"Command2", "10 21 30", 0, "T2B1S2"},
        {"Command2", "10 30 31", pc::answerNo, "T1T2B1B2S1S2"},
        {"Command2", "20 30 31", pc::answerYes, "T1T2B2"},
        {"Label1", "", pc::answerYes, ""},
        {"Label2", "10 21", 0, "T1T2B1B2S1S2"},
    };
    for (const auto& c : cases) {
        Use(Windows::sevenX64);
        Fill();
        ShowForm(frmCleanIE);
        for (std::string rest = c.checked; rest.size() > 1; rest.erase(0, 3))
            CheckRow("frmCleanIE", std::string("ListView") + rest[0], static_cast<size_t>(rest[1] - '0'), true);
        if (c.answer) Pc().Answer(c.answer);
        Click("frmCleanIE", c.button);
        if (c.button[0] == 'L') Click("frmCleanIE", "Command2");
        EXPECT_EQ(Pc().Journal("show").size(), c.answer ? 1u : 0u);
        EXPECT_EQ(Left(), c.left) << c.button << " " << c.checked;
        EXPECT_EQ(FormNamed("frmCleanIE").Find("ListView1")->Rows().empty(), *c.left == 0);
        Click("frmCleanIE", "Command4");
        EXPECT_FALSE(IsFormLoaded("frmCleanIE"));
    }
}

TEST_F(AddonsTest, AnEmptyScopeListCountsAsAllChecked) {
    for (const char* scope : {scopeS1, scopeS2}) Pc().RemoveKey(scope);
    ShowForm(frmCleanIE);
    CheckRow("frmCleanIE", "ListView1", 0, true);
    Pc().Answer(pc::answerNo);
    Click("frmCleanIE", "Command2");
    EXPECT_EQ(Left(), "T1T2B1B2");
    auto row = FormNamed("frmCleanIE").Find("ListView1")->Rows()[0];
    EXPECT_EQ(row.cells[0] + "|" + row.cells[1], "One|{T1}");
}

TEST_F(AddonsTest, GuestHivesAreCoveredButNoSystemHive) {
    Target().sTargetDrive = "D:";
    const std::string key = "\\Microsoft\\Internet Explorer\\SearchScopes\\";
    for (const char* hive : {"GUEST_Software", "guest_System", "other"}) Pc().AddKey("HKLM\\" + (hive + key) + "{G}");
    std::string tail = "\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Browser Helper Objects\\{B1}";
    Pc().AddKey("HKLM\\Guest_Ann" + tail);
    ShowForm(frmCleanIE);
    auto rows = FormNamed("frmCleanIE").Find("ListView3")->Rows();
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].cells[3], "HKLM\\GUEST_Software" + key + "{G}");
    Pc().Answer(pc::answerYes);
    Click("frmCleanIE", "Command1");
    EXPECT_FALSE(Pc().HasKey("HKLM\\GUEST_Software" + key + "{G}"));
    EXPECT_TRUE(Pc().HasKey("HKLM\\guest_System" + key + "{G}"));
    EXPECT_FALSE(Pc().HasKey("HKLM\\Guest_Ann" + tail));
    EXPECT_EQ(Left(), "S1S2");
}
