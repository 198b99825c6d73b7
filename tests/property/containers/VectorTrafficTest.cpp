// Random operations on a few vectors that share elements, beside std::vector.
#include "TvVector.h"

#include "TestScale.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

template<class T>
T elementOf(unsigned int seed)
{
    return static_cast<T>(seed);
}

template<>
std::string elementOf<std::string>(unsigned int seed)
{
    return std::string(seed % 40, 'x') + std::to_string(seed);
}

// A vector and what it should be.
template<class Vector, class T>
struct Pair {
    Vector real;
    std::vector<T> model;
    int capacity = 0;
};

template<class Vector, class T, class Policy>
class Traffic {
public:
    explicit Traffic(std::uint64_t seed) : m_random(seed) {}

    void run(long steps)
    {
        for (long step = 0; step < steps && !testing::Test::HasFailure(); ++step) {
            one(m_pairs[m_random() % kPairs]);
            for (const auto& pair : m_pairs)
                compare(pair);
        }
    }

private:
    static constexpr int kPairs = 4;

    void one(Pair<Vector, T>& pair)
    {
        switch (m_random() % 12) {
        case 0:
        case 1:
        case 2:
            return append(pair, elementOf<T>(static_cast<unsigned int>(m_random())));
        case 3:
            if (!pair.model.empty())
                append(pair, T(pair.real.asArrayPtr()[m_random() % pair.model.size()]));
            return;
        case 4:
            return setLength(pair, static_cast<int>(m_random() % 100));
        case 5:
            return setLength(pair, static_cast<int>(pair.model.size() + m_random() % 20));
        case 6:
            return setCapacity(pair, static_cast<int>(m_random() % 120));
        case 7:
        case 8:
            pair = m_pairs[m_random() % kPairs];
            return;
        case 9:
            if (!pair.model.empty()) {
                const auto at = m_random() % pair.model.size();
                const T value = elementOf<T>(static_cast<unsigned int>(m_random()));
                pair.real.at(static_cast<int>(at)) = value;
                pair.model[at] = value;
            }
            return;
        case 10:
            pair.real.removeAll();
            pair.model.clear();
            return;
        default:
            if (m_random() % 8 == 0)
                pair = Pair<Vector, T>();
        }
    }

    void append(Pair<Vector, T>& pair, const T& value)
    {
        pair.real.append(value);
        pair.model.push_back(value);
        growTo(pair, static_cast<int>(pair.model.size()));
    }

    void setLength(Pair<Vector, T>& pair, int length)
    {
        const int old = static_cast<int>(pair.model.size());
        growTo(pair, length);
        pair.real.setLogicalLength(length);
        pair.model.resize(static_cast<std::size_t>(length));
        if (length == old)
            return;                          // may still be shared
        for (int i = old; i < length; ++i) { // new elements have no value
            pair.real.asArrayPtr()[i] = elementOf<T>(static_cast<unsigned int>(i));
            pair.model[static_cast<std::size_t>(i)] = elementOf<T>(static_cast<unsigned int>(i));
        }
    }

    void setCapacity(Pair<Vector, T>& pair, int capacity)
    {
        pair.real.setPhysicalLength(capacity);
        pair.capacity = capacity;
        if (capacity < static_cast<int>(pair.model.size()))
            pair.model.resize(static_cast<std::size_t>(capacity));
    }

    // The reported capacity follows the grow policy alone.
    void growTo(Pair<Vector, T>& pair, int length)
    {
        if (length <= pair.capacity)
            return;
        const int logical = pair.real.length() == length ? length - 1 : pair.real.length();
        pair.capacity = static_cast<int>(Policy().growCount(static_cast<unsigned int>(logical),
                                                            static_cast<unsigned int>(pair.capacity),
                                                            static_cast<unsigned int>(length)));
    }

    void compare(const Pair<Vector, T>& pair)
    {
        ASSERT_EQ(TvDetail::VectorCheck::faultOf(pair.real), nullptr);
        ASSERT_EQ(pair.real.length(), static_cast<int>(pair.model.size()));
        ASSERT_EQ(pair.real.physicalLength(), pair.capacity);
        ASSERT_TRUE(std::equal(pair.model.begin(), pair.model.end(), pair.real.begin(), pair.real.end()));
    }

    Pair<Vector, T> m_pairs[kPairs];
    std::mt19937_64 m_random;
};

template<class Vector, class T, class Policy = TvVectorDefaultGrowPolicy>
void runTraffic()
{
    const std::uint64_t seed = testSeed(20260121);
    SCOPED_TRACE("TV_TEST_SEED=" + std::to_string(seed));
    const int before = gEmptyVectorData.refCount;
    {
        Traffic<Vector, T, Policy> traffic(seed);
        traffic.run(scaled(100000));
    }
    EXPECT_EQ(gEmptyVectorData.refCount, before);
}

TEST(VectorTraffic, IntsAgreeWithTheModel) { runTraffic<TvVector<int>, int>(); }

TEST(VectorTraffic, WideCharactersAgreeWithTheModel) { runTraffic<TvVector<wchar_t>, wchar_t>(); }

TEST(VectorTraffic, StringsAgreeWithTheModel) { runTraffic<TvVector<std::string>, std::string>(); }

TEST(VectorTraffic, StringsInRawMemoryAgreeWithTheModel)
{
    runTraffic<TvVector<std::string, TvDelegateMemAllocator<std::string>>, std::string>();
}

TEST(VectorTraffic, BytesOfStreamsAgreeWithTheModel)
{
    runTraffic<
        TvVector<unsigned char, TvDelegateMemAllocator<unsigned char>, int, TvVectorFlatMemBufGrowPolicy>,
        unsigned char, TvVectorFlatMemBufGrowPolicy>();
}

} // namespace
