#include "platform/http.h"

#include <windows.h>
// behind windows.h
#include <urlmon.h>

#include "platform/files.h"
#include "platform/win32/lookup.h"
#include "platform/win32/wide.h"

namespace pc {

namespace {

const Late<decltype(URLDownloadToFileW)> download{L"urlmon.dll", "URLDownloadToFileW"};

HRESULT abortResult = S_OK;  // asked for while a fetch runs
IBinding* runningBinding = nullptr;

constexpr auto redirectFailed = static_cast<HRESULT>(0x800C0014);

void Abort(HRESULT result) {
    abortResult = result;
    if (runningBinding) runningBinding->Abort();
}

// A wide string in task memory, as the library wants credentials; null for an empty text.
LPWSTR TaskText(const std::string& text) {
    if (text.empty()) return nullptr;
    std::wstring wide = Wide(text);
    size_t size = (wide.size() + 1) * sizeof(wchar_t);
    auto* memory = static_cast<LPWSTR>(CoTaskMemAlloc(size));
    if (memory) CopyMemory(memory, wide.c_str(), size);
    return memory;
}

// The library's callback object. It lives on the stack of one fetch, so counting references is not needed.
class Callback final : public IBindStatusCallback, public IAuthenticate {
public:
    explicit Callback(const FetchEvents& fetchEvents) : events(fetchEvents) {}
    virtual ~Callback() = default;

    STDMETHODIMP QueryInterface(REFIID id, void** object) override {
        if (id == IID_IUnknown || id == IID_IBindStatusCallback) {
            *object = static_cast<IBindStatusCallback*>(this);
        } else if (id == IID_IAuthenticate) {
            *object = static_cast<IAuthenticate*>(this);
        } else {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }

    STDMETHODIMP Authenticate(HWND* window, LPWSTR* user, LPWSTR* password) override {
        std::string userText, passwordText;
        if (events.authenticate) events.authenticate(userText, passwordText);
        if (window) *window = nullptr;
        *user = TaskText(userText);
        *password = TaskText(passwordText);
        return S_OK;
    }
    STDMETHODIMP OnStartBinding(DWORD, IBinding* binding) override {
        runningBinding = binding;
        if (binding) binding->AddRef();
        if (events.started) events.started();
        return S_OK;
    }
    STDMETHODIMP GetPriority(LONG* priority) override {
        *priority = 0;
        return S_OK;
    }
    STDMETHODIMP OnLowResource(DWORD) override { return S_OK; }
    STDMETHODIMP OnProgress(ULONG done, ULONG total, ULONG status, LPCWSTR) override {
        // Some versions of the library follow a circle of redirections for ever: each is one more request.
        if (status == BINDSTATUS_SENDINGREQUEST && ++requests > mostRequests) Abort(redirectFailed);
        if (events.progress) events.progress(done, total);
        return abortResult;
    }
    STDMETHODIMP OnStopBinding(HRESULT result, LPCWSTR) override {
        DropBinding();
        if (events.stopped) events.stopped(static_cast<uint32_t>(abortResult ? abortResult : result));
        stopTold = true;
        return S_OK;
    }
    STDMETHODIMP GetBindInfo(DWORD*, BINDINFO*) override { return E_NOTIMPL; }
    STDMETHODIMP OnDataAvailable(DWORD, DWORD, FORMATETC*, STGMEDIUM*) override { return S_OK; }
    STDMETHODIMP OnObjectAvailable(REFIID, IUnknown*) override { return S_OK; }

    static void DropBinding() {
        if (runningBinding) runningBinding->Release();
        runningBinding = nullptr;
    }

    bool stopTold = false;

private:
    static constexpr int mostRequests = 20;
    int requests = 0;
    const FetchEvents& events;
};

}  // namespace

uint32_t FetchToFile(const std::string& url, const std::string& path, const FetchEvents& events) {
    abortResult = S_OK;
    Callback callback(events);
    auto result = static_cast<uint32_t>(download(nullptr, Wide(url).c_str(), Wide(path).c_str(), 0, &callback));
    Callback::DropBinding();
    if (abortResult) result = static_cast<uint32_t>(abortResult);
    if (static_cast<int32_t>(result) < 0) RemoveFile(path);
    // A fetch that never began to bind (a bad address) stops all the same.
    if (!callback.stopTold && events.stopped) events.stopped(result);
    return result;
}

void AbortFetch() { Abort(E_ABORT); }

}  // namespace pc
