// HugeRequests.h - for tests that ask for more memory than there is. Address sanitizer
// then refuses, as everybody else does, instead of ending the program.
//
// Include it in one source file of the program.
#ifndef TV_TEST_HUGE_REQUESTS_H
#define TV_TEST_HUGE_REQUESTS_H

#ifdef __SANITIZE_ADDRESS__
extern "C" [[gnu::visibility("default")]] const char* __asan_default_options()
{
    return "allocator_may_return_null=1";
}
#endif

/// INT_MAX of them are 2 PiB, more than an address can reach.
struct Mebibyte {
    char bytes[1 << 20];
};

#endif
