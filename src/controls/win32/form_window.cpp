// Windows of forms: made from the definition, kept up with the model, and their messages.
#include <ole2.h>

#include <algorithm>

#include "controls/win32/drawing.h"
#include "controls/win32/host.h"
#include "platform/win32/lookup.h"
#include "platform/win32/wide.h"
#include "system/text.h"

namespace host {

namespace {

constexpr UINT messageDpiChanged = 0x02E0, messageThemeChanged = 0x031A;

struct BorderStyle {
    DWORD style, extended;
};

BorderStyle StyleOf(Border border) {
    constexpr DWORD always = WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
    switch (border) {
        case Border::sizable: return {always | WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX, 0};
        case Border::dialog: return {always | WS_POPUP, WS_EX_DLGMODALFRAME};
        case Border::toolWindow: return {always | WS_POPUP, WS_EX_TOOLWINDOW};
        default: return {always | WS_MINIMIZEBOX, 0};
    }
}

int IconMetric(int metric, int dpi) {
    static auto* metricForDpi = pc::Lookup<int WINAPI(int, UINT)>(L"user32.dll", "GetSystemMetricsForDpi");
    return metricForDpi ? metricForDpi(metric, static_cast<UINT>(dpi)) : GetSystemMetrics(metric);
}

// Icons stay loaded: a window that outlives this form may bear them.
HICON LoadFormIcon(const std::string& icon, int width, int height) {
    struct Loaded {
        std::string icon;
        int width;
        HICON handle;
    };
    static std::vector<Loaded> icons;
    for (const Loaded& each : icons)
        if (each.icon == icon && each.width == width) return each.handle;
    bool isFile = EndsWithNoCase(icon, ".ico");
    HANDLE handle = LoadImageW(isFile ? nullptr : GetModuleHandleW(nullptr), pc::Wide(icon).c_str(), IMAGE_ICON, width,
                               height, isFile ? LR_LOADFROMFILE : LR_DEFAULTCOLOR);
    if (!handle && isFile) return LoadFormIcon("a1", width, height);
    icons.push_back({icon, width, static_cast<HICON>(handle)});
    return static_cast<HICON>(handle);
}

void SendIcon(const FormWindow& form, WPARAM which, int widthMetric, int heightMetric) {
    HICON icon = LoadFormIcon(form.form.Icon(), IconMetric(widthMetric, form.dpi), IconMetric(heightMetric, form.dpi));
    HWND top = form.window;
    while (HWND owner = GetWindow(top, GW_OWNER)) top = owner;
    SendMessageW(form.window, WM_SETICON, which, reinterpret_cast<LPARAM>(icon));
    if (top != form.window) SendMessageW(top, WM_SETICON, which, reinterpret_cast<LPARAM>(icon));
}

Control* WithFlag(const Form& form, ControlFlag flag) {
    for (auto& control : form.Controls())
        if (control->GetKind() == Kind::button && (control->Flags() & flag) && control->Enabled() && control->Shown())
            return control.get();
    return nullptr;
}

void OnEscape(Form& form) {
    if (Control* cancel = WithFlag(form, cancelButton)) return cancel->UserClicked();
    Border border = form.Definition().border;
    if (border == Border::dialog || border == Border::toolWindow) UnloadForm(form, true);
}

void OnDpiChanged(FormWindow& form, int dpi, const RECT& suggested) {
    form.dpi = dpi;
    form.scroll = {};
    SIZE size = {suggested.right - suggested.left, suggested.bottom - suggested.top};
    if (form.form.Definition().border != Border::sizable)
        size = OuterSize(form, Pixels(form.form.Width(), dpi), Pixels(form.form.Height(), dpi));
    RefreshAll(form);
    SetWindowPos(form.window, nullptr, suggested.left, suggested.top, size.cx, size.cy, SWP_NOZORDER | SWP_NOACTIVATE);
}

void OnSystemChanged(FormWindow& form, UINT message, WPARAM wParam, LPARAM lParam) {
    RefreshLook();
    // Common controls learn the new colours from their parent.
    if (message == WM_SYSCOLORCHANGE)
        for (auto& control : form.form.Controls())
            if (ControlWindow* view = WindowOfControl(*control)) SendMessageW(view->window, message, wParam, lParam);
    RefreshAll(form);
}

void OnActivate(FormWindow& form, bool active) {
    HWND focus = GetFocus();
    if (!active) {
        if (focus && IsChild(form.window, focus)) form.lastFocus = focus;
        return;
    }
    HandlerScope scope;
    if (auto handler = form.form.onActivate) handler();
}

void OnFocus(FormWindow& form) {
    HWND control = form.lastFocus;
    if (control && IsChild(form.window, control) && IsWindowVisible(control) && IsWindowEnabled(control))
        SetFocus(control);
    else
        FocusNext(form);
}

void OnGetLimits(const FormWindow& form, MINMAXINFO& limits) {
    if (form.form.Definition().border != Border::sizable) return;
    SIZE contents = SmallestContents(form), size = OuterSize(form, contents.cx, contents.cy);
    RECT area = WorkArea(form.window);
    limits.ptMinTrackSize.x = std::min(size.cx, area.right - area.left);
    limits.ptMinTrackSize.y = std::min(size.cy, area.bottom - area.top);
}

// The tool tip's text: the control's own, or all of a label's text that does not fit.
void OnToolTip(FormWindow& form, NMTTDISPINFOW& info) {
    ControlWindow* view = ControlOf(reinterpret_cast<HWND>(info.hdr.idFrom));
    form.tip.clear();
    if (view) {
        const Control& control = view->control;
        if (!control.ToolTip().empty())
            form.tip = pc::Wide(control.ToolTip());
        else if (control.GetKind() == Kind::label && IsCut(*view))
            form.tip = pc::Wide(control.Text());
    }
    info.lpszText = form.tip.data();
}

void OnTimer(FormWindow& form, UINT_PTR id) {
    for (auto& control : form.form.Controls())
        if (control->GetKind() == Kind::timer && TimerId(*control) == id) return control->TimerTicked();
}

bool HandleFormMessage(FormWindow& form, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    switch (message) {
        case WM_ERASEBKGND: {
            RECT client;
            GetClientRect(form.window, &client);
            FillRect(reinterpret_cast<HDC>(wParam), &client, Colours().pageBrush.Get());
            result = TRUE;
            return true;
        }
        case WM_SIZE: FormSized(form); return true;
        case WM_VSCROLL:
        case WM_HSCROLL: Scroll(form, message == WM_VSCROLL ? SB_VERT : SB_HORZ, wParam); return true;
        case WM_MOUSEWHEEL: ScrollBy(form, -3 * static_cast<short>(HIWORD(wParam)) / WHEEL_DELTA); return true;
        case WM_GETMINMAXINFO: OnGetLimits(form, *reinterpret_cast<MINMAXINFO*>(lParam)); return true;
        case WM_ACTIVATE: OnActivate(form, LOWORD(wParam) != WA_INACTIVE); return false;
        case WM_SETFOCUS: OnFocus(form); return true;
        case WM_TIMER: OnTimer(form, wParam); return true;
        case WM_CLOSE:
            if (IsWindowEnabled(form.window)) UnloadForm(form.form, true);
            return true;
        case DM_GETDEFID: {
            Control* button = WithFlag(form.form, defaultButton);
            result = button ? MAKELONG(GetDlgCtrlID(WindowOfControl(*button)->window), DC_HASDEFID) : 0;
            return true;
        }
        case WM_NEXTDLGCTL:  // by IsDialogMessage for access keys: a window, or forward 0, back 1
            SetFocus(LOWORD(lParam) ? reinterpret_cast<HWND>(wParam)
                                    : GetNextDlgTabItem(form.window, GetFocus(), wParam != 0));
            return true;
        case WM_COMMAND:
            if (lParam || LOWORD(wParam) != IDCANCEL) break;
            OnEscape(form.form);
            return true;
        case WM_NOTIFY: {
            auto* notification = reinterpret_cast<NMHDR*>(lParam);
            if (notification->code != static_cast<UINT>(TTN_GETDISPINFOW)) break;
            OnToolTip(form, *reinterpret_cast<NMTTDISPINFOW*>(lParam));
            return true;
        }
        case messageDpiChanged: OnDpiChanged(form, LOWORD(wParam), *reinterpret_cast<RECT*>(lParam)); return true;
        case WM_SYSCOLORCHANGE:
        case WM_SETTINGCHANGE:
        case messageThemeChanged: OnSystemChanged(form, message, wParam, lParam); return false;
        default: break;
    }
    return HandleChildMessage(message, wParam, lParam, result);
}

LRESULT CALLBACK FormProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    FormWindow* form = FormOf(window);
    LRESULT result = 0;
    if (form && message == WM_NCDESTROY) {
        RemoveAutomationName(window);
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        form->form.hostData = 0;
        delete form;
    } else if (form && HandleFormMessage(*form, message, wParam, lParam, result)) {
        return result;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

void RegisterClasses() {
    WNDCLASSEXW form = {};
    form.cbSize = sizeof form;
    form.lpfnWndProc = FormProcedure;
    form.hInstance = GetModuleHandleW(nullptr);
    form.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    form.lpszClassName = formClass;
    RegisterClassExW(&form);
    WNDCLASSEXW surface = form;
    surface.style = CS_HREDRAW | CS_VREDRAW;
    surface.lpfnWndProc = DefWindowProcW;
    surface.lpszClassName = surfaceClass;
    RegisterClassExW(&surface);
}

HWND CreateToolTips(HWND owner) {
    return CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, L"", WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, CW_USEDEFAULT,
                           CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, owner, nullptr, GetModuleHandleW(nullptr),
                           nullptr);
}

// Windows that this one owns would be destroyed with it.
void ReleaseOwned(HWND owner) {
    for (Form* form : LoadedForms()) {
        FormWindow* view = WindowOfForm(*form);
        if (view && GetWindow(view->window, GW_OWNER) == owner) SetWindowLongPtrW(view->window, GWLP_HWNDPARENT, 0);
    }
}

}  // namespace

FormWindow* FormOf(HWND window) {
    if (!window || GetClassLongPtrW(window, GCLP_WNDPROC) != reinterpret_cast<ULONG_PTR>(FormProcedure)) return nullptr;
    return reinterpret_cast<FormWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
}

FormWindow* WindowOfForm(const Form& form) { return reinterpret_cast<FormWindow*>(form.hostData); }

void SetAutomationName(HWND window, const std::string& name) {
    std::wstring wide = pc::Wide(name).substr(0, 255);  // an atom's limit
    ATOM atom = GlobalAddAtomW(wide.c_str());
    SetPropW(window, L"ControlName", reinterpret_cast<HANDLE>(static_cast<UINT_PTR>(atom)));
}

void RemoveAutomationName(HWND window) {
    GlobalDeleteAtom(static_cast<ATOM>(reinterpret_cast<UINT_PTR>(RemovePropW(window, L"ControlName"))));
}

void FocusNext(FormWindow& form) {
    HWND focus = GetFocus(), start = IsChild(form.window, focus) ? focus : nullptr;
    HWND next = GetNextDlgTabItem(form.window, start, FALSE);
    bool usable = next && IsWindowVisible(next) && IsWindowEnabled(next);
    SetFocus(usable ? next : form.window);
    if (usable && (SendMessageW(next, WM_GETDLGCODE, 0, 0) & DLGC_HASSETSEL)) SendMessageW(next, EM_SETSEL, 0, -1);
}

void Start() {
    static bool started = false;
    if (started) return;
    started = true;
    OleInitialize(nullptr);
    INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
    if (!InitCommonControlsEx(&controls)) InitCommonControls();
    RegisterClasses();
    InstallDialogFilter();
}

void Create(Form& form) {
    // Modes without a window of their own still load hidden forms, the download's above all.
    Start();
    BorderStyle border = StyleOf(form.Definition().border);
    auto view = std::make_unique<FormWindow>(form);
    view->window = CreateWindowExW(border.extended | WS_EX_CONTROLPARENT, formClass, pc::Wide(form.Caption()).c_str(),
                                   border.style, 0, 0, 0, 0, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
    if (!view->window) return;
    view->dpi = DpiOf(view->window);
    view->toolTips = CreateToolTips(view->window);
    SetAutomationName(view->window, form.Name());
    FormWindow& made = *view.release();  // freed with its window
    form.hostData = reinterpret_cast<intptr_t>(&made);
    SetWindowLongPtrW(made.window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&made));
    SendMessageW(made.window, WM_CHANGEUISTATE, MAKEWPARAM(UIS_INITIALIZE, 0), 0);
    RefreshToolTips(made);
    CreateControls(made);
    for (auto& control : form.Controls())
        if (control->GetKind() == Kind::timer) Update(*control, Change::timer);
    if (!form.Icon().empty()) UpdateIcon(form);
}

void Destroy(Form& form) {
    FormWindow* view = WindowOfForm(form);
    if (!view) return;
    EndModal(form);
    ReleaseOwned(view->window);
    DestroyWindow(view->window);
}

void RefreshAll(FormWindow& form) {
    RefreshFonts(form);
    PlaceAllControls(form);
    for (auto& control : form.form.Controls())
        if (ControlWindow* view = WindowOfControl(*control); view && view->sideBar) LayoutSideBar(*view);
    UpdateIcon(form.form);
    RedrawWindow(form.window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
}

void UpdateCaption(Form& form) {
    if (FormWindow* view = WindowOfForm(form)) SetWindowTextW(view->window, pc::Wide(form.Caption()).c_str());
}

void UpdateIcon(Form& form) {
    FormWindow* view = WindowOfForm(form);
    if (!view || form.Icon().empty()) return;
    SendIcon(*view, ICON_BIG, SM_CXICON, SM_CYICON);
    SendIcon(*view, ICON_SMALL, SM_CXSMICON, SM_CYSMICON);
}

void SetShown(Form& form, bool shown) {
    FormWindow* view = WindowOfForm(form);
    if (!view) return;
    HWND window = view->window;
    if (!shown) {
        EndModal(form);
        ShowWindow(window, SW_HIDE);
        return;
    }
    if (form.Modal()) SetOwnerForModal(*view);
    if (!view->placed) {
        PlaceFormFirst(*view);
        RefreshTabStops(*view);
        RefreshVisibility(*view);
        for (auto& control : form.Controls())
            if (ControlWindow* bar = WindowOfControl(*control); bar && control->GetKind() == Kind::sideBar)
                RebuildSideBar(*bar);
    }
    bool wasShown = IsWindowVisible(window) != FALSE;
    ShowWindow(window, IsIconic(window) ? SW_RESTORE : SW_SHOW);
    if (wasShown) SetForegroundWindow(window);
    UpdateWindow(window);  // a long step may follow at once
}

void ShowHandCursor() { SetCursor(LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_HAND))); }

intptr_t WindowOf(const Form& form) {
    FormWindow* view = WindowOfForm(form);
    return view ? reinterpret_cast<intptr_t>(view->window) : 0;
}

intptr_t WindowOf(const Control& control) {
    ControlWindow* view = WindowOfControl(control);
    return view ? reinterpret_cast<intptr_t>(view->window) : 0;
}

int ScalePercent() { return SystemDpi() * 100 / 96; }

}  // namespace host
