// Fills lines of a given width, breaking where line-break classes and pair table allow it.
#include <TvOsBase.h>

#include <cstdio>
#include <string>

namespace {

const int kSpace = 26;

// Classes of the pair table are 0 to 20. This text has none above but spaces.
bool mayBreak(int before, int after, bool spaceBetween)
{
    const int action = OrCodePage::s_arrFullAnalyzeLineBreak[21 * before + after];
    return action == 0 || (action == 1 && spaceBetween);
}

} // namespace

int main()
{
    const std::wstring text = L"The door (900 mm) opens inwards, see sheet 12-b.";
    const std::size_t width = 14;

    std::size_t start = 0, lastBreak = 0;
    int before = -1;
    bool space = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int here = OrCodePage::LineBreakClass(text[i]);
        if (here == kSpace) {
            space = true;
            continue;
        }
        if (before >= 0 && mayBreak(before, here, space))
            lastBreak = i;
        if (i - start >= width && lastBreak > start) {
            std::printf("%ls\n", text.substr(start, lastBreak - start).c_str());
            start = lastBreak;
        }
        before = here;
        space = false;
    }
    std::printf("%ls\n", text.substr(start).c_str());

    // The same characters by kind, for those who only look at punctuation.
    const TvVector<wchar_t>& left = TvCharCategory::s_instance.leftPuncts();
    int found = 0;
    for (const wchar_t c : text)
        for (const wchar_t opening : left)
            found += c == opening;
    std::printf("%d opening\n", found);
}
