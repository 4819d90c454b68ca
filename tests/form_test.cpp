// Forms and controls as a model, over the headless host.
#include "controls/form.h"

#include <memory>

#include "controls/form_resizer.h"
#include "controls/panel_links.h"
#include "controls/sidebar.h"
#include "pc/pc_test.h"
#include "system/processes.h"
#include "system/trace.h"

namespace {

const ControlSpec sampleControls[] = {
    {Kind::label, "lblTitle", "Title", {100, 100, 1000, 300}},
    {Kind::button, "cmdGo", "Go", {3000, 2500, 900, 400}, "", moveRight | moveDown | defaultButton},
    {Kind::picture, "picPage", "", {0, 400, 4000, 2000}, "", growWidth | growHeight},
    {Kind::textBox, "txtName", "", {100, 100, 3800, 300}, "picPage", growWidth},
    {Kind::button, "cmdOnPage", "Deep", {3000, 1500, 900, 400}, "picPage", moveRight | moveDown},
    {Kind::frame, "frameFixed", "Fixed", {0, 0, 2000, 1000}, "picPage"},
    {Kind::label, "lblInFixed", "", {0, 0, 500, 300}, "frameFixed", growWidth | moveDown},
    {Kind::option, "optA", "A", {}, "", 0, 1},
    {Kind::option, "optB", "B", {}, "", 0, 1},
    {Kind::option, "optOther", "Other group", {}, "", 0, 2},
    {Kind::option, "optOnPage", "Other container", {}, "picPage", 0, 1},
    {Kind::checkBox, "chkOn", "On", {}},
    {Kind::combo, "comboDay", "Daily", {}, "", 0, 0, "Daily|Mon|Tue"},
    {Kind::combo, "comboFixed", "Weekly", {}, "", dropList, 0, "Daily|Mon"},
    {Kind::listView, "ListView1", "", {}, "", checkRows, 0, "Name|Data"},
    {Kind::progress, "pb", "", {}},
    {Kind::sideBar, "SideBar", "", {}},
    {Kind::timer, "Timer1", "", {}, "", disabled},
};

const FormDefinition frmSample = {"frmSample", "Sample", 4000, 3000, Border::sizable, sampleControls, nullptr};

std::string PlaceText(const Form& form, const char* control) {
    const Box& box = form.Find(control)->Place();
    return std::to_string(box.left) + " " + std::to_string(box.top) + " " + std::to_string(box.width) + " " +
           std::to_string(box.height);
}

class FormTest : public PcTest {};

TEST_F(FormTest, OptionsExcludeEachOtherWithinGroupAndContainer) {
    Form& form = ShowForm(frmSample);
    for (const char* option : {"optA", "optOther", "optOnPage"}) form.SetValue(option, 1);
    Click("frmSample", "optB");
    EXPECT_FALSE(form.Checked("optA"));
    for (const char* option : {"optB", "optOther", "optOnPage"}) EXPECT_TRUE(form.Checked(option)) << option;
}

TEST_F(FormTest, CheckBoxTogglesBeforeItsHandlersRun) {
    Form& form = ShowForm(frmSample);
    std::string seen;
    form.OnClick("chkOn", [&] { seen += form.Checked("chkOn") ? "click on " : "click off "; });
    form.Find("chkOn")->onChange = [&] { seen += "changed "; };
    Click("frmSample", "chkOn");
    Click("frmSample", "CHKON");
    EXPECT_EQ(seen, "click on changed click off changed ");
}

TEST_F(FormTest, WhatCannotBeClickedIsNotClicked) {
    Form& form = ShowForm(frmSample);
    int clicks = 0;
    form.OnClick("cmdOnPage", [&] { clicks++; });
    form.SetVisible("picPage", false);
    form.Find("cmdOnPage")->UserClicked();
    form.SetVisible("picPage", true);
    form.SetEnabled("cmdOnPage", false);
    form.Find("cmdOnPage")->UserClicked();
    EXPECT_EQ(clicks, 0);
    form.SetEnabled("cmdOnPage", true);
    form.Find("cmdOnPage")->UserClicked();
    EXPECT_EQ(clicks, 1);
}

TEST_F(FormTest, MissingControlIsPassedOver) {
    Form& form = LoadForm(frmSample);
    form.SetText("cmdNone", "x");
    form.SetVisible("cmdNone", false);
    form.SetValue("cmdNone", 1);
    form.OnClick("cmdNone", [] {});
    EXPECT_EQ(form.Text("cmdNone"), "");
    EXPECT_FALSE(form.Checked("cmdNone"));
    EXPECT_EQ(form.Find("txtname"), form.Find("txtName"));
}

TEST_F(FormTest, ComboKeepsTextAndChoiceTogether) {
    Form& form = ShowForm(frmSample);
    Control &day = *form.Find("comboDay"), &fixed = *form.Find("comboFixed");
    EXPECT_EQ(day.Selected(), 0);
    Type("frmSample", "comboDay", "Tue");
    EXPECT_EQ(day.Selected(), 2);
    Choose("frmSample", "comboDay", 1);
    EXPECT_EQ(day.Text(), "Mon");
    day.SetText("Fortnightly");
    EXPECT_EQ(day.Selected(), -1);
    day.SetItems({"Daily", "Fortnightly"});
    EXPECT_EQ(day.Selected(), 1);
    // A value from elsewhere is kept, so that saving it again loses nothing.
    EXPECT_EQ(fixed.Selected(), -1);
    EXPECT_EQ(fixed.Text(), "Weekly");
    fixed.AddItem("Weekly");
    EXPECT_EQ(fixed.Selected(), 2);
}

TEST_F(FormTest, RowsAreCheckedAndChosenByTheUser) {
    Form& form = ShowForm(frmSample);
    Control& list = *form.Find("ListView1");
    EXPECT_EQ(list.Columns(), (std::vector<std::string>{"Name", "Data"}));
    list.SetRows({{{"a"}}, {{"b"}, true, true}});
    EXPECT_EQ(list.Selected(), 1);
    CheckRow("frmSample", "ListView1", 0, true);
    Choose("frmSample", "ListView1", 0);
    list.CheckRow(7, true);
    EXPECT_TRUE(list.Rows()[0].checked && list.Rows()[0].selected);
    EXPECT_TRUE(list.Rows()[1].checked && !list.Rows()[1].selected);
}

TEST_F(FormTest, ProgressStaysWithinItsRange) {
    Control& bar = *LoadForm(frmSample).Find("pb");
    bar.SetValue(250);
    EXPECT_EQ(bar.Value(), 100);
    bar.SetMaximum(0);
    EXPECT_EQ(bar.Value(), 1);
    bar.SetValue(-5);
    EXPECT_EQ(bar.Value(), 0);
}

TEST_F(FormTest, HandlerMayUnloadItsOwnForm) {
    auto kept = std::make_shared<std::string>("alive");
    std::weak_ptr<std::string> watch = kept;
    {
        Form& form = ShowForm(frmSample);
        form.OnClick("cmdGo", [&form, kept = std::move(kept)] {
            UnloadForm(form);
            EXPECT_FALSE(IsFormLoaded("frmSample"));
            form.SetText("lblTitle", *kept);
            EXPECT_EQ(form.Text("lblTitle"), "alive");
        });
    }
    Click("frmSample", "cmdGo");
    { HandlerScope nextEvent; }
    EXPECT_TRUE(watch.expired());
}

TEST_F(FormTest, FormThatUnloadsItselfWhileLoadingIsNeverShown) {
    static const FormDefinition frmGone = {"frmGone",
                                           "Gone",
                                           100,
                                           100,
                                           Border::fixed,
                                           {},
                                           [](Form& form) { form.onLoad = [&form] { UnloadForm(form); }; }};
    Form& form = LoadForm(frmGone);
    EXPECT_EQ(form.Caption(), "Gone");
    ShowForm(frmGone);
    ShowFormModal(frmGone);
    EXPECT_TRUE(Pc().shownForms.empty());
    EXPECT_FALSE(IsFormLoaded("frmGone"));
}

TEST_F(FormTest, RefusedUnloadLeavesTheForm) {
    Form& form = ShowForm(frmSample);
    std::vector<bool> asked;
    int unloaded = 0;
    form.onUnload = [&] { unloaded++; };
    form.onQueryUnload = [&](bool fromUser) {
        asked.push_back(fromUser);
        return !fromUser;
    };
    EXPECT_FALSE(CloseByUser("frmSample"));
    EXPECT_TRUE(form.Visible());
    EXPECT_TRUE(UnloadForm(form));
    EXPECT_EQ(asked, (std::vector<bool>{true, false}));
    EXPECT_EQ(unloaded, 1);
}

TEST_F(FormTest, FormMayEndItselfWhileTheUserIsAsked) {
    Form& form = ShowForm(frmSample);
    int unloaded = 0;
    form.onUnload = [&] {
        unloaded++;
        UnloadForm(form);
    };
    form.onQueryUnload = [&form](bool fromUser) {
        if (fromUser) UnloadForm(form);  // its work came to its end meanwhile
        return !fromUser;
    };
    EXPECT_TRUE(CloseByUser("frmSample"));
    EXPECT_EQ(unloaded, 1);
    EXPECT_FALSE(IsFormLoaded("frmSample"));
}

TEST_F(FormTest, ModalFormEndsWhenHiddenOrUnloaded) {
    OnModal("frmSample", [](Form& form) {
        EXPECT_TRUE(form.Modal());
        form.SetVisible(false);
    });
    OnModal("frmSample", [](Form& form) { UnloadForm(form); });
    ShowFormModal(frmSample);
    Form* form = FindForm("frmSample");
    ASSERT_NE(form, nullptr);
    EXPECT_FALSE(form->Modal());
    ShowFormModal(frmSample);
    EXPECT_FALSE(IsFormLoaded("frmSample"));
}

TEST_F(FormTest, UnloadingAllButOnePassesOverWhoRefusesAndWhoIsGone) {
    static const FormDefinition frmSecond = {"frmSecond", "", 100, 100, Border::fixed, {}, nullptr};
    static const FormDefinition frmThird = {"frmThird", "", 100, 100, Border::fixed, {}, nullptr};
    static const FormDefinition frmFourth = {"frmFourth", "", 100, 100, Border::fixed, {}, nullptr};
    Form& keep = LoadForm(frmSample);
    LoadForm(frmSecond).onUnload = [] { UnloadForm(*FindForm("frmThird")); };
    LoadForm(frmThird);
    LoadForm(frmFourth).onQueryUnload = [](bool) { return false; };
    UnloadAllFormsBut(&keep);
    EXPECT_EQ(LoadedForms(), (std::vector<Form*>{&keep, FindForm("frmFourth")}));
}

TEST_F(FormTest, TimerIsNotEnteredWhileItsHandlerRuns) {
    Form& form = ShowForm(frmSample);
    Control& timer = *form.Find("Timer1");
    int ticks = 0;
    timer.onTimer = [&] {
        ticks++;
        Pc().Pass(1000);
    };
    timer.SetInterval(100);
    Pc().Pass(300);
    EXPECT_EQ(ticks, 0) << "it is off";
    timer.SetEnabled(true);
    Pc().Pass(150);
    EXPECT_EQ(ticks, 1);
}

TEST_F(FormTest, ControlsFollowTheEdgesOfWhatTheyLieIn) {
    Form& form = LoadForm(frmSample);
    form.SetText("lblTitle", "moved");
    form.Find("cmdGo")->SetPlace({2900, 2400, 900, 400});
    form.Resized(5000, 3500);
    EXPECT_EQ(PlaceText(form, "lblTitle"), "100 100 1000 300");
    EXPECT_EQ(PlaceText(form, "cmdGo"), "3900 2900 900 400");
    EXPECT_EQ(PlaceText(form, "picPage"), "0 400 5000 2500");
    EXPECT_EQ(PlaceText(form, "txtName"), "100 100 4800 300");
    EXPECT_EQ(PlaceText(form, "cmdOnPage"), "4000 2000 900 400");
    EXPECT_EQ(PlaceText(form, "lblInFixed"), "0 0 500 300") << "its frame does not grow";
    form.Resized(4000, 3000);
    EXPECT_EQ(PlaceText(form, "cmdOnPage"), "3000 1500 900 400");
}

TEST_F(FormTest, ResizerScalesFromTheDesign) {
    static const ControlSpec controls[] = {{Kind::label, "lblOne", "", {100, 50, 333, 101}},
                                           {Kind::label, "lblTwo", "", {-60, 0, 1000, 500}}};
    static const FormDefinition frmScaled = {"frmScaled", "", 1000, 500, Border::sizable, controls, nullptr};
    Form& form = LoadForm(frmScaled);
    FormResizer resizer;
    resizer.ResizeControls();  // without a form
    resizer.InitResizeArray(form);
    form.onResize = [&] { resizer.ResizeControls(); };
    form.Resized(1500, 750);
    EXPECT_EQ(PlaceText(form, "lblOne"), "150 75 500 152");
    EXPECT_EQ(PlaceText(form, "lblTwo"), "-90 0 1500 750");
    resizer.SetControlProperties("LBLTWO", {0, 10, 100, 20});
    resizer.SetControlProperties("lblNone", {});
    form.Resized(333, 167);
    form.Resized(2000, 1000);
    EXPECT_EQ(PlaceText(form, "lblTwo"), "0 20 200 40");
    form.Resized(1000, 500);
    EXPECT_EQ(PlaceText(form, "lblOne"), "100 50 333 101") << "back at the design, nothing is lost by rounding";
}

TEST_F(FormTest, SideBarCountsGroupsAndItemsFromOne) {
    Form& form = ShowForm(frmSample);
    XPexplorerbar bar(*form.Find("SideBar"));
    EXPECT_EQ(bar.AddNormalItem("Get Support"), 1);
    EXPECT_EQ(bar.AddSpecialItem("PC Tasks"), 2);
    EXPECT_EQ(bar.AddDetailItem("Visit us", "Hours:", "9 to 6"), 3);
    EXPECT_EQ(bar.AddSubItem(2, "Run Maintenance"), 1);
    EXPECT_EQ(bar.AddSubItem(1, "Email"), 1);
    EXPECT_EQ(bar.AddSubItem(2, "Fix"), 2);
    for (int missing : {0, -1, 4}) EXPECT_EQ(bar.AddSubItem(missing, "lost"), 0) << missing;
    std::string clicked;
    form.Find("SideBar")->onItemClick = [&](int group, int item) {
        clicked = std::to_string(group) + "." + std::to_string(item);
    };
    ClickItem("frmSample", "SideBar", 2, 2);
    EXPECT_EQ(clicked, "2.2");
    const auto& groups = form.Find("SideBar")->Groups();
    EXPECT_TRUE(groups[1].special && !groups[0].special);
    EXPECT_EQ(groups[2].items[0].detail, "9 to 6");
    bar.Collapse(2);
    bar.Collapse(9);
    EXPECT_FALSE(groups[1].expanded);
    bar.Expand(2);
    EXPECT_TRUE(groups[1].expanded);
    bar.Clear();
    EXPECT_TRUE(form.Find("SideBar")->Groups().empty());
}

TEST_F(FormTest, IconIsTheTechniciansOrTheProgramsOwn) {
    Form& form = LoadForm(frmSample);
    SetFormIcon(form);
    EXPECT_EQ(form.Icon(), "a1");
    Pc().AddFile(GetAppPath() + "applogo.ico", "icon");
    SetFormIcon(form);
    EXPECT_EQ(form.Icon(), GetAppPath() + "applogo.ico");
}

}  // namespace
