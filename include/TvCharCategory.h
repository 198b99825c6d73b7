// TvCharCategory.h - punctuation by kind, for wrapping East Asian and western text.
//
// For where lines may break between any two characters, take the line-break classes of
// OrCodePage.h.
#ifndef TV_CHAR_CATEGORY_H
#define TV_CHAR_CATEGORY_H

#include "TvExport.h"
#include "TvVector.h"

/// Sorted lists of left, normal, right and quotation punctuation; one object, s_instance.
///
/// Left punctuation belongs to the text after it and does not end a line; right and normal
/// punctuation belong to the text before it and do not start one; quotation marks may be
/// either. Currency signs count as left, per cent and degree signs as normal punctuation.
///
/// A character may stand in two lists, and twice in one: the lists are sorted and not
/// freed of duplicates.
///
/// **Errors**: when memory runs out, status 6 may be reported, and the list stays as it was.
/// **Memory**: the lists, made when the library is loaded and freed when it is unloaded;
/// before and after that allPuncts().length() and its kin are 0.
/// **Threads**: the lists may be read by any thread, but not be copied (see TvVector.h).
///
///     const TvVector<wchar_t>& left = TvCharCategory::s_instance.leftPuncts();
///     bool opens = std::binary_search(left.begin(), left.end(), L'(');          // true
class TV_OSBASE_API TvCharCategory {
public:
    /// The one object, made when the library is loaded.
    static TvCharCategory s_instance;

    /// What belongs to the text after it: opening brackets, currency signs.
    const TvVector<wchar_t>& leftPuncts() const { return m_leftPuncts; }
    /// What belongs to the text before it: stops, commas, per cent and degree signs.
    const TvVector<wchar_t>& normalPuncts() const { return m_normalPuncts; }
    /// Closing brackets.
    const TvVector<wchar_t>& rightPuncts() const { return m_rightPuncts; }
    /// Quotation marks that open as well as close.
    const TvVector<wchar_t>& quotationPuncts() const { return m_quotationPuncts; }
    /// The four lists in one.
    const TvVector<wchar_t>& allPuncts() const { return m_allPuncts; }

    /// Makes leftPuncts() again; allPuncts() stays as it is.
    void initLeftPuncts();
    /// Makes rightPuncts() again; allPuncts() stays as it is.
    void initRightPuncts();
    /// Makes normalPuncts() again; allPuncts() stays as it is.
    void initNormalPuncts();
    /// Makes quotationPuncts() again; allPuncts() stays as it is.
    void initQuotationPuncts();

private:
    friend struct TvCharCategoryEnd;

    TvCharCategory();
    ~TvCharCategory() = default;
    TvCharCategory(const TvCharCategory&) = delete;
    TvCharCategory& operator=(const TvCharCategory&) = delete;
    TV_LOCAL void initAllPuncts();

    TvVector<wchar_t> m_leftPuncts;
    TvVector<wchar_t> m_normalPuncts;
    TvVector<wchar_t> m_rightPuncts;
    TvVector<wchar_t> m_quotationPuncts;
    TvVector<wchar_t> m_allPuncts;
};

#endif
