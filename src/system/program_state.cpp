#include "system/program_state.h"

ProgramState& State() {
    static ProgramState state;
    return state;
}
