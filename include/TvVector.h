// TvVector.h - the growable array of the library.
//
// For results that are handed about by value: a copy costs one count. Where elements are
// only collected and used in one place, std::vector does the same.
#ifndef TV_VECTOR_H
#define TV_VECTOR_H

#include "TvVectorData.h"

#include <cstdlib>

namespace TvDetail {

// Looks for what can never be in the record of a vector.
struct VectorCheck {
    template<class Vector>
    static const char* faultOf(const Vector& vector)
    {
        const auto* const data = vector.m_data.get();
        const bool isEmptyRecord = data == Vector::rawEmptyData();
        if (gpEmptyVectorData != &gEmptyVectorData || gEmptyVectorData.growStep != 8 ||
            gEmptyVectorData.array != ~std::uintptr_t(0) || gEmptyVectorData.logicalCnt != 0 ||
            gEmptyVectorData.physicalCnt != 0)
            return "the empty record has changed";
        if (data->refCount < (isEmptyRecord ? 2 : 1))
            return "fewer holders than there are";
        if (data->logicalCnt < 0 || data->logicalCnt > data->physicalCnt)
            return "more elements in use than allocated";
        if (data->physicalCnt > data->m_room || data->m_room - data->physicalCnt > data->physicalCnt / 2)
            return "hidden room out of its bounds";
        if (!data->array)
            return "no array";
        return nullptr;
    }

    template<class Vector>
    static int roomOf(const Vector& vector)
    {
        return vector.m_data->m_room;
    }

    template<class Vector>
    static void demand(const Vector& vector)
    {
        if (faultOf(vector))
            std::abort();
    }
};

// Whether another vector holds the same elements, as all empty vectors do: for those who
// write through asArrayPtr().
template<class T, class Allocator, class LengthT, class GrowPolicy>
bool isShared(const TvVector<T, Allocator, LengthT, GrowPolicy>& vector);

} // namespace TvDetail

/// A growable array; copies share their elements until one of them is written to.
///
/// What surprises:
///  - reserve() below the present capacity gives memory back and may cut elements off;
///  - begin(), end(), asArrayPtr() and last() do not unshare: who writes through them calls
///    copyBeforeWrite(0) first;
///  - setLogicalLength() does not give new elements a value;
///  - asArrayPtr() of an empty vector is no address;
///  - capacity grows by 8 elements at a time, which is what physicalLength() reports.
///
/// **Errors**: a bad index is reported as status 24, last() without elements as status 2, and
/// the address that the formula gives is returned all the same; memory that runs out is
/// reported as status 6 (by the allocator, and by clone() for the record) and the vector
/// keeps what it had. Only a TvErrorStatus* thrown by a crash recorder, or what an element
/// throws when it is copied, leaves a vector; where a shared vector takes a record of its
/// own, what an element throws ends the process. **Memory**: a record from _tvMalloc, elements
/// from `Allocator`; vectors without elements share one static record. **Threads**: plain
/// counts, and all empty vectors share one: keep vectors on one thread.
///
///     TvVector<wchar_t> text;
///     for (wchar_t c : {L'a', L'b', L'\0'})
///         text.append(c);
///     TvVector<wchar_t> copy = text;          // shares
///     copy.at(0) = L'A';                      // now it has its own; text is "ab" still
template<class T, class Allocator = TvDefaultMemAllocator<T>, class LengthT = int,
         class GrowPolicy = TvVectorDefaultGrowPolicy>
class TvVector {
    static_assert(std::is_same<LengthT, int>::value, "lengths are 32-bit integers");
    static_assert(sizeof(GrowPolicy) == sizeof(unsigned int), "a grow policy is its step");

public:
    /// What the vector holds on to: counts and elements.
    using Data = TvVectorData<T, Allocator, LengthT, GrowPolicy>;
    /// A handle on such a record.
    using DataPtr = TvVectorDataPtr<T, Allocator, LengthT, GrowPolicy>;

    /// Without elements; shares the empty record.
    TvVector() : m_data(rawEmptyData()) {}

    /// Elements in use; 0 also for a static vector whose constructor has not run yet.
    LengthT length() const { return m_data.isNull() ? 0 : m_data->logicalCnt; }
    /// length().
    LengthT logicalLength() const { return length(); }
    /// Elements that there is room for, as reported: see the class.
    LengthT physicalLength() const { return m_data->physicalCnt; }
    /// The step of the grow policy.
    LengthT growLength() const
    {
        return m_data.isNull() ? 8 : static_cast<LengthT>(static_cast<unsigned int>(m_data->growPolicy));
    }
    /// Whether no element is in use.
    bool isEmpty() const { return m_data->logicalCnt == 0; }
    /// Whether `i` is the index of an element.
    bool isValidIndex(LengthT i) const { return i >= 0 && i < m_data->logicalCnt; }

    /// The first element. Without elements this is no address.
    const T* asArrayPtr() const { return m_data->array; }
    /// The same, to be written to after copyBeforeWrite(0).
    T* asArrayPtr() { return m_data->array; }
    /// asArrayPtr().
    const T* begin() const { return m_data->array; }
    /// asArrayPtr().
    T* begin() { return m_data->array; }
    /// The place behind the last element.
    const T* end() const { return endOfElements(); }
    /// The place behind the last element.
    T* end() { return endOfElements(); }

    /// Puts a copy of `value` behind the last element. Does nothing when there is no memory. `value` may be
    /// an element of this vector.
    void append(const T& value)
    {
        Data* const data = m_data.get();
        // Without their signs: the load that extends a sign waits until the store of the append
        // before it is done, a plain one does not: 2.3 and 0.6 ns an element.
        const auto at = static_cast<unsigned int>(data->logicalCnt);
        const auto physical = static_cast<unsigned int>(data->physicalCnt);
        T* const element = data->array + at;
        if (__builtin_expect(data->refCount == 1, 1) &&
            __builtin_expect(at < physical || data->stepWithinRoom(), 1)) {
            Elements::begin(element, 1);
            Elements::assign(element, value);
            data->logicalCnt = static_cast<LengthT>(at + 1); // last: the next append finds it in a register
            check();
        } else if constexpr (std::is_trivially_copyable<T>::value && sizeof(T) <= 2 * sizeof(void*)) {
            appendToFullOrShared(value);
        } else {
            appendLargeToFullOrShared(value);
        }
    }

    /// The new last element, without a value; a spare one that belongs to no vector when
    /// there is no memory.
    T& appendInternal() { return addElement() ? last() : spareElement(); }

    /// setLogicalLength().
    void resize(unsigned int n) { setLogicalLength(static_cast<LengthT>(n)); }
    /// setPhysicalLength(); above 2147483647 status 6 is reported and nothing changes.
    void reserve(unsigned int n)
    {
        if (n > static_cast<unsigned int>(INT_MAX))
            TvDetail::reportStatus(Orna::eOutOfMemory);
        else
            setPhysicalLength(static_cast<LengthT>(n));
    }
    /// No element is in use any more; the capacity stays.
    void removeAll() { setLogicalLength(0); }

    /// Makes `n` elements the ones in use. New elements have no value (but for those with a constructor). A
    /// negative length stands for one that is too large: status 6, no change.
    void setLogicalLength(LengthT n)
    {
        if (n == m_data->logicalCnt)
            return;
        if (n < 0) {
            TvDetail::reportStatus(Orna::eOutOfMemory);
            return;
        }
        if (n > m_data->physicalCnt) {
            if (!growFor(n))
                return;
        } else {
            const LengthT kept = n < m_data->logicalCnt ? n : m_data->logicalCnt;
            copyBeforeWrite(static_cast<unsigned int>(kept));
            if (m_data->refCount != 1)
                return;
        }
        Data* const data = m_data.get();
        const LengthT old = data->logicalCnt;
        Elements::begin(data->array + old, n - old);
        if (old > n)
            Elements::end(data->array + n, old - n);
        data->logicalCnt = n;
        check();
    }

    /// Exactly `n` elements of room; elements that do not fit are dropped. 0 and negative
    /// lengths make the vector share the empty record.
    void setPhysicalLength(LengthT n)
    {
        Data* const data = m_data.get();
        if (n == data->physicalCnt)
            return;
        if (n <= 0)
            m_data.assign(rawEmptyData());
        else if (data->physicalCnt == 0 || n < data->physicalCnt || data->refCount != 1 ||
                 !data->growInPlace(n))
            takeNewRecord(n);
        check();
    }

    /// The element at `i`, of this vector alone: unshares. When memory runs out (status 6) the elements are
    /// still shared.
    T& at(LengthT i)
    {
        const bool valid = isValidIndex(i);
        if (!valid)
            TvDetail::reportStatus(Orna::eInvalidIndex);
        copyBeforeWrite(0);
        return valid ? m_data->array[i] : elementBeyond(i);
    }

    /// The last element, perhaps shared with other vectors.
    T& last()
    {
        if (!isEmpty())
            return m_data->array[m_data->logicalCnt - 1];
        return TvDetail::admitErrorStatusOnly([this]() -> T& {
            TvDetail::reportStatus(Orna::eInvalidInput);
            return elementBeyond(-1);
        });
    }

    /// Gives a vector that shares its elements its own copy of the first `n`, or of all
    /// when `n` is 0. Does nothing to one that does not share.
    void copyBeforeWrite(unsigned int n)
    {
        if (m_data->refCount > 1)
            unshare(n);
    }

    /// The record that vectors without elements share; it counts no holder for the pointer.
    static Data* rawEmptyData() { return static_cast<Data*>(static_cast<Record*>(&gEmptyVectorData)); }
    /// A handle on that record.
    static DataPtr emptyData() { return DataPtr(rawEmptyData()); }

private:
    using Record = TvDetail::VectorRecord;
    using Elements = TvDetail::VectorElements<T, Allocator>;
    friend struct TvDetail::VectorCheck;
    friend bool TvDetail::isShared<>(const TvVector& vector);

    T* endOfElements() const { return m_data->array + m_data->logicalCnt; }

    // The element at an index outside the array, which may itself be no address: the
    // reference is formed and never followed here.
    __attribute__((no_sanitize("undefined"))) T& elementBeyond(LengthT i)
    {
        const auto start = reinterpret_cast<std::uintptr_t>(m_data->array);
        const auto offset = static_cast<std::intptr_t>(i) * static_cast<std::intptr_t>(sizeof(T));
        return *reinterpret_cast<T*>(start + static_cast<std::uintptr_t>(offset));
    }

    static T& spareElement()
    {
        static T spare;
        return spare;
    }

    // One more element, without a value.
    bool addElement()
    {
        const LengthT old = m_data->logicalCnt;
        setLogicalLength(static_cast<LengthT>(static_cast<unsigned int>(old) + 1u));
        return m_data->logicalCnt != old;
    }

    // Small elements go to the slow ways of append() by value: a reference would keep the
    // caller's element in memory, and cost every append a store.
    [[gnu::noinline]] void appendToFullOrShared(T value)
    {
        Data* data = m_data.get();
        if (data == rawEmptyData())
            return appendFirst<T>(value);
        const auto at = static_cast<unsigned int>(data->logicalCnt);
        const unsigned int physical = grownLength(at + 1);
        if (data->refCount != 1 || physical <= at || physical > static_cast<unsigned int>(INT_MAX) ||
            physical <= static_cast<unsigned int>(data->physicalCnt))
            return appendByMoving(value);
        if (!data->growInPlace(static_cast<LengthT>(physical))) {
            takeNewRecord(static_cast<LengthT>(physical));
            data = m_data.get();
            if (at >= static_cast<unsigned int>(data->physicalCnt))
                return;
        }
        Elements::begin(data->array + at, 1);
        data->array[at] = value;
        data->logicalCnt = static_cast<LengthT>(at + 1);
        check();
    }

    // What appendByMoving() comes to in a vector that shares the empty record.
    template<class First>
    [[gnu::always_inline]] void appendFirst(First value)
    {
        const unsigned int physical = grownLength(1);
        if (physical < 1 || physical > static_cast<unsigned int>(INT_MAX))
            return appendByMoving(value);
        Data* const fresh = newData(static_cast<LengthT>(physical), growLength());
        if (!fresh)
            return;
        DataPtr first(fresh);
        if (!fresh->array) // the allocator has reported it
            return;
        Elements::begin(fresh->array, 1);
        fresh->array[0] = value;
        fresh->logicalCnt = 1;
        m_data.swap(first);
        check();
    }

    [[gnu::noinline]] void appendByMoving(T value)
    {
        if (addElement())
            m_data->array[m_data->logicalCnt - 1] = value;
    }

    // Others are copied only where the elements move, and the value may be one of them.
    // A template: each module has its own, the class instantiated in the library has none.
    template<class Large>
    [[gnu::noinline]] TV_LOCAL void appendLargeToFullOrShared(const Large& value)
    {
        const LengthT at = m_data->logicalCnt;
        if (!growWithinRoom(static_cast<unsigned int>(at) + 1u)) {
            const T copy(value);
            if (addElement())
                m_data->array[m_data->logicalCnt - 1] = copy;
            return;
        }
        Elements::begin(m_data->array + at, 1);
        m_data->array[at] = value;
        m_data->logicalCnt = at + 1;
        check();
    }

    unsigned int grownLength(unsigned int n) const
    {
        return m_data->growPolicy.growCount(static_cast<unsigned int>(m_data->logicalCnt),
                                            static_cast<unsigned int>(m_data->physicalCnt), n);
    }

    // Raises the physical length for `n` elements when the hidden room allows it.
    bool growWithinRoom(unsigned int n)
    {
        const unsigned int grown = grownLength(n);
        const auto room = static_cast<unsigned int>(m_data->m_room);
        if (m_data->refCount != 1 || n <= static_cast<unsigned int>(m_data->physicalCnt) || grown < n ||
            grown > room)
            return false;
        m_data->physicalCnt = static_cast<LengthT>(grown);
        return true;
    }

    // Room for `n` elements, more than there is, in storage of one's own.
    bool growFor(LengthT n)
    {
        const unsigned int physical = grownLength(static_cast<unsigned int>(n));
        if (physical > static_cast<unsigned int>(INT_MAX)) {
            TvDetail::reportStatus(Orna::eOutOfMemory);
            return false;
        }
        const auto grown = static_cast<LengthT>(physical);
        setPhysicalLength(grown > n ? grown : n);
        return m_data->physicalCnt >= n;
    }

    static Data* newData(LengthT physical, LengthT growCount)
    {
        return physical > 0 ? new Data(physical, growCount) : rawEmptyData();
    }

    [[gnu::noinline]] void takeNewRecord(LengthT physical)
    {
        Data* const fresh = newData(physical, growLength());
        const DataPtr keepOnThrow(fresh);
        if (!fresh || !fresh->array)
            return;
        const LengthT used = m_data->logicalCnt;
        fresh->take(m_data->array, used < physical ? used : physical);
        m_data.assign(fresh);
    }

    [[gnu::noinline]] void unshare(unsigned int n)
    {
        const auto used = static_cast<unsigned int>(m_data->logicalCnt);
        if (Data* const own = m_data->clone(n != 0 ? n : used))
            m_data.assign(own);
        check();
    }

    void check() const
    {
#ifdef TV_CHECK_STRUCTURES
        TvDetail::VectorCheck::demand(*this);
#endif
    }

    DataPtr m_data;
};

template<class T, class Allocator, class LengthT, class GrowPolicy>
bool TvDetail::isShared(const TvVector<T, Allocator, LengthT, GrowPolicy>& vector)
{
    return vector.m_data->refCount > 1;
}

extern template class TV_OSBASE_API TvVector<char>;
extern template class TV_OSBASE_API TvVector<wchar_t>;
extern template class TV_OSBASE_API
    TvVector<unsigned char, TvDelegateMemAllocator<unsigned char>, int, TvVectorFlatMemBufGrowPolicy>;

#endif
