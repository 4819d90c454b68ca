// Where the drive C: of a benchmark lies on this machine's disk.
#pragma once

#include <string>

extern std::string diskRoot;
std::string HostPath(const std::string& path);
