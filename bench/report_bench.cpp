// The report's walk through the event logs grows with the records and no faster: 100,000 against ten times 10,000.
#include <stdlib.h>

#include <chrono>
#include <vector>

#include "mail/pc_report.h"
#include "panel/panel_forms.h"
#include "pc/simulated_pc.h"
#include "real_disk.h"
#include "system/program_state.h"
#include "system/trace.h"
#include "table.h"

namespace {

// Milliseconds of a report, of which every second record is one to write.
double ReportTime(int records) {
    SimulatedPc::UseWindows(Windows::sevenX64);
    State() = {};
    ForgetForms();
    InitPaths(true, true);
    for (int i = 0; i < records; ++i)
        Pc().AddWmiRow("root\\cimv2", "Win32_NTLogEvent",
                       {{"Logfile", "Application"},
                        {"Type", i % 2 ? "Error" : "Information"},
                        {"EventCode", 7},
                        {"SourceName", "disk"},
                        {"Message", "The device has a bad block."},
                        {"TimeGenerated", "20260102120000.000000-000"}});
    Form& panel = LoadForm(frmMain);
    auto begin = std::chrono::steady_clock::now();
    GatherInfo(panel);
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

}  // namespace

int main() {
    char folder[] = "/tmp/report_bench.XXXXXX";
    if (!mkdtemp(folder)) return 1;
    diskRoot = folder;
    std::vector<double> many, few;
    for (int run = 0; run < 5; ++run) {
        few.push_back(ReportTime(10'000) * 10);
        many.push_back(ReportTime(100'000));
    }
    Head();
    Row("report, 100,000 records; 10,000 ten times", Median(many), Median(few), 1.3);
    std::string clean = "rm -rf " + diskRoot;
    return system(clean.c_str());
}
