// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/Confinement.h"

#include "platform/Sanitizers.h"

#include <array>
#include <cerrno>
#include <memory>
#include <system_error>

#include <asm/ioctls.h>
#include <fcntl.h>
#include <linux/landlock.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace dorvantel {

namespace {

std::unexpected<std::string> failed(const std::string& what, int error) {
    return std::unexpected(what + ": " + std::generic_category().message(error));
}

// What needs no look at its arguments. None of these reaches beyond the process and what it has open. Calls that a
// processor's kernel does not have are passed over.
constexpr std::array harmless = {
    // What is open.
    SCMP_SYS(read), SCMP_SYS(readv), SCMP_SYS(pread64), SCMP_SYS(write), SCMP_SYS(writev), SCMP_SYS(lseek),
    SCMP_SYS(_llseek), SCMP_SYS(close), SCMP_SYS(fadvise64), SCMP_SYS(poll), SCMP_SYS(ppoll), SCMP_SYS(eventfd2),
    // What files there are.
    SCMP_SYS(stat), SCMP_SYS(lstat), SCMP_SYS(fstat), SCMP_SYS(newfstatat), SCMP_SYS(fstatat64), SCMP_SYS(fstat64),
    SCMP_SYS(stat64), SCMP_SYS(lstat64), SCMP_SYS(statx), SCMP_SYS(access), SCMP_SYS(faccessat), SCMP_SYS(faccessat2),
    SCMP_SYS(readlink), SCMP_SYS(readlinkat), SCMP_SYS(getdents), SCMP_SYS(getdents64), SCMP_SYS(getcwd),
    // Memory.
    SCMP_SYS(brk), SCMP_SYS(mmap), SCMP_SYS(mmap2), SCMP_SYS(munmap), SCMP_SYS(mprotect), SCMP_SYS(mremap),
    SCMP_SYS(madvise), SCMP_SYS(mincore),
    // Threads and signals of its own.
    SCMP_SYS(futex), SCMP_SYS(futex_time64), SCMP_SYS(set_robust_list), SCMP_SYS(rseq), SCMP_SYS(membarrier),
    SCMP_SYS(sched_yield), SCMP_SYS(sched_getaffinity), SCMP_SYS(getcpu), SCMP_SYS(rt_sigaction),
    SCMP_SYS(rt_sigprocmask), SCMP_SYS(rt_sigreturn), SCMP_SYS(sigreturn), SCMP_SYS(sigaltstack),
    SCMP_SYS(restart_syscall), SCMP_SYS(exit), SCMP_SYS(exit_group),
    // What it is, what it used, what time it is.
    SCMP_SYS(getpid), SCMP_SYS(gettid), SCMP_SYS(getppid), SCMP_SYS(getuid), SCMP_SYS(geteuid), SCMP_SYS(getgid),
    SCMP_SYS(getegid), SCMP_SYS(getrusage), SCMP_SYS(getrlimit), SCMP_SYS(ugetrlimit), SCMP_SYS(times),
    SCMP_SYS(sysinfo), SCMP_SYS(uname), SCMP_SYS(getrandom), SCMP_SYS(time), SCMP_SYS(gettimeofday),
    SCMP_SYS(clock_gettime), SCMP_SYS(clock_gettime64), SCMP_SYS(clock_getres), SCMP_SYS(clock_getres_time64),
    SCMP_SYS(nanosleep), SCMP_SYS(clock_nanosleep), SCMP_SYS(clock_nanosleep_time64)};

/// A filter of system calls that refuses what it was not told to allow.
class Filter {
public:
    Filter() {
        if (!m_context) {
            m_error = ENOMEM;
            return;
        }
        // A tree instead of a list, the same filter for all threads, and the system's own errors.
        note(seccomp_attr_set(m_context.get(), SCMP_FLTATR_CTL_OPTIMIZE, 2));
        note(seccomp_attr_set(m_context.get(), SCMP_FLTATR_CTL_TSYNC, 1));
        note(seccomp_attr_set(m_context.get(), SCMP_FLTATR_API_SYSRAWRC, 1));
    }

    void allow(int call) { note(seccomp_rule_add_array(m_context.get(), SCMP_ACT_ALLOW, call, 0, nullptr)); }
    void allow(int call, scmp_arg_cmp when) {
        note(seccomp_rule_add_array(m_context.get(), SCMP_ACT_ALLOW, call, 1, &when));
    }
    void refuse(int call, int error) {
        note(seccomp_rule_add_array(m_context.get(), SCMP_ACT_ERRNO(static_cast<unsigned>(error)), call, 0, nullptr));
    }
    /// 0, or the error of this or of anything before.
    int install() {
        if (m_error == 0) {
            note(seccomp_load(m_context.get()));
        }
        return m_error;
    }

private:
    void note(int result) {
        if (m_error == 0 && result < 0) {
            m_error = -result;
        }
    }

    std::unique_ptr<void, decltype(&seccomp_release)> m_context{seccomp_init(SCMP_ACT_ERRNO(EPERM)), seccomp_release};
    int m_error = 0;
};

scmp_arg_cmp argumentIs(unsigned index, scmp_datum_t value) {
    return {index, SCMP_CMP_EQ, value, 0};
}

scmp_arg_cmp argumentHas(unsigned index, scmp_datum_t mask, scmp_datum_t bits) {
    return {index, SCMP_CMP_MASKED_EQ, mask, bits};
}

void allowReadingFiles(Filter& filter) {
    constexpr scmp_datum_t changing = O_ACCMODE | O_CREAT | O_TRUNC;
    filter.allow(SCMP_SYS(open), argumentHas(1, changing, O_RDONLY));
    filter.allow(SCMP_SYS(openat), argumentHas(2, changing, O_RDONLY));
    for (const int command : {F_GETFD, F_SETFD, F_GETFL, F_SETFL}) {
        filter.allow(SCMP_SYS(fcntl), argumentIs(1, static_cast<scmp_datum_t>(command)));
        filter.allow(SCMP_SYS(fcntl64), argumentIs(1, static_cast<scmp_datum_t>(command)));
    }
    filter.allow(SCMP_SYS(ioctl), argumentIs(1, TCGETS)); // whether the output is a terminal
}

void allowThreads(Filter& filter) {
    filter.allow(SCMP_SYS(clone), argumentHas(0, CLONE_THREAD, CLONE_THREAD));
    // Its flags lie in memory, where a filter cannot look; without it, the C library takes clone.
    filter.refuse(SCMP_SYS(clone3), ENOSYS);
    filter.allow(SCMP_SYS(prctl), argumentIs(0, PR_SET_NAME));
    const auto self = static_cast<scmp_datum_t>(getpid());
    filter.allow(SCMP_SYS(tgkill), argumentIs(0, self)); // abort()
    filter.allow(SCMP_SYS(prlimit64), argumentIs(0, 0));
}

void allowWhatSanitizersNeed(Filter& filter) {
    for (const int call :
         {SCMP_SYS(clone), SCMP_SYS(ptrace), SCMP_SYS(wait4), SCMP_SYS(prctl), SCMP_SYS(pipe), SCMP_SYS(pipe2)}) {
        filter.allow(call);
    }
}

int installFilter() {
    Filter filter;
    for (const int call : harmless) {
        filter.allow(call);
    }
    allowReadingFiles(filter);
    allowThreads(filter);
    if (isSanitized) {
        allowWhatSanitizersNeed(filter);
    }
    return filter.install();
}

/// The C library has no names for these calls.
int landlockVersion() {
    return static_cast<int>(syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION));
}

/// Closes it in the end.
class Descriptor {
public:
    explicit Descriptor(long descriptor)
        : m_descriptor(static_cast<int>(descriptor)) {}
    ~Descriptor() {
        if (isOpen()) {
            close(m_descriptor);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    bool isOpen() const { return m_descriptor >= 0; }
    int get() const { return m_descriptor; }

private:
    int m_descriptor;
};

/// 0 or the error.
int confineReading() {
    constexpr __u64 reading = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
    // All that the first version knows: what it does not know, the filter of system calls refuses.
    const landlock_ruleset_attr handled{(LANDLOCK_ACCESS_FS_MAKE_SYM << 1U) - 1};
    const Descriptor rules(syscall(SYS_landlock_create_ruleset, &handled, sizeof handled, 0));
    if (!rules.isOpen()) {
        return errno;
    }
    for (const char* folder : {"/usr/share", "/usr/local/share"}) {
        const Descriptor parent(open(folder, O_PATH | O_CLOEXEC));
        if (!parent.isOpen()) {
            continue; // not on this system
        }
        const landlock_path_beneath_attr beneath{reading, parent.get()};
        if (syscall(SYS_landlock_add_rule, rules.get(), LANDLOCK_RULE_PATH_BENEATH, &beneath, 0) != 0) {
            return errno;
        }
    }
    return syscall(SYS_landlock_restrict_self, rules.get(), 0) == 0 ? 0 : errno;
}

} // namespace

bool canConfineReading() {
    return !isSanitized && landlockVersion() >= 1;
}

std::expected<void, std::string> confineThisProcess() {
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) {
        return failed("further privileges cannot be given up", errno);
    }
    if (canConfineReading()) {
        if (const int error = confineReading()) {
            return failed("the limits on reading files cannot be installed", error);
        }
    }
    if (const int error = installFilter()) {
        return failed("the filter of system calls cannot be installed", error);
    }
    return {};
}

} // namespace dorvantel
