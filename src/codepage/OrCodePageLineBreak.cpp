// OrCodePageLineBreak.cpp - line-break classes and the pair table.
#include "OrCodePage.h"

#include "codepage/LineBreakRun.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr unsigned int kIdeograph = 12;
constexpr int kDictionary = 28;

} // namespace

// Row: class before; column: class after. As the example pair table of Unicode Standard
// Annex #14.
const unsigned char OrCodePage::s_arrFullAnalyzeLineBreak[448] = {
    // clang-format off
    /* OP */ 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3,
    /* CL */ 0, 3, 1, 1, 3, 3, 3, 3, 0, 1, 0, 0, 0, 0, 1, 1, 0, 0, 3, 2, 3,
    /* QU */ 3, 3, 1, 1, 1, 3, 3, 3, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 3, 3, 3,
    /* GL */ 1, 3, 1, 1, 1, 3, 3, 3, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 3, 3, 3,
    /* NS */ 0, 3, 1, 1, 1, 3, 3, 3, 0, 0, 0, 0, 0, 0, 1, 1, 0, 0, 3, 2, 3,
    /* EX */ 0, 3, 1, 1, 1, 3, 3, 3, 0, 0, 0, 0, 0, 0, 1, 1, 0, 0, 3, 2, 3,
    /* SY */ 0, 3, 1, 1, 1, 3, 3, 3, 0, 0, 1, 0, 0, 0, 1, 1, 0, 0, 3, 2, 3,
    /* IS */ 0, 3, 1, 1, 1, 3, 3, 3, 0, 0, 1, 1, 0, 0, 1, 1, 0, 0, 3, 2, 3,
    /* PR */ 1, 3, 1, 1, 1, 3, 3, 3, 0, 0, 1, 1, 1, 0, 1, 1, 0, 0, 3, 3, 3,
    /* PO */ 0, 3, 1, 1, 1, 3, 3, 3, 0, 0, 0, 0, 0, 0, 1, 1, 0, 0, 3, 2, 3,
    /* NU */ 0, 3, 1, 1, 1, 3, 3, 3, 0, 1, 1, 1, 0, 1, 1, 1, 0, 0, 3, 2, 3,
    /* AL */ 0, 3, 1, 1, 1, 3, 3, 3, 0, 0, 1, 1, 0, 1, 1, 1, 0, 0, 3, 2, 3,
    /* ID */ 0, 3, 1, 1, 1, 3, 3, 3, 0, 1, 0, 0, 0, 1, 1, 1, 0, 0, 3, 2, 3,
    /* IN */ 0, 3, 1, 1, 1, 3, 3, 3, 0, 0, 0, 0, 0, 1, 1, 1, 0, 0, 3, 2, 3,
    /* HY */ 0, 3, 1, 1, 1, 3, 3, 3, 0, 0, 1, 0, 0, 0, 1, 1, 0, 0, 3, 2, 3,
    /* BA */ 0, 3, 1, 1, 1, 3, 3, 3, 0, 0, 0, 0, 0, 0, 1, 1, 0, 0, 3, 2, 3,
    /* BB */ 1, 3, 1, 1, 1, 3, 3, 3, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 3, 3, 3,
    /* B2 */ 0, 3, 1, 1, 1, 3, 3, 3, 0, 0, 0, 0, 0, 0, 1, 1, 0, 3, 3, 2, 3,
    /* ZW */ 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 3, 2, 0,
    /* CM */ 0, 3, 1, 1, 1, 3, 3, 3, 0, 0, 1, 1, 0, 1, 1, 1, 0, 0, 3, 2, 3,
    /* WJ */ 1, 3, 1, 1, 1, 3, 3, 3, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 3, 3, 3,
    // clang-format on
};

OrCodePage::LineBreakAnalyzer OrCodePage::s_ptrAnalyzeLineBreak = nullptr;

int OrCodePage::LineBreakClass(wchar_t wc)
{
    const auto unit = static_cast<unsigned int>(wc);
    if (unit < std::size(s_LowPartBrakClass))
        return s_LowPartBrakClass[unit];
    const auto* const range =
        std::lower_bound(std::begin(s_HighPartBreakClass), std::end(s_HighPartBreakClass), unit,
                         [](const LineBreakRange& entry, unsigned int value) { return entry.last < value; });
    return static_cast<int>(range != std::end(s_HighPartBreakClass) ? range->breakClass : kIdeograph);
}

int OrCodePage::AnalyzeLineBreaks(int*, int*, int) { return 0; }

int tvLeadingDictionaryCharacters(const int* classes, int count)
{
    int leading = 0;
    while (leading < count && classes[leading] == kDictionary)
        ++leading;
    return leading;
}
