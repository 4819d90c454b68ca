// System restore points.
#pragma once

#include <string>

// Makes one inside this process. What the system answered goes to the trace, also when it answered success and made
// none.
void CreateRestorePoint(const std::string& name);
// Starts the companion that makes the point of schedule 0 to 2 with administrator rights; not waited for.
void CreateScheduledRestorePoint(int index);
// Writes the companion into the application folder if it is missing.
void ExtractCreateSRP();

// Whether the system keeps restore points. A machine without the values counts as enabled.
bool IsSystemRestoreEnabled();
