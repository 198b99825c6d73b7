// FuzzInput.h - what the fuzz targets share: a claim, bytes as choices, blocks of just their size.
#ifndef TV_FUZZ_INPUT_H
#define TV_FUZZ_INPUT_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

/// Ends the run as a finding unless `holds`; says the line it stands in.
inline void require(bool holds, int line = __builtin_LINE())
{
    if (holds)
        return;
    std::fprintf(stderr, "the claim in line %d does not hold\n", line);
    std::abort();
}

/// Ends the run as a finding that says what is wrong; null is nothing.
inline void requireNothing(const char* wrong)
{
    if (!wrong)
        return;
    std::fprintf(stderr, "%s\n", wrong);
    std::abort();
}

/// The bytes of an input, taken from its front as numbers and texts. Zeros follow its end.
class Choices {
public:
    Choices(const std::uint8_t* data, std::size_t size) : m_at(data), m_end(data + size) {}

    bool isEmpty() const { return m_at == m_end; }
    std::size_t left() const { return static_cast<std::size_t>(m_end - m_at); }

    std::uint8_t byte() { return m_at < m_end ? *m_at++ : std::uint8_t{0}; }

    /// A number of `bytes` bytes, the lowest first.
    std::uint64_t number(int bytes)
    {
        std::uint64_t value = 0;
        for (int i = 0; i < bytes; ++i)
            value |= static_cast<std::uint64_t>(byte()) << 8 * i;
        return value;
    }

    /// A number below `limit`, out of as few bytes as may hold it.
    std::uint32_t below(std::uint32_t limit)
    {
        const int bytes = limit <= 0x100 ? 1 : limit <= 0x10000 ? 2 : limit <= 0x1000000 ? 3 : 4;
        return static_cast<std::uint32_t>(number(bytes) % limit);
    }

    /// The next `count` bytes, or those that are left.
    std::string text(std::size_t count)
    {
        const std::size_t size = std::min(count, left());
        const std::string result(reinterpret_cast<const char*>(m_at), size);
        m_at += size;
        return result;
    }
    std::string rest() { return text(left()); }

private:
    const std::uint8_t* m_at;
    const std::uint8_t* m_end;
};

/// The elements alone, without a terminating 0, so that a memory checker sees every access
/// behind them.
template<class T>
std::unique_ptr<T[]> exactly(const std::basic_string<T>& text)
{
    std::unique_ptr<T[]> block(new T[text.size()]);
    std::copy(text.begin(), text.end(), block.get());
    return block;
}

/// The elements and a terminating 0.
template<class T>
std::unique_ptr<T[]> terminated(const std::basic_string<T>& text)
{
    return exactly(text + T(0));
}

/// Wide text out of bytes: one below 0x80 is an element of its own; any other up to 0xFE makes
/// one with its 7 low bits and the next byte, whose follower lends the lowest bit; 0xFF and
/// three bytes make a large or negative one.
inline std::wstring wideOf(const std::string& bytes)
{
    const auto byteAt = [&](std::size_t at) {
        return at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0u;
    };
    std::wstring wide;
    for (std::size_t at = 0; at < bytes.size();) {
        const unsigned b = byteAt(at);
        if (b < 0x80) {
            wide += static_cast<wchar_t>(b);
            at += 1;
        } else if (b < 0xFF) {
            wide += static_cast<wchar_t>((b & 0x7F) << 9 | byteAt(at + 1) << 1 | byteAt(at + 2) % 2);
            at += 2;
        } else {
            wide += static_cast<wchar_t>(byteAt(at + 1) << 24 | byteAt(at + 2) << 16 | byteAt(at + 3));
            at += 4;
        }
    }
    return wide;
}

#endif
