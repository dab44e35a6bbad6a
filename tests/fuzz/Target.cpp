// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "fuzz/Target.h"

#include <cstdlib>
#include <ctime>
#include <iostream>

namespace quillmark::fuzz {
namespace {

constexpr double mostSeconds = 10;

double processorSeconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

} // namespace

TimeLimit::TimeLimit() : m_start(processorSeconds()) {}

TimeLimit::~TimeLimit()
{
    require(processorSeconds() - m_start <= mostSeconds, "an input is dealt with in ten seconds");
}

void require(bool holds, const char *property)
{
    if (!holds) {
        std::cerr << "does not hold: " << property << std::endl;
        std::abort();
    }
}

} // namespace quillmark::fuzz
