#include "platform/pictures.h"

#include <windows.h>

#include <vector>

namespace pc {

namespace {

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
    if (value) DeleteObject(reinterpret_cast<HBITMAP>(value));
    value = 0;
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
    bool copied = false;
    if (made) {
        MemoryContext memory(source, made);
        copied = BitBlt(memory.context, 0, 0, width, height, source, left, top, SRCCOPY) != FALSE;
    }
    ReleaseDC(handle, source);
    bitmap.value = reinterpret_cast<uintptr_t>(made);
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
    int rows = GetDIBits(screen, reinterpret_cast<HBITMAP>(bitmap.value), 0, static_cast<UINT>(bitmap.height),
                         pixels.data(), reinterpret_cast<BITMAPINFO*>(info.data()), DIB_RGB_COLORS);
    ReleaseDC(nullptr, screen);
    palette.assign(info.begin() + sizeof(BITMAPINFOHEADER), info.end());
    return rows == bitmap.height;
}

}  // namespace pc
