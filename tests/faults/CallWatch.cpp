// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "faults/CallWatch.h"

#include "faults/ChildWatch.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <map>
#include <mutex>
#include <string_view>

namespace quillmark::test {
namespace watch {
namespace {

namespace fs = std::filesystem;

/// What goes on while calls are watched.
struct Watch {
    WatchedCalls::Labels labels;
    struct Awaited {
        Fault fault;
        int occurrences = 0; ///< of the call that is to fail
        bool isMet() const { return occurrences >= fault.occurrence; }
    };
    std::vector<Awaited> faults;
    std::size_t pipes = 0;
    /// Of the parts of names that were chosen at random, by what stands before them.
    std::map<std::string_view, std::map<std::string, std::size_t>> numbers;
    std::map<int, std::string> descriptors;
    std::vector<SystemCall> calls;
};

std::mutex &mutex()
{
    static std::mutex instance;
    return instance;
}

std::optional<Watch> &current()
{
    static std::optional<Watch> instance;
    return instance;
}

/// Whether there is a watch: asked without the lock, by every call of the process.
constinit std::atomic<bool> watching = false;

/// Between fork() and its program, a child has a watch of its own (ChildWatch.h).
constinit std::atomic<pid_t> watched = 0;

/// The watch's own work makes calls too, such as those of an allocation.
thread_local bool busy = false;

/// Holds the watch, if there is one and this thread is not at work for it.
class Held
{
public:
    Held() : m_free(!busy && watching && ::getpid() == watched)
    {
        if (m_free) {
            busy = true;
            m_lock = std::unique_lock(mutex());
        }
    }
    Held(const Held &) = delete;
    Held &operator=(const Held &) = delete;
    ~Held()
    {
        if (m_free) {
            busy = false;
        }
    }

    explicit operator bool() const { return m_free && current(); }
    Watch &operator*() const { return *current(); }
    Watch *operator->() const { return &*current(); }

private:
    bool m_free;
    std::unique_lock<std::mutex> m_lock;
};

/// Gives what mkdtemp chose at random the number of its first appearance, from 1, so that a
/// name is the same in another run; "new" where it has yet to choose.
std::string withoutRandomParts(Watch &watch, std::string path)
{
    constexpr std::string_view placeholder = "XXXXXX";
    for (const std::string_view prefix : {"/.quillmark-", "Payload.v2."}) {
        const std::size_t found = ("/" + path).find(prefix);
        if (found == std::string::npos) {
            continue;
        }
        const std::size_t begin = found + prefix.size() - 1;
        const std::string random = path.substr(begin, placeholder.size());
        if (random.size() < placeholder.size()) {
            continue;
        }
        std::string name = "new";
        if (random != placeholder) {
            auto &numbers = watch.numbers[prefix];
            name = std::to_string(numbers.try_emplace(random, numbers.size() + 1).first->second);
        }
        path.replace(begin, placeholder.size(), name);
    }
    return path;
}

Subject labelled(Watch &watch, const std::string &path)
{
    for (const auto &[root, label] : watch.labels) {
        const std::string &prefix = root.native();
        if (path == prefix) {
            return label;
        }
        if (path.starts_with(prefix) && path[prefix.size()] == '/') {
            return label + withoutRandomParts(watch, path.substr(prefix.size()));
        }
    }
    return std::nullopt;
}

/// Asks in a way in which nobody else does, so that who traces this process can tell.
std::pair<dev_t, ino_t> identityOf(int folder, const char *path, int flags)
{
    static auto *const real =
        libraryFunction<int(int, const char *, int, unsigned int, struct statx *)>("statx");
    struct statx status {};
    if (real(folder, path, flags, STATX_INO, &status) != 0) {
        return {};
    }
    return {makedev(status.stx_dev_major, status.stx_dev_minor), status.stx_ino};
}

std::pair<dev_t, ino_t> identityOf(int descriptor)
{
    return identityOf(descriptor, "", AT_EMPTY_PATH);
}

std::pair<dev_t, ino_t> identityOf(const fs::path &path)
{
    return identityOf(AT_FDCWD, path.c_str(), 0);
}

} // namespace

Subject ofPath(const char *path)
{
    const Held watch;
    return watch && path != nullptr ? labelled(*watch, path) : std::nullopt;
}

Subject ofPathAt(int folder, const char *path)
{
    if (path == nullptr || path[0] == '/') {
        return ofPath(path);
    }
    const Subject base = ofDescriptor(folder);
    const Held watch;
    return base && watch
               ? Subject(*base + (path[0] == '\0' ? "" : "/") + withoutRandomParts(*watch, path))
               : std::nullopt;
}

Subject ofDescriptor(int descriptor)
{
    const Held watch;
    if (watch) {
        const auto found = watch->descriptors.find(descriptor);
        if (found != watch->descriptors.end()) {
            return found->second;
        }
    }
    return std::nullopt;
}

void opened(int descriptor, const Subject &subject)
{
    const Held watch;
    if (watch && subject && descriptor >= 0) {
        watch->descriptors[descriptor] = *subject;
    }
}

void closed(int descriptor)
{
    const Held watch;
    if (watch) {
        watch->descriptors.erase(descriptor);
    }
}

void openedPipe(const int *ends)
{
    const Held watch;
    if (watch) {
        constexpr std::array<const char *, 3> names{"child's output", "child's errors",
                                                    "child's start"};
        const std::string name = names.at(watch->pipes++ % names.size());
        watch->descriptors[ends[0]] = name;
        watch->descriptors[ends[1]] = name + ", its end";
    }
}

Subject ofChild(const char *what)
{
    const Held watch;
    return watch ? Subject(what) : std::nullopt;
}

Order orderFor(const char *function, const Subject &subject)
{
    const Held watch;
    if (!watch) {
        return {};
    }
    const Fault *due = nullptr;
    for (Watch::Awaited &awaited : watch->faults) {
        const Fault &fault = awaited.fault;
        if (fault.function != function || (!fault.subject.empty() && fault.subject != *subject)) {
            continue;
        }
        ++awaited.occurrences;
        if (fault.occurrence == awaited.occurrences ||
            (fault.occurrence == Fault::always && due == nullptr)) {
            due = &fault;
        }
    }
    return due != nullptr ? Order{.error = due->error, .halved = due->error == 0} : Order{};
}

void report(const char *function, const Subject &subject, bool failed, const Report &details)
{
    const Held watch;
    if (!watch) {
        return;
    }
    SystemCall call{
        .function = function, .subject = *subject, .changes = details.changes, .failed = failed};
    if (details.descriptor >= 0) {
        call.file = identityOf(details.descriptor);
    } else if (details.path != nullptr) {
        call.file = identityOf(fs::path(details.path));
        call.folder = identityOf(fs::path(details.path).parent_path());
    }
    watch->calls.push_back(std::move(call));
}

} // namespace watch

WatchedCalls::WatchedCalls(Labels labels, std::vector<Fault> faults)
{
    watch::current().emplace();
    watch::current()->labels = std::move(labels);
    watch::planForChild(faults);
    for (Fault &fault : faults) {
        if (fault.subject != watch::childItself) {
            watch::current()->faults.push_back({std::move(fault)});
        }
    }
    watch::watched = ::getpid();
    watch::watching = true;
}

WatchedCalls::~WatchedCalls()
{
    const watch::Held held;
    watch::watching = false;
    watch::current().reset();
    watch::planForChild({});
}

std::vector<SystemCall> WatchedCalls::calls() const
{
    const watch::Held held;
    std::vector<SystemCall> calls = held->calls;
    for (SystemCall &call : watch::callsOfChild()) {
        calls.push_back(std::move(call));
    }
    return calls;
}

bool WatchedCalls::faultsMet() const
{
    const watch::Held held;
    return watch::childMetItsFaults() &&
           std::all_of(held->faults.begin(), held->faults.end(),
                       [](const auto &awaited) { return awaited.isMet(); });
}

} // namespace quillmark::test
