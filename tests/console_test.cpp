#include "console/console.h"

#include <fstream>
#include <iterator>

#include "console/console_parts.h"
#include "console/fields.h"
#include "maintenance/custom_apps.h"
#include "panel/skin.h"
#include "pc/pc_test.h"
#include "pc/simulated_net.h"
#include "platform/messages.h"
#include "system/program_state.h"
#include "system/scramble.h"
#include "system/settings.h"
#include "system/text.h"
#include "system/trace.h"
#include "zip_bytes.h"

namespace {

class ConsoleTest : public PcTest {
protected:
    ConsoleTest() { InitPaths(true, true); }

    Form& Open() { return ShowForm(frmConfig()); }
    Form& Reopen() {
        UnloadForm(FormNamed("frmConfig"));
        return Open();
    }
    static std::string Stored(const char* section, const char* key) { return Setting(section, key); }
};

// Keys of the settings written so far, in order; the same one after the other counts once.
std::vector<std::string> WrittenKeys() {
    std::vector<std::string> keys;
    for (const std::string& line : Pc().Journal("ini ")) {
        size_t from = line.find("] ") + 2;
        std::string key = line.substr(from, line.find('=') - from);
        if (keys.empty() || keys.back() != key) keys.push_back(key);
    }
    return keys;
}

bool IsTick(const Field& field) { return field.item == Item::check || field.item == Item::option; }

// Fields that WriteEmailConfig keeps are Keep::none here; they have a test of their own.
TEST_F(ConsoleTest, EveryFieldOfEveryPageIsSavedUnderItsKeyAndLoadedByAFreshConsole) {
    Form* form = &Open();
    int number = 0;
    std::vector<std::string> wanted;
    for (const Field& field : ConsoleFields()) {
        Control* control = form->Find(field.control);
        ASSERT_NE(control, nullptr) << field.control;
        if (field.keep == Keep::whenChosen || field.keep == Keep::optionFlag || field.keep == Keep::none) continue;
        if (IsTick(field))
            control->SetValue(++number % 2);
        else
            control->SetText(field.keep == Keep::asLines ? "one\r\n\r\ntwo" : "text " + NumberText(++number));
    }
    ASSERT_TRUE(SaveConsole(*form));
    for (const Field& field : ConsoleFields()) {
        if (field.keep == Keep::whenChosen || field.keep == Keep::optionFlag || field.keep == Keep::none) continue;
        const Control& control = *form->Find(field.control);
        std::string expected = IsTick(field)                   ? NumberText(control.Value())
                               : field.keep == Keep::asLines   ? "one||two"
                               : field.keep == Keep::scrambled ? EncryptString(control.Text(), passwordKey)
                                                               : control.Text();
        EXPECT_EQ(Stored(field.section.c_str(), field.key.c_str()), expected) << field.control;
        wanted.push_back(field.control + "=" + (IsTick(field) ? NumberText(control.Value()) : control.Text()));
    }
    form = &Reopen();
    size_t at = 0;
    for (const Field& field : ConsoleFields()) {
        if (field.keep == Keep::whenChosen || field.keep == Keep::optionFlag || field.keep == Keep::none) continue;
        const Control& control = *form->Find(field.control);
        // The reminder always opens with 29, whatever is stored.
        std::string expected = field.control == "comboMaintReminder" ? "comboMaintReminder=29" : wanted[at];
        EXPECT_EQ(field.control + "=" + (IsTick(field) ? NumberText(control.Value()) : control.Text()), expected);
        ++at;
    }
    EXPECT_GT(at, 90u);
}

// The whole file, its order included, that saving an untouched console leaves in an empty folder.
TEST_F(ConsoleTest, FirstSaveWritesTheDesignedValuesInOrder) {
    ASSERT_TRUE(SaveConsole(Open()));
    std::ifstream golden("tests/golden/first_save.ini", std::ios::binary);
    std::string wanted{std::istreambuf_iterator<char>(golden), {}};
    EXPECT_TRUE(SameLines(Split(ReplaceAll(Pc().FileText(State().settingsFile), "\r", ""), '\n'), Split(wanted, '\n')));
}

TEST_F(ConsoleTest, ChosenOptionsWriteTheirOwnValueAndGroupsWithKeysOfTheirOwnWriteAll) {
    struct Case {
        const char* control;
        const char* section;
        const char* key;
        const char* value;
    };
    const Case cases[] = {
        {"optTextCenter", "Branding", "NewUITextAlign", "center"},
        {"optTextRight", "Branding", "NewUITextAlign", "right"},
        {"optRemoteEXE", "Branding", "RemoteSupportType", "EXE"},
        {"optRemoteURL", "Branding", "RemoteSupportType", "URL"},
        {"optRemoteDLandEXE", "Branding", "RemoteSupportType", "Download"},
        {"optUseMSRA", "Branding", "RemoteUseMSRA", "1"},
        {"optCustomSR", "CustomButton", "Type", "SR"},
        {"optCustomDE1", "CustomButton1", "Type", "Download"},
        {"optCustomEXE2", "CustomButton2", "Type", "EXE"},
        {"optCustomURL3", "CustomButton3", "Type", "URL"},
        {"optCustomWU4", "CustomButton4", "Type", "WU"},
        {"optCustomCPQ", "CustomButton", "Type", "CPQ"},
        {"optCustomSafe4", "CustomButton4", "Type", "SAFE"},
    };
    Form* form = &Open();
    for (const Case& row : cases) {
        form->SetValue(row.control, 1);
        SaveConsole(*form);
        EXPECT_EQ(Stored(row.section, row.key), row.value) << row.control;
    }
    form = &Reopen();
    EXPECT_TRUE(form->Checked("optUseMSRA")) << "as the panel has it, whatever else was chosen before";
    form->SetValue("optLargeLogo", 1);
    SaveConsole(*form);
    EXPECT_EQ(Stored("Branding", "UseStdLogo") + Stored("Branding", "UseRectLogo") + Stored("Branding", "UseLargeLogo"),
              "001");
    WriteSetting("CustomButton", "Type", "URL");
    for (const char* option :
         {"optCustomSR", "optCustomDE", "optCustomEXE", "optCustomURL", "optCustomWU", "optCustomCPQ", "optCustomSafe"})
        form->SetValue(option, 0);
    SaveConsole(*form);
    EXPECT_EQ(Stored("CustomButton", "Type"), "URL") << "none chosen leaves the old type";
}

TEST_F(ConsoleTest, TheMailAccountIsKeptInItsOrderAndThePasswordScrambled) {
    Form* form = &Open();
    form->SetText("txtSMTPServer", "mail.example");
    form->SetText("comboSMTPPort", "587");
    form->SetText("txtSMTPPassword", "secret");
    form->SetText("txtEmail", "tech@example.org");
    form->SetValue("chkUseSSL", 1);
    Pc().journal.clear();
    WriteEmailConfig(*form);
    EXPECT_LINES(WrittenKeys(), {"SMTPServer", "SMTPPort", "SMTPUserName", "SMTPPassword", "FromEmail", "ToEmail",
                                 "SMTPAuth", "UseSSL"});
    EXPECT_EQ(DecryptString(Stored("EmailConfig", "SMTPPassword"), passwordKey), "secret");
    EXPECT_EQ(Stored("EmailConfig", "SMTPPassword").find("secret"), std::string::npos);
    form = &Reopen();
    EXPECT_EQ(form->Text("txtSMTPPassword") + form->Text("comboSMTPPort"), "secret587");
}

TEST_F(ConsoleTest, WhatNoFileCanHoldNeverHarmsItsNeighbours) {
    const std::string odd[] = {std::string(300, 'x'), "a \"quoted\" b", "k=v;c[s]|p", "line\r\n[Other]\r\nkey=1",
                               "\xC3\xA4\xD0\xB6"};
    for (const std::string& text : odd) {
        Form& form = Open();
        form.SetText("txtAppName", text);
        form.SetText("txtPhone", "123");
        SaveConsole(form);
        EXPECT_EQ(Stored("Branding", "PhoneNumber"), "123");
        EXPECT_EQ(Stored("Other", "key"), "");
        Form& fresh = Reopen();
        EXPECT_EQ(fresh.Text("txtAppName"), Stored("Branding", "AppName"));
        EXPECT_EQ(fresh.Text("txtPhone"), "123");
        UnloadForm(fresh);
    }
}

TEST_F(ConsoleTest, RulesBetweenControlsAndQuietMarks) {
    Form& form = Open();
    struct Rule {
        const char* option;
        const char* enabled;  // of the five controls, in the order below
    };
    const char* five[] = {"txtRemoteDLFileName", "txtRemoteDLEXEName", "txtSupportApp", "txtSupportAppParms",
                          "chkUseIBForSupportURL"};
    EXPECT_EQ(form.Find("SideBar")->Value(), 1);
    ShowPage(form, "picRemote");
    EXPECT_EQ(form.Find("SideBar")->Value(), 5);
    for (const Rule& rule : {Rule{"optRemoteDLandEXE", "11110"}, Rule{"optRemoteEXE", "00110"},
                             Rule{"optRemoteURL", "00101"}, Rule{"optUseMSRA", "00000"}}) {
        form.Find(rule.option)->UserClicked();
        std::string state;
        for (const char* name : five) state += form.Find(name)->Enabled() ? '1' : '0';
        EXPECT_EQ(state, rule.enabled) << rule.option;
    }
    EXPECT_FALSE(form.Find("txtEmailURLOnly")->Enabled());
    ShowPage(form, "picEmail");
    form.Find("chkSecondEmail")->UserClicked();
    EXPECT_TRUE(form.Find("txtEmailURLOnly")->Enabled() && form.Find("txtEmailCaption2")->Enabled());
    struct Mark {
        const char* control;
        const char* text;
        bool wrong;
    };
    for (const Mark& mark : {Mark{"comboSMTPPort", "25", false}, Mark{"comboSMTPPort", "abc", true},
                             Mark{"comboSMTPPort", "70000", true}, Mark{"txtRPTime(1)", "23:59:59", false},
                             Mark{"txtRPTime(1)", "24:00:00", true}, Mark{"txtLogoWebsite", "www.x", true},
                             Mark{"txtLogoWebsite", "https://x", false}, Mark{"txtFromEmail", "nobody", true}}) {
        Control& box = *form.Find(mark.control);
        ShowPage(form, box.Container().c_str());
        box.UserTyped(mark.text);
        EXPECT_EQ(!form.Text(std::string(mark.control) + "Note").empty(), mark.wrong) << mark.control << mark.text;
    }
    EXPECT_TRUE(SaveConsole(form)) << "a mark never blocks a save";
}

TEST_F(ConsoleTest, ClosingWithChangesAsksAndAReadOnlyFileIsTold) {
    Form* form = &Open();
    EXPECT_TRUE(UnloadForm(*form, true)) << "nothing changed, nothing asked";
    form = &Open();
    form->SetText("txtAppName", "Changed");
    Pc().Answer(pc::answerCancel);
    EXPECT_FALSE(UnloadForm(*form, true));
    Pc().Answer(pc::answerYes);
    EXPECT_TRUE(UnloadForm(*form, true));
    EXPECT_EQ(Stored("Branding", "AppName"), "Changed");
    Pc().AddFile(State().settingsFile, Pc().FileText(State().settingsFile), pc::attributeReadOnly);
    Pc().Answer(pc::answerOk);
    form = &Open();
    form->SetText("txtAppName", "Lost?");
    ClickItem("frmConfig", "SideBar", 2, 3);
    Pc().Answer(pc::answerNo);
    EXPECT_TRUE(CloseByUser("frmConfig")) << "what could not be saved is still asked about";
    EXPECT_EQ(Pc().Journal("show \"There are unsaved changes.").size(), 3u);
}

TEST_F(ConsoleTest, ListsHoldTheirChoicesOnlyAndTheSideBarKeepsItsLook) {
    Pc().AddFile("C:\\Panel\\Skins\\Calm.urf");
    Pc().AddFile("C:\\Panel\\appface.dll");
    WriteSetting("Branding", "Skin", "Calm.urf");
    LoadConfiguredSkin();
    Form& form = Open();
    EXPECT_EQ(form.Find("comboRPDay(1)")->Items().size(), 8u) << "an empty setting is none";
    EXPECT_EQ(form.Find("comboMaintReminder")->Items().size(), 30u);
    EXPECT_LINES(Pc().Journal("call"),
                 {"call appface.dll SkinStart C:\\Panel\\Skins\\Calm.urf, 2", "call appface.dll SkinWindowSet 0, 0"});
}

TEST_F(ConsoleTest, TheSetIsPackedFlatAndMovedToTheDesktop) {
    Pc().AddFolder(Pc().Env("public") + "\\Desktop");
    Pc().AddFile("C:\\Panel\\supportlogo.png", "logo");
    Pc().AddFile("C:\\Panel\\App.cfg", "[Config]\r\n");
    Form& form = Open();
    Pc().Answer(pc::answerOk);
    SaveAndZip(form);
    EXPECT_TRUE(Pc().Exists(Pc().Env("public") + "\\Desktop\\BrevantaConfig.zip"));
    EXPECT_FALSE(Pc().Exists("C:\\Panel\\ConfigUpload"));
    EXPECT_FALSE(Pc().Exists("C:\\Panel\\BrevantaConfig.zip"));
    EXPECT_TRUE(Pc().Journal("show \"Your config is saved to your desktop.\"").size() == 1);
    Pc().Deny(Pc().Env("public") + "\\Desktop\\BrevantaConfig.zip");
    Pc().Answer(pc::answerOk);
    SaveAndZip(form);
    EXPECT_TRUE(Pc().Exists("C:\\Panel\\BrevantaConfig.zip"));
    EXPECT_EQ(Pc().Journal("show \"Your config is saved here:").size(), 1u);
}

TEST_F(ConsoleTest, ADownloadedSetIsShownByANewConsoleAndADamagedOneChangesNothing) {
    struct Case {
        std::string set;
        const char *name, *shown;
        bool restarts;
    };
    const std::string whole = HandZip({{"brevanta.ini", "[Branding]\r\nAppName=New\r\n"}});
    const Case cases[] = {{whole, "New", "", true},
                          {whole.substr(0, whole.size() / 2), "Old", "show \"The configuration that came down", false},
                          {HandZip({{"Brevanta.ini", "no section"}}), "Old", "show \"The configuration that", false},
                          {"", "Old", "", false}};
    for (const Case& row : cases) {
        SimulatedPc::UseWindows(Windows::seven);
        ForgetForms();
        WriteSetting("Branding", "AppName", "Old");
        WriteSetting("Nimbra", "UserName", "tech");
        WriteSetting("Nimbra", "Password", EncryptString("secret", passwordKey));
        Net().ftpFolders.insert("/Brevanta");
        Net().ftpFiles["/Brevanta/BrevantaConfig.zip"] = row.set;
        Form& form = Open();
        ShowPage(form, "picAutoUpdate");
        if (*row.shown) Pc().Answer(pc::answerOk);
        Click("frmConfig", "Command3");
        EXPECT_EQ(Stored("Branding", "AppName"), row.name);
        EXPECT_EQ(Pc().Journal("run C:\\Panel\\Brevanta.exe /config").size(), row.restarts ? 1u : 0u);
        EXPECT_EQ(IsFormLoaded("frmConfig"), !row.restarts);
        EXPECT_EQ(Pc().Journal("show").size(), *row.shown ? 1u : 0u);
        EXPECT_EQ(Pc().Journal(*row.shown ? row.shown : "show").size(), *row.shown ? 1u : 0u);
    }
}

TEST_F(ConsoleTest, AScheduleButtonSavesItsOwnKeysOnly) {
    struct Case {
        const char *page, *button;
        std::vector<std::string> keys;
    };
    const Case cases[] = {
        {"picAutoUpdate", "Command1", {"UpdateConfig", "UpdateConfigLoc", "UpdateApp", "OpenTSAfterInstall"}},
        {"picAutoSRP", "Command10", {"Freq", "Time", "Name", "Enable"}},
        {"picMaintenance", "Command9", {"MaintReminderDays", "MaintCheckEnabled"}}};
    Form& form = Open();
    for (const Case& row : cases) {
        ShowPage(form, row.page);
        Pc().journal.clear();
        Pc().Answer(pc::answerOk);
        Click("frmConfig", row.button);
        EXPECT_LINES(WrittenKeys(), row.keys);
        EXPECT_TRUE(Pc().journal.back().starts_with("show \"Schedules Set!\"")) << row.button;
    }
}

TEST_F(ConsoleTest, ASkinIsPreviewedByANewConsole) {
    for (const char* computer : {"PC", "Dev"}) {
        SimulatedPc::UseWindows(Windows::seven).SetEnv("computername", computer);
        ForgetForms();
        WriteSetting("Branding", "AppName", "Harbour");
        ShowPage(Open(), "picSkins");
        Pc().journal.clear();
        Pc().Pick("");
        Click("frmConfig", "Command6");
        Click("frmConfig", "Command7");  // none selected
        EXPECT_EQ(Pc().Journal("ini ").size() + Pc().Journal("run").size() + Pc().Journal("show").size(), 0u);
        Pc().Pick("C:\\Panel\\Skins\\Calm.urf");
        Click("frmConfig", "Command6");
        EXPECT_EQ(WrittenKeys().front(), "Skin");
        EXPECT_EQ(Stored("Branding", "Skin"), "Calm.urf");
        EXPECT_EQ(Pc().Journal("run hidden schtasks.exe").empty(), std::string(computer) == "Dev");
        EXPECT_EQ(Pc().Journal("run").back(), "run C:\\Panel\\Brevanta.exe /configskin");
        EXPECT_TRUE(LoadedForms().empty());
    }
    ShowPage(Open(), "picSkins");
    Pc().Answer(pc::answerOk);
    Click("frmConfig", "Command8");
    EXPECT_EQ(Stored("Branding", "Skin") + TextOn("frmConfig", "lblSkin"), "");
}

TEST_F(ConsoleTest, AppsAreEditedOrderedRenamedAndDeleted) {
    Pc().AddFile("C:\\Panel\\ByHand.cfg", "[Config]\r\nApp=x\r\nRunInCMD=1\r\n");
    Pc().AddFile("C:\\Panel\\SortOrder.cfg", "[SortOrder]\r\nSortOrder=Gone|ByHand|ByHand|\r\n");
    Form& form = Open();
    ShowPage(form, "picCustomAppsMaint");
    Control& list = *form.Find("listApps");
    EXPECT_LINES(list.Items(), {"ByHand"});
    auto save = [&](const char* name) {
        form.SetText("txtName", name);
        form.SetText("txtFileName(0)", "tool.exe");
        form.Find("cmdMaint(3)")->UserClicked();
    };
    for (int i = 0; i < 5; ++i) Pc().Answer(pc::answerOk);
    save("A&B");
    save("A/B");
    save("NUL");
    save("SortOrder");
    save("second");
    EXPECT_LINES(list.Items(), {"ByHand", "A-B", "second"});
    EXPECT_EQ(ReadIni("C:\\Panel\\A-B.cfg", "Config", "App"), "tool.exe");
    list.Select(2);
    form.Find("cmdListMove(0)")->UserClicked();
    EXPECT_LINES(ReadSortOrder(), {"ByHand", "second", "A-B"});
    form.Find("listApps")->UserSelected(0);
    std::string newName = "New";
    OnModal("frmInputBox", [&newName](Form& box) {
        box.SetText("txtAnswer", newName);
        box.Find("cmdOk")->UserClicked();
    });
    Pc().Answer(pc::answerOk);
    form.Find("cmdListMove(2)")->UserClicked();
    EXPECT_LINES(ReadSortOrder(), {"New", "second", "A-B"});
    EXPECT_FALSE(Pc().Exists("C:\\Panel\\ByHand.cfg"));
    EXPECT_EQ(ReadIni("C:\\Panel\\New.cfg", "Config", "App") + ReadIni("C:\\Panel\\New.cfg", "Config", "RunInCMD"),
              "x1");
    newName = "SECOND";
    form.Find("listApps")->UserSelected(0);
    Pc().Answer(pc::answerOk);
    form.Find("cmdListMove(2)")->UserClicked();
    EXPECT_LINES(ReadSortOrder(), {"New", "second", "A-B"});
    EXPECT_TRUE(Pc().Exists("C:\\Panel\\New.cfg")) << "another app's name is refused";
    form.Find("listApps")->UserSelected(1);
    form.Find("cmdListMove(3)")->UserClicked();
    EXPECT_LINES(ReadSortOrder(), {"New", "A-B"});
    EXPECT_FALSE(Pc().Exists("C:\\Panel\\second.cfg"));
}

}  // namespace
