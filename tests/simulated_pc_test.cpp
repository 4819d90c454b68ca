// The simulated PC's own promises: what fails, and what a user can do.
#include "controls/form_host.h"
#include "pc/pc_test.h"

namespace {

using SimulatedPcTest = PcTest;

TEST_F(SimulatedPcTest, EachCallCanFailAndEachChangeCanBeTheLast) {
    auto work = [] {
        bool done = pc::WriteWholeFile("C:\\Panel\\new", "0123456789");
        done = pc::MovePath("C:\\Panel\\new", "C:\\Panel\\final", true) && done;
        return done;
    };
    Pc().FailCall(2);  // the write, behind the opening
    EXPECT_FALSE(work());
    EXPECT_EQ("01234", Pc().FileText("C:\\Panel\\final"));
    Pc().StopAt(2);
    EXPECT_THROW(work(), PlugPulled);
    EXPECT_EQ("01234", Pc().FileText("C:\\Panel\\new"));
    EXPECT_FALSE(pc::RemoveFile("C:\\Panel\\new"));  // nothing changes without power
    Pc().RestartProgram();
    EXPECT_TRUE(work());
    EXPECT_EQ("0123456789", Pc().FileText("C:\\Panel\\final"));
    EXPECT_FALSE(Pc().Exists("C:\\Panel\\new"));
}

constexpr ControlSpec askControls[] = {{Kind::button, "cmdHidden", "", {0, 0, 900, 300}, "", hidden}};
const FormDefinition frmAsk = {"frmAsk", "Ask", 1000, 1000, Border::dialog, askControls, [](Form&) {}};

TEST_F(SimulatedPcTest, WhatAUserCannotDoIsComplainedOf) {
    static std::string complaints;
    complaints.clear();
    complain = [](const std::string& text) { complaints += text + "\n"; };
    ShowFormModal(frmAsk);  // nobody there
    EXPECT_FALSE(IsFormLoaded("frmAsk"));
    ShowForm(frmAsk);
    Click("frmAsk", "cmdHidden");
    Click("frmAsk", "cmdNone");
    Pc().Answer(pc::answerYes);
    pc::ShowMessage("OK only");
    EXPECT_EQ(
        "modal form frmAsk came up without a script\n"
        "click on frmAsk.cmdHidden: the control is hidden\n"
        "click on frmAsk.cmdNone: the control is missing\n"
        "the box has no button for the answer 6: OK only\n",
        complaints);
}

}  // namespace
