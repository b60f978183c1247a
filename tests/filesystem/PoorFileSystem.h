// SPDX-License-Identifier: MIT
#pragma once

#include <cerrno>
#include <functional>
#include <thread>

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

/// Runs code as on a file system that lacks some features: the kernel refuses the calls of the
/// thread that runs it, with the errors that such file systems give.
class PoorFileSystem
{
public:
    bool hasExclusiveRename = true;
    bool hasHardLinks = true;
    bool hasNamelessFiles = true;

    /// False when the kernel can't refuse calls; then nothing was run.
    bool run(const std::function<void()> &something) const
    {
        bool isPoor = false;
        std::thread([&] {
            isPoor = becomePoor();
            if (isPoor)
                something();
        }).join();
        return isPoor;
    }

private:
    static constexpr unsigned offsetOfFlags = offsetof(seccomp_data, args) + 2 * sizeof(__u64);
    static constexpr unsigned namelessFlag = O_TMPFILE & ~unsigned(O_DIRECTORY);

    static unsigned refusal(bool hasIt, int error)
    {
        return hasIt ? SECCOMP_RET_ALLOW : SECCOMP_RET_ERRNO | unsigned(error);
    }

    bool becomePoor() const
    {
        struct sock_filter rules[] = {
            BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
            BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_renameat2, 0, 1),
            BPF_STMT(BPF_RET | BPF_K, refusal(hasExclusiveRename, EINVAL)),
            BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_linkat, 0, 1),
            BPF_STMT(BPF_RET | BPF_K, refusal(hasHardLinks, EPERM)),
            BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat, 0, 3),
            BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetOfFlags),
            BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, namelessFlag, 0, 1),
            BPF_STMT(BPF_RET | BPF_K, refusal(hasNamelessFiles, EOPNOTSUPP)),
            BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        };
        const struct sock_fprog program = {sizeof rules / sizeof rules[0], rules};
        return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
               ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
    }
};
