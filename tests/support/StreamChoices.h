// StreamChoices.h - numbers from outside as the sizes and bytes that stream traffic needs.
#ifndef TV_TEST_STREAM_CHOICES_H
#define TV_TEST_STREAM_CHOICES_H

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

class StreamChoices {
public:
    /// `choose(n)` answers a number below `n`.
    explicit StreamChoices(std::function<std::uint32_t(std::uint32_t)> choose) : m_choose(std::move(choose))
    {
    }

    std::uint32_t below(std::uint32_t limit) { return m_choose(limit); }

    /// Mostly small, at times below `large`.
    std::uint32_t size(std::uint32_t large) { return below(8) == 0 ? below(large) : below(20); }

    /// A pattern that two choices determine.
    std::string bytes(std::uint32_t count)
    {
        std::uint32_t state = below(0x10000) | 0x9E370000u;
        std::string result(count, '\0');
        for (char& c : result) {
            state = state * 1664525u + 1013904223u;
            c = static_cast<char>(state >> 24);
        }
        return result;
    }

private:
    std::function<std::uint32_t(std::uint32_t)> m_choose;
};

#endif
