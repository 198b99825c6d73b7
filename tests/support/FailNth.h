// FailNth.h - stands in front of malloc and operator new of a test program, counts, and
// lets the nth request fail. The library carries no hook for this.
//
// Include it in one source file of the program. With address sanitizer the requests go on
// to its allocator, which then also looks for leaks.
#ifndef TV_TEST_FAIL_NTH_H
#define TV_TEST_FAIL_NTH_H

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <new>

// The dynamic linker calls malloc before address sanitizer has memory for its notes, so that
// nothing on the way to the real one may be instrumented.
#ifdef __SANITIZE_ADDRESS__
#define TV_REAL(function) __interceptor_##function
#define TV_PLAIN __attribute__((no_sanitize("address", "undefined")))
#else
#define TV_REAL(function) __libc_##function
#define TV_PLAIN
#endif

extern "C" {
void* TV_REAL(malloc)(size_t size);
void* TV_REAL(calloc)(size_t count, size_t size);
void* TV_REAL(realloc)(void* block, size_t size);
void TV_REAL(free)(void* block);
}

/// Fails requests of one kind while it lives.
///
/// A request of the C++ kind that is let through is not counted as one of the C kind.
class FailNth {
public:
    enum Kind { None, Malloc, New };
    enum Length { Once, FromThenOn };

    FailNth(Kind kind, int nth, Length length = Once)
    {
        s_kind = kind;
        s_countdown = nth;
        s_length = length;
        s_fired = false;
    }
    ~FailNth() { s_kind = None; }
    FailNth(const FailNth&) = delete;
    FailNth& operator=(const FailNth&) = delete;

    /// Whether a request has failed; the one that shall not be reached ends a loop.
    bool fired() const { return s_fired; }

    TV_PLAIN static bool fails(Kind kind)
    {
        if (s_kind != kind)
            return false;
        const bool reached = s_length == Once ? s_countdown == 1 : s_countdown <= 1;
        if (s_countdown > INT_MIN)
            --s_countdown;
        s_fired = s_fired || reached;
        if (reached)
            errno = ENOMEM;
        return reached;
    }

    static inline long s_blocks = 0; ///< blocks of the C kind in use

private:
    static inline Kind s_kind = None;
    static inline Length s_length = Once;
    static inline int s_countdown = 0;
    static inline bool s_fired = false;
};

extern "C" {

TV_PLAIN void* malloc(size_t size)
{
    void* const block = FailNth::fails(FailNth::Malloc) ? nullptr : TV_REAL(malloc)(size);
    FailNth::s_blocks += block != nullptr;
    return block;
}

TV_PLAIN void* calloc(size_t count, size_t size)
{
    void* const block = FailNth::fails(FailNth::Malloc) ? nullptr : TV_REAL(calloc)(count, size);
    FailNth::s_blocks += block != nullptr;
    return block;
}

TV_PLAIN void* realloc(void* old, size_t size)
{
    void* const block = FailNth::fails(FailNth::Malloc) ? nullptr : TV_REAL(realloc)(old, size);
    FailNth::s_blocks += old == nullptr && block != nullptr;
    return block;
}

TV_PLAIN void free(void* block)
{
    FailNth::s_blocks -= block != nullptr;
    TV_REAL(free)(block);
}

} // extern "C"

inline void* requestFromNew(std::size_t size)
{
    if (FailNth::fails(FailNth::New))
        return nullptr;
    void* const block = TV_REAL(malloc)(size != 0 ? size : 1);
    FailNth::s_blocks += block != nullptr;
    return block;
}

void* operator new(std::size_t size)
{
    void* const block = requestFromNew(size);
    if (!block)
        throw std::bad_alloc();
    return block;
}

void* operator new[](std::size_t size) { return operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return requestFromNew(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return requestFromNew(size); }
void operator delete(void* block) noexcept { free(block); }
void operator delete[](void* block) noexcept { free(block); }
void operator delete(void* block, std::size_t) noexcept { free(block); }
void operator delete[](void* block, std::size_t) noexcept { free(block); }

#undef TV_REAL
#undef TV_PLAIN

/// Fails the test when more, or fewer, blocks are in use at its end than at its start.
/// With address sanitizer it leaves that to the leak check, because the sanitizer's own
/// string functions do not come through malloc.
class HeapBalance {
public:
    HeapBalance() : m_start(FailNth::s_blocks) {}
    HeapBalance(const HeapBalance&) = delete;
    HeapBalance& operator=(const HeapBalance&) = delete;
    ~HeapBalance()
    {
#ifndef __SANITIZE_ADDRESS__
        const long left = FailNth::s_blocks - m_start;
        EXPECT_EQ(left, 0) << "blocks left behind";
#endif
    }

private:
    long m_start;
};

#endif
