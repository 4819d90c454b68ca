// Frames (titled cards) and pages.
#include "controls/win32/drawing.h"
#include "controls/win32/host.h"
#include "platform/win32/wide.h"

namespace host {

namespace {

void DrawCard(ControlWindow& frame, HDC target) {
    RECT client;
    GetClientRect(frame.window, &client);
    Canvas canvas(target, client);
    const Look& look = Colours();
    int dpi = frame.form.dpi;
    Fill(canvas.Dc(), client, BackgroundOf(frame.window));
    FillRound(canvas.Dc(), client, Scaled(5, dpi), look.card, look.border);
    RECT title = {Scaled(16, dpi), Scaled(6, dpi), client.right - Scaled(16, dpi), client.bottom};
    DrawString(canvas.Dc(), pc::Wide(frame.control.Text()), title, FontOf(dpi, fontBold),
               IsWindowEnabled(frame.window) ? look.accent : look.grey,
               DT_SINGLELINE | DT_END_ELLIPSIS | (frame.control.Flags() & noPrefix ? DT_NOPREFIX : 0));
}

}  // namespace

bool ContainerMessage(ControlWindow& view, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    switch (message) {
        case WM_ERASEBKGND:
        case WM_PRINTCLIENT: {
            auto dc = reinterpret_cast<HDC>(wParam);
            RECT client;
            GetClientRect(view.window, &client);
            if (view.control.GetKind() == Kind::frame)
                DrawCard(view, dc);
            else
                FillRect(dc, &client, Colours().pageBrush.Get());
            result = TRUE;
            return true;
        }
        case WM_SETTEXT:
        case WM_ENABLE:
            result = DefWindowProcW(view.window, message, wParam, lParam);
            InvalidateRect(view.window, nullptr, TRUE);
            return true;
        default: return HandleChildMessage(message, wParam, lParam, result);
    }
}

}  // namespace host
