// readByte() and writeByte() have one body in the header, for calls on the object itself, and one
// in the library, for calls through a TvStreamBuf. Whatever happens to a stream in between, both
// give the same bytes, places, lengths and reports.
#include "FileStreams.h"
#include "FlatMemBufText.h"
#include "Recorder.h"
#include "StreamChoices.h"
#include "TestFiles.h"
#include "TestScale.h"

#include "TvFileStreamBuf.h"
#include "TvMemStreamBuf.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <random>
#include <string>

namespace {

StreamChoices choicesOf(std::uint64_t seed)
{
    const auto random = std::make_shared<std::mt19937_64>(seed);
    return StreamChoices([random](std::uint32_t n) {
        return std::uniform_int_distribution<std::uint32_t>(0, n - 1)(*random);
    });
}

// Hides from the compiler which stream it is.
TvStreamBuf& asBase(TvStreamBuf& stream)
{
    TvStreamBuf* volatile pointer = &stream;
    return *pointer;
}

struct Inline {
    template<class Stream>
    [[gnu::flatten]] static unsigned char read(Stream& stream)
    {
        return stream.Stream::readByte();
    }
    template<class Stream>
    [[gnu::flatten]] static void write(Stream& stream, unsigned char b)
    {
        stream.Stream::writeByte(b);
    }
};

struct Virtual {
    static unsigned char read(TvStreamBuf& stream) { return asBase(stream).readByte(); }
    static void write(TvStreamBuf& stream, unsigned char b) { asBase(stream).writeByte(b); }
};

std::string numbers(std::initializer_list<std::uint64_t> values)
{
    std::string result;
    for (const std::uint64_t value : values)
        result += std::to_string(value) + " ";
    return result;
}

// A memory stream under one of the two ways. What a step gave is told as a text.
template<class Way>
class MemorySide {
public:
    explicit MemorySide(std::uint32_t capacity) : m_stream(capacity) {}

    std::string step(StreamChoices& choices)
    {
        const Recorder recorder;
        std::string given = one(choices);
        given += numbers({m_stream.tell(), m_stream.length(), m_stream.bufSize(), m_stream.isEOS(),
                          recorder.faults().size()});
        for (const std::wstring& message : recorder.messages())
            given.append(message.begin(), message.end());
        return given + held(m_stream) + (m_copy ? held(*m_copy) : "");
    }

private:
    // Bytes that nobody has written may differ, so that every one is given a value.
    void fill(std::uint64_t from)
    {
        for (; from < m_stream.length(); ++from)
            m_stream.setByte(from, static_cast<unsigned char>(from));
    }

    static std::string held(const TvFlatMemBuf& stream) { return text(stream); }

    std::string one(StreamChoices& choices)
    {
        const std::uint64_t old = m_stream.length();
        const auto place = choices.below(static_cast<std::uint32_t>(old) + 4);
        const std::uint32_t times = choices.below(4) == 0 ? choices.below(300) : choices.below(4);
        std::string given;
        switch (choices.below(16)) {
        case 0:
        case 1:
        case 2:
        case 3:
            for (std::uint32_t i = 0; i < times; ++i)
                Way::write(m_stream, static_cast<unsigned char>(place + i));
            fill(old);
            break;
        case 4:
        case 5:
        case 6:
            for (std::uint32_t i = 0; i < times; ++i)
                given += static_cast<char>(Way::read(m_stream));
            break;
        case 7:
            m_stream.seek(place, TvIO::kSeekFromStart);
            break;
        case 8:
            m_stream.seek(0, TvIO::kSeekFromEnd);
            break;
        case 9: // the cursor may stay behind the end
            m_stream.resize(place);
            fill(old);
            break;
        case 10:
            m_stream.reserve(place * 2);
            break;
        case 11:
            m_stream.truncate();
            fill(old);
            break;
        case 12:
            m_stream.writeBytes(bytes("some bytes"), place % 11);
            fill(old);
            break;
        case 13:
            m_copy.emplace(m_stream); // shares until one of the two is changed
            break;
        case 14:
            m_copy.reset();
            break;
        default:
            if (times == 0)
                m_stream.close();
            else
                m_stream = TvFlatMemBuf(m_stream);
            break;
        }
        return given;
    }

    TvFlatMemBuf m_stream;
    std::optional<TvFlatMemBuf> m_copy;
};

TEST(InlineBytes, MemoryStreamsAgreeWithTheVirtualCalls)
{
    const std::uint64_t seed = testSeed(20261121);
    RecordProperty("seed", std::to_string(seed));
    for (long run = 0; run < scaled(80); ++run) {
        const std::uint64_t own = seed + static_cast<std::uint64_t>(run);
        StreamChoices inlineChoices = choicesOf(own);
        StreamChoices virtualChoices = choicesOf(own);
        MemorySide<Inline> inlineSide(static_cast<std::uint32_t>(run % 20));
        MemorySide<Virtual> virtualSide(static_cast<std::uint32_t>(run % 20));
        for (int i = 0; i < 200; ++i)
            ASSERT_EQ(inlineSide.step(inlineChoices), virtualSide.step(virtualChoices))
                << "run " << run << " step " << i;
    }
}

// A mapped file under one of the two ways; at times it is opened again, which leaves it unmapped.
template<class Way>
class FileSide {
public:
    explicit FileSide(const std::wstring& name)
        : m_name(name), m_stream(name.c_str(), &m_status, kRead, TvIO::kShareDenyNone, TvIO::kOpenExisting)
    {
    }

    std::string step(StreamChoices& choices)
    {
        std::string given;
        const std::wstring thrown = thrownBy([&] { one(choices, given); });
        given.append(thrown.begin(), thrown.end());
        return given + " " + numbers({m_stream.tell(), m_stream.length()});
    }

private:
    void one(StreamChoices& choices, std::string& given)
    {
        const std::uint32_t length = static_cast<std::uint32_t>(m_stream.length());
        const std::uint32_t place = choices.below(length + 2);
        const std::uint32_t times = choices.below(8) == 0 ? choices.below(200000) : choices.below(100);
        unsigned char buf[100] = {}; // a short read leaves the rest alone
        switch (choices.below(40)) {
        case 0:
            m_stream.close();
            break;
        case 1:
            m_stream.open(m_name.c_str(), kRead, TvIO::kShareDenyNone, TvIO::kOpenExisting);
            break;
        case 2:
        case 3:
        case 4:
            m_stream.seek(place, TvIO::kSeekFromStart);
            break;
        case 5:
            m_stream.seek(place < 3 ? place : 0, TvIO::kSeekFromEnd);
            break;
        case 6:
        case 7:
            m_stream.readBytes(buf, times % sizeof buf);
            given.assign(buf, buf + times % sizeof buf);
            break;
        default:
            for (std::uint32_t i = 0; i < times; ++i)
                given += static_cast<char>(Way::read(m_stream));
            break;
        }
    }

    Orna::ErrorStatus m_status = Orna::eOk;
    std::wstring m_name;
    TvFileIStreamBuf m_stream;
};

void compareOnFileOf(std::uint32_t size, long runs)
{
    const std::uint64_t seed = testSeed(20261122);
    testing::Test::RecordProperty("seed", std::to_string(seed));
    TestFiles files;
    files.put("file", choicesOf(seed).bytes(size));
    for (long run = 0; run < runs; ++run) {
        const std::uint64_t own = seed + static_cast<std::uint64_t>(run);
        StreamChoices inlineChoices = choicesOf(own);
        StreamChoices virtualChoices = choicesOf(own);
        FileSide<Inline> inlineSide(files.wide("file"));
        FileSide<Virtual> virtualSide(files.wide("file"));
        for (int i = 0; i < 50; ++i)
            ASSERT_EQ(inlineSide.step(inlineChoices), virtualSide.step(virtualChoices))
                << "run " << run << " step " << i;
    }
}

TEST(InlineBytes, MappedFilesAgreeWithTheVirtualCalls) { compareOnFileOf(600000, scaled(6)); }

TEST(InlineBytes, ShortFilesAgreeWithTheVirtualCalls) { compareOnFileOf(40, scaled(30)); }

TEST(InlineBytes, EmptyFilesAgreeWithTheVirtualCalls) { compareOnFileOf(0, scaled(10)); }

TEST(InlineBytes, TheLastByteIsReadAndTheNextIsReported)
{
    SixBytes stream(5);
    const Recorder recorder;
    EXPECT_EQ(Inline::read<TvFlatMemBuf>(stream), 'f');
    EXPECT_EQ(recorder.messages(), Messages{});
    EXPECT_EQ(Inline::read<TvFlatMemBuf>(stream), 0);
    EXPECT_EQ(recorder.messages(), kEndOfBuffer);
    EXPECT_EQ(stream.tell(), 6u);
}

TEST(InlineBytes, RoomGrowsByTheRule)
{
    TvFlatMemBuf stream(0);
    std::string sizes;
    for (int i = 0; i < 17; ++i) {
        Inline::write(stream, 'x');
        sizes += std::to_string(stream.bufSize()) + " ";
    }
    EXPECT_EQ(sizes, "8 8 8 8 8 8 8 8 16 16 16 16 16 16 16 16 32 ");
}

TEST(InlineBytes, AWriteInTheMiddleCutsTheTail)
{
    SixBytes stream(2);
    Inline::write<TvFlatMemBuf>(stream, 'X');
    EXPECT_EQ(text(stream), "abX");
}

TEST(InlineBytes, AWriteToSharedBytesLeavesTheCopyAlone)
{
    TvFlatMemBuf stream(100);
    stream.writeBytes(bytes("abc"), 3);
    const TvFlatMemBuf copy(stream);
    Inline::write(stream, 'd');
    EXPECT_EQ(text(stream), "abcd");
    EXPECT_EQ(text(copy), "abc");
}

TEST(InlineBytes, ACursorPastTheEndLengthensTheStream)
{
    SixBytes stream(6);
    stream.resize(2);
    const Recorder recorder;
    EXPECT_EQ(Inline::read<TvFlatMemBuf>(stream), 0);
    EXPECT_EQ(recorder.messages(), kEndOfBuffer);
    Inline::write<TvFlatMemBuf>(stream, 'X');
    EXPECT_EQ(stream.length(), 7u);
    EXPECT_EQ(stream.tell(), 7u);
    EXPECT_EQ(stream.getByte(6), 'X');
}

// Moves the cursor of a stream whenever something is reported.
class Mover : public CrashRecorder {
public:
    explicit Mover(TvFlatMemBuf& stream) : m_stream(stream), m_before(ornaGetCrashRecorder())
    {
        ornaSetCrashRecorder(this);
    }
    ~Mover() override { ornaSetCrashRecorder(m_before); }
    void record(TvException*) override { m_stream.moveTo(3); }

private:
    TvFlatMemBuf& m_stream;
    CrashRecorder* m_before;
};

TEST(InlineBytes, ACursorThatTheRecorderMovesStaysThere)
{
    SixBytes stream(6);
    const Mover mover(stream);
    EXPECT_EQ(Inline::read<TvFlatMemBuf>(stream), 0);
    EXPECT_EQ(stream.tell(), 3u);
}

TEST(InlineBytes, TheEndOfAFileIsThrownAndTheCursorStays)
{
    TestFiles files;
    files.put("file", "ab");
    Orna::ErrorStatus status = Orna::eOk;
    TvFileIStreamBuf file(files.wide("file").c_str(), &status, kRead, TvIO::kShareDenyNone,
                          TvIO::kOpenExisting);
    EXPECT_EQ(Inline::read(file), 'a');
    EXPECT_EQ(Inline::read(file), 'b');
    EXPECT_EQ(thrownBy([&] { Inline::read(file); }), L"End of file!");
    EXPECT_EQ(file.tell(), 2u);
    file.seek(1, TvIO::kSeekFromStart);
    EXPECT_EQ(Inline::read(file), 'b');
}

// Counts what comes through the virtual table.
class CountedReads : public TvFlatMemBuf {
public:
    CountedReads() : TvFlatMemBuf(0) {}
    using TvFlatMemBuf::readByte;
    unsigned char readByte() override
    {
        ++reads;
        return TvFlatMemBuf::readByte();
    }
    int reads = 0;
};

TEST(InlineBytes, ADerivedStreamsOverrideIsCalled)
{
    CountedReads stream;
    stream.writeByte('a');
    stream.rewind();
    TvFlatMemBuf& base = stream;
    EXPECT_EQ(base.readByte(), 'a');
    EXPECT_EQ(stream.reads, 1);
}

} // namespace
