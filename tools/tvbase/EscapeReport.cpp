#include "EscapeReport.h"

#include "Utf8Sequence.h"

#include <cinttypes>
#include <cstdio>

namespace {

void printCharacter(char32_t c, std::uint64_t count)
{
    char text[8];
    int length = 0;
    // Controls and surrogates have nothing to show.
    if (c > 0x9F && (c < 0xD800 || c > 0xDFFF))
        length = writeUtf8(c, text);
    else if (c >= 0x20 && c < 0x7F)
        text[length++] = static_cast<char>(c);
    std::fprintf(stderr, "  U+%04" PRIXLEAST32 "  %.*s  %" PRIu64 "\n", static_cast<std::uint_least32_t>(c),
                 length, text, count);
}

} // namespace

void EscapeReport::Counter::add(char32_t character)
{
    ++m_total;
    if (character < m_basic.size())
        ++m_basic[character];
    else
        ++m_above[character];
}

void EscapeReport::Counter::print(const char* title) const
{
    std::fprintf(stderr, "%s: %" PRIu64 "\n", title, m_total);
    for (std::size_t c = 0; c < m_basic.size(); ++c)
        if (m_basic[c] != 0)
            printCharacter(static_cast<char32_t>(c), m_basic[c]);
    for (const auto& [c, count] : m_above)
        printCharacter(c, count);
}

void EscapeReport::print() const
{
    read.print("escapes read");
    written.print("escapes written");
    if (pairs != 0)
        std::fprintf(stderr, "codes without a character written as escapes: %" PRIu64 "\n", pairs);
    if (kept != 0)
        std::fprintf(stderr, "escapes kept as they were: %" PRIu64 "\n", kept);
    if (skipped.total() != 0)
        skipped.print("characters left out");
    if (bad != 0)
        std::fprintf(stderr, "bytes that are no characters: %" PRIu64 "\n", bad);
}
