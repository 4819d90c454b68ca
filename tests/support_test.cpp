#include "controls/panel_links.h"
#include "panel/browser.h"
#include "panel/custom_buttons.h"
#include "panel/dialogs.h"
#include "panel/password_prompt.h"
#include "panel/remote_support.h"
#include "panel_test.h"
#include "pc/simulated_net.h"
#include "platform/files.h"
#include "platform/messages.h"
#include "tools/safe_mode/safe_start.h"
#include "zip_bytes.h"

namespace {

using Lines = std::vector<std::string>;
constexpr const char* url = "http://a.example/tool";

class SupportTest : public PanelTest {
protected:
    void Fresh(const std::vector<Key>& keys, Windows windows = Windows::sevenX64) {
        Prepare(keys, windows);
        State().bHandle64BitRedirect = true;
        Links().showPanelBrowser = [](bool modal) {
            Pc().Note(std::string("open in panel ") + (modal ? "modal " : "") + State().browserAddress);
        };
        Pc().AddFile("C:\\Panel\\Brevanta.exe", "panel");
    }
    // What was started, opened and killed, in order.
    static Lines Started() {
        Lines lines;
        for (const std::string& line : Pc().journal)
            if (line.starts_with("run ") || line.starts_with("open ") || line.starts_with("kill "))
                lines.push_back(line);
        return lines;
    }
};

}  // namespace

TEST_F(SupportTest, RemoteSupportStartsWhatTheModeSays) {
    using enum Windows;
    const char* viewers =
        "C:\\Panel\\page.htm|C:\\Program Files (x86)\\Teamviewer\\Version7\\Teamviewer.exe|"
        "C:\\Program Files (x86)\\Teamviewer\\Version9\\Teamviewer.exe";
    struct {
        Windows windows;
        const char *branding, *target, *files, *started;
    } cases[] = {
        {seven, "RemoteUseMSRA=1|RemoteSupportType=URL", "http://b.example/", "C:\\Windows\\system32\\msra.exe",
         "run C:\\Windows\\system32\\msra.exe"},
        {xp, "RemoteUseMSRA=1", "", "C:\\Windows\\system32\\rcimlby.exe",
         "run C:\\Windows\\system32\\rcimlby.exe -LaunchRA"},
        {seven, "RemoteSupportAppParms=/A b", "Tool.exe", "C:\\Panel\\Tool.exe", "run C:\\Panel\\Tool.exe /A b"},
        {seven, "RemoteSupportType=eXe", "Tool.msi", "C:\\Panel\\Tool.msi",
         "run C:\\Windows\\system32\\msiexec.exe /i \"C:\\Panel\\Tool.msi\""},
        {seven, "", "C:\\Panel\\RemoteSupportApp.exe", "C:\\Panel\\RemoteSupportApp.exe", ""},
        {seven, "", "Gone.exe", "", ""},
        {seven, "RemoteSupportType=url|UseIBForSupportURL=0", "http://b.example/[UserName]", "",
         "open http://b.example/ann"},
        {seven, "RemoteSupportType=URL|UseIBForSupportURL=1", "http://b.example/[UserName]", "",
         "open in panel modal http://b.example/ann"},
        {seven, "RemoteSupportType=Download|RemoteSupportDLName=t.exe", url, "", "run C:\\Panel\\t.exe"},
        {seven, "RemoteSupportType=Download", url, "", ""},
        {sevenX64,
         "ShowPreRemoteURL=1|PreRemoteURL=page.htm|UseIBForPreSupportURL=0|TeamviewerOverride=1|RemoteUseMSRA=1|"
         "PreRemoteKillProc=,  ,Brevanta.exe, quick.exe,quick.exe,,",
         "", viewers,
         "open C:\\Panel\\page.htm|kill quick.exe|"
         "run \"C:\\Program Files (x86)\\Teamviewer\\Version9\\Teamviewer.exe\""},
        {seven,
         "ShowPreRemoteURL=1|PreRemoteURL=http://c.example/[UserName]|UseIBForPreSupportURL=1|TeamviewerOverride=1",
         "Tool.exe", "C:\\Panel\\Tool.exe", "open in panel modal http://c.example/ann|run C:\\Panel\\Tool.exe"},
    };
    for (const auto& c : cases) {
        Fresh({{"Branding", "ShowPreRemoteURL", "0"}}, c.windows);
        Pc().SetEnv("username", "Ann");
        for (const std::string& key : Listed(c.branding))
            Pc().SetIni(settingsFile, "Branding", key.substr(0, key.find('=')), key.substr(key.find('=') + 1));
        for (const std::string& file : Listed(c.files)) Pc().AddFile(file);
        Pc().AddProcess("quick.exe");
        Net().web[url].bytes = "new";
        State().remoteSupportTarget = c.target;
        Pc().journal.clear();
        StartRemoteSupport();
        EXPECT_LINES(Started(), Listed(c.started));
        EXPECT_LINES(Counted(), {"RemoteSupport=1"});
    }
}

TEST_F(SupportTest, DownloadsRunTheNewestProgramOfTheArchiveAndHarmNothing) {
    struct {
        const char *name, *exeInZip;
        std::vector<HandEntry> entries;  // none: the download is no archive
        Lines started;
    } cases[] = {
        {"t.ZIP", "", {{"c.com", "3"}, {"d.msi", "4"}}, {"run C:\\Panel\\CustomDL\\c.com /P"}},
        {"t.zip",
         "",
         {{"d.msi", "4"}},
         {"run C:\\Windows\\system32\\msiexec.exe /i \"C:\\Panel\\CustomDL\\d.msi\" /P"}},
        {"t.zip", "a.exe", {{"a.exe", "1"}, {"b.exe", "2"}}, {"run C:\\Panel\\CustomDL\\a.exe /P"}},
        {"t.zip", "..\\Brevanta.exe", {{"a.exe", "1"}}, {}},
        {"t.zip", "", {{"read.me", "1"}}, {}},
        {"t.msi", "", {}, {"run C:\\Windows\\system32\\msiexec.exe /i \"C:\\Panel\\T.MSI\" /P"}},
        {"", "", {}, {}},
        {"..\\x.exe", "", {}, {}},
        {"C:\\Windows\\explorer.exe", "", {}, {}},
        {"brevanta.exe", "", {}, {}},
        {".\\Brevanta.exe", "", {}, {}},
        {"Brevanta.exe.", "", {}, {}},
        {"a\"b.exe", "", {}, {}},
        {"t.zip", "a\".exe", {{"a.exe", "1"}}, {}},
        {"Brevanta.INI", "", {}, {}},
    };
    for (const auto& c : cases) {
        Fresh({{"CustomButton2", "Type", "Download"},
               {"CustomButton2", "ButtonAction", url},
               {"CustomButton2", "DownloadName", c.name},
               {"CustomButton2", "CustomEXEParms", "/P"},
               {"CustomButton2", "CustomEXEinZIP", c.exeInZip}});
        Pc().AddFile("C:\\Windows\\explorer.exe", "shell");
        Pc().AddFile("C:\\Panel\\CustomDL\\stale.exe");
        std::string settings = Pc().FileText(settingsFile);
        std::vector<HandEntry> entries = c.entries;
        Net().web[url].bytes = entries.empty() ? "new" : HandZip(entries);
        Pc().journal.clear();
        RunCustomButton(2);
        EXPECT_LINES(Started(), c.started);
        EXPECT_EQ(Pc().FileText("C:\\Panel\\Brevanta.exe") + Pc().FileText("C:\\Windows\\explorer.exe"), "panelshell")
            << c.name;
        EXPECT_EQ(Pc().FileText(settingsFile), settings) << c.name;
        EXPECT_LINES(Counted(), {"CustomButton2=1"});
    }
}

TEST_F(SupportTest, OfTwoProgramsTheOneUnpackedLaterRuns) {
    for (std::string later : {"a.exe", "b.exe"}) {
        Fresh({{"Branding", "RemoteSupportDLName", "t.zip"}});
        Net().web[url].bytes = HandZip({{later == "a.exe" ? "b.exe" : "a.exe", "1"}, {later, "2"}});
        for (int n = 1; n < 500; ++n) Pc().AtCall(n, [] { Pc().elapsed += 1000; });
        DownloadAndRunSupportApp(url, "");
        EXPECT_LINES(Started(), {"run C:\\Panel\\RemoteDL\\" + later});
    }
}

TEST_F(SupportTest, AClickDuringADownloadNeitherWaitsForItNorHarmsIt) {
    Fresh({{"Branding", "RemoteSupportDLName", "t.exe"},
           {"CustomButton1", "Type", "Download"},
           {"CustomButton1", "ButtonAction", "http://b.example/"},
           {"CustomButton1", "DownloadName", "u.exe"}});
    Net().web[url].bytes = std::string(100000, 'x');
    Pc().AddFile("C:\\Panel\\CustomDL\\kept.exe");
    Net().atProgress = [](size_t) {
        Net().atProgress = nullptr;
        DownloadAndRunSupportApp(url, "");
        RunCustomButton(1);
    };
    DownloadAndRunSupportApp(url, "/P");
    EXPECT_LINES(Pc().Journal("fetch"), {std::string("fetch ") + url});
    EXPECT_LINES(Started(), {"run C:\\Panel\\t.exe /P"});
    EXPECT_TRUE(Pc().Exists("C:\\Panel\\CustomDL\\kept.exe"));
    EXPECT_LINES(Counted(), {"CustomButton1=1"});
}

TEST_F(SupportTest, CustomButtonsDoWhatTheirTypeSays) {
    struct {
        const char *type, *action, *internal;
        Lines started;
    } cases[] = {
        {"", "", "", {"run C:\\Windows\\system32\\wuapp.exe"}},
        {"wu", "", "", {"run C:\\Windows\\system32\\wuapp.exe"}},
        {"EXE", "%windir%\\system32\\CleanMgr.exe", "", {"run c:\\windows\\system32\\cleanmgr.exe /P"}},
        {"exe", "Tool.exe", "", {"run C:\\Panel\\\\tool.exe /P"}},
        {"url", "http://b.example/[ClientID]", "0", {"open http://b.example/[ClientID]"}},
        {"URL", "http://b.example/", "1", {"open in panel modal http://b.example/"}},
        {"SR", "", "", {"run C:\\Windows\\system32\\rstrui.exe"}},
        {"cpq", "", "", {"run hidden cmd /c net stop spooler /y", "run hidden cmd /c net start spooler"}},
        {"Safe", "", "", {"run minimised C:\\Panel\\Pelmark.exe"}},
        {"other", "x", "", {}},
    };
    for (int n = 0; n < 5; ++n)
        for (const auto& c : cases) {
            std::string number = std::to_string(n), section = "CustomButton" + (n ? number : "");
            Fresh({{section.c_str(), "Type", c.type},
                   {section.c_str(), "ButtonAction", c.action},
                   {section.c_str(), "ShowCustomURLinIB", c.internal},
                   {section.c_str(), "CustomEXEParms", "/P"}});
            for (const char* name : {"wuapp", "cleanmgr", "rstrui"})
                Pc().AddFile("C:\\Windows\\System32\\" + std::string(name) + ".exe");
            Pc().AddFile("C:\\Panel\\tool.exe");
            Pc().AddFile("C:\\Panel\\Pelmark.exe");
            Pc().journal.clear();
            RunCustomButton(n);
            EXPECT_LINES(Started(), c.started);
            EXPECT_LINES(Counted(), {"CustomButton" + number + "=1"});
        }
}

TEST_F(SupportTest, TheFifthButtonTakesTheProgramNameOfTheSecond) {
    Fresh({{"CustomButton4", "Type", "DOWNLOAD"},
           {"CustomButton4", "ButtonAction", url},
           {"CustomButton4", "DownloadName", "t.zip"},
           {"CustomButton4", "CustomEXEinZIP", "a.exe"},
           {"CustomButton1", "CustomEXEinZIP", "b.exe"}});
    Net().web[url].bytes = HandZip({{"a.exe", "1"}, {"b.exe", "2"}});
    RunCustomButton(4);
    EXPECT_LINES(Started(), {"run C:\\Panel\\CustomDL\\b.exe"});
}

TEST_F(SupportTest, WindowsToolsByWindows) {
    struct {
        Windows windows;
        bool hasWuapp;
        const char *update, *restore;
    } cases[] = {
        {Windows::xp, false,
         "run \"C:\\Program Files\\Internet Explorer\\iexplore.exe\" http://windowsupdate.microsoft.com/",
         "run C:\\Windows\\system32\\restore\\rstrui.exe"},
        {Windows::seven, true, "run C:\\Windows\\system32\\wuapp.exe", "run C:\\Windows\\system32\\rstrui.exe"},
        {Windows::ten, true, "run C:\\Windows\\system32\\wuapp.exe", "run C:\\Windows\\system32\\rstrui.exe"},
        {Windows::ten, false, "open ms-settings:windowsupdate", "run C:\\Windows\\system32\\rstrui.exe"},
    };
    for (const auto& c : cases) {
        Fresh({}, c.windows);
        Pc().DeleteTree("C:\\Windows\\System32\\wuapp.exe");
        if (c.hasWuapp) Pc().AddFile("C:\\Windows\\System32\\wuapp.exe");
        Pc().AddFile("C:\\Windows\\System32\\rstrui.exe");
        Pc().AddFile("C:\\Windows\\System32\\restore\\rstrui.exe");
        Pc().AddFile("C:\\Program Files\\Internet Explorer\\iexplore.exe");
        Pc().journal.clear();
        OpenWindowsUpdate();
        OpenSystemRestore();
        EXPECT_LINES(Started(), {c.update, c.restore});
    }
}

TEST_F(SupportTest, ThePrintQueueIsEmptiedWhileTheSpoolerRests) {
    Fresh({});
    std::string queue = "C:\\Windows\\System32\\spool\\PRINTERS\\";
    Pc().AddFile(queue + "00001.SPL");
    Pc().journal.clear();
    ClearPrintQueue();
    EXPECT_FALSE(Pc().Exists("C:\\Windows\\System32\\spool\\PRINTERS"));
    EXPECT_EQ(Pc().journal.front(), "run hidden cmd /c net stop spooler /y");
    EXPECT_EQ(Pc().journal.back(), "show \"Print Queue Cleared!  You may now try to print again.\" (0) -> 1");
    EXPECT_EQ(Pc().journal[Pc().journal.size() - 2], "run hidden cmd /c net start spooler");
}

TEST_F(SupportTest, TheLogoLeadsToTheWebsiteAfterAQuestion) {
    struct {
        const char *link, *address;
        int answer;
        const char* journal;
    } cases[] = {
        {"0", "http://b.example/", 0, ""},
        {"1", "http://b.example/", pc::answerCancel, "show \"http://b.example/\" titled \"Go to website:\" (33) -> 2"},
        {"1", "http://b.example/[UserName]", pc::answerOk,
         "show \"http://b.example/[UserName]\" titled \"Go to website:\" (33) -> 1|open http://b.example/ann"},
        {"1", "", pc::answerCancel, "show \"\" titled \"Go to website:\" (33) -> 2"},
    };
    for (const auto& c : cases) {
        Fresh({{"Branding", "LogoToWebsite", c.link}, {"Branding", "LogoWebsite", c.address}});
        Pc().SetEnv("username", "Ann");
        if (c.answer) Pc().Answer(c.answer);
        Pc().journal.clear();
        OpenLogoLink();
        EXPECT_JOURNAL(Listed(c.journal));
    }
}

TEST_F(SupportTest, ThePasswordPromptHasThreeAnswers) {
    const char* refusal =
        "show \"You either did not enter a password, or your passwords do not match!  Please try again!\" (0) -> 1";
    struct {
        const char *first, *second, *button;
        bool gone, promptStays;
        const char* journal;
    } cases[] = {
        {"", "", "Command1", false, true, refusal},
        {"Abc", "abc", "Command1", false, true, refusal},
        {"Abc d", "Abc d", "Command1", true, false,
         "password Ann|ini C:\\Panel\\Brevanta.ini [PromptForPasswordSet] ann.home=0|show \"Password Set!\" (0) -> 1"},
        {"Abc", "", "Command2", true, false, "ini C:\\Panel\\Brevanta.ini [PromptForPasswordSet] ann.home=0"},
        {"Abc", "Abc", "close", true, true, ""},
    };
    for (const auto& c : cases) {
        Fresh({{"PromptForPasswordSet", "ann.home", "1"}});
        Pc().SetEnv("username", "Ann");
        Pc().SetEnv("userprofile", "C:\\Users\\ann.home");
        Pc().AddAccount("Ann", "S-1-5-21-1-2-3-1001");
        EXPECT_TRUE(IsPasswordPromptSet());
        ShowForm(frmPW);
        Type("frmPW", "Text1", c.first);
        Type("frmPW", "Text2", c.second);
        Pc().journal.clear();
        if (std::string(c.button) == "close")
            CloseByUser("frmPW");
        else
            Click("frmPW", c.button);
        EXPECT_JOURNAL(Listed(c.journal));
        EXPECT_EQ(IsFormLoaded("frmPW"), !c.gone);
        EXPECT_EQ(IsPasswordPromptSet(), c.promptStays);
        for (const auto& [name, text] : Pc().passwords) EXPECT_EQ(text, c.second) << name;
    }
}

TEST_F(SupportTest, ThePasswordPromptSpeaksTheLanguageOfTheFile) {
    Fresh({{"Branding", "PhoneCaption", "Call"}});
    const std::pair<const char*, const char*> rows[] = {
        {"Description1", "Label3"},      {"Description2", "Label4"},       {"Description3", "Label5"},
        {"NewPassword", "Label1"},       {"ConfirmNewPassword", "Label2"}, {"SetNewPasswordButton", "Command1"},
        {"NoPasswordButton", "Command2"}};
    for (const auto& [key, control] : rows) Pc().SetIni(languageFile, "PasswordForm", key, control);
    Pc().SetIni(languageFile, "PasswordForm", "Title", "Achtung");
    Pc().SetIni(languageFile, "MessageBoxes", "PasswordMismatch", "Ungleich");
    Form& form = ShowForm(frmPW);
    for (const auto& [key, control] : rows) EXPECT_EQ(form.Text(control), control);
    EXPECT_EQ(form.Caption() + form.Text("lblTel") + form.Text("lblPhone"), "AchtungCall555-555-5555");
    Click("frmPW", "Command1");
    EXPECT_EQ(Pc().journal.back(), "show \"Ungleich\" (0) -> 1");
}

TEST_F(SupportTest, TheBrowserShowsItsAddressUnderTheTechniciansName) {
    Fresh({{"Branding", "AppName", "Harbour"}});
    for (const char* address : {"http://a.example/", "http://b.example/"}) {  // the second comes while it is open
        State().browserAddress = address;
        ShowPanelBrowser(false);
        EXPECT_EQ(FormNamed("frmPanelBrowser").Find("WebBrowser1")->Address(), "http://a.example/");
    }
    EXPECT_EQ(FormNamed("frmPanelBrowser").Caption() + State().AppName, "HarbourHarbour");
    FormNamed("frmPanelBrowser").Resized(6600, 4350);
    EXPECT_EQ(FormNamed("frmPanelBrowser").Find("WebBrowser1")->Place().width, 6600);
}

TEST_F(SupportTest, ClientDataIsKeptInTheRegistry) {
    const std::string key = "HKLM\\Software\\Brevanta";
    Fresh({});
    Pc().SetText(key, "ClientName", "Old");
    Pc().SetText(key, "ClientID", "42");
    OnModal("frmClientInfoPrompt", [](Form& form) {
        EXPECT_EQ(form.Text("txtName"), "Old");
        Type("frmClientInfoPrompt", "txtName", "");
        Type("frmClientInfoPrompt", "txtPhone", "555");
        Click("frmClientInfoPrompt", "Command1");
    });
    OnModal("frmSetClientID", [](Form& form) {
        EXPECT_EQ(form.Text("Combo1"), "42");
        Click("frmSetClientID", "Command1");
    });
    ShowFormModal(frmClientInfoPrompt);
    ShowFormModal(frmSetClientID);
    EXPECT_TRUE(Pc().HasValue(key, "ClientName"));
    EXPECT_EQ(Pc().TextOf(key, "ClientName") + Pc().TextOf(key, "ClientPhone") + Pc().TextOf(key, "ClientID"), "55542");
    EXPECT_LINES(Pc().Journal("show"),
                 {"show \"Client Information Saved.\" (0) -> 1", "show \"Client ID Saved.\" (0) -> 1"});
}

TEST_F(SupportTest, SafeModeIsSetOnlyWithAWayBack) {
    const std::string once = "HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce";
    Fresh({});
    EXPECT_TRUE(SetSafeStart());
    EXPECT_LINES(Pc().Journal("run"),
                 {"run hidden C:\\Windows\\system32\\bcdedit.exe /set {current} safeboot network"});
    EXPECT_FALSE(Pc().Journal("set").empty());
    Pc().Program("bcdedit", {.exitCode = 1});
    EXPECT_FALSE(SetSafeStart());
    EXPECT_FALSE(Pc().HasValue(once, "*Pelmark"));
}

TEST_F(SupportTest, BootIniKeepsAllButTheSwitch) {
    const std::string head =
        "[boot loader]\r\ntimeout=30\r\ndefault=multi(0)disk(0)\\WINDOWS\r\n[operating systems]\r\n";
    const std::string other = "multi(0)disk(1)\\WINDOWS=\"Other\" /fastdetect\r\n";
    const std::string line = "multi(0)disk(0)\\WINDOWS=\"XP\" /fastdetect";
    const std::string plain = head + other + line, safe = plain + " /safeboot:network";
    struct {
        std::string before, after;
    } cases[] = {
        {plain, safe},      {plain + "\r\n", safe + "\r\n"},  {safe, safe}, {"", ""}, {"default=\r\n", ""},
        {head + other, ""}, {"[boot loader]\r\n" + line, ""},
    };
    for (const auto& c : cases) EXPECT_EQ(BootIniWithSafeMode(c.before), c.after) << c.before;
    EXPECT_EQ(BootIniWithoutSafeMode(safe), plain);
    // Whatever fails, the file is whole: the old text or the new one, and nothing is left beside it.
    constexpr uint32_t hidden = pc::attributeReadOnly | pc::attributeArchive;
    for (int n = 0; n < 60; ++n) {
        Fresh({}, Windows::xp);
        Pc().AddFile("C:\\boot.ini", plain, hidden);
        if (n > 0) Pc().FailCall(n);
        bool set = SetSafeStart();
        EXPECT_EQ(Pc().FileText("C:\\boot.ini"), set ? safe : plain) << n;
        if (n > 0) continue;
        EXPECT_TRUE(set);
        EXPECT_EQ(Pc().Attributes("C:\\boot.ini"), hidden);
        EXPECT_FALSE(Pc().Exists("C:\\boot.ini.new"));
        UndoSafeStart();
        EXPECT_EQ(Pc().FileText("C:\\boot.ini"), plain);
    }
}
