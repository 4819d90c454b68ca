#include "controls/win32/pictures.h"

#include <olectl.h>

#include "controls/win32/gdi_plus.h"
#include "platform/win32/wide.h"

namespace host {

namespace {

constexpr DWORD largestFile = 64 * 1024 * 1024;  // bytes; a logo is a thousandth of it
constexpr int interpolationBicubic = 7, pixelOffsetHalf = 4, unitPixel = 2, wrapMirrored = 3;

// The whole file as a stream that owns its memory.
pc::Com<IStream> FileStream(const std::string& path) {
    pc::FileHandle file(
        CreateFileW(pc::WidePath(path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    pc::Com<IStream> stream;
    if (!file) return stream;
    DWORD length = GetFileSize(file.Get(), nullptr), read = 0;
    if (length == 0 || length > largestFile) return stream;
    HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, length);
    if (!memory) return stream;
    bool whole = ReadFile(file.Get(), GlobalLock(memory), length, &read, nullptr) && read == length;
    GlobalUnlock(memory);
    if (!whole || FAILED(CreateStreamOnHGlobal(memory, TRUE, stream.Receive()))) GlobalFree(memory);
    return stream;
}

// Pictures of OLE measure in hundredths of a millimetre.
int HimetricPixels(OLE_XSIZE_HIMETRIC length, int capability) {
    HDC screen = GetDC(nullptr);
    int pixels = MulDiv(length, GetDeviceCaps(screen, capability), 2540);
    ReleaseDC(nullptr, screen);
    return pixels;
}

}  // namespace

Picture::~Picture() {
    if (image) GetGdiPlus()->disposeImage(image);
}

std::unique_ptr<Picture> Picture::Load(const std::string& path) {
    std::unique_ptr<Picture> picture(new Picture);
    picture->source = FileStream(path);
    if (!picture->source || !picture->Decode(picture->source.Get())) return nullptr;
    return picture;
}

bool Picture::Decode(IStream* stream) {
    if (const GdiPlus* gdi = GetGdiPlus()) {
        UINT width = 0, height = 0;
        if (gdi->loadFromStream(stream, &image)) return false;
        gdi->imageWidth(image, &width);
        gdi->imageHeight(image, &height);
        size = {static_cast<LONG>(width), static_cast<LONG>(height)};
    } else {
        if (FAILED(OleLoadPicture(stream, 0, FALSE, IID_IPicture, reinterpret_cast<void**>(olePicture.Receive()))))
            return false;
        OLE_XSIZE_HIMETRIC width = 0;
        OLE_YSIZE_HIMETRIC height = 0;
        olePicture.Get()->get_Width(&width);
        olePicture.Get()->get_Height(&height);
        size = {HimetricPixels(width, LOGPIXELSX), HimetricPixels(height, LOGPIXELSY)};
    }
    return size.cx > 0 && size.cy > 0;
}

void Picture::Draw(HDC dc, const RECT& target) const {
    int width = target.right - target.left, height = target.bottom - target.top;
    if (!image) {
        OLE_XSIZE_HIMETRIC sourceWidth = 0;
        OLE_YSIZE_HIMETRIC sourceHeight = 0;
        olePicture.Get()->get_Width(&sourceWidth);
        olePicture.Get()->get_Height(&sourceHeight);
        olePicture.Get()->Render(dc, target.left, target.top, width, height, 0, sourceHeight, sourceWidth,
                                 -sourceHeight, nullptr);
        return;
    }
    const GdiPlus& gdi = *GetGdiPlus();
    void *graphics = nullptr, *attributes = nullptr;
    if (gdi.createFromDc(dc, &graphics)) return;
    gdi.setInterpolation(graphics, interpolationBicubic);
    gdi.setPixelOffset(graphics, pixelOffsetHalf);
    // Without it the edges fade into black.
    gdi.createAttributes(&attributes);
    gdi.setWrapMode(attributes, wrapMirrored, 0, FALSE);
    gdi.drawImage(graphics, image, target.left, target.top, width, height, 0, 0, size.cx, size.cy, unitPixel,
                  attributes, nullptr, nullptr);
    gdi.disposeAttributes(attributes);
    gdi.deleteGraphics(graphics);
}

}  // namespace host
