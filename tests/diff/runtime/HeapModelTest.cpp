// The pooled heap against a model of plain containers, from the first request of the process on:
// every address that is handed out, every list and every count.
#include "HeapModel.h"
#include "CaseName.h"
#include "EachTestAlone.h"
#include "TestScale.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <random>
#include <vector>

namespace {

enum class Order { Random, LastFirst, FirstFirst };

struct Traffic {
    const char* name;
    std::size_t most;     // bytes of a small request
    unsigned pagesIn1000; // requests for whole multiples of 4096
    std::size_t living;   // pieces at the top of a wave
    Order order;
};

const Traffic kTraffic[] = {
    {"SmallSizes", 256, 0, 4000, Order::Random},
    {"SizesPastABlock", 4200, 20, 2500, Order::Random},
    {"Pages", 512, 500, 400, Order::Random},
    {"LastTakenFirstGiven", 600, 5, 5000, Order::LastFirst},
    {"FirstTakenFirstGiven", 600, 5, 3000, Order::FirstFirst},
};

struct HeapModelTest : testing::TestWithParam<Traffic> {
    struct Piece {
        void* memory;
        HeapModel::Offset offset;
        bool isPage;
    };

    // False when the heap hands out something else than the model.
    bool take(std::size_t size, bool isPage)
    {
        void* const memory = isPage ? tvAllocPageHeap(size) : _tvMalloc(size);
        const HeapModel::Offset offset = isPage ? m_model.takePage(size) : m_model.take(size);
        m_pieces.push_back({memory, offset, isPage});
        return offset == 0 ? !g_tvGlobalHeap.isResident(memory)
                           : memory == static_cast<char*>(TvHeapConfigurator::pStartAddress) + offset;
    }

    void give(std::size_t which)
    {
        const Piece piece = m_pieces[which];
        m_pieces.erase(m_pieces.begin() + static_cast<std::ptrdiff_t>(which));
        if (piece.offset != 0)
            piece.isPage ? m_model.givePage(piece.offset) : m_model.give(piece.offset);
        _tvFree(piece.memory);
    }

    HeapModel m_model;
    std::vector<Piece> m_pieces;
};

TEST_P(HeapModelTest, HandsOutTheSameUnitsAndKeepsTheSameLists)
{
    if (TvHeapConfigurator::pStartAddress == nullptr)
        GTEST_SKIP() << "no reserved range in this process";
    const Traffic& traffic = GetParam();
    const std::uint64_t seed = testSeed(20260917);
    SCOPED_TRACE(testing::Message() << "TV_TEST_SEED=" << seed);
    std::mt19937_64 random(seed);
    const auto below = [&](std::size_t limit) { return static_cast<std::size_t>(random() % limit); };

    for (int i = 0; i < 8193; ++i) { // ids beyond the reservation
        ASSERT_TRUE(take(4096, i % 2 == 0));
        give(0);
    }
    bool rising = true;
    for (long i = scaled(20000); i > 0; --i) {
        rising = m_pieces.empty() || (rising && m_pieces.size() < traffic.living);
        if (below(8) != 0 ? rising : m_pieces.empty()) {
            const bool isPage = below(1000) < traffic.pagesIn1000;
            const std::size_t size =
                isPage ? (1 + below(below(4) != 0 ? 40 : 257)) * 4096 : below(traffic.most + 1);
            ASSERT_TRUE(take(size, isPage)) << size << " bytes, " << i << " steps before the end";
        } else {
            const std::size_t last = m_pieces.size() - 1;
            const std::size_t near = std::min<std::size_t>(last, below(4));
            give(traffic.order == Order::Random      ? below(last + 1)
                 : traffic.order == Order::LastFirst ? last - near
                                                     : near);
        }
        if (i % 500 == 0) {
            ASSERT_STREQ(m_model.difference(g_tvGlobalHeap), nullptr) << i << " steps before the end";
        }
    }
    while (!m_pieces.empty())
        give(m_pieces.size() - 1);
    EXPECT_STREQ(m_model.difference(g_tvGlobalHeap), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Heap, HeapModelTest, testing::ValuesIn(kTraffic), nameOfCase<Traffic>);

} // namespace
