// Every allocation of a conversion fails once, in turn.
#include "FailNth.h"

#include "TvAlloc.h"
#include "TvGdImpl.h"
#include "TvNumber.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cmath>
#include <cstring>
#include <cwchar>
#include <string>
#include <vector>

namespace {

// The pool is used up first, so that every block comes from the heap, and the heap's
// from malloc.
class NumberFault : public testing::Test {
protected:
    void SetUp() override
    {
        const auto* object = reinterpret_cast<const char*>(&tvFCvtAllocator());
        for (int k = 7; k >= 0;) {
            Bigint* b = tvFCvtAllocator().Alloc(k);
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

    // Calls `conversion` until it ran untouched, with each malloc failing once; answers
    // how many there were. `verify` sees whether one failed.
    template<class Conversion, class Verify>
    int eachFails(Conversion conversion, Verify verify)
    {
        for (int nth = 1;; ++nth) {
            const HeapBalance balance;
            bool fired;
            {
                const FailNth fail(FailNth::Malloc, nth);
                conversion();
                fired = fail.fired();
            }
            verify(fired);
            if (!fired || testing::Test::HasFailure())
                return nth - 1;
        }
    }

private:
    std::vector<Bigint*> m_blocks;
};

TEST_F(NumberFault, DigitsAreNullOrRight)
{
    // One third: shortest in modes 0 and 1, five digits in the others.
    const char* const right[] = {"3333333333333333",
                                 "3333333333333333",
                                 "33333",
                                 "33333",
                                 "33333",
                                 "33333",
                                 "33333",
                                 "33333",
                                 "33333",
                                 "33333"};
    for (int mode = 0; mode <= 9; ++mode) {
        char* digits = nullptr;
        int point = 0, sign = 0;
        const int allocations =
            eachFails([&] { digits = TvGdImpl::dtoa(1.0 / 3, mode, 5, &point, &sign, nullptr); },
                      [&](bool fired) {
                          if (fired) {
                              EXPECT_EQ(digits, nullptr) << mode;
                          } else {
                              EXPECT_STREQ(digits, right[mode]) << mode;
                              EXPECT_EQ(point, 0) << mode;
                              EXPECT_EQ(sign, 0) << mode;
                          }
                          TvGdImpl::freedtoa(digits);
                      });
        EXPECT_GE(allocations, mode == 0 || (mode >= 2 && mode <= 5) ? 1 : 4) << mode;
    }
}

TEST_F(NumberFault, LongDigitsAreNullOrRight)
{
    for (const double value : {5e-324, 1.7976931348623157e308, 0x1p-1022, 0x1p900}) {
        for (const int mode : {0, 1, 2, 5, 6, 9}) {
            char* digits = nullptr;
            int point, sign;
            std::string right;
            digits = TvGdImpl::dtoa(value, mode, 400, &point, &sign, nullptr);
            right = digits;
            TvGdImpl::freedtoa(digits);
            eachFails([&] { digits = TvGdImpl::dtoa(value, mode, 400, &point, &sign, nullptr); },
                      [&](bool fired) {
                          if (digits) {
                              EXPECT_EQ(digits, right);
                          } else {
                              EXPECT_TRUE(fired);
                          }
                          TvGdImpl::freedtoa(digits);
                      });
        }
    }
}

TEST_F(NumberFault, NarrowTextIsEmptyOrRight)
{
    const auto check = [this](auto write, const char* right) {
        char out[128];
        eachFails([&] { write(out); }, [&](bool fired) { EXPECT_STREQ(out, fired ? "" : right); });
    };
    check([](char* out) { tvFltToE(out, 1.0 / 3, 25, 'e'); }, "3.3333333333333331482961626e-001");
    check([](char* out) { tvFltToG(out, 1.0 / 3, 25, 'e', 0); }, "0.3333333333333333148296163");
    check([](char* out) { tvFltToF(out, 0x1p300, 0); },
          "2037035976334486000000000000000000000000000000000000000000000000000000000000000000000000000");
}

TEST_F(NumberFault, WideTextIsNullOrRight)
{
    const auto check = [this](auto write, const wchar_t* right) {
        wchar_t* out = nullptr;
        eachFails([&] { out = write(); },
                  [&](bool fired) {
                      EXPECT_EQ(out == nullptr, fired);
                      if (out) {
                          EXPECT_STREQ(out, right);
                      }
                      _tvFree(out);
                  });
    };
    check([] { return tvFltToF(2.5, 2); }, L"2.50");
    check([] { return tvFltToE(1.0 / 3, 25, 'e'); }, L"3.3333333333333331482961626e-001");
    check([] { return tvFltToG(2.5, 6, 'e', 0); }, L"2.5");
    check([] { return tvDToStr(HUGE_VAL, 'f', 6, 0); }, L"Infinity");
}

TEST_F(NumberFault, ParsedNumberIsRightOrNextToIt)
{
    // A tie in full, which only big integers decide.
    const std::string texts[] = {
        "9007199254740993." + std::string(700, '0') + "1",
        "17.0000000000000017763568394002504646778106689453125e-100",
        "2.4703282292062327208299439e-324",
        std::string(
            "179769313486231580793728971405303415079934132710037826936173778980444968292764750946649017"
            "977587207096330286416692887910946555547851940402630657488671505820681908902000708383676"
            "273854845817711531764475730270069855571366959622842914819860834936475292719074168444365"
            "510704342711559699508093042880177904174497791.9"),
    };
    for (const std::string& text : texts) {
        const double right = tvStrToD(text.c_str(), nullptr);
        double value = 0;
        int error = 0;
        char* end = nullptr;
        eachFails(
            [&] {
                errno = 0;
                value = tvStrToD(text.c_str(), &end);
                error = errno;
            },
            [&](bool fired) {
                if (!fired) {
                    EXPECT_EQ(value, right);
                } else if (error == ENOMEM) {
                    EXPECT_GE(value, std::nextafter(right, 0));
                    EXPECT_LE(value, std::nextafter(right, HUGE_VAL));
                }
                EXPECT_EQ(*end, '\0');
            });
    }
}

// The pool is used up: every block is one of the heap, and none is kept.
TEST_F(NumberFault, BlocksBehindThePoolGoBackToTheHeap)
{
    const auto convertAll = [] {
        for (int mode = 0; mode <= 9; ++mode) {
            for (const double value : {1.0 / 3, 5e-324, 0x1.fffffffffffffp1023, 1e23, HUGE_VAL}) {
                int point, sign;
                TvGdImpl::freedtoa(TvGdImpl::dtoa(value, mode, 30, &point, &sign, nullptr));
            }
        }
        const std::string tie = "9007199254740993." + std::string(700, '0') + "1";
        tvStrToD(tie.c_str(), nullptr);
        tvStrToD(std::wstring(tie.begin(), tie.end()).c_str(), nullptr);
        char out[400];
        tvFltToF(out, 0x1p300, 3);
        _tvFree(tvFltToE(1.0 / 3, 25, 'e'));
    };
    const HeapBalance balance;
    for (int i = 0; i < 3; ++i)
        convertAll();
}

TEST_F(NumberFault, EveryClassBehindThePoolGoesBackToTheHeap)
{
    for (int k = 0; k <= 17; ++k) {
        const HeapBalance balance;
        Bigint* first = tvFCvtAllocator().Alloc(k);
        Bigint* second = tvFCvtAllocator().Alloc(k);
        ASSERT_NE(first, nullptr) << k;
        ASSERT_NE(second, nullptr) << k;
        EXPECT_EQ(second->maxwds, 1 << k);
        tvFCvtAllocator().Free(first);
        tvFCvtAllocator().Free(second);
    }
}

} // namespace
