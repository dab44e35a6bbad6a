// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// Preloaded into a program, it makes the search for one host's address take for ever, as it takes
// long where a name server does not answer.

#include <dlfcn.h>
#include <netdb.h>
#include <unistd.h>

#include <cstring>

extern "C" int getaddrinfo(const char *node, const char *service, const addrinfo *hints,
                           addrinfo **found)
{
    while (node != nullptr && std::strcmp(node, "nobody-answers.invalid") == 0) {
        pause();
    }
    using Function = decltype(&getaddrinfo);
    static const auto next = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "getaddrinfo"));
    return next(node, service, hints, found);
}
