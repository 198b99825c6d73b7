// When the heap's range is unmapped: with the library's code, after its static objects. At
// the end of the process it stays: code and memory are there until then, and static objects
// of modules that live longer than this library's may look at what they took.
#include "runtime/TvHeapInternals.h"
#include "runtime/TvMemoryTools.h"
#include "runtime/TvStartup.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace TvHeapInternals {
namespace {

constinit bool g_libraryEnds = false;
constinit bool g_processEnds = false;

// exit() runs what was registered after main() had begun before it ends any library that the
// program started with; dlclose() runs it as a part of the library's end.
void noteEnd()
{
    if (!g_libraryEnds)
        g_processEnds = true;
}

// Without a priority: before the static objects are destroyed.
__attribute__((destructor)) void libraryEnds() { g_libraryEnds = true; }

// With one: after them.
__attribute__((destructor(TvStartup::kHeapRange))) void unmapRange()
{
    if (!g_processEnds)
        releaseRange();
}

} // namespace

void watchForEnd() { static_cast<void>(std::atexit(noteEnd)); }

void releaseRange()
{
    if (g_state.start == nullptr)
        return;
    for (int id = 0; id < kReservedPages; ++id)
        if (g_state.kinds[id] != PageKind::None)
            TvMemoryTools::open(g_state.start + (static_cast<std::size_t>(id) << 20), Heap::kPageSize);
    std::fill(std::begin(g_state.kinds), std::end(g_state.kinds), PageKind::None);
    TvMemoryTools::rangeReleased(g_state.start, Heap::kRangeSize);
    TvHeapConfigurator::tvMemoryRelease(g_state.start, Heap::kRangeSize);
}

} // namespace TvHeapInternals
