// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <ctime>
#include <fstream>
#include <string>
#include <string_view>
#include <utility>
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

/// The middle value, or what is halfway between the two middle ones.
inline double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    if (values.size() % 2 != 0) {
        return *middle;
    }
    return (*std::max_element(values.begin(), middle) + *middle) / 2;
}

/// A thing and its floor, timed in turns so that both meet the same moods of the machine.
struct Comparison {
    double subject;        ///< median milliseconds
    double floor;          ///< median milliseconds
    double ratio;          ///< median of the pairs' ratios
    double processorRatio; ///< the same of processor time, on all cores together
    std::vector<std::pair<double, double>> pairs; ///< milliseconds of subject and floor
};

/// `reset` runs before each of them and is not timed. Each comes first every other time: what
/// the disk still has to do after one of them is in the time of the next. The number of pairs is
/// even, so that neither comes first more often.
template <typename Subject, typename Floor, typename Reset>
Comparison compareInTurns(int pairs, Subject subject, Floor floor, Reset reset)
{
    struct Cost {
        double time;
        double processor;
    };
    const auto costOf = [&reset](auto &work) {
        reset();
        const double start = processorMilliseconds();
        const double time = milliseconds(work);
        return Cost{time, processorMilliseconds() - start};
    };
    std::vector<std::pair<double, double>> all;
    std::vector<double> subjects;
    std::vector<double> floors;
    std::vector<double> ratios;
    std::vector<double> processorRatios;
    for (int pair = 0; pair < pairs; ++pair) {
        Cost ofFloor{};
        Cost ofSubject{};
        if (pair % 2 == 0) {
            ofFloor = costOf(floor);
            ofSubject = costOf(subject);
        } else {
            ofSubject = costOf(subject);
            ofFloor = costOf(floor);
        }
        all.emplace_back(ofSubject.time, ofFloor.time);
        floors.push_back(ofFloor.time);
        subjects.push_back(ofSubject.time);
        ratios.push_back(ofSubject.time / ofFloor.time);
        processorRatios.push_back(ofSubject.processor / ofFloor.processor);
    }
    return {median(subjects), median(floors), median(ratios), median(processorRatios), all};
}

template <typename Subject, typename Floor>
Comparison compareInTurns(int pairs, Subject subject, Floor floor)
{
    return compareInTurns(pairs, subject, floor, [] {});
}

/// A line of /proc/self/status in MB (10^6 bytes).
inline double statusMegabytes(std::string_view name)
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == name) {
            double kibibytes = 0;
            status >> kibibytes;
            return kibibytes * 1024 / 1e6;
        }
    }
    return 0;
}

/// The most memory that this process has had in use, in MB.
inline double peakMegabytes()
{
    return statusMegabytes("VmHWM:");
}

/// What it has in use now, in MB.
inline double residentMegabytes()
{
    return statusMegabytes("VmRSS:");
}

} // namespace quillmark::bench
