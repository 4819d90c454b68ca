// Google Test's header names std::mutex and std::condition_variable, which the compiler's win32 thread model lacks.
// The tests have one thread, so stand-ins that do nothing are enough. Included before everything in the contract tests.
#pragma once

#include <mutex>

namespace std {
struct mutex {
    void lock() {}
    void unlock() {}
};
struct condition_variable {
    void notify_all() {}
    template <class Lock, class Condition>
    void wait(Lock&, Condition) {}
};
}  // namespace std
