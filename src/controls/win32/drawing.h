// Painting without flicker, and the few shapes that the program's windows are made of.
#pragma once

#include <windows.h>

#include <string>

namespace host {

// Off-screen paper over a part of a device context; shown when it goes.
class Canvas {
public:
    Canvas(HDC target, const RECT& area);
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    // Coordinates are the target's.
    HDC Dc() const { return memory; }

private:
    HDC target, memory;
    HBITMAP bitmap;
    HGDIOBJ before;
    RECT area;
};

void Fill(HDC dc, const RECT& area, COLORREF colour);
// Rounded rectangle with a one-pixel border; radius in pixels.
void FillRound(HDC dc, const RECT& area, int radius, COLORREF fill, COLORREF border);
// A line through points (x, y pairs), width in pixels.
void DrawLines(HDC dc, const POINT* points, int count, int width, COLORREF colour);
void FillTriangle(HDC dc, const POINT (&corners)[3], COLORREF colour);
// DT_ flags; background transparent.
void DrawString(HDC dc, const std::wstring& text, RECT area, HFONT font, COLORREF colour, UINT flags);
// Height for DT_WORDBREAK, or width on one line, as DrawText measures.
SIZE MeasureString(const std::wstring& text, HFONT font, int width, UINT flags);

}  // namespace host
