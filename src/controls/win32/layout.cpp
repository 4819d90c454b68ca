// Where windows stand and which are seen: twips to pixels, pages upon their neighbours, forms on the screen, scrolling.
#include <algorithm>
#include <span>

#include "controls/win32/host.h"
#include "platform/win32/lookup.h"
#include "system/text.h"

namespace host {

namespace {

constexpr int comboListHeight = 200;  // pixels at 96 dpi

bool Contains(const Box& outer, const Box& inner) {
    return outer.left <= inner.left && outer.top <= inner.top && outer.left + outer.width >= inner.left + inner.width &&
           outer.top + outer.height >= inner.top + inner.height;
}

// A page that stands later in the table and is shown lies upon the control.
bool IsCovered(const Control& control, std::span<const Control* const> laterPages) {
    return std::any_of(laterPages.begin(), laterPages.end(), [&](const Control* page) {
        return EqualNoCase(page->Container(), control.Container()) && Contains(page->Place(), control.Place());
    });
}

bool FollowsEdges(const Form& form) {
    return std::any_of(form.Controls().begin(), form.Controls().end(), [](auto& control) {
        return (control->Flags() & (growWidth | growHeight | moveRight | moveDown)) != 0;
    });
}

bool IsSizable(const FormWindow& form) { return form.form.Definition().border == Border::sizable; }

void SetBar(HWND window, int bar, int contents, LONG page, LONG position) {
    SCROLLINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    info.nMax = contents - 1;
    info.nPage = static_cast<UINT>(page);
    info.nPos = static_cast<int>(position);
    SetScrollInfo(window, bar, &info, TRUE);
}

SIZE ContentsOf(const FormWindow& form) {
    return {Pixels(form.form.Width(), form.dpi), Pixels(form.form.Height(), form.dpi)};
}

// A form that is too large for its screen is drawn smaller, though not smaller than at 100 %; beyond that it scrolls.
void FitToScreen(FormWindow& form, LONG width, LONG height) {
    SIZE contents = ContentsOf(form), frame = OuterSize(form, 0, 0);
    LONG fitting = std::min(form.dpi * (width - frame.cx) / contents.cx, form.dpi * (height - frame.cy) / contents.cy);
    if (fitting >= form.dpi || fitting < 96) return;
    form.dpi = static_cast<int>(fitting);
    RefreshAll(form);
}

void ScrollTo(FormWindow& form, LONG x, LONG y) {
    RECT client;
    GetClientRect(form.window, &client);
    SIZE contents = ContentsOf(form);
    x = std::clamp(x, 0L, std::max(contents.cx - client.right, 0L));
    y = std::clamp(y, 0L, std::max(contents.cy - client.bottom, 0L));
    int right = static_cast<int>(form.scroll.x - x), down = static_cast<int>(form.scroll.y - y);
    form.scroll = {x, y};
    SetBar(form.window, SB_HORZ, contents.cx, client.right, x);
    SetBar(form.window, SB_VERT, contents.cy, client.bottom, y);
    if (!right && !down) return;
    ScrollWindowEx(form.window, right, down, nullptr, nullptr, nullptr, nullptr,
                   SW_SCROLLCHILDREN | SW_INVALIDATE | SW_ERASE);
    UpdateWindow(form.window);
}

}  // namespace

RECT WorkArea(HWND window) {
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    if (!GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTOPRIMARY), &monitor))
        SystemParametersInfoW(SPI_GETWORKAREA, 0, &monitor.rcWork, 0);
    return monitor.rcWork;
}

RECT PixelBox(const Control& control, int dpi) {
    const Box& box = control.Place();
    // Both edges are rounded alike, so that neighbours meet.
    RECT place = {Pixels(box.left, dpi), Pixels(box.top, dpi), Pixels(box.left + std::max(box.width, 0), dpi),
                  Pixels(box.top + std::max(box.height, 0), dpi)};
    if (control.GetKind() == Kind::combo) place.bottom += Scaled(comboListHeight, dpi);
    return place;
}

void PlaceControl(ControlWindow& view) {
    int dpi = view.form.dpi;
    HWND parent = GetParent(view.window);
    RECT box = PixelBox(view.control, dpi), now;
    if (parent == view.form.window) OffsetRect(&box, -view.form.scroll.x, -view.form.scroll.y);
    GetWindowRect(view.window, &now);
    MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&now), 2);
    if (!EqualRect(&box, &now))
        SetWindowPos(view.window, nullptr, box.left, box.top, box.right - box.left, box.bottom - box.top,
                     SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS | SWP_FRAMECHANGED);
    WidenLastColumn(view);
    // The class adds its border to the text's height; what is more is the list.
    if (view.control.GetKind() == Kind::combo)
        SendMessageW(view.window, CB_SETITEMHEIGHT, static_cast<WPARAM>(-1),
                     std::max(static_cast<int>(box.bottom - box.top) - Scaled(comboListHeight, dpi) - 6, 8));
}

void PlaceAllControls(FormWindow& form) {
    for (auto& control : form.form.Controls())
        if (ControlWindow* view = WindowOfControl(*control)) {
            Quiet quiet(*view);
            PlaceControl(*view);
        }
}

void RefreshVisibility(FormWindow& form) {
    if (!form.placed) return;  // done once, when the form is shown
    std::vector<const Control*> pages;
    for (auto& control : form.form.Controls())
        if (control->GetKind() == Kind::picture && control->Visible()) pages.push_back(control.get());
    size_t passed = 0;
    for (auto& control : form.form.Controls()) {
        if (passed < pages.size() && pages[passed] == control.get()) ++passed;
        ControlWindow* view = WindowOfControl(*control);
        if (!view) continue;
        bool shown = control->Visible() && !IsCovered(*control, std::span(pages).subspan(passed));
        bool isShown = (GetWindowLongW(view->window, GWL_STYLE) & WS_VISIBLE) != 0;
        if (shown != isShown) ShowWindow(view->window, shown ? SW_SHOWNA : SW_HIDE);
    }
    HWND focus = GetFocus();
    if (focus && IsChild(form.window, focus) && (!IsWindowVisible(focus) || !IsWindowEnabled(focus))) FocusNext(form);
}

SIZE OuterSize(const FormWindow& form, int clientWidth, int clientHeight) {
    static auto* adjustForDpi =
        pc::Lookup<BOOL WINAPI(RECT*, DWORD, BOOL, DWORD, UINT)>(L"user32.dll", "AdjustWindowRectExForDpi");
    auto style = static_cast<DWORD>(GetWindowLongW(form.window, GWL_STYLE)) & ~DWORD{WS_VSCROLL | WS_HSCROLL};
    auto extended = static_cast<DWORD>(GetWindowLongW(form.window, GWL_EXSTYLE));
    RECT frame = {0, 0, clientWidth, clientHeight};
    if (!adjustForDpi || !adjustForDpi(&frame, style, FALSE, extended, static_cast<UINT>(DpiOf(form.window))))
        AdjustWindowRectEx(&frame, style, FALSE, extended);
    return {frame.right - frame.left, frame.bottom - frame.top};
}

SIZE SmallestContents(const FormWindow& form) {
    const FormDefinition& design = form.form.Definition();
    // What scales its controls itself may become small.
    int part = FollowsEdges(form.form) || !form.form.onResize ? 1 : 3;
    return {Pixels(design.width, form.dpi) / part, Pixels(design.height, form.dpi) / part};
}

void PlaceFormFirst(FormWindow& form) {
    form.placed = true;
    HWND owner = GetWindow(form.window, GW_OWNER);
    RECT area = WorkArea(owner ? owner : form.window);
    LONG width = area.right - area.left, height = area.bottom - area.top;
    FitToScreen(form, width, height);
    SIZE contents = ContentsOf(form), size = OuterSize(form, contents.cx, contents.cy);
    if (size.cy > height) size.cx += GetSystemMetrics(SM_CXVSCROLL);
    size = {std::min(size.cx, width), std::min(size.cy, height)};
    RECT around = area;
    if (owner && IsWindowVisible(owner) && !IsIconic(owner)) GetWindowRect(owner, &around);
    LONG left = (around.left + around.right - size.cx) / 2, top = (around.top + around.bottom - size.cy) / 2;
    left = std::clamp(left, area.left, area.right - size.cx);
    top = std::clamp(top, area.top, area.bottom - size.cy);
    SetWindowPos(form.window, nullptr, left, top, size.cx, size.cy, SWP_NOZORDER | SWP_NOACTIVATE);
}

void FormSized(FormWindow& form) {
    if (form.sizing || IsIconic(form.window) || !form.placed) return;
    form.sizing = true;  // scroll bars that come or go change the size again
    RECT client;
    GetClientRect(form.window, &client);
    if (IsSizable(form)) {
        SIZE smallest = SmallestContents(form), now = ContentsOf(form);
        LONG width = std::max(client.right, smallest.cx), height = std::max(client.bottom, smallest.cy);
        if (width != now.cx || height != now.cy) {
            HandlerScope scope;
            Form& model = form.form;
            model.Resized(width == now.cx ? model.Width() : Twips(width, form.dpi),
                          height == now.cy ? model.Height() : Twips(height, form.dpi));
            if (!WindowOfForm(model)) return;
        }
    }
    ScrollTo(form, form.scroll.x, form.scroll.y);
    ScrollTo(form, form.scroll.x, form.scroll.y);  // the second bar sees what the first one takes
    form.sizing = false;
}

void Scroll(FormWindow& form, int bar, WPARAM wParam) {
    SCROLLINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    GetScrollInfo(form.window, bar, &info);
    LONG line = Scaled(24, form.dpi), page = static_cast<LONG>(info.nPage), position = info.nPos;
    switch (LOWORD(wParam)) {
        case SB_LINEUP: position -= line; break;
        case SB_LINEDOWN: position += line; break;
        case SB_PAGEUP: position -= page; break;
        case SB_PAGEDOWN: position += page; break;
        case SB_THUMBTRACK: position = info.nTrackPos; break;
        default: return;
    }
    if (bar == SB_VERT)
        ScrollTo(form, form.scroll.x, position);
    else
        ScrollTo(form, position, form.scroll.y);
}

void ScrollBy(FormWindow& form, int lines) {
    ScrollTo(form, form.scroll.x, form.scroll.y + lines * Scaled(24, form.dpi));
}

void ScrollIntoView(FormWindow& form, HWND control) {
    RECT place, client;
    GetClientRect(form.window, &client);
    if (!GetWindowRect(control, &place)) return;
    MapWindowPoints(nullptr, form.window, reinterpret_cast<POINT*>(&place), 2);
    LONG space = Scaled(8, form.dpi), x = form.scroll.x, y = form.scroll.y;
    if (place.bottom > client.bottom) y += place.bottom - client.bottom + space;
    if (place.top < 0) y += place.top - space;
    if (place.right > client.right) x += place.right - client.right + space;
    if (place.left < 0) x += place.left - space;
    if (x != form.scroll.x || y != form.scroll.y) ScrollTo(form, x, y);
}

}  // namespace host
