#include "LineBreaks.h"

#include "OrCodePage.h"

namespace {

// Classes of OrCodePage::LineBreakClass() that stand outside the pair table, or in it for
// something of their own.
constexpr int kLetter = 11;
constexpr int kIdeograph = 12;
constexpr int kJoiner = 20;
constexpr int kReturn = 21;
constexpr int kLineFeed = 22;
constexpr int kNextLine = 23;
constexpr int kBreak = 24;
constexpr int kPrivateUse = 25;
constexpr int kSpace = 26;
constexpr int kObject = 27;
constexpr int kDictionary = 28;

constexpr int kPairClasses = 21;
constexpr int kDirect = 0;
constexpr int kProhibited = 3;

int classOf(char32_t c)
{
    const int breakClass = OrCodePage::LineBreakClass(static_cast<wchar_t>(c));
    switch (breakClass) {
    case kPrivateUse:
    case kDictionary: // there is no dictionary
        return kLetter;
    case kObject:
        return kIdeograph;
    default:
        return breakClass;
    }
}

bool endsLine(int breakClass)
{
    return breakClass == kReturn || breakClass == kLineFeed || breakClass == kNextLine ||
           breakClass == kBreak;
}

// Reads the characters of a line one by one.
class PairReader {
public:
    // Whether a line may end before a character of this class.
    bool mayBreakBefore(int breakClass)
    {
        if (breakClass == kSpace) {
            if (m_before == kNone)
                m_before = kJoiner; // what stands after leading spaces may be moved to the next line
            m_afterSpace = true;
            return false;
        }
        const bool combines = breakClass == kCombiningClass && !m_afterSpace && m_before != kNone;
        bool may = false;
        if (m_before != kNone) {
            const int action = OrCodePage::s_arrFullAnalyzeLineBreak[m_before * kPairClasses + breakClass];
            may = action == kDirect || (action != kProhibited && m_afterSpace);
        }
        if (!combines) // a combining mark leaves the class of the character that it is on
            m_before = breakClass;
        m_afterSpace = false;
        return may;
    }

private:
    static constexpr int kNone = -1;
    int m_before = kNone;
    bool m_afterSpace = false;
};

} // namespace

std::vector<LineBreak> findLineBreaks(const std::u32string& text)
{
    std::vector<LineBreak> breaks(text.size(), LineBreak::No);
    PairReader line;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int breakClass = classOf(text[i]);
        if (!endsLine(breakClass)) {
            if (line.mayBreakBefore(breakClass))
                breaks[i - 1] = LineBreak::May;
            continue;
        }
        const bool isPair = breakClass == kReturn && i + 1 < text.size() && classOf(text[i + 1]) == kLineFeed;
        if (!isPair)
            breaks[i] = LineBreak::Must;
        line = PairReader();
    }
    return breaks;
}
