// Digits against the C library, which rounds correctly, and std::to_chars for the shortest.
#include "DoublePatterns.h"
#include "NumberText.h"
#include "TestScale.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cstdio>
#include <cstdlib>

namespace {

// "digits@point" of d.ddde+xx.
std::string fromScientific(const char* text)
{
    std::string digits;
    for (; *text != 'e'; ++text) {
        if (*text != '.')
            digits += *text;
    }
    return textOf(trimmed(digits, std::atoi(text + 1) + 1));
}

// "digits@point" of ddd.ddd with `places` places.
std::string fromFixed(const std::string& text, int places)
{
    std::string digits;
    for (const char c : text) {
        if (c != '.')
            digits += c;
    }
    ExactDecimal x = trimmed(digits, static_cast<int>(digits.size()) - places);
    if (x.digits.empty())
        x.point = -places;
    return textOf(x);
}

std::string shortestOfToChars(double value)
{
    char text[64];
    *std::to_chars(text, text + sizeof text - 1, value, std::chars_format::scientific).ptr = '\0';
    return fromScientific(text);
}

std::string significantOfLibc(double value, int count)
{
    char text[1200];
    std::snprintf(text, sizeof text, "%.*e", count - 1, value);
    return fromScientific(text);
}

std::string placesOfLibc(double value, int places)
{
    char text[1500];
    std::snprintf(text, sizeof text, "%.*f", places, value);
    return fromFixed(text, places);
}

TEST(DigitsAgainstLibc, ShortestAtTheEdges)
{
    for (const double value : edgeDoubles())
        ASSERT_EQ(dtoaText(value, 0, 0), shortestOfToChars(value));
}

TEST(DigitsAgainstLibc, SignificantAtTheEdges)
{
    for (const double value : edgeDoubles()) {
        for (const int count : {1, 2, 5, 15, 16, 17, 18, 19, 20, 40})
            ASSERT_EQ(dtoaText(value, 2, count), significantOfLibc(value, count)) << count;
    }
}

TEST(DigitsAgainstLibc, PlacesAtTheEdges)
{
    for (const double value : edgeDoubles()) {
        for (const int places : {0, 1, 6, 15, 18, 19, 330})
            ASSERT_EQ(dtoaText(value, 3, places), placesOfLibc(value, places)) << places;
    }
}

TEST(DigitsAgainstLibc, AllDigitsAtTheEdges)
{
    for (const double value : edgeDoubles()) {
        const std::string all = significantOfLibc(value, 800);
        ASSERT_EQ(dtoaText(value, 2, 800), all);
        ASSERT_EQ(dtoaText(value, 3, 1100), all);
    }
}

TEST(DigitsAgainstLibc, RandomValues)
{
    const std::uint64_t seed = testSeed(20261);
    RecordProperty("seed", std::to_string(seed));
    RandomDoubles random(seed);
    for (long i = scaled(150000); i > 0; --i) {
        const double value = random.next();
        const int count = 1 + static_cast<int>(random.bits() % 20);
        ASSERT_EQ(dtoaText(value, 0, 0), shortestOfToChars(value)) << "seed " << seed;
        ASSERT_EQ(dtoaText(value, 2, count), significantOfLibc(value, count)) << "seed " << seed;
        if (i % 4 == 0) {
            ASSERT_EQ(dtoaText(value, 3, count - 1), placesOfLibc(value, count - 1)) << "seed " << seed;
        }
    }
}

// Values with few bits have exact ties at every place.
TEST(DigitsAgainstLibc, ExactTies)
{
    for (std::uint64_t odd = 1; odd < 64; odd += 2) {
        for (int shift = 1; shift < 60; ++shift) {
            const double value = static_cast<double>(odd) / static_cast<double>(std::uint64_t{1} << shift);
            for (int places = 0; places < shift; ++places)
                ASSERT_EQ(dtoaText(value, 3, places), placesOfLibc(value, places)) << odd << " / 2^" << shift;
            for (int count = 1; count < 20; ++count)
                ASSERT_EQ(dtoaText(value, 2, count), significantOfLibc(value, count))
                    << odd << " / 2^" << shift;
        }
    }
}

// Large odd numbers times powers of five end in 5 many places up: ties left of the point.
TEST(DigitsAgainstLibc, ExactTiesOfWholeNumbers)
{
    double five = 1;
    for (int e = 0; e < 22; ++e, five *= 5) {
        for (int twos = 0; twos < 80; twos += 7) {
            const double value = five * 3 * doubleOfBits(static_cast<std::uint64_t>(1023 + twos) << 52);
            for (int count = 1; count < 20; ++count)
                ASSERT_EQ(dtoaText(value, 2, count), significantOfLibc(value, count)) << value;
        }
    }
}

} // namespace
