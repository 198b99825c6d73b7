// HeapTrace.h - a program's requests for memory, as a text.
#ifndef TVBASE_HEAP_TRACE_H
#define TVBASE_HEAP_TRACE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

struct HeapStep {
    enum Kind : std::uint32_t { kAllocate, kResize, kFree };
    Kind kind;
    std::uint32_t slot; ///< of the unit, from 0 on; a slot is used again after its unit's free
    std::size_t size;   ///< bytes asked for; 0 for kFree
};

struct HeapTrace {
    std::vector<HeapStep> steps;
    std::size_t slots = 0;     ///< units in use at most
    std::size_t peakBytes = 0; ///< asked for and not given back, at most
    std::size_t peakStep = 0;  ///< the first step after which that much was in use
    std::size_t endBytes = 0;  ///< the same after the last step
    std::size_t badLines = 0;
    std::vector<std::string> problems; ///< of the first ten bad lines: "name:line: why"
};

/// Reads lines of `a ID SIZE`, `r ID SIZE` and `f ID`; # begins a comment. IDs are decimal
/// numbers, or hexadecimal ones after 0x, so that addresses serve; an ID may be used again
/// after its f. Bad lines are counted and left out. "-" is standard input; throws
/// InputError when it cannot be read.
HeapTrace readHeapTrace(const std::string& name);

#endif
