// Defragments, file by file, what Windows loads at start-up, and the paging file and registry at the next boot, with
// tools that are fetched when first needed.
#pragma once

#include <string>

// Files of the run keys and start-up folders of all profiles; waits for each. askUser is for the list of profiles.
void DefragStartupFiles(bool askUser = false);
// The programs that the key's values start.
void DefragRunKey(const std::string& root, const std::string& key);
// All files below the folder; of a shortcut its target.
void DefragFolder(const std::string& folder);
// Target path of a shortcut, empty when it is none.
std::string ResolveLinkTarget(const std::string& shortcut);
// Starts the tool that does so at the next boot; not waited for.
void DefragRegistryAndPageFile(bool askUser = false);
