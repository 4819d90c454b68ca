// Comparisons on one PC in one run: medians, and one table with the limits.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

// Milliseconds that an action takes.
inline double Measure(const std::function<void()>& action) {
    LARGE_INTEGER frequency, begin, end;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&begin);
    action();
    QueryPerformanceCounter(&end);
    return static_cast<double>(end.QuadPart - begin.QuadPart) * 1000.0 / static_cast<double>(frequency.QuadPart);
}

inline double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return (values[values.size() / 2] + values[(values.size() - 1) / 2]) / 2;
}

inline void Head() { std::printf("%-44s %12s %12s %8s %8s\n", "what", "ours", "bare", "ratio", "limit"); }

// Times in milliseconds: ours at most limit times the bare one.
inline void Row(const char* what, double ours, double bare, double limit) {
    std::printf("%-44s %12.2f %12.2f %8.2f %8.2f %s\n", what, ours, bare, ours / bare, limit,
                ours <= bare * limit ? "" : "OVER");
    std::fflush(stdout);
}
