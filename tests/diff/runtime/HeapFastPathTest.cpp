// The entry points' fast path against the heap's plain operations: the same requests, each
// way in a process of its own, must give the same addresses and leave the same records.
#include "PooledHeap.h"
#include "TestScale.h"
#include "runtime/TvHeapCheck.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

namespace {

void* takePlain(std::size_t size) { return g_tvGlobalHeap.allocHeap(size); }
void givePlain(void* ptr) { g_tvGlobalHeap.freeHeap(ptr); }

struct Case {
    const char* name;
    std::size_t most;   // bytes a request
    std::size_t living; // objects at a time
    long steps;
};

const Case kCases[] = {
    {"OneSize", 8, 2000, 80000},
    {"FewObjects", 256, 20, 10000}, // every other step opens a block or gives one back
    {"SmallSizes", 256, 3000, 80000},
    {"ManyObjects", 64, 100000, 80000},
    {"SizesPastABlock", 4200, 600, 80000},
};

class Trace {
public:
    void add(std::uint64_t value) { m_hash = (m_hash ^ value) * 0x100000001B3u; }
    void add(const void* ptr)
    {
        add(g_tvGlobalHeap.isResident(ptr) ? reinterpret_cast<std::uintptr_t>(ptr) : 0);
    }
    std::uint64_t value() const { return m_hash; }

private:
    std::uint64_t m_hash = 0xCBF29CE484222325u;
};

// The descriptors of every page in use, links through units apart.
void addRecords(Trace& trace)
{
    for (int id = 1; id < 8192; ++id) {
        void* const page = TvHeapConfigurator::sGetPageAddress(static_cast<short>(id));
        if (TvHeapInternals::kindOf(page) != TvHeapInternals::PageKind::Blocks)
            continue;
        const auto* const blocks = static_cast<const GlobalHeap::Block*>(page);
        for (int i = 2; i < 256; ++i) {
            if (blocks[i].poolIndex == 0)
                continue;
            trace.add(static_cast<std::uint64_t>(blocks[i].poolIndex));
            trace.add(static_cast<std::uint64_t>(blocks[i].freeCount));
            trace.add(static_cast<std::uint64_t>(blocks[i].flags));
            trace.add(reinterpret_cast<std::uintptr_t>(blocks[i].freeUnit));
            trace.add(reinterpret_cast<std::uintptr_t>(blocks[i].next));
            trace.add(reinterpret_cast<std::uintptr_t>(blocks[i].prev));
        }
    }
}

std::uint64_t traffic(const Case& c, std::uint64_t seed, void* (*take)(std::size_t), void (*give)(void*))
{
    std::mt19937_64 random(seed);
    std::vector<void*> objects(c.living);
    Trace trace;
    const long steps = scaled(c.steps);
    for (long i = 0; i < steps; ++i) {
        void*& object = objects[random() % c.living];
        if (object != nullptr) {
            give(object);
            object = nullptr;
            if (random() % 4 != 0)
                continue;
        }
        object = take(random() % (c.most + 1));
        trace.add(object);
        if (i % 10000 == 0)
            addRecords(trace);
    }
    addRecords(trace);
    for (void* object : objects)
        give(object);
    addRecords(trace);
    if (TvHeapInternals::checkHeap(g_tvGlobalHeap) != nullptr)
        trace.add(1);
    return trace.value();
}

std::uint64_t inOwnProcess(const Case& c, std::uint64_t seed, void* (*take)(std::size_t), void (*give)(void*))
{
    int ends[2];
    if (pipe(ends) != 0)
        return 0;
    const pid_t child = fork();
    if (child == 0) {
        const std::uint64_t result = traffic(c, seed, take, give);
        _exit(write(ends[1], &result, sizeof result) == sizeof result ? 0 : 1);
    }
    close(ends[1]);
    std::uint64_t result = 0;
    const bool whole = read(ends[0], &result, sizeof result) == sizeof result;
    close(ends[0]);
    int status = 1;
    waitpid(child, &status, 0);
    EXPECT_TRUE(whole && status == 0);
    return result;
}

class HeapFastPath : public ::testing::TestWithParam<Case> {};

TEST_P(HeapFastPath, GivesTheAddressesAndRecordsOfThePlainWay)
{
    if (!runPageSearchDown())
        GTEST_SKIP() << "no reserved range in this process";
    const std::uint64_t seed = testSeed(0x5EED);
    EXPECT_EQ(inOwnProcess(GetParam(), seed, _tvMalloc, _tvFree),
              inOwnProcess(GetParam(), seed, takePlain, givePlain));
    EXPECT_EQ(inOwnProcess(GetParam(), seed, _tvAllocate, _tvDeallocate),
              inOwnProcess(GetParam(), seed, takePlain, givePlain));
}

INSTANTIATE_TEST_SUITE_P(Traffic, HeapFastPath, ::testing::ValuesIn(kCases),
                         [](const auto& test) { return test.param.name; });

} // namespace
