// Streams driven by random programs, beside the plainest model of each.

#include "TvFileStreamBuf.h"
#include "TvMemStreamBuf.h"

#include "FileStreams.h"
#include "Recorder.h"
#include "TestFiles.h"
#include "TestScale.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

class Program {
public:
    explicit Program(std::uint64_t seed) : m_random(seed) {}

    std::uint32_t below(std::uint32_t limit)
    {
        return std::uniform_int_distribution<std::uint32_t>(0, limit - 1)(m_random);
    }
    // Mostly small, at times large.
    std::uint32_t size(std::uint32_t large) { return below(8) == 0 ? below(large) : below(20); }
    std::string bytes(std::uint32_t count)
    {
        std::string result(count, '\0');
        for (char& c : result)
            c = static_cast<char>(m_random());
        return result;
    }

private:
    std::mt19937_64 m_random;
};

constexpr int kUnknown = -1; // a byte that nobody has given a value

// What TvFlatMemBuf promises, by the letter.
struct MemoryModel {
    std::vector<int> bytes;
    std::uint32_t cursor = 0;
    int errors = 0;

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

std::string held(const TvFlatMemBuf& stream)
{
    const unsigned char* const first = stream.buffer();
    return first != nullptr ? std::string(first, first + stream.length()) : std::string();
}

// One random operation on both; false when they disagree.
bool step(Program& program, TvFlatMemBuf& stream, MemoryModel& model)
{
    const std::uint32_t position = program.below(model.length() + 5);
    const std::string text = program.bytes(program.size(3000));
    const auto count = static_cast<std::uint32_t>(text.size());
    std::string buf(count, '?');
    auto* const room = reinterpret_cast<unsigned char*>(buf.data());
    switch (program.below(20)) {
    case 0: {
        const bool atEnd = model.cursor >= model.length();
        const unsigned char b = stream.readByte();
        model.errors += atEnd;
        return atEnd ? b == 0 : model.matches(model.cursor++, std::string(1, static_cast<char>(b)));
    }
    case 1:
        stream.writeByte('w');
        model.end(model.cursor + 1);
        model.put(model.cursor++, "w");
        return true;
    case 2:
        stream.writeByte(position, 'p');
        if (model.length() == 0 && position == 0)
            model.end(1);
        else if (position > model.length())
            model.end(position);
        if (position < model.length())
            model.put(position, "p");
        model.cursor = position;
        return true;
    case 3: {
        model.errors += model.cursor > model.length(); // the seek in it
        const unsigned char b = stream.getByte();
        return !model.fits(model.cursor, 1) ||
               model.matches(model.cursor++, std::string(1, static_cast<char>(b)));
    }
    case 4: {
        const unsigned char b = stream.getByte(position);
        return model.fits(position, 1) ? model.matches(position, std::string(1, static_cast<char>(b)))
                                       : b == 0;
    }
    case 5:
        stream.setByte(position, 's');
        if (model.fits(position, 1))
            model.put(position, "s");
        return true;
    case 6:
        stream.setByte('S');
        if (model.fits(model.cursor, 1))
            model.put(model.cursor, "S");
        return true;
    case 7:
        stream.readBytes(room, count);
        if (!model.fits(model.cursor, count))
            return buf == std::string(count, '?');
        model.cursor += count;
        return model.matches(model.cursor - count, buf);
    case 8:
        stream.readBytes(position, room, count);
        return model.fits(position, count) ? model.matches(position, buf) : buf == std::string(count, '?');
    case 9:
    case 10:
        stream.writeBytes(bytesOf(text), count);
        model.end(model.cursor + count);
        model.put(model.cursor, text);
        model.cursor += count;
        return true;
    case 11:
        stream.writeBytes(position, bytesOf(text), count);
        model.end(std::max<std::uint64_t>(model.length(), position + count));
        model.put(position, text);
        model.cursor = position;
        return true;
    case 12:
        if (position + count <= model.length()) {
            stream.getBytes(position, room, count);
            return model.matches(position, buf);
        }
        return true;
    case 13:
        stream.setBytes(position, bytesOf(text), count);
        if (model.fits(position, count))
            model.put(position, text);
        return true;
    case 14: {
        const std::uint32_t type = program.below(5);
        const std::uint64_t places[] = {position, std::uint64_t{model.cursor} + position,
                                        std::uint64_t{model.cursor} - position,
                                        std::uint64_t{model.length()} - position, model.cursor};
        const auto place = static_cast<std::uint32_t>(places[type]);
        if (type < 4 && place > model.length())
            ++model.errors;
        else
            model.cursor = type < 4 ? place : model.cursor;
        return stream.seek(position, type) == model.cursor;
    }
    case 15:
        stream.resize(position);
        model.end(position);
        return true;
    case 16:
        stream.reserve(position * 2);
        return stream.bufSize() >= position * 2;
    case 17:
        stream.truncate();
        model.end(model.cursor);
        return true;
    case 18: {
        std::string source = text;
        stream.open(source.data(), count, position % 50);
        model.bytes.clear();
        model.end(count + position % 50);
        model.put(0, text);
        model.cursor = position % 50;
        return true;
    }
    default: {
        TvFlatMemBuf copy(stream); // takes over, while the old one is changed behind its back
        stream.writeBytes(bytesOf(text), count);
        stream.close();
        stream = copy;
        return true;
    }
    }
}

TEST(StreamModel, FlatMemBufFollowsItsModel)
{
    const std::uint64_t seed = testSeed(20240611);
    RecordProperty("seed", std::to_string(seed));
    for (long run = 0; run < scaled(300); ++run) {
        Program program(seed + static_cast<std::uint64_t>(run));
        Recorder recorder;
        TvFlatMemBuf stream(program.below(100));
        MemoryModel model;
        for (int i = 0; i < 200; ++i) {
            ASSERT_TRUE(step(program, stream, model)) << "run " << run << " step " << i;
            ASSERT_EQ(stream.tell(), model.cursor) << "run " << run << " step " << i;
            ASSERT_EQ(stream.length(), model.length()) << "run " << run << " step " << i;
            ASSERT_TRUE(model.matches(0, held(stream))) << "run " << run << " step " << i;
            ASSERT_EQ(recorder.faults().size(), static_cast<std::size_t>(model.errors))
                << "run " << run << " step " << i;
            if (model.length() > 200000)
                stream.close(), model.bytes.clear(), model.cursor = 0;
        }
    }
}

// A file as a text and a cursor.
struct FileModel {
    std::string bytes;
    std::uint64_t cursor = 0;

    void put(std::uint64_t position, const std::string& text)
    {
        if (position + text.size() > bytes.size() && !text.empty())
            bytes.resize(position + text.size());
        bytes.replace(position, text.size(), text);
    }
    std::string got(std::uint64_t position, std::size_t count) const
    {
        std::string result(count, '?'); // a short read leaves the rest alone
        if (position < bytes.size())
            bytes.copy(result.data(), count, position);
        return result;
    }
    std::uint64_t afterRead(std::uint64_t position, std::size_t count) const
    {
        return position >= bytes.size() ? position : std::min<std::uint64_t>(position + count, bytes.size());
    }
};

// Writes, reads and seeks at random; the same on both.
bool step(Program& program, TvFileStreamBufImpl& stream, FileModel& model, bool setsBytes)
{
    const std::string text = program.bytes(program.size(30000));
    const auto count = static_cast<std::uint32_t>(text.size());
    const std::uint64_t position = program.below(static_cast<std::uint32_t>(model.bytes.size()) + 10);
    switch (program.below(8)) {
    case 0:
    case 1:
    case 2:
        write(stream, text);
        if (model.cursor > model.bytes.size() && count != 0)
            model.bytes.resize(model.cursor);
        model.put(model.cursor, text);
        model.cursor += count;
        return true;
    case 3: {
        const bool right = read(stream, count) == model.got(model.cursor, count);
        model.cursor = model.afterRead(model.cursor, count);
        return right;
    }
    case 4:
        return get(stream, count) == model.got(model.cursor, count);
    case 5:
        if (setsBytes) {
            stream.setBytes(bytesOf(text), count);
            if (model.cursor > model.bytes.size() && count != 0)
                model.bytes.resize(model.cursor);
            model.put(model.cursor, text);
        }
        return true;
    case 6:
        stream.writeByte('b');
        if (model.cursor > model.bytes.size())
            model.bytes.resize(model.cursor);
        model.put(model.cursor++, "b");
        return true;
    default:
        stream.seek(position, TvIO::kSeekFromStart);
        model.cursor = position;
        return true;
    }
}

template<class Open>
void followModel(Open open, bool setsBytes)
{
    const std::uint64_t seed = testSeed(20240612);
    testing::Test::RecordProperty("seed", std::to_string(seed));
    TestFiles files;
    for (long run = 0; run < scaled(40); ++run) {
        Program program(seed + static_cast<std::uint64_t>(run));
        FileModel model;
        const auto stream = open(files.wide("file"));
        ASSERT_TRUE(hasFile(*stream));
        for (int i = 0; i < 100; ++i) {
            ASSERT_TRUE(step(program, *stream, model, setsBytes)) << "run " << run << " step " << i;
            ASSERT_EQ(stream->tell(), model.cursor) << "run " << run << " step " << i;
        }
        stream->close();
        ASSERT_EQ(files.get("file"), model.bytes) << "run " << run;
        const auto back = openIn(files.wide("file"));
        ASSERT_EQ(read(*back, static_cast<std::uint32_t>(model.bytes.size())), model.bytes);
    }
}

TEST(StreamModel, UnbufferedFileFollowsItsModel)
{
    followModel(
        [](const std::wstring& name) {
            return openFile(name, kBoth, TvIO::kShareDenyNone, TvIO::kCreateAlways);
        },
        true);
}

// What setBytes() puts into the cache never reaches the file, so it is left out here.
TEST(StreamModel, CachedFileFollowsItsModel)
{
    followModel([](const std::wstring& name) { return openOut(name); }, false);
}

// Reads and seeks at random in a mapped file; each either gives the file's bytes or throws.
TEST(StreamModel, MappedFileFollowsItsModel)
{
    const std::uint64_t seed = testSeed(20240613);
    RecordProperty("seed", std::to_string(seed));
    TestFiles files;
    Program program(seed);
    for (long run = 0; run < scaled(20); ++run) {
        const std::string content = program.bytes(program.size(3000000));
        files.put("file", content);
        const auto stream = openIn(files.wide("file"));
        std::uint64_t cursor = 0;
        for (int i = 0; i < 300; ++i) {
            const std::uint32_t count = program.size(100000);
            if (program.below(4) == 0) {
                cursor = program.below(static_cast<std::uint32_t>(content.size()) + 1);
                stream->seek(cursor, TvIO::kSeekFromStart);
            } else if (cursor + count > content.size()) {
                ASSERT_EQ(thrownBy([&] { read(*stream, count); }), L"End of file!");
            } else {
                ASSERT_EQ(read(*stream, count), content.substr(cursor, count))
                    << "run " << run << " step " << i;
                cursor += count;
            }
            ASSERT_EQ(stream->tell(), cursor);
        }
    }
}

} // namespace
