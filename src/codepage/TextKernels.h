// TextKernels.h - the inner loops of the text conversions, one set for each kind of machine.
//
// Every set gives the same results; the plain one is the reference and the others are held
// to it by tests. The code page kernels convert the easy beginning of a text and stop in
// front of the first thing that needs a decision (an escape, a character the tables lack);
// the caller settles that and calls again. `count` may reach past the 0 that ends a text, and
// past readable memory: a kernel loads nothing that might not be there (TextEnd.h).
#ifndef TV_TEXT_KERNELS_H
#define TV_TEXT_KERNELS_H

#include <atomic>
#include <cstddef>

namespace TvDetail {

// Kernels may write this many elements behind the last one that they report.
constexpr std::size_t kKernelSlack = 64;

struct KernelProgress {
    std::size_t read;
    std::size_t written;
};

// What the kernels look characters up in. The 64 Ki tables end in one more element, 0,
// which stands for every character above U+FFFF.
struct CodepageTables {
    // Bytes 0x80..0xFF decoded, low and high half apart; a byte without a character is itself.
    unsigned char byteLow[128];
    unsigned char byteHigh[128];
    // Two stretches of 128 characters that hold most of a single-byte code page, and their
    // codes, 0 for none.
    unsigned windowBase[2];
    unsigned char windowCode[2][128];
    // Code to character, below 256 the single bytes; 0 for a double-byte code that has no
    // character to emit. Null when the code page has no double-byte data.
    unsigned short* decode;
    // Character to code, 0 for none; the first for code pages of single bytes only, the
    // second for the others, the one not in use null.
    unsigned char* encodeByte;
    unsigned short* encodePair;
};

// Lead bytes, in one or two ranges, inclusive and not empty; one alone stands twice.
struct LeadRanges {
    unsigned char first[2];
    unsigned char last[2];

    bool holds(unsigned b) const noexcept
    {
        return (b >= first[0] && b <= last[0]) || (b >= first[1] && b <= last[1]);
    }
};

struct TextKernels {
    const char* name;

    // As utf8DecodePlain and utf8EncodePlain of Utf8.h; they stop at a 0 alone.
    KernelProgress (*utf8Decode)(const unsigned char* src, std::size_t count, wchar_t* dst) noexcept;
    KernelProgress (*utf8Encode)(const wchar_t* src, std::size_t count, char* dst) noexcept;

    // Stops at a 0 and at a backslash; writes one element a byte.
    KernelProgress (*decodeSingle)(const unsigned char* src, std::size_t count, wchar_t* dst,
                                   const CodepageTables& tables) noexcept;
    // Stops also at a pair without a character, and at a lead byte with no byte or a 0 behind it.
    KernelProgress (*decodeDouble)(const unsigned char* src, std::size_t count, wchar_t* dst,
                                   const CodepageTables& tables, const LeadRanges& leads) noexcept;
    // Stop at a 0, at a backslash and at a character without a code; write one byte an element
    // and at most two bytes an element.
    KernelProgress (*encodeSingle)(const wchar_t* src, std::size_t count, char* dst,
                                   const CodepageTables& tables) noexcept;
    KernelProgress (*encodeDouble)(const wchar_t* src, std::size_t count, char* dst,
                                   const CodepageTables& tables) noexcept;
};

extern const TextKernels g_plainKernels;

#if defined(__x86_64__)
extern const TextKernels g_sse2Kernels;
extern const TextKernels g_avx2Kernels;
extern const TextKernels g_avx512Kernels;
#endif

// The sets that this machine can run, the plain one first and the best one last.
struct KernelList {
    const TextKernels* sets[4];
    int count;
};
KernelList runnableKernels() noexcept;

// The best set of this machine, chosen on first use and not while the library is loaded: two
// threads that come here at once store the same pointer.
extern std::atomic<const TextKernels*> g_chosenKernels;
const TextKernels& chooseKernels() noexcept;
inline const TextKernels& textKernels() noexcept
{
    const TextKernels* const kernels = g_chosenKernels.load(std::memory_order_relaxed);
    if (!kernels) [[unlikely]]
        return chooseKernels();
    return *kernels;
}

// Makes textKernels() answer `kernels`, one of the runnable sets; null goes back to the choice
// by machine. For tests, on one thread.
void forceTextKernels(const TextKernels* kernels) noexcept;

} // namespace TvDetail

#endif
