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

}  // namespace pc
