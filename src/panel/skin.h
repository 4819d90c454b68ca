// The skin library "appface.dll" of the application folder. Where it is absent all calls do nothing.
#pragma once

#include <string>

#include "controls/form.h"

// Applies the settings' skin if its file is in the folder "Skins".
void LoadConfiguredSkin();
// skinFile is a full path. The skin counts as active from here on, also if the library fails.
void StartSkin(const std::string& skinFile);
void RemoveSkin();
// The control keeps the plain look; null is passed over.
void ExemptFromSkin(const Control* control);
