#include "TvCharCategory.h"

#include "runtime/TvStartup.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <new>
#include <string_view>

namespace {

// The lists, duplicates included: callers see them as they are.
constexpr wchar_t kLeft[] = {
    0x0028, 0x005B, 0x007B, 0x3010, 0x300A, 0xFF08, 0xFFE5, 0x002B, 0xFE35, 0x201A,
    0x201E, 0x0024, 0x2039, 0x00A3, 0x00A4, 0x00A5, 0x20AC, 0x2116, 0xFF04, 0xFFE1,
    0xFFE5, 0xFF08, 0xFF3B, 0xFF5B, 0xFE59, 0xFE5B, 0xFE5D, 0xFE69, 0x3008,
};

constexpr wchar_t kNormal[] = {
    0x002C, 0x003F, 0x0021, 0x002E, 0x003B, 0x003A, 0x3001, 0x3002, 0x3003, 0xFF0C, 0xFF0E, 0xFF1A,
    0xFF1B, 0xFF1F, 0xFF01, 0x2026, 0x002D, 0xFE50, 0xFE51, 0xFE52, 0xFE54, 0xFE55, 0xFE56, 0xFE57,
    0x0025, 0x2030, 0x2025, 0x00B0, 0x002F, 0x007C, 0x00B0, 0x2010, 0x2013, 0x2014, 0x2032, 0x2033,
    0x2035, 0x00A2, 0xFFE0, 0x2103, 0x2109, 0xFF05, 0xFF09, 0xFFE0, 0xFE6A,
};

constexpr wchar_t kRight[] = {
    0x0029, 0x005D, 0x007D, 0xFF09, 0x300B, 0x3011, 0xFF3D, 0xFF5D, 0xFE5A, 0xFE5C, 0xFE5E, 0x203A, 0x3009,
};

constexpr wchar_t kQuotation[] = {
    0x0022, 0x2018, 0x2019, 0x201C, 0x201D, 0x0027, 0x00AB, 0x00BB, 0x2039, 0x203A,
};

// The characters of `parts`, sorted, take the place of what `list` held. Its copies, which
// other code may have, and the list itself when there is no memory, stay as they are.
void setList(TvVector<wchar_t>& list, std::initializer_list<std::wstring_view> parts)
{
    int length = 0;
    for (const auto part : parts)
        length += static_cast<int>(part.size());
    TvVector<wchar_t> fresh;
    fresh.setLogicalLength(length);
    if (fresh.length() != length)
        return;
    wchar_t* end = fresh.begin();
    for (const auto part : parts)
        end = std::copy(part.begin(), part.end(), end);
    std::sort(fresh.begin(), end);
    list = fresh;
}

template<std::size_t N>
std::wstring_view all(const wchar_t (&puncts)[N])
{
    return {puncts, N};
}

} // namespace

// Makes the lists anew after their destructors, empty: static objects of other modules that
// live longer may ask. Built before them, so destroyed after them.
struct TvCharCategoryEnd {
    ~TvCharCategoryEnd()
    {
        TvCharCategory& lists = TvCharCategory::s_instance;
        for (TvVector<wchar_t>* list : {&lists.m_leftPuncts, &lists.m_normalPuncts, &lists.m_rightPuncts,
                                        &lists.m_quotationPuncts, &lists.m_allPuncts})
            new (list) TvVector<wchar_t>();
    }
};

namespace {

TvCharCategoryEnd g_charCategoryEnd __attribute__((init_priority(TvStartup::kCharCategories)));

} // namespace

TvCharCategory TvCharCategory::s_instance __attribute__((init_priority(TvStartup::kCharCategories)));

TvCharCategory::TvCharCategory()
{
    initLeftPuncts();
    initRightPuncts();
    initNormalPuncts();
    initQuotationPuncts();
    initAllPuncts();
}

void TvCharCategory::initLeftPuncts() { setList(m_leftPuncts, {all(kLeft)}); }

void TvCharCategory::initRightPuncts() { setList(m_rightPuncts, {all(kRight)}); }

void TvCharCategory::initNormalPuncts() { setList(m_normalPuncts, {all(kNormal)}); }

void TvCharCategory::initQuotationPuncts() { setList(m_quotationPuncts, {all(kQuotation)}); }

void TvCharCategory::initAllPuncts()
{
    setList(m_allPuncts, {all(kLeft), all(kRight), all(kNormal), all(kQuotation)});
}
