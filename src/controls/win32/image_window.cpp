// Images: picture files, and icons of the program's resources.
#include <algorithm>

#include "controls/win32/drawing.h"
#include "controls/win32/host.h"
#include "platform/win32/wide.h"
#include "system/text.h"

namespace host {

namespace {

bool IsIcon(const Control& control) { return StartsWith(control.Picture(), "#"); }

// At the size of the box, so that the icon's own picture of that size is taken.
void DrawIcon(HDC dc, const Control& control, const RECT& client) {
    int size = static_cast<int>(std::min(client.right, client.bottom));
    HANDLE icon = LoadImageW(GetModuleHandleW(nullptr), pc::Wide(control.Picture().substr(1)).c_str(), IMAGE_ICON, size,
                             size, LR_DEFAULTCOLOR);
    if (!icon) return;
    DrawIconEx(dc, (client.right - size) / 2, (client.bottom - size) / 2, static_cast<HICON>(icon), size, size, 0,
               nullptr, DI_NORMAL);
    DestroyIcon(static_cast<HICON>(icon));
}

// The whole box when stretched; otherwise the picture's own size (grown with the resolution), made smaller in
// proportion when it is larger than the box.
RECT PictureArea(const ControlWindow& image, const RECT& client) {
    if (image.control.Stretch()) return client;
    SIZE natural = image.picture->Size();
    int width = Scaled(natural.cx, image.form.dpi), height = Scaled(natural.cy, image.form.dpi);
    if (width > client.right) {
        height = std::max(MulDiv(height, client.right, width), 1);
        width = client.right;
    }
    if (height > client.bottom) {
        width = std::max(MulDiv(width, client.bottom, height), 1);
        height = client.bottom;
    }
    return {0, 0, width, height};
}

void Paint(ControlWindow& image) {
    PAINTSTRUCT paint;
    HDC target = BeginPaint(image.window, &paint);
    RECT client;
    GetClientRect(image.window, &client);
    {
        Canvas canvas(target, client);
        Fill(canvas.Dc(), client, BackgroundOf(image.window));
        if (IsIcon(image.control))
            DrawIcon(canvas.Dc(), image.control, client);
        else if (image.picture)
            image.picture->Draw(canvas.Dc(), PictureArea(image, client));
        if (GetFocus() == image.window && FocusIsVisible(image.window)) DrawFocusRect(canvas.Dc(), &client);
    }
    EndPaint(image.window, &paint);
}

}  // namespace

void LoadPicture(ControlWindow& image) {
    const std::string& name = image.control.Picture();
    image.picture = name.empty() || IsIcon(image.control) ? nullptr : Picture::Load(name);
    InvalidateRect(image.window, nullptr, FALSE);
}

bool ImageMessage(ControlWindow& view, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    if (message != WM_PAINT) return LinkMessage(view, message, wParam, lParam, result);
    Paint(view);
    return true;
}

}  // namespace host
