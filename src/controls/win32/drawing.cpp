#include "controls/win32/drawing.h"

#include <algorithm>
#include <vector>

#include "controls/win32/gdi_plus.h"

namespace host {

namespace {

DWORD Opaque(COLORREF colour) {
    return 0xFF000000u | static_cast<DWORD>(GetRValue(colour)) << 16 | static_cast<DWORD>(GetGValue(colour)) << 8 |
           GetBValue(colour);
}

// A pen or brush selected for a block.
class Selected {
public:
    Selected(HDC dc, HGDIOBJ given) : context(dc), object(given), before(SelectObject(dc, given)) {}
    ~Selected() {
        SelectObject(context, before);
        DeleteObject(object);
    }
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;

private:
    HDC context;
    HGDIOBJ object, before;
};

constexpr int smoothingAntiAlias = 4, unitPixel = 2;

void FillRoundSmooth(const GdiPlus& gdi, HDC dc, const RECT& area, int radius, COLORREF fill, COLORREF border) {
    void *graphics = nullptr, *path = nullptr, *brush = nullptr, *pen = nullptr;
    if (gdi.createFromDc(dc, &graphics)) return;
    gdi.setSmoothing(graphics, smoothingAntiAlias);
    gdi.createPath(0, &path);
    auto left = static_cast<float>(area.left), top = static_cast<float>(area.top);
    auto right = static_cast<float>(area.right - 1), bottom = static_cast<float>(area.bottom - 1);
    auto size = static_cast<float>(2 * radius);
    gdi.addArc(path, left, top, size, size, 180, 90);
    gdi.addArc(path, right - size, top, size, size, 270, 90);
    gdi.addArc(path, right - size, bottom - size, size, size, 0, 90);
    gdi.addArc(path, left, bottom - size, size, size, 90, 90);
    gdi.closeFigure(path);
    gdi.createFill(Opaque(fill), &brush);
    gdi.fillPath(graphics, brush, path);
    gdi.createPen(Opaque(border), 1, unitPixel, &pen);
    gdi.drawPath(graphics, pen, path);
    gdi.deletePen(pen);
    gdi.deleteBrush(brush);
    gdi.deletePath(path);
    gdi.deleteGraphics(graphics);
}

}  // namespace

Canvas::Canvas(HDC targetDc, const RECT& part)
    : target(targetDc),
      memory(CreateCompatibleDC(targetDc)),
      bitmap(CreateCompatibleBitmap(targetDc, std::max<int>(part.right - part.left, 1),
                                    std::max<int>(part.bottom - part.top, 1))),
      before(SelectObject(memory, bitmap)),
      area(part) {
    SetWindowOrgEx(memory, area.left, area.top, nullptr);
}

Canvas::~Canvas() {
    BitBlt(target, area.left, area.top, area.right - area.left, area.bottom - area.top, memory, area.left, area.top,
           SRCCOPY);
    SelectObject(memory, before);
    DeleteObject(bitmap);
    DeleteDC(memory);
}

void Fill(HDC dc, const RECT& area, COLORREF colour) {
    HBRUSH brush = CreateSolidBrush(colour);
    FillRect(dc, &area, brush);
    DeleteObject(brush);
}

void FillRound(HDC dc, const RECT& area, int radius, COLORREF fill, COLORREF border) {
    if (const GdiPlus* gdi = GetGdiPlus()) return FillRoundSmooth(*gdi, dc, area, radius, fill, border);
    Selected brush(dc, CreateSolidBrush(fill)), pen(dc, CreatePen(PS_SOLID, 1, border));
    RoundRect(dc, area.left, area.top, area.right, area.bottom, 2 * radius, 2 * radius);
}

void DrawLines(HDC dc, const POINT* points, int count, int width, COLORREF colour) {
    const GdiPlus* gdi = GetGdiPlus();
    void *graphics = nullptr, *pen = nullptr;
    if (!gdi || gdi->createFromDc(dc, &graphics)) {
        Selected line(dc, CreatePen(PS_SOLID, width, colour));
        Polyline(dc, points, count);
        return;
    }
    std::vector<float> coordinates;
    for (int i = 0; i < count; i++) {
        coordinates.push_back(static_cast<float>(points[i].x));
        coordinates.push_back(static_cast<float>(points[i].y));
    }
    gdi->setSmoothing(graphics, smoothingAntiAlias);
    gdi->createPen(Opaque(colour), static_cast<float>(width), unitPixel, &pen);
    gdi->drawLines(graphics, pen, coordinates.data(), count);
    gdi->deletePen(pen);
    gdi->deleteGraphics(graphics);
}

void FillTriangle(HDC dc, const POINT (&corners)[3], COLORREF colour) {
    Selected brush(dc, CreateSolidBrush(colour)), pen(dc, CreatePen(PS_SOLID, 1, colour));
    Polygon(dc, corners, 3);
}

void DrawString(HDC dc, const std::wstring& text, RECT area, HFONT font, COLORREF colour, UINT flags) {
    HGDIOBJ before = SelectObject(dc, font);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, colour);
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &area, flags);
    SelectObject(dc, before);
}

SIZE MeasureString(const std::wstring& text, HFONT font, int width, UINT flags) {
    HDC screen = GetDC(nullptr);
    HGDIOBJ before = SelectObject(screen, font);
    RECT area = {0, 0, width, 0};
    DrawTextW(screen, text.c_str(), static_cast<int>(text.size()), &area, flags | DT_CALCRECT);
    SelectObject(screen, before);
    ReleaseDC(nullptr, screen);
    return {area.right, area.bottom};
}

}  // namespace host
