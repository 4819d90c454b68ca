// What the panel does around its setup program: the steps after install, the Start Menu link of Windows XP, removal.
#pragma once

// "/installer": tasks, reminder, the time of the last maintenance, and on demand the Task Scheduler.
void PostInstall();
// "/installoemlink": the manufacturer's entry of the Windows XP Start Menu.
void InstallOEMLink();
// "/uninstaller": removes what the panel has written to the system.
void Uninstall();
// Deletes the maker's key when no subkey is left in it.
void RemoveVendorKeyIfEmpty();
