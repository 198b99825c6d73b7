// Random traffic, read from bytes as from a program, against a plain model of who owns
// what; the checker walks the whole heap all the while.
#include "PooledHeap.h"
#include "TestScale.h"
#include "runtime/TvHeapCheck.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

namespace {

struct Piece {
    unsigned char* memory;
    std::size_t size;
    unsigned char mark;
};

class Traffic {
public:
    ~Traffic()
    {
        while (!m_pieces.empty())
            free(0, 0);
    }

    // One step; `what` chooses the operation, the others its arguments.
    void step(unsigned char what, unsigned a, unsigned b)
    {
        if (m_pieces.size() >= kMost)
            what = 255;
        if (what < 110)
            take(static_cast<unsigned char*>(_tvMalloc(smallSize(a))), smallSize(a));
        else if (what < 116)
            take(static_cast<unsigned char*>(tvAllocPageHeap(pageSize(a))), pageSize(a));
        else if (m_pieces.empty())
            return;
        else if (what < 150)
            resize(a, smallSize(b));
        else
            free(a, b);
    }

private:
    static constexpr std::size_t kMost = 3000;

    // Mostly small; now and then each size up to past a block.
    static std::size_t smallSize(unsigned x) { return (x & 0xF000) != 0 ? x % 257 : x % 5000; }
    static std::size_t pageSize(unsigned x) { return (x % 256 + 1) * 4096; }

    static void fill(const Piece& piece)
    {
        std::memset(piece.memory, piece.mark, std::min<std::size_t>(piece.size, 5000));
    }
    static void expectIntact(const Piece& piece, std::size_t size)
    {
        const std::size_t checked = std::min<std::size_t>(size, 5000);
        ASSERT_EQ(std::count(piece.memory, piece.memory + checked, piece.mark), static_cast<long>(checked));
    }

    void take(unsigned char* memory, std::size_t size)
    {
        ASSERT_NE(memory, nullptr);
        ASSERT_GE(_tvMsize(memory), size);
        m_pieces.push_back({memory, size, ++m_mark});
        fill(m_pieces.back());
    }

    void resize(unsigned which, std::size_t size)
    {
        Piece& piece = m_pieces[which % m_pieces.size()];
        auto* const moved = static_cast<unsigned char*>(_tvRealloc(piece.memory, size));
        ASSERT_NE(moved, nullptr);
        if (size == 0) {
            ASSERT_EQ(moved, piece.memory);
            return;
        }
        piece.memory = moved;
        expectIntact(piece, std::min(piece.size, size));
        piece.size = size;
        fill(piece);
    }

    void free(unsigned which, unsigned how)
    {
        std::swap(m_pieces[which % m_pieces.size()], m_pieces.back());
        const Piece piece = m_pieces.back();
        m_pieces.pop_back();
        expectIntact(piece, piece.size);
        if (how % 2 == 0)
            _tvFree(piece.memory);
        else
            tvFreePageHeap(piece.memory);
    }

    std::vector<Piece> m_pieces;
    unsigned char m_mark = 0;
};

void run(std::uint64_t seed, long steps, int bias)
{
    SCOPED_TRACE(::testing::Message() << "TV_TEST_SEED=" << seed);
    std::mt19937_64 random(seed);
    Traffic traffic;
    for (long i = 0; i < steps && !::testing::Test::HasFatalFailure(); ++i) {
        const std::uint64_t bits = random();
        // Waves: phases that mostly take and phases that mostly give.
        const int wave = ((i / 2000) % 2 == 0 ? -bias : bias);
        const int what = std::clamp(static_cast<int>(bits & 0xFF) + wave, 0, 255);
        traffic.step(static_cast<unsigned char>(what), static_cast<unsigned>(bits >> 8) & 0xFFFF,
                     static_cast<unsigned>(bits >> 24) & 0xFFFF);
        if (i % 500 == 0) {
            ASSERT_STREQ(TvHeapInternals::checkHeap(g_tvGlobalHeap), nullptr) << "step " << i;
        }
    }
}

class TvHeapTraffic : public ::testing::TestWithParam<int> {};

TEST_P(TvHeapTraffic, ListsCountsAndContentsHold)
{
    runPageSearchDown();
    const long before = pooledUnitsInUse();
    run(testSeed(0xC0FFEEu + static_cast<unsigned>(GetParam())), scaled(60000), GetParam() * 40);
    EXPECT_EQ(pooledUnitsInUse(), before);
    EXPECT_STREQ(TvHeapInternals::checkHeap(g_tvGlobalHeap), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Waves, TvHeapTraffic, ::testing::Values(0, 1, 2));

} // namespace
