// Worker's cage: which system calls there are, by seccomp.
//
// Each list holds what was seen to be needed (strace) and what the C library may take in its place.
// Calls that one kind of processor lacks are passed over by libseccomp.
#include "worker/cage/system_calls.h"

#include <asm/ioctls.h>
#include <sched.h>
#include <seccomp.h>
#include <unistd.h>

#include <cerrno>
#include <initializer_list>
#include <memory>

namespace labelcut::worker {

namespace {

using Calls = std::initializer_list<int>;

/// Files and packets that are already open, memory, time, and this process itself.
constexpr Calls kAlways{
    SCMP_SYS(read),
    SCMP_SYS(pread64),
    SCMP_SYS(readv),
    SCMP_SYS(preadv),
    SCMP_SYS(write),
    SCMP_SYS(pwrite64),
    SCMP_SYS(writev),
    SCMP_SYS(pwritev),
    SCMP_SYS(lseek),
    SCMP_SYS(_llseek),
    SCMP_SYS(fstat),
    SCMP_SYS(fstat64),
    SCMP_SYS(newfstatat),
    SCMP_SYS(fstatat64),
    SCMP_SYS(statx),
    SCMP_SYS(ftruncate),
    SCMP_SYS(ftruncate64),
    SCMP_SYS(fsync),
    SCMP_SYS(fdatasync),
    SCMP_SYS(fallocate),
    SCMP_SYS(fadvise64),
    SCMP_SYS(close),
    SCMP_SYS(dup),
    SCMP_SYS(fcntl),
    SCMP_SYS(fcntl64),
    SCMP_SYS(poll),
    SCMP_SYS(ppoll),
    SCMP_SYS(select),
    SCMP_SYS(pselect6),
    SCMP_SYS(recvmsg),
    SCMP_SYS(sendmsg),
    SCMP_SYS(sendto),
    SCMP_SYS(brk),
    SCMP_SYS(mmap),
    SCMP_SYS(mmap2),
    SCMP_SYS(munmap),
    SCMP_SYS(mremap),
    SCMP_SYS(mprotect),
    SCMP_SYS(madvise),
    SCMP_SYS(membarrier),
    SCMP_SYS(futex),
    SCMP_SYS(futex_time64),
    SCMP_SYS(set_robust_list),
    SCMP_SYS(rseq),
    SCMP_SYS(exit),
    SCMP_SYS(exit_group),
    SCMP_SYS(restart_syscall),
    SCMP_SYS(rt_sigaction),
    SCMP_SYS(rt_sigprocmask),
    SCMP_SYS(rt_sigreturn),
    SCMP_SYS(sigreturn),
    SCMP_SYS(sigaltstack),
    SCMP_SYS(gettimeofday),
    SCMP_SYS(time),
    SCMP_SYS(times),
    SCMP_SYS(clock_gettime),
    SCMP_SYS(clock_gettime64),
    SCMP_SYS(clock_getres),
    SCMP_SYS(clock_nanosleep),
    SCMP_SYS(clock_nanosleep_time64),
    SCMP_SYS(nanosleep),
    SCMP_SYS(getrandom),
    SCMP_SYS(getpid),
    SCMP_SYS(gettid),
    SCMP_SYS(getppid),
    SCMP_SYS(getuid),
    SCMP_SYS(geteuid),
    SCMP_SYS(getgid),
    SCMP_SYS(getegid),
    SCMP_SYS(getrusage),
    SCMP_SYS(uname),
    SCMP_SYS(sysinfo),
    SCMP_SYS(getrlimit),
    SCMP_SYS(ugetrlimit),
    SCMP_SYS(sched_yield),
    SCMP_SYS(sched_getaffinity),
    SCMP_SYS(getcpu),
};

/// Opening and looking at paths, as far as the rules for paths let it.
constexpr Calls kPaths{
    SCMP_SYS(open),       SCMP_SYS(openat),     SCMP_SYS(stat),       SCMP_SYS(stat64),
    SCMP_SYS(lstat),      SCMP_SYS(lstat64),    SCMP_SYS(access),     SCMP_SYS(faccessat),
    SCMP_SYS(faccessat2), SCMP_SYS(readlink),   SCMP_SYS(readlinkat), SCMP_SYS(getcwd),
    SCMP_SYS(getdents),   SCMP_SYS(getdents64), SCMP_SYS(statfs),     SCMP_SYS(statfs64),
    SCMP_SYS(fstatfs),    SCMP_SYS(fstatfs64),  SCMP_SYS(eventfd2),   SCMP_SYS(pipe2),
};

/// Becoming another program, and its temporary files.
constexpr Calls kProgram{
    SCMP_SYS(execve),  SCMP_SYS(arch_prctl), SCMP_SYS(set_tid_address), SCMP_SYS(set_thread_area),
    SCMP_SYS(set_tls), SCMP_SYS(unlink),     SCMP_SYS(unlinkat),        SCMP_SYS(umask),
    SCMP_SYS(rename),  SCMP_SYS(renameat),   SCMP_SYS(renameat2),
};

bool allow(scmp_filter_ctx filter, const Calls& calls) {
    for (const int call : calls) {
        if (seccomp_rule_add(filter, SCMP_ACT_ALLOW, call, 0) != 0)
            return false;
    }
    return true;
}

/// The call, as long as its argument number `argument` is `value`.
bool allowWith(scmp_filter_ctx filter, int call, unsigned argument, scmp_datum_t value) {
    const scmp_arg_cmp equal{argument, SCMP_CMP_EQ, value, 0};
    return seccomp_rule_add_array(filter, SCMP_ACT_ALLOW, call, 1, &equal) == 0;
}

/// Threads, which share all with the process that starts them: by the call of old, whose flags a
/// filter can see. The newer one is said not to be there, so that the C library takes the old one.
bool allowThreads(scmp_filter_ctx filter) {
    constexpr scmp_datum_t kShared = CLONE_VM | CLONE_THREAD;
    const scmp_arg_cmp isThread{0, SCMP_CMP_MASKED_EQ, kShared, kShared};
    return seccomp_rule_add_array(filter, SCMP_ACT_ALLOW, SCMP_SYS(clone), 1, &isThread) == 0 &&
           seccomp_rule_add(filter, SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3), 0) == 0;
}

bool allowOwn(scmp_filter_ctx filter) {
    // What abort() does to this process and nobody else; reading limits, not changing them; and
    // asking whether a file is a terminal.
    return allowWith(filter, SCMP_SYS(tgkill), 0, static_cast<scmp_datum_t>(getpid())) &&
           allowWith(filter, SCMP_SYS(prlimit64), 2, 0) &&
           allowWith(filter, SCMP_SYS(ioctl), 1, TCGETS);
}

} // namespace

bool filterSystemCalls(const Cage& cage) {
    const std::unique_ptr<void, void (*)(scmp_filter_ctx)> filter(
        seccomp_init(SCMP_ACT_ERRNO(EPERM)), seccomp_release);
    if (!filter) {
        errno = ENOMEM;
        return false;
    }
    const bool opens = !cage.readable.empty() || cage.workFolder >= 0 || !cage.program.empty();
    if (!allow(filter.get(), kAlways) || !allowOwn(filter.get()) ||
        (opens && !allow(filter.get(), kPaths)) ||
        (cage.hasThreads && !allowThreads(filter.get())) ||
        (!cage.program.empty() && !allow(filter.get(), kProgram))) {
        errno = EINVAL;
        return false;
    }
    const int refusal = seccomp_load(filter.get());
    errno = -refusal;
    return refusal == 0;
}

} // namespace labelcut::worker
