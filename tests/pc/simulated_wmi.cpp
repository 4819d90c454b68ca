// Management queries over tables that the test fills.
#include "platform/wmi.h"

#include <algorithm>
#include <optional>

#include "pc/names.h"
#include "pc/simulated_programs.h"

namespace {

struct Table {
    std::vector<SimulatedPc::WmiProperties> rows;
};
struct Wmi {
    std::map<std::string, std::map<std::string, Table>> tables;  // by folded namespace and class
    std::map<std::string, std::string> failing;                  // folded namespace to error
    std::vector<std::string> hanging;                            // folded namespaces
};

// Classes that are there without rows too.
constexpr const char* cimClasses =
    " WIN32_OPERATINGSYSTEM WIN32_PROCESSOR WIN32_COMPUTERSYSTEM WIN32_LOGICALDISK WIN32_SERVICE WIN32_PROCESS "
    "WIN32_BIOS "
    "WIN32_NETWORKADAPTERCONFIGURATION WIN32_NTLOGEVENT WIN32_USERACCOUNT WIN32_PRODUCT WIN32_STARTUPCOMMAND ";

std::string Plain(const std::string& nameSpace) {
    std::string folded = Fold(nameSpace);
    return folded.starts_with('\\') ? folded.substr(1) : folded;
}

bool HasNamespace(const std::string& folded) {
    bool vista = Pc().version.major >= 6, workstation = Pc().version.productType == 1;
    if (folded == "ROOT\\CIMV2" || folded == "ROOT\\DEFAULT") return true;
    if (folded == "ROOT\\SECURITYCENTER")
        return workstation && Pc().version.build >= 2600 && Pc().version.build != 3790;
    return folded == "ROOT\\SECURITYCENTER2" && workstation && vista;
}

bool HasClass(const std::string& nameSpace, const std::string& name) {
    const auto& tables = Pc().Of<Wmi>().tables[nameSpace];
    if (tables.contains(name)) return true;
    if (nameSpace == "ROOT\\CIMV2") return std::string(cimClasses).find(" " + name + " ") != std::string::npos;
    if (nameSpace == "ROOT\\DEFAULT") return name == "SYSTEMRESTORE" && Pc().version.productType == 1;
    return name == "ANTIVIRUSPRODUCT" || name == "FIREWALLPRODUCT" || name == "ANTISPYWAREPRODUCT";
}

// Running processes are rows of their own accord.
std::vector<SimulatedPc::WmiProperties> RowsOf(const std::string& nameSpace, const std::string& name) {
    auto rows = Pc().Of<Wmi>().tables[nameSpace][name].rows;
    if (nameSpace == "ROOT\\CIMV2" && name == "WIN32_PROCESS")
        for (const auto& [id, program] : ThePrograms().processes)
            if (program.runs) rows.push_back({{"Name", program.name}, {"ProcessId", static_cast<int>(id)}});
    return rows;
}

struct Query {
    std::string wmiClass, property, value;  // of "where property = value", or empty
};

// "select ... from class [where a = b]"; more is not understood.
std::optional<Query> Parsed(const std::string& text) {
    std::string folded = Fold(text);
    size_t from = folded.find(" FROM "), where = folded.find(" WHERE "), equals = folded.find('=');
    if (!folded.starts_with("SELECT ") || from == std::string::npos) return {};
    Query query;
    query.wmiClass = folded.substr(from + 6, where - from - 6);
    if (where == std::string::npos) return query;
    if (equals == std::string::npos) return {};
    auto bare = [&](size_t begin, size_t end) {
        std::string word = folded.substr(begin, end - begin);
        std::erase_if(word, [](char character) { return character == ' ' || character == '\'' || character == '"'; });
        return word;
    };
    query.property = bare(where + 7, equals);
    query.value = bare(equals + 1, std::string::npos);
    return query;
}

pc::WmiValue Property(const SimulatedPc::WmiProperties& row, const std::string& name) {
    for (const auto& [property, value] : row)
        if (SameName(property, name)) return value;
    return {};
}

}  // namespace

WmiCell::WmiCell(std::string value) {
    kind = Kind::text;
    text = std::move(value);
}
WmiCell::WmiCell(int64_t value) {
    kind = Kind::number;
    number = value;
    text = std::to_string(value);
}
WmiCell::WmiCell(bool value) {
    kind = Kind::boolean;
    boolean = value;
    text = value ? "True" : "False";
}
WmiCell::WmiCell(std::vector<std::string> values) {
    kind = Kind::list;
    list = std::move(values);
}

void SimulatedPc::AddWmiRow(const std::string& nameSpace, const std::string& wmiClass, WmiProperties row) {
    Of<Wmi>().tables[Plain(nameSpace)][Fold(wmiClass)].rows.push_back(std::move(row));
}

void SimulatedPc::ClearWmi(const std::string& nameSpace, const std::string& wmiClass) {
    Of<Wmi>().tables[Plain(nameSpace)][Fold(wmiClass)].rows.clear();
}

void SimulatedPc::FailWmi(const std::string& nameSpace, const std::string& error) {
    Of<Wmi>().failing[Plain(nameSpace)] = error;
}

void SimulatedPc::HangWmi(const std::string& nameSpace) { Of<Wmi>().hanging.push_back(Plain(nameSpace)); }

namespace pc {

namespace {

// Whether the namespace answers at all.
WmiStatus Reach(const std::string& nameSpace, uint32_t timeoutMilliseconds, std::string& error) {
    Wmi& wmi = Pc().Of<Wmi>();
    std::string place = Plain(nameSpace);
    if (std::find(wmi.hanging.begin(), wmi.hanging.end(), place) != wmi.hanging.end()) {
        PassTime(timeoutMilliseconds);
        error = "The query took too long.";
        return WmiStatus::timedOut;
    }
    auto failing = wmi.failing.find(place);
    if (failing != wmi.failing.end())
        error = failing->second;
    else if (!HasNamespace(place) && wmi.tables[place].empty())
        error = "8004100E";
    else if (Pc().Fails(5))
        error = "80041003";
    else
        return WmiStatus::done;
    return WmiStatus::failed;
}

}  // namespace

WmiStatus WmiQuery(const std::string& nameSpace, const std::string& query, const std::vector<std::string>& properties,
                   uint32_t timeoutMilliseconds, const std::function<bool(const WmiRow&)>& each, std::string& error) {
    error.clear();
    WmiStatus reached = Reach(nameSpace, timeoutMilliseconds, error);
    if (reached != WmiStatus::done) return reached;
    std::optional<Query> parsed = Parsed(query);
    if (!parsed)
        error = "80041017";
    else if (!HasClass(Plain(nameSpace), parsed->wmiClass))
        error = "80041010";
    if (!error.empty()) return WmiStatus::failed;
    for (const auto& row : RowsOf(Plain(nameSpace), parsed->wmiClass)) {
        if (!parsed->property.empty() && !SameName(Property(row, parsed->property).text, parsed->value)) continue;
        WmiRow wanted;
        for (const std::string& property : properties) wanted.push_back(Property(row, property));
        if (!each(wanted)) return WmiStatus::stopped;
    }
    return WmiStatus::done;
}

bool WmiCreateRestorePoint(const std::string& name, int32_t type, int32_t eventType, int32_t& returned,
                           std::string& error) {
    constexpr uint32_t patience = 60'000;
    error.clear();
    if (Reach("root\\default", patience, error) != WmiStatus::done) return false;
    if (!HasClass("ROOT\\DEFAULT", "SYSTEMRESTORE"))
        error = "80041010";
    else if (Pc().ChangeFails(5))
        error = "80041003";
    if (!error.empty()) return false;
    returned = Pc().restorePointResult;
    Pc().Note("wmi restore point \"" + name + "\" " + std::to_string(type) + " " + std::to_string(eventType) + " -> " +
              std::to_string(returned));
    auto& rows = Pc().Of<Wmi>().tables["ROOT\\DEFAULT"]["SYSTEMRESTORE"].rows;
    if (returned == 0)
        rows.push_back({{"Description", name},
                        {"SequenceNumber", static_cast<int>(rows.size() + 1)},
                        {"RestorePointType", type},
                        {"EventType", eventType}});
    return true;
}

int WmiTerminateProcesses(const std::string& name) {
    std::string error;
    if (Reach("root\\cimv2", 10'000, error) != WmiStatus::done || Pc().ChangeFails(5)) return 0;
    int count = KillNamed(name);
    if (count) Pc().Note("wmi terminate " + name);
    return count;
}

}  // namespace pc
