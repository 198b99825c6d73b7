// TvGdImpl.h - decimal digits of a double, and the big integers behind them.
//
// For text with a layout take TvNumber.h; this header is for callers who lay the digits
// out themselves or who need the exact integer arithmetic.
#ifndef TV_GDIMPL_H
#define TV_GDIMPL_H

#include "TvExport.h"
#include "TvLock.h"

#include <cstdint>

/// A natural number of any size: `wds` words of 32 bits in `x`, least significant first.
///
/// The record is always part of a larger block with room for `maxwds` words. Zero is one
/// word 0. `sign` is set by TvGdImpl::diff alone and read by nothing but its callers.
struct Bigint {
    Bigint* next;      ///< next free block, or next power of five
    int k;             ///< size class: room for 2^k words
    int maxwds;        ///< 2^k
    int sign;          ///< 1: this is the size of a negative number
    int wds;           ///< words in use, at least 1
    unsigned int x[1]; ///< the words; more follow
};

/// Head of the powers 5^4, 5^8, 5^16, ... 5^256, linked by `next`. Built when the
/// library is loaded, null after it was unloaded; read-only for everybody else.
extern TV_OSBASE_API Bigint* G_Pow5Data;

/// The one source of Bigint blocks: a small pool inside the object, then the heap.
///
/// Blocks of the pool are kept on one free list per size class; blocks of the heap go
/// back to it at once.
///
/// **Errors**: Alloc() answers null when memory ran out. **Memory**: a block belongs to
/// the caller until Free(). **Threads**: no locking; all conversions of the process run
/// on one thread at a time.
///
///     Bigint* b = tvFCvtAllocator().Alloc(2);      // room for four words
///     tvFCvtAllocator().Free(b);
class TV_OSBASE_API TvFCvtAllocator {
public:
    TvFCvtAllocator(const TvFCvtAllocator&) = delete;
    TvFCvtAllocator& operator=(const TvFCvtAllocator&) = delete;

    /// Opens the pool and builds the powers of five; nothing when that was done before.
    void init();

    /// Forgets pool and powers of five without freeing a block. Until the next init()
    /// every block comes from the heap.
    void release();

    /// A block of size class `k` with `sign` and `wds` 0; null for `k` outside 0..29.
    Bigint* Alloc(int k);

    /// Null is allowed.
    void Free(Bigint* b);

private:
    friend TV_OSBASE_API TvFCvtAllocator& tvFCvtAllocator();
    friend struct TvFCvtAllocatorCheck;
    friend struct TvDigitBlocks;

    TV_LOCAL TvFCvtAllocator();
    TV_LOCAL ~TvFCvtAllocator();
    // An address below the pool wraps to a large offset.
    bool owns(const Bigint* b) const
    {
        return reinterpret_cast<std::uintptr_t>(b) - reinterpret_cast<std::uintptr_t>(m_pool) < kPoolBytes;
    }

    enum { kPoolBytes = 3944, kLists = 16 };

    TvLocker m_lock;
    alignas(8) unsigned char m_pool[kPoolBytes];
    unsigned char* m_next;
    Bigint* m_free[kLists];

    TV_LOCAL static TvFCvtAllocator s_instance;
};

/// The allocator of the process.
TV_OSBASE_API TvFCvtAllocator& tvFCvtAllocator();

/// Correctly rounded decimal digits of a double, and the big-integer toolkit.
///
/// Results do not depend on the rounding mode or the locale, and the floating-point
/// environment stays as it was; only ratio() divides doubles.
///
/// Toolkit functions that change a number (multadd, pow5mult, lshift) take it over: the
/// argument is gone and the result, perhaps in another block, belongs to the caller. The
/// others leave their arguments alone. A null argument gives null, so that a chain of
/// calls needs one test at its end.
///
/// **Errors**: null when memory ran out; a number that was taken over is then released.
/// **Memory**: numbers go back with Bfree(), digit strings with freedtoa().
/// **Threads**: one at a time, see TvFCvtAllocator.
///
///     int point, negative;
///     char* digits = TvGdImpl::dtoa(-0.1, 0, 0, &point, &negative, nullptr);
///     // "1", point 0 (0.1 is 0.d1d2... times 10^0), negative 1
///     TvGdImpl::freedtoa(digits);
class TV_OSBASE_API TvGdImpl {
public:
    /// The digits d1d2... of |value| = 0.d1d2... times 10^*decpt, without trailing zeros,
    /// terminated with 0 and ended by `*rve` when that is not null.
    ///
    /// | mode | digits |
    /// |---|---|
    /// | 0 | the shortest that read back as `value`, the nearest of these |
    /// | 1 | the same, but never exactly half-way to a neighbour |
    /// | 2 | `ndigits` significant digits, at least 1 |
    /// | 3 | through `ndigits` places behind the point; negative: left of it |
    /// | 4, 5 | as 0 where that is not longer than 2, 3 would give, else as 2, 3 |
    /// | 6..9 | as 2..5, by big integers alone |
    ///
    /// Any other mode is 0. Ties go to the even digit. Zero is "0" with `*decpt` 1; a
    /// value that modes 3, 5, 7, 9 round to nothing is "" with `*decpt` = -`ndigits`.
    /// Infinity and NaN are the words "Infinity" and "NaN" with `*decpt` 9999. `*sign` is
    /// 1 when the sign bit is set, of -0 and NaN too, else 0.
    static char* dtoa(double value, int mode, int ndigits, int* decpt, int* sign, char** rve);

    /// Gives back a string of dtoa(), rv_alloc() or nrv_alloc(). Null is allowed.
    static void freedtoa(char* digits);

    /// tvFCvtAllocator().Alloc().
    static Bigint* Balloc(int k);
    /// tvFCvtAllocator().Free().
    static void Bfree(Bigint* b);

    /// b * m + a, for `m` and `a` not below 0.
    static Bigint* multadd(Bigint* b, int m, int a);

    /// Zero bits above the highest one; 32 for 0.
    static int hi0bits(unsigned int word);

    /// Shifts the zero bits below the lowest one out of `*word` and answers their number;
    /// 32 for 0.
    static int lo0bits(unsigned int* word);

    /// The number `i`, not below 0.
    static Bigint* i2b(int i);

    /// a * b, a new number.
    static Bigint* mult(Bigint* a, Bigint* b);

    /// b * 5^e; `e` below 0 counts as 0. Exponents from 512 on work and are slower.
    static Bigint* pow5mult(Bigint* b, int e);

    /// b * 2^bits; `bits` below 0 counts as 0.
    static Bigint* lshift(Bigint* b, int bits);

    /// Below, equal or above 0 as a is below, equal to or above b.
    static int cmp(Bigint* a, Bigint* b);

    /// |a - b|, with `sign` 1 when a < b.
    static Bigint* diff(Bigint* a, Bigint* b);

    /// The distance from |x| to the next double above.
    static double ulp(double x);

    /// The leading 53 bits of `a`, cut, as a double in [1, 2); `*e` receives the bits
    /// used in the top word.
    static double b2d(Bigint* a, int* e);

    /// |value| as an odd number times 2^*e, with `*bits` significant bits. Zero is 0 with
    /// `*bits` 0.
    static Bigint* d2b(double value, int* e, int* bits);

    /// The number written by `nd` decimal digits at `s`. The first nine have the value
    /// `y9`; one character (the point) stands after the first `nd0` digits.
    static Bigint* s2b(const char* s, int nd0, int nd, unsigned int y9);
    /// The same of wide digits.
    static Bigint* s2b(const wchar_t* s, int nd0, int nd, unsigned int y9);

    /// a / b to the precision of their leading 53 bits.
    static double ratio(Bigint* a, Bigint* b);

    /// The low `n` bits of `b`, rounded up to whole words, into `words`.
    static void copybits(unsigned int* words, int n, Bigint* b);

    /// 1 when one of the low `k` bits of `b` is set, else 0.
    static int any_on(Bigint* b, int k);

    /// b / S, leaving the remainder in `b`. `S` must have exactly 28 bits in its top word
    /// and the quotient must be below 16.
    static int quorem(Bigint* b, Bigint* S);

    /// Room for a string of `n` characters and its terminator.
    static char* rv_alloc(int n);

    /// A copy of `s` with room for at least `n` characters; `*rve`, when `rve` is not
    /// null, receives its end.
    static char* nrv_alloc(const char* s, char** rve, int n);

    /// Copies with the terminator; answers where that stands in `to`.
    static char* strcp(char* to, const char* from);

    /// Builds G_Pow5Data; nothing when it is there.
    static void initPow5Data();
};

#endif
