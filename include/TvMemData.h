// TvMemData.h - a counted block of plain elements that copies share until one writes.
//
// What strings are made of. Users of text take TvStringA.h; for arrays of anything else there
// is TvVector.h.
#ifndef TV_MEM_DATA_H
#define TV_MEM_DATA_H

#include "TvAlloc.h"
#include "TvExport.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <type_traits>

namespace TvDetail {

// The same address, of which the compiler knows nothing: it may not take elements behind a static
// header for an error, because a header met there may be any.
template<class Header>
Header* anyHeader(Header* header)
{
    __asm__("" : "+r"(header));
    return header;
}

} // namespace TvDetail

/// What stands in front of the elements of a buffer, in the same allocation.
///
/// **Errors**: none.
/// **Memory**: the buffer's.
/// **Threads**: the count is a plain integer.
///
///     const TvMemDataHeader model(1, 0, 0, 8);
///     TvMemDataHeader own(model);             // own.refCount == 0
class TV_OSBASE_API TvMemDataHeader {
public:
    /// The four fields in their order.
    constexpr TvMemDataHeader(std::uint32_t references, std::uint64_t used, std::uint64_t allocated,
                              std::uint64_t step)
        : refCount(references), count(used), allocCount(allocated), growth(step)
    {
    }
    /// Nobody holds the copy yet: its `refCount` is 0.
    constexpr TvMemDataHeader(const TvMemDataHeader& other)
        : refCount(0), count(other.count), allocCount(other.allocCount), growth(other.growth)
    {
    }
    TvMemDataHeader& operator=(const TvMemDataHeader&) = delete;

    /// The header of all buffers without elements, (1, 0, 0, 8) and one more for each of them.
    static TvMemDataHeader sm_EmptyHeader;
    /// The address of sm_EmptyHeader.
    static TvMemDataHeader* sEmptyHeader() { return TvDetail::anyHeader(&sm_EmptyHeader); }

    /// Handles on the buffer. 0xFFFFFFFF, which only a client ever sets, locks it: it is written in
    /// place, however many handles hold it, and never freed by them.
    std::uint32_t refCount;
    std::uint64_t count;      ///< elements in use
    std::uint64_t allocCount; ///< elements allocated
    std::uint64_t growth;     ///< least number of elements to grow by
};

/// Memory of buffers, from the pooled heap.
///
/// **Errors**: null when there is no memory.
/// **Memory**: the caller's until _dealloc().
/// **Threads**: one at a time, as _tvMalloc.
///
///     void* block = TvMemDataAllocator::_alloc(64);
///     TvMemDataAllocator::_dealloc(block);
class TvMemDataAllocator {
public:
    /// `size` bytes without a value; null when there is no memory.
    static void* _alloc(std::size_t size) { return _tvMalloc(size); }
    /// Gives a block back; null is allowed.
    static void _dealloc(void* block) { _tvFree(block); }
};

/// Copies elements that are plain bytes.
///
/// **Errors**, **Memory**, **Threads**: none.
///
///     TvPodReallocator<char>::_copy(to, from, 4);
template<class T>
class TvPodReallocator {
    static_assert(std::is_trivially_copyable<T>::value, "elements must be plain bytes");

public:
    /// Copies `n` elements. The two ranges may overlap; both may be null when `n` is 0.
    static void _copy(T* dst, const T* src, std::size_t n)
    {
        if (n != 0)
            std::memmove(static_cast<void*>(dst), src, n * sizeof(T));
    }
    /// As _copy(): plain bytes are made by copying them.
    static void _constructn(T* dst, const T* src, std::size_t n) { _copy(dst, src, n); }
    /// Does nothing: plain bytes get no value.
    static void _constructn(T*, std::size_t) {}
    /// Does nothing.
    static void _destructn(T*, std::size_t) {}
};

template<class T, class Header, class Allocator = TvMemDataAllocator, class Reallocator = TvPodReallocator<T>>
class TvMemData;

template<class Char, class Header>
class TvStringT;

namespace TvDetail {

// Looks for what can never be in a buffer.
struct MemDataCheck {
    template<class T, class Header, class Allocator, class Reallocator>
    static const char* faultOf(const TvMemData<T, Header, Allocator, Reallocator>& buffer)
    {
        const Header& empty = *Header::sEmptyHeader();
        if (empty.count != 0 || empty.allocCount != 0 || empty.growth != 8)
            return "the empty header has changed";
        const Header* const header = buffer.header();
        if (!header)
            return nullptr;
        if (header->refCount < (header == &empty ? 2u : 1u))
            return "fewer holders than there are";
        if (header->count > header->allocCount)
            return "more elements in use than allocated";
        return nullptr;
    }

    template<class Buffer>
    static void demand(const Buffer& buffer)
    {
        if (faultOf(buffer))
            std::abort();
    }
};

} // namespace TvDetail

/// A handle on a counted block of elements; copies share the block.
///
/// `Header` is TvMemDataHeader or derived from it, and has a static sEmptyHeader().
///
/// What surprises:
///  - the lengths of this class are what is set: a buffer knows of no terminator;
///  - elements between the old count and a larger one have no value;
///  - releaseBuffer() writes the count of a block that others may share;
///  - after release() the handle holds nothing, until the next call that needs a block.
///
/// **Errors**: when memory runs out nothing is reported and nothing changes; those calls
/// answer false, or null where they answer with an address. A size that overflows is memory
/// that ran out.
/// **Memory**: one block of sizeof(Header) bytes plus the elements, from `Allocator`; the last
/// handle frees it, unless it is locked.
/// **Threads**: plain counts, and all empty buffers share one: keep buffers on one thread.
///
///     using Bytes = TvMemData<char, TvMemDataHeader>;
///     Bytes bytes;
///     bytes.assign("abc", 3);                 // room for 8
///     Bytes copy(bytes);                      // shares
///     copy.rawData()[0] = 'A';                // now it has its own; bytes is "abc" still
template<class T, class Header, class Allocator, class Reallocator>
class TvMemData {
    static_assert(std::is_base_of<TvMemDataHeader, Header>::value, "headers begin with the counts");
    static_assert(alignof(T) <= alignof(Header), "the elements follow the header at once");

public:
    /// Shares the empty block.
    TvMemData() : m_data(nullptr) { setEmpty(); }
    /// Shares the block of `other`.
    TvMemData(const TvMemData& other) : m_data(other.m_data) { addRef(); }
    /// assign().
    TvMemData& operator=(const TvMemData& other)
    {
        assign(other);
        return *this;
    }
    /// release().
    ~TvMemData() { release(); }

    /// What stands in front of the elements; null after release().
    const Header* header() const { return headerOf(m_data); }
    /// The same, to be written to.
    Header* header() { return headerOf(m_data); }

    /// Elements in use; 0 after release().
    std::uint64_t count() const { return m_data ? header()->count : 0; }
    /// The least number of elements to grow by; 0 after release().
    std::uint64_t growth() const { return m_data ? header()->growth : 0; }
    /// Whether no element is in use.
    bool isEmpty() const { return count() == 0; }
    /// Whether another handle holds the block; false for a locked one.
    bool isShared() const { return m_data && static_cast<std::int32_t>(header()->refCount) > 1; }
    /// Whether the block is written in place whoever holds it: see TvMemDataHeader::refCount.
    bool isLocked() const { return m_data && header()->refCount == kLocked; }

    /// The elements, perhaps shared; null when there is none.
    const T* rawData() const { return isEmpty() ? nullptr : m_data; }
    /// Elements that belong to this handle alone. Null when there is none, or no memory.
    T* rawData() { return !isEmpty() && copyIfShared() ? m_data : nullptr; }

    /// The address of element `i`, in use or not; does not unshare.
    const T* dataPtr(std::uint64_t i) const { return m_data + i; }
    /// The same, to be written to once the block is this handle's own.
    T* dataPtr(std::uint64_t i) { return m_data + i; }

    /// Counts one more handle on the block. A locked block stays locked.
    void addRef()
    {
        if (m_data && !isLocked())
            ++header()->refCount;
    }

    /// Lets go of the block, which the last handle frees. A locked block is kept.
    void release() noexcept
    {
        Header* const held = header();
        if (!held || held->refCount == kLocked)
            return;
        m_data = nullptr;
        if (--held->refCount == 0)
            destroy(held);
    }

    /// Shares the block of `other`.
    void assign(const TvMemData& other)
    {
        if (other.m_data == m_data)
            return;
        release();
        m_data = other.m_data;
        addRef();
    }

    /// Takes a reference on the block behind `block`; null stands for the empty one.
    void assign(Header* block)
    {
        if (!block)
            block = Header::sEmptyHeader();
        if (block == header())
            return;
        release();
        m_data = elementsOf(block);
        addRef();
    }

    /// Copies `n` elements, which may be among those of this buffer. False when there is no
    /// memory.
    bool assign(const T* src, std::uint64_t n)
    {
        if (!hasOwnRoomFor(n))
            return assignToNewBlock(src, n);
        header()->count = n;
        Reallocator::_copy(m_data, src, static_cast<std::size_t>(n));
        check();
        return true;
    }

    /// Shares the empty block.
    void setEmpty() { assign(Header::sEmptyHeader()); }

    /// Gives a buffer that shares its block one of its own, without room to spare. False when
    /// there is no memory.
    bool copyIfShared() { return !isShared() || reallocData(count(), 0); }

    /// Makes `n` elements (0: as many as there are) the ones in use, in a block of this buffer
    /// alone, and gives their address; null when there is no memory. Where nothing was in use
    /// that is the place for the first.
    T* getBuffer(std::uint64_t n) { return copyBeforeWrite(n != 0 ? n : count()) ? m_data : nullptr; }

    /// Makes the first `n` elements the ones in use, at most all that the block has room for.
    void releaseBuffer(std::uint64_t n)
    {
        if (!m_data)
            return;
        Header& own = *header();
        own.count = n < own.allocCount ? n : own.allocCount;
        check();
    }

    /// Every write comes through here: makes `n` the count of a block that this buffer alone
    /// holds. A new block for a shared one is rounded up to whole growth steps.
    bool copyBeforeWrite(std::uint64_t n)
    {
        if (!hasOwnRoomFor(n))
            return reallocData(n, capacityFor(n));
        header()->count = n;
        check();
        return true;
    }

    /// Room for `k` elements more than are in use; the block must not be shared. Capacity
    /// doubles up to 65536 elements and then grows by that many, and always by the growth step
    /// and by `k` at least.
    bool grow(std::uint64_t k)
    {
        const Header& own = held();
        return k <= own.allocCount - own.count || reallocData(own.count, grownCapacity(own, k));
    }

    /// A new block for `capacity` elements, or `n` if that is more, with `n` in use, of which
    /// those that were in use before have their value.
    [[gnu::noinline]] bool reallocData(std::uint64_t n, std::uint64_t capacity)
    {
        const Header& old = held();
        Header* const fresh = newBlock(old, n, capacity);
        if (!fresh)
            return false;
        const std::uint64_t kept = old.count < n ? old.count : n;
        Reallocator::_constructn(elementsOf(fresh), m_data, static_cast<std::size_t>(kept));
        assign(fresh);
        check();
        return true;
    }

private:
    template<class Char, class StringHeader>
    friend class TvStringT;

    // Takes over the caller's reference on the block behind `block`.
    explicit TvMemData(Header& block) : m_data(elementsOf(&block)) {}

    static constexpr std::uint32_t kLocked = 0xFFFFFFFFu;
    static constexpr std::uint64_t kMost = ~std::uint64_t(0);
    static constexpr std::uint64_t kDoublingEnd = 65536;

    static Header* headerOf(T* elements)
    {
        return elements ? reinterpret_cast<Header*>(elements) - 1 : nullptr;
    }
    static T* elementsOf(Header* block) { return reinterpret_cast<T*>(block + 1); }

    // The header, of the empty block after release().
    Header& held()
    {
        if (!m_data)
            setEmpty();
        return *header();
    }

    bool hasOwnRoomFor(std::uint64_t n) const { return m_data && !isShared() && n <= header()->allocCount; }

    // Of the new block for a write of `n` elements.
    std::uint64_t capacityFor(std::uint64_t n)
    {
        const Header& own = held();
        return isShared() ? roundedUp(n, own.growth) : grownCapacity(own, n - own.count);
    }

    [[gnu::noinline]] bool assignToNewBlock(const T* src, std::uint64_t n)
    {
        Header* const fresh = newBlock(held(), n, capacityFor(n));
        if (!fresh)
            return false;
        Reallocator::_constructn(elementsOf(fresh), src, static_cast<std::size_t>(n));
        assign(fresh); // `src` may lie in the old block, which goes only now
        check();
        return true;
    }

    // `n` in whole steps; no step gives 0, which stands for `n` itself.
    static std::uint64_t roundedUp(std::uint64_t n, std::uint64_t step)
    {
        if (step == 8) // the step of all buffers whose user sets no other
            return (n + 7) & ~std::uint64_t(7);
        return step == 0 ? 0 : (n / step + (n % step != 0)) * step;
    }

    static std::uint64_t grownCapacity(const Header& own, std::uint64_t k)
    {
        const std::uint64_t step = own.growth > k ? own.growth : k;
        const std::uint64_t doubled = own.allocCount < kDoublingEnd ? own.allocCount : kDoublingEnd;
        const std::uint64_t more = doubled > step ? doubled : step;
        return more > kMost - own.allocCount ? kMost : own.allocCount + more;
    }

    // A block that nobody holds yet, without values; its other fields are those of `model`.
    static Header* newBlock(const Header& model, std::uint64_t n, std::uint64_t capacity)
    {
        if (capacity < n)
            capacity = n;
        if (capacity > (SIZE_MAX - sizeof(Header)) / sizeof(T))
            return nullptr;
        void* const memory =
            Allocator::_alloc(sizeof(Header) + static_cast<std::size_t>(capacity) * sizeof(T));
        if (!memory)
            return nullptr;
        Header* const fresh = new (memory) Header(model);
        fresh->count = n;
        fresh->allocCount = capacity;
        return fresh;
    }

    [[gnu::noinline]] static void destroy(Header* block)
    {
        Reallocator::_destructn(elementsOf(block), static_cast<std::size_t>(block->count));
        block->~Header();
        Allocator::_dealloc(block);
    }

    void check() const
    {
#ifdef TV_CHECK_STRUCTURES
        TvDetail::MemDataCheck::demand(*this);
#endif
    }

    T* m_data; // the first element; the header is in front of it
};

#endif
