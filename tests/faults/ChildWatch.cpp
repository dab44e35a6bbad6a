// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "faults/ChildWatch.h"

#include <sys/mman.h>

#include <array>
#include <cstring>
#include <new>
#include <stdexcept>

namespace quillmark::test::watch {
namespace {

/// Of a fixed size and without pointers into one process: functions go by literals, which are at
/// the same place in both.
struct Plan {
    struct Planned {
        std::array<char, 32> function{};
        int occurrence = 0;
        int error = 0;
        int seen = 0;
    };
    struct Made {
        const char *function = nullptr;
        bool failed = false;
    };
    std::array<Planned, 4> faults{};
    std::size_t faultCount = 0;
    std::array<Made, 1024> calls{};
    std::size_t callCount = 0;
};

Plan &plan()
{
    static Plan *const shared = [] {
        void *const memory = ::mmap(nullptr, sizeof(Plan), PROT_READ | PROT_WRITE,
                                    MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) {
            throw std::bad_alloc();
        }
        return new (memory) Plan;
    }();
    return *shared;
}

/// For the child, which may not wait for the static above to be made.
constinit Plan *planOfChild = nullptr;

} // namespace

void planForChild(const std::vector<Fault> &faults)
{
    plan() = Plan{};
    for (const Fault &fault : faults) {
        if (fault.subject != childItself) {
            continue;
        }
        Plan::Planned &planned = plan().faults.at(plan().faultCount++);
        if (fault.function.size() >= planned.function.size()) {
            throw std::length_error(fault.function);
        }
        fault.function.copy(planned.function.data(), fault.function.size());
        planned.occurrence = fault.occurrence;
        planned.error = fault.error;
    }
    planOfChild = nullptr;
}

std::vector<SystemCall> callsOfChild()
{
    std::vector<SystemCall> calls;
    for (std::size_t i = 0; i < plan().callCount; ++i) {
        const Plan::Made &made = plan().calls.at(i);
        calls.push_back({.function = made.function, .subject = childItself, .failed = made.failed});
    }
    return calls;
}

bool childMetItsFaults()
{
    bool met = true;
    for (std::size_t i = 0; i < plan().faultCount; ++i) {
        met = met && plan().faults.at(i).seen >= plan().faults.at(i).occurrence;
    }
    return met;
}

void becomeChild() noexcept
{
    planOfChild = &plan();
}

bool isChild() noexcept
{
    return planOfChild != nullptr;
}

Order orderInChild(const char *function) noexcept
{
    Plan &plan = *planOfChild;
    Order order;
    bool due = false;
    for (std::size_t i = 0; i < plan.faultCount; ++i) {
        Plan::Planned &fault = plan.faults[i];
        if (std::strcmp(fault.function.data(), function) != 0) {
            continue;
        }
        ++fault.seen;
        if (fault.occurrence == fault.seen || (fault.occurrence == Fault::always && !due)) {
            order = {.error = fault.error, .halved = fault.error == 0};
            due = true;
        }
    }
    if (plan.callCount < plan.calls.size()) {
        plan.calls[plan.callCount++] = {function, order.error != 0};
    }
    return order;
}

} // namespace quillmark::test::watch
