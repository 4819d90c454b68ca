#include "controls/win32/look.h"

#include <cstdlib>
#include <vector>

#include "platform/win32/lookup.h"

namespace host {

namespace {

struct FontTraits {
    using Type = HFONT;
    static Type None() { return nullptr; }
    static void Close(Type font) { DeleteObject(font); }
};

struct CachedFont {
    int dpi;
    unsigned style;
    pc::Owned<FontTraits> font;
};

struct {
    bool read = false;
    Look look;
    std::vector<CachedFont> fonts;
} cache;

bool IsHighContrast() {
    HIGHCONTRASTW contrast = {};
    contrast.cbSize = sizeof contrast;
    return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof contrast, &contrast, 0) &&
           (contrast.dwFlags & HCF_HIGHCONTRASTON);
}

// Weights of Rec. 601, good enough to tell light from dark.
int Brightness(COLORREF colour) {
    return (299 * GetRValue(colour) + 587 * GetGValue(colour) + 114 * GetBValue(colour)) / 1000;
}

void UseSystemColours(Look& look) {
    look.side = look.page;
    look.card = look.page;
    look.cardText = look.pageText;
    look.border = look.pageText;
    look.hover = look.pressed = GetSysColor(COLOR_HIGHLIGHT);
    look.accent = look.pageText;
    look.onAccent = look.page;
    look.link = GetSysColor(COLOR_HOTLIGHT);
    look.grey = GetSysColor(COLOR_GRAYTEXT);
}

void UseAccent(Look& look) {
    bool dark = Brightness(look.card) < 128;
    look.accent = dark ? RGB(0x7C, 0xC4, 0xE0) : RGB(0x14, 0x58, 0x7A);
    look.onAccent = dark ? RGB(0, 0, 0) : RGB(255, 255, 255);
    look.link = look.accent;
    look.side = Mix(look.page, look.accent, 7);
    look.border = Mix(look.page, look.pageText, 17);
    look.hover = Mix(look.card, look.accent, 11);
    look.pressed = Mix(look.card, look.accent, 22);
    look.grey = Mix(look.page, look.pageText, 72);
}

void ReadLook() {
    Look& look = cache.look;
    look.highContrast = IsHighContrast();
    look.page = GetSysColor(look.highContrast ? COLOR_WINDOW : COLOR_BTNFACE);
    look.pageText = GetSysColor(look.highContrast ? COLOR_WINDOWTEXT : COLOR_BTNTEXT);
    look.card = GetSysColor(COLOR_WINDOW);
    look.cardText = GetSysColor(COLOR_WINDOWTEXT);
    if (look.highContrast)
        UseSystemColours(look);
    else
        UseAccent(look);
    look.pageBrush.Reset(CreateSolidBrush(look.page));
    look.cardBrush.Reset(CreateSolidBrush(look.card));
    look.sideBrush.Reset(CreateSolidBrush(look.side));
    cache.read = true;
}

LOGFONTW MessageFont(int dpi) {
    static auto* metricsForDpi =
        pc::Lookup<BOOL WINAPI(UINT, UINT, void*, UINT, UINT)>(L"user32.dll", "SystemParametersInfoForDpi");
    NONCLIENTMETRICSW metrics = {};
    metrics.cbSize = sizeof metrics;
    if (metricsForDpi && metricsForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, static_cast<UINT>(dpi)))
        return metrics.lfMessageFont;
    if (SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0))
        metrics.lfMessageFont.lfHeight = MulDiv(metrics.lfMessageFont.lfHeight, dpi, SystemDpi());
    else
        GetObjectW(GetStockObject(DEFAULT_GUI_FONT), sizeof metrics.lfMessageFont, &metrics.lfMessageFont);
    return metrics.lfMessageFont;
}

int ReadSystemDpi() {
    HDC screen = GetDC(nullptr);
    int dpi = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    return dpi > 0 ? dpi : 96;
}

}  // namespace

const Look& Colours() {
    if (!cache.read) ReadLook();
    return cache.look;
}

void RefreshLook() {
    cache.read = false;
    cache.fonts.clear();
}

COLORREF Mix(COLORREF from, COLORREF to, int percent) {
    auto part = [percent](int a, int b) { return a + (b - a) * percent / 100; };
    return RGB(part(GetRValue(from), GetRValue(to)), part(GetGValue(from), GetGValue(to)),
               part(GetBValue(from), GetBValue(to)));
}

COLORREF TextColour(uint32_t colour, COLORREF background, COLORREF plainText) {
    const Look& look = Colours();
    if (colour == colourButtonText) return plainText;
    if (look.highContrast) return colour == colourLink ? look.link : plainText;
    COLORREF wanted = colour & 0x80000000 ? GetSysColor(static_cast<int>(colour & 0xFF)) : colour;
    // 140 of 255 apart is easy to read; a system's highlight colour may lie closer to the background.
    while (std::abs(Brightness(wanted) - Brightness(background)) < 140 && wanted != plainText) {
        COLORREF nearer = Mix(wanted, plainText, 25);
        wanted = nearer == wanted ? plainText : nearer;
    }
    return wanted;
}

HFONT FontOf(int dpi, unsigned style) {
    for (CachedFont& entry : cache.fonts)
        if (entry.dpi == dpi && entry.style == style) return entry.font.Get();
    LOGFONTW font = MessageFont(dpi);
    if (style & fontHeading) font.lfHeight = MulDiv(font.lfHeight, 3, 2);
    if (style & fontNote) font.lfHeight = MulDiv(font.lfHeight, 11, 12);
    if (style & fontBold) font.lfWeight = (style & fontHeading) ? FW_SEMIBOLD : FW_BOLD;
    font.lfUnderline = (style & fontUnderline) != 0;
    cache.fonts.push_back({dpi, style, pc::Owned<FontTraits>(CreateFontIndirectW(&font))});
    return cache.fonts.back().font.Get();
}

int LineHeight(HFONT font) {
    HDC screen = GetDC(nullptr);
    HGDIOBJ before = SelectObject(screen, font);
    TEXTMETRICW metrics = {};
    GetTextMetricsW(screen, &metrics);
    SelectObject(screen, before);
    ReleaseDC(nullptr, screen);
    return metrics.tmHeight;
}

int SystemDpi() {
    static int dpi = ReadSystemDpi();
    return dpi;
}

int DpiOf(HWND window) {
    static auto* dpiForWindow = pc::Lookup<UINT WINAPI(HWND)>(L"user32.dll", "GetDpiForWindow");
    UINT dpi = dpiForWindow ? dpiForWindow(window) : 0;
    return dpi ? static_cast<int>(dpi) : SystemDpi();
}

}  // namespace host
