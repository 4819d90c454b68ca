// Files that the program carries in itself.
#pragma once

#include <string>

// Writes the resource of type "CUSTOM" to the path unless a file is there already. False when there is neither; a
// write that fails leaves no file, so that the next start tries again.
bool ExtractResource(const std::string& name, const std::string& path);
// As ExtractResource, but what is there under the name is replaced unless it is the very same: for a program that is
// handed something secret. False when the path does not hold the carried bytes in the end.
bool RefreshResource(const std::string& name, const std::string& path);
