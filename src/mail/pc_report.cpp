#include "mail/pc_report.h"

#include "controls/status_window.h"
#include "platform/files.h"
#include "platform/wmi.h"
#include "system/language.h"
#include "system/paths.h"
#include "system/text.h"
#include "system/trace.h"
#include "transfer/archives.h"

namespace {

struct HealthLine {
    const char* label;
    const char* control;
};
constexpr HealthLine healthLines[] = {
    {"Last Maintenance:  ", "lblLastMaint"},
    {"HDD Space:  ", "lblHDD"},
    {"RAM:  ", "lblRAM"},
    {"Windows:  ", "lblOS"},
    {"Anti-Virus:  ", "lblAV"},
    {"Firewall:  ", "lblFirewall"},
    {"Automatic Updates:  ", "lblAutoUpdates"},
    {"System Restore:  ", "lblSystemRestore"},
    {"UAC:  ", "lblUAC"},
    {"Local IP:  ", "lblIntIP"},
    {"External IP:  ", "lblExtIP"},
};

// The record that Windows writes at each start.
constexpr int64_t bootEvent = 6009;
// A log of very many records is walked for at most this long.
constexpr uint32_t walkMilliseconds = 5 * 60 * 1000;
constexpr const char* cimNamespace = "root\\cimv2";

std::string InfoFolder() { return GetAppPath() + "InfoTemp"; }
std::string ReportFile() { return InfoFolder() + "\\PCHealth.txt"; }

std::string LogQuery(const std::string& log) { return "Select * from Win32_NTLogEvent Where Logfile = '" + log + "'"; }

// Columns of the walk.
enum : size_t { colLog, colType, colCode, colSource, colMessage, colTime };
const std::vector<std::string> eventProperties = {"logfile",    "Type",    "EventCode",
                                                  "SourceName", "Message", "TimeGenerated"};

std::string EventRecord(const pc::WmiRow& row) {
    return "Log:  " + row[colLog].text + "\r\nType: " + UpperCase(row[colType].text) +
           "\r\nEventID:  " + row[colCode].text + "\r\nSource:  " + row[colSource].text +
           "\r\nMessage:  " + row[colMessage].text + "\r\n\r\n";
}

std::string EventRecords(const std::string& log, const std::string& bootTime) {
    std::string records, error;
    pc::WmiQuery(
        cimNamespace, LogQuery(log), eventProperties, walkMilliseconds,
        [&](const pc::WmiRow& row) {
            // Newest first: the first record older than the start ends the walk. Times compare as text.
            if (bootTime > row[colTime].text) return false;
            std::string type = LowerCase(row[colType].text);
            if (type == "error" || type == "warning") records += EventRecord(row);
            return true;
        },
        error);
    return records;
}

}  // namespace

std::string GetLastBootTime() {
    std::string time, error;
    pc::WmiQuery(
        cimNamespace, LogQuery("System"), {"EventCode", "TimeGenerated"}, walkMilliseconds,
        [&](const pc::WmiRow& row) {
            if (row[0].number != bootEvent) return true;
            time = row[1].text;
            return false;
        },
        error);
    return time;
}

void GatherInfo(Form& panelForm) {
    ShowStatusWindow(LanguageText("Misc", "GatherInfo", "Gathering Information..."), "");
    if (!DoesDirExist(InfoFolder())) MakeFolderPath(InfoFolder());
    pc::RemoveFile(ReportFile());
    std::string report;
    for (const HealthLine& line : healthLines) report += line.label + panelForm.Text(line.control) + "\r\n";
    report += "\r\nEvent Log Errors/Warnings Since Last Boot:\r\n" + std::string(42, '*') + "\r\n";
    // The line end of the last heading line, which is empty, comes with the writing.
    SaveTextToFile(ReportFile(), report, false);
    std::string bootTime = GetLastBootTime();
    for (const char* log : {"Application", "System"}) {
        std::string records = EventRecords(log, bootTime);
        // The record's own empty line closes it, so the line end that writing adds is taken off first.
        if (!records.empty()) SaveTextToFile(ReportFile(), records.substr(0, records.size() - 2), false);
    }
    UnloadStatusWindow();
}

void ZipInfo() {
    if (!DoesDirExist(InfoFolder())) return;
    std::string archive = GetAppPath() + "Info.zip";
    pc::RemoveFile(archive);
    ZipFolder(InfoFolder(), archive);
}
