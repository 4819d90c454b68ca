// Labels, and what labels and images share: being a link when a click handler is attached.
#include <windowsx.h>

#include "controls/win32/drawing.h"
#include "controls/win32/host.h"
#include "platform/win32/wide.h"

namespace host {

namespace {

UINT AlignFlag(const Control& control) {
    return control.Flags() & alignCenter ? DT_CENTER : control.Flags() & alignRight ? DT_RIGHT : DT_LEFT;
}

bool IsSingleLine(const Control& control) {
    return !(control.Flags() & wrap) && control.Text().find('\n') == std::string::npos;
}

UINT DrawFlags(const Control& control, HWND window) {
    UINT flags = AlignFlag(control) | DT_END_ELLIPSIS;
    flags |= IsSingleLine(control) ? DT_SINGLELINE : DT_WORDBREAK | DT_EDITCONTROL;
    if (control.Flags() & noPrefix)
        flags |= DT_NOPREFIX;
    else if (SendMessageW(window, WM_QUERYUISTATE, 0, 0) & UISF_HIDEACCEL)
        flags |= DT_HIDEPREFIX;
    return flags;
}

// Warnings and notices bear a mark before the text, so that their colour is not all that tells them.
bool HasMark(const Control& control) {
    return (control.Colour() == colourWarning || control.Colour() == colourHighlight) && !AlignFlag(control) &&
           IsSingleLine(control) && !control.Text().empty();
}

int MarkWidth(const ControlWindow& label) { return HasMark(label.control) ? LineHeight(FontFor(label)) : 0; }

void DrawMark(HDC dc, const ControlWindow& label, COLORREF colour) {
    int line = LineHeight(FontFor(label)), size = line * 5 / 8, top = (line - size) / 2 + 1;
    if (label.control.Colour() == colourWarning) {
        POINT corners[3] = {{size / 2, top}, {size, top + size - 1}, {0, top + size - 1}};
        FillTriangle(dc, corners, colour);
    } else {
        int radius = size / 3;
        FillRound(dc, {size / 2 - radius, line / 2 - radius, size / 2 + radius + 1, line / 2 + radius + 1}, radius,
                  colour, colour);
    }
}

COLORREF LabelColour(const ControlWindow& label) {
    const Control& control = label.control;
    const Look& look = Colours();
    if (!IsWindowEnabled(label.window)) return look.highContrast ? look.grey : Mix(look.grey, look.page, 35);
    if (control.Colour() != colourButtonText)
        return TextColour(control.Colour(), BackgroundOf(label.window), PlainTextOn(label.window));
    if (IsLink(control)) return look.link;
    if (control.Flags() & heading) return look.accent;
    if (control.Flags() & note) return look.highContrast ? PlainTextOn(label.window) : look.grey;
    return PlainTextOn(label.window);
}

void Paint(ControlWindow& label) {
    PAINTSTRUCT paint;
    HDC target = BeginPaint(label.window, &paint);
    RECT client;
    GetClientRect(label.window, &client);
    {
        Canvas canvas(target, client);
        Fill(canvas.Dc(), client, BackgroundOf(label.window));
        COLORREF colour = LabelColour(label);
        RECT text = client;
        if (HasMark(label.control)) {
            DrawMark(canvas.Dc(), label, colour);
            text.left += MarkWidth(label);
        }
        DrawString(canvas.Dc(), pc::Wide(label.control.Text()), text, FontFor(label), colour,
                   DrawFlags(label.control, label.window));
        if (GetFocus() == label.window && FocusIsVisible(label.window)) DrawFocusRect(canvas.Dc(), &client);
    }
    EndPaint(label.window, &paint);
}

void Click(ControlWindow& view) {
    Control& control = view.control;
    view.pressed = false;
    control.UserClicked();  // the window may be gone now
}

bool IsEnterKey(LPARAM message) {
    auto* key = reinterpret_cast<const MSG*>(message);
    return key && key->message == WM_KEYDOWN && key->wParam == VK_RETURN;
}

}  // namespace

bool IsLink(const Control& control) {
    return (control.GetKind() == Kind::label || control.GetKind() == Kind::image) && control.onClick != nullptr;
}

bool IsCut(ControlWindow& label) {
    const Control& control = label.control;
    RECT client;
    GetClientRect(label.window, &client);
    UINT flags = control.Flags() & noPrefix ? DT_NOPREFIX : 0;
    flags |= IsSingleLine(control) ? DT_SINGLELINE : DT_WORDBREAK | DT_EDITCONTROL;
    int width = client.right - MarkWidth(label);
    SIZE size = MeasureString(pc::Wide(control.Text()), FontFor(label), width, flags);
    // A line may stick out by the space below its letters.
    return size.cx > width || size.cy > client.bottom + Scaled(3, label.form.dpi);
}

bool LinkMessage(ControlWindow& view, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    switch (message) {
        case WM_NCHITTEST: result = HTCLIENT; return true;
        case WM_ERASEBKGND: result = TRUE; return true;
        case WM_SETTEXT:
        case WM_ENABLE:
        case WM_UPDATEUISTATE:
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
            result = DefWindowProcW(view.window, message, wParam, lParam);
            InvalidateRect(view.window, nullptr, FALSE);
            return true;
        case WM_MOUSELEAVE: InvalidateRect(view.window, nullptr, FALSE); return false;
        default: break;
    }
    if (!IsLink(view.control)) return false;
    switch (message) {
        case WM_GETDLGCODE: result = DLGC_BUTTON | (IsEnterKey(lParam) ? DLGC_WANTMESSAGE : 0); return true;
        case WM_SETCURSOR:
            SetCursor(LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_HAND)));
            result = TRUE;
            return true;
        case WM_LBUTTONDOWN:
            view.pressed = true;
            SetFocus(view.window);
            return true;
        case WM_LBUTTONUP: {
            RECT client;
            GetClientRect(view.window, &client);
            if (view.pressed && PtInRect(&client, {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)})) Click(view);
            return true;
        }
        case WM_KEYDOWN:
            if (wParam != VK_SPACE && wParam != VK_RETURN) return false;
            Click(view);
            return true;
        case BM_CLICK: Click(view); return true;
        default: return false;
    }
}

bool LabelMessage(ControlWindow& view, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    if (message != WM_PAINT) return LinkMessage(view, message, wParam, lParam, result);
    Paint(view);
    return true;
}

}  // namespace host
