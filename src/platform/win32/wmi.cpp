#include "platform/wmi.h"

#include <windows.h>
// behind windows.h
#include <wbemidl.h>

#include "platform/processes.h"
#include "platform/win32/handles.h"
#include "platform/win32/wmi_task.h"

namespace pc {

namespace {

constexpr DWORD restorePointLimit = 10 * 60 * 1000, terminateLimit = 30 * 1000;  // milliseconds

using Services = Com<IWbemServices>;
using Object = Com<IWbemClassObject>;

// As scripts are: allowed to act for the caller. A service in the own process knows no such setting.
void LetActForCaller(IUnknown* proxy) {
    CoSetProxyBlanket(proxy, RPC_C_AUTHN_WINNT, RPC_C_AUTHZ_NONE, nullptr, RPC_C_AUTHN_LEVEL_CALL,
                      RPC_C_IMP_LEVEL_IMPERSONATE, nullptr, EOAC_NONE);
}

HRESULT Connect(const std::wstring& nameSpace, Services& services) {
    Com<IWbemLocator> locator;
    HRESULT result = CoCreateInstance(CLSID_WbemLocator, nullptr, CLSCTX_INPROC_SERVER, IID_IWbemLocator,
                                      reinterpret_cast<void**>(locator.Receive()));
    if (FAILED(result)) return result;
    result = locator.Get()->ConnectServer(MakeBstr(nameSpace).Get(), nullptr, nullptr, nullptr, 0, nullptr, nullptr,
                                          services.Receive());
    if (SUCCEEDED(result)) LetActForCaller(services.Get());
    return result;
}

// Calls each for every object of the answer until it returns false or the starter of the task has gone.
template <typename Each>
HRESULT ForEachObject(WmiTask& task, const Services& services, const std::wstring& query, Each each) {
    Com<IEnumWbemClassObject> found;
    HRESULT result =
        services.Get()->ExecQuery(MakeBstr(L"WQL").Get(), MakeBstr(query).Get(),
                                  WBEM_FLAG_FORWARD_ONLY | WBEM_FLAG_RETURN_IMMEDIATELY, nullptr, found.Receive());
    if (FAILED(result)) return result;
    LetActForCaller(found.Get());
    while (!task.Abandoned()) {
        constexpr long look = 500;  // milliseconds
        Object object;
        ULONG count = 0;
        result = found.Get()->Next(look, 1, object.Receive(), &count);
        if (result == WBEM_S_TIMEDOUT) continue;
        if (result != WBEM_S_NO_ERROR || count == 0) break;
        if (!each(object)) break;
    }
    return FAILED(result) ? result : S_OK;
}

WmiValue ValueOf(VARIANT& source);

std::vector<std::string> ListOf(SAFEARRAY* array, VARTYPE type) {
    std::vector<std::string> list;
    LONG first = 0, last = -1;
    if (SafeArrayGetDim(array) != 1 || FAILED(SafeArrayGetLBound(array, 1, &first)) ||
        FAILED(SafeArrayGetUBound(array, 1, &last)))
        return list;
    for (LONG i = first; i <= last; ++i) {
        Variant element;
        void* place = type == VT_VARIANT ? static_cast<void*>(&element) : &element.bVal;
        if (FAILED(SafeArrayGetElement(array, &i, place))) break;
        if (type != VT_VARIANT) element.vt = type;
        list.push_back(ValueOf(element).text);
    }
    return list;
}

WmiValue ValueOf(VARIANT& source) {
    WmiValue value;
    if (source.vt & VT_ARRAY) {
        value.kind = WmiValue::Kind::list;
        value.list = ListOf(source.parray, source.vt & VT_TYPEMASK);
    } else if (source.vt == VT_BSTR) {
        value.kind = WmiValue::Kind::text;
        value.text = FromBstr(source.bstrVal);
    } else if (source.vt == VT_BOOL) {
        value.kind = WmiValue::Kind::boolean;
        value.boolean = source.boolVal != VARIANT_FALSE;
        value.text = value.boolean ? "True" : "False";
    } else if (source.vt != VT_NULL && source.vt != VT_EMPTY) {
        Variant text;
        constexpr LCID english = MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT);
        if (FAILED(VariantChangeTypeEx(&text, &source, english, 0, VT_BSTR))) return value;
        value.kind = WmiValue::Kind::number;
        value.text = FromBstr(text.bstrVal);
        value.number = text.bstrVal ? _wtoi64(text.bstrVal) : 0;
    }
    return value;
}

WmiValue PropertyOf(const Object& object, const std::wstring& name) {
    Variant value;
    return FAILED(object.Get()->Get(name.c_str(), 0, &value, nullptr, nullptr)) ? WmiValue() : ValueOf(value);
}

void Put(const Object& object, const wchar_t* name, const std::wstring& text) {
    Variant value;
    value.vt = VT_BSTR;
    value.bstrVal = MakeBstr(text).Release();
    object.Get()->Put(name, 0, &value, 0);
}

void Put(const Object& object, const wchar_t* name, int32_t number) {
    Variant value;
    value.vt = VT_I4;
    value.lVal = number;
    object.Get()->Put(name, 0, &value, 0);
}

HRESULT CallCreateRestorePoint(WmiTask& task, const std::wstring& name, int32_t type, int32_t eventType) {
    Services services;
    Object restore, signature, arguments, answer;
    HRESULT result = Connect(L"root\\default", services);
    if (FAILED(result)) return result;
    Bstr className = MakeBstr(L"SystemRestore"), method = MakeBstr(L"CreateRestorePoint");
    result = services.Get()->GetObject(className.Get(), 0, nullptr, restore.Receive(), nullptr);
    if (FAILED(result)) return result;
    result = restore.Get()->GetMethod(method.Get(), 0, signature.Receive(), nullptr);
    if (FAILED(result)) return result;
    // Some systems have the method without arguments.
    if (signature && SUCCEEDED(signature.Get()->SpawnInstance(0, arguments.Receive()))) {
        Put(arguments, L"Description", name);
        Put(arguments, L"RestorePointType", type);
        Put(arguments, L"EventType", eventType);
    }
    result = services.Get()->ExecMethod(className.Get(), method.Get(), 0, nullptr, arguments.Get(), answer.Receive(),
                                        nullptr);
    if (SUCCEEDED(result) && answer) task.SetValue(static_cast<int32_t>(PropertyOf(answer, L"ReturnValue").number));
    return result;
}

// By the management service, or by the platform's own call where the service lacks the method.
void TerminateOne(const Services& services, const std::wstring& path, uint32_t processId) {
    if (SUCCEEDED(services.Get()->ExecMethod(MakeBstr(path).Get(), MakeBstr(L"Terminate").Get(), 0, nullptr, nullptr,
                                             nullptr, nullptr)))
        return;
    KernelHandle process(OpenProcess(PROCESS_TERMINATE, FALSE, processId));
    if (process) TerminateProcess(process.Get(), 0);
}

HRESULT TerminateNamed(WmiTask& task, const std::wstring& name) {
    Services services;
    HRESULT result = Connect(L"root\\cimv2", services);
    if (FAILED(result)) return result;
    int32_t found = 0;
    return ForEachObject(task, services, L"SELECT * FROM Win32_Process", [&](const Object& process) {
        if (lstrcmpiW(Wide(PropertyOf(process, L"Name").text).c_str(), name.c_str()) != 0) return true;
        std::string handle = PropertyOf(process, L"Handle").text;  // the identifier in decimal
        auto id = static_cast<uint32_t>(_wtoi64(Wide(handle).c_str()));
        if (id == OwnProcessId()) return true;  // the caller has work to finish
        TerminateOne(services, L"Win32_Process.Handle=\"" + Wide(handle) + L"\"", id);
        task.SetValue(++found);
        return true;
    });
}

}  // namespace

WmiStatus WmiQuery(const std::string& nameSpace, const std::string& query, const std::vector<std::string>& properties,
                   uint32_t timeoutMilliseconds, const std::function<bool(const WmiRow&)>& each, std::string& error) {
    std::vector<std::wstring> names;
    for (const std::string& property : properties) names.push_back(Wide(property));
    auto work = [names, space = Wide(nameSpace), wideQuery = Wide(query)](WmiTask& task) {
        Services services;
        HRESULT result = Connect(space, services);
        if (FAILED(result)) return result;
        return ForEachObject(task, services, wideQuery, [&](const Object& object) {
            WmiRow row;
            for (const std::wstring& name : names) row.push_back(PropertyOf(object, name));
            return task.Deliver(std::move(row));
        });
    };
    WmiTask::Outcome outcome = WmiTask::Run(work, timeoutMilliseconds, each);
    error = outcome.error;
    return outcome.status;
}

bool WmiCreateRestorePoint(const std::string& name, int32_t type, int32_t eventType, int32_t& returned,
                           std::string& error) {
    auto work = [wideName = Wide(name), type, eventType](WmiTask& task) {
        return CallCreateRestorePoint(task, wideName, type, eventType);
    };
    WmiTask::Outcome outcome = WmiTask::Run(work, restorePointLimit, [](const WmiRow&) { return true; });
    returned = outcome.value;
    error = outcome.status == WmiStatus::timedOut ? "The system did not answer in time." : outcome.error;
    return outcome.status == WmiStatus::done;
}

int WmiTerminateProcesses(const std::string& name) {
    auto work = [wideName = Wide(name)](WmiTask& task) { return TerminateNamed(task, wideName); };
    return WmiTask::Run(work, terminateLimit, [](const WmiRow&) { return true; }).value;
}

}  // namespace pc
