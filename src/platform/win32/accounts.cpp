// Accounts and their passwords.
#include <windows.h>

#include "platform/machine.h"
#include "platform/win32/handles.h"
#include "platform/win32/lookup.h"

namespace pc {

namespace {

struct UserInfo1003 {
    LPWSTR password;
};
using SetInfo = DWORD WINAPI(LPCWSTR server, LPCWSTR user, DWORD level, BYTE* info, DWORD* badField);

struct PasswordChange {
    SetInfo* setInfo;
    std::wstring user, password;
};

// Raised in place of a call that the system only pretends to have; unhandled it ends the program.
constexpr DWORD exceptionStub = 0x80000100;
DWORD changingThread = 0;

LONG CALLBACK EndChangingThread(EXCEPTION_POINTERS* raised) {
    if (raised->ExceptionRecord->ExceptionCode == exceptionStub && GetCurrentThreadId() == changingThread)
        ExitThread(ERROR_NOT_SUPPORTED);
    return EXCEPTION_CONTINUE_SEARCH;
}

DWORD WINAPI ChangePassword(void* given) {
    auto& change = *static_cast<PasswordChange*>(given);
    UserInfo1003 info = {change.password.data()};
    return change.setInfo(nullptr, change.user.c_str(), 1003, reinterpret_cast<BYTE*>(&info), nullptr);
}

}  // namespace

uint32_t LookupAccount(const std::string& name, std::string& sid, std::string& domain) {
    std::wstring wideName = Wide(name), wideDomain;
    DWORD sidSize = 68, domainSize = 256;  // the largest identifier, an ample domain
    SID_NAME_USE use;
    for (int attempt = 0; attempt < 2; ++attempt) {
        sid.resize(sidSize);
        wideDomain.resize(domainSize);
        if (LookupAccountNameW(nullptr, wideName.c_str(), sid.data(), &sidSize, wideDomain.data(), &domainSize, &use)) {
            sid.resize(GetLengthSid(sid.data()));
            domain = Utf8(wideDomain.c_str());
            return ERROR_SUCCESS;
        }
        if (GetLastError() != ERROR_INSUFFICIENT_BUFFER) break;
    }
    DWORD code = GetLastError();
    sid.clear();
    domain.clear();
    return code;
}

uint32_t SetAccountPassword(const std::string& user, const std::string& password) {
    auto* setInfo = Lookup<SetInfo>(L"netapi32.dll", "NetUserSetInfo");
    if (!setInfo) return ERROR_NOT_SUPPORTED;
    using AddHandler = PVOID WINAPI(ULONG first, LONG CALLBACK(EXCEPTION_POINTERS*));
    auto* addHandler = Lookup<AddHandler>(L"kernel32.dll", "AddVectoredExceptionHandler");
    auto* removeHandler = Lookup<ULONG WINAPI(PVOID)>(L"kernel32.dll", "RemoveVectoredExceptionHandler");

    PasswordChange change = {setInfo, Wide(user), Wide(password)};
    KernelHandle thread(CreateThread(nullptr, 0, ChangePassword, &change, CREATE_SUSPENDED, &changingThread));
    if (!thread) return GetLastError();
    PVOID handler = addHandler ? addHandler(1, EndChangingThread) : nullptr;
    ResumeThread(thread.Get());
    WaitForSingleObject(thread.Get(), INFINITE);
    if (handler && removeHandler) removeHandler(handler);
    DWORD code = ERROR_NOT_SUPPORTED;
    GetExitCodeThread(thread.Get(), &code);
    SecureZeroMemory(change.password.data(), change.password.size() * sizeof(wchar_t));
    return code;
}

}  // namespace pc
