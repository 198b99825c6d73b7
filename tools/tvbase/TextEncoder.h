// TextEncoder.h - wide text to bytes of one code page, with what the code page lacks known.
#ifndef TVBASE_TEXT_ENCODER_H
#define TVBASE_TEXT_ENCODER_H

#include "TvCodePages.h"
#include "TvVector.h"

#include <cstddef>
#include <string>
#include <vector>

/// Converts through TvCharMapper. Characters beyond the basic plane are two surrogates in wide
/// text: in UTF-8 they become one sequence of four bytes, in every other code page the two
/// escapes. A surrogate alone becomes its escape in UTF-8 too, which has no other form for it.
///
/// **Errors**: std::bad_alloc. **Memory**: keeps its buffers. **Threads**: one.
class TextEncoder {
public:
    /// The registry must be filled, and the tables of `page` be there.
    explicit TextEncoder(code_page_id page);

    code_page_id page() const { return m_page; }

    /// Index of the first element from `from` on whose character the code page lacks, else
    /// `length`.
    std::size_t findMissing(const wchar_t* text, std::size_t length, std::size_t from) const;

    /// Appends the bytes of `length` elements, none of them 0, to `out`.
    void encode(const wchar_t* text, std::size_t length, std::string& out);

private:
    void encodeRun(const wchar_t* text, std::size_t length, std::string& out);

    code_page_id m_page;
    std::vector<bool> m_has; // per UTF-16 unit
    TvVector<char> m_bytes;
};

/// Elements of the character at `text`: 2 for two surrogates that belong together, else 1.
int wideLength(const wchar_t* text, std::size_t available);

/// The character at `text`.
char32_t wideCharacter(const wchar_t* text, std::size_t available);

#endif
