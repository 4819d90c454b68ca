// How the settings dress the two faces of the panel.

#include "panel/panel_layout.h"

#include <set>

#include "panel_test.h"

namespace {

class PanelLayoutTest : public PanelTest {};

std::vector<std::string> SideBarOf(Form& form) {
    std::vector<std::string> lines;
    for (const SideBarGroup& group : form.Find("SideBar")->Groups()) {
        lines.push_back(group.heading + (group.subHeading.empty() ? "" : " (" + group.subHeading + ")") + ":");
        for (const SideBarItem& item : group.items) lines.back() += " " + item.caption + item.detail + ";";
    }
    return lines;
}

bool Overlap(const Box& a, const Box& b) {
    return a.left < b.left + b.width && b.left < a.left + a.width && a.top < b.top + b.height &&
           b.top < a.top + a.height;
}

// Every shown control lies inside its container and on no neighbour.
void ExpectTidy(Form& form) {
    std::vector<Control*> shown;
    for (const auto& control : form.Controls())
        if (control->GetKind() != Kind::timer && control->Visible()) shown.push_back(control.get());
    for (Control* one : shown) {
        Box place = one->Place(), outer{0, 0, form.Width(), form.Height()};
        if (Control* container = form.Find(one->Container())) outer = container->Place();
        EXPECT_TRUE(place.left >= 0 && place.top >= 0 && place.left + place.width <= outer.width &&
                    place.top + place.height <= outer.height)
            << one->Name();
        for (Control* other : shown)
            EXPECT_FALSE(one != other && one->Container() == other->Container() && Overlap(place, other->Place()))
                << one->Name() << " " << other->Name();
    }
}

TEST_F(PanelLayoutTest, TextsAndButtons) {
    const struct {
        std::vector<Key> keys;
        const char* control;
        const char* text;
        bool shown;
    } rows[] = {
        {{}, "lblTel", "", true},
        {{{"Branding", "PhoneCaption", "Call us:"}}, "lblTel", "Call us:", true},
        {{}, "lblPhone", "555-555-5555", true},
        {{}, "cmdFix", "Fix Internet", true},
        {{{"Branding", "ShowFixButton", "no"}}, "cmdFix", "Fix Internet", true},
        {{{"Branding", "ShowFixButton", "0"}}, "cmdFix", "Fix Internet", false},
        {{{"Branding", "FixButtonCaption", "\" \""}}, "cmdFix", " ", true},  // a blank is a text
        {{{"Branding", "MaintButtonCaption", "Tidy"}}, "cmdMaint", "Tidy", true},
        {{{"Branding", "RemoteSupportButtonCaption", "Help"}}, "cmdStartSupport", "Help", true},
        {{{"Branding", "EmailButtonCaption", "Write"}}, "cmdEmailSupport", "Write", true},
        {{{"Branding", "PhoneNumber", "1 & 2"}}, "lblPhone", "1 & 2", true},
        {{{"Branding", "ShowSupportAppButton", "0"}}, "cmdStartSupport", "Start Support Session", false},
        {{{"Branding", "ShowEmailButton", "0"}}, "cmdEmailSupport", "Email Support", false},
        {{}, "cmdCustom", "Custom Button", false},
        {{{"CustomButton", "ShowButton", "1"}, {"CustomButton", "ButtonCaption", "Backup"}},
         "cmdCustom",
         "Backup",
         true},
        {{}, "lblCustomLarge", "Custom text, optional hyperlink", true},
        {{{"Branding", "ShowLargeCustomText", "0"}}, "lblCustomLarge", "Custom text, optional hyperlink", false},
        {{{"Branding", "LargeCustomText", "Sale"}}, "lblCustomLarge", "Sale", true},
        {{}, "lblCustomSmall", "Custom text can go here, whatever you want", true},
        {{{"Branding", "SmallCustomText", "Hello"}, {"Branding", "ShowSmallCustomText", "0"}},
         "lblCustomSmall",
         "Hello",
         false},
        {{}, "picSRP", "", false},
    };
    for (const auto& row : rows)
        for (const FormDefinition* face : {&frmMain, &frmMainNew}) {
            Form& form = Show(*face, row.keys);
            if (!form.Find(row.control)) continue;
            EXPECT_EQ(form.Text(row.control), row.text);
            EXPECT_EQ(form.Find(row.control)->Visible(), row.shown) << row.control;
        }
    Show(frmMain);
    EXPECT_EQ(State().strSupportEmail, "support@technician.example");
    EXPECT_EQ(State().remoteSupportTarget, "C:\\Panel\\RemoteSupportApp.exe");
    Show(frmMainNew, {{"Branding", "SupportEmail", "a@b.example"}, {"Branding", "RemoteSupportApp", "Tool.exe"}});
    EXPECT_EQ(State().strSupportEmail + " " + State().remoteSupportTarget, "a@b.example Tool.exe");
    for (const char* name : {"lblTel", "lblPhone"})
        EXPECT_FALSE(Show(frmMainNew, {{"Branding", "ShowPhoneAndCaption", "0"}}).Find(name)->Visible()) << name;
    Form& branded = Show(frmMainNew, {{"Branding", "LogoToWebsite", "yes"},
                                      {"Branding", "LogoWebsite", "http://shop.example/"},
                                      {"Branding", "NewUITextAlign", "RIGHT"}});
    EXPECT_TRUE(State().logoIsLink) << "what is no number counts as on";
    EXPECT_EQ(branded.Find("AlphaImgCtl1")->ToolTip(), "http://shop.example/");
    for (const char* name : {"lblTel", "lblPhone", "lblCustomSmall", "lblCustomLarge"})
        EXPECT_EQ(branded.Find(name)->Align(), uint32_t{alignRight}) << name;
}

TEST_F(PanelLayoutTest, TitleBar) {
    const Key name{"Branding", "AppName", "Harbour PC Care"}, version{"Branding", "ShowVersion", "1"};
    EXPECT_EQ(Show(frmMain).Caption(), "Talvenmoor  -  Support Control Panel");
    EXPECT_EQ(Show(frmMainNew, {name, version}).Caption(), "Harbour PC Care  -  Support Control Panel    v4.2");
    Prepare({version});
    Pc().programVersion = {4, 2, 1};
    Pc().SetIni(languageFile, "TitleBar", "SupportControlPanel", "Hilfe");
    EXPECT_EQ(ShowForm(frmMain).Caption(), "Talvenmoor  -  Hilfe    v4.2.1");
}

TEST_F(PanelLayoutTest, LogoBoxes) {
    const Key standard{"Branding", "UseStdLogo", "1"}, noStandard{"Branding", "UseStdLogo", "off"},
        rectangle{"Branding", "UseRectLogo", "1"}, longer{"Branding", "UseLargeRectLogo", "1"},
        large{"Branding", "UseLargeLogo", "1"};
    const struct {
        std::vector<Key> keys;
        std::vector<int> classic, modern;  // top, left, width, height
    } rows[] = {
        {{standard, rectangle, large}, {360, 360, 1815, 1575}, {360, 3720, 1815, 1575}},
        {{rectangle}, {60, 60, 2355, 1335}, {480, 3360, 2455, 1335}},
        {{noStandard, rectangle, longer}, {60, 60, 2355, 1335}, {360, 3360, 3960, 1455}},
        {{rectangle, longer, large}, {120, 120, 2295, 2055}, {60, 3360, 2295, 2055}},
        {{longer}, {360, 360, 1815, 1575}, {360, 3360, 2400, 1575}},  // the design box
    };
    auto place = [](Form& form) {
        Box box = form.Find("AlphaImgCtl1")->Place();
        return std::vector<int>{box.top, box.left, box.width, box.height};
    };
    for (const auto& row : rows) {
        EXPECT_EQ(place(Show(frmMain, row.keys)), row.classic);
        EXPECT_EQ(place(Show(frmMainNew, row.keys)), row.modern);
    }
    EXPECT_TRUE(Show(frmMain, {{"Branding", "StretchLogo", "1"}}).Find("AlphaImgCtl1")->Stretch());
    Prepare();
    Pc().AddFile("C:\\Panel\\supportlogo.jpg");
    EXPECT_EQ(ShowForm(frmMain).Find("AlphaImgCtl1")->Picture(), "C:\\Panel\\supportlogo.jpg") << "first format wins";
}

TEST_F(PanelLayoutTest, SideBarItems) {
    const std::string support = "Get Support: Email Support; Start Support Session;",
                      tasks = "PC Tasks: Run Maintenance; Fix Internet;";
    const struct {
        std::vector<Key> keys;
        std::vector<std::string> groups;
    } rows[] = {
        {{}, {support, tasks}},
        {{{"Branding", "ShowFixButton", "0"}, {"Branding", "ShowSupportAppButton", "0"}},
         {"Get Support: Email Support;", tasks}},
        {{{"EmailConfig", "OfferTwoOptions", "1"}, {"EmailConfig", "SecondaryOptionCaption", "Ticket"}},
         {"Get Support: Email Support; Ticket; Start Support Session;", tasks}},
        {{{"EmailConfig", "OfferTwoOptions", "1"}, {"Branding", "ShowEmailButton", "0"}},
         {"Get Support: Start Support Session;", tasks}},
        {{{"CustomRP", "ShowOption", "1"},
          {"CustomButton", "ShowButton", "1"},
          {"CustomButton2", "ShowButton", "1"},
          {"CustomButton4", "ShowButton", "1"},
          {"CustomButton4", "ButtonCaption", "Last"}},
         {support,
          "PC Tasks: System Restore Points; Run Maintenance; Fix Internet; Custom Button; Custom Button 2; Last;"}},
        {{{"Branding", "ShowDetails", "1"}, {"Branding", "DetailsText", "one paragraph"}},
         {support, tasks, "Come Visit Us! (Store Hours:): one paragraph;"}},
        {{{"Branding", "ShowDetails", "1"},
          {"Branding", "DetailsHeading", "Hours"},
          {"Branding", "DetailsSubHeading", "This week"}},
         {support, tasks, "Hours (This week): \r\nMon-Fri 9am - 6pm\r\n\r\nSat. 10am - 4pm;"}},
        {{{"Branding", "SupportHeading", "A"},
          {"EmailConfig", "OfferTwoOptions", "1"},
          {"EmailConfig", "PrimaryOptionCaption", "B"},
          {"Branding", "RemoteSupportButtonCaption", "C"},
          {"Branding", "PCTasksHeading", "D"},
          {"CustomRP", "ShowOption", "1"},
          {"CustomRP", "ButtonCaption", "E"},
          {"Branding", "MaintButtonCaption", "F"},
          {"Branding", "FixButtonCaption", "G"}},
         {"A: B; Email Support; C;", "D: E; F; G;"}},
        {{{"Branding", "EmailButtonCaption", "H"}}, {"Get Support: H; Start Support Session;", tasks}},
    };
    for (const auto& row : rows) EXPECT_LINES(SideBarOf(Show(frmMainNew, row.keys)), row.groups);
}

TEST_F(PanelLayoutTest, LanguageFileReplacesCaptions) {
    const struct {
        const char *section, *key, *control, *builtIn;
    } rows[] = {
        {"MainForm", "YourPCHealth", "frameHealth", "Your PC Health"},
        {"MainForm", "LastMaintenance", "Label6", "Last Maintenance:"},
        {"MainForm", "StorageSpace", "Label4", "Storage Space:"},
        {"MainForm", "RAM", "Label5", "RAM (Memory):"},
        {"MainForm", "WinVer", "Label3", "Windows Version:"},
        {"MainForm", "AntiVirus", "Label2", "Antivirus Installed:"},
        {"MainForm", "Firewall", "Label8", "Firewall Installed:"},
        {"MainForm", "AutomaticUpdates", "Label10", "Automatic Updates:"},
        {"MainForm", "SystemRestore", "Label1", "System Restore:"},
        {"MainForm", "UAC", "Label9", "User Acct. Control:"},
        {"MainForm", "InternetAccess", "Label7", "Internet Access:"},
        {"MainForm", "InternalIP", "lblIntIPLabel", "Internal IP"},
        {"MainForm", "ExternalIP", "Label11", "External IP"},
        {"Misc", "Close", "cmdClose", "Close"},
    };
    for (const FormDefinition* face : {&frmMain, &frmMainNew})
        for (bool replaced : {false, true}) {
            Prepare();
            for (const auto& row : rows) Pc().SetIni(languageFile, row.section, row.key, replaced ? row.control : "");
            Form& form = ShowForm(*face);
            for (const auto& row : rows) {
                Control* control = form.Find(row.control);  // the new face has no Close button
                EXPECT_TRUE(!control || control->Text() == (replaced ? row.control : row.builtIn)) << row.key;
            }
            Pc().SetIni(languageFile, "MainForm", "Firewall", "Installierte Brandschutzmauer:");
            ApplyLanguageCaptions(form);
            EXPECT_EQ(form.Find("Label8")->Place().width, 2700) << "the values give way to a long label";
            ExpectTidy(form);
        }
}

TEST_F(PanelLayoutTest, WindowIsInSightBeforeThePcIsMeasured) {
    for (const FormDefinition* face : {&frmMain, &frmMainNew}) {
        Prepare();
        bool looked = false;
        Pc().AtPump(1, [&] {
            looked = true;
            EXPECT_TRUE(IsShown(face->name, "lblRAM"));
            EXPECT_EQ(TextOn(face->name, "lblRAM"), "---");
            EXPECT_EQ(TextOn(face->name, "lblPhone"), "555-555-5555");
            EXPECT_EQ(TextOn(face->name, "txtStatus"), "Gathering Information...");
        });
        Form& form = ShowForm(*face);
        EXPECT_TRUE(looked);
        EXPECT_EQ(form.Text("lblRAM"), "4,096 MB");
        EXPECT_EQ(form.Text("txtStatus"), "");
    }
}

TEST_F(PanelLayoutTest, NothingCoversAnything) {
    for (const FormDefinition* face : {&frmMain, &frmMainNew})
        for (const char* logo : {"UseStdLogo", "UseRectLogo", "UseLargeLogo", "none"})
            ExpectTidy(Show(
                *face,
                {{"CustomButton", "ShowButton", "1"}, {"Branding", logo, "1"}, {"Branding", "UseLargeRectLogo", "1"}}));
    for (const FormDefinition* face : {&frmMain, &frmMainNew}) {
        Prepare();
        Pc().DeleteTree(logoFile);
        ExpectTidy(ShowForm(*face));
    }
    EXPECT_LE(frmMainNew.width / 15, 1024 - 20);
    EXPECT_LE(frmMainNew.height / 15, 768 - 80);
}

TEST_F(PanelLayoutTest, RestorePointPage) {
    Form& form = Show(frmMainNew, {{"CustomRP", "ShowOption", "1"},
                                   {"CustomRP0", "Freq", "Mon"},
                                   {"CustomRP0", "Time", "23:15:00"},
                                   {"CustomRP0", "Name", "Weekly"},
                                   {"CustomRP0", "Enable", "1"},
                                   {"CustomRP1", "Enable", "many"}});
    ClickItem("frmMainNew", "SideBar", 2, 1);
    EXPECT_TRUE(form.Find("picSRP")->Visible());
    Type("frmMainNew", "txtRPTime(2)", "quarter past");
    Pc().journal.clear();
    Click("frmMainNew", "cmdSaveRP");
    std::vector<std::string> expected;
    for (const char* entry : {"0] Freq=Mon", "1] Freq=Daily", "2] Freq=Daily", "0] Time=23:15:00", "1] Time=10:00:00",
                              "2] Time=quarter past", "0] Name=Weekly", "1] Name=", "2] Name=", "0] Enable=1",
                              "1] Enable=0", "2] Enable=0"})
        expected.push_back(std::string("ini ") + settingsFile + " [CustomRP" + entry);
    EXPECT_LINES(Pc().Journal("ini"), expected);
    EXPECT_FALSE(Pc().Journal("run hidden schtasks.exe").empty()) << "the tasks follow the schedules";
    EXPECT_TRUE(Pc().journal.back().starts_with("show \"Schedule Saved!\"")) << Pc().journal.back();
    EXPECT_FALSE(form.Find("picSRP")->Visible());

    ClickItem("frmMainNew", "SideBar", 2, 1);
    EXPECT_EQ(form.Text("comboRPDay(0)") + form.Text("txtRPTime(0)") + form.Text("txtRPName(0)"), "Mon23:15:00Weekly");
    Pc().AddFile("C:\\Windows\\System32\\rstrui.exe");
    State().bHandle64BitRedirect = true;
    Pc().journal.clear();
    Click("frmMainNew", "cmdOpenSR");
    Click("frmMainNew", "Command1");
    EXPECT_LINES(Pc().journal, {"run C:\\Windows\\system32\\rstrui.exe",
                                "wmi restore point \"User Created Restore Point\" 0 100 -> 0",
                                "show \"System Restore Point Created!\" (0) -> 1"});
    EXPECT_EQ(form.Text("txtStatus"), "Idle...");
    Click("frmMainNew", "Label12");
    EXPECT_FALSE(form.Find("picSRP")->Visible());
}

}  // namespace
