#include "ByteDecoder.h"

#include <cstddef>

namespace {

iconv_t invalidConverter() { return reinterpret_cast<iconv_t>(-1); }

constexpr std::size_t kFailed = static_cast<std::size_t>(-1);

} // namespace

ByteDecoder::ByteDecoder(const char* converter) : m_converter(iconv_open("UTF-16LE", converter)) {}

ByteDecoder::~ByteDecoder()
{
    if (isOpen())
        iconv_close(m_converter);
}

bool ByteDecoder::isOpen() const { return m_converter != invalidConverter(); }

std::u16string ByteDecoder::decode(std::string_view bytes)
{
    char out[64];
    char* outEnd = out;
    std::size_t room = sizeof out;
    char* in = const_cast<char*>(bytes.data()); // iconv does not write there
    std::size_t left = bytes.size();

    iconv(m_converter, nullptr, nullptr, nullptr, nullptr);
    if (iconv(m_converter, &in, &left, &outEnd, &room) == kFailed)
        return {};
    // A converter may hold back a letter that the next byte could give an accent.
    if (iconv(m_converter, nullptr, nullptr, &outEnd, &room) == kFailed)
        return {};

    std::u16string text;
    for (const char* p = out; p != outEnd; p += 2) {
        const auto low = static_cast<unsigned char>(p[0]);
        const auto high = static_cast<unsigned char>(p[1]);
        text += static_cast<char16_t>(high << 8 | low);
    }
    return text;
}
