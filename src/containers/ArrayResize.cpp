// Arrays of array new, resized by std::realloc where nobody can tell the difference.
#include "TvVectorData.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <dlfcn.h>

// Marks what g++'s optimizer may not look into: it takes array new and malloc for two families.
#if __has_cpp_attribute(gnu::noipa)
#define TV_OPAQUE [[gnu::noipa]]
#else
#define TV_OPAQUE
#endif

namespace {

using TvDetail::ArrayDelete;
using TvDetail::ArrayNew;
using ObjectNew = void* (*)(std::size_t);

enum class Answer : int { NotYet, Yes, No };

// What the first call found out; every thread would find the same.
constinit std::atomic<Answer> s_newIsMalloc{Answer::NotYet};

// Where the module that holds the function lies; null when that cannot be told.
template<class Function>
const void* moduleOf(Function* function)
{
    Dl_info info;
    return dladdr(reinterpret_cast<const void*>(function), &info) != 0 ? info.dli_fbase : nullptr;
}

// Whether array new and everything that it and array delete go through are those of the C++
// library, which allocate by malloc: a host, a sanitizer or another heap may replace any.
bool isAllOfTheStandardLibrary()
{
    const void* const library = moduleOf(&std::get_new_handler); // nobody may replace this one
    return library && moduleOf(static_cast<ArrayNew>(&::operator new[])) == library &&
           moduleOf(static_cast<ObjectNew>(&::operator new[])) == library &&
           moduleOf(static_cast<ObjectNew>(&::operator new)) == library &&
           moduleOf(static_cast<ArrayDelete>(&::operator delete[])) == library &&
           moduleOf(static_cast<ArrayDelete>(&::operator delete)) == library;
}

// Whether malloc hands out again at once what array delete took. The C library's does; tools that
// tell the two families apart keep freed memory back for a while, and need no name to be known.
Answer givesBackToMalloc()
{
    constexpr std::size_t size = 1000; // of the sizes that a thread keeps at hand
    void* const newed = ::operator new[](size, std::nothrow);
    if (!newed)
        return Answer::NotYet;
    volatile auto before = reinterpret_cast<std::uintptr_t>(newed); // a number: freed when it is compared
    ::operator delete[](newed);
    void* const block = std::malloc(size);
    volatile auto after = reinterpret_cast<std::uintptr_t>(block);
    std::free(block);
    return before == after ? Answer::Yes : Answer::No;
}

bool newIsMalloc()
{
    Answer answer = s_newIsMalloc.load(std::memory_order_relaxed);
    if (answer == Answer::NotYet) {
        answer = isAllOfTheStandardLibrary() ? givesBackToMalloc() : Answer::No;
        s_newIsMalloc.store(answer, std::memory_order_relaxed);
    }
    return answer == Answer::Yes;
}

} // namespace

TV_OPAQUE void* TvDetail::resizeArray(void* array, std::size_t size, ArrayNew make, ArrayDelete drop) noexcept
{
    // A module may be bound to functions of its own.
    if (make != static_cast<ArrayNew>(&::operator new[]) ||
        drop != static_cast<ArrayDelete>(&::operator delete[]) || !newIsMalloc())
        return nullptr;
    return std::realloc(array, size);
}
