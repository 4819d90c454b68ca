// The simulated PC's own promises: faults, time, the journal, what a user can do.
#include "controls/form_host.h"
#include "pc/pc_test.h"

namespace {

using SimulatedPcTest = PcTest;

TEST_F(SimulatedPcTest, TheJournalHoldsEveryEffectInItsOrder) {
    Pc().AddFile("C:\\Users\\Client\\old.txt", "12345");
    Pc().Answer(pc::answerYes);
    pc::Key key;
    pc::GetFileInfo("C:\\none");
    EXPECT_NE(0u, pc::StartProcess("cmd /c netsh winsock reset", 0));
    EXPECT_EQ(0u, pc::StartProcess("subinacl /x", 1));
    EXPECT_EQ(0, pc::CreateKey(pc::localMachine, "Software\\Talvenmoor", pc::keySetValue, key));
    EXPECT_EQ(0, pc::SetValue(key, "Run", pc::typeDword, std::string("\x02\0\0\0", 4)));
    EXPECT_TRUE(pc::RemoveFile("C:\\Users\\Client\\old.txt"));
    EXPECT_FALSE(pc::RemoveFile("C:\\Users\\Client\\old.txt"));
    EXPECT_TRUE(pc::WriteWholeFile("C:\\Windows\\System32\\new.txt", "abc"));
    EXPECT_EQ(pc::answerYes, pc::ShowMessage("Sure?", "", pc::styleYesNo));
    EXPECT_TRUE(pc::WriteProfileText("C:\\Panel\\X.ini", "General", "Key", "Value"));
    EXPECT_JOURNAL({"run hidden cmd /c netsh winsock reset", "run subinacl /x -> error 2",
                    "make key HKLM\\Software\\Wow6432Node\\Talvenmoor",
                    "set HKLM\\Software\\Wow6432Node\\Talvenmoor\\Run = dword 2", "delete C:\\Users\\Client\\old.txt",
                    "write C:\\Windows\\SysWOW64\\new.txt (3 bytes)", "show \"Sure?\" (4) -> 6",
                    "ini C:\\Panel\\X.ini [General] Key=Value"});
    EXPECT_LINES(Pc().Journal("run"), {"run hidden cmd /c netsh winsock reset", "run subinacl /x -> error 2"});
}

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

TEST_F(SimulatedPcTest, TimePassesInSleepOnly) {
    std::string seen;
    Pc().SetClock(2026, 12, 31, 23, 59, 59);
    Pc().Program("cmd", {.exitCode = 5, .runs = 300, .effect = [&](SimulatedPc&) { seen += "end "; }});
    Pc().Later(200, [&] { seen += "later "; });
    Pc().AtPump(2, [&] { seen += "pump "; });
    uint32_t start = pc::TickCount(), code = 0;
    pc::Process process;
    ASSERT_TRUE(pc::OpenProcessById(pc::StartProcess("cmd", 1), pc::processQueryInformation, process));
    for (pc::GetExitCode(process, code); code == pc::stillActive; pc::GetExitCode(process, code)) {
        pc::SleepFor(100);
        pc::PumpMessages();
    }
    EXPECT_EQ("later pump end ", seen);
    EXPECT_EQ(5u, code);
    EXPECT_EQ(300u, pc::TickCount() - start);
    pc::SleepFor(700);
    EXPECT_EQ(2027, pc::LocalNow().year);
    Pc().Program("ping", {.runs = Behaviour::forever});
    ASSERT_TRUE(pc::OpenProcessById(pc::StartProcess("ping", 1), pc::processQueryInformation, process));
    EXPECT_THROW(
        {
            while (pc::GetExitCode(process, code) && code == pc::stillActive) pc::SleepFor(100'000);
        },
        WaitsForever);
}

TEST_F(SimulatedPcTest, LocksLinksAndDenialsHoldUntilSomebodyOpensThem) {
    Pc().AddFile("C:\\data\\kept.txt", "kept");
    Pc().AddJunction("C:\\profile\\link", "C:\\data");
    Pc().AddFile("C:\\profile\\locked.txt");
    Pc().AddFile("C:\\profile\\denied.txt");
    Pc().Lock("C:\\profile\\locked.txt");
    Pc().Deny("C:\\profile\\denied.txt");
    Pc().Program("subinacl", {.effect = [](SimulatedPc& machine) { machine.Allow("C:\\profile\\denied.txt"); }});
    Pc().AddFile("C:\\Panel\\subinacl.exe", "MZ");
    EXPECT_TRUE(pc::GetFileInfo("C:\\profile\\link")->IsLink());
    EXPECT_TRUE(pc::GetFileInfo("C:\\profile\\link\\kept.txt"));
    EXPECT_FALSE(pc::RemoveFile("C:\\profile\\locked.txt"));
    EXPECT_EQ(32u, pc::LastError());
    EXPECT_FALSE(pc::RemoveFile("C:\\profile\\denied.txt"));
    EXPECT_EQ(5u, pc::LastError());
    EXPECT_NE(0u, pc::StartProcess("subinacl /file x", 0));
    pc::SleepFor(100);
    EXPECT_TRUE(pc::RemoveFile("C:\\profile\\denied.txt"));
    EXPECT_TRUE(pc::RemoveFolder("C:\\profile\\link"));
    EXPECT_LINES(Pc().Tree("C:\\data"), {"C:\\data\\kept.txt"});
    EXPECT_LINES(Pc().Tree("C:\\profile"), {"C:\\profile\\locked.txt"});
    EXPECT_FALSE(pc::RemoveFile(Pc().programPath));  // it runs
    EXPECT_TRUE(pc::MovePath(Pc().programPath, "C:\\Panel\\Brevanta_old.exe", false));
}

TEST_F(SimulatedPcTest, DeniedKeysOpenByTheirListOrFromOutside) {
    Pc().DenyKey("HKLM\\Software\\Owned");
    Pc().DenyKey("HKLM\\Software\\Foreign", false);
    pc::Key key;
    constexpr uint32_t access = pc::keySetValue | pc::keyWow64_64,
                       list = pc::keyReadControl | pc::keyWriteDac | pc::keyWow64_64;
    EXPECT_EQ(5, pc::OpenKey(pc::localMachine, "Software\\Owned", access, key));
    EXPECT_EQ(5, pc::OpenKey(pc::localMachine, "Software\\Foreign", access, key));
    EXPECT_EQ(5, pc::OpenKey(pc::localMachine, "Software\\Foreign", list, key));
    ASSERT_EQ(0, pc::OpenKey(pc::localMachine, "Software\\Owned", list, key));
    EXPECT_EQ(0, pc::SetKeySecurity(key, std::string("\x01\0\x04\x80", 4) + std::string(16, '\0')));  // no list
    EXPECT_EQ(0, pc::OpenKey(pc::localMachine, "Software\\Owned", access, key));
    Pc().AllowKey("HKLM\\Software\\Foreign");
    EXPECT_EQ(0, pc::OpenKey(pc::localMachine, "Software\\Foreign", access, key));
}

TEST_F(SimulatedPcTest, SystemsDifferAsTheyDo) {
    SimulatedPc& xp = SimulatedPc::UseWindows(Windows::xp);
    uintptr_t cookie;
    EXPECT_FALSE(pc::DisableRedirection(cookie));
    EXPECT_EQ("C:\\Documents and Settings\\Client", xp.Profile());
    EXPECT_EQ("", pc::Environment("ProgramFiles(x86)"));
    EXPECT_EQ("Microsoft Windows XP",
              xp.TextOf("HKLM\\Software\\Microsoft\\Windows NT\\CurrentVersion", "ProductName"));
    SimulatedPc& eleven = SimulatedPc::UseWindows(Windows::eleven);
    EXPECT_TRUE(eleven.Exists("C:\\Documents and Settings\\Client\\AppData\\Local\\Temp"));
    EXPECT_FALSE(pc::GetFileInfo("C:\\Windows\\System32\\bcdedit.exe"));
    EXPECT_TRUE(pc::GetFileInfo("C:\\Windows\\Sysnative\\bcdedit.exe"));
    EXPECT_TRUE(pc::GetFileInfo("C:\\Windows\\System32\\drivers\\etc"));
    EXPECT_TRUE(pc::DisableRedirection(cookie));
    EXPECT_TRUE(pc::GetFileInfo("C:\\Windows\\System32\\bcdedit.exe"));
    std::string error;
    auto none = [](const pc::WmiRow&) { return true; };
    EXPECT_EQ(pc::WmiStatus::done,
              pc::WmiQuery("\\root\\SecurityCenter2", "Select * from AntiVirusProduct", {}, 1000, none, error));
    eleven.HangWmi("root\\SecurityCenter2");
    EXPECT_EQ(pc::WmiStatus::timedOut,
              pc::WmiQuery("root\\SecurityCenter2", "Select * from AntiVirusProduct", {}, 1000, none, error));
}

constexpr ControlSpec askControls[] = {
    {Kind::button, "cmdOk", "OK", {0, 0, 900, 300}, "", defaultButton},
    {Kind::button, "cmdHidden", "", {0, 0, 900, 300}, "", hidden},
    {Kind::timer, "tmr", "", {}, "", disabled},
};
int ticks;
const FormDefinition frmAsk = {"frmAsk", "Ask", 1000, 1000, Border::dialog, askControls, [](Form& form) {
                                   form.OnClick("cmdOk", [&form] { form.Find("tmr")->SetEnabled(true); });
                                   form.Find("tmr")->SetInterval(1000);
                                   form.Find("tmr")->onTimer = [&form] {
                                       if (++ticks == 3) UnloadForm(form);
                                   };
                               }};

TEST_F(SimulatedPcTest, AModalFormIsUsedByItsScriptAndGoesByItself) {
    ticks = 0;
    OnModal("frmAsk", [](Form&) { PressEnter("frmAsk"); });
    uint32_t start = pc::TickCount();
    ShowFormModal(frmAsk);
    EXPECT_FALSE(IsFormLoaded("frmAsk"));
    EXPECT_EQ(3, ticks);
    EXPECT_GE(pc::TickCount() - start, 3000u);
    EXPECT_LINES(Pc().shownForms, {"frmAsk"});
}

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

TEST_F(SimulatedPcTest, EndingTheProgramLeavesNothingBehind) {
    ShowForm(frmAsk).onUnload = [] { pc::EndProcess(3); };
    EXPECT_THROW(CloseByUser("frmAsk"), ProgramEnded);
    ForgetForms();
    EXPECT_TRUE(LoadedForms().empty());
}

}  // namespace
