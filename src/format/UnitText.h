// UnitText.h - the pieces that drawing-unit text is made of.
#ifndef TV_FORMAT_UNIT_TEXT_H
#define TV_FORMAT_UNIT_TEXT_H

#include "TvFormat.h"

namespace TvFormatDetail {

/// Room for any unit text and its terminating 0.
constexpr int kUnitTextRoom = 2048;

/// The flag byte of a mode word.
enum UnitFlags {
    kNoZeroFeet = 0x01,
    kNoZeroInches = 0x02,
    kNoLeadingZero = 0x04,
    kNoTrailingZeros = 0x08,
    kNeverCompact = 0x10,
    kLinearSettings = 0x20,
    kLinearWithoutFeet = 0x40,
    kMarkup = 0x80 ///< degree sign as escape, stacked fractions
};

/// The degree sign as an inline escape.
constexpr const wchar_t* kDegreeEscape = L"\\U+00B0";
constexpr int kDegreeEscapeLength = 7;

/// A unit text under construction, in a buffer of fixed room. Pieces that do not fit are cut
/// off; the longest text that the formatters make is far shorter.
class UnitText {
public:
    UnitText() { clear(); }

    void clear()
    {
        m_length = 0;
        m_text[0] = 0;
    }

    /// Appends what FormatUtil::outputStringWithFormat() makes of the arguments.
    template<class... Args>
    void add(const wchar_t* format, Args... args);

    void cut(int length)
    {
        m_length = length;
        m_text[length] = 0;
    }

    int length() const { return m_length; }
    wchar_t* text() { return m_text; }
    const wchar_t* text() const { return m_text; }

private:
    int m_length;
    wchar_t m_text[kUnitTextRoom];
};

/// Whether feet and inches, fractions and bearings are written without blanks.
bool isCompact(int flags);

/// Writes what FormatUtil::formatQModeDouble() gives. False when the value is not finite:
/// the text is then a word and no number.
bool makeUnitText(UnitText& text, double value, int mode, unsigned maxLength);

/// The text, or its part behind the minus sign where all digits before an exponent are zero.
const wchar_t* withoutNegativeZero(const wchar_t* text);

/// Writes a non-negative distance in `style` (see OrnaAppUnitSets::linearStyle), in exponent
/// notation when it has more than `maxLength` characters.
void addDistance(UnitText& text, double value, int style, int precision, int flags, unsigned maxLength);

/// Writes an angle in radians in `style` (see OrnaAppUnitSets::angleStyle), with fewer
/// fraction digits where `maxLength` is short.
void addAngle(UnitText& text, double value, int style, int precision, int flags, unsigned maxLength);

/// `length` less `count`, but not below 0.
constexpr unsigned shortened(unsigned length, unsigned count) { return length > count ? length - count : 0; }

/// The low 32 bits of a value's integer part, as a signed number.
int wrappedInteger(double value);

} // namespace TvFormatDetail

template<class... Args>
void TvFormatDetail::UnitText::add(const wchar_t* format, Args... args)
{
    const int added =
        FormatUtil::outputStringWithFormat(m_text + m_length, kUnitTextRoom - m_length, format, args...);
    if (added > 0)
        m_length += added;
    m_text[m_length] = 0;
}

#endif
