// Comparisons on one PC in one run.
#pragma once

#include <windows.h>

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "bench/table.h"

// Milliseconds that an action takes.
inline double Measure(const std::function<void()>& action) {
    LARGE_INTEGER frequency, begin, end;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&begin);
    action();
    QueryPerformanceCounter(&end);
    return static_cast<double>(end.QuadPart - begin.QuadPart) * 1000.0 / static_cast<double>(frequency.QuadPart);
}
