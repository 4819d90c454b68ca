// A plain-text report of the PC: the panel's health labels, then errors and warnings of the event logs since the last
// start; and the archive that carries it.
#pragma once

#include <string>

#include "controls/form.h"

// Writes "InfoTemp\PCHealth.txt" from the labels of the panel form.
void GatherInfo(Form& panelForm);
// WMI's date text of the newest start; empty when no record tells.
std::string GetLastBootTime();
// Packs the folder "InfoTemp", if it exists, into "Info.zip".
void ZipInfo();
