// The command line and the steps of a start, in their order.

#include "startup/modes.h"

#include <set>

#include "panel/skin.h"
#include "panel_test.h"
#include "pc/simulated_net.h"
#include "startup/startup.h"
#include "system/scramble.h"
#include "zip_bytes.h"

namespace {

class ModesTest : public PanelTest {
protected:
    void SetUp() override { Prepare(); }
    // Starts the program as the system does; true when it has ended by itself, false when a form ended it.
    // form: closed by the client after a while.
    bool Run(const std::string& commandLine, const std::string& form = "") {
        Pc().commandLine = commandLine;
        if (!form.empty()) Pc().Later(5000, [form] { CloseByUser(form); });
        Pc().Later(9000, [] {});  // the panel's last upload takes a moment
        try {
            return ProgramMain() == 0;
        } catch (const ProgramEnded&) {
            return false;
        }
    }
    std::string Count(const char* counter) { return Pc().Ini(usageFile, "Usage", counter); }
};

TEST_F(ModesTest, WholeLineChoosesTheMode) {
    const char* arguments[] = {"/maintenance", "/disablemaintenance", "/config",    "/configskin",
                               "/updateonly",  "/installoemlink",     "/installer", "/updateconfig",
                               "/uninstaller", "/clientinfo",         "/rp0",       "/rp1",
                               "/rp2"};
    ASSERT_EQ(Modes().size(), std::size(arguments) + 1);
    std::set<std::string> controls, skin;
    for (size_t i = 0; i < std::size(arguments); ++i) {
        const Mode& mode = ChooseMode(arguments[i]);
        EXPECT_EQ(&mode, &Modes()[i]);
        if (mode.usesControls) controls.insert(mode.argument);
        if (mode.usesSkin) skin.insert(mode.argument);
    }
    EXPECT_EQ(controls,
              (std::set<std::string>{"/maintenance", "/config", "/configskin", "/updateonly", "/clientinfo"}));
    EXPECT_EQ(skin, (std::set<std::string>{"/maintenance", "/config", "/configskin"}));
    for (const char* other : {"", "/rp3", "/rp", "/config ", " /config", "/config /maintenance", "config", "/auto",
                              "\"/config\"", "/MAINTENANCE"})
        EXPECT_EQ(&ChooseMode(other), &Modes().back()) << other;
    EXPECT_TRUE(Modes().back().run == RunPanelMode && Modes().back().usesControls && Modes().back().usesSkin);
}

TEST_F(ModesTest, StepsAheadOfTheCommandLine) {
    Pc().AddResource("CUSTOM", "CCPB", "control");
    Pc().commandLine = "/CONFIG";
    PrepareStart();
    EXPECT_EQ(State().settingsFile, settingsFile);
    EXPECT_TRUE(State().bHandle64BitRedirect);
    EXPECT_EQ(State().commandLine, "/config") << "capitals do not matter";
    // The older settings are converted first, and once.
    ASSERT_GE(Pc().journal.size(), 2u);
    EXPECT_TRUE(Pc().journal.front().ends_with("[Confirmations] ConvertedCustomApps=1")) << Pc().journal.front();
    EXPECT_EQ(Pc().journal.back(), "write C:\\Panel\\ccrpprg6.ocx (7 bytes)");
    Pc().RestartProgram();
    PrepareStart();
    EXPECT_TRUE(Pc().journal.empty());
}

TEST_F(ModesTest, PanelStartCountsAndEndsByTheUsageUpload) {
    Pc().BeOrdinaryUser();
    EXPECT_FALSE(Run("", "frmMain"));
    EXPECT_EQ(Pc().shownForms.front(), "frmMain");
    EXPECT_EQ(Pc().shownForms.back(), "frmCloudUL");
    EXPECT_EQ(Count("AppLaunch"), "1");
    EXPECT_EQ(Pc().journal.back(), "end 0");
}

TEST_F(ModesTest, SettingsChooseTheFace) {
    for (const char* line : {"", "/rp7", "/maintenance"}) {
        Prepare({{"Branding", "UseNewInterface", "1"}}, Windows::tenX64);
        EXPECT_FALSE(Run(line, "frmMainNew"));
        EXPECT_EQ(Pc().shownForms.front(), "frmMainNew");
    }
}

TEST_F(ModesTest, SettingsPulledAtStartCountAtOnce) {
    for (const char* pull : {"1", "yes"}) {
        Prepare({{"Nimbra", "UpdateAtLaunch", pull}, {"Nimbra", "UserName", "tech"}});
        Pc().SetIni(settingsFile, "Nimbra", "Password", EncryptString("secret", passwordKey));
        Pc().SetIni(settingsFile, "General", "LastMaintenance", "before");
        Net().ftpFolders.insert("/Brevanta");
        Net().ftpFiles["/Brevanta/BrevantaConfig.zip"] =
            HandZip({{"Brevanta.ini", "[Branding]\r\nUseNewInterface=1\r\n[Maint]\r\nMaintCheckEnabled=1\r\n"}});
        bool pulled = std::string(pull) == "1";
        EXPECT_FALSE(Run("", pulled ? "frmMainNew" : "frmMain"));
        EXPECT_EQ(Pc().shownForms[0], pulled ? "frmCloudDL" : "frmMain");
        EXPECT_EQ(Pc().Ini(settingsFile, "General", "LastMaintenance"), "before");
        EXPECT_EQ(Pc().TextOf("HKLM\\Software\\Talvenmoor\\Maintenance", "LastRun"), pulled ? "before" : "");
        if (!pulled) continue;
        // Tasks and Run value follow the new settings, in this order.
        std::vector<std::string> order;
        for (const std::string& line : Pc().journal)
            for (const char* part :
                 {"App Update", "Config Update", "Maintenance Check", "Restore Point 2", "AppLaunch"})
                if (line.find(part) != std::string::npos) order.push_back(part);
        EXPECT_LINES(order, {"App Update", "Config Update", "Maintenance Check", "Restore Point 2", "AppLaunch"});
    }
}

TEST_F(ModesTest, MaintenanceModeShowsThePanelFirst) {
    Pc().AnswerWith([](const std::string&) {
        EXPECT_TRUE(IsShown("frmMain", "cmdMaint"));
        return pc::answerCancel;
    });
    EXPECT_FALSE(Run("/Maintenance", "frmMain"));
    EXPECT_EQ(Count("Maintenance"), "1");
    EXPECT_EQ(Count("AppLaunch"), "") << "counted by the default start only";
    EXPECT_EQ(Pc().Journal("show").size(), 1u);
}

TEST_F(ModesTest, PasswordPromptReplacesThePanelOfItsUserOnly) {
    std::string user = Pc().Profile().substr(Pc().Profile().rfind('\\') + 1);
    Prepare({{"PromptForPasswordSet", user.c_str(), "1"}});
    EXPECT_TRUE(Run("", "frmPW"));
    EXPECT_LINES(Pc().shownForms, {"frmPW"});
    EXPECT_EQ(Count("AppLaunch"), "");

    Prepare({{"PromptForPasswordSet", "Somebody", "1"}});
    EXPECT_FALSE(Run("", "frmMain"));
    EXPECT_EQ(Pc().shownForms.front(), "frmMain");
}

TEST_F(ModesTest, ModesWithoutAPanel) {
    const std::string key = "HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
    Prepare({{"Maint", "MaintCheckEnabled", "1"}});
    Pc().SetText(key, "Brevanta Maintenance Check", "C:\\Panel\\BrevantaMCStub.exe");
    EXPECT_TRUE(Run("/disablemaintenance"));
    EXPECT_FALSE(Pc().HasValue(key, "Brevanta Maintenance Check"));
    EXPECT_EQ(Pc().Ini(settingsFile, "Maint", "MaintCheckEnabled"), "1") << "the setting stays";
    EXPECT_TRUE(Pc().shownForms.empty());

    const struct {
        const char* mail;
        const char* identifier;
        std::vector<std::string> forms;
    } rows[] = {
        {"0", "", {}},
        {"1", "0", {"frmClientInfoPrompt"}},
        {"1", "1", {"frmClientInfoPrompt", "frmSetClientID"}},
    };
    for (const auto& row : rows) {
        Prepare({{"EmailConfig", "UseInternalSMTP", row.mail}, {"Install", "PromptForClientID", row.identifier}});
        for (const char* form : {"frmClientInfoPrompt", "frmSetClientID"})
            OnModal(form, [](Form& shown) { UnloadForm(shown); });
        EXPECT_TRUE(Run("/clientinfo"));
        EXPECT_LINES(Pc().shownForms, row.forms);
    }
}

TEST_F(ModesTest, SkinIsAppliedAndRemoved) {
    Prepare({{"Branding", "Skin", "Calm.skf"}, {"Branding", "UseNewInterface", "1"}});
    LoadConfiguredSkin();
    EXPECT_FALSE(State().skinActive) << "no such skin";
    Pc().AddFile("C:\\Panel\\Skins\\Calm.skf");
    LoadConfiguredSkin();
    EXPECT_TRUE(State().skinActive) << "active though the library is not there";
    EXPECT_TRUE(Pc().Journal("call").empty());
    Pc().AddFile("C:\\Panel\\appface.dll");
    EXPECT_FALSE(Run("", "frmMainNew"));
    auto calls = Pc().Journal("call");
    ASSERT_GE(calls.size(), 2u);
    EXPECT_EQ(calls.front(), "call appface.dll SkinStart C:\\Panel\\Skins\\Calm.skf, 2");
    EXPECT_EQ(calls[1], "call appface.dll SkinWindowSet 0, 0") << "the sidebar keeps its look";
    EXPECT_EQ(calls.back(), "call appface.dll SkinRemove");
}

TEST_F(ModesTest, MovedAsideCopyShowsNothing) {
    Pc().programPath = "C:\\Panel\\Brevanta_old.exe";
    Pc().AddFile(Pc().programPath, "MZ");
    EXPECT_TRUE(Run(""));
    EXPECT_TRUE(Pc().shownForms.empty());
    EXPECT_TRUE(Pc().Exists("C:\\Panel\\Brevanta.exe")) << "the program is back under its name";
}

}  // namespace
