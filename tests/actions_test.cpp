// Which control leads to which action, and the panel's own small handlers.

#include "panel/actions.h"

#include "panel_test.h"
#include "tools/external_ip/address_text.h"

namespace {

class ActionsTest : public PanelTest {};

TEST_F(ActionsTest, SideBarGoesByPosition) {
    using enum PanelAction;
    const Key noMail{"Branding", "ShowEmailButton", "0"}, twoOptions{"EmailConfig", "OfferTwoOptions", "1"},
        restorePage{"CustomRP", "ShowOption", "1"}, secondButton{"CustomButton1", "ShowButton", "1"};
    const struct {
        std::vector<Key> keys;
        int group;
        std::vector<PanelAction> items;  // from item 0 on
    } rows[] = {
        {{}, 1, {none, chosenEmail, remoteSupport, remoteSupport, none}},
        {{noMail}, 1, {none, remoteSupport, remoteSupport, remoteSupport, none}},
        {{twoOptions}, 1, {none, chosenEmail, secondEmail, remoteSupport, none}},
        {{twoOptions, noMail}, 1, {none, remoteSupport, secondEmail, remoteSupport, none}},
        {{},
         2,
         {none, maintenance, fixInternet, customButton0, customButton1, customButton2, customButton3, customButton4,
          none}},
        {{restorePage},
         2,
         {none, restorePointPage, maintenance, fixInternet, customButton0, customButton1, customButton2, customButton3,
          customButton4, none}},
        {{secondButton}, 2, {none, maintenance, fixInternet, customButton0}},  // its caption is another one's
        {{}, 3, {none, none, none}},
        {{}, 0, {none, none}},
    };
    for (const auto& row : rows) {
        Prepare(row.keys);
        for (size_t item = 0; item < row.items.size(); ++item)
            EXPECT_EQ(SideBarAction(row.group, static_cast<int>(item)), row.items[item]) << row.group << " " << item;
    }
    EXPECT_EQ(SideBarAction(2, -1), none);
}

TEST_F(ActionsTest, ClicksReachTheirActions) {
    const std::vector<Key> keys = {
        {"EmailConfig", "OfferTwoOptions", "1"}, {"EmailConfig", "SecondaryEmailURLOnly", "http://desk.example/"},
        {"Branding", "UseIBForEmail", "0"},      {"Branding", "LogoToWebsite", "0"},
        {"Branding", "ShowPreRemoteURL", "0"},   {"CustomButton", "ShowButton", "1"}};
    const struct {
        const char* control;  // of the classic face, or none for an item of the sidebar
        int group, item;
        std::vector<std::string> counted;
    } rows[] = {
        {"cmdFix", 0, 0, {"Fix=1"}},  // counted though the question is answered with Cancel
        {"cmdMaint", 0, 0, {"Maintenance=1"}},
        {"cmdStartSupport", 0, 0, {"RemoteSupport=1"}},
        {"cmdCustom", 0, 0, {"CustomButton0=1"}},
        {"AlphaImgCtl1", 0, 0, {}},
        {nullptr, 1, 1, {"Email=1"}},
        {nullptr, 1, 2, {"Email2=1"}},
        {nullptr, 1, 3, {"RemoteSupport=1"}},
        {nullptr, 2, 1, {"Maintenance=1"}},
        {nullptr, 2, 2, {"Fix=1"}},
        {nullptr, 2, 3, {"CustomButton0=1"}},
    };
    for (const auto& row : rows) {
        Show(row.control ? frmMain : frmMainNew, keys);
        Pc().AnswerWith([](const std::string&) { return pc::answerCancel; });
        if (row.control)
            Click("frmMain", row.control);
        else
            ClickItem("frmMainNew", "SideBar", row.group, row.item);
        EXPECT_LINES(Counted(), row.counted);
    }
}

TEST_F(ActionsTest, LargeTextOpensItsLinkAsItStands) {
    const Key link{"Branding", "LargeCustomTextLink", "http://shop.example/[UserName]"};
    Form& form = Show(frmMainNew, {{"Branding", "UseLargeCustomTextLink", "1"}, link});
    EXPECT_TRUE(form.Find("lblCustomLarge")->Underline());
    EXPECT_EQ(form.Find("lblCustomLarge")->Colour(), colourLink);
    Click("frmMainNew", "lblCustomLarge");
    EXPECT_LINES(Pc().Journal("open"), {"open http://shop.example/[UserName]"});
    EXPECT_LINES(Counted(), {"ClickOnMsg=1"});
    Show(frmMainNew, {link}).Find("lblCustomLarge")->UserClicked();
    EXPECT_TRUE(Pc().journal.empty());
}

TEST_F(ActionsTest, AddressOfAnEarlierRunShowsAtTheFirstTick) {
    Prepare();
    Pc().AddFile("C:\\Panel\\External.IP", "[IP]\r\nExternal=203.0.113.7\r\n");
    Form& form = ShowForm(frmMainNew);
    EXPECT_EQ(form.Text("lblExtIP"), "---");
    Pc().Pass(1100);
    EXPECT_EQ(form.Text("lblExtIP"), "203.0.113.7");
    EXPECT_FALSE(Pc().Exists("C:\\Panel\\External.IP"));

    Form& waiting = Show(frmMain);
    Pc().Pass(3600 * 1000);
    EXPECT_TRUE(waiting.Find("Timer1")->Enabled()) << "no limit on the ticks";
}

// Clicks are taken while the panel measures; the action runs inside the refresh, which then goes on.
TEST_F(ActionsTest, ClickWhileThePanelMeasures) {
    Prepare();
    Pc().Answer(pc::answerCancel);
    Pc().AtPump(2, [] { Click("frmMain", "cmdFix"); });
    Form& form = ShowForm(frmMain);
    EXPECT_LINES(Counted(), {"Fix=1"});
    EXPECT_NE(form.Text("lblOS"), "---");
}

TEST_F(ActionsTest, ClosingEndsByTheUsageUploadAtAnyTime) {
    for (int pump : {1, 2}) {  // while the panel measures
        Prepare();
        Pc().AtPump(pump, [] { CloseByUser("frmMainNew"); });
        ShowForm(frmMainNew);
        EXPECT_FALSE(IsFormLoaded("frmMainNew"));
        EXPECT_THROW(Pc().Pass(60000), ProgramEnded);
    }
    Show(frmMain);
    Click("frmMain", "cmdClose");
    EXPECT_TRUE(IsFormLoaded("frmCloudUL"));
    EXPECT_THROW(Pc().Pass(60000), ProgramEnded);
    // But a new panel that the console shows just goes.
    Show(frmMainNew);
    State().commandLine = "/config";
    State().skinActive = true;
    EXPECT_TRUE(CloseByUser("frmMainNew"));
    EXPECT_FALSE(IsFormLoaded("frmCloudUL"));
    EXPECT_FALSE(State().skinActive);
}

TEST(AddressText, TakesAddressesOnly) {
    for (const char* address :
         {"203.0.113.7", "0.0.0.0", "255.255.255.255", "::", "::1", "2001:db8::7", "1:2:3:4:5:6:7:8"})
        EXPECT_TRUE(IsAddressText(address)) << address;
    for (const char* other : {"256.1.1.1", "1.2.3", "1.2.3.4.5", "1.2.3.4 ", "1..2.3", "0001.2.3.4", "",
                              "1:2:3:4:5:6:7", "1:2:3:4:5:6:7:8:9", "1::2::3", "1:::2", ":1:2", "1:2:3:4:5:6:7:",
                              "12345::1", "g::1", "<html>", "1:2:3:4:5:6:7::8", "99999999999999999999.1.1.1"})
        EXPECT_FALSE(IsAddressText(other)) << other;
}

}  // namespace
