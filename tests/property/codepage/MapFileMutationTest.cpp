// Whatever happens to the bytes of a map file, reading it gives an answer in bounded time
// and leaves each mapper either loaded with an ascending table or as it was.
#include "TvCodePages.h"

#include "MapBytes.h"
#include "PlainStream.h"
#include "TestScale.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

namespace {

// Small enough for many rounds, with a table for each of the four mappers.
std::string smallMap()
{
    MapBytes map;
    for (int id = 38; id <= 41; ++id) {
        std::vector<CodeUnit> pairs;
        for (unsigned i = 0; i < 20; ++i)
            pairs.emplace_back(0x8140 + 3 * i, 0x4E00 + i);
        map.setOffset(id, map.append(tableBytes(pairs)));
    }
    return map.bytes();
}

class Mutator {
public:
    explicit Mutator(std::uint64_t seed) : m_random(seed) {}

    std::string mutate(std::string bytes)
    {
        for (int changes = 1 + below(4); changes > 0; --changes)
            change(bytes);
        return bytes;
    }

private:
    int below(std::size_t bound) { return static_cast<int>(m_random() % (bound ? bound : 1)); }

    void change(std::string& bytes)
    {
        if (bytes.empty())
            return;
        const auto at = static_cast<std::size_t>(below(bytes.size()));
        switch (below(5)) {
        case 0:
            bytes.resize(at);
            break;
        case 1:
            bytes[at] = static_cast<char>(bytes[at] ^ 1 << below(8));
            break;
        case 2:
            bytes[at] = static_cast<char>(below(2) ? 0xFF : 0x00);
            break;
        case 3:
            bytes.erase(at, 1);
            break;
        default:
            bytes.insert(at, 1, static_cast<char>(below(256)));
            break;
        }
    }

    std::mt19937_64 m_random;
};

void expectAscending(const EkCodepageMapper& mapper)
{
    const EkCpUnicodePair* const pairs = mapper.m_pairs.asArrayPtr();
    for (int i = 1; i < mapper.m_pairs.length(); ++i)
        ASSERT_LT(pairs[i - 1].code, pairs[i].code);
}

void readAll(const std::string& file)
{
    EkCodepages pages;
    pages.init();
    const std::size_t nul = file.find('\0');
    PlainStream stream(file, nul == std::string::npos ? file.size() : nul + 1);
    pages.init(&stream);
    for (int id = 38; id <= 41; ++id) {
        EkCodepageMapper& mapper = *pages.findMapperByAcadCp(static_cast<code_page_id>(id));
        const Orna::ErrorStatus status = mapper.verifyLoaded(&stream);
        ASSERT_TRUE(status == Orna::eOk || status == Orna::eInvalidInput);
        ASSERT_EQ(mapper.m_bLoaded, status == Orna::eOk ? 1 : 0);
        if (status != Orna::eOk) {
            ASSERT_EQ(mapper.m_pairs.length(), 0);
        }
        expectAscending(mapper);
    }
}

TEST(MapFileMutation, EveryMutationIsAnswered)
{
    const std::uint64_t seed = testSeed(20240611);
    SCOPED_TRACE("TV_TEST_SEED=" + std::to_string(seed));
    Mutator mutator(seed);
    const std::string file = smallMap();
    for (long round = scaled(20000); round > 0; --round) {
        readAll(mutator.mutate(file));
        if (HasFatalFailure())
            return;
    }
}

TEST(MapFileMutation, EveryMutationOfTheShippedFileIsAnswered)
{
    const std::uint64_t seed = testSeed(77);
    SCOPED_TRACE("TV_TEST_SEED=" + std::to_string(seed));
    Mutator mutator(seed);
    const std::string file = shippedMapBytes();
    for (long round = scaled(200); round > 0; --round) {
        readAll(mutator.mutate(file));
        if (HasFatalFailure())
            return;
    }
}

TEST(MapFileMutation, EveryTruncationIsAnswered)
{
    const std::string file = smallMap();
    for (std::size_t length = 0; length <= file.size(); ++length) {
        readAll(file.substr(0, length));
        if (HasFatalFailure())
            return;
    }
}

} // namespace
