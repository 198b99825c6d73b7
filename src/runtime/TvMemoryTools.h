// TvMemoryTools.h - tells address sanitizer or valgrind what the pooled heap does.
//
// With neither tool in the build all of this is empty. Valgrind's requests are only
// compiled where the heap's range is put at an address that valgrind can map; elsewhere
// the heap serves from malloc under valgrind, which then needs no help.
#ifndef TV_MEMORY_TOOLS_H
#define TV_MEMORY_TOOLS_H

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
#define TV_TOOL_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TV_TOOL_ASAN 1
#endif
#endif

#if defined(TV_HEAP_FIRST_ADDRESS) && !defined(TV_TOOL_ASAN) && __has_include(<valgrind/memcheck.h>)
#define TV_TOOL_VALGRIND 1
#endif

#if defined(TV_TOOL_ASAN)
#include <sanitizer/asan_interface.h>
#include <sanitizer/lsan_interface.h>
#define TV_NO_TOOL __attribute__((no_sanitize_address))
#else
#define TV_NO_TOOL
#endif

#if defined(TV_TOOL_VALGRIND)
#include <valgrind/memcheck.h>
#endif

namespace TvMemoryTools {

// The range holds pointers to memory from malloc, which a leak search must follow.
inline void rangeReserved([[maybe_unused]] const void* start, [[maybe_unused]] std::size_t length)
{
#if defined(TV_TOOL_ASAN)
    __lsan_register_root_region(start, length);
#endif
}

inline void rangeReleased([[maybe_unused]] const void* start, [[maybe_unused]] std::size_t length)
{
#if defined(TV_TOOL_ASAN)
    __lsan_unregister_root_region(start, length);
#endif
}

// Memory that the heap itself, or whoever committed it, reads and writes.
inline void open([[maybe_unused]] void* start, [[maybe_unused]] std::size_t length)
{
#if defined(TV_TOOL_ASAN)
    ASAN_UNPOISON_MEMORY_REGION(start, length);
#elif defined(TV_TOOL_VALGRIND)
    VALGRIND_MAKE_MEM_DEFINED(start, length);
#endif
}

// Memory that nobody may touch until a unit of it is taken.
inline void close([[maybe_unused]] void* start, [[maybe_unused]] std::size_t length)
{
#if defined(TV_TOOL_ASAN)
    ASAN_POISON_MEMORY_REGION(start, length);
#elif defined(TV_TOOL_VALGRIND)
    VALGRIND_MAKE_MEM_NOACCESS(start, length);
#endif
}

// The caller got `size` bytes; the rest of the unit stays closed.
inline void unitTaken([[maybe_unused]] void* unit, [[maybe_unused]] std::size_t size)
{
#if defined(TV_TOOL_ASAN)
    ASAN_UNPOISON_MEMORY_REGION(unit, size);
#elif defined(TV_TOOL_VALGRIND)
    VALGRIND_MALLOCLIKE_BLOCK(unit, size, 0, 0);
#endif
}

inline void unitGiven([[maybe_unused]] void* unit, [[maybe_unused]] std::size_t unitSize)
{
#if defined(TV_TOOL_ASAN)
    ASAN_POISON_MEMORY_REGION(unit, unitSize);
#elif defined(TV_TOOL_VALGRIND)
    VALGRIND_FREELIKE_BLOCK(unit, 0);
    VALGRIND_MAKE_MEM_NOACCESS(unit, unitSize);
#endif
}

// The caller was told, or the heap uses, the unit's whole size.
inline void unitWhole([[maybe_unused]] const void* unit, [[maybe_unused]] std::size_t unitSize)
{
#if defined(TV_TOOL_ASAN)
    ASAN_UNPOISON_MEMORY_REGION(unit, unitSize);
#elif defined(TV_TOOL_VALGRIND)
    const char* const bytes = static_cast<const char*>(unit);
    for (std::size_t i = unitSize; i-- > 0;) {
        unsigned char bits = 0;
        if (VALGRIND_GET_VBITS(bytes + i, &bits, 1) != 3)
            break;
        VALGRIND_MAKE_MEM_UNDEFINED(bytes + i, 1);
    }
#endif
}

// The first word of a free unit, which is closed to everybody else.
TV_NO_TOOL inline void* loadLink(const void* unit)
{
#if defined(TV_TOOL_VALGRIND)
    VALGRIND_MAKE_MEM_DEFINED(unit, sizeof(void*));
    void* const link = *static_cast<void* const*>(unit);
    VALGRIND_MAKE_MEM_NOACCESS(unit, sizeof(void*));
    return link;
#else
    return *static_cast<void* const*>(unit);
#endif
}

TV_NO_TOOL inline void storeLink(void* unit, void* link)
{
#if defined(TV_TOOL_VALGRIND)
    VALGRIND_MAKE_MEM_UNDEFINED(unit, sizeof(void*));
    *static_cast<void**>(unit) = link;
    VALGRIND_MAKE_MEM_NOACCESS(unit, sizeof(void*));
#else
    *static_cast<void**>(unit) = link;
#endif
}

} // namespace TvMemoryTools

#endif
