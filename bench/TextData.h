// TextData.h - texts for the conversion benchmarks, made from a seed.
#ifndef TV_BENCH_TEXT_DATA_H
#define TV_BENCH_TEXT_DATA_H

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace TextData {

using Wide = std::vector<wchar_t>;

// How much of a text is ASCII: words with a foreign letter now and then, or hardly any.
enum class Mix { kAscii, kForeign };

// A text of `count` characters. The letters come with skewed frequencies: the one of rank r
// about 1/r times as often as the first.
inline Wide makeText(Mix mix, Wide letters, std::size_t count, unsigned seed)
{
    std::mt19937 random(seed);
    std::shuffle(letters.begin(), letters.end(), random);
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    const double span = std::log(static_cast<double>(letters.size()));
    const auto foreign = [&] {
        const auto rank = static_cast<std::size_t>(std::exp(uniform(random) * span));
        return letters[std::min(rank, letters.size()) - 1];
    };
    Wide text;
    std::size_t word = 0;
    while (text.size() < count) {
        if (word == 0) {
            word = 2 + random() % 9;
            text.push_back(L' ');
            continue;
        }
        --word;
        const bool plain = uniform(random) < (mix == Mix::kAscii ? 0.97 : 0.05);
        text.push_back(plain ? static_cast<wchar_t>('a' + random() % 26) : foreign());
    }
    return text;
}

inline Wide range(wchar_t first, wchar_t last)
{
    Wide out;
    for (wchar_t c = first; c <= last; ++c)
        out.push_back(c);
    return out;
}

// Han characters, all of them in GB 18030's two-byte part.
inline Wide hanLetters() { return range(0x4E00, 0x51FF); }

inline Wide accentedLetters() { return range(0xC0, 0xFF); }

inline Wide japaneseLetters()
{
    Wide out = range(0x3041, 0x3093);
    const Wide katakana = range(0x30A1, 0x30F6);
    out.insert(out.end(), katakana.begin(), katakana.end());
    return out;
}

// Cuts a text into pieces of 8 to 40 elements that lie behind one another.
inline std::vector<std::size_t> cutPlaces(std::size_t count, unsigned seed)
{
    std::mt19937 random(seed);
    std::vector<std::size_t> places = {0};
    while (places.back() < count)
        places.push_back(std::min(places.back() + 8 + random() % 33, count));
    return places;
}

} // namespace TextData

#endif
