// Keys of text boxes and options that their classes handle otherwise.
#include <algorithm>

#include "controls/win32/drawing.h"
#include "controls/win32/host.h"

namespace host {

namespace {

bool IsKey(LPARAM message, WPARAM key) {
    auto* asked = reinterpret_cast<const MSG*>(message);
    return asked && asked->message == WM_KEYDOWN && asked->wParam == key;
}

// The next option of the group that can be chosen, round in a circle; null when there is no other.
Control* NextOption(const Control& from, bool forward) {
    std::vector<Control*> choices;
    size_t here = 0;
    for (auto& control : from.Owner().Controls()) {
        if (control.get() == &from) here = choices.size();
        if (control.get() == &from || (from.Excludes(*control) && control->Enabled() && control->Visible()))
            choices.push_back(control.get());
    }
    Control* next = choices[(here + (forward ? 1 : choices.size() - 1)) % choices.size()];
    return next == &from ? nullptr : next;
}

// A box of one line writes at the top of its client area, so that is made as high as a line, in the middle of the box.
void CentreLine(const ControlWindow& edit, RECT& client) {
    LONG space = std::max<LONG>(client.bottom - client.top - LineHeight(FontFor(edit)), 0);
    client.top += space / 2;
    client.bottom -= space - space / 2;
}

void FillAroundLine(const ControlWindow& edit) {
    RECT window, client;
    GetWindowRect(edit.window, &window);
    GetClientRect(edit.window, &client);
    MapWindowPoints(edit.window, nullptr, reinterpret_cast<POINT*>(&client), 2);
    OffsetRect(&client, -window.left, -window.top);
    LONG border = client.left, height = window.bottom - window.top;
    bool open = IsWindowEnabled(edit.window) && !(edit.control.Flags() & readOnly);
    COLORREF colour = GetSysColor(open ? COLOR_WINDOW : COLOR_BTNFACE);
    HDC dc = GetWindowDC(edit.window);
    Fill(dc, {client.left, border, client.right, client.top}, colour);
    Fill(dc, {client.left, client.bottom, client.right, height - border}, colour);
    ReleaseDC(edit.window, dc);
}

}  // namespace

bool EditMessage(ControlWindow& view, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    constexpr WPARAM controlA = 1;
    uint32_t flags = view.control.Flags();
    if (!(flags & multiLine) && (message == WM_NCCALCSIZE || message == WM_NCPAINT)) {
        result = CallWindowProcW(view.original, view.window, message, wParam, lParam);
        if (message == WM_NCPAINT)
            FillAroundLine(view);
        else
            CentreLine(view, *reinterpret_cast<RECT*>(lParam));  // both forms of the message begin with it
        return true;
    }
    if (message == WM_CHAR && wParam == controlA) {
        SendMessageW(view.window, EM_SETSEL, 0, -1);
        return true;
    }
    // By itself a box of several lines would keep Tab and Escape.
    if (message == WM_GETDLGCODE && (flags & multiLine)) {
        result = DLGC_WANTCHARS | DLGC_WANTARROWS;
        if (!(flags & readOnly) && IsKey(lParam, VK_RETURN)) result |= DLGC_WANTMESSAGE;
        return true;
    }
    return false;
}

bool OptionMessage(ControlWindow& view, UINT message, WPARAM wParam, LPARAM, LRESULT& result) {
    if (message == WM_GETDLGCODE) {
        result = DLGC_BUTTON | DLGC_RADIOBUTTON | DLGC_WANTARROWS;
        return true;
    }
    bool forward = wParam == VK_DOWN || wParam == VK_RIGHT;
    if (message != WM_KEYDOWN || (!forward && wParam != VK_UP && wParam != VK_LEFT)) return false;
    if (Control* next = NextOption(view.control, forward)) {
        next->SetFocus();
        next->UserClicked();
    }
    return true;
}

}  // namespace host
