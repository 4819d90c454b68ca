// CreateSRP.exe: makes one system restore point. Its command line is the name. A program of its own, because it asks
// for administrator rights and the panel does not.
#include "platform/machine.h"
#include "platform/wmi.h"

int main() {
    std::string name = pc::CommandLine(), error;
    while (!name.empty() && name.back() == ' ') name.pop_back();
    if (name.empty()) name = "Automatic System Restore Point";
    int32_t returned = 0;
    bool made = pc::WmiCreateRestorePoint(name, 0, 100, returned, error);
    pc::DebugLine("CreateSRP: " + name + (made ? " returned " + std::to_string(returned) : " failed: " + error));
    return made ? returned : 1;
}
