// FlatMemBufText.h - streams with text in them, and what they report.
#ifndef TV_TEST_FLAT_MEM_BUF_TEXT_H
#define TV_TEST_FLAT_MEM_BUF_TEXT_H

#include "TvMemStreamBuf.h"

#include <cstdint>
#include <string>
#include <vector>

using Messages = std::vector<std::wstring>;

inline const Messages kOutOfBuffer{L"Out of stream buffer!"};
inline const Messages kEndOfBuffer{L"End of stream buffer!"};

inline const unsigned char* bytes(const char* text) { return reinterpret_cast<const unsigned char*>(text); }

/// All bytes up to the length.
inline std::string text(const TvStreamBuf& stream)
{
    const unsigned char* const first = stream.buffer();
    return first != nullptr ? std::string(first, first + stream.length()) : std::string();
}

/// A stream that holds "abcdef" with the cursor at `cursor`.
class SixBytes : public TvFlatMemBuf {
public:
    explicit SixBytes(std::uint32_t cursor) : TvFlatMemBuf(0)
    {
        writeBytes(bytes("abcdef"), 6);
        moveTo(cursor);
    }
};

#endif
