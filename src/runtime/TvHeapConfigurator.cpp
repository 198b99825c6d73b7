#include "TvHeap.h"

#include "runtime/TvHeapInternals.h"
#include "runtime/TvMemoryTools.h"

#include <sys/mman.h>

namespace {

constexpr std::size_t kPageSize = 0x100000;
constexpr int kCommitTries = 6;

// The counter repeats its addresses after four steps.
constexpr int kDistinctCandidates = 4;

// User space ends here; what lies above is not canonical or the kernel's.
constexpr std::uintptr_t kAddressEnd = 0x800000000000;

std::uintptr_t candidateAddress(std::int32_t counter)
{
#if defined(TV_HEAP_FIRST_ADDRESS)
    if (counter % kDistinctCandidates == 1)
        return TV_HEAP_FIRST_ADDRESS;
#endif
    const auto shifted = static_cast<std::int32_t>(static_cast<std::uint32_t>(counter) << 30);
    return static_cast<std::uintptr_t>(static_cast<std::intptr_t>(shifted)) << 6;
}

// Maps at `address` or not at all: a first mapping that cannot replace anything tells
// whether the range is free.
void* reserveAt(std::uintptr_t address, std::size_t length)
{
    if (address == 0 || address >= kAddressEnd)
        return nullptr;
    void* const wanted = reinterpret_cast<void*>(address);
    const int flags = MAP_PRIVATE | MAP_ANONYMOUS;
    void* const probe =
        TvHeapConfigurator::tvMemoryReserve(wanted, length, PROT_NONE, flags | MAP_FIXED_NOREPLACE);
    if (probe == nullptr)
        return nullptr;
    if (probe != wanted) { // a kernel that takes the address for a hint
        TvHeapConfigurator::tvMemoryRelease(probe, length);
        return nullptr;
    }
    void* const range = TvHeapConfigurator::tvMemoryReserve(wanted, length, PROT_NONE, flags | MAP_FIXED);
    if (range == nullptr)
        TvHeapConfigurator::tvMemoryRelease(probe, length);
    return range;
}

} // namespace

void* TvHeapConfigurator::pStartAddress = nullptr;
short TvHeapConfigurator::mOffSetId = 0;

short TvHeapConfigurator::sGetPageId(const void* address)
{
    const auto offset =
        reinterpret_cast<std::uintptr_t>(address) - reinterpret_cast<std::uintptr_t>(pStartAddress);
    return static_cast<short>(offset >> 20);
}

void* TvHeapConfigurator::sGetPageAddress(short pageId)
{
    if (pageId == 0)
        return nullptr;
    return reinterpret_cast<void*>(reinterpret_cast<std::uintptr_t>(pStartAddress) +
                                   (static_cast<std::uintptr_t>(static_cast<std::intptr_t>(pageId)) << 20));
}

void* TvHeapConfigurator::sGetPageAddress(const void* address)
{
    return reinterpret_cast<void*>(reinterpret_cast<std::uintptr_t>(address) & ~(kPageSize - 1));
}

std::size_t TvHeapConfigurator::sGetBlockOffset(const void* address)
{
    return ((reinterpret_cast<std::uintptr_t>(address) >> 12) & 0xFF) * 32;
}

void* TvHeapConfigurator::sGetBlockAddress(const void* address)
{
    return static_cast<char*>(sGetPageAddress(address)) + sGetBlockOffset(address);
}

bool TvHeapConfigurator::sIsOutofHeapRange(const void* address)
{
    const auto offset =
        reinterpret_cast<std::uintptr_t>(address) - reinterpret_cast<std::uintptr_t>(pStartAddress);
    const std::uintptr_t id = offset >> 20;
    return id > 32767 || id < static_cast<std::uintptr_t>(mOffSetId);
}

std::size_t TvHeapConfigurator::sGetPagePoolIndex(std::size_t size)
{
    return size % 4096 == 0 ? size / 4096 : 0;
}

std::size_t TvHeapConfigurator::sGetSizeOfPagePool(std::size_t index) { return index * 4096; }

void TvHeapConfigurator::sInitPageFlags(unsigned char* flags) { TvHeapInternals::initPageFlags(flags); }

void* TvHeapConfigurator::tvMemoryReserve(void* address, std::size_t length, int protection, int flags)
{
    void* const range = mmap(address, length, protection, flags, -1, 0);
    return range == MAP_FAILED ? nullptr : range;
}

void* TvHeapConfigurator::tvMemoryCommit(void* address, std::size_t length)
{
    for (int i = 0; i < kCommitTries; ++i) {
        if (mprotect(address, length, PROT_READ | PROT_WRITE) == 0) {
            TvMemoryTools::open(address, length);
            return address;
        }
    }
    return nullptr;
}

bool TvHeapConfigurator::tvMemoryDeCommit(void* address, std::size_t length)
{
    return mprotect(address, length, PROT_NONE) == 0;
}

bool TvHeapConfigurator::tvMemoryRelease(void* address, std::size_t length)
{
    return munmap(address, length) == 0;
}

void* TvHeapConfigurator::tvMemoryInitialize(std::size_t length)
{
    static std::int32_t PREADDRVALUE = 1; // a later call goes on where this one stops
    for (int i = 0; i < kDistinctCandidates; ++i) {
        void* const range = reserveAt(candidateAddress(PREADDRVALUE), length);
        if (range != nullptr && (reinterpret_cast<std::uintptr_t>(range) & (kPageSize - 1)) == 0)
            return range;
        PREADDRVALUE = static_cast<std::int32_t>(static_cast<std::uint32_t>(PREADDRVALUE) + 1);
    }
    return nullptr;
}

void TvHeapDbgDumper::init() {}
void TvHeapDbgDumper::uninit() {}
void TvHeapDbgDumper::dump(const void*) {}
