#include "HeapReplay.h"

#include "TvAlloc.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <unistd.h>

#include <sys/wait.h>

namespace {

struct PooledHeap {
    static void* allocate(std::size_t size) { return _tvMalloc(size); }
    static void* resize(void* unit, std::size_t size) { return _tvRealloc(unit, size); }
    static void release(void* unit) { _tvFree(unit); }
};

struct CHeap {
    static void* allocate(std::size_t size) { return std::malloc(size); }
    static void* resize(void* unit, std::size_t size) { return std::realloc(unit, size); }
    static void release(void* unit) { std::free(unit); }
};

void write(void* unit, std::size_t size)
{
    for (std::size_t i = 0; unit && i < size; i += 4096)
        static_cast<volatile char*>(unit)[i] = 1;
}

template<class Heap>
void take(const HeapStep& step, void*& unit, std::size_t& refused)
{
    if (step.kind == HeapStep::kFree) {
        Heap::release(unit);
        unit = nullptr;
        return;
    }
    void* const taken =
        step.kind == HeapStep::kAllocate ? Heap::allocate(step.size) : Heap::resize(unit, step.size);
    write(taken, step.size);
    if (taken)
        unit = taken; // a resize that fails leaves the old unit
    else
        ++refused;
}

template<class Heap>
void giveBack(std::vector<void*>& units)
{
    for (void*& unit : units) {
        Heap::release(unit);
        unit = nullptr;
    }
}

// `units` has a null for each slot, before and after.
template<class Heap>
double timeRound(const HeapTrace& trace, std::vector<void*>& units, std::size_t& refused)
{
    refused = 0;
    const auto start = std::chrono::steady_clock::now();
    for (const HeapStep& step : trace.steps)
        take<Heap>(step, units[step.slot], refused);
    const std::chrono::duration<double, std::nano> time = std::chrono::steady_clock::now() - start;
    giveBack<Heap>(units);
    return time.count() / static_cast<double>(trace.steps.size());
}

// Bytes of the process's own memory that are resident; -1 when the system does not tell.
std::int64_t residentBytes()
{
    std::FILE* const file = std::fopen("/proc/self/smaps_rollup", "re");
    if (!file)
        return -1;
    char line[256];
    long long kilobytes = -1;
    while (std::fgets(line, sizeof line, file))
        if (std::sscanf(line, "Anonymous: %lld", &kilobytes) == 1)
            break;
    std::fclose(file);
    return kilobytes < 0 ? -1 : kilobytes * 1024;
}

struct Residence {
    std::int64_t peak = -1;
    std::int64_t end = -1;
};

template<class Heap>
Residence replayForResidence(const HeapTrace& trace)
{
    std::vector<void*> units(trace.slots);
    std::size_t refused = 0;
    residentBytes(); // what reading takes for itself must not count
    malloc_trim(0);
    const std::int64_t before = residentBytes();
    Residence residence;
    for (std::size_t i = 0; i < trace.steps.size(); ++i) {
        take<Heap>(trace.steps[i], units[trace.steps[i].slot], refused);
        if (i == trace.peakStep)
            residence.peak = residentBytes() - before;
    }
    residence.end = residentBytes() - before;
    return before < 0 ? Residence() : residence;
}

// In a process of its own: memory that one replay gives back must not serve another.
template<class Heap>
void measureResidence(const HeapTrace& trace, ReplayResult& result)
{
    int ends[2];
    if (pipe(ends) != 0)
        return;
    const pid_t child = fork();
    if (child == 0) {
        const Residence residence = replayForResidence<Heap>(trace);
        _exit(::write(ends[1], &residence, sizeof residence) == sizeof residence ? 0 : 1);
    }
    close(ends[1]);
    Residence residence;
    if (child > 0 && read(ends[0], &residence, sizeof residence) == sizeof residence) {
        result.residentPeak = residence.peak;
        result.residentEnd = residence.end;
    }
    close(ends[0]);
    if (child > 0)
        waitpid(child, nullptr, 0);
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

ReplayResults replayOnBothHeaps(const HeapTrace& trace, int rounds)
{
    ReplayResults results;
    measureResidence<PooledHeap>(trace, results.heap);
    measureResidence<CHeap>(trace, results.malloc);
    std::vector<void*> units(trace.slots);
    std::vector<double> heapTimes, mallocTimes;
    for (int i = 0; i < rounds; ++i) {
        heapTimes.push_back(timeRound<PooledHeap>(trace, units, results.heap.refused));
        mallocTimes.push_back(timeRound<CHeap>(trace, units, results.malloc.refused));
    }
    results.heap.nanoseconds = median(heapTimes);
    results.malloc.nanoseconds = median(mallocTimes);
    return results;
}

void replayOnHeap(const HeapTrace& trace, const std::function<void()>& look)
{
    std::vector<void*> units(trace.slots);
    std::size_t refused = 0;
    for (const HeapStep& step : trace.steps)
        take<PooledHeap>(step, units[step.slot], refused);
    look();
    giveBack<PooledHeap>(units);
}
