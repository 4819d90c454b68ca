// message_object.dll: stands in for the platform's message object. It takes every property and call by name and writes
// each down in C:\message.txt, one line a step. Send fails while C:\refuse is there.
#include <windows.h>
// behind windows.h
#include <oaidl.h>

#include <string>
#include <vector>

namespace {

std::vector<std::wstring> names;  // of members; a member's number is its place

std::wstring Text(const VARIANT& value) {
    if (value.vt == VT_BSTR) return L"\"" + std::wstring(value.bstrVal ? value.bstrVal : L"") + L"\"";
    if (value.vt == VT_BOOL) return value.boolVal ? L"True" : L"False";
    if (value.vt == VT_I4) return std::to_wstring(value.lVal);
    return L"type " + std::to_wstring(value.vt);
}

void WriteDown(const std::wstring& line) {
    HANDLE file = CreateFileW(L"C:\\message.txt", FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, OPEN_ALWAYS, 0, nullptr);
    char bytes[4096];
    int size = WideCharToMultiByte(CP_UTF8, 0, line.c_str(), -1, bytes, sizeof bytes - 1, nullptr, nullptr);
    DWORD written = 0;
    bytes[size - 1] = '\n';
    WriteFile(file, bytes, static_cast<DWORD>(size), &written, nullptr);
    CloseHandle(file);
}

// The message, its configuration, the fields of that and each field: told apart by what they are called.
struct Object : IDispatch {
    explicit Object(std::wstring name) : title(std::move(name)) {}
    virtual ~Object() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        *object = id == IID_IUnknown || id == IID_IDispatch ? this : nullptr;
        if (*object) AddRef();
        return *object ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++count; }
    ULONG STDMETHODCALLTYPE Release() override {
        ULONG left = --count;
        if (left == 0) delete this;
        return left;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* types) override { return *types = 0, S_OK; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* asked, UINT, LCID, DISPID* ids) override {
        names.push_back(asked[0]);
        ids[0] = static_cast<DISPID>(names.size());
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* given, VARIANT* result,
                                     EXCEPINFO* exception, UINT*) override {
        const std::wstring& member = names[static_cast<size_t>(id) - 1];
        std::wstring argument = given->cArgs ? Text(given->rgvarg[0]) : L"";
        if (kind & DISPATCH_PROPERTYPUT) return WriteDown(title + L"." + member + L" = " + argument), S_OK;
        if (member == L"Configuration" || member == L"Fields" || member == L"Item") {
            result->vt = VT_DISPATCH;
            result->pdispVal = new Object(member == L"Item" ? argument.substr(1, argument.size() - 2) : member);
            return S_OK;
        }
        WriteDown(title + L"." + member + (argument.empty() ? L"" : L" " + argument));
        if (member != L"Send" || GetFileAttributesW(L"C:\\refuse") == INVALID_FILE_ATTRIBUTES) return S_OK;
        *exception = {};
        exception->bstrDescription = SysAllocString(L"The transport failed to connect to the server.");
        exception->scode = static_cast<SCODE>(0x80040213);
        return DISP_E_EXCEPTION;
    }

private:
    ULONG count = 1;
    std::wstring title;
};

struct Factory : IClassFactory {
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        *object = id == IID_IUnknown || id == IID_IClassFactory ? this : nullptr;
        return *object ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** object) override {
        auto* made = new Object(L"Message");
        HRESULT outcome = made->QueryInterface(id, object);
        made->Release();
        return outcome;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
};

}  // namespace

extern "C" HRESULT WINAPI DllGetClassObject(REFCLSID, REFIID id, void** object) {
    static Factory factory;
    return factory.QueryInterface(id, object);
}
