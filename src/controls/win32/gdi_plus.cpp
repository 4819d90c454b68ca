#include "controls/win32/gdi_plus.h"

#include "platform/win32/lookup.h"

namespace host {

namespace {

struct StartupInput {  // GdiplusStartupInput
    UINT32 version;
    void* debugCallback;
    BOOL suppressBackgroundThread, suppressExternalCodecs;
};

struct Loader {
    bool complete = true;

    template <typename Function>
    void Take(Function*& function, const char* name) {
        function = pc::Lookup<Function>(L"gdiplus.dll", name);
        if (!function) complete = false;
    }
};

bool Load(GdiPlus& gdi) {
    // Up to Windows 7 it lies side by side, not in the system folder that is looked into first.
    if (!pc::LookupAddress(L"gdiplus.dll", "GdiplusStartup") && !LoadLibraryW(L"gdiplus.dll")) return false;
    int(WINAPI * start)(ULONG_PTR*, const StartupInput*, void*);
    Loader loader;
    loader.Take(start, "GdiplusStartup");
    loader.Take(gdi.createFromDc, "GdipCreateFromHDC");
    loader.Take(gdi.deleteGraphics, "GdipDeleteGraphics");
    loader.Take(gdi.setSmoothing, "GdipSetSmoothingMode");
    loader.Take(gdi.setInterpolation, "GdipSetInterpolationMode");
    loader.Take(gdi.setPixelOffset, "GdipSetPixelOffsetMode");
    loader.Take(gdi.createPath, "GdipCreatePath");
    loader.Take(gdi.deletePath, "GdipDeletePath");
    loader.Take(gdi.addArc, "GdipAddPathArc");
    loader.Take(gdi.closeFigure, "GdipClosePathFigure");
    loader.Take(gdi.createFill, "GdipCreateSolidFill");
    loader.Take(gdi.deleteBrush, "GdipDeleteBrush");
    loader.Take(gdi.fillPath, "GdipFillPath");
    loader.Take(gdi.createPen, "GdipCreatePen1");
    loader.Take(gdi.deletePen, "GdipDeletePen");
    loader.Take(gdi.drawPath, "GdipDrawPath");
    loader.Take(gdi.drawLines, "GdipDrawLines");
    loader.Take(gdi.loadFromStream, "GdipLoadImageFromStream");
    loader.Take(gdi.disposeImage, "GdipDisposeImage");
    loader.Take(gdi.imageWidth, "GdipGetImageWidth");
    loader.Take(gdi.imageHeight, "GdipGetImageHeight");
    loader.Take(gdi.createAttributes, "GdipCreateImageAttributes");
    loader.Take(gdi.disposeAttributes, "GdipDisposeImageAttributes");
    loader.Take(gdi.setWrapMode, "GdipSetImageAttributesWrapMode");
    loader.Take(gdi.drawImage, "GdipDrawImageRectRectI");
    if (!loader.complete) return false;
    ULONG_PTR token = 0;
    StartupInput input = {1, nullptr, FALSE, FALSE};
    return start(&token, &input, nullptr) == 0;
}

}  // namespace

const GdiPlus* GetGdiPlus() {
    static GdiPlus gdi = {};
    static bool loaded = Load(gdi);
    return loaded ? &gdi : nullptr;
}

}  // namespace host
