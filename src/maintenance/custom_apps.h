// The technician's own maintenance programs: one "<name>.cfg" each in the application folder, run in the order of
// "SortOrder.cfg".
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "controls/form.h"

// One-time conversion of older settings to app files; guards itself by a key of the settings.
void ConvertCustomApps();
void ConvertCustomApp(int index);

// Runs the list; the form's txtStatus tells which app runs.
void RunCustomMaintApps(Form& form);
// Whether the app applies to this machine.
bool IsCustomAppAllowed(const std::string& name);
// Runs one app and waits for it; its exit code, 0 when nothing ran.
int32_t RunCustomMaintApp(const std::string& name);
// Expands eight percent names; the result is in lower case but for the last one's value.
std::string ExpandAppVars(const std::string& text);

// App names of the order file in running order; empty entries left out.
std::vector<std::string> ReadSortOrder();
// Full path of an app's file.
std::string AppFile(const std::string& name);
std::string SortOrderFile();
// "\", "/" and "&" become "-", so that the name can be a file's.
std::string CleanAppName(const std::string& name);
