// What controls tell the window they lie in: the user's doings go to the model, colours come from the look.
#include <windowsx.h>

#include "controls/win32/host.h"
#include "platform/win32/wide.h"

namespace host {

namespace {

std::string TextOf(HWND window) {
    std::wstring text(static_cast<size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return pc::Utf8(text);
}

void ControlNotified(ControlWindow& view, WORD code) {
    if (view.quiet) return;
    Control& control = view.control;
    switch (control.GetKind()) {
        case Kind::button:
        case Kind::checkBox:
        case Kind::option:
            if (code == BN_CLICKED) control.UserClicked();
            break;
        case Kind::textBox:
            if (code == EN_CHANGE) control.UserTyped(TextOf(view.window));
            break;
        case Kind::combo:
            if (code == CBN_EDITCHANGE) control.UserTyped(TextOf(view.window));
            if (code == CBN_SELCHANGE) control.UserSelected(ComboBox_GetCurSel(view.window));
            break;
        case Kind::list:
            if (code == LBN_SELCHANGE) control.UserSelected(ListBox_GetCurSel(view.window));
            break;
        default: break;
    }
}

}  // namespace

bool HandleChildMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    if (message == WM_COMMAND && lParam) {
        if (ControlWindow* view = ControlOf(reinterpret_cast<HWND>(lParam))) ControlNotified(*view, HIWORD(wParam));
        return true;
    }
    if (message == WM_NOTIFY) {
        auto& notification = *reinterpret_cast<NMHDR*>(lParam);
        ControlWindow* view = ControlOf(notification.hwndFrom);
        if (!view || view->control.GetKind() != Kind::listView) return false;
        ListNotified(*view, notification);
        return true;
    }
    if (message == WM_CTLCOLORSTATIC || message == WM_CTLCOLORBTN) {
        ControlWindow* view = ControlOf(reinterpret_cast<HWND>(lParam));
        if (!view || view->control.GetKind() == Kind::textBox) return false;
        auto dc = reinterpret_cast<HDC>(wParam);
        COLORREF background = BackgroundOf(view->window);
        SetBkColor(dc, background);
        SetTextColor(dc, TextColour(view->control.Colour(), background, PlainTextOn(view->window)));
        const Look& look = Colours();
        result = reinterpret_cast<LRESULT>((background == look.card ? look.cardBrush : look.pageBrush).Get());
        return true;
    }
    return false;
}

}  // namespace host
