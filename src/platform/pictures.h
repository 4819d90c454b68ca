// Pictures of windows and their pixels.
#pragma once

#include <cstdint>
#include <string>

namespace pc {

// A captured bitmap; frees itself. value 0 means none. palette is there on screens of 256 colours only.
class Bitmap {
public:
    Bitmap() = default;
    ~Bitmap() { Free(); }
    Bitmap(const Bitmap&) = delete;
    Bitmap& operator=(const Bitmap&) = delete;
    void Free();

    uintptr_t value = 0, palette = 0;
    int width = 0, height = 0;  // pixels
};

// The window that holds all others.
intptr_t DesktopWindow();
// Of the primary screen, in pixels.
int ScreenWidth();
int ScreenHeight();
// Copies a part of a window as it stands on the screen. False when nothing can be had.
bool CaptureWindow(intptr_t window, bool clientArea, int left, int top, int width, int height, Bitmap& bitmap);
// The platform's own mapping to 2, 16 or 256 colours: palette of four bytes each (blue, green, red, 0) and pixel rows
// from the bottom up, padded to four bytes.
bool ReduceColours(const Bitmap& bitmap, int bitsPerPixel, std::string& palette, std::string& pixels);

}  // namespace pc
