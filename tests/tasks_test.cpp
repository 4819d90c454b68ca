#include "maintenance/restore_points.h"
#include "maintenance/scheduled_tasks.h"
#include "pc/pc_test.h"
#include "system/dates.h"
#include "system/program_state.h"
#include "tools/maintenance_check/reminder.h"

namespace {

using Lines = std::vector<std::string>;
constexpr const char* ini = "C:\\Panel\\Brevanta.ini";

class TasksTest : public PcTest {
protected:
    TasksTest() { Use(Windows::sevenX64); }
    static void Use(Windows windows) {
        SimulatedPc::UseWindows(windows);
        State() = {};
        State().settingsFile = ini;
        Pc().SetIni(ini, "Branding", "AppName", "Acme");
    }
    static Lines Scheduler(const Lines& arguments) {
        Lines lines;
        for (const std::string& text : arguments) lines.push_back("run hidden schtasks.exe " + text);
        return lines;
    }
};

}  // namespace

TEST_F(TasksTest, UpdateTasksAreDeletedAndThenMadeAsAsked) {
    const Lines deletions = {"/delete /f /tn \"Brevanta App Update\"", "/delete /f /tn \"Brevanta Config Update\""};
    const std::string app = "/tn \"Brevanta App Update\" /tr \"\\\"C:\\Panel\\Brevanta.exe\\\" /updateonly";
    const std::string config = "/tn \"Brevanta Config Update\" /tr \"\\\"C:\\Panel\\Brevanta.exe\\\" /updateconfig";
    const std::string noon = "/create /ru system /sc WEEKLY /d MON /st 12:00:00 ";
    const std::string quarter = "/create /ru system /sc WEEKLY /d MON /st 12:15:00 ";
    struct {
        Windows windows;
        const char *app, *config;
        Lines created;
    } cases[] = {
        {Windows::seven, "1", "1", {noon + "/rl highest /f " + app, quarter + "/rl highest /f " + config}},
        {Windows::xp, "1", "1", {noon + app, quarter + config}},
        {Windows::xp, "", "1", {quarter + config}},
        {Windows::seven, "2", "yes", {}},
    };
    for (const auto& c : cases) {
        Use(c.windows);
        Pc().SetIni(ini, "ScheduledTasks", "UpdateApp", c.app);
        Pc().SetIni(ini, "ScheduledTasks", "UpdateConfig", c.config);
        SetUpdateTasks();
        Lines expected = deletions;
        expected.insert(expected.end(), c.created.begin(), c.created.end());
        EXPECT_LINES(Pc().Journal("run"), Scheduler(expected));
    }
}

TEST_F(TasksTest, RestorePointTasksFollowTheirSchedules) {
    const std::string name = "/tn \"Acme - System Restore Point 1\"",
                      run = name + " /tr \"\\\"C:\\Panel\\Brevanta.exe\\\" /rp1";
    struct {
        Windows windows;
        const char *enable, *frequency, *time;
        std::string created;
    } cases[] = {
        {Windows::seven, "1", "DaiLy", "10:00:00", "/create /ru system /sc DAILY /st 10:00:00 /rl highest /f " + run},
        {Windows::xp, "1", "Daily", "10:00:00", "/create /ru system /sc DAILY /st 10:00:00 " + run},
        {Windows::seven, "1", "Wed", "", "/create /ru system /sc WEEKLY /d WED /st  /rl highest /f " + run},
        {Windows::xp, "1", "Sun", "23:59:00", "/create /ru system /sc WEEKLY /d SUN /st 23:59:00 " + run},
        {Windows::seven, "0", "Sun", "23:59:00", ""},
    };
    for (const auto& c : cases) {
        Use(c.windows);
        Pc().SetIni(ini, "CustomRP1", "Enable", c.enable);
        Pc().SetIni(ini, "CustomRP1", "Freq", c.frequency);
        Pc().SetIni(ini, "CustomRP1", "Time", c.time);
        SetRPSchedules();
        Lines expected = {"/delete /f /tn \"Acme - System Restore Point 0\"", "/delete /f " + name};
        if (!c.created.empty()) expected.push_back(c.created);
        expected.push_back("/delete /f /tn \"Acme - System Restore Point 2\"");
        EXPECT_LINES(Pc().Journal("run"), Scheduler(expected));
    }
}

TEST_F(TasksTest, TheReminderStandsInTheRunKey) {
    const std::string key = "HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
    for (const char* enabled : {"1", "0", "1", ""}) {
        Pc().SetIni(ini, "Maint", "MaintCheckEnabled", enabled);
        SetMaintCheck();
        EXPECT_EQ(Pc().TextOf(key, "Brevanta Maintenance Check"),
                  std::string(enabled) == "1" ? "\"C:\\Panel\\BrevantaMCStub.exe\"" : "");
    }
}

TEST_F(TasksTest, SystemRestoreCountsAsOnUnlessTheRegistryDeniesIt) {
    const std::string restore = "HKLM\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\SystemRestore";
    struct {
        Windows windows;
        int session, start, disabled;  // -1 absent
        bool on;
    } cases[] = {
        {Windows::seven, -1, 4, 1, true}, {Windows::seven, 1, -1, -1, true}, {Windows::seven, 0, 2, 0, false},
        {Windows::ten, 2, 2, 0, false},   {Windows::xp, 0, -1, -1, true},    {Windows::xp, 1, 4, 0, false},
        {Windows::xp, 1, 2, 1, false},    {Windows::xp, 1, 2, 0, true},      {Windows::xp, 1, 3, 1, false},
    };
    for (const auto& c : cases) {
        Use(c.windows);
        auto set = [](const std::string& key, const char* name, int value) {
            Pc().AddKey(key);
            if (value >= 0) Pc().SetNumber(key, name, static_cast<uint32_t>(value));
        };
        Pc().RemoveKey(restore);
        Pc().RemoveKey("HKLM\\SYSTEM\\CurrentControlSet\\Services\\srservice");
        set(restore, "RPSessionInterval", c.session);
        set(restore, "DisableSR", c.disabled);
        set("HKLM\\SYSTEM\\CurrentControlSet\\Services\\srservice", "Start", c.start);
        EXPECT_EQ(IsSystemRestoreEnabled(), c.on) << &c - cases;
    }
}

TEST_F(TasksTest, TheTraceTellsWhatBecameOfARestorePoint) {
    CreateRestorePoint("Before");
    EXPECT_LINES(Pc().Journal("wmi"), {"wmi restore point \"Before\" 0 100 -> 0"});
    EXPECT_TRUE(Pc().Traced("System Restore Point:  0"));
    EXPECT_FALSE(Pc().Traced("made none"));
    Pc().AddWmiRow("root\\default", "SystemRestore", {{"SequenceNumber", 50}});  // what comes now does not come last
    CreateRestorePoint("Too soon");
    EXPECT_TRUE(Pc().Traced("the system answered success but made none"));
    Pc().restorePointResult = 1058;
    CreateRestorePoint("Off");
    EXPECT_TRUE(Pc().Traced("System Restore Point:  1058"));
    Pc().FailWmi("root\\default", "no such name space");
    CreateRestorePoint("None");
    EXPECT_TRUE(Pc().Traced("no such name space"));
}

TEST_F(TasksTest, ScheduledPointsAreLeftToTheCompanion) {
    Pc().AddResource("CUSTOM", "CREATESRP", "tool");
    Pc().SetIni(ini, "CustomRP0", "Name", "Every day");
    CreateScheduledRestorePoint(0);
    CreateScheduledRestorePoint(1);
    EXPECT_LINES(Pc().Journal("run"), {"run C:\\Panel\\CreateSRP.exe Every day", "run C:\\Panel\\CreateSRP.exe"});
    EXPECT_EQ(Pc().FileText("C:\\Panel\\CreateSRP.exe"), "tool");
    Pc().AddFile("C:\\Panel\\CreateSRP.exe", "other");
    ExtractCreateSRP();
    EXPECT_EQ(Pc().FileText("C:\\Panel\\CreateSRP.exe"), "other");
}

TEST_F(TasksTest, TheReminderIsDueAfterMoreDaysThanAllowed) {
    struct {
        int order;  // month, day, year first
        const char *last, *limit;
        bool due;
    } cases[] = {
        {0, "10/23/2026 10:15:30 AM", "30", true},
        {0, "10/24/2026 10:15:30 AM", "30", false},
        {1, "23.10.2026 10:15:30", "30", true},
        {1, "24.10.2026", "30", false},
        {2, "2026-10-23 10:15:30", "30", true},
        {2, "2026-10-24", "30", false},
        {0, "11/23/2026", "0", false},
        {0, "11/22/2026", "0", true},
        {0, "12/31/2026", "30", false},  // the clock was put back
        {0, "", "30", true},
        {0, "garbage", "30", true},
        {0, "1/1/2020", "", false},
        {0, "1/1/2020", "soon", false},
    };
    for (const auto& c : cases) {
        Use(Windows::seven);
        Pc().SetClock(2026, 11, 23, 12);
        Pc().dateOrder = c.order;
        Pc().SetIni(ini, "Maint", "MaintReminderDays", c.limit);
        Pc().SetIni(ini, "General", "LastMaintenance", c.last);
        EXPECT_EQ(IsReminderDue(), c.due) << c.last << " " << c.limit;
    }
    Pc().SetText("HKLM\\Software\\Talvenmoor\\Maintenance", "LastRun", "11/13/2026 09:00:00 AM");
    EXPECT_EQ(DaysSinceMaintenance(), 10);
}
