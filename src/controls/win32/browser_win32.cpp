// The web browser control, hosted by the system's own container window (atl.dll, part of every Windows).
#include <exdisp.h>

#include "controls/win32/drawing.h"
#include "controls/win32/host.h"
#include "platform/win32/lookup.h"
#include "platform/win32/wide.h"

namespace host {

namespace {

constexpr UINT messageFailed = WM_APP;
constexpr UINT_PTR patienceTimer = 1;
constexpr UINT patience = 20000;  // ms until a page must have begun to show

// Members of DWebBrowserEvents2.
constexpr DISPID navigateComplete = 252, documentComplete = 259, navigateError = 271;

struct Container {
    BOOL(WINAPI* init)();
    HRESULT(WINAPI* getControl)(HWND, IUnknown**);
    HRESULT(WINAPI* advise)(IUnknown*, IUnknown*, const GUID&, DWORD*);
    HRESULT(WINAPI* unadvise)(IUnknown*, const GUID&, DWORD);
};

bool LoadContainer(Container& container) {
    const wchar_t* library = L"atl.dll";
    container.init = pc::Lookup<BOOL WINAPI()>(library, "AtlAxWinInit");
    container.getControl = pc::Lookup<HRESULT WINAPI(HWND, IUnknown**)>(library, "AtlAxGetControl");
    container.advise = pc::Lookup<HRESULT WINAPI(IUnknown*, IUnknown*, const GUID&, DWORD*)>(library, "AtlAdvise");
    container.unadvise = pc::Lookup<HRESULT WINAPI(IUnknown*, const GUID&, DWORD)>(library, "AtlUnadvise");
    return container.init && container.getControl && container.advise && container.unadvise && container.init();
}

const Container* GetContainer() {
    static Container container = {};
    static bool loaded = LoadContainer(container);
    return loaded ? &container : nullptr;
}

bool IsSame(IUnknown* left, IUnknown* right) {
    pc::Com<IUnknown> a, b;
    return left && right && SUCCEEDED(left->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(a.Receive()))) &&
           SUCCEEDED(right->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(b.Receive()))) && a.Get() == b.Get();
}

}  // namespace

// Also the receiver of the browser's events; it lives longer than the connection, so it counts no references.
struct BrowserView final : IDispatch {
    HWND window = nullptr, container = nullptr;
    pc::Com<IWebBrowser2> browser;
    DWORD connection = 0;
    bool failed = false, arrived = false;

    virtual ~BrowserView() = default;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*, EXCEPINFO*,
                                     UINT*) override;
    bool IsWholePage(const DISPPARAMS& parameters) const;
};

namespace {

// Told by a message, since the browser must not go while one of its events is handled.
void Fail(BrowserView& view) {
    if (view.failed) return;
    view.failed = true;
    PostMessageW(view.window, messageFailed, 0, 0);
}

bool CreateBrowser(BrowserView& view) {
    const Container* container = GetContainer();
    if (!container) return false;
    RECT client;
    GetClientRect(view.window, &client);
    view.container =
        CreateWindowExW(0, L"AtlAxWin", L"Shell.Explorer.2", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 0, 0, client.right,
                        client.bottom, view.window, nullptr, GetModuleHandleW(nullptr), nullptr);
    pc::Com<IUnknown> control;
    if (!view.container || FAILED(container->getControl(view.container, control.Receive())) || !control) return false;
    if (FAILED(control.Get()->QueryInterface(IID_IWebBrowser2, reinterpret_cast<void**>(view.browser.Receive()))))
        return false;
    container->advise(control.Get(), &view, DIID_DWebBrowserEvents2, &view.connection);
    view.browser.Get()->put_Silent(VARIANT_TRUE);  // no boxes about faulty scripts
    return true;
}

void CloseBrowser(BrowserView& view) {
    if (view.connection) GetContainer()->unadvise(view.browser.Get(), DIID_DWebBrowserEvents2, view.connection);
    view.connection = 0;
    view.browser.Reset();
}

void DrawBackground(const ControlWindow& view, HDC dc) {
    RECT client;
    GetClientRect(view.window, &client);
    const Look& look = Colours();
    Fill(dc, client, look.card);
    if (!view.browser || !view.browser->failed) return;
    InflateRect(&client, -Scaled(24, view.form.dpi), -Scaled(24, view.form.dpi));
    DrawString(dc, L"This page cannot be shown here.", client, FontOf(view.form.dpi, fontHeading), look.accent,
               DT_SINGLELINE | DT_END_ELLIPSIS);
    client.top += Scaled(36, view.form.dpi);
    DrawString(dc, pc::Wide(view.control.Address()), client, FontOf(view.form.dpi, 0), look.cardText,
               DT_WORDBREAK | DT_NOPREFIX | DT_EDITCONTROL);
}

}  // namespace

HRESULT STDMETHODCALLTYPE BrowserView::QueryInterface(REFIID id, void** object) {
    bool known =
        IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch) || IsEqualIID(id, DIID_DWebBrowserEvents2);
    *object = known ? static_cast<IDispatch*>(this) : nullptr;
    return known ? S_OK : E_NOINTERFACE;
}

// The event's first argument (they stand in reverse order) is the browser itself and not one of the page's frames.
bool BrowserView::IsWholePage(const DISPPARAMS& parameters) const {
    if (parameters.cArgs == 0) return false;
    const VARIANT& source = parameters.rgvarg[parameters.cArgs - 1];
    return source.vt == VT_DISPATCH && IsSame(source.pdispVal, browser.Get());
}

HRESULT STDMETHODCALLTYPE BrowserView::Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*,
                                              EXCEPINFO*, UINT*) {
    if (!parameters || !IsWholePage(*parameters)) return S_OK;
    if (member == navigateComplete || member == documentComplete) arrived = true;
    if (member == navigateError && parameters->cArgs >= 2) {
        VARIANT status;
        VariantInit(&status);
        // Negative codes are those of the URL library; an error page of the server is a page.
        if (SUCCEEDED(VariantChangeType(&status, &parameters->rgvarg[1], 0, VT_I4)) && status.lVal < 0) Fail(*this);
    }
    return S_OK;
}

void ShowAddress(ControlWindow& view) {
    if (!view.browser) {
        view.browser = std::make_shared<BrowserView>();
        view.browser->window = view.window;
        if (!CreateBrowser(*view.browser)) Fail(*view.browser);
    }
    BrowserView& browser = *view.browser;
    if (!browser.browser) return;
    browser.failed = browser.arrived = false;
    pc::Bstr address = pc::MakeBstr(pc::Wide(view.control.Address()));
    SetTimer(view.window, patienceTimer, patience, nullptr);
    if (FAILED(browser.browser.Get()->Navigate(address.Get(), nullptr, nullptr, nullptr, nullptr))) Fail(browser);
}

bool BrowserUsesKey(HWND window, MSG& message) {
    for (HWND each = window; each; each = GetAncestor(each, GA_PARENT)) {
        ControlWindow* view = ControlOf(each);
        if (!view || !view->browser || !view->browser->browser) continue;
        pc::Com<IOleInPlaceActiveObject> active;
        return SUCCEEDED(view->browser->browser.Get()->QueryInterface(IID_IOleInPlaceActiveObject,
                                                                      reinterpret_cast<void**>(active.Receive()))) &&
               active.Get()->TranslateAccelerator(&message) == S_OK;
    }
    return false;
}

bool BrowserMessage(ControlWindow& view, UINT message, WPARAM wParam, LPARAM, LRESULT& result) {
    switch (message) {
        case WM_ERASEBKGND:
            DrawBackground(view, reinterpret_cast<HDC>(wParam));
            result = TRUE;
            return true;
        case WM_SIZE: {
            RECT client;
            GetClientRect(view.window, &client);
            if (view.browser) MoveWindow(view.browser->container, 0, 0, client.right, client.bottom, TRUE);
            return true;
        }
        case WM_TIMER:
            KillTimer(view.window, patienceTimer);
            if (view.browser && !view.browser->arrived) Fail(*view.browser);
            return true;
        case messageFailed:
            ShowWindow(view.browser->container, SW_HIDE);
            InvalidateRect(view.window, nullptr, TRUE);
            view.control.UserTyped("failed");  // the window may be gone now
            return true;
        case WM_DESTROY:
            if (view.browser) CloseBrowser(*view.browser);
            return false;
        default: return false;
    }
}

}  // namespace host
