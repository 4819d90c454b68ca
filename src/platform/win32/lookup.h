// Functions that not every supported system has.
#pragma once

#include <windows.h>

#include <string>

namespace pc {

// library is a bare name; it is loaded from the system folder only and stays.
inline FARPROC LookupAddress(const wchar_t* library, const char* function) {
    HMODULE module = GetModuleHandleW(library);
    if (!module) {
        wchar_t folder[MAX_PATH] = L"";
        UINT length = GetSystemDirectoryW(folder, MAX_PATH);
        if (length == 0 || length >= MAX_PATH) return nullptr;
        module = LoadLibraryW((std::wstring(folder) + L"\\" + library).c_str());
    }
    return module ? GetProcAddress(module, function) : nullptr;
}

// Null where the system lacks the function. Function is its type with calling convention: BOOL WINAPI(HANDLE).
template <typename Function>
Function* Lookup(const wchar_t* library, const char* function) {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(LookupAddress(library, function)));
}

// A function of a library that is loaded at the first call, since the panel's start is no time for it. Only for what
// every supported system has.
template <typename Function>
class Late {
public:
    constexpr Late(const wchar_t* libraryName, const char* functionName) : library(libraryName), name(functionName) {}
    operator Function*() const {
        if (!function) function = Lookup<Function>(library, name);
        return function;
    }

private:
    const wchar_t* library;
    const char* name;
    mutable Function* function = nullptr;
};

}  // namespace pc
