// The line-break classes against the property as Unicode 4.0.1 published it.
#include "OrCodePage.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace {

// Class numbers of the property's values; ambiguous characters count as letters,
// surrogates as ideographs.
const std::map<std::string, int> kNumbers = {
    {"OP", 0},  {"CL", 1},  {"QU", 2},  {"GL", 3},  {"NS", 4},  {"EX", 5},  {"SY", 6},  {"IS", 7},
    {"PR", 8},  {"PO", 9},  {"NU", 10}, {"AL", 11}, {"AI", 11}, {"ID", 12}, {"SG", 12}, {"IN", 13},
    {"HY", 14}, {"BA", 15}, {"BB", 16}, {"B2", 17}, {"ZW", 18}, {"CM", 19}, {"WJ", 20}, {"CR", 21},
    {"LF", 22}, {"NL", 23}, {"BK", 24}, {"XX", 25}, {"SP", 26}, {"CB", 27}, {"SA", 28},
};

constexpr int kUnlisted = -1;

// The class of each character, or kUnlisted.
std::vector<int> publishedClasses()
{
    std::vector<int> classes(0x110000, kUnlisted);
    std::ifstream file(TV_SOURCE_DIR "/tests/diff/codepage/LineBreak-4.0.1.runs.txt");
    int runs = 0;
    for (std::string line; std::getline(file, line);) {
        unsigned int first = 0;
        unsigned int last = 0;
        char name[4] = "";
        if (std::sscanf(line.c_str(), "%x..%x;%3s", &first, &last, name) != 3) {
            if (std::sscanf(line.c_str(), "%x;%3s", &first, name) != 2)
                continue; // a comment
            last = first;
        }
        for (unsigned int c = first; c <= last; ++c)
            classes[c] = kNumbers.at(name);
        ++runs;
    }
    EXPECT_EQ(runs, 1024);
    return classes;
}

class LineBreakData : public testing::Test {
protected:
    void expectClasses(unsigned int first, unsigned int last, int unlisted)
    {
        for (unsigned int c = first; c <= last; ++c) {
            const int expected = m_published[c] == kUnlisted ? unlisted : m_published[c];
            EXPECT_EQ(OrCodePage::LineBreakClass(static_cast<wchar_t>(c)), expected) << std::hex << c;
        }
    }

    const std::vector<int> m_published = publishedClasses();
};

TEST_F(LineBreakData, OfTheBasicPlaneIsThePublishedOne)
{
    expectClasses(0, 0xFDCF, 12);
    expectClasses(0xFDF0, 0xFFFD, 12);
}

TEST_F(LineBreakData, OfNoncharactersIsUnknown)
{
    expectClasses(0xFDD0, 0xFDEF, 25);
    expectClasses(0xFFFE, 0xFFFF, 25);
}

TEST_F(LineBreakData, AboveTheBasicPlaneIsThePublishedOneToTheLastDigit)
{
    expectClasses(0x10000, 0x1D7FF, 11);
}

TEST_F(LineBreakData, OfTagsAndVariationSelectorsIsThePublishedOne) { expectClasses(0xE0001, 0xE01EF, 19); }

} // namespace
