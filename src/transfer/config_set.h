// The technician's set of settings, apps, icon and logo in one archive, as panels and the console bring it in.
#pragma once

#include <string>

// Unpacks the archive into the folder "UpdateTemp" of the application folder, where it stays. False when an entry is
// damaged, or the settings file in it, if any, is none.
bool UnpackAndCheck(const std::string& archive);

// What came of fetching the set.
enum class CloudSet { none, damaged, applied };
// Fetches the set from the cloud area and, when it is sound, unpacks it over the application folder.
CloudSet FetchCloudSet();
