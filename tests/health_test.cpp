// The health display: each item's texts, thresholds and states, and the whole refresh.

#include "panel/health.h"

#include <functional>

#include "panel/external_ip.h"
#include "panel_test.h"

namespace {

constexpr double gigabyte = 1024.0 * 1024 * 1024;

// The panel's controls without its handlers, so that each item is measured alone.
const FormDefinition probe{"frmProbe", "", 10000, 6000, Border::fixed, frmMain.controls, [](Form&) {}};

// What the client sees of an item: text and state.
std::string Shown(Form& form, const char* name) {
    Control* label = form.Find(name);
    const char* state = label->Colour() == colourWarning     ? (label->Bold() ? "warning" : "red")
                        : label->Colour() == colourHighlight ? "notice"
                                                             : "normal";
    return label->Text() + " [" + state + "]";
}

class HealthTest : public PanelTest {
protected:
    Form& Start(Windows windows = Windows::sevenX64) {
        Prepare({}, windows);
        return LoadForm(probe);
    }
    // Runs one item; its answer must go with the state that it shows.
    std::string Measure(Form& form, bool (*item)(Form&), const char* label) {
        bool fault = item(form);
        std::string shown = Shown(form, label);
        EXPECT_EQ(fault, shown.ends_with("[warning]") || shown.ends_with("[red]")) << shown;
        return shown;
    }
};

using Preparation = std::function<void()>;

Preparation Memory(uint64_t megabytes) {
    return [=] { Pc().memory = megabytes << 20; };
}
Preparation Disk(double total, double free) {
    return [=] { Pc().SetDisk("C:", total, free); };
}
Preparation Pack(uint16_t number) {
    return [=] { Pc().version.servicePackMajor = number; };
}
Preparation Number(const char* key, const char* name, uint32_t number) {
    return [=] { Pc().SetNumber(std::string("HKLM\\") + key, name, number); };
}
Preparation NoKey(const char* key) {
    return [=] { Pc().RemoveKey(std::string("HKLM\\") + key); };
}

constexpr const char* updates = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\WindowsUpdate\\Auto Update";
constexpr const char* policies = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Policies\\System";
constexpr const char* restore = "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\SystemRestore";
constexpr const char* service = "SYSTEM\\CurrentControlSet\\Services\\srservice";

TEST_F(HealthTest, Thresholds) {
    using enum Windows;
    struct Item {
        bool (*measure)(Form&);
        const char* label;
    };
    const Item ram{GetRAM, "lblRAM"}, disk{GetHDD, "lblHDD"}, update{GetAutoUpdates, "lblAutoUpdates"},
        uac{GetUAC, "lblUAC"}, points{GetSystemRestore, "lblSystemRestore"}, os{GetOS, "lblOS"};
    const struct {
        Item item;
        Windows windows;
        Preparation prepare;
        const char* ending;  // of text and state
    } rows[] = {
        {ram, seven, Memory(1700), "1,700 MB [normal]"},
        {ram, vista, Memory(1699), "1,699 MB  Consider an Upgrade! [warning]"},
        {ram, tenX64, Memory(16384), "16,384 MB [normal]"},
        {ram, xp, Memory(900), "900 MB [normal]"},
        {ram, xp, Memory(899), "899 MB  Consider an Upgrade! [warning]"},
        {ram, server2003, Memory(512), "512 MB  Consider an Upgrade! [warning]"},
        {ram, w2000, Memory(64), "64 MB [normal]"},
        {ram, seven, Memory(0), "Error [normal]"},
        {disk, seven, Disk(100 * gigabyte, 10 * gigabyte), "100 GB, 10 GB Available [normal]"},
        {disk, xp, Disk(100 * gigabyte, 10 * gigabyte - 1), "100 GB, 10 GB Available  Consider an Upgrade! [warning]"},
        {disk, seven, Disk(2000.5 * gigabyte, 1234.56 * gigabyte), "2,000.5 GB, 1,234.56 GB Available [normal]"},
        {disk, seven, [] { Pc().SetEnv("systemroot", "Q:\\Windows"); }, "--- [normal]"},
        {update, seven, Number(updates, "AUOptions", 4), "Enabled [normal]"},
        {update, seven, Number(updates, "AUOptions", 3), "Enabled (Not Automatic) [notice]"},
        {update, xp, Number(updates, "AUOptions", 2), "Enabled (Not Automatic) [notice]"},
        {update, seven, Number(updates, "AUOptions", 1), "Disabled [warning]"},
        {update, xp, NoKey(updates), "Disabled [warning]"},
        {uac, xp, Number(policies, "EnableLUA", 0), "N/A [normal]"},
        {uac, vista, Number(policies, "EnableLUA", 0), "UAC Disabled [warning]"},
        {uac, seven, Number(policies, "EnableLUA", 1), "UAC Enabled [normal]"},
        {uac, seven, Number(policies, "EnableLUA", 2), "--- [normal]"},
        {uac, seven, NoKey(policies), "--- [normal]"},
        {points, vista, NoKey(restore), "Enabled [normal]"},
        {points, vista, Number(restore, "RPSessionInterval", 0), "Disabled [warning]"},
        {points, xp, Number(restore, "DisableSR", 0), "Enabled [normal]"},
        {points, xp, Number(service, "Start", 4), "Disabled [warning]"},
        {points, xp, Number(restore, "DisableSR", 1), "Disabled [warning]"},
        // Also a higher service pack is demanded down to the named one.
        {os, xp, Pack(3), " (32 bitSP3)  [normal]"},
        {os, xp, Pack(2), " (32 bitSP2)  - Update to SP3 [warning]"},
        {os, xp, Pack(4), " (32 bitSP4)  - Update to SP3 [warning]"},
        {os, vistaX64, Pack(1), " (64 bitSP1)  - Update to SP2 [warning]"},
        {os, vista, Pack(2), " (32 bitSP2)  [normal]"},
        {os, sevenX64, Pack(0), " (64 bit)  [normal]"},
        {os, server2003, Pack(1), " (32 bitSP1)  - Update to SP2 [warning]"},
        {os, server2008, Pack(1), " (32 bitSP1)  - Update to SP2 [warning]"},
        {os, server2008R2, Pack(0), " (64 bit)  [normal]"},
        {os, w2000, Pack(2), " (32 bitSP2)  [normal]"},
        {os, tenX64, Pack(0), " (64 bit)  [normal]"},
    };
    for (const auto& row : rows) {
        Form& form = Start(row.windows);
        row.prepare();
        std::string shown = Measure(form, row.item.measure, row.item.label);
        EXPECT_TRUE(shown.ends_with(row.ending)) << shown << " instead of " << row.ending;
        std::string tip = form.Find(row.item.label)->ToolTip();  // of the system alone, without the demand
        EXPECT_TRUE(row.item.measure == GetOS ? !tip.empty() && shown.starts_with(tip) && tip.ends_with(") ")
                                              : tip.empty());
    }
}

TEST_F(HealthTest, SecurityProducts) {
    struct Product {
        const char* name;
        int state;
    };
    const struct {
        std::vector<Product> products;
        const char* antivirus;
        const char* firewall;
    } rows[] = {
        {{{"A", 0x41000}}, "A (Enabled, Up to Date) [normal]", "A (Enabled) [normal]"},
        {{{"A", 0x1010}}, "A (Enabled, Outdated!) [warning]", "A (Enabled) [normal]"},
        {{{"A", 0x60000}}, "A (Disabled, Up to Date) [warning]", "A (Disabled) [red]"},
        {{{"A", 0x10}}, "A (Disabled, Outdated!) [warning]", "A (Disabled) [red]"},
        {{}, "No A/V Software! [warning]", "Windows Firewall [normal]"},
        {{{"", 0x41000}}, "No A/V Software! [warning]", "Windows Firewall [normal]"},
        {{{"A", 0x1000}, {"B", 0}},
         "A (Enabled, Up to Date) / B (Disabled, Up to Date) [warning]",
         "A (Enabled) / B (Disabled) [red]"},
        {{{"A", 0x1000}, {"A", 0}}, "A (Enabled, Up to Date) [warning]", "A (Enabled) [red]"},
    };
    for (const auto& row : rows) {
        Form& form = Start();
        for (const char* kind : {"AntiVirusProduct", "FirewallProduct"})
            for (const Product& product : row.products)
                Pc().AddWmiRow("root\\SecurityCenter2", kind,
                               {{"displayName", product.name}, {"productState", product.state}});
        for (int refresh = 0; refresh < 2; ++refresh) {  // the second doubles nothing
            EXPECT_EQ(Measure(form, GetAV, "lblAV"), row.antivirus);
            EXPECT_EQ(Measure(form, GetFirewall, "lblFirewall"), row.firewall);
        }
        bool several = form.Text("lblAV").find(" / ") != std::string::npos;
        EXPECT_EQ(form.Find("lblAV")->ToolTip(), several ? form.Text("lblAV") : "");
    }
    for (bool good : {true, false}) {
        Form& form = Start(Windows::xp);
        Pc().AddWmiRow("root\\SecurityCenter", "AntiVirusProduct",
                       {{"displayName", "A"}, {"onAccessScanningEnabled", true}, {"productUpToDate", good}});
        Pc().AddWmiRow("root\\SecurityCenter", "FirewallProduct", {{"displayName", "A"}, {"enabled", good}});
        EXPECT_EQ(Measure(form, GetAV, "lblAV"),
                  good ? "A (Enabled, Up to Date) [normal]" : "A (Enabled, Outdated!) [warning]");
        EXPECT_EQ(Measure(form, GetFirewall, "lblFirewall"), good ? "A (Enabled) [normal]" : "A (Disabled!) [red]");
    }
}

TEST_F(HealthTest, FirstAddressOfTheFirstAdapterDecides) {
    struct Adapter {
        std::vector<std::string> addresses;
        bool dhcp;
    };
    const Adapter none{{}, true};
    const struct {
        std::vector<Adapter> adapters;
        const char* shown;
    } rows[] = {
        {{none, none, none, none, none, none, none, none, none, {{"10.0.0.9"}, true}}, "10.0.0.9 [normal]"},
        {{{{"192.168.1.7", "fe80::1"}, true}}, "192.168.1.7 [normal]"},
        {{{{"10.0.0.9"}, false}}, "10.0.0.9 [notice]"},
        {{{{}, true}, {{"10.0.0.9"}, true}, {{"10.0.0.10"}, false}}, "10.0.0.9 [normal]"},
        {{{{"0.0.0.0"}, false}, {{"10.0.0.9"}, false}}, "--- [normal]"},
        {{}, "--- [normal]"},
    };
    for (const auto& row : rows) {
        Form& form = Start();
        Pc().ClearWmi("root\\cimv2", "Win32_NetworkAdapterConfiguration");
        for (const Adapter& adapter : row.adapters)
            Pc().AddWmiRow("root\\cimv2", "Win32_NetworkAdapterConfiguration",
                           {{"IPEnabled", true},
                            {"IPAddress", adapter.addresses.empty() ? WmiCell() : WmiCell(adapter.addresses)},
                            {"DHCPEnabled", adapter.dhcp},
                            {"Caption", "[7] Adapter"}});
        GetInternalIP(form);
        EXPECT_EQ(Shown(form, "lblIntIP"), row.shown);
        EXPECT_EQ(form.Text("lblIntIPLabel"), "Internal IP");
        EXPECT_EQ(Pc().Traced("Object variable or With block variable not set"), form.Text("lblIntIP") != "---");
        EXPECT_EQ(Pc().Traced("Health\\GetInternalIP:"), form.Text("lblIntIP") != "---");
        EXPECT_EQ(State().bHasStaticIP, std::string(row.shown).ends_with("[notice]"));
        EXPECT_EQ(form.Find("lblIntIP")->ToolTip(), form.Text("lblIntIP") == "---" ? "" : "[7] Adapter");
    }
    Form& form = Start();
    Pc().FailWmi("root\\cimv2", "no rights");
    GetInternalIP(form);
    EXPECT_TRUE(Pc().Traced("Health\\GetInternalIP: no rights"));
}

// A PC without a fault.
void MakeHealthy() {
    Disk(100 * gigabyte, 50 * gigabyte)();
    Pc().AddWmiRow("root\\SecurityCenter2", "AntiVirusProduct", {{"displayName", "A"}, {"productState", 0x41000}});
    Number(updates, "AUOptions", 4)();
    Number(policies, "EnableLUA", 1)();
}

TEST_F(HealthTest, BallSumsUp) {
    Form& form = Start();
    MakeHealthy();
    GetHealth(form);
    EXPECT_EQ(form.Find("imgBall")->Picture(), "#green");
    EXPECT_EQ(Shown(form, "lblInternet"), "Connected [normal]");
    Number(updates, "AUOptions", 3)();
    GetHealth(form);
    EXPECT_EQ(form.Find("imgBall")->Picture(), "#green") << "a notice is no fault";
    Pc().online = false;
    GetHealth(form);
    EXPECT_EQ(form.Find("imgBall")->Picture(), "#red");
    EXPECT_EQ(Shown(form, "lblInternet"), "Disconnected [warning]");
    EXPECT_TRUE(Pc().Traced("Completed GetAV") && Pc().Traced("Completed GetFirewall"));
}

TEST_F(HealthTest, LastMaintenanceComesFromTheRegistryFirst) {
    Form& form = Start();
    GetHealth(form);
    EXPECT_EQ(form.Text("lblLastMaint"), "N/A");
    Pc().SetIni(settingsFile, "General", "LastMaintenance", "3/4/2026 10:00:00 AM");
    GetHealth(form);
    EXPECT_TRUE(form.Text("lblLastMaint").starts_with("03/04/2026")) << form.Text("lblLastMaint");
    Pc().SetText("HKLM\\Software\\Talvenmoor\\Maintenance", "LastRun", "5/6/2026 11:00:00 AM");
    GetHealth(form);
    EXPECT_TRUE(form.Text("lblLastMaint").starts_with("05/06/2026")) << form.Text("lblLastMaint");
}

TEST_F(HealthTest, SickPcIsMeasuredToTheEnd) {
    Form& form = Start();
    MakeHealthy();
    for (const char* space : {"root\\cimv2", "root\\SecurityCenter2"}) Pc().HangWmi(space);
    uint32_t before = Pc().ticks;
    GetHealth(form);
    EXPECT_LE(Pc().ticks - before, 3 * wmiTimeout);
    EXPECT_EQ(Shown(form, "lblAV"), "No A/V Software! [warning]");
    EXPECT_EQ(Shown(form, "lblFirewall"), "Windows Firewall [normal]");
    EXPECT_EQ(form.Text("lblUAC"), "UAC Enabled");
    for (const char* key : {updates, restore}) Pc().HideKey(std::string("HKLM\\") + key, false);
    GetHealth(form);
    EXPECT_EQ(Shown(form, "lblAutoUpdates"), "Disabled [warning]");
    EXPECT_EQ(form.Text("lblSystemRestore"), "Enabled");
}

TEST_F(HealthTest, LanguageFileReplacesTexts) {
    Form& form = Start();
    MakeHealthy();
    Memory(512)();
    Pc().SetIni(languageFile, "Misc", "Enabled", "Ein");
    Pc().SetIni(languageFile, "Misc", "Available", "");
    Pc().SetIni(languageFile, "MainForm", "ConsiderUpgrade", "Aufrüsten!");
    GetHealth(form);
    EXPECT_EQ(form.Text("lblRAM"), "512 MB  Aufrüsten!");
    EXPECT_EQ(form.Text("lblAV"), "A (Ein, Up to Date)");
    EXPECT_EQ(form.Text("lblUAC"), "UAC Ein");
    EXPECT_TRUE(form.Text("lblHDD").ends_with(" GB Available")) << "an empty entry counts as absent";
}

TEST_F(HealthTest, ExternalAddressIsAwaited) {
    Form& form = Start();
    Pc().online = false;
    GetHealth(form);
    EXPECT_FALSE(form.Find("Timer1")->Enabled());
    EXPECT_TRUE(Pc().journal.empty()) << "nothing is asked offline";

    Pc().online = true;
    Pc().AddResource("CUSTOM", "GETEXTERNALIP", "MZ companion");
    GetHealth(form);
    EXPECT_LINES(Pc().journal,
                 {"write C:\\Panel\\GetExternalIP.exe (12 bytes)", "run hidden C:\\Panel\\GetExternalIP.exe"});
    EXPECT_EQ(form.Find("Timer1")->Interval(), 1000);
    TakeExternalAddress(form);
    EXPECT_EQ(form.Text("lblExtIP"), "---");
    EXPECT_TRUE(form.Find("Timer1")->Enabled());

    Pc().Pass(1000);
    Pc().AddFile("C:\\Panel\\External.IP", "[IP]\r\nExternal=203.0.113.7\r\n");
    Pc().journal.clear();
    TakeExternalAddress(form);
    EXPECT_EQ(form.Text("lblExtIP"), "203.0.113.7");
    EXPECT_FALSE(form.Find("Timer1")->Enabled());
    EXPECT_LINES(Pc().journal, {"delete C:\\Panel\\External.IP", "delete C:\\Panel\\GetExternalIP.exe"});

    Pc().FillDiskAfter(5);
    RequestExternalAddress(form);
    EXPECT_FALSE(Pc().Exists("C:\\Panel\\GetExternalIP.exe")) << "no piece of a program";
}

}  // namespace
