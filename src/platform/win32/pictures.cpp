#include "platform/pictures.h"

#include <windows.h>

#include <vector>

namespace pc {

namespace {

// The colours of a screen of 256 colours as they are now; null on other screens, which need none.
HPALETTE ScreenPalette(HDC screen) {
    constexpr WORD colours = 256;
    if ((GetDeviceCaps(screen, RASTERCAPS) & RC_PALETTE) == 0 || GetDeviceCaps(screen, SIZEPALETTE) != colours)
        return nullptr;
    // The structure ends in the first of its entries.
    char memory[sizeof(LOGPALETTE) + (colours - 1) * sizeof(PALETTEENTRY)] = {};
    auto* palette = reinterpret_cast<LOGPALETTE*>(memory);
    palette->palVersion = 0x300;  // of Windows 3.0, the one there is
    palette->palNumEntries = colours;
    GetSystemPaletteEntries(screen, 0, colours, palette->palPalEntry);
    return CreatePalette(palette);
}

// A palette in a device context, undone at the end; none changes nothing.
class PaletteInUse {
public:
    PaletteInUse(HDC device, HPALETTE palette)
        : context(device), before(palette ? SelectPalette(device, palette, FALSE) : nullptr) {
        if (before) RealizePalette(context);
    }
    ~PaletteInUse() {
        if (before) SelectPalette(context, before, FALSE);
    }
    PaletteInUse(const PaletteInUse&) = delete;
    PaletteInUse& operator=(const PaletteInUse&) = delete;

private:
    const HDC context;
    const HPALETTE before;
};

// A memory device context with a bitmap selected, undone at the end.
class MemoryContext {
public:
    MemoryContext(HDC like, HBITMAP bitmap)
        : context(CreateCompatibleDC(like)), before(SelectObject(context, bitmap)) {}
    ~MemoryContext() {
        SelectObject(context, before);
        DeleteDC(context);
    }
    MemoryContext(const MemoryContext&) = delete;
    MemoryContext& operator=(const MemoryContext&) = delete;
    const HDC context;

private:
    HGDIOBJ before;
};

}  // namespace

void Bitmap::Free() {
    for (uintptr_t* handle : {&value, &palette}) {
        if (*handle) DeleteObject(reinterpret_cast<HGDIOBJ>(*handle));
        *handle = 0;
    }
}

intptr_t DesktopWindow() { return reinterpret_cast<intptr_t>(GetDesktopWindow()); }
int ScreenWidth() { return GetSystemMetrics(SM_CXSCREEN); }
int ScreenHeight() { return GetSystemMetrics(SM_CYSCREEN); }

bool CaptureWindow(intptr_t window, bool clientArea, int left, int top, int width, int height, Bitmap& bitmap) {
    auto handle = reinterpret_cast<HWND>(window);
    HDC source = clientArea ? GetDC(handle) : GetWindowDC(handle);
    if (!source) return false;
    bitmap.Free();
    HBITMAP made = CreateCompatibleBitmap(source, width, height);
    HPALETTE palette = ScreenPalette(source);
    bool copied = false;
    if (made) {
        MemoryContext memory(source, made);
        PaletteInUse colours(memory.context, palette);
        copied = BitBlt(memory.context, 0, 0, width, height, source, left, top, SRCCOPY) != FALSE;
    }
    ReleaseDC(handle, source);
    bitmap.value = reinterpret_cast<uintptr_t>(made);
    bitmap.palette = reinterpret_cast<uintptr_t>(palette);
    bitmap.width = width;
    bitmap.height = height;
    if (!copied) bitmap.Free();
    return copied;
}

bool ReduceColours(const Bitmap& bitmap, int bitsPerPixel, std::string& palette, std::string& pixels) {
    size_t colours = size_t{1} << bitsPerPixel;
    std::vector<char> info(sizeof(BITMAPINFOHEADER) + colours * sizeof(RGBQUAD));
    auto* header = reinterpret_cast<BITMAPINFOHEADER*>(info.data());
    header->biSize = sizeof *header;
    header->biWidth = bitmap.width;
    header->biHeight = bitmap.height;
    header->biPlanes = 1;
    header->biBitCount = static_cast<WORD>(bitsPerPixel);
    header->biCompression = BI_RGB;
    size_t line = (static_cast<size_t>(bitmap.width) * static_cast<size_t>(bitsPerPixel) + 31) / 32 * 4;
    pixels.assign(line * static_cast<size_t>(bitmap.height), '\0');
    HDC screen = GetDC(nullptr);
    int rows = 0;
    {
        PaletteInUse own(screen, reinterpret_cast<HPALETTE>(bitmap.palette));
        rows = GetDIBits(screen, reinterpret_cast<HBITMAP>(bitmap.value), 0, static_cast<UINT>(bitmap.height),
                         pixels.data(), reinterpret_cast<BITMAPINFO*>(info.data()), DIB_RGB_COLORS);
    }
    ReleaseDC(nullptr, screen);
    palette.assign(info.begin() + sizeof(BITMAPINFOHEADER), info.end());
    return rows == bitmap.height;
}

}  // namespace pc
