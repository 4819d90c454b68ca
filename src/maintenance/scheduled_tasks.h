// Turns the settings into entries of the task scheduler and of the Run key: delete first, then create.
#pragma once

#include <string>

// The two weekly update tasks.
void SetUpdateTasks();
// The Run value of the maintenance reminder.
void SetMaintCheck();
// The three restore point tasks.
void SetRPSchedules();

// Deletes one task; waits for the scheduler's tool.
void DeleteTask(const std::string& name);
// Name of a restore point task, from the present company name.
std::string RestorePointTaskName(int index);

inline constexpr const char* appUpdateTask = "Brevanta App Update";
inline constexpr const char* configUpdateTask = "Brevanta Config Update";
inline constexpr const char* runKey = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
inline constexpr const char* maintCheckValue = "Brevanta Maintenance Check";
