// Sets the next start of Windows to safe mode with network, and takes it back.
#pragma once

#include <string>

// True when the next start is set and its undoing is registered; otherwise nothing is changed.
bool SetSafeStart();
// Takes the setting back; run by the registered command at the following logon.
void UndoSafeStart();

// boot.ini of Windows XP with the safe mode switch behind the default system's line, or without it; empty when the
// text names no default system.
std::string BootIniWithSafeMode(const std::string& bootIni);
std::string BootIniWithoutSafeMode(const std::string& bootIni);
