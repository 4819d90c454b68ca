// System restore points.
#pragma once

// Whether the system keeps restore points. A machine without the values counts as enabled.
bool IsSystemRestoreEnabled();
