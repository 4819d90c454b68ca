// The sidebar: a column of cards, each with a header that collapses it and a row for each item. Headers and items are
// owner-drawn buttons, so that keyboard, screen readers and tests have them as such.
#include <algorithm>

#include "controls/win32/drawing.h"
#include "controls/win32/host.h"
#include "platform/win32/wide.h"
#include "system/text.h"

namespace host {

namespace {

enum class PartKind : uint8_t { header, item, subHeading, detail };

struct Part {
    ControlWindow& bar;
    PartKind kind;
    int group, item;  // both from 1; item 0 is the header
    HWND window = nullptr;
    WNDPROC original = nullptr;
    bool hot = false;
};

}  // namespace

// Parts are freed with their windows.
struct SideBarView {
    std::vector<Part*> parts;
    std::vector<RECT> cards;
    int scroll = 0, height = 0;  // pixels
};

namespace {

// Pixels at 96 dots per inch.
constexpr int margin = 12, cardGap = 12, radius = 5, padding = 14, rowPadding = 6, textLeft = 30, itemEnd = 10,
              chevronRoom = 30, bottomPadding = 5;
constexpr UINT wrapping = DT_WORDBREAK | DT_NOPREFIX;

const SideBarGroup& GroupOf(const Part& part) { return part.bar.control.Groups()[static_cast<size_t>(part.group) - 1]; }
int Scale(const Part& part, int pixels) { return Scaled(pixels, part.bar.form.dpi); }
bool IsButton(const Part& part) { return part.kind == PartKind::header || part.kind == PartKind::item; }
HFONT PartFont(const Part& part) {
    return FontOf(part.bar.form.dpi, part.kind == PartKind::header || part.kind == PartKind::subHeading ? fontBold : 0);
}
std::wstring PartText(const Part& part) {
    const SideBarGroup& group = GroupOf(part);
    if (part.kind == PartKind::header) return pc::Wide(group.heading);
    if (part.kind == PartKind::subHeading) return pc::Wide(group.subHeading);
    const SideBarItem& item = group.items[static_cast<size_t>(part.item) - 1];
    return pc::Wide(part.kind == PartKind::detail ? item.detail : item.caption);
}
bool IsDetail(const SideBarGroup& group) { return !group.items.empty() && group.items[0].caption.empty(); }

// --- drawing

void DrawChevron(HDC dc, const Part& part, const RECT& client, COLORREF colour) {
    int half = Scale(part, 4), x = client.right - Scale(part, padding) - half, y = client.bottom / 2;
    int rise = GroupOf(part).expanded ? half / 2 : -(half / 2);
    POINT line[3] = {{x - half, y + rise}, {x, y - rise}, {x + half, y + rise}};
    DrawLines(dc, line, 3, std::max(Scale(part, 3) / 2, 1), colour);
}

// Over as many lines as it needs, in the middle of the height.
void DrawPartText(HDC dc, const Part& part, const RECT& client, int left, int right, COLORREF colour) {
    RECT area = {left, 0, client.right - right, client.bottom};
    SIZE size = MeasureString(PartText(part), PartFont(part), area.right - area.left, wrapping);
    area.top = std::max<LONG>((client.bottom - size.cy) / 2, 0);
    DrawString(dc, PartText(part), area, PartFont(part), colour, wrapping);
}

void DrawHeader(HDC dc, const Part& part, const RECT& client, bool pressed) {
    const Look& look = Colours();
    const SideBarGroup& group = GroupOf(part);
    COLORREF plain = Mix(look.card, look.accent, part.hot ? 20 : 11),
             special = Mix(look.accent, look.card, part.hot ? 12 : 0);
    COLORREF fill = group.special ? special : look.highContrast ? look.card : plain;
    if (pressed) fill = Mix(fill, look.accent, 20);
    COLORREF text = group.special ? look.onAccent : look.accent;
    Fill(dc, client, look.side);
    RECT card = client;
    if (group.expanded) card.bottom += Scale(part, 2 * radius);  // only the upper corners are round
    FillRound(dc, card, Scale(part, radius), fill, group.special ? fill : look.border);
    DrawChevron(dc, part, client, text);
    DrawPartText(dc, part, client, Scale(part, padding), Scale(part, chevronRoom), text);
}

void DrawItem(HDC dc, const Part& part, const RECT& client, bool pressed) {
    const Look& look = Colours();
    Fill(dc, client, look.card);
    bool marked = part.group == 1 && part.item == part.bar.control.Value();
    bool lit = part.hot || pressed || marked;
    RECT row = {Scale(part, 4), Scale(part, 1), client.right - Scale(part, 4), client.bottom - Scale(part, 1)};
    COLORREF fill = pressed ? look.pressed : look.hover;
    if (lit) FillRound(dc, row, Scale(part, 4), fill, fill);
    if (marked) Fill(dc, {0, row.top, Scale(part, 3), row.bottom}, look.accent);
    bool enabled = IsWindowEnabled(part.bar.window) != FALSE;
    COLORREF text = !enabled            ? look.grey
                    : !lit              ? look.cardText
                    : look.highContrast ? GetSysColor(COLOR_HIGHLIGHTTEXT)
                                        : look.accent;
    int half = Scale(part, 3), x = Scale(part, padding + 3), y = client.bottom / 2;
    POINT arrow[3] = {{x - half / 2, y - half}, {x + half - half / 2, y}, {x - half / 2, y + half}};
    DrawLines(dc, arrow, 3, std::max(Scale(part, 3) / 2, 1), lit || !enabled ? text : look.accent);
    DrawPartText(dc, part, client, Scale(part, textLeft), Scale(part, itemEnd), text);
}

void DrawPart(const Part& part, const DRAWITEMSTRUCT& draw) {
    RECT client;
    GetClientRect(part.window, &client);
    Canvas canvas(draw.hDC, client);
    bool pressed = (draw.itemState & ODS_SELECTED) != 0;
    if (part.kind == PartKind::header)
        DrawHeader(canvas.Dc(), part, client, pressed);
    else
        DrawItem(canvas.Dc(), part, client, pressed);
    if ((draw.itemState & ODS_FOCUS) && FocusIsVisible(part.window)) {
        InflateRect(&client, -Scale(part, 3), -Scale(part, 3));
        SetTextColor(canvas.Dc(), GetSysColor(COLOR_WINDOWTEXT));
        SetBkColor(canvas.Dc(), GetSysColor(COLOR_WINDOW));
        DrawFocusRect(canvas.Dc(), &client);
    }
}

void DrawBackground(const ControlWindow& bar, HDC target) {
    RECT client;
    GetClientRect(bar.window, &client);
    Canvas canvas(target, client);
    const Look& look = Colours();
    Fill(canvas.Dc(), client, look.side);
    Fill(canvas.Dc(), {client.right - 1, 0, client.right, client.bottom}, look.border);
    for (RECT card : bar.sideBar->cards) {
        OffsetRect(&card, 0, -bar.sideBar->scroll);
        FillRound(canvas.Dc(), card, Scaled(radius, bar.form.dpi), look.card, look.border);
    }
}

// --- layout

int PartHeight(const Part& part, int width) {
    bool header = part.kind == PartKind::header, item = part.kind == PartKind::item;
    int beside = header ? padding + chevronRoom : item ? textLeft + itemEnd : 0;
    int text = MeasureString(PartText(part), PartFont(part), width - Scale(part, beside), wrapping).cy;
    if (header) return std::max(Scale(part, 32), text + Scale(part, 2 * rowPadding));
    return text + Scale(part, item ? 2 * rowPadding : 4);
}

// Places the parts of one group from y on; the y below it.
int LayoutGroup(ControlWindow& bar, int group, int y, int width) {
    SideBarView& view = *bar.sideBar;
    int dpi = bar.form.dpi, left = Scaled(margin, dpi), top = y;
    bool expanded = bar.control.Groups()[static_cast<size_t>(group) - 1].expanded;
    int cardWidth = width - 2 * left;
    for (Part* part : view.parts) {
        if (part->group != group) continue;
        bool seen = part->kind == PartKind::header || expanded;
        if (seen && part->kind == PartKind::subHeading) y += Scaled(10, dpi);
        // Texts stand inside; a row leaves the card's border free.
        int inset = part->kind == PartKind::header ? 0 : IsButton(*part) ? 1 : Scaled(padding, dpi);
        int partWidth = cardWidth - 2 * inset, height = seen ? PartHeight(*part, partWidth) : 0;
        SetWindowPos(part->window, nullptr, left + inset, y - view.scroll, partWidth, height,
                     SWP_NOZORDER | SWP_NOACTIVATE | (seen ? SWP_SHOWWINDOW : SWP_HIDEWINDOW));
        InvalidateRect(part->window, nullptr, TRUE);
        y += height;
        if (part->kind == PartKind::header && expanded) y += Scaled(4, dpi);
    }
    if (expanded) y += Scaled(bottomPadding, dpi);
    view.cards.push_back({left, top, left + cardWidth, y});
    return y;
}

bool LayoutAt(ControlWindow& bar, int width) {
    bar.sideBar->cards.clear();
    int y = Scaled(margin, bar.form.dpi);
    for (size_t group = 1; group <= bar.control.Groups().size(); group++)
        y = LayoutGroup(bar, static_cast<int>(group), y, width) + Scaled(cardGap, bar.form.dpi);
    bar.sideBar->height = y;
    RECT client;
    GetClientRect(bar.window, &client);
    return y <= client.bottom;
}

void ScrollTo(ControlWindow& bar, int position) {
    RECT client;
    GetClientRect(bar.window, &client);
    position = std::clamp(position, 0, std::max<int>(bar.sideBar->height - client.bottom, 0));
    if (position == bar.sideBar->scroll) return;
    bar.sideBar->scroll = position;
    LayoutSideBar(bar);
    UpdateWindow(bar.window);
}

void OnScroll(ControlWindow& bar, WORD code) {
    SCROLLINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    GetScrollInfo(bar.window, SB_VERT, &info);
    int line = Scaled(32, bar.form.dpi), page = static_cast<int>(info.nPage);
    switch (code) {
        case SB_LINEUP: return ScrollTo(bar, info.nPos - line);
        case SB_LINEDOWN: return ScrollTo(bar, info.nPos + line);
        case SB_PAGEUP: return ScrollTo(bar, info.nPos - page);
        case SB_PAGEDOWN: return ScrollTo(bar, info.nPos + page);
        case SB_THUMBTRACK: return ScrollTo(bar, info.nTrackPos);
        default: return;
    }
}

void ShowPart(const Part& part) {
    RECT client, place;
    GetClientRect(part.bar.window, &client);
    GetWindowRect(part.window, &place);
    MapWindowPoints(nullptr, part.bar.window, reinterpret_cast<POINT*>(&place), 2);
    int scroll = part.bar.sideBar->scroll, space = Scale(part, margin);
    if (place.top < 0)
        ScrollTo(part.bar, scroll + place.top - space);
    else if (place.bottom > client.bottom)
        ScrollTo(part.bar, scroll + place.bottom - client.bottom + space);
}

// --- what the user does

// step 1 or -1; what is collapsed is passed over.
void FocusNeighbour(const Part& part, int step) {
    auto& parts = part.bar.sideBar->parts;
    auto count = static_cast<int>(parts.size());
    for (int i = static_cast<int>(std::find(parts.begin(), parts.end(), &part) - parts.begin()) + step;
         i >= 0 && i < count; i += step) {
        Part* next = parts[static_cast<size_t>(i)];
        if (!IsButton(*next) || !IsWindowVisible(next->window)) continue;
        SetFocus(next->window);
        return;
    }
}

bool OnKey(Part& part, WPARAM key) {
    switch (key) {
        case VK_UP: FocusNeighbour(part, -1); return true;
        case VK_DOWN: FocusNeighbour(part, 1); return true;
        case VK_RETURN: SendMessageW(part.window, BM_CLICK, 0, 0); return true;
        case VK_LEFT:
        case VK_RIGHT:
            if (part.kind == PartKind::header)
                part.bar.control.Expand(static_cast<size_t>(part.group), key == VK_RIGHT);
            return true;
        default: return false;
    }
}

void OnPartClicked(const Part& part, WORD code) {
    Control& control = part.bar.control;
    if (part.kind == PartKind::header && (code == BN_CLICKED || code == BN_DOUBLECLICKED))
        control.Expand(static_cast<size_t>(part.group), !GroupOf(part).expanded);
    else if (part.kind == PartKind::item && code == BN_CLICKED)
        control.UserClickedItem(part.group, part.item);  // the window may be gone now
}

void TrackPart(Part& part) {
    if (part.hot) return;
    part.hot = true;
    TRACKMOUSEEVENT track = {sizeof track, TME_LEAVE, part.window, 0};
    TrackMouseEvent(&track);
    InvalidateRect(part.window, nullptr, FALSE);
}

LRESULT CALLBACK PartProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* part = reinterpret_cast<Part*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (!part) return DefWindowProcW(window, message, wParam, lParam);
    WNDPROC original = part->original;
    switch (message) {
        case WM_NCDESTROY:
            RemoveAutomationName(window);
            SetWindowLongPtrW(window, GWLP_USERDATA, 0);
            delete part;
            break;
        case WM_ERASEBKGND:
            if (IsButton(*part)) return TRUE;
            break;
        case WM_MOUSEMOVE: TrackPart(*part); break;
        case WM_MOUSELEAVE:
            part->hot = false;
            InvalidateRect(window, nullptr, FALSE);
            break;
        case WM_SETFOCUS: ShowPart(*part); break;
        case WM_SETCURSOR:
            if (part->kind != PartKind::item) break;
            SetCursor(LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_HAND)));
            return TRUE;
        case WM_GETDLGCODE:
            if (IsButton(*part)) {
                auto* asked = reinterpret_cast<const MSG*>(lParam);
                bool enter = asked && asked->message == WM_KEYDOWN && asked->wParam == VK_RETURN;
                return DLGC_BUTTON | DLGC_WANTARROWS | (enter ? DLGC_WANTMESSAGE : 0);
            }
            break;
        case WM_KEYDOWN:
            if (OnKey(*part, wParam)) return 0;
            break;
        default: break;
    }
    return CallWindowProcW(original, window, message, wParam, lParam);
}

// --- making the parts

void AddPart(ControlWindow& bar, PartKind kind, int group, int item) {
    auto part = std::make_unique<Part>(Part{bar, kind, group, item});
    bool button = kind == PartKind::header || kind == PartKind::item;
    DWORD style = button ? BS_OWNERDRAW | WS_TABSTOP : SS_NOPREFIX;
    part->window = CreateWindowExW(0, button ? WC_BUTTONW : WC_STATICW, PartText(*part).c_str(),
                                   WS_CHILD | WS_CLIPSIBLINGS | style, 0, 0, 0, 0, bar.window, nullptr,
                                   GetModuleHandleW(nullptr), nullptr);
    if (!part->window) return;
    std::string name = bar.control.Name() + "." + NumberText(group);
    if (kind != PartKind::header) name += "." + NumberText(item);
    SetAutomationName(part->window, name);
    SendMessageW(part->window, WM_SETFONT, reinterpret_cast<WPARAM>(PartFont(*part)), FALSE);
    bar.sideBar->parts.push_back(part.get());
    SetWindowLongPtrW(part->window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(part.get()));
    part->original = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(part->window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(PartProcedure)));
    part.release();
}

Part* PartOf(LPARAM window) {
    return reinterpret_cast<Part*>(GetWindowLongPtrW(reinterpret_cast<HWND>(window), GWLP_USERDATA));
}

}  // namespace

void RebuildSideBar(ControlWindow& bar) {
    if (!bar.sideBar) bar.sideBar = std::make_shared<SideBarView>();
    for (Part* part : std::vector<Part*>(std::move(bar.sideBar->parts))) DestroyWindow(part->window);
    bar.sideBar->parts.clear();
    if (!bar.form.placed) return;  // groups come one by one: once when the form is shown
    int number = 0;
    for (const SideBarGroup& group : bar.control.Groups()) {
        number++;
        AddPart(bar, PartKind::header, number, 0);
        bool detail = IsDetail(group);
        if (detail && !group.subHeading.empty()) AddPart(bar, PartKind::subHeading, number, 0);
        for (size_t item = 1; item <= group.items.size(); item++)
            AddPart(bar, detail ? PartKind::detail : PartKind::item, number, static_cast<int>(item));
    }
    LayoutSideBar(bar);
}

void LayoutSideBar(ControlWindow& bar) {
    if (!bar.sideBar || !bar.form.placed) return;
    for (Part* part : bar.sideBar->parts)
        SendMessageW(part->window, WM_SETFONT, reinterpret_cast<WPARAM>(PartFont(*part)), FALSE);
    RECT client;
    GetWindowRect(bar.window, &client);
    int width = client.right - client.left;
    if (!LayoutAt(bar, width)) LayoutAt(bar, width - GetSystemMetrics(SM_CXVSCROLL));
    GetClientRect(bar.window, &client);
    SCROLLINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    info.nMax = bar.sideBar->height - 1;
    info.nPage = static_cast<UINT>(client.bottom);
    info.nPos = bar.sideBar->scroll;
    SetScrollInfo(bar.window, SB_VERT, &info, TRUE);
    InvalidateRect(bar.window, nullptr, TRUE);
    int highest = std::max<int>(bar.sideBar->height - client.bottom, 0);
    if (bar.sideBar->scroll > highest) ScrollTo(bar, highest);
}

bool SideBarMessage(ControlWindow& view, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    if (!view.sideBar) return false;
    switch (message) {
        case WM_ERASEBKGND:
            DrawBackground(view, reinterpret_cast<HDC>(wParam));
            result = TRUE;
            return true;
        case WM_SIZE: LayoutSideBar(view); return true;
        case WM_SETFONT: return true;
        case WM_VSCROLL: OnScroll(view, LOWORD(wParam)); return true;
        case WM_MOUSEWHEEL:
            ScrollTo(view, view.sideBar->scroll -
                               static_cast<short>(HIWORD(wParam)) * Scaled(96, view.form.dpi) / WHEEL_DELTA);
            return true;
        case WM_DRAWITEM:
            if (Part* part = PartOf(reinterpret_cast<LPARAM>(reinterpret_cast<DRAWITEMSTRUCT*>(lParam)->hwndItem)))
                DrawPart(*part, *reinterpret_cast<DRAWITEMSTRUCT*>(lParam));
            result = TRUE;
            return true;
        case WM_COMMAND:
            if (Part* part = lParam ? PartOf(lParam) : nullptr) OnPartClicked(*part, HIWORD(wParam));
            return true;
        case WM_CTLCOLORSTATIC: {
            auto dc = reinterpret_cast<HDC>(wParam);
            SetTextColor(dc, Colours().cardText);
            SetBkColor(dc, Colours().card);
            result = reinterpret_cast<LRESULT>(Colours().cardBrush.Get());
            return true;
        }
        default: return false;
    }
}

}  // namespace host
