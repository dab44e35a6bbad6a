// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "faults/SystemCalls.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <cerrno>
#include <optional>
#include <string>

// What the functions that stand in for those of the C library are made of.

namespace quillmark::test::watch {

/// What a call is known by: nothing where it is none of our business.
using Subject = std::optional<std::string>;

Subject ofPath(const char *path);
Subject ofPathAt(int folder, const char *path);
Subject ofDescriptor(int descriptor);

/// What is behind a descriptor from now on.
void opened(int descriptor, const Subject &subject);
void closed(int descriptor);

/// Gives the pipes of a child the names that they go by.
void openedPipe(const int *ends);

/// Whether calls that concern a child are watched at the moment.
Subject ofChild(const char *what);

/// How a call is to go: as asked for, with an error, or with half of the bytes.
struct Order {
    int error = 0;
    bool halved = false;
};

/// Asks for the order for a call, which counts it.
Order orderFor(const char *function, const Subject &subject);

/// Writes down how a call went. The folder is that of an entry's path.
struct Report {
    bool changes = false;
    int descriptor = -1;
    const char *path = nullptr;
};
void report(const char *function, const Subject &subject, bool failed, const Report &details);

/// The function of this name in the library that we stand before.
template <typename Function>
Function *libraryFunction(const char *name)
{
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

/// Makes a call that gives -1 (or nullptr) and errno where it fails, unless it is to fail.
template <typename Call>
auto passOn(const char *function, const Subject &subject, const Report &details, Call call)
    -> decltype(call(false))
{
    using Result = decltype(call(false));
    constexpr bool isPointer = std::is_pointer_v<Result>;
    Result failure{};
    if constexpr (!isPointer) {
        failure = -1;
    }
    if (!subject) {
        return call(false);
    }
    const Order order = orderFor(function, subject);
    Result result = failure;
    int error = order.error;
    if (error == 0) {
        result = call(order.halved);
        error = errno;
    }
    report(function, subject, result == failure, details);
    errno = error;
    return result;
}

} // namespace quillmark::test::watch
