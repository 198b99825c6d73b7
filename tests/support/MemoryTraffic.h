// MemoryTraffic.h - operations on a memory stream, chosen by numbers from outside, beside the
// plainest model of it.
#ifndef TV_TEST_MEMORY_TRAFFIC_H
#define TV_TEST_MEMORY_TRAFFIC_H

#include "TvMemStreamBuf.h"

#include "FileStreams.h"
#include "Recorder.h"
#include "StreamChoices.h"

#include <algorithm>
#include <string>
#include <vector>

/// What TvFlatMemBuf promises, by the letter.
struct MemoryModel {
    static constexpr int kUnknown = -1; ///< a byte that nobody has given a value

    std::vector<int> bytes;
    std::uint32_t cursor = 0;
    std::size_t errors = 0;

    std::uint32_t length() const { return static_cast<std::uint32_t>(bytes.size()); }
    bool fits(std::uint64_t position, std::uint64_t count)
    {
        const bool result = position + count <= bytes.size();
        errors += !result;
        return result;
    }
    void end(std::uint64_t length) { bytes.resize(length, kUnknown); }
    void put(std::uint64_t position, const std::string& text)
    {
        for (std::size_t i = 0; i < text.size(); ++i)
            bytes[position + i] = static_cast<unsigned char>(text[i]);
    }
    bool matches(std::uint64_t position, const std::string& text) const
    {
        for (std::size_t i = 0; i < text.size(); ++i)
            if (bytes[position + i] != kUnknown && bytes[position + i] != static_cast<unsigned char>(text[i]))
                return false;
        return true;
    }
};

/// A stream and its model. A recorder of its own is installed for its life time.
class MemoryTraffic {
public:
    /// The stream begins with room for `capacity` bytes.
    MemoryTraffic(StreamChoices choices, std::uint32_t capacity)
        : m_choices(std::move(choices)), m_stream(capacity)
    {
    }

    /// Makes one step; what went wrong, or null.
    const char* step()
    {
        if (!one())
            return "the stream gave other bytes than its model";
        if (m_stream.tell() != m_model.cursor || m_stream.isEOS() != (m_model.cursor >= m_model.length()))
            return "the cursor is elsewhere";
        if (m_stream.length() != m_model.length() || m_stream.bufSize() < m_model.length())
            return "the length is another";
        if (!m_model.matches(0, held()))
            return "the stream holds other bytes";
        if (m_recorder.faults().size() != m_model.errors)
            return "not as many reports as range errors";
        if (m_model.length() > 200000) {
            m_stream.close();
            m_model.bytes.clear();
            m_model.cursor = 0;
        }
        return nullptr;
    }

private:
    std::string held() const
    {
        const unsigned char* const first = m_stream.buffer();
        return first != nullptr ? std::string(first, first + m_stream.length()) : std::string();
    }

    // A position from outside: mostly near the bytes, at times near the end of 32 bits or past it.
    std::uint64_t anyPosition(std::uint32_t near)
    {
        const std::uint64_t places[] = {0xFFFFFFFFu - std::uint64_t{near}, 0x80000000u + std::uint64_t{near},
                                        0x100000000u + std::uint64_t{near}};
        const std::uint32_t choice = m_choices.below(32);
        return choice < 3 ? places[choice] : near;
    }

    bool one()
    {
        const std::uint32_t position = m_choices.below(m_model.length() + 5);
        const std::string text = m_choices.bytes(m_choices.size(3000));
        const std::uint32_t what = m_choices.below(24);
        return what < 8    ? oneByte(what, position)
               : what < 18 ? severalBytes(what, position, text)
                           : moves(what, position, text);
    }

    bool oneByte(std::uint32_t what, std::uint32_t position)
    {
        const std::uint64_t given = anyPosition(position);
        const auto place = static_cast<std::uint32_t>(given);
        const auto isThere = [this](std::uint32_t at, unsigned char b) {
            return m_model.matches(at, std::string(1, static_cast<char>(b)));
        };
        switch (what) {
        case 0: {
            const bool atEnd = m_model.cursor >= m_model.length();
            const unsigned char b = m_stream.readByte();
            m_model.errors += atEnd;
            return atEnd ? b == 0 : isThere(m_model.cursor++, b);
        }
        case 1:
        case 2:
            m_stream.writeByte('w');
            m_model.end(m_model.cursor + 1);
            m_model.put(m_model.cursor++, "w");
            return true;
        case 3:
            m_stream.writeByte(position, 'p');
            if (m_model.length() == 0 && position == 0)
                m_model.end(1);
            else if (position > m_model.length())
                m_model.end(position);
            if (position < m_model.length())
                m_model.put(position, "p");
            m_model.cursor = position;
            return true;
        case 4: {
            m_model.errors += m_model.cursor > m_model.length(); // the seek in it
            const unsigned char b = m_stream.getByte();
            return !m_model.fits(m_model.cursor, 1) || isThere(m_model.cursor++, b);
        }
        case 5: {
            const unsigned char b = m_stream.getByte(given);
            return m_model.fits(place, 1) ? isThere(place, b) : b == 0;
        }
        case 6:
            m_stream.setByte(given, 's');
            if (m_model.fits(place, 1))
                m_model.put(place, "s");
            return true;
        default:
            m_stream.setByte('S');
            if (m_model.fits(m_model.cursor, 1))
                m_model.put(m_model.cursor, "S");
            return true;
        }
    }

    bool severalBytes(std::uint32_t what, std::uint32_t position, const std::string& text)
    {
        const auto count = static_cast<std::uint32_t>(text.size());
        const std::uint64_t given = anyPosition(position);
        const auto place = static_cast<std::uint32_t>(given);
        std::string buf(count, '?');
        auto* const room = reinterpret_cast<unsigned char*>(buf.data());
        switch (what) {
        case 8:
        case 9:
            m_stream.readBytes(room, count);
            if (!m_model.fits(m_model.cursor, count))
                return buf == std::string(count, '?');
            m_model.cursor += count;
            return m_model.matches(m_model.cursor - count, buf);
        case 10:
            m_stream.readBytes(given, room, count);
            return m_model.fits(place, count) ? m_model.matches(place, buf) : buf == std::string(count, '?');
        case 11:
        case 12:
            m_stream.writeBytes(bytesOf(text), count);
            m_model.end(m_model.cursor + count);
            m_model.put(m_model.cursor, text);
            m_model.cursor += count;
            return true;
        case 13:
            m_stream.writeBytes(position, bytesOf(text), count);
            m_model.end(std::max<std::uint64_t>(m_model.length(), position + count));
            m_model.put(position, text);
            m_model.cursor = position;
            return true;
        case 14: { // bytes of its own
            const unsigned char* const own = m_stream.buffer();
            const auto ownCount = std::min(count, m_model.length() - std::min(position, m_model.length()));
            if (own == nullptr || ownCount == 0 || m_model.cursor > m_model.length())
                return true;
            const std::vector<int> copy(m_model.bytes.begin() + position,
                                        m_model.bytes.begin() + position + ownCount);
            m_stream.writeBytes(own + position, ownCount);
            m_model.end(m_model.cursor + ownCount);
            std::copy(copy.begin(), copy.end(), m_model.bytes.begin() + m_model.cursor);
            m_model.cursor += ownCount;
            return true;
        }
        case 15: { // the spare room may be read as well
            const std::uint64_t room32 = m_stream.bufSize();
            m_stream.getBytes(given, room, count);
            if (place + std::uint64_t{count} > room32) {
                ++m_model.errors;
                return buf == std::string(count, '?');
            }
            return place >= m_model.length() ||
                   m_model.matches(place, buf.substr(0, m_model.length() - place));
        }
        case 16: {
            const bool fits = m_model.cursor + std::uint64_t{count} <= m_stream.bufSize();
            m_stream.getBytes(room, count);
            m_model.errors += !fits;
            return fits || buf == std::string(count, '?');
        }
        default:
            m_stream.setBytes(given, bytesOf(text), count);
            if (m_model.fits(place, count))
                m_model.put(place, text);
            return true;
        }
    }

    bool moves(std::uint32_t what, std::uint32_t position, const std::string& text)
    {
        const auto count = static_cast<std::uint32_t>(text.size());
        switch (what) {
        case 18:
        case 19: {
            const std::uint32_t type = m_choices.below(5);
            const std::uint64_t offset = anyPosition(position);
            const std::uint64_t places[] = {offset, m_model.cursor + offset, m_model.cursor - offset,
                                            m_model.length() - offset, m_model.cursor};
            const auto place = static_cast<std::uint32_t>(places[type]);
            if (type < 4 && place > m_model.length())
                ++m_model.errors;
            else
                m_model.cursor = type < 4 ? place : m_model.cursor;
            return m_stream.seek(offset, type) == m_model.cursor;
        }
        case 20:
            m_stream.resize(position);
            m_model.end(position);
            return true;
        case 21:
            m_stream.reserve(position * 2);
            return m_stream.bufSize() >= position * 2;
        case 22:
            m_stream.truncate();
            m_model.end(m_model.cursor);
            return true;
        default:
            return m_choices.below(2) ? opens(position % 50, text) : shares(text, count);
        }
    }

    bool opens(std::uint32_t position, const std::string& text)
    {
        std::string source = text;
        const auto count = static_cast<std::uint32_t>(text.size());
        m_stream.open(source.data(), count, position);
        m_model.bytes.clear();
        m_model.end(count + position);
        m_model.put(0, text);
        m_model.cursor = position;
        return true;
    }

    bool shares(const std::string& text, std::uint32_t count)
    {
        TvFlatMemBuf copy(m_stream); // takes over, while the old one is changed behind its back
        m_stream.writeBytes(bytesOf(text), count);
        m_stream.close();
        m_stream = copy;
        return true;
    }

    StreamChoices m_choices;
    Recorder m_recorder;
    TvFlatMemBuf m_stream;
    MemoryModel m_model;
};

#endif
