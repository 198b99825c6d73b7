// ByteDecoder.h - what the C library's converters make of a few bytes.
#ifndef TV_BYTE_DECODER_H
#define TV_BYTE_DECODER_H

#include <iconv.h>
#include <string>
#include <string_view>

/// Decodes bytes of one code page, each text on its own.
///
/// **Errors**: isOpen() is false when the C library has no such converter; nothing is thrown
/// but std::bad_alloc. **Memory**: owns the converter. **Threads**: one.
///
///     ByteDecoder decoder("CP932");
///     std::u16string kanji = decoder.decode("\x88\x9F");        // U+4E9C
class ByteDecoder {
public:
    explicit ByteDecoder(const char* converter);
    ~ByteDecoder();
    ByteDecoder(const ByteDecoder&) = delete;
    ByteDecoder& operator=(const ByteDecoder&) = delete;

    bool isOpen() const;

    /// The UTF-16 text of `bytes`; empty when they are not a whole text of the code page.
    std::u16string decode(std::string_view bytes);

private:
    iconv_t m_converter;
};

#endif
