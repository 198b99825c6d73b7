// TestScale.h - how long random tests run, and from which seed.
#ifndef TV_TEST_SCALE_H
#define TV_TEST_SCALE_H

#include <cstdint>
#include <cstdlib>

// `count` times the factor of the environment's TV_TEST_SCALE, at least 1.
inline long scaled(long count)
{
    const char* text = std::getenv("TV_TEST_SCALE");
    const double factor = text ? std::atof(text) : 1.0;
    const auto result = static_cast<long>(static_cast<double>(count) * factor);
    return result < 1 ? 1 : result;
}

// The seed of the environment's TV_TEST_SEED, else a fixed one.
inline std::uint64_t testSeed(std::uint64_t fallback)
{
    const char* text = std::getenv("TV_TEST_SEED");
    return text ? std::strtoull(text, nullptr, 0) : fallback;
}

#endif
