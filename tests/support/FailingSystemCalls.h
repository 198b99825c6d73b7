// FailingSystemCalls.h - stands between a test program and the system: the nth call for a file,
// or for memory, fails with a given error, or does half of what it was asked for.
//
// FailingCalls.h stands in front of the C library, this stands behind it: buffering, retries and
// error flags of the C library are the real ones, and the program may be linked with the shared
// library that ships. A seccomp filter hands the calls to a signal handler, which makes them
// itself or refuses. Include it in one source file of the program.
#ifndef TV_TEST_FAILING_SYSTEM_CALLS_H
#define TV_TEST_FAILING_SYSTEM_CALLS_H

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include <sys/mman.h>

// Address sanitizer makes system calls of its own whose results it relies on.
#if defined(__x86_64__) && defined(__linux__) && !defined(__SANITIZE_ADDRESS__)
#define TV_TEST_HAS_SECCOMP 1
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <ucontext.h>
#else
#define TV_TEST_HAS_SECCOMP 0
#endif

/// Which system calls count, and which of them fails.
class FailingSystemCalls {
public:
    enum Kind { kNothing, kFiles, kMemory };

    /// The place of an error number: the call does half of what it is asked for.
    static constexpr int kShort = -1;

    /// False where the system, or a tool that the program runs under, does not allow this.
    static bool areAvailable()
    {
        static const bool available = install();
        return available;
    }

    static bool haveFired() { return s_fired; }

    /// The number of the call that failed.
    static long which() { return s_which; }

    /// Fails the `nth` call of `kind` with `error` while it lives.
    class Armed {
    public:
        Armed(Kind kind, int error, int nth)
        {
            s_fired = false;
            s_which = -1;
            s_error = error;
            s_countdown = nth;
            s_counted = kind;
        }
        ~Armed() { s_counted = kNothing; }
        Armed(const Armed&) = delete;
        Armed& operator=(const Armed&) = delete;
    };

private:
    static bool install();
#if TV_TEST_HAS_SECCOMP
    static bool isReached(long number, long file, long count);
    static void onSystemCall(int, siginfo_t* info, void* context);
#endif

    static inline volatile Kind s_counted = kNothing;
    static inline volatile int s_error = 0;
    static inline volatile int s_countdown = 0;
    static inline volatile bool s_fired = false;
    static inline volatile long s_which = -1;
};

#if TV_TEST_HAS_SECCOMP

// Makes a system call from the one place that the filter lets through.
extern "C" {
__attribute__((visibility("hidden"))) long tvTestSystemCall(long number, long a, long b, long c, long d,
                                                            long e, long f);
extern const char tvTestSystemCallReturn __attribute__((visibility("hidden")));
}
__asm__(".pushsection .text\n"
        ".globl tvTestSystemCall\n.hidden tvTestSystemCall\n.type tvTestSystemCall, @function\n"
        ".globl tvTestSystemCallReturn\n.hidden tvTestSystemCallReturn\n"
        "tvTestSystemCall:\n"
        "movq %rdi, %rax\nmovq %rsi, %rdi\nmovq %rdx, %rsi\nmovq %rcx, %rdx\n"
        "movq %r8, %r10\nmovq %r9, %r8\nmovq 8(%rsp), %r9\n"
        "syscall\n"
        "tvTestSystemCallReturn:\n"
        "ret\n"
        ".size tvTestSystemCall, .-tvTestSystemCall\n"
        ".popsection\n");

// Whether the call, which counts, is the one to fail.
inline bool FailingSystemCalls::isReached(long number, long file, long count)
{
    const Kind counted = s_counted;
    if (counted == kNothing)
        return false;
    const bool isMemory = number == SYS_mprotect || (number == SYS_mmap && static_cast<int>(file) < 0);
    if (isMemory != (counted == kMemory))
        return false;
    const bool transfers =
        number == SYS_read || number == SYS_write || number == SYS_pread64 || number == SYS_pwrite64;
    if (s_error == kShort && (!transfers || count < 2))
        return false;
    s_countdown = s_countdown - 1;
    if (s_countdown != 0)
        return false;
    s_fired = true;
    s_which = number;
    return true;
}

inline void FailingSystemCalls::onSystemCall(int, siginfo_t* info, void* context)
{
    greg_t* const registers = static_cast<ucontext_t*>(context)->uc_mcontext.gregs;
    const long number = info->si_syscall;
    const bool fails = isReached(number, registers[REG_R8], registers[REG_RDX]);
    const long count = fails && s_error == kShort ? registers[REG_RDX] / 2 : registers[REG_RDX];
    long result = -s_error;
    if (!fails || s_error == kShort || number == SYS_close) { // a close that fails has closed all the same
        const long made = tvTestSystemCall(number, registers[REG_RDI], registers[REG_RSI], count,
                                           registers[REG_R10], registers[REG_R8], registers[REG_R9]);
        if (!fails || s_error == kShort)
            result = made;
    }
    registers[REG_RAX] = result;
}

inline bool FailingSystemCalls::install()
{
    const char* const preloaded = std::getenv("LD_PRELOAD");
    if (preloaded != nullptr && std::strstr(preloaded, "vgpreload") != nullptr)
        return false; // valgrind makes the program's system calls itself
    const auto here = reinterpret_cast<std::uintptr_t>(&tvTestSystemCallReturn);
    const auto low = static_cast<std::uint32_t>(here);
    const auto high = static_cast<std::uint32_t>(here >> 32);
    constexpr std::uint32_t kNumberAt = offsetof(seccomp_data, nr);
    constexpr std::uint32_t kArchAt = offsetof(seccomp_data, arch);
    constexpr std::uint32_t kPlaceAt = offsetof(seccomp_data, instruction_pointer);
    constexpr std::uint16_t kLoad = BPF_LD | BPF_W | BPF_ABS;
    constexpr std::uint16_t kIfEqual = BPF_JMP | BPF_JEQ | BPF_K;
    constexpr std::uint16_t kReturn = BPF_RET | BPF_K;
    constexpr long kCalls[] = {SYS_openat,    SYS_open,  SYS_close,      SYS_read,   SYS_pread64,
                               SYS_write,     SYS_lseek, SYS_pwrite64,   SYS_fcntl,  SYS_access,
                               SYS_faccessat, 439,       SYS_newfstatat, SYS_stat,   SYS_fstat,
                               SYS_lstat,     SYS_mmap,  SYS_mprotect,   SYS_madvise};
    constexpr std::uint8_t kCount = sizeof kCalls / sizeof *kCalls;

    sock_filter program[kCount + 11];
    unsigned short size = 0;
    const auto add = [&](std::uint16_t code, std::uint32_t value, std::uint8_t yes, std::uint8_t no) {
        program[size++] = {code, yes, no, value};
    };
    add(kLoad, kArchAt, 0, 0);
    add(kIfEqual, AUDIT_ARCH_X86_64, 1, 0);
    add(kReturn, SECCOMP_RET_ALLOW, 0, 0);
    add(kLoad, kPlaceAt, 0, 0);
    add(kIfEqual, low, 0, 3);
    add(kLoad, kPlaceAt + 4, 0, 0);
    add(kIfEqual, high, 0, 1);
    add(kReturn, SECCOMP_RET_ALLOW, 0, 0);
    add(kLoad, kNumberAt, 0, 0);
    // Each test that holds goes to the last line, past the tests behind it and the line before it.
    for (std::uint8_t i = 0; i < kCount; ++i)
        add(kIfEqual, static_cast<std::uint32_t>(kCalls[i]), static_cast<std::uint8_t>(kCount - i), 0);
    add(kReturn, SECCOMP_RET_ALLOW, 0, 0);
    add(kReturn, SECCOMP_RET_TRAP, 0, 0);

    struct sigaction action = {};
    action.sa_sigaction = onSystemCall;
    action.sa_flags = SA_SIGINFO;
    if (sigaction(SIGSYS, &action, nullptr) != 0)
        return false;
    const sock_fprog filter = {size, program};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter, 0, 0) == 0;
}

#else

inline bool FailingSystemCalls::install() { return false; }

#endif

#endif
