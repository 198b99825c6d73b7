#include "codepage/LineBreakRun.h"

#include <gtest/gtest.h>

namespace {

TEST(LeadingDictionaryCharacters, AreCountedToTheFirstOtherClass)
{
    const int classes[] = {28, 28, 28, 11, 28};
    EXPECT_EQ(tvLeadingDictionaryCharacters(classes, 5), 3);
}

TEST(LeadingDictionaryCharacters, AreCountedToTheCount)
{
    const int classes[] = {28, 28, 28, 28};
    EXPECT_EQ(tvLeadingDictionaryCharacters(classes, 4), 4);
    EXPECT_EQ(tvLeadingDictionaryCharacters(classes, 2), 2);
}

TEST(LeadingDictionaryCharacters, AreNoneWhenAnotherClassStandsFirst)
{
    const int classes[] = {27, 28, 28};
    EXPECT_EQ(tvLeadingDictionaryCharacters(classes, 3), 0);
}

TEST(LeadingDictionaryCharacters, AreNoneInNoClasses)
{
    EXPECT_EQ(tvLeadingDictionaryCharacters(nullptr, 0), 0);
    EXPECT_EQ(tvLeadingDictionaryCharacters(nullptr, -1), 0);
}

} // namespace
