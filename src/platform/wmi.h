// Windows Management queries, bounded in time.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace pc {

// A property of a row.
struct WmiValue {
    enum class Kind { null, text, number, boolean, list };
    Kind kind = Kind::null;
    std::string text;  // text as it is, number as decimal text, boolean "True" or "False"
    int64_t number = 0;
    bool boolean = false;
    std::vector<std::string> list;  // of an array property
};
using WmiRow = std::vector<WmiValue>;  // in the order of the properties asked for

// How a query ended: all rows seen, stopped by the caller, failed, or not answered in time.
enum class WmiStatus { done, stopped, failed, timedOut };

// Runs a query in a namespace such as "root\cimv2" and calls each for every row until it returns false (stopped).
// A property that a row lacks is null. error takes the platform's code and text on failure.
// The whole call ends after timeoutMilliseconds at the latest.
WmiStatus WmiQuery(const std::string& nameSpace, const std::string& query, const std::vector<std::string>& properties,
                   uint32_t timeoutMilliseconds, const std::function<bool(const WmiRow&)>& each, std::string& error);

// Calls SystemRestore.CreateRestorePoint in root\default with the name, restore point type and event type.
// returned takes the method's value. False when the call could not be made; error says why.
bool WmiCreateRestorePoint(const std::string& name, int32_t type, int32_t eventType, int32_t& returned,
                           std::string& error);
// Calls Terminate on every win32_Process whose Name equals name, case ignored. Number of processes found.
int WmiTerminateProcesses(const std::string& name);

}  // namespace pc
