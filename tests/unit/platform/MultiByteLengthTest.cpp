#include "TvPlatformBase.h"

#include <gtest/gtest.h>

namespace {

struct LengthCase {
    const char* name;
    unsigned int codePage;
    const char* text;
    size_t length;
};

class MultiByteLength : public testing::TestWithParam<LengthCase> {
protected:
    ~MultiByteLength() override { tvPlatformSetACP(0); }
};

TEST_P(MultiByteLength, CountsCharacters)
{
    tvPlatformSetACP(GetParam().codePage);
    EXPECT_EQ(_mbslen(reinterpret_cast<const unsigned char*>(GetParam().text)), GetParam().length);
}

const LengthCase kLengths[] = {
    {"Empty", 932, "", 0},
    {"Ascii", 936, "abc", 3},
    {"SingleBytePageHasNoLeadBytes", 1252, "\x81\x40\xE9", 3},
    {"Utf8IsCountedInBytes", 65001, "\xE4\xB8\xAD", 3},
    {"Pairs936", 936, "a\xD6\xD0\xCE\xC4z", 4},
    {"AsciiTrail932", 932, "\x83\x5C\x83\x5C", 2},
    {"HalfWidthKatakana932", 932, "\xA0\xA1\xDF", 3},
    {"FirstLead932", 932, "\x81\x40", 1},
    {"BeforeFirstLead932", 932, "\x80\x40", 2},
    {"LastOfFirstRange932", 932, "\x9F\x40", 1},
    {"FirstOfSecondRange932", 932, "\xE0\x40", 1},
    {"LastLead932", 932, "\xFC\x40", 1},
    {"BehindLastLead932", 932, "\xFD\x40", 2},
    {"FirstLead949", 949, "\x81\x41", 1},
    {"LastLead949", 949, "\xFE\x41", 1},
    {"BehindLastLead949", 949, "\xFF\x41", 2},
    {"FirstLead950", 950, "\x81\x40", 1},
    {"BeforeFirstLead950", 950, "\x80\x40", 2},
    {"LastLead950", 950, "\xFE\x40", 1},
    {"BeforeFirstLead936", 936, "\x80\x40", 2},
    {"LastLead936", 936, "\xFE\x40", 1},
    {"BeforeFirstLeadJohab", 1361, "\x83\x41", 2},
    {"FirstLeadJohab", 1361, "\x84\x41", 1},
    {"LastOfFirstRangeJohab", 1361, "\xD3\x41", 1},
    {"BetweenRangesJohab", 1361, "\xD4\x41\xD7\x41", 4},
    {"SecondRangeJohab", 1361, "\xD8\x31\xDE\x31", 2},
    {"BetweenLaterRangesJohab", 1361, "\xDF\x31", 2},
    {"ThirdRangeJohab", 1361, "\xE0\x31\xF9\x31", 2},
    {"BehindLastLeadJohab", 1361, "\xFA\x31", 2},
    {"LeadByteAtTheEndIsNotCounted", 936, "ab\xD6", 2},
    {"LeadByteAlone", 932, "\x81", 0},
    {"TrailLooksLikeLead", 936, "\xD6\xD6\xD6", 1},
};
INSTANTIATE_TEST_SUITE_P(Platform, MultiByteLength, testing::ValuesIn(kLengths),
                         [](const auto& instance) { return instance.param.name; });

TEST(MultiByteLengthOfNull, IsZero) { EXPECT_EQ(_mbslen(nullptr), 0u); }

} // namespace
