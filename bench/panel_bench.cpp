// How many settings each face of the panel reads while it loads, with the demo's settings. What one read costs on a PC
// stands in the comparison of starts.
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "panel/panel_forms.h"
#include "pc/simulated_pc.h"
#include "system/program_state.h"
#include "system/trace.h"

namespace {

int ReadsOf(const FormDefinition& face, const std::string& settings) {
    SimulatedPc::UseWindows(Windows::sevenX64);
    State() = {};
    ForgetForms();
    Pc().AddFile("C:\\Panel\\Brevanta.ini", settings);
    InitPaths(true, true);
    ConnectPanel();
    Pc().profileReads = 0;
    ShowForm(face);
    return static_cast<int>(Pc().profileReads);
}

}  // namespace

int main() {
    std::ifstream file("resources/demo/Brevanta.ini", std::ios::binary);
    std::string settings{std::istreambuf_iterator<char>(file), {}};
    std::printf("settings read while the panel loads: new face %d, classic face %d\n", ReadsOf(frmMainNew, settings),
                ReadsOf(frmMain, settings));
    return 0;
}
