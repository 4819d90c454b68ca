// One table for all comparisons: medians of ours and of the bare way, their ratio and its limit.
#pragma once

#include <algorithm>
#include <cstdio>
#include <vector>

inline double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return (values[values.size() / 2] + values[(values.size() - 1) / 2]) / 2;
}

inline void Head() { std::printf("%-44s %12s %12s %8s %8s\n", "what", "ours", "bare", "ratio", "limit"); }

// Times in milliseconds: ours at most limit times the bare one. A limit of 0 is only for the record.
inline void Row(const char* what, double ours, double bare, double limit) {
    std::printf("%-44s %12.2f %12.2f %8.2f ", what, ours, bare, ours / bare);
    if (limit > 0)
        std::printf("%8.2f %s\n", limit, ours <= bare * limit ? "" : "OVER");
    else
        std::printf("%8s\n", "-");
    std::fflush(stdout);
}
