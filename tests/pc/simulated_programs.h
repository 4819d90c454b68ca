// Processes of the simulated PC and what shall happen as time passes.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "pc/simulated_disk.h"

struct RunningProgram {
    std::string name;
    Node image;  // null for what has no file of its own
    Behaviour behaviour;
    uint64_t endsAt = UINT64_MAX;  // in elapsed milliseconds
    uint32_t exitCode = 0;
    bool runs = true;
};

struct ProcessHandle {
    uint32_t id = 0, access = 0;
};

struct Programs {
    std::vector<std::pair<std::string, Behaviour>> rules;
    std::map<uint32_t, RunningProgram> processes;
    std::map<uintptr_t, ProcessHandle> handles;
    std::multimap<uint64_t, std::function<void()>> later;
    std::multimap<int, std::function<void()>> atPump;
    uint32_t nextId = 2000;
    int pumps = 0;
};
Programs& ThePrograms();
inline constexpr uint32_t ownProcessId = 1848;

// Lets virtual time pass; what is due happens, but no window message.
void PassTime(uint64_t milliseconds);
// Starts an image file with the behaviour that the rules give the line; its identifier.
uint32_t StartImage(const Place& image, const std::string& line);
Behaviour BehaviourOf(const std::string& line);
// Kills all processes of this name; how many there were.
int KillNamed(const std::string& name);
// The file that a program's name means, as a command line is searched.
Place FindProgram(const std::string& name);
// Fills a new PC.
void InstallWindows(SimulatedPc& machine, Windows windows);
