// GDI+ by its flat calls, loaded at run time: Windows 2000 has none.
#pragma once

#include <windows.h>

namespace host {

// Objects of the library are opaque; a status of 0 is success.
struct GdiPlus {
    int(WINAPI* createFromDc)(HDC, void** graphics);
    int(WINAPI* deleteGraphics)(void* graphics);
    int(WINAPI* setSmoothing)(void* graphics, int mode);
    int(WINAPI* setInterpolation)(void* graphics, int mode);
    int(WINAPI* setPixelOffset)(void* graphics, int mode);
    int(WINAPI* createPath)(int fillMode, void** path);
    int(WINAPI* deletePath)(void* path);
    int(WINAPI* addArc)(void* path, float x, float y, float width, float height, float start, float sweep);
    int(WINAPI* closeFigure)(void* path);
    int(WINAPI* createFill)(DWORD argb, void** brush);
    int(WINAPI* deleteBrush)(void* brush);
    int(WINAPI* fillPath)(void* graphics, void* brush, void* path);
    int(WINAPI* createPen)(DWORD argb, float width, int unit, void** pen);
    int(WINAPI* deletePen)(void* pen);
    int(WINAPI* drawPath)(void* graphics, void* pen, void* path);
    int(WINAPI* drawLines)(void* graphics, void* pen, const float* points, int count);
    int(WINAPI* loadFromStream)(IStream*, void** image);
    int(WINAPI* disposeImage)(void* image);
    int(WINAPI* imageWidth)(void* image, UINT* pixels);
    int(WINAPI* imageHeight)(void* image, UINT* pixels);
    int(WINAPI* createAttributes)(void** attributes);
    int(WINAPI* disposeAttributes)(void* attributes);
    int(WINAPI* setWrapMode)(void* attributes, int mode, DWORD argb, BOOL clamp);
    int(WINAPI* drawImage)(void* graphics, void* image, int x, int y, int width, int height, int sourceX, int sourceY,
                           int sourceWidth, int sourceHeight, int unit, const void* attributes, void* callback, void*);
};

// Null where the system lacks it.
const GdiPlus* GetGdiPlus();

}  // namespace host
