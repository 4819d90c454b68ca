// CreateSRP.exe: makes one system restore point; its command line is the name. A program of its own, because it asks
// for administrator rights and the panel does not. Plain calls without the C++ library, since the panel carries it
// inside.
#include <windows.h>
// behind windows.h
#include <wbemidl.h>

namespace {

// Numbers of the SystemRestore class: an application's installation, the begin of a change.
constexpr LONG applicationInstall = 0, beginSystemChange = 100;

// Owner of a COM object, and of a text for COM.
template <typename Interface>
struct Object {
    ~Object() {
        if (pointer) pointer->Release();
    }
    Interface* operator->() const { return pointer; }
    Interface* pointer = nullptr;
};
struct Text {
    explicit Text(const wchar_t* characters) : value(SysAllocString(characters)) {}
    ~Text() { SysFreeString(value); }
    BSTR value;
};

// What stands behind the program's own name.
const wchar_t* NameFromCommandLine() {
    const wchar_t* line = GetCommandLineW();
    if (*line == L'"') {
        for (++line; *line && *line != L'"'; ++line) {
        }
        if (*line) ++line;
    } else {
        while (*line && *line != L' ') ++line;
    }
    while (*line == L' ') ++line;
    return *line ? line : L"Automatic System Restore Point";
}

void PutNumber(IWbemClassObject* arguments, const wchar_t* name, LONG number) {
    VARIANT value;
    value.vt = VT_I4;
    value.lVal = number;
    arguments->Put(name, 0, &value, 0);
}

HRESULT CreatePoint(const wchar_t* name) {
    Object<IWbemLocator> locator;
    Object<IWbemServices> services;
    Object<IWbemClassObject> restoreClass, method, arguments, answer;
    Text nameSpace(L"root\\default"), className(L"SystemRestore"), methodName(L"CreateRestorePoint"), point(name);
    HRESULT result = CoCreateInstance(CLSID_WbemLocator, nullptr, CLSCTX_INPROC_SERVER, IID_IWbemLocator,
                                      reinterpret_cast<void**>(&locator.pointer));
    if (FAILED(result)) return result;
    result = locator->ConnectServer(nameSpace.value, nullptr, nullptr, nullptr, 0, nullptr, nullptr, &services.pointer);
    if (FAILED(result)) return result;
    CoSetProxyBlanket(services.pointer, RPC_C_AUTHN_WINNT, RPC_C_AUTHZ_NONE, nullptr, RPC_C_AUTHN_LEVEL_CALL,
                      RPC_C_IMP_LEVEL_IMPERSONATE, nullptr, EOAC_NONE);
    result = services->GetObject(className.value, 0, nullptr, &restoreClass.pointer, nullptr);
    if (FAILED(result)) return result;
    result = restoreClass->GetMethod(methodName.value, 0, &method.pointer, nullptr);
    // A system without restore points has the class, but a method that takes nothing.
    if (FAILED(result) || !method.pointer) return FAILED(result) ? result : E_NOTIMPL;
    method->SpawnInstance(0, &arguments.pointer);
    if (!arguments.pointer) return E_OUTOFMEMORY;
    VARIANT description;
    description.vt = VT_BSTR;
    description.bstrVal = point.value;
    arguments->Put(L"Description", 0, &description, 0);
    PutNumber(arguments.pointer, L"RestorePointType", applicationInstall);
    PutNumber(arguments.pointer, L"EventType", beginSystemChange);
    return services->ExecMethod(className.value, methodName.value, 0, nullptr, arguments.pointer, &answer.pointer,
                                nullptr);
}

}  // namespace

int main() {
    const wchar_t* name = NameFromCommandLine();
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    CoInitializeSecurity(nullptr, -1, nullptr, nullptr, RPC_C_AUTHN_LEVEL_DEFAULT, RPC_C_IMP_LEVEL_IMPERSONATE, nullptr,
                         EOAC_NONE, nullptr);
    HRESULT result = CreatePoint(name);
    CoUninitialize();
    wchar_t line[80];
    wsprintfW(line, L"CreateSRP: 0x%08lX", static_cast<unsigned long>(result));
    OutputDebugStringW(line);
    return SUCCEEDED(result) ? 0 : 1;
}
