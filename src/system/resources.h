// Files that the program carries in itself.
#pragma once

#include <string>

// Writes the resource of type "CUSTOM" to the path unless a file is there already. False when there is neither; a
// write that fails leaves no file, so that the next start tries again.
bool ExtractResource(const std::string& name, const std::string& path);
