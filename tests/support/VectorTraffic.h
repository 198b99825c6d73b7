// VectorTraffic.h - operations on a few vectors that share elements, chosen by numbers from
// outside, beside std::vector.
#ifndef TV_TEST_VECTOR_TRAFFIC_H
#define TV_TEST_VECTOR_TRAFFIC_H

#include "TvVector.h"

#include <algorithm>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

template<class Vector, class T, class Policy = TvVectorDefaultGrowPolicy>
class VectorTraffic {
public:
    /// `choose(n)` answers a number below `n`.
    explicit VectorTraffic(std::function<unsigned int(unsigned int)> choose) : m_choose(std::move(choose)) {}

    /// Makes one step; what went wrong, or null.
    const char* step()
    {
        one(m_pairs[m_choose(kPairs)]);
        for (const Pair& pair : m_pairs)
            if (const char* const difference = differenceIn(pair))
                return difference;
        return nullptr;
    }

private:
    static constexpr int kPairs = 4;

    // A vector and what it should be.
    struct Pair {
        Vector real;
        std::vector<T> model;
        int capacity = 0;
    };

    static T elementOf(unsigned int seed)
    {
        if constexpr (std::is_same_v<T, std::string>)
            return std::string(seed % 40, 'x') + std::to_string(seed);
        else
            return static_cast<T>(seed);
    }

    static int sizeOf(const Pair& pair) { return static_cast<int>(pair.model.size()); }
    T anyElement() { return elementOf(m_choose(0x10000)); }
    int below(int limit) { return static_cast<int>(m_choose(static_cast<unsigned int>(limit))); }

    void one(Pair& pair)
    {
        switch (m_choose(14)) {
        case 0:
        case 1:
        case 2:
            return append(pair, anyElement());
        case 3: // an element of its own
            if (!pair.model.empty())
                append(pair, pair.real.asArrayPtr()[below(sizeOf(pair))]);
            return;
        case 4:
            return setLength(pair, below(100));
        case 5:
            return setLength(pair, sizeOf(pair) + below(20));
        case 6:
            return setCapacity(pair, below(120));
        case 7:
        case 8:
            pair = m_pairs[m_choose(kPairs)];
            return;
        case 9:
            if (!pair.model.empty()) {
                const int at = below(sizeOf(pair));
                const T value = anyElement();
                pair.real.at(at) = value;
                pair.model[static_cast<std::size_t>(at)] = value;
            }
            return;
        case 10:
            pair.real.removeAll();
            pair.model.clear();
            return;
        case 11: { // kept alive by a copy alone
            const Vector copy(pair.real);
            pair.real.removeAll();
            pair.real = copy;
            return;
        }
        case 12:
            if (sizeOf(pair) < 1000) // by the larger steps of the policies
                setLength(pair, sizeOf(pair) + below(400));
            return;
        default:
            if (m_choose(8) == 0)
                pair = Pair();
        }
    }

    void append(Pair& pair, const T& value)
    {
        pair.model.push_back(value);
        pair.real.append(value);
        growTo(pair, sizeOf(pair));
    }

    void setLength(Pair& pair, int length)
    {
        const int old = sizeOf(pair);
        growTo(pair, length);
        pair.real.setLogicalLength(length);
        pair.model.resize(static_cast<std::size_t>(length));
        if (length == old)
            return;                          // may still be shared
        for (int i = old; i < length; ++i) { // new elements have no value
            pair.real.asArrayPtr()[i] = elementOf(static_cast<unsigned int>(i));
            pair.model[static_cast<std::size_t>(i)] = elementOf(static_cast<unsigned int>(i));
        }
    }

    void setCapacity(Pair& pair, int capacity)
    {
        pair.real.setPhysicalLength(capacity);
        pair.capacity = capacity;
        if (capacity < sizeOf(pair))
            pair.model.resize(static_cast<std::size_t>(capacity));
    }

    // The reported capacity follows the grow policy alone.
    void growTo(Pair& pair, int length)
    {
        if (length <= pair.capacity)
            return;
        const int logical = pair.real.length() == length ? length - 1 : pair.real.length();
        pair.capacity = static_cast<int>(Policy().growCount(static_cast<unsigned int>(logical),
                                                            static_cast<unsigned int>(pair.capacity),
                                                            static_cast<unsigned int>(length)));
    }

    static const char* differenceIn(const Pair& pair)
    {
        if (const char* const fault = TvDetail::VectorCheck::faultOf(pair.real))
            return fault;
        if (pair.real.length() != sizeOf(pair))
            return "length";
        if (pair.real.physicalLength() != pair.capacity)
            return "capacity";
        return std::equal(pair.model.begin(), pair.model.end(), pair.real.begin(), pair.real.end())
                   ? nullptr
                   : "elements";
    }

    std::function<unsigned int(unsigned int)> m_choose;
    Pair m_pairs[kPairs];
};

#endif
