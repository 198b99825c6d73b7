// TvVectorData.h - what a TvVector is made of: allocators, grow policies, element
// constructors, the shared record and the counting handle.
//
// Users take TvVector.h, which includes this; a new allocator or grow policy for a vector
// has the shape of those here.
#ifndef TV_VECTOR_DATA_H
#define TV_VECTOR_DATA_H

#include "TvAlloc.h"
#include "TvErrorStatus.h"
#include "TvExport.h"
#include "TvHooks.h"

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

template<class T, class Allocator, class LengthT, class GrowPolicy>
class TvVector;

namespace TvDetail {

// Runs `step` and lets only a TvErrorStatus* out of it (a crash recorder may throw one);
// anything else ends the process.
template<class Step>
auto admitErrorStatusOnly(Step step) -> decltype(step())
{
    try {
        return step();
    } catch (TvErrorStatus*) {
        throw;
    } catch (...) {
        std::terminate();
    }
}

// Constructed elements (without a value where T has no constructor); null, without a
// report, when there is no memory.
template<class T>
T* newElements(int count)
{
    const auto size = static_cast<std::size_t>(count);
    return size > PTRDIFF_MAX / sizeof(T) ? nullptr : new (std::nothrow) T[size];
}

// The function behind array new that the code of a module is bound to.
using ArrayNew = void* (*)(std::size_t size, const std::nothrow_t&) noexcept;
// The function behind array delete.
using ArrayDelete = void (*)(void* array) noexcept;

// Resizes what the module's array new returned, as std::realloc does, so that large arrays
// grow where they lie. Null when there is no memory, and always where somebody replaced one
// of the two or a tool tells them from malloc; the old array then stays as it is.
TV_OSBASE_API void* resizeArray(void* array, std::size_t size, ArrayNew make, ArrayDelete drop) noexcept;

} // namespace TvDetail

/// Elements from array new.
///
/// **Errors**: out of memory reports status 6 and gives null; only a TvErrorStatus* can leave
/// alloc(), a constructor that throws anything else ends the process. **Memory**: the caller's
/// until dealloc(). **Threads**: as the global heap of the C++ runtime.
///
///     double* samples = TvDefaultMemAllocator<double>::alloc(100);
///     TvDefaultMemAllocator<double>::dealloc(samples, 100);
template<class T>
class TvDefaultMemAllocator {
public:
    /// `count` constructed elements (without a value where T has no constructor); null
    /// when `count` is below 1.
    static T* alloc(int count)
    {
        if (count < 1)
            return nullptr;
        return TvDetail::admitErrorStatusOnly([count] {
            T* const array = TvDetail::newElements<T>(count);
            if (!array)
                TvDetail::reportStatus(Orna::eOutOfMemory);
            return array;
        });
    }

    /// Destroys the elements and frees the array; null is allowed. The count is not consulted.
    static void dealloc(T* array, int) { delete[] array; }
};

/// Raw memory from _tvMalloc; the vector constructs and destroys what it keeps there.
///
/// **Errors**: out of memory (also a request above 2 GiB) reports status 6 and gives null; only
/// a TvErrorStatus* can leave alloc(). **Memory**: the caller's until dealloc(). **Threads**: one
/// at a time, as _tvMalloc.
///
///     unsigned char* bytes = TvDelegateMemAllocator<unsigned char>::alloc(64);
///     TvDelegateMemAllocator<unsigned char>::dealloc(bytes, 64);
template<class T>
class TvDelegateMemAllocator {
public:
    /// Room for `count` elements; null when `count` is below 1.
    static T* alloc(int count)
    {
        if (count < 1)
            return nullptr;
        return TvDetail::admitErrorStatusOnly([count] {
            const auto size = static_cast<std::size_t>(count);
            void* const memory = size > SIZE_MAX / sizeof(T) ? nullptr : _tvMalloc(size * sizeof(T));
            if (!memory)
                TvDetail::reportStatus(Orna::eOutOfMemory);
            return static_cast<T*>(memory);
        });
    }

    /// Frees the array, whose elements are gone already; null is allowed. The count is not
    /// consulted.
    static void dealloc(T* array, int)
    {
        if (array)
            _tvFree(array);
    }
};

/// Grows to what is wanted, and by at least one step (8 by default) beyond the length.
///
/// **Errors**, **Memory**: none. **Threads**: as its vector.
///
///     TvVectorDefaultGrowPolicy policy;
///     policy.growCount(8, 8, 9);              // 16
class TvVectorDefaultGrowPolicy {
public:
    /// A step of 8.
    TvVectorDefaultGrowPolicy() : m_step(8) {}

    /// The step, in elements.
    operator unsigned int() const { return m_step; }
    /// Sets the step, in elements, and answers it.
    unsigned int operator=(unsigned int step) { return m_step = step; }

    /// The new physical length for `wanted` elements. 32-bit arithmetic that may wrap.
    unsigned int growCount(unsigned int logical, unsigned int physical, unsigned int wanted) const
    {
        const unsigned int stepped = logical + m_step;
        if (wanted == 0)
            return stepped;
        if (wanted < physical)
            return physical;
        return stepped <= wanted ? wanted : stepped;
    }

private:
    unsigned int m_step;
};

/// The rule of the memory streams: doubles up to 65536 elements, then grows by at least
/// that many, and always by at least the step (8 by default).
///
/// **Errors**, **Memory**: none. **Threads**: as its vector.
///
///     TvVectorFlatMemBufGrowPolicy policy;
///     policy.growCount(100, 100, 101);        // 200
class TvVectorFlatMemBufGrowPolicy {
public:
    /// A step of 8.
    TvVectorFlatMemBufGrowPolicy() : m_step(8) {}

    /// The step, in elements.
    operator unsigned int() const { return m_step; }
    /// Sets the step, in elements, and answers it.
    unsigned int operator=(unsigned int step) { return m_step = step; }

    /// The new physical length for `requested` elements. 32-bit arithmetic that may wrap.
    unsigned int growCount(unsigned int logical, unsigned int physical, unsigned int requested) const
    {
        if (requested == 0)
            return m_step + logical;
        const unsigned int missing = requested - logical;
        if (requested < physical || missing == 0)
            return physical;
        const unsigned int doubling = physical < 65536u ? physical : 65536u;
        const unsigned int least = m_step > missing ? m_step : missing;
        return physical + (least > doubling ? least : doubling);
    }

private:
    unsigned int m_step;
};

/// Element copies for types that are plain bytes.
///
/// **Errors**, **Memory**, **Threads**: none.
///
///     TvPodTypeConstructor<int>::assign(to, from, 4);
template<class T>
class TvPodTypeConstructor {
public:
    /// The two arrays must not overlap. Nothing happens when `count` is below 1.
    static void assign(T* dst, const T* src, int count)
    {
        static_assert(std::is_trivially_copyable<T>::value, "elements must be plain bytes");
        if (count > 0)
            std::memcpy(static_cast<void*>(dst), src, static_cast<std::size_t>(count) * sizeof(T));
    }
};

/// Construction and destruction of elements in raw memory.
///
/// **Errors**: what the elements throw; those made by then are destroyed. **Memory**, **Threads**:
/// none. Nothing happens when `count` is below 1.
///
///     TvObjectTypeConstructor<unsigned char>::construct(bytes, 16);
template<class T>
class TvObjectTypeConstructor {
public:
    /// Elements of a type without a constructor get no value.
    static void construct(T* array, int count)
    {
        if (count > 0)
            std::uninitialized_default_construct_n(array, count);
    }

    /// Destroys the elements; the memory stays.
    static void deconstruct(T* array, int count)
    {
        if (count > 0)
            std::destroy_n(array, count);
    }
};

namespace TvDetail {

// What the records of all element types have in common, so that they can share one
// empty record.
struct VectorRecord : TvHeapOp {
    VectorRecord(int references, int logical, int physical)
        : refCount(references), logicalCnt(logical), physicalCnt(physical)
    {
    }
    constexpr VectorRecord() : refCount(1), logicalCnt(0), physicalCnt(0) {}

    int refCount;
    int logicalCnt;  // elements in use
    int physicalCnt; // elements allocated, as reported
};

// The layout of a TvVectorData of any type, without its elements.
struct EmptyVectorRecord : VectorRecord {
    constexpr EmptyVectorRecord() : growStep(8), array(~std::uintptr_t(0)), room(0) {}

    unsigned int growStep;
    std::uintptr_t array; // no address; never followed, because the counts are 0
    int room;
};

// How elements of a type are kept in the memory of an allocator. Most allocators hand out
// constructed elements, which live as long as the array; the delegate allocator hands out
// raw memory, in which only the elements in use are alive.
template<class T, class Allocator>
struct VectorElements {
    static constexpr bool kRawMemory = std::is_same<Allocator, TvDelegateMemAllocator<T>>::value;

    static void begin(T* array, int count)
    {
        if (kRawMemory)
            TvObjectTypeConstructor<T>::construct(array, count);
    }

    static void end(T* array, int count)
    {
        if (kRawMemory)
            TvObjectTypeConstructor<T>::deconstruct(array, count);
    }

    // `dst` is fresh from the allocator.
    static void copy(T* dst, const T* src, int count)
    {
        if constexpr (std::is_trivially_copyable<T>::value) {
            TvPodTypeConstructor<T>::assign(dst, src, count);
        } else if constexpr (kRawMemory) {
            std::uninitialized_copy_n(src, count, dst);
        } else {
            for (int i = 0; i < count; ++i)
                dst[i] = src[i];
        }
    }

    // As an assignment, to an element that is alive. A store of a character type may change
    // anything, the vector's own fields too, as far as a compiler can tell; one of a type that
    // nothing else has may not, and whoever reads bytes sees it all the same.
    static void assign(T* element, const T& value)
    {
        enum class Byte : unsigned char {};
        if constexpr (std::is_same<T, char>::value || std::is_same<T, unsigned char>::value)
            ::new (static_cast<void*>(element)) Byte(static_cast<Byte>(value));
        else
            *element = value;
    }

    // Enlarges an array to room for `room` elements, keeping the first `used`. On failure
    // null, without a report, and the old array stays. Other allocators than the library's
    // two are asked for exactly what a vector reports, so this always fails for them.
    static T* enlarge(T* array, int used, int room)
    {
        if constexpr (std::is_same<Allocator, TvDefaultMemAllocator<T>>::value)
            return enlargeNewed(array, used, room);
        if constexpr (kRawMemory && std::is_trivially_copyable<T>::value)
            return enlargeInPlace(array, room);
        return nullptr;
    }

private:
    // Below this many bytes there is nothing to gain: the C library keeps small blocks at hand
    // for malloc, but not for realloc.
    static constexpr std::size_t kLeastResized = 1024;

    static T* enlargeNewed(T* array, int used, int room)
    {
        if constexpr (std::is_scalar<T>::value) { // others may have an array new of their own
            const auto size = static_cast<std::size_t>(room);
            if (size >= kLeastResized / sizeof(T) && size <= PTRDIFF_MAX / sizeof(T))
                if (void* const larger =
                        resizeArray(array, size * sizeof(T), static_cast<ArrayNew>(&::operator new[]),
                                    static_cast<ArrayDelete>(&::operator delete[])))
                    return static_cast<T*>(larger);
        }
        return enlargeByMove(array, used, room);
    }

    static T* enlargeByMove(T* array, int used, int room)
    {
        std::unique_ptr<T[]> larger(admitErrorStatusOnly([room] { return newElements<T>(room); }));
        if (!larger)
            return nullptr;
        if constexpr (std::is_trivially_copyable<T>::value || !std::is_nothrow_move_assignable<T>::value) {
            copy(larger.get(), array, used); // what it throws leaves the old array whole
        } else {
            for (int i = 0; i < used; ++i)
                larger[i] = std::move(array[i]);
        }
        Allocator::dealloc(array, used);
        return larger.release();
    }

    static T* enlargeInPlace(T* array, int room)
    {
        const std::size_t largest = 0x80000000u; // of _tvMalloc, which must be able to copy it
        const auto size = static_cast<std::size_t>(room);
        if (size > largest / sizeof(T))
            return nullptr;
        return static_cast<T*>(_tvRealloc(static_cast<void*>(array), size * sizeof(T)));
    }
};

struct VectorCheck;

} // namespace TvDetail

/// The record that every vector without elements shares. Its array is no address.
extern TV_OSBASE_API TvDetail::EmptyVectorRecord gEmptyVectorData;

/// gEmptyVectorData, as the records of all element types have it in common.
extern TV_OSBASE_API TvDetail::VectorRecord* const gpEmptyVectorData;

/// The elements of one or more vectors, with a plain count of the handles on them.
///
/// The array may have more room than `physicalCnt` says, at most half as much again, so
/// that growth in small steps seldom moves the elements.
///
/// **Errors**: the constructor leaves `array` null and both lengths 0 when the allocator has
/// no memory. **Memory**: the record from _tvMalloc, its elements from `Allocator`. **Threads**:
/// the count is a plain integer.
///
///     auto* record = new TvVectorData<int, TvDefaultMemAllocator<int>, int,
///                                     TvVectorDefaultGrowPolicy>(16, 8);
template<class T, class Allocator, class LengthT, class GrowPolicy>
class TvVectorData : public TvDetail::VectorRecord {
public:
    /// Room for `physical` elements and none in use; nobody holds the record yet.
    TvVectorData(int physical, int growCount)
        : VectorRecord(0, 0, physical), array(Allocator::alloc(physical)), m_room(physical)
    {
        growPolicy = static_cast<unsigned int>(growCount);
        if (!array)
            physicalCnt = m_room = 0;
    }

    TvVectorData(const TvVectorData&) = delete;
    TvVectorData& operator=(const TvVectorData&) = delete;

    /// Destroys the elements and gives the array back to the allocator.
    ~TvVectorData()
    {
        Elements::end(array, logicalCnt);
        Allocator::dealloc(array, m_room);
        array = nullptr;
    }

    /// A new record that nobody holds yet, of the same physical length (16 when that is 0)
    /// and step, with the first `count` elements at most. Null when memory ran out, which
    /// has then been reported as status 6.
    TvVectorData* clone(unsigned int count) const
    {
        return TvDetail::admitErrorStatusOnly([this, count]() -> TvVectorData* {
            const int room = physicalCnt != 0 ? physicalCnt : 16;
            const auto step = static_cast<unsigned int>(growPolicy);
            TvVectorData* const copy = new TvVectorData(room, static_cast<int>(step));
            if (!copy) {
                TvDetail::reportStatus(Orna::eOutOfMemory);
                return nullptr;
            }
            if (!copy->array) { // the allocator has reported it
                delete copy;
                return nullptr;
            }
            const auto used = static_cast<unsigned int>(logicalCnt);
            copy->take(array, static_cast<int>(count < used ? count : used));
            return copy;
        });
    }

    GrowPolicy growPolicy; ///< how the vector grows
    T* array;              ///< the elements; null when the allocator had no memory

private:
    using Elements = TvDetail::VectorElements<T, Allocator>;
    friend class TvVector<T, Allocator, LengthT, GrowPolicy>;
    friend struct TvDetail::VectorCheck;

    // Copies elements into a record that has none.
    void take(const T* source, int count)
    {
        Elements::copy(array, source, count);
        logicalCnt = count;
    }

    // Raises the physical length of a full record by the step, as the default grow policy
    // does for one more element, when the hidden room allows it.
    bool stepWithinRoom()
    {
        if constexpr (!std::is_same<GrowPolicy, TvVectorDefaultGrowPolicy>::value)
            return false;
        const unsigned int step = growPolicy;
        if (step < 2 || step > static_cast<unsigned int>(m_room - physicalCnt))
            return false;
        physicalCnt += static_cast<int>(step);
        return true;
    }

    // Raises the physical length of a record with a single holder; false, without a report
    // or a change, when that needs memory that cannot be had.
    bool growInPlace(int physical)
    {
        if (physical > m_room) {
            const int half = physical / 2;
            const int room = physical > INT_MAX - half ? INT_MAX : physical + half;
            T* const larger = Elements::enlarge(array, logicalCnt, room);
            if (!larger)
                return false;
            array = larger;
            m_room = room;
        }
        physicalCnt = physical;
        return true;
    }

    int m_room; // elements that `array` has room for
};

/// A counting handle on a record, or null.
///
/// **Errors**: none. **Memory**: the last handle deletes the record. **Threads**: the count is a plain
/// integer.
///
///     TvVectorDataPtr<int, TvDefaultMemAllocator<int>, int, TvVectorDefaultGrowPolicy>
///         handle(record);                     // handle.refCount() == 1
template<class T, class Allocator, class LengthT, class GrowPolicy>
class TvVectorDataPtr : public TvHeapOp {
public:
    /// The record.
    using Data = TvVectorData<T, Allocator, LengthT, GrowPolicy>;

    /// Holds `record`, which may be null.
    explicit TvVectorDataPtr(Data* record = nullptr) : m_record(record) { hold(); }
    /// Holds the same record.
    TvVectorDataPtr(const TvVectorDataPtr& other) : m_record(other.m_record) { hold(); }
    /// Lets go of the record.
    ~TvVectorDataPtr() { release(); }

    /// assign() of the record that `other` holds.
    TvVectorDataPtr& operator=(const TvVectorDataPtr& other) { return assign(other.m_record); }
    /// assign().
    TvVectorDataPtr& operator=(Data* record) { return assign(record); }

    /// Lets go of what is held and holds `record`, which may be null. Does nothing when `record`
    /// is already held.
    TvVectorDataPtr& assign(Data* record)
    {
        if (record != m_record) {
            TvVectorDataPtr old(record); // held before the old one goes, whose elements may keep it
            std::swap(m_record, old.m_record);
        }
        return *this;
    }

    /// Whether nothing is held.
    bool isNull() const { return m_record == nullptr; }
    /// The handles on the record. The handle must not be null.
    int refCount() const { return m_record->refCount; }

    /// The record, or null.
    Data* get() const { return m_record; }
    /// The record, or null.
    Data* operator->() const { return m_record; }

private:
    friend class TvVector<T, Allocator, LengthT, GrowPolicy>;

    void swap(TvVectorDataPtr& other) { std::swap(m_record, other.m_record); }

    void hold()
    {
        if (m_record)
            ++m_record->refCount;
    }

    void release()
    {
        if (m_record && --m_record->refCount == 0)
            destroy();
    }

    [[gnu::noinline]] void destroy()
    {
        delete m_record;
        m_record = nullptr;
    }

    Data* m_record;
};

#endif
