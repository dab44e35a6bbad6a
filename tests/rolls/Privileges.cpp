// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "rolls/Privileges.h"

#include <linux/capability.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <fstream>
#include <string>

namespace quillmark::test {
namespace {

bool ownMounts = false;

/// Becomes an administrator of nothing but a user namespace, with the same number as before.
bool enterUserNamespace()
{
    const std::string user = std::to_string(::geteuid());
    const std::string group = std::to_string(::getegid());
    if (::unshare(CLONE_NEWUSER) != 0) {
        return false;
    }
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << user + " " + user + " 1";
    std::ofstream("/proc/self/gid_map") << group + " " + group + " 1";
    return true;
}

} // namespace

void obeyPermissions()
{
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> sets{};
    ::syscall(SYS_capget, &header, sets.data());
    for (const unsigned capability : {unsigned{CAP_DAC_OVERRIDE}, unsigned{CAP_DAC_READ_SEARCH}}) {
        ::prctl(PR_CAPBSET_DROP, capability, 0, 0, 0); // else children of root have it again
        const __u32 kept = ~CAP_TO_MASK(capability);
        auto &set = sets.at(CAP_TO_INDEX(capability));
        set.effective &= kept;
        set.permitted &= kept;
        set.inheritable &= kept;
    }
    ::syscall(SYS_capset, &header, sets.data());
}

void takeOwnMounts()
{
    const auto unshareMounts = [] { return ::unshare(CLONE_NEWNS) == 0; };
    ownMounts = (unshareMounts() || (enterUserNamespace() && unshareMounts())) &&
                ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

bool canMount()
{
    return ownMounts;
}

} // namespace quillmark::test
