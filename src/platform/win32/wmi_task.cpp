#include "platform/win32/wmi_task.h"

#include <wbemidl.h>

#include "platform/win32/handles.h"

namespace pc {

namespace {

constexpr SIZE_T stackBytes = 256 * 1024;

std::string ErrorText(HRESULT code) {
    char number[16];
    wsprintfA(number, "0x%08X", static_cast<unsigned>(code));
    Com<IWbemStatusCodeText> texts;
    Bstr text;
    if (FAILED(CoCreateInstance(CLSID_WbemStatusCodeText, nullptr, CLSCTX_INPROC_SERVER, IID_IWbemStatusCodeText,
                                reinterpret_cast<void**>(texts.Receive()))) ||
        FAILED(texts.Get()->GetErrorCodeText(code, 0, 0, text.Receive())))
        return number;
    std::string words = FromBstr(text.Get());
    while (words.ends_with('\n') || words.ends_with('\r') || words.ends_with(' ')) words.pop_back();
    return number + (" " + words);
}

// False when the time is over first.
bool WaitPainting(HANDLE event, DWORD milliseconds) {
    for (DWORD start = GetTickCount(), passed = 0; passed < milliseconds; passed = GetTickCount() - start) {
        DWORD woken = MsgWaitForMultipleObjects(1, &event, FALSE, milliseconds - passed, QS_PAINT | QS_SENDMESSAGE);
        if (woken != WAIT_OBJECT_0 + 1) return woken == WAIT_OBJECT_0;
        MSG message;
        // A window that never gets valid must not hold the loop.
        for (int i = 0; i < 100; ++i) {
            if (!PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | PM_QS_PAINT | PM_QS_SENDMESSAGE)) break;
            DispatchMessageW(&message);
        }
    }
    return false;
}

}  // namespace

struct WmiTask::Traits {
    using Type = WmiTask*;
    static Type None() { return nullptr; }
    static void Close(Type task) { task->Release(); }
};

class WmiTask::Lock {
public:
    explicit Lock(WmiTask& locked) : task(locked) { EnterCriticalSection(&task.section); }
    ~Lock() { LeaveCriticalSection(&task.section); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

private:
    WmiTask& task;
};

WmiTask::WmiTask(Work given) : work(std::move(given)), changed(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {
    InitializeCriticalSection(&section);
}

WmiTask::~WmiTask() {
    DeleteCriticalSection(&section);
    CloseHandle(changed);
}

void WmiTask::Release() {
    if (InterlockedDecrement(&references) == 0) delete this;
}

WmiTask::Outcome WmiTask::Run(Work work, uint32_t timeoutMilliseconds, const EachRow& each) {
    Owned<Traits> task(new WmiTask(std::move(work)));
    KernelHandle thread(
        CreateThread(nullptr, stackBytes, ThreadMain, task.Get(), STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr));
    if (!thread) {
        task.Get()->Release();  // the worker's share
        return {WmiStatus::failed, "No thread could be started.", 0};
    }
    Outcome outcome = task.Get()->Await(timeoutMilliseconds, each);
    InterlockedExchange(&task.Get()->abandoned, 1);
    return outcome;
}

DWORD WINAPI WmiTask::ThreadMain(void* given) {
    Owned<Traits> task(static_cast<WmiTask*>(given));
    WmiTask& self = *task.Get();
    ComApartment apartment(COINIT_MULTITHREADED);
    HRESULT code = self.work(self);
    std::string text = FAILED(code) ? ErrorText(code) : "";
    Lock lock(self);
    self.result = code;
    self.error = std::move(text);
    self.finished = true;
    SetEvent(self.changed);
    return 0;
}

bool WmiTask::Deliver(WmiRow row) {
    constexpr size_t fullQueue = 500;
    for (bool waiting = true; waiting && !Abandoned();) {
        {
            Lock lock(*this);
            waiting = rows.size() >= fullQueue;
            if (!waiting) rows.push_back(std::move(row));
        }
        SetEvent(changed);
        if (waiting) Sleep(5);
    }
    return !Abandoned();
}

WmiTask::Outcome WmiTask::Await(uint32_t timeoutMilliseconds, const EachRow& each) {
    DWORD start = GetTickCount();
    for (;;) {
        std::vector<WmiRow> ready;
        bool ended;
        {
            Lock lock(*this);
            ready.swap(rows);
            ended = finished;
        }
        for (const WmiRow& row : ready) {
            if (!each(row)) return {WmiStatus::stopped, "", value};
            if (GetTickCount() - start >= timeoutMilliseconds) return {WmiStatus::timedOut, "", value};
        }
        if (ended) return {FAILED(result) ? WmiStatus::failed : WmiStatus::done, error, value};
        DWORD passed = GetTickCount() - start;
        if (passed >= timeoutMilliseconds || !WaitPainting(changed, timeoutMilliseconds - passed))
            return {WmiStatus::timedOut, "", value};
    }
}

}  // namespace pc
