// Management work on a thread of its own, whose starter may give up waiting.
//
// The management service can hang for minutes. So the work runs on another thread, and what the two share is freed by
// whichever lets go last: a thread that hangs for good costs its stack and never touches freed memory.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "platform/wmi.h"

namespace pc {

class WmiTask {
public:
    using Work = std::function<HRESULT(WmiTask&)>;
    using EachRow = std::function<bool(const WmiRow&)>;

    struct Outcome {
        WmiStatus status = WmiStatus::failed;
        std::string error;  // code and text when failed
        int32_t value = 0;  // what the work left
    };

    // Runs the work and hands its rows to each on the calling thread. Meanwhile only painting and messages sent from
    // elsewhere are handled, so that no handler of the program runs. The work must own all that it uses.
    static Outcome Run(Work work, uint32_t timeoutMilliseconds, const EachRow& each);

    // For the work: false when the starter waits no more.
    bool Deliver(WmiRow row);
    bool Abandoned() const { return abandoned != 0; }
    void SetValue(int32_t newValue) { value = newValue; }

private:
    struct Traits;
    class Lock;

    explicit WmiTask(Work given);
    ~WmiTask();
    void Release();
    static DWORD WINAPI ThreadMain(void* given);
    Outcome Await(uint32_t timeoutMilliseconds, const EachRow& each);

    Work work;
    volatile LONG references = 2;  // starter and worker
    volatile LONG abandoned = 0;
    HANDLE changed = nullptr;  // set at each row and at the end
    CRITICAL_SECTION section;  // guards what follows
    std::vector<WmiRow> rows;
    bool finished = false;
    HRESULT result = S_OK;
    std::string error;
    int32_t value = 0;
};

}  // namespace pc
