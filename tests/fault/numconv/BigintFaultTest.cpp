// The big-integer toolkit, block by block without memory: the answer is null or right, what was
// taken over is released, and what was lent stays.
#include "FailNth.h"

#include "TvGdImpl.h"
#include "TvNumber.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace {

// A number that takes several blocks to make: 7^40 times 2^100.
Bigint* large()
{
    Bigint* b = TvGdImpl::i2b(7);
    for (int i = 1; i < 40; ++i)
        b = TvGdImpl::multadd(b, 7, 0);
    return TvGdImpl::lshift(b, 100);
}

// An operation on two numbers. `takesOver` says that the first is gone afterwards.
struct Operation {
    const char* name;
    bool takesOver;
    Bigint* (*run)(Bigint* a, Bigint* b);
};

const Operation kOperations[] = {
    {"Balloc", false, [](Bigint*, Bigint*) { return TvGdImpl::Balloc(3); }},
    {"I2b", false, [](Bigint*, Bigint*) { return TvGdImpl::i2b(12345); }},
    {"Multadd", true,
     [](Bigint* a, Bigint*) {
         for (int i = 0; i < 12; ++i) // until its block is full
             a = TvGdImpl::multadd(a, 0x7FFFFFFF, 5);
         return a;
     }},
    {"Mult", false, [](Bigint* a, Bigint* b) { return TvGdImpl::mult(a, b); }},
    {"Pow5mult", true, [](Bigint* a, Bigint*) { return TvGdImpl::pow5mult(a, 1023); }},
    {"Lshift", true, [](Bigint* a, Bigint*) { return TvGdImpl::lshift(a, 777); }},
    {"Diff", false, [](Bigint* a, Bigint* b) { return TvGdImpl::diff(a, b); }},
    {"D2b", false,
     [](Bigint*, Bigint*) {
         int e, bits;
         return TvGdImpl::d2b(1.0 / 3, &e, &bits);
     }},
    {"S2b", false,
     [](Bigint*, Bigint*) {
         return TvGdImpl::s2b("12345678901.2345678901234567890123456789", 11, 39, 123456789);
     }},
    {"WideS2b", false,
     [](Bigint*, Bigint*) {
         return TvGdImpl::s2b(L"12345678901.2345678901234567890123456789", 11, 39, 123456789);
     }},
};

void PrintTo(const Operation& operation, std::ostream* out) { *out << operation.name; }

std::vector<unsigned> wordsOf(const Bigint* b)
{
    return b != nullptr ? std::vector<unsigned>(b->x, b->x + b->wds) : std::vector<unsigned>();
}

class BigintFault : public testing::TestWithParam<Operation> {
protected:
    // The pool is used up first, so that every block comes from the heap.
    void SetUp() override
    {
        const auto* object = reinterpret_cast<const char*>(&tvFCvtAllocator());
        for (int k = 7; k >= 0;) {
            Bigint* const b = tvFCvtAllocator().Alloc(k);
            const auto* at = reinterpret_cast<const char*>(b);
            m_blocks.push_back(b);
            if (at < object || at >= object + sizeof(TvFCvtAllocator))
                --k;
        }
    }
    void TearDown() override
    {
        for (Bigint* b : m_blocks)
            tvFCvtAllocator().Free(b);
    }

private:
    std::vector<Bigint*> m_blocks;
};

TEST_P(BigintFault, IsNullOrRight)
{
    const Operation& operation = GetParam();
    std::vector<unsigned> right;
    std::vector<unsigned> before;
    right.reserve(1000);
    before.reserve(1000);
    for (int nth = 0; nth < 100; ++nth) {
        const HeapBalance balance;
        Bigint* const a = large();
        Bigint* const b = TvGdImpl::i2b(31);
        before.assign(a->x, a->x + a->wds);
        Bigint* result = nullptr;
        bool fired = false;
        {
            const FailNth fail(nth != 0 ? FailNth::Malloc : FailNth::None, nth);
            result = operation.run(a, b);
            fired = fail.fired();
        }
        if (nth == 0)
            right.assign(result->x, result->x + result->wds);
        EXPECT_EQ(result == nullptr, fired) << nth;
        if (result != nullptr) {
            EXPECT_EQ(wordsOf(result).size(), right.size()) << nth;
            EXPECT_TRUE(operation.run == kOperations[0].run || wordsOf(result) == right) << nth;
        }
        if (!operation.takesOver) {
            EXPECT_EQ(wordsOf(a), before) << nth;
            TvGdImpl::Bfree(a);
        }
        EXPECT_EQ(wordsOf(b), std::vector<unsigned>{31}) << nth;
        TvGdImpl::Bfree(b);
        TvGdImpl::Bfree(result);
        if (nth != 0 && !fired) {
            EXPECT_GT(nth, 1) << "nothing was refused";
            return;
        }
    }
    ADD_FAILURE() << "the allocations never end";
}

INSTANTIATE_TEST_SUITE_P(Toolkit, BigintFault, testing::ValuesIn(kOperations),
                         [](const auto& test) { return std::string(test.param.name); });

class DigitStringFault : public BigintFault {};

TEST_F(DigitStringFault, IsNullOrRight)
{
    const HeapBalance balance;
    {
        const FailNth fail(FailNth::Malloc, 1, FailNth::FromThenOn);
        char* end = nullptr;
        int point = 0;
        int sign = 0;
        EXPECT_EQ(TvGdImpl::rv_alloc(100), nullptr);
        EXPECT_EQ(TvGdImpl::nrv_alloc("text", &end, 100), nullptr);
        EXPECT_EQ(tvEcvt(1.0 / 3, 15, &point, &sign), nullptr);
        EXPECT_EQ(tvFcvt(1.0 / 3, 15, &point, &sign), nullptr);
    }
    char* end = nullptr;
    char* const text = TvGdImpl::nrv_alloc("text", &end, 100);
    EXPECT_STREQ(text, "text");
    EXPECT_EQ(end, text + 4);
    TvGdImpl::freedtoa(text);
}

// A chain of operations needs one test at its end.
TEST(BigintChain, NullGoesThrough)
{
    EXPECT_EQ(TvGdImpl::multadd(nullptr, 3, 1), nullptr);
    EXPECT_EQ(TvGdImpl::pow5mult(nullptr, 700), nullptr);
    EXPECT_EQ(TvGdImpl::lshift(nullptr, 5), nullptr);
    Bigint* const one = TvGdImpl::i2b(1);
    EXPECT_EQ(TvGdImpl::mult(nullptr, one), nullptr);
    EXPECT_EQ(TvGdImpl::mult(one, nullptr), nullptr);
    EXPECT_EQ(TvGdImpl::diff(nullptr, one), nullptr);
    EXPECT_EQ(TvGdImpl::diff(one, nullptr), nullptr);
    TvGdImpl::Bfree(one);
    TvGdImpl::Bfree(nullptr);
    TvGdImpl::freedtoa(nullptr);
    tvFreeCvt(nullptr);
}

// Without the powers of five kept by the process each is made where it is needed.
TEST(PowersOfFiveFault, AreMadeForOneMultiplicationWithoutTheTable)
{
    tvFCvtAllocator().release();
    Bigint* const withoutTable = TvGdImpl::pow5mult(TvGdImpl::i2b(1), 400);
    const std::vector<unsigned> words = wordsOf(withoutTable);
    TvGdImpl::Bfree(withoutTable);
    {
        const FailNth fail(FailNth::Malloc, 2);
        tvFCvtAllocator().init();
    }
    tvFCvtAllocator().init();
    Bigint* const withTable = TvGdImpl::pow5mult(TvGdImpl::i2b(1), 400);
    EXPECT_EQ(wordsOf(withTable), words);
    TvGdImpl::Bfree(withTable);
}

} // namespace
