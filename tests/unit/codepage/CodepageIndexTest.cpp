// The index of a mapper against its tables and against the searches.
#include "codepage/CodepageIndex.h"

#include "MapperText.h"

#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <memory>
#include <random>
#include <thread>
#include <vector>

using namespace TvDetail;

namespace {

// A mapper of its own with tables made for the test.
std::unique_ptr<EkCodepageMapper> makeMapper(const unsigned short* bytes,
                                             const std::vector<EkCpUnicodePair>& pairs,
                                             std::vector<EkLeaderBytes> leads = {{0x81, 0xFE}})
{
    auto mapper = std::make_unique<EkCodepageMapper>(CP_ANSI_936, L"made", 936u);
    mapper->m_pSingleByteTable = bytes;
    mapper->m_bLoaded = 1;
    for (const EkLeaderBytes& range : leads)
        mapper->m_leadBytes.append(range);
    for (const EkCpUnicodePair& pair : pairs)
        mapper->m_pairs.append(pair);
    return mapper;
}

const unsigned short* noBytes()
{
    static const unsigned short table[128] = {};
    return table;
}

class EveryPage : public testing::TestWithParam<int> {
protected:
    void SetUp() override
    {
        ASSERT_EQ(TvCharMapper::initialize(shippedMapFile()), Orna::eOk);
        toWide(static_cast<code_page_id>(GetParam()), "\xFF"); // loads the table
    }
    void TearDown() override { TvCharMapper::unInitialize(); }

    const EkCodepageMapper& mapper() const
    {
        return *theTvCodePages()->findMapperByAcadCp(static_cast<code_page_id>(GetParam()));
    }
};

TEST_P(EveryPage, EncodesToTheFirstCodeOfTheTables)
{
    std::map<unsigned, int> first;
    for (int i = 0; i < 128; ++i)
        first.emplace(mapper().m_pSingleByteTable[i], 0x80 + i);
    for (int i = 0; i < mapper().m_pairs.length(); ++i)
        first.emplace(mapper().m_pairs.asArrayPtr()[i].unicode, mapper().m_pairs.asArrayPtr()[i].code);
    const CodepageIndex* index = codepageIndex(mapper());
    ASSERT_NE(index, nullptr);
    const CodepageView view = CodepageView::of(&mapper());
    for (unsigned wc = 0x80; wc < 0x10000; ++wc) {
        const auto found = first.find(wc);
        ASSERT_EQ(index->encode(wc, view), found == first.end() ? -1 : found->second) << wc;
    }
    EXPECT_EQ(index->encode(0x10080, view), -1);
    EXPECT_EQ(index->encode(0xFFFFFFFFu, view), -1);
}

TEST_P(EveryPage, DecodesWhatTheTablesHold)
{
    std::map<unsigned, int> characters;
    for (int i = 0; i < mapper().m_pairs.length(); ++i)
        characters[mapper().m_pairs.asArrayPtr()[i].code] = mapper().m_pairs.asArrayPtr()[i].unicode;
    const CodepageIndex* index = codepageIndex(mapper());
    ASSERT_NE(index, nullptr);
    const CodepageView view = CodepageView::of(&mapper());
    for (unsigned code = 0; code < 0x10010; ++code) {
        const auto found = characters.find(code);
        const int expected = code < 0x80                 ? static_cast<int>(code)
                             : code < 0x100              ? mapper().m_pSingleByteTable[code - 0x80]
                             : found == characters.end() ? -1
                                                         : found->second;
        ASSERT_EQ(index->decode(code, view), expected) << code;
        ASSERT_EQ(view.decode(code), expected) << code;
    }
}

TEST_P(EveryPage, TheSearchAgreesWithTheIndex)
{
    const CodepageIndex* index = codepageIndex(mapper());
    ASSERT_NE(index, nullptr);
    const CodepageView view = CodepageView::of(&mapper());
    std::mt19937 random(3);
    for (int round = 0; round < 1000; ++round) {
        const unsigned wc = 0x80 + random() % 0xFF90;
        ASSERT_EQ(index->encode(wc, view), view.encode(wc)) << wc;
    }
}

TEST_P(EveryPage, IsMadeOnce)
{
    const CodepageIndex* index = codepageIndex(mapper());
    EXPECT_EQ(codepageIndex(mapper()), index);
}

INSTANTIATE_TEST_SUITE_P(Ids, EveryPage, testing::Range(0, 45));

TEST(CodepageIndex, IsMadeAnewWhenTheTablesChange)
{
    const auto mapper = makeMapper(noBytes(), {{0x4E00, 0x8140}});
    const CodepageIndex* index = codepageIndex(*mapper);
    ASSERT_NE(index, nullptr);
    EXPECT_EQ(index->encode(0x4E01, CodepageView::of(mapper.get())), -1);
    mapper->m_pairs.append({0x4E01, 0x8141});
    index = codepageIndex(*mapper);
    ASSERT_NE(index, nullptr);
    EXPECT_EQ(index->encode(0x4E01, CodepageView::of(mapper.get())), 0x8141);
    unsigned short bytes[128] = {};
    bytes[5] = 0x4E01;
    mapper->m_pSingleByteTable = bytes;
    index = codepageIndex(*mapper);
    ASSERT_NE(index, nullptr);
    EXPECT_EQ(index->encode(0x4E01, CodepageView::of(mapper.get())), 0x85);
}

TEST(CodepageIndex, TheLowestByteAndThenTheFirstPairWin)
{
    unsigned short bytes[128] = {};
    bytes[9] = bytes[4] = 0x100;
    const auto mapper = makeMapper(bytes, {{0x100, 0x8140}, {0x200, 0x8141}, {0x200, 0x8142}});
    const CodepageIndex* index = codepageIndex(*mapper);
    ASSERT_NE(index, nullptr);
    const CodepageView view = CodepageView::of(mapper.get());
    EXPECT_EQ(index->encode(0x100, view), 0x84);
    EXPECT_EQ(index->encode(0x200, view), 0x8141);
    EXPECT_EQ(view.encode(0x100), 0x84);
    EXPECT_EQ(view.encode(0x200), 0x8141);
}

TEST(CodepageIndex, TheCodeZeroIsFoundLikeAnyOther)
{
    const auto mapper = makeMapper(noBytes(), {{0x300, 0x0000}, {0x301, 0x8140}});
    const CodepageIndex* index = codepageIndex(*mapper);
    ASSERT_NE(index, nullptr);
    const CodepageView view = CodepageView::of(mapper.get());
    EXPECT_EQ(index->encode(0x300, view), 0);
    EXPECT_EQ(index->encode(0x301, view), 0x8140);
    EXPECT_EQ(index->encode(0x302, view), -1);
}

TEST(CodepageIndex, ZeroAndQuestionMarkInATableAreDecodedAsTheyStand)
{
    const auto mapper = makeMapper(noBytes(), {{0, 0x8140}, {'?', 0x8141}});
    const CodepageIndex* index = codepageIndex(*mapper);
    ASSERT_NE(index, nullptr);
    const CodepageView view = CodepageView::of(mapper.get());
    EXPECT_EQ(index->decode(0x8140, view), 0);
    EXPECT_EQ(index->decode(0x8141, view), '?');
    EXPECT_EQ(index->tables.decode[0x8140], 0); // texts do not emit them
    EXPECT_EQ(index->tables.decode[0x8141], 0);
}

TEST(CodepageIndex, PairsOutOfOrderAreFoundAsTheSearchFindsThem)
{
    std::mt19937 random(9);
    std::vector<EkCpUnicodePair> pairs;
    for (int i = 0; i < 200; ++i)
        pairs.push_back({static_cast<unsigned short>(0x3000 + random() % 300),
                         static_cast<unsigned short>(0x8100 + random() % 300)});
    const auto mapper = makeMapper(noBytes(), pairs);
    const CodepageIndex* index = codepageIndex(*mapper);
    ASSERT_NE(index, nullptr);
    const CodepageView view = CodepageView::of(mapper.get());
    for (unsigned code = 0x8100; code < 0x8100 + 300; ++code)
        EXPECT_EQ(index->decode(code, view), view.decode(code)) << code;
    for (unsigned wc = 0x3000; wc < 0x3000 + 300; ++wc)
        EXPECT_EQ(index->encode(wc, view), view.encode(wc)) << wc;
}

TEST(CodepageIndex, OfEqualCodesTheFirstPairIsDecoded)
{
    const auto mapper = makeMapper(noBytes(), {{0x3001, 0x8140}, {0x3002, 0x8141}, {0x3003, 0x8141}});
    const CodepageIndex* index = codepageIndex(*mapper);
    ASSERT_NE(index, nullptr);
    EXPECT_EQ(index->decode(0x8140, CodepageView::of(mapper.get())), 0x3001);
    EXPECT_EQ(index->decode(0x8141, CodepageView::of(mapper.get())), 0x3002);
}

// A memory checker sees that those who come too late drop theirs.
TEST(CodepageIndex, ThreadsThatMakeItAtOnceGetTheSameOne)
{
    constexpr std::size_t kThreads = 4;
    for (int round = 0; round < 50; ++round) {
        const auto mapper = makeMapper(noBytes(), {{0x4E00, 0x8140}});
        std::atomic<std::size_t> ready = 0;
        const CodepageIndex* made[kThreads] = {};
        std::vector<std::thread> threads;
        for (const CodepageIndex*& own : made) {
            threads.emplace_back([&] {
                ++ready;
                while (ready != kThreads) // all begin together
                    std::this_thread::yield();
                own = codepageIndex(*mapper);
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        ASSERT_NE(made[0], nullptr);
        for (const CodepageIndex* own : made)
            ASSERT_EQ(own, made[0]);
        ASSERT_EQ(codepageIndex(*mapper), made[0]);
        ASSERT_EQ(made[0]->decode(0x8140, CodepageView::of(mapper.get())), 0x4E00);
    }
}

TEST(CodepageIndex, ALateTableIsLeftOutUntilItIsLoaded)
{
    const auto mapper = makeMapper(noBytes(), {{0x4E00, 0x8140}});
    mapper->m_bLoaded = 0;
    const CodepageView view = CodepageView::of(mapper.get());
    EXPECT_EQ(view.pairCount, 0);
    EXPECT_EQ(view.decode(0x8140), -1);
}

} // namespace
