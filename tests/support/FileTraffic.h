// FileTraffic.h - operations on file streams, chosen by numbers from outside, beside the
// plainest model of a file.
#ifndef TV_TEST_FILE_TRAFFIC_H
#define TV_TEST_FILE_TRAFFIC_H

#include "TvFileStreamBuf.h"

#include "FileStreams.h"
#include "StreamChoices.h"

#include <algorithm>
#include <string>

/// A file as a text and a cursor.
struct FileModel {
    std::string bytes;
    std::uint64_t cursor = 0;

    void put(const std::string& text)
    {
        if (text.empty())
            return;
        bytes.resize(std::max<std::size_t>(bytes.size(), cursor + text.size()));
        bytes.replace(cursor, text.size(), text);
    }
    /// What a read of `count` bytes leaves in a buffer full of "?".
    std::string got(std::size_t count) const
    {
        std::string result(count, '?'); // a short read leaves the rest alone
        if (cursor < bytes.size())
            bytes.copy(result.data(), count, cursor);
        return result;
    }
    void pass(std::size_t count)
    {
        if (cursor < bytes.size())
            cursor = std::min<std::uint64_t>(cursor + count, bytes.size());
    }
};

/// A stream that is open for reading and writing, on an empty file, and its model.
class FileTraffic {
public:
    /// `setsBytes`: whether setBytes() is among the operations. What it puts into the cache of
    /// TvFileOStreamBuf never reaches the file.
    FileTraffic(StreamChoices choices, TvFileStreamBufImpl& stream, bool setsBytes)
        : m_choices(std::move(choices)), m_stream(stream), m_setsBytes(setsBytes)
    {
    }

    /// Makes one step; what went wrong, or null.
    const char* step()
    {
        if (!one())
            return "the stream gave other bytes than its model";
        if (m_stream.tell() != m_model.cursor)
            return "the cursor is elsewhere";
        return nullptr;
    }

    /// What the file has to hold once the stream is closed.
    const std::string& bytes() const { return m_model.bytes; }

private:
    bool one()
    {
        const std::string text = m_choices.bytes(m_choices.size(30000));
        const auto count = static_cast<std::uint32_t>(text.size());
        const std::uint32_t position = m_choices.below(
            static_cast<std::uint32_t>(std::min<std::size_t>(m_model.bytes.size(), 500000)) + 10);
        switch (m_choices.below(12)) {
        case 0:
        case 1:
        case 2:
            write(m_stream, text);
            m_model.put(text);
            m_model.cursor += count;
            return true;
        case 3:
        case 4: {
            const bool right = read(m_stream, count) == m_model.got(count);
            m_model.pass(count);
            return right;
        }
        case 5:
            return get(m_stream, count) == m_model.got(count);
        case 6: { // leaves the cursor behind what it read
            std::string buf(count, '?');
            m_stream.getBytes(position, reinterpret_cast<unsigned char*>(buf.data()), count);
            m_model.cursor = position;
            const bool right = buf == m_model.got(count);
            m_model.pass(count);
            return right;
        }
        case 7:
            return !m_setsBytes || sets(text, position);
        case 8:
            m_stream.writeByte('b');
            m_model.put("b");
            ++m_model.cursor;
            return true;
        case 9:
            return looksFromOutside();
        default:
            return seeks(position);
        }
    }

    bool sets(const std::string& text, std::uint64_t position)
    {
        const auto count = static_cast<std::uint32_t>(text.size());
        if (m_choices.below(2)) {
            m_stream.setBytes(bytesOf(text), count);
            m_model.put(text);
        } else {
            m_stream.setBytes(position, bytesOf(text), count);
            m_model.cursor = position;
            m_model.put(text);
            m_model.cursor += count;
        }
        return true;
    }

    // To the end and back, on which way all has reached the file.
    bool looksFromOutside()
    {
        const auto cursor = m_model.cursor;
        m_stream.seek(0, TvIO::kSeekFromEnd);
        const bool right =
            m_stream.tell() == m_model.bytes.size() && m_stream.length() == m_model.bytes.size();
        m_stream.seek(cursor, TvIO::kSeekFromStart);
        return right;
    }

    bool seeks(std::uint64_t offset)
    {
        const std::uint32_t type = m_choices.below(5);
        const std::uint64_t end = m_model.bytes.size();
        const std::uint64_t places[] = {offset, m_model.cursor + offset, m_model.cursor - offset,
                                        end + offset, offset};
        if (type == TvIO::kSeekBackward && offset > m_model.cursor)
            return thrownBy([&] { m_stream.seek(offset, type); }) == L"File internal error!";
        if (places[type] > 1000000)
            return true;
        m_model.cursor = places[type];
        return m_stream.seek(offset, type) == 0;
    }

    StreamChoices m_choices;
    TvFileStreamBufImpl& m_stream;
    bool m_setsBytes;
    FileModel m_model;
};

/// A file that is read through a mapping: each operation gives the file's bytes or throws.
class MappedFileTraffic {
public:
    MappedFileTraffic(StreamChoices choices, TvFileIStreamBuf& stream, const std::string& content)
        : m_choices(std::move(choices)), m_stream(stream), m_content(content)
    {
    }

    /// Makes one step; what went wrong, or null.
    const char* step()
    {
        if (!one())
            return "the stream gave other bytes than the file holds";
        if (m_stream.tell() != m_cursor)
            return "the cursor is elsewhere";
        if (m_stream.length() != m_content.size())
            return "the length is another";
        return nullptr;
    }

private:
    bool one()
    {
        switch (m_choices.below(6)) {
        case 0:
        case 1:
            return seeks();
        case 2: {
            unsigned char b = 0;
            const std::wstring thrown = thrownBy([&] { b = m_stream.readByte(); });
            if (m_cursor == m_content.size())
                return thrown == L"End of file!";
            return thrown == L"nothing" && b == static_cast<unsigned char>(m_content[m_cursor++]);
        }
        case 3:
            return thrownBy([&] { m_stream.writeByte('w'); }) == L"Write file error!";
        default:
            return reads();
        }
    }

    bool reads()
    {
        const std::uint32_t count = m_choices.size(100000);
        std::string buf(count, '?');
        const bool gets = m_choices.below(2) != 0; // moves the cursor as well
        const std::wstring thrown =
            thrownBy([&] { buf = gets ? get(m_stream, count) : read(m_stream, count); });
        if (m_cursor + count > m_content.size())
            return thrown == L"End of file!";
        m_cursor += count;
        return thrown == L"nothing" && m_content.compare(m_cursor - count, count, buf) == 0;
    }

    bool seeks()
    {
        const std::uint64_t size = m_content.size();
        std::uint64_t offset = m_choices.below(static_cast<std::uint32_t>(size) + 3);
        if (m_choices.below(32) == 0)
            offset = 0 - offset;
        const std::uint32_t type = m_choices.below(5);
        const std::uint64_t places[] = {offset, m_cursor + offset, m_cursor - offset, size - offset, offset};
        std::int64_t result = 0;
        const std::wstring thrown = thrownBy([&] { result = m_stream.seek(offset, type); });
        if (places[type] > size)
            return thrown == L"Out of file stream buffer!";
        m_cursor = places[type];
        return thrown == L"nothing" && result == static_cast<std::int64_t>(m_cursor);
    }

    StreamChoices m_choices;
    TvFileIStreamBuf& m_stream;
    const std::string& m_content;
    std::uint64_t m_cursor = 0;
};

#endif
