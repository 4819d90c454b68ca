// Inner helpers of the file services: walking a tree without ever going through a link.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/files.h"

std::string JoinPath(const std::string& folder, const std::string& name);
// Behind the last dot of a file name; empty without one.
std::string ExtensionInName(const std::string& name);
// All entries of a folder in the platform's order; empty when it cannot be read.
std::vector<pc::FileInfo> ListEntries(const std::string& folder);

// Visits the files of a folder, then each subfolder; with subFolders each subfolder's own content behind it, unless
// the subfolder is a link. A visitor that returns false stops the walk, and the result is false.
bool WalkTree(const std::string& folder, bool subFolders,
              const std::function<bool(const std::string& path, const pc::FileInfo&)>& onFile,
              const std::function<bool(const std::string& path)>& onFolder);
