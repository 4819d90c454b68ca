// Defragments, file by file, what Windows loads at start-up, and the paging file and registry at the next boot, with
// tools that are fetched when first needed.
#pragma once

#include <string>

void DefragStartupFiles(bool askUser = false);
void DefragRunKey(const std::string& root, const std::string& key);
void DefragFolder(const std::string& folder);
// Target path of a shortcut, empty when it is none.
std::string ResolveLinkTarget(const std::string& shortcut);
void DefragRegistryAndPageFile(bool askUser = false);
