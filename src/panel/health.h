// The health display: measures the PC and writes into the labels of frameHealth, which are the only record of it.
//
// Each item takes the panel, reaches its labels by name and (but for GetInternalIP) is true when it found a fault.
#pragma once

#include <cstdint>
#include <string>

#include "controls/form.h"

// The longest a single question to the system's management service may take, in milliseconds. An item that gets no
// answer shows what it shows on a failure.
inline constexpr uint32_t wmiTimeout = 10000;

// The whole refresh, with the ball that sums it up.
void GetHealth(Form& form);

// Each shows one item; true when that is a warning.
bool GetAV(Form& form);
bool GetFirewall(Form& form);
bool GetAutoUpdates(Form& form);
bool GetSystemRestore(Form& form);
bool GetOS(Form& form);
// Called by GetOS: adds the demand for a missing service pack.
bool GetOSUpdate(Form& form);
bool GetUAC(Form& form);
bool GetRAM(Form& form);
bool GetHDD(Form& form);
void GetInternalIP(Form& form);
// Whether Windows is a 64-bit one.
bool Is64Bit();

// How a label shows its text.
enum class HealthState {
    normal,
    notice,   // worth a look, no fault
    warning,  // a fault, also in bold
};
// True for a warning.
bool SetHealthState(Form& form, const char* label, HealthState state);
// Text and state together.
bool ShowHealth(Form& form, const char* label, const std::string& text, HealthState state);
// Adds two blanks and the advice to upgrade, as a warning.
bool AdviseUpgrade(Form& form, const char* label);
// Text of section Misc of the language file.
std::string MiscText(const char* key, const char* builtIn);
