// Makes the windows of controls by a table of kinds, keeps them up with the model, and brings the user's doings to it.
#include <algorithm>
#include <utility>

#include "controls/win32/host.h"
#include "platform/win32/wide.h"
#include "system/text.h"

namespace host {

namespace {

constexpr int firstId = 100;  // above the identifiers that dialogs use for OK and Cancel

struct KindWindow {
    const wchar_t* className;
    DWORD style, extendedStyle;
    Handler handler;
};

constexpr DWORD listView = LVS_REPORT | LVS_SHOWSELALWAYS | LVS_SINGLESEL | LVS_NOSORTHEADER | WS_TABSTOP | WS_GROUP;

KindWindow WindowKind(const Control& control) {
    Handler handler = control.GetKind() == Kind::image ? ImageMessage : LabelMessage;
    // To screen readers a link is a button; what it looks like is painted here in any case.
    if (IsLink(control)) return {WC_BUTTONW, BS_OWNERDRAW | WS_GROUP, 0, handler};
    switch (control.GetKind()) {
        case Kind::label: return {WC_STATICW, WS_GROUP, 0, LabelMessage};
        case Kind::textBox: return {WC_EDITW, ES_AUTOHSCROLL | WS_TABSTOP | WS_GROUP, WS_EX_CLIENTEDGE, EditMessage};
        case Kind::button: return {WC_BUTTONW, BS_PUSHBUTTON | BS_MULTILINE | WS_TABSTOP | WS_GROUP, 0, nullptr};
        case Kind::checkBox: return {WC_BUTTONW, BS_CHECKBOX | WS_TABSTOP | WS_GROUP, 0, nullptr};
        case Kind::option: return {WC_BUTTONW, BS_RADIOBUTTON, 0, OptionMessage};
        case Kind::combo: return {WC_COMBOBOXW, CBS_AUTOHSCROLL | WS_VSCROLL | WS_TABSTOP | WS_GROUP, 0, nullptr};
        case Kind::list:
            return {WC_LISTBOXW, LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_VSCROLL | WS_TABSTOP | WS_GROUP,
                    WS_EX_CLIENTEDGE, nullptr};
        case Kind::listView: return {WC_LISTVIEWW, listView, WS_EX_CLIENTEDGE, nullptr};
        case Kind::image: return {WC_STATICW, WS_GROUP, 0, ImageMessage};
        case Kind::progress: return {PROGRESS_CLASSW, PBS_SMOOTH, 0, nullptr};
        case Kind::sideBar: return {surfaceClass, WS_CLIPCHILDREN, WS_EX_CONTROLPARENT, SideBarMessage};
        case Kind::browser: return {surfaceClass, WS_CLIPCHILDREN | WS_GROUP, WS_EX_CONTROLPARENT, BrowserMessage};
        default: return {surfaceClass, WS_CLIPCHILDREN | WS_GROUP, WS_EX_CONTROLPARENT, ContainerMessage};
    }
}

DWORD StyleOf(const Control& control) {
    uint32_t flags = control.Flags();
    DWORD style = WS_CHILD | WS_CLIPSIBLINGS | WindowKind(control).style;
    if (!control.Enabled()) style |= WS_DISABLED;
    switch (control.GetKind()) {
        case Kind::label:
            if ((flags & noPrefix) && !IsLink(control)) style |= SS_NOPREFIX;
            break;
        case Kind::textBox:
            if (flags & multiLine) {
                style &= ~DWORD{ES_AUTOHSCROLL};
                style |= ES_MULTILINE | ES_AUTOVSCROLL | ES_WANTRETURN | WS_VSCROLL;
            }
            if (flags & password) style |= ES_PASSWORD;
            if (flags & readOnly) style |= ES_READONLY;
            if (flags & alignCenter) style |= ES_CENTER;
            if (flags & alignRight) style |= ES_RIGHT;
            break;
        case Kind::button:
            if (flags & defaultButton) style |= BS_DEFPUSHBUTTON;
            break;
        case Kind::checkBox:
        case Kind::option:
            if (flags & wrap) style |= BS_MULTILINE | BS_TOP;
            break;
        case Kind::combo: style |= flags & dropList ? CBS_DROPDOWNLIST : CBS_DROPDOWN; break;
        default: break;
    }
    return style;
}

// Where the window's class would take "&" for an access key.
std::wstring WindowText(const Control& control) {
    bool isButton =
        control.GetKind() == Kind::button || control.GetKind() == Kind::checkBox || control.GetKind() == Kind::option;
    std::string text = control.Text();
    if (isButton && (control.Flags() & noPrefix)) text = ReplaceAll(text, "&", "&&");
    return pc::Wide(text);
}

void TrackLeave(ControlWindow& view) {
    if (view.hot) return;
    view.hot = true;
    TRACKMOUSEEVENT track = {sizeof track, TME_LEAVE, view.window, 0};
    TrackMouseEvent(&track);
    InvalidateRect(view.window, nullptr, FALSE);
}

void RelayToToolTip(const ControlWindow& view, UINT message, WPARAM wParam, LPARAM lParam) {
    MSG relayed = {};
    relayed.hwnd = view.window;
    relayed.message = message;
    relayed.wParam = wParam;
    relayed.lParam = lParam;
    SendMessageW(view.form.toolTips, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&relayed));
}

// The window procedure of all controls: the kind's handler, then the window's class.
LRESULT CALLBACK ControlProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    ControlWindow* view = ControlOf(window);
    if (!view) return DefWindowProcW(window, message, wParam, lParam);
    WNDPROC original = view->original;
    if (message >= WM_MOUSEFIRST && message <= WM_MBUTTONUP) RelayToToolTip(*view, message, wParam, lParam);
    if (message == WM_MOUSELEAVE) view->hot = false;
    if (message == WM_MOUSEMOVE) {
        if (IsLink(view->control)) TrackLeave(*view);
        if (auto handler = view->control.onMouseMove) {
            HandlerScope scope;
            handler();
            if (!ControlOf(window)) return 0;
        }
    }
    if (message == WM_NCDESTROY) {
        RemoveAutomationName(window);
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        view->control.hostData = 0;
        delete view;
        return CallWindowProcW(original, window, message, wParam, lParam);
    }
    LRESULT result = 0;
    Handler handler = WindowKind(view->control).handler;
    if (handler && handler(*view, message, wParam, lParam, result)) return result;
    return CallWindowProcW(original, window, message, wParam, lParam);
}

void AddToolTip(const ControlWindow& view) {
    TOOLINFOW tool = {};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.uFlags = TTF_IDISHWND;
    tool.hwnd = view.form.window;
    tool.uId = reinterpret_cast<UINT_PTR>(view.window);
    tool.lpszText = LPSTR_TEXTCALLBACKW;
    SendMessageW(view.form.toolTips, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

void SetUpKind(ControlWindow& view) {
    const Control& control = view.control;
    switch (control.GetKind()) {
        case Kind::textBox: SendMessageW(view.window, EM_SETLIMITTEXT, 0, 0); break;
        case Kind::listView: SetUpListView(view); break;
        default: break;
    }
    if (control.GetKind() == Kind::image) LoadPicture(view);
}

HWND CreateControl(FormWindow& form, Control& control);

HWND ParentOf(FormWindow& form, const Control& control) {
    Control* container = control.Container().empty() ? nullptr : form.form.Find(control.Container());
    return container && container != &control ? CreateControl(form, *container) : form.window;
}

int IdOf(const Form& form, const Control& control) {
    auto& controls = form.Controls();
    auto found = std::find_if(controls.begin(), controls.end(), [&](auto& each) { return each.get() == &control; });
    return firstId + static_cast<int>(found - controls.begin());
}

HWND CreateControl(FormWindow& form, Control& control) {
    if (ControlWindow* made = WindowOfControl(control)) return made->window;
    HWND parent = ParentOf(form, control);
    KindWindow kind = WindowKind(control);
    auto view = std::make_unique<ControlWindow>(control, form);
    RECT box = PixelBox(control, form.dpi);
    DWORD style = StyleOf(control) | (control.Visible() ? WS_VISIBLE : 0u);
    view->window = CreateWindowExW(kind.extendedStyle, kind.className, WindowText(control).c_str(), style, box.left,
                                   box.top, box.right - box.left, box.bottom - box.top, parent,
                                   reinterpret_cast<HMENU>(static_cast<INT_PTR>(IdOf(form.form, control))),
                                   GetModuleHandleW(nullptr), nullptr);
    if (!view->window) return form.window;
    HWND window = view->window;
    SetAutomationName(window, control.Name());
    ControlWindow& made = *view.release();  // freed with its window
    control.hostData = reinterpret_cast<intptr_t>(&made);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&made));
    made.original = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(ControlProcedure)));
    AddToolTip(made);
    Quiet quiet(made);
    SetUpKind(made);
    return window;
}

// A later image or page lies upon what it overlaps; everything else does not overlap, and its order is that of Tab.
void RaiseOverlapping(const FormWindow& form) {
    for (auto& upper : form.form.Controls()) {
        Kind kind = upper->GetKind();
        ControlWindow* view = WindowOfControl(*upper);
        if ((kind != Kind::image && kind != Kind::picture) || !view || view->isFinished) continue;
        for (auto& lower : form.form.Controls()) {
            if (lower == upper) break;
            if (!WindowOfControl(*lower) || !EqualNoCase(lower->Container(), upper->Container())) continue;
            const Box &a = lower->Place(), &b = upper->Place();
            bool apart = a.left + a.width <= b.left || b.left + b.width <= a.left || a.top + a.height <= b.top ||
                         b.top + b.height <= a.top;
            if (apart) continue;
            HWND above = GetWindow(WindowOfControl(*lower)->window, GW_HWNDPREV);
            SetWindowPos(view->window, above ? above : HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
            break;
        }
    }
}

bool HasTimer(const Control& control) { return control.GetKind() == Kind::timer; }

void ApplyTimer(const Control& control) {
    HWND form = WindowOfForm(control.Owner())->window;
    if (control.Enabled() && control.Interval() > 0)
        SetTimer(form, TimerId(control), static_cast<UINT>(control.Interval()), nullptr);
    else
        KillTimer(form, TimerId(control));
}

// A transfer sets the bar for every block; the window is asked only when it shows.
bool MovesBar(ControlWindow& view) {
    const Control& bar = view.control;
    int steps = bar.Place().width / 15;  // a pixel at 100 %
    int64_t shown = int64_t{bar.Maximum()} << 32 | int64_t{bar.Value()} * steps / bar.Maximum();
    return std::exchange(view.barShown, shown) != shown;
}

void ShowValue(ControlWindow& view) {
    const Control& control = view.control;
    auto value = static_cast<WPARAM>(control.Value());
    switch (control.GetKind()) {
        case Kind::checkBox: SendMessageW(view.window, BM_SETCHECK, value, 0); break;
        case Kind::option:
            SendMessageW(view.window, BM_SETCHECK, value, 0);
            RefreshTabStops(view.form);
            break;
        case Kind::progress:
            if (!MovesBar(view)) break;
            SendMessageW(view.window, PBM_SETRANGE32, 0, control.Maximum());
            SendMessageW(view.window, PBM_SETPOS, value, 0);
            break;
        case Kind::sideBar: LayoutSideBar(view); break;
        default: ShowSelection(view); break;
    }
}

void ShowText(ControlWindow& view) {
    Kind kind = view.control.GetKind();
    std::wstring text = WindowText(view.control);
    if (kind == Kind::combo && (view.control.Flags() & dropList)) return ShowSelection(view);
    SetWindowTextW(view.window, text.c_str());
    // A long step need not let events run to be seen.
    if (kind == Kind::label) UpdateWindow(view.window);
}

void ShowLook(ControlWindow& view) {
    if (view.control.GetKind() == Kind::listView) return FitListColumns(view);
    SendMessageW(view.window, WM_SETFONT, reinterpret_cast<WPARAM>(FontFor(view)), TRUE);
    InvalidateRect(view.window, nullptr, TRUE);
}

void ShowItems(ControlWindow& view) {
    if (view.control.GetKind() == Kind::sideBar)
        RebuildSideBar(view);
    else
        FillItems(view);
}

void TakeFocus(ControlWindow& view) {
    if (view.form.form.Visible() && IsWindowVisible(view.window))
        SetFocus(view.window);
    else
        view.form.lastFocus = view.window;
}

// The windows of a page are made when it is first shown: the console has fifteen pages and shows one.
bool IsOnHiddenPage(const Control& control) {
    const Control* container = control.Owner().Find(control.Container());
    if (!container) return false;
    return (container->GetKind() == Kind::picture && !container->Visible()) || IsOnHiddenPage(*container);
}

void EnableControl(ControlWindow& view) {
    EnableWindow(view.window, view.control.Enabled());
    InvalidateRect(view.window, nullptr, TRUE);
    RefreshVisibility(view.form);
}

}  // namespace

UINT_PTR TimerId(const Control& control) { return static_cast<UINT_PTR>(IdOf(control.Owner(), control)); }

ControlWindow* WindowOfControl(const Control& control) { return reinterpret_cast<ControlWindow*>(control.hostData); }

ControlWindow* ControlOf(HWND window) {
    if (!window || GetWindowLongPtrW(window, GWLP_WNDPROC) != reinterpret_cast<LONG_PTR>(ControlProcedure))
        return nullptr;
    return reinterpret_cast<ControlWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
}

void CreateControls(FormWindow& form) {
    for (auto& control : form.form.Controls()) {
        if (HasTimer(*control) || IsOnHiddenPage(*control)) continue;
        CreateControl(form, *control);
    }
    RaiseOverlapping(form);
    for (auto& control : form.form.Controls()) {
        ControlWindow* view = WindowOfControl(*control);
        if (!view || view->isFinished) continue;
        Quiet quiet(*view);
        SendMessageW(view->window, WM_SETFONT, reinterpret_cast<WPARAM>(FontFor(*view)), FALSE);
        PlaceControl(*view);
        ShowItems(*view);
        ShowValue(*view);
        FitListColumns(*view);
        view->isFinished = true;
    }
}

void RefreshFonts(FormWindow& form) {
    for (auto& control : form.form.Controls())
        if (ControlWindow* view = WindowOfControl(*control)) {
            Quiet quiet(*view);
            SendMessageW(view->window, WM_SETFONT, reinterpret_cast<WPARAM>(FontFor(*view)), FALSE);
        }
    RefreshToolTips(form);
}

void RefreshToolTips(FormWindow& form) {
    SendMessageW(form.toolTips, WM_SETFONT, reinterpret_cast<WPARAM>(FontOf(form.dpi, 0)), FALSE);
    SendMessageW(form.toolTips, TTM_SETMAXTIPWIDTH, 0, Scaled(400, form.dpi));
}

unsigned FontStyle(const Control& control) {
    return (control.Bold() ? fontBold : 0) | (control.Underline() ? fontUnderline : 0) |
           (control.Flags() & heading ? fontHeading : 0) | (control.Flags() & note ? fontNote : 0);
}

HFONT FontFor(const ControlWindow& view) {
    unsigned style = FontStyle(view.control);
    if (view.hot && view.control.GetKind() == Kind::label && IsLink(view.control)) style |= fontUnderline;
    return FontOf(view.form.dpi, style);
}

COLORREF BackgroundOf(HWND window) {
    ControlWindow* parent = ControlOf(GetParent(window));
    return parent && parent->control.GetKind() == Kind::frame ? Colours().card : Colours().page;
}

COLORREF PlainTextOn(HWND window) {
    ControlWindow* parent = ControlOf(GetParent(window));
    return parent && parent->control.GetKind() == Kind::frame ? Colours().cardText : Colours().pageText;
}

bool FocusIsVisible(HWND window) { return !(SendMessageW(window, WM_QUERYUISTATE, 0, 0) & UISF_HIDEFOCUS); }

void RefreshTabStops(FormWindow& form) {
    if (!form.placed) return;  // done once, when the form is shown
    auto& controls = form.form.Controls();
    for (auto& control : controls) {
        ControlWindow* view = WindowOfControl(*control);
        bool isOption = control->GetKind() == Kind::option;
        if (!view || (!isOption && control->GetKind() != Kind::label && control->GetKind() != Kind::image)) continue;
        // Of options Tab reaches the chosen one; where none is chosen, all.
        bool reached = IsLink(*control);
        if (isOption)
            reached = control->Value() != 0 || std::none_of(controls.begin(), controls.end(), [&](auto& other) {
                          return other->Value() != 0 && control->Excludes(*other);
                      });
        LONG style = GetWindowLongW(view->window, GWL_STYLE);
        LONG wanted = reached ? style | WS_TABSTOP : style & ~WS_TABSTOP;
        if (wanted != style) SetWindowLongW(view->window, GWL_STYLE, wanted);
    }
}

void Update(Control& control, Change change) {
    if (HasTimer(control)) return ApplyTimer(control);
    ControlWindow* found = WindowOfControl(control);
    if (!found) return;
    ControlWindow& view = *found;
    Quiet quiet(view);
    switch (change) {
        case Change::text: ShowText(view); break;
        case Change::visible:
            if (control.GetKind() == Kind::picture && control.Visible()) {
                CreateControls(view.form);
                RefreshTabStops(view.form);
            }
            RefreshVisibility(view.form);
            break;
        case Change::enabled: EnableControl(view); break;
        case Change::value: ShowValue(view); break;
        case Change::look: ShowLook(view); break;
        case Change::place:
            PlaceControl(view);
            RefreshVisibility(view.form);
            break;
        case Change::items: ShowItems(view); break;
        case Change::picture: LoadPicture(view); break;
        case Change::focus: TakeFocus(view); break;
        case Change::address: ShowAddress(view); break;
        case Change::toolTip:  // asked for when it is to be shown; to a screen reader it is a picture's name
            if (control.GetKind() == Kind::image && !control.ToolTip().empty())
                SetWindowTextW(view.window, pc::Wide(control.ToolTip()).c_str());
            break;
        case Change::timer: break;
    }
}

}  // namespace host
