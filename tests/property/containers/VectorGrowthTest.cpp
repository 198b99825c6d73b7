// Large vectors of numbers, whose arrays grow where they lie, beside vectors of records of one
// number, whose elements are moved to larger arrays.
#include "TestScale.h"
#include "TvVector.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>

namespace {

struct Record {
    int value;
};

using Numbers = TvVector<int>;
using Records = TvVector<Record>;

// One vector of each kind, changed alike.
struct Twins {
    Numbers numbers;
    Records records;

    void append(int value)
    {
        numbers.append(value);
        records.append(Record{value});
    }
    void setLength(int length)
    {
        const int old = numbers.length();
        numbers.setLogicalLength(length);
        records.setLogicalLength(length);
        for (int i = old; i < length; ++i) { // new elements have no value
            numbers.asArrayPtr()[i] = i;
            records.asArrayPtr()[i] = Record{i};
        }
    }
    void setCapacity(int capacity)
    {
        numbers.setPhysicalLength(capacity);
        records.setPhysicalLength(capacity);
    }

    const char* difference() const
    {
        if (const char* const fault = TvDetail::VectorCheck::faultOf(numbers))
            return fault;
        if (numbers.length() != records.length())
            return "length";
        if (numbers.physicalLength() != records.physicalLength())
            return "capacity";
        if (TvDetail::VectorCheck::roomOf(numbers) != TvDetail::VectorCheck::roomOf(records))
            return "hidden room";
        for (int i = 0; i < numbers.length(); ++i)
            if (numbers.asArrayPtr()[i] != records.asArrayPtr()[i].value)
                return "elements";
        return nullptr;
    }
};

TEST(VectorGrowth, InPlaceAgreesWithMoving)
{
    const std::uint64_t seed = testSeed(20260122);
    SCOPED_TRACE("TV_TEST_SEED=" + std::to_string(seed));
    std::mt19937_64 random(seed);
    const auto below = [&random](int n) { return static_cast<int>(random() % static_cast<unsigned int>(n)); };
    Twins twins[3];
    const long steps = scaled(1000);
    for (long step = 0; step < steps; ++step) {
        Twins& one = twins[below(3)];
        const int length = one.numbers.length();
        switch (below(6)) {
        case 0:
        case 1:
            for (int i = below(length < 100000 ? 20000 : 1); i > 0; --i)
                one.append(below(1 << 30));
            break;
        case 2:
            one.setLength(below(40000));
            break;
        case 3:
            one.setCapacity(length + below(length + 1));
            break;
        case 4:
            one = twins[below(3)];
            break;
        default:
            one.setCapacity(below(2 * length + 1));
        }
        ASSERT_STREQ(one.difference(), nullptr) << "in step " << step;
    }
}

} // namespace
