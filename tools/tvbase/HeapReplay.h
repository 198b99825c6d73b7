// HeapReplay.h - a trace of requests on the library's heap and on the C library's.
#ifndef TVBASE_HEAP_REPLAY_H
#define TVBASE_HEAP_REPLAY_H

#include "HeapTrace.h"

#include <cstdint>
#include <functional>

/// What one of the two heaps made of a trace.
struct ReplayResult {
    double nanoseconds = 0;         ///< a step, the median of the rounds
    std::int64_t residentPeak = -1; ///< bytes that the replay added to the process's memory, after
                                    ///< the step with the most bytes in use; -1 = not known
    std::int64_t residentEnd = -1;  ///< the same after the last step
    std::size_t refused = 0;        ///< requests of one round that came back without memory
};

struct ReplayResults {
    ReplayResult heap;
    ReplayResult malloc;
};

/// Replays the trace, which has steps, `rounds` times on each heap in turn. Each unit is
/// written to, once every 4 KiB, as a program would. The times are of the steps alone; what
/// they leave in use is given back between the rounds.
ReplayResults replayOnBothHeaps(const HeapTrace& trace, int rounds);

/// Replays the trace once on the library's heap and calls `look`; what the trace leaves in use
/// is given back after that.
void replayOnHeap(const HeapTrace& trace, const std::function<void()>& look);

#endif
