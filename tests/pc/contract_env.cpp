// The simulated side of the contract tests: a fresh PC for each of them.
#include "contract/contract.h"
#include "pc/simulated_pc.h"

ContractPlace PrepareContract() {
    SimulatedPc::UseWindows(Windows::sevenX64).AddFolder("C:\\Contract space");
    Pc().Program("ping -n 30", {.runs = 30'000});
    return {"C:\\Contract space", "ping -n 30 127.0.0.1", true};
}
