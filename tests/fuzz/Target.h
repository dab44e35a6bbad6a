// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

/// What libFuzzer calls once for each input; Replay.cpp does so for files. Gives 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace quillmark::fuzz {

using Bytes = std::span<const std::uint8_t>;

/// Requires that what it is around takes no more than ten seconds of processor time, all threads
/// together. libFuzzer itself goes by the clock, which runs on while others compute.
class TimeLimit
{
public:
    TimeLimit();
    ~TimeLimit();
    TimeLimit(const TimeLimit &) = delete;
    TimeLimit &operator=(const TimeLimit &) = delete;

private:
    double m_start; ///< seconds
};

/// Says which property does not hold and ends the process, so that the input is kept.
void require(bool holds, const char *property);

} // namespace quillmark::fuzz
