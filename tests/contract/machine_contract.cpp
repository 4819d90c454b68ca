#include "contract/contract.h"
#include "platform/machine.h"
#include "platform/wmi.h"

namespace {

using MachineContract = ContractTest;

bool IsFolder(const std::string& path) {
    auto info = pc::GetFileInfo(path);
    return info && info->IsFolder();
}

TEST_F(MachineContract, EnvironmentAndFolders) {
    EXPECT_EQ("", pc::Environment("brevanta_no_such_variable"));
    EXPECT_EQ(pc::Environment("WINDIR"), pc::Environment("windir"));
    for (const char* name :
         {"systemroot", "systemdrive", "userprofile", "username", "computername", "programfiles", "temp"})
        EXPECT_NE("", pc::Environment(name)) << name;
    EXPECT_EQ(place.hasTwoViews, !pc::Environment("programfiles(x86)").empty());
    for (const std::string& path : {pc::WindowsFolder(), pc::SystemFolder()}) EXPECT_TRUE(IsFolder(path)) << path;
    for (int csidl : {0x02, 0x05, 0x10, 0x19, 0x1A, 0x1C, 0x23, 0x26, 0x28}) {
        EXPECT_TRUE(IsFolder(pc::SpecialFolder(csidl))) << csidl << " " << pc::SpecialFolder(csidl);
        EXPECT_FALSE(pc::SpecialFolder(csidl).ends_with("\\"));
    }
    EXPECT_EQ("", pc::SpecialFolder(0x7F));
    EXPECT_TRUE(pc::GetFileInfo(pc::ProgramPath()).has_value());
}

TEST_F(MachineContract, CodePages) {
    EXPECT_EQ("caf\xE9 \x80", pc::ToAnsi("caf\xC3\xA9 \xE2\x82\xAC"));
    EXPECT_EQ("caf\xC3\xA9 \xE2\x82\xAC", pc::FromAnsi("caf\xE9 \x80"));
    EXPECT_EQ("?", pc::ToAnsi("\xE2\x98\x83"));
    EXPECT_EQ("", pc::ToAnsi(""));
    EXPECT_EQ(std::string("a\0b", 3), pc::FromAnsi(pc::ToAnsi(std::string("a\0b", 3))));
    EXPECT_EQ("\xC3\xA9\xE2\x94\x80", pc::FromOem("\x82\xC4"));
}

TEST_F(MachineContract, Accounts) {
    std::string sid, domain;
    EXPECT_EQ(0u, pc::LookupAccount("Everyone", sid, domain));
    EXPECT_EQ(std::string("\x01\x01\0\0\0\0\0\x01\0\0\0\0", 12), sid);
    EXPECT_EQ(0u, pc::LookupAccount("Administrators", sid, domain));
    EXPECT_EQ(16u, sid.size());
    EXPECT_EQ(0u, pc::LookupAccount(pc::Environment("username"), sid, domain));
    EXPECT_EQ(1332u, pc::LookupAccount("brevanta no such account", sid, domain));
    EXPECT_EQ("", sid);
}

TEST_F(MachineContract, TimesAndTheirText) {
    pc::ClockTime now = pc::LocalNow();
    EXPECT_GT(now.year, 2020);
    EXPECT_TRUE(now.month >= 1 && now.month <= 12 && now.day >= 1 && now.day <= 31);
    constexpr uint64_t noon = 132'538'896'000'000'000;  // 2020-12-31 12:00 UTC, a Thursday; the day at most a zone away
    pc::ClockTime then = pc::LocalFromFileTime(noon);
    EXPECT_EQ(2020, then.year);
    EXPECT_EQ(12, then.month);
    EXPECT_EQ(31, then.day);
    EXPECT_EQ(4, then.dayOfWeek);
    EXPECT_EQ(0, pc::LocalFromFileTime(~uint64_t{0}).year);
    pc::ClockTime time;
    time.year = 2026, time.month = 3, time.day = 9, time.hour = 14, time.minute = 5, time.second = 7;
    EXPECT_EQ(0, pc::ShortDateOrder());
    EXPECT_EQ("3/9/2026", pc::ShortDateText(time));
    EXPECT_EQ("2:05:07 PM", pc::LongTimeText(time));
    time.hour = 0;
    EXPECT_EQ("12:05:07 AM", pc::LongTimeText(time));
}

TEST_F(MachineContract, ProgramAndSystem) {
    EXPECT_FALSE(pc::LoadProgramResource("CUSTOM", "NO SUCH RESOURCE"));
    EXPECT_GE(pc::GetOsVersion().major, 5u);
    EXPECT_EQ(2u, pc::GetOsVersion().platform);
    EXPECT_GT(pc::TotalMemory(), 64u << 20);
}

TEST_F(MachineContract, ManagementQueries) {
    using pc::WmiStatus;
    const std::vector<std::string> properties = {"Name", "NoSuchProperty", "ProcessId"};
    std::string error;
    int rows = 0, named = 0;
    auto count = [&](const pc::WmiRow& row) {
        ++rows;
        EXPECT_EQ(3u, row.size());
        named += row[0].kind == pc::WmiValue::Kind::text && row[1].kind == pc::WmiValue::Kind::null &&
                 row[2].kind == pc::WmiValue::Kind::number;
        return true;
    };
    EXPECT_EQ(WmiStatus::done,
              pc::WmiQuery("root\\cimv2", "select * from Win32_Process", properties, 20'000, count, error));
    EXPECT_GT(rows, 1);
    EXPECT_EQ(rows, named);
    rows = 0;
    auto stop = [&](const pc::WmiRow&) { return ++rows < 2; };
    EXPECT_EQ(WmiStatus::stopped,
              pc::WmiQuery("root\\cimv2", "Select * from win32_process", properties, 20'000, stop, error));
    EXPECT_EQ(2, rows);
    std::string own = "select * from Win32_Process where ProcessId = " + std::to_string(pc::OwnProcessId());
    rows = 0;
    EXPECT_EQ(WmiStatus::done, pc::WmiQuery("root\\cimv2", own, properties, 20'000, count, error));
    EXPECT_EQ(1, rows);
    EXPECT_EQ(WmiStatus::failed, pc::WmiQuery("root\\nosuch", "select * from X", properties, 20'000, stop, error));
    EXPECT_NE("", error);
    EXPECT_EQ(WmiStatus::failed, pc::WmiQuery("root\\cimv2", "no query at all", properties, 20'000, stop, error));
}

}  // namespace
