// FailingCalls.h - stands in front of the C library's file and memory functions of a test
// program, and lets the nth call fail.
//
// Include it in one source file of a program that is linked with the library's own objects
// (tv_test(... INTERNAL)), so that the library's calls come here, too.
#ifndef TV_TEST_FAILING_CALLS_H
#define TV_TEST_FAILING_CALLS_H

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

/// Which calls count, and which of them fails.
struct FailingCalls {
    enum Kind { kNone, kFiles, kMemory };

    static inline Kind counted = kNone;
    static inline int countdown = 0;     ///< the call that brings it to 0 fails
    static inline bool fired = false;    ///< some call has failed
    static inline const char* name = ""; ///< of the call that failed

    static bool fails(Kind kind, const char* function)
    {
        if (counted != kind || --countdown != 0)
            return false;
        fired = true;
        name = function;
        return true;
    }

    /// Fails the `nth` call of `kind` while it lives.
    class Armed {
    public:
        Armed(Kind kind, int nth)
        {
            fired = false;
            name = "none";
            countdown = nth;
            counted = kind;
        }
        ~Armed() { counted = kNone; }
        Armed(const Armed&) = delete;
        Armed& operator=(const Armed&) = delete;
    };

    template<class Function>
    static Function* next(const char* function)
    {
        return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, function));
    }
};

#define TV_NEXT(function) static auto* const real = FailingCalls::next<decltype(function)>(#function)

extern "C" {

FILE* fopen(const char* path, const char* mode)
{
    TV_NEXT(fopen);
    if (FailingCalls::fails(FailingCalls::kFiles, "fopen")) {
        errno = EMFILE;
        return nullptr;
    }
    return real(path, mode);
}

// A close that fails has closed all the same.
int fclose(FILE* file)
{
    TV_NEXT(fclose);
    const bool fails = FailingCalls::fails(FailingCalls::kFiles, "fclose");
    const int result = real(file);
    return fails ? EOF : result;
}

size_t fread(void* buf, size_t size, size_t count, FILE* file)
{
    TV_NEXT(fread);
    return FailingCalls::fails(FailingCalls::kFiles, "fread") ? 0 : real(buf, size, count, file);
}

// A write that fails has written half.
size_t fwrite(const void* buf, size_t size, size_t count, FILE* file)
{
    TV_NEXT(fwrite);
    return real(buf, size, FailingCalls::fails(FailingCalls::kFiles, "fwrite") ? count / 2 : count, file);
}

int fflush(FILE* file)
{
    TV_NEXT(fflush);
    return FailingCalls::fails(FailingCalls::kFiles, "fflush") ? EOF : real(file);
}

int fseeko(FILE* file, off_t offset, int whence)
{
    TV_NEXT(fseeko);
    return FailingCalls::fails(FailingCalls::kFiles, "fseeko") ? -1 : real(file, offset, whence);
}

off_t ftello(FILE* file)
{
    TV_NEXT(ftello);
    return FailingCalls::fails(FailingCalls::kFiles, "ftello") ? -1 : real(file);
}

int setvbuf(FILE* file, char* buf, int mode, size_t size)
{
    TV_NEXT(setvbuf);
    return FailingCalls::fails(FailingCalls::kFiles, "setvbuf") ? -1 : real(file, buf, mode, size);
}

int fcntl(int descriptor, int command, ...)
{
    TV_NEXT(fcntl);
    va_list arguments;
    va_start(arguments, command);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    return FailingCalls::fails(FailingCalls::kFiles, "fcntl") ? -1 : real(descriptor, command, argument);
}

int access(const char* path, int mode) noexcept
{
    TV_NEXT(access);
    return FailingCalls::fails(FailingCalls::kFiles, "access") ? -1 : real(path, mode);
}

int stat(const char* path, struct stat* out) noexcept
{
    static auto* const real = FailingCalls::next<int(const char*, struct stat*)>("stat");
    return FailingCalls::fails(FailingCalls::kFiles, "stat") ? -1 : real(path, out);
}

int fstat(int descriptor, struct stat* out) noexcept
{
    static auto* const real = FailingCalls::next<int(int, struct stat*)>("fstat");
    return FailingCalls::fails(FailingCalls::kFiles, "fstat") ? -1 : real(descriptor, out);
}

void* mmap(void* address, size_t size, int protection, int flags, int descriptor, off_t offset) noexcept
{
    TV_NEXT(mmap);
    return FailingCalls::fails(FailingCalls::kFiles, "mmap")
               ? MAP_FAILED
               : real(address, size, protection, flags, descriptor, offset);
}

#ifndef __SANITIZE_ADDRESS__ // which has to be the one in front of these

void* __libc_malloc(size_t size);
void* __libc_realloc(void* block, size_t size);

void* malloc(size_t size)
{
    if (FailingCalls::fails(FailingCalls::kMemory, "malloc"))
        return nullptr;
    return __libc_malloc(size);
}

void* realloc(void* block, size_t size)
{
    if (FailingCalls::fails(FailingCalls::kMemory, "realloc"))
        return nullptr;
    return __libc_realloc(block, size);
}

#endif

} // extern "C"

/// False where memory calls cannot be made to fail.
#ifdef __SANITIZE_ADDRESS__
constexpr bool kFailsMemory = false;
#else
constexpr bool kFailsMemory = true;
#endif

#undef TV_NEXT

#endif
