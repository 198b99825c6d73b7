// Every function that hands out memory, while malloc, operator new and the system's mapping calls
// fail one after the other: the answer is null or memory that may be written, what was to be
// resized stays, and the heap's books are right.
#include "EachTestAlone.h"
#include "FailMapping.h"
#include "FailNth.h"
#include "PooledHeap.h"
#include "TvCharOp.h"
#include "TvLock.h"
#include "runtime/TvHeapCheck.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <ostream>
#include <string>

namespace {

struct Node : TvHeapOp {
    char bytes[40];
};

// One request. `prepare` makes what `take` resizes, where it resizes.
struct Request {
    const char* name;
    std::size_t size; ///< bytes that may be written
    void* (*prepare)();
    void* (*take)(void* old);
    void (*give)(void* taken);
};

template<std::size_t Size>
void* prepared()
{
    void* const old = _tvMalloc(Size);
    std::memset(old, 'o', Size);
    return old;
}

void* nothing() { return nullptr; }

const Request kRequests[] = {
    {"Malloc0", 0, nothing, [](void*) { return _tvMalloc(0); }, _tvFree},
    {"MallocUnit", 20, nothing, [](void*) { return _tvMalloc(20); }, _tvFree},
    {"MallocLargestUnit", 256, nothing, [](void*) { return _tvMalloc(256); }, _tvFree},
    {"MallocUnpooled", 300, nothing, [](void*) { return _tvMalloc(300); }, _tvFree},
    {"MallocBlock", 4096, nothing, [](void*) { return _tvMalloc(4096); }, _tvFree},
    {"MallocLarge", 300000, nothing, [](void*) { return _tvMalloc(300000); }, _tvFree},
    {"Allocate", 40, nothing, [](void*) { return _tvAllocate(40); }, _tvDeallocate},
    {"ReallocOfNull", 40, nothing, [](void*) { return _tvRealloc(nullptr, 40); }, _tvFree},
    {"ReallocUnitToUnit", 100, prepared<20>, [](void* old) { return _tvRealloc(old, 100); }, _tvFree},
    {"ReallocUnitToBlock", 4096, prepared<20>, [](void* old) { return _tvRealloc(old, 4096); }, _tvFree},
    {"ReallocUnitToUnpooled", 300, prepared<20>, [](void* old) { return _tvRealloc(old, 300); }, _tvFree},
    {"ReallocUnpooledToUnit", 20, prepared<300>, [](void* old) { return _tvRealloc(old, 20); }, _tvFree},
    {"ReallocUnpooled", 9000, prepared<300>, [](void* old) { return _tvRealloc(old, 9000); }, _tvFree},
    {"Reallocate", 200, prepared<20>, [](void* old) { return _tvReallocate(old, 200); }, _tvDeallocate},
    {"Strdup", 8, nothing, [](void*) -> void* { return _tvStrdup(L"x"); }, _tvStrdupFree},
    {"Page", 1 << 20, nothing, [](void*) { return tvAllocPage(); }, tvFreePage},
    {"PageHeapOneBlock", 4096, nothing, [](void*) { return tvAllocPageHeap(4096); }, tvFreePageHeap},
    {"PageHeapUnpooled", 5000, nothing, [](void*) { return tvAllocPageHeap(5000); }, tvFreePageHeap},
    {"PageHeapTwoPages", 2 << 20, nothing, [](void*) { return tvAllocPageHeap(2 << 20); }, tvFreePageHeap},
    {"HeapUnit", 64, nothing, [](void*) { return g_tvGlobalHeap.allocHeap(64); },
     [](void* taken) { g_tvGlobalHeap.freeHeap(taken); }},
    {"HeapResize", 128, prepared<20>, [](void* old) { return g_tvGlobalHeap.reallocHeap(old, 128); },
     [](void* taken) { g_tvGlobalHeap.freeHeap(taken); }},
    {"HeapPage", 8192, nothing, [](void*) { return g_tvGlobalHeap.allocHeapPage(8192); },
     [](void* taken) { g_tvGlobalHeap.freeHeapPage(taken); }},
    {"HeapOp", sizeof(Node), nothing, [](void*) -> void* { return new Node; },
     [](void* taken) { delete static_cast<Node*>(taken); }},
    {"Zalloc", 100, nothing, [](void*) { return TvCharOp::zalloc(100); }, TvCharOp::zfree},
    {"Lock", 0, nothing, [](void*) -> void* { return createTvLock(); },
     [](void* taken) { delete static_cast<TvLock*>(taken); }},
    {"Reserve", 0, nothing,
     [](void*) {
         return TvHeapConfigurator::tvMemoryReserve(nullptr, 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS);
     },
     [](void* taken) { TvHeapConfigurator::tvMemoryRelease(taken, 4096); }},
};

void PrintTo(const Request& request, std::ostream* out) { *out << request.name; }

// A commit is tried six times before it counts as failed.
struct FailCommit : FailMapping {
    explicit FailCommit(int nth) : FailMapping(Protect, 1 + 6 * (nth - 1), 6) {}
};
struct FailMap : FailMapping {
    explicit FailMap(int nth) : FailMapping(Map, nth, 1) {}
};
struct FailMalloc : FailNth {
    explicit FailMalloc(int nth) : FailNth(Malloc, nth) {}
};
struct FailMallocOnwards : FailNth {
    explicit FailMallocOnwards(int nth) : FailNth(Malloc, nth, FromThenOn) {}
};
struct FailNew : FailNth {
    explicit FailNew(int nth) : FailNth(New, nth) {}
};

class AllocFault : public testing::TestWithParam<Request> {
protected:
    // `isFull`: a page without a free block is all there is, so that the next one needs a new page.
    template<class Failure>
    static void failEach(bool isFull)
    {
        SCOPED_TRACE(__PRETTY_FUNCTION__);
        const Request& request = GetParam();
        void* full[254] = {};
        for (void*& block : full)
            block = isFull ? _tvMalloc(4096) : nullptr;
        for (int nth = 1; nth < 100; ++nth) {
            const HeapBalance balance;
            const long units = pooledUnitsInUse();
            void* const old = request.prepare();
            const std::size_t oldSize = old != nullptr ? _tvMsize(old) : 0;
            void* taken = nullptr;
            bool fired = false;
            {
                const Failure failure(nth);
                taken = request.take(old);
                fired = failure.fired();
            }
            EXPECT_TRUE(fired || taken != nullptr);
            if (taken != nullptr) {
                if (old != nullptr) {
                    EXPECT_EQ(*static_cast<const char*>(taken), 'o') << nth;
                }
                if (request.size != 0)
                    std::memset(taken, 'n', request.size);
                request.give(taken);
            } else if (old != nullptr) {
                EXPECT_EQ(_tvMsize(old), oldSize) << nth;
                EXPECT_EQ(*static_cast<const char*>(old), 'o') << nth;
                _tvFree(old);
            }
            EXPECT_EQ(pooledUnitsInUse(), units) << nth;
            EXPECT_STREQ(TvHeapInternals::checkHeap(g_tvGlobalHeap), nullptr) << nth;
            if (!fired || HasFailure())
                break;
        }
        for (void* block : full)
            _tvFree(block);
    }

    static void failEachKind(bool isFull)
    {
        failEach<FailMalloc>(isFull);
        failEach<FailMallocOnwards>(isFull);
        failEach<FailNew>(isFull);
        failEach<FailMap>(isFull);
        failEach<FailCommit>(isFull);
    }
};

TEST_P(AllocFault, IsNullOrMemory)
{
    failEachKind(false); // while the search for pages has not come down to the reserved range
    if (!runPageSearchDown())
        GTEST_SKIP() << "no reserved range in this process";
    failEachKind(false);
    failEachKind(true);
}

INSTANTIATE_TEST_SUITE_P(Requests, AllocFault, testing::ValuesIn(kRequests),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(AllocDebugFault, TheDebugNamesAskNobody)
{
    void* const unit = _tvMalloc(20);
    bool fired = false;
    int answers = 0;
    {
        const FailNth fail(FailNth::Malloc, 1, FailNth::FromThenOn);
        answers += _tvMallocDbg(20, nullptr, 0) != nullptr;
        answers += _tvAllocateDbg(20, nullptr, 0) != nullptr;
        answers += _tvReallocDbg(unit, 40, nullptr, 0) != nullptr;
        answers += _tvReallocateDbg(unit, 40, nullptr, 0) != nullptr;
        answers += _tvMsizeDbg(unit) < 20;
        answers += _tvAllocSizeOfDbg(unit) < 20;
        _tvFreeDbg(unit, nullptr, 0);
        _tvDeallocateDbg(nullptr, nullptr, 0);
        fired = fail.fired();
    }
    EXPECT_EQ(answers, 0);
    EXPECT_FALSE(fired);
}

} // namespace
