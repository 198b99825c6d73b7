// BigFontIni.h - the lines of a BIGFONT.INI.
#ifndef TV_BIG_FONT_INI_H
#define TV_BIG_FONT_INI_H

#include <cstddef>
#include <map>
#include <string>

namespace TvDetail {

/// Takes the bytes of a file in pieces of any size and puts what its lines say into a map; the
/// form of a line is told at ReadBigfontIni().
class BigFontIni {
public:
    explicit BigFontIni(std::map<std::wstring, int>& map) : m_map(map) {}

    /// Throws std::bad_alloc, like finish().
    void take(const char* bytes, std::size_t count);

    /// The end of the file, which ends its last line.
    void finish();

private:
    static constexpr std::size_t kLineCharacters = 512;
    // A character has at most 4 bytes. One byte more than the longest line that counts, so that
    // a CR behind it is seen; what stands further back is of no interest.
    static constexpr std::size_t kLineBytes = 4 * kLineCharacters + 1;

    void endLine();

    std::map<std::wstring, int>& m_map;
    unsigned char m_line[kLineBytes];
    std::size_t m_count = 0; // bytes in m_line
    bool m_isFirst = true;
};

} // namespace TvDetail

#endif
