// Start of every run: paths, trace, command line and the platform's controls.
#pragma once

// The whole program; returns when its mode has ended and no form is left.
int ProgramMain();

// What every mode does before the command line is looked at; leaves that in State().commandLine.
void PrepareStart();
// Maps the shell's library and makes the common controls and forms ready.
void InitControls();
void FreeShellLibrary();
// Writes the progress control "ccrpprg6.ocx" if it is missing.
void ExtractProgressControl();
