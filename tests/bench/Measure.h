// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <ctime>
#include <fstream>
#include <string>
#include <vector>

namespace quillmark::bench {

/// The milliseconds that a call takes.
template <typename Call>
double milliseconds(Call call)
{
    const auto start = std::chrono::steady_clock::now();
    call();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

/// Milliseconds of processor time that this process has had, on all cores.
inline double processorMilliseconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

inline double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// A thing and its floor, timed in turns so that both meet the same moods of the machine.
struct Comparison {
    double subject;        ///< median milliseconds
    double floor;          ///< median milliseconds
    double ratio;          ///< median of the pairs' ratios
    double processorRatio; ///< the same of processor time, on all cores together
};

template <typename Subject, typename Floor>
Comparison compareInTurns(int pairs, Subject subject, Floor floor)
{
    std::vector<double> subjects;
    std::vector<double> floors;
    std::vector<double> ratios;
    std::vector<double> processorRatios;
    for (int pair = 0; pair < pairs; ++pair) {
        const double start = processorMilliseconds();
        floors.push_back(milliseconds(floor));
        const double middle = processorMilliseconds();
        subjects.push_back(milliseconds(subject));
        ratios.push_back(subjects.back() / floors.back());
        processorRatios.push_back((processorMilliseconds() - middle) / (middle - start));
    }
    return {median(subjects), median(floors), median(ratios), median(processorRatios)};
}

/// The most memory that this process has had in use, in MB (10^6 bytes); from /proc/self/status.
inline double peakMegabytes()
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmHWM:") {
            double kibibytes = 0;
            status >> kibibytes;
            return kibibytes * 1024 / 1e6;
        }
    }
    return 0;
}

} // namespace quillmark::bench
