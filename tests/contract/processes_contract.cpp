#include <algorithm>

#include "contract/contract.h"
#include "platform/machine.h"
#include "platform/wmi.h"

namespace {

using ProcessesContract = ContractTest;

// Exit code of a started process; waits ten seconds at most.
uint32_t CodeAtEnd(uint32_t id, uint32_t access = pc::processQueryInformation) {
    pc::Process process;
    EXPECT_TRUE(pc::OpenProcessById(id, access, process));
    uint32_t code = pc::stillActive;
    for (int i = 0; i < 1000 && code == pc::stillActive; ++i) {
        EXPECT_TRUE(pc::GetExitCode(process, code));
        if (code == pc::stillActive) pc::SleepFor(10);
    }
    return code;
}

bool IsListed(uint32_t id) {
    auto processes = pc::ListProcesses();
    return std::any_of(processes.begin(), processes.end(), [id](const auto& process) { return process.id == id; });
}

TEST_F(ProcessesContract, AProgramStartsAndTellsItsExitCode) {
    uint32_t id = pc::StartProcess(pc::SystemFolder() + "\\cmd.exe /c exit 5", 0);
    ASSERT_NE(0u, id);
    EXPECT_EQ(5u, CodeAtEnd(id));
    id = pc::StartProcess("cmd /c exit 7", 0);
    ASSERT_NE(0u, id);
    EXPECT_EQ(7u, CodeAtEnd(id));
}

TEST_F(ProcessesContract, WhatCannotStartSaysWhy) {
    Write("no program.txt");
    EXPECT_EQ(0u, pc::StartProcess("brevanta_no_such_program.exe /x", 0));
    EXPECT_EQ(2u, pc::LastError());
    EXPECT_EQ(0u, pc::StartProcess("brevanta_no_such_program", 0));
    EXPECT_EQ(2u, pc::LastError());
    EXPECT_EQ(0u, pc::StartProcess("\"" + In("none.exe") + "\" /x", 0));
    EXPECT_EQ(2u, pc::LastError());
    EXPECT_EQ(0u, pc::StartProcess("\"" + In("none\\none.exe") + "\"", 0));
    EXPECT_EQ(0u, pc::StartProcess("\"" + In("no program.txt") + "\"", 0));
    EXPECT_EQ(193u, pc::LastError());
}

TEST_F(ProcessesContract, APathWithBlanksStartsWithAndWithoutQuotes) {
    ASSERT_TRUE(pc::MakeFolder(In("a b")));
    ASSERT_TRUE(pc::CopyOneFile(pc::SystemFolder() + "\\cmd.exe", In("a b\\my cmd.exe"), true));
    EXPECT_EQ(3u, CodeAtEnd(pc::StartProcess("\"" + In("a b\\my cmd.exe") + "\" /c exit 3", 0)));
    EXPECT_EQ(4u, CodeAtEnd(pc::StartProcess(In("a b\\my cmd.exe") + " /c exit 4", 0)));
    EXPECT_EQ(6u, CodeAtEnd(pc::StartProcess("\"" + In("a b\\my cmd") + "\" /c exit 6", 0)));
}

TEST_F(ProcessesContract, TerminationNeedsItsRight) {
    uint32_t id = pc::StartProcess(place.longCommand, 0);
    ASSERT_NE(0u, id);
    EXPECT_TRUE(IsListed(id));
    pc::Process reader, killer;
    uint32_t code = 0;
    ASSERT_TRUE(pc::OpenProcessById(id, pc::processQueryInformation, reader));
    ASSERT_TRUE(pc::OpenProcessById(id, pc::processTerminate, killer));
    EXPECT_TRUE(pc::GetExitCode(reader, code));
    EXPECT_EQ(pc::stillActive, code);
    EXPECT_CODE(5, pc::GetExitCode(killer, code));
    EXPECT_CODE(5, pc::Terminate(reader, 9));
    EXPECT_TRUE(pc::Terminate(killer, 9));
    for (int i = 0; i < 500 && pc::GetExitCode(reader, code) && code == pc::stillActive; ++i) pc::SleepFor(10);
    EXPECT_EQ(9u, code);
    EXPECT_FALSE(IsListed(id));
    killer.Close();
    reader.Close();
    EXPECT_CODE(6, pc::GetExitCode(reader, code));
}

TEST_F(ProcessesContract, KillingByNameFindsAllCases) {
    ASSERT_NE(0u, pc::StartProcess(place.longCommand, 0));
    std::string name = pc::ListProcesses().back().name;
    EXPECT_EQ(0, pc::WmiTerminateProcesses("brevanta_no_such_program.exe"));
    EXPECT_EQ(1, pc::WmiTerminateProcesses(name)) << name;
}

TEST_F(ProcessesContract, ProcessesAreKnownByTheirIdentifier) {
    EXPECT_TRUE(IsListed(pc::OwnProcessId()));
    pc::Process process;
    EXPECT_CODE(87, pc::OpenProcessById(0xFFFFFFF0, pc::processQueryInformation, process));
    EXPECT_EQ(0u, process.value);
    EXPECT_TRUE(pc::OpenProcessById(pc::OwnProcessId(), pc::processAllAccess, process));
}

TEST_F(ProcessesContract, TimePassesInSleep) {
    uint32_t before = pc::TickCount();
    pc::SleepFor(120);
    EXPECT_GE(pc::TickCount() - before, 100u);
    pc::PumpMessages();
}

TEST_F(ProcessesContract, PrivilegesByName) {
    bool changed = true;
    EXPECT_EQ(pc::PrivilegeStep::done, pc::SetPrivilege("SeDebugPrivilege", true));
    EXPECT_EQ(pc::PrivilegeStep::done, pc::SetPrivilege("SeDebugPrivilege", true, &changed));
    EXPECT_FALSE(changed);
    EXPECT_EQ(pc::PrivilegeStep::done, pc::SetPrivilege("SeDebugPrivilege", false));
    EXPECT_EQ(pc::PrivilegeStep::lookup, pc::SetPrivilege("No such privilege", true));
}

TEST_F(ProcessesContract, TheShellOpensWhatIsThere) {
    EXPECT_LE(pc::ShellOpen(In("none.txt"), "", "", 0), 32);
    EXPECT_LE(pc::ShellOpen("brevanta_no_such_program.exe", "", "", 0), 32);
    EXPECT_GT(pc::ShellOpen(pc::SystemFolder() + "\\cmd.exe", "open", "/c exit 0", 0), 32);
    Write("without extension");
    EXPECT_LE(pc::ShellOpen(In("without extension"), "", "", 0), 32);
}

}  // namespace
