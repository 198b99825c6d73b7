// FailMapping.h - makes the n-th call of mmap or mprotect in a test program fail.
//
// Defines both: include it in one source file of the program. The library carries no hook
// for this. What the C library maps for itself does not come through here.
#ifndef TV_TEST_FAIL_MAPPING_H
#define TV_TEST_FAIL_MAPPING_H

#include <cerrno>
#include <cstddef>

#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

/// While it lives, calls number `nth` to `nth + count - 1` of one kind fail.
class FailMapping {
public:
    enum Kind { Nothing, Map, Protect };

    FailMapping(Kind kind, long nth, long count)
    {
        s_kind = kind;
        s_first = nth;
        s_last = nth + (count - 1);
        s_calls = 0;
        s_fired = false;
    }
    ~FailMapping() { s_kind = Nothing; }
    FailMapping(const FailMapping&) = delete;
    FailMapping& operator=(const FailMapping&) = delete;

    bool fired() const { return s_fired; }
    long calls() const { return s_calls; }

    static bool fails(Kind kind)
    {
        if (kind != s_kind)
            return false;
        const long call = ++s_calls;
        if (call < s_first || call > s_last)
            return false;
        s_fired = true;
        errno = ENOMEM;
        return true;
    }

private:
    static inline Kind s_kind = Nothing;
    static inline long s_first = 0;
    static inline long s_last = 0;
    static inline long s_calls = 0;
    static inline bool s_fired = false;
};

extern "C" {

__attribute__((visibility("default"))) void* mmap(void* address, std::size_t length, int protection,
                                                  int flags, int file, off_t offset) noexcept
{
    if (FailMapping::fails(FailMapping::Map))
        return MAP_FAILED;
    return reinterpret_cast<void*>(syscall(SYS_mmap, address, length, protection, flags, file, offset));
}

__attribute__((visibility("default"))) int mprotect(void* address, std::size_t length,
                                                    int protection) noexcept
{
    if (FailMapping::fails(FailMapping::Protect))
        return -1;
    return static_cast<int>(syscall(SYS_mprotect, address, length, protection));
}

} // extern "C"

#endif
