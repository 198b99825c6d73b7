// PlainStream.h - the least stream there can be: what TvStreamBuf makes of its primitives.
#ifndef TV_TEST_PLAIN_STREAM_H
#define TV_TEST_PLAIN_STREAM_H

#include "TvStreamBuf.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

/// Supplies the pure operations alone, over a byte text, and writes down each call. It holds
/// what it is told to hold: a transfer past the end throws std::string.
class PlainStream : public TvStreamBuf {
public:
    using TvStreamBuf::readBytes;
    using TvStreamBuf::seek;
    using TvStreamBuf::writeBytes;

    explicit PlainStream(std::string content = {}, std::uint64_t cursor = 0)
        : m_content(std::move(content)), m_cursor(cursor)
    {
    }

    std::uint64_t tell() const override { return m_cursor; }
    std::uint64_t length() const override { return m_content.size(); }
    std::int64_t seek(std::uint64_t offset, TvIO::SeekType type) override
    {
        m_calls.push_back("seek " + std::to_string(offset) + " " + std::to_string(type));
        m_cursor = offset;
        return 1000 + static_cast<std::int64_t>(offset);
    }
    void readBytes(unsigned char* buf, std::uint32_t count) override
    {
        m_calls.push_back("read " + std::to_string(count));
        if (m_cursor + count > m_content.size())
            throw std::string("read past the end");
        std::memcpy(buf, m_content.data() + m_cursor, count);
        m_cursor += count;
    }
    void writeBytes(const unsigned char* buf, std::uint32_t count) override
    {
        m_calls.push_back("write " + std::to_string(count));
        if (m_cursor + count > m_content.size())
            m_content.resize(m_cursor + count);
        std::memcpy(m_content.data() + m_cursor, buf, count);
        m_cursor += count;
    }

    const std::string& content() const { return m_content; }
    void setCursor(std::uint64_t cursor) { m_cursor = cursor; }
    const std::vector<std::string>& calls() const { return m_calls; }

private:
    std::string m_content;
    std::uint64_t m_cursor;
    std::vector<std::string> m_calls;
};

#endif
