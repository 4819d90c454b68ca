// A picture of the screen as a Windows bitmap of 256 colours.
#pragma once

#include <string>

#include "platform/pictures.h"

// Writes "InfoTemp\ScreenCapture.bmp" in the application folder, after half a second in which hidden windows leave the
// screen. A failure is silent.
void TakeScreenCapture();
// The whole primary screen.
bool CaptureScreen(pc::Bitmap& bitmap);
// Colours are 2, 16 or 256; 1, 4 and 8 mean their powers, anything else 2. False when the file could not be written.
bool SaveBitmapColours(const pc::Bitmap& bitmap, const std::string& path, int colours);
