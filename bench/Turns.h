#pragma once
// What the comparisons share: two sides take turns in one run, and the ratio is the median of the ratios of
// neighbouring turns, so that other load on the machine weighs on both.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <vector>

namespace bench {

// Processor time of the calling thread.
inline double ThreadSeconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

template <typename Work>
double SecondsOf(Work work) {
    const double begin = ThreadSeconds();
    work();
    return ThreadSeconds() - begin;
}

// The upper one of an even number; 0 of none.
inline double Median(std::vector<double> values) {
    if (values.empty()) return 0.0;
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
    return values[values.size() / 2];
}

// A benchmark whose sides disagree, or that cannot run, must not print figures.
inline void Require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "The benchmark cannot go on: %s.\n", what);
    std::exit(1);
}

// The measurements of two sides, turn by turn.
struct Turns {
    std::vector<double> ours;
    std::vector<double> theirs;
    std::vector<double> ratios;  // ours by theirs

    void Add(double oursValue, double theirsValue) {
        ours.push_back(oursValue);
        theirs.push_back(theirsValue);
        ratios.push_back(oursValue / theirsValue);
    }
};

}  // namespace bench
