// Where the system enters the program.
#include <windows.h>
// behind windows.h
#include <ole2.h>

int ProgramMain();  // startup/main.cpp

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    // The browser control and the shell's pickers need the thread to be a single-threaded apartment with OLE.
    OleInitialize(nullptr);
    int code = ProgramMain();
    OleUninitialize();
    return code;
}
