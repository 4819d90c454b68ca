// Colours, fonts and measures of the program's windows, from the system's settings.
#pragma once

#include <windows.h>

#include "controls/form.h"
#include "platform/win32/handles.h"

namespace host {

struct BrushTraits {
    using Type = HBRUSH;
    static Type None() { return nullptr; }
    static void Close(Type brush) { DeleteObject(brush); }
};
using Brush = pc::Owned<BrushTraits>;

struct Look {
    bool highContrast = false;
    COLORREF page = 0, pageText = 0;  // forms and pages
    COLORREF card = 0, cardText = 0;  // frames, and the groups of a sidebar
    COLORREF side = 0;                // behind a sidebar's groups
    COLORREF border = 0, hover = 0, pressed = 0;
    COLORREF accent = 0, onAccent = 0;  // headings, links; text upon it
    COLORREF link = 0, grey = 0;
    Brush pageBrush, cardBrush, sideBrush;
};
const Look& Colours();
// Reads the system's colours and fonts again.
void RefreshLook();

COLORREF Mix(COLORREF from, COLORREF to, int percent);
// A colour as controls hold it (0x80000000 and a system colour's number, or 0x00BBGGRR), readable on background.
COLORREF TextColour(uint32_t colour, COLORREF background, COLORREF plainText);

// Bits of a font's style.
inline constexpr unsigned fontBold = 1, fontUnderline = 2, fontHeading = 4, fontNote = 8;
// The system's message font in this style at dots per inch; kept until RefreshLook.
HFONT FontOf(int dpi, unsigned style);
// Height of a line of that font in pixels.
int LineHeight(HFONT font);

int SystemDpi();
int DpiOf(HWND window);
inline int Pixels(int twips, int dpi) { return MulDiv(twips, dpi, 1440); }
inline int Twips(int pixels, int dpi) { return MulDiv(pixels, 1440, dpi); }
// Pixels at 96 dots per inch to this resolution.
inline int Scaled(int pixels, int dpi) { return MulDiv(pixels, dpi, 96); }

}  // namespace host
