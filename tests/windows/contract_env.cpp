// The Windows side of the contract tests.
#include "contract/contract.h"
#include "platform/machine.h"

ContractPlace PrepareContract() {
    std::string folder = pc::TempFolder() + "BrevantaContract";
    pc::MakeFolder(folder);
    return {folder, "ping -n 30 127.0.0.1", !pc::Environment("programfiles(x86)").empty()};
}
