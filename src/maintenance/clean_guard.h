// What keeps the cleaner inside the folders that it is meant for, whatever names and links lie on the disk.
#pragma once

#include <string>

// A name that stands for exactly one entry of its folder: no separators, drive, wildcards or quotes, not "." or "..",
// and no blank or point at the end, which the system would take off and so name another folder.
bool IsPlainName(const std::string& name);

// Whether the path is an immediate subfolder of the folder that holds the profiles, and no link to elsewhere.
bool IsProfileFolder(const std::string& profile, const std::string& userProf);

// Whether root + tail is there and no part of it below the root is a junction, mount point or symbolic link. The root
// must be a full path with a drive; tail starts with a backslash. What a link leads to is cleaned under its own path
// or not at all.
bool IsOwnPath(const std::string& root, const std::string& tail);
