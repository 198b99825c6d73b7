#include "TvStreamBuf.h"

#include "PlainStream.h"
#include "Recorder.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace {

using Calls = std::vector<std::string>;

constexpr std::uint64_t kHighest = std::numeric_limits<std::uint64_t>::max();

const unsigned char* bytes(const char* text) { return reinterpret_cast<const unsigned char*>(text); }

std::string textOf(const unsigned char* buf, std::size_t size) { return {buf, buf + size}; }

TEST(TvStreamBuf, EmptyStreamIsAtItsEnd) { EXPECT_TRUE(PlainStream().isEOS()); }

TEST(TvStreamBuf, CursorBeforeTheEndIsNotAtTheEnd) { EXPECT_FALSE(PlainStream("abc", 2).isEOS()); }

TEST(TvStreamBuf, CursorAtTheLengthIsAtTheEnd) { EXPECT_TRUE(PlainStream("abc", 3).isEOS()); }

TEST(TvStreamBuf, CursorPastTheLengthIsAtTheEnd) { EXPECT_TRUE(PlainStream("abc", 4).isEOS()); }

TEST(TvStreamBuf, SetlengthDoesNothing)
{
    PlainStream stream("abc", 1);
    stream.setlength(1);
    EXPECT_EQ(stream.content(), "abc");
    EXPECT_EQ(stream.calls(), Calls());
}

TEST(TvStreamBuf, TruncateDoesNothing)
{
    PlainStream stream("abc", 1);
    stream.truncate();
    EXPECT_EQ(stream.content(), "abc");
    EXPECT_EQ(stream.calls(), Calls());
}

TEST(TvStreamBuf, BufferIsNull)
{
    PlainStream stream("abc");
    EXPECT_EQ(stream.buffer(), nullptr);
    EXPECT_EQ(static_cast<const TvStreamBuf&>(stream).buffer(), nullptr);
}

TEST(TvStreamBuf, RewindSeeksToTheStartAndPassesTheResultOn)
{
    PlainStream stream("abc", 2);
    EXPECT_EQ(stream.rewind(), 1000);
    EXPECT_EQ(stream.calls(), Calls{"seek 0 0"});
}

TEST(TvStreamBuf, SeekTakesThePlainNumberOfATypeToo)
{
    PlainStream stream("abc");
    stream.seek(2, 3);
    EXPECT_EQ(stream.calls(), Calls{"seek 2 3"});
}

TEST(TvStreamBuf, ReadByteReadsOneByteAtTheCursor)
{
    PlainStream stream("abc", 1);
    EXPECT_EQ(stream.readByte(), 'b');
    EXPECT_EQ(stream.calls(), Calls{"read 1"});
}

TEST(TvStreamBuf, ReadByteAtAPositionLeavesTheCursor)
{
    PlainStream stream("abc", 1);
    EXPECT_EQ(stream.readByte(2), 'c');
    EXPECT_EQ(stream.tell(), 1u);
}

TEST(TvStreamBuf, WriteByteWritesOneByteAtTheCursor)
{
    PlainStream stream("abc", 1);
    stream.writeByte('X');
    EXPECT_EQ(stream.content(), "aXc");
    EXPECT_EQ(stream.calls(), Calls{"write 1"});
}

TEST(TvStreamBuf, WriteByteAtAPositionLeavesTheCursor)
{
    PlainStream stream("abc", 1);
    stream.writeByte(2, 'X');
    EXPECT_EQ(stream.content(), "abX");
    EXPECT_EQ(stream.tell(), 1u);
}

TEST(TvStreamBuf, GetByteMovesTheCursorInTheBase)
{
    PlainStream stream("abc", 1);
    EXPECT_EQ(stream.getByte(), 'b');
    EXPECT_EQ(stream.tell(), 2u);
}

TEST(TvStreamBuf, GetByteKeepsAllEightBits)
{
    PlainStream stream("\xFF");
    EXPECT_EQ(stream.getByte(), 0xFF);
}

TEST(TvStreamBuf, GetByteAtAnotherPositionLeavesTheCursor)
{
    PlainStream stream("abc", 1);
    EXPECT_EQ(stream.getByte(0), 'a');
    EXPECT_EQ(stream.tell(), 1u);
}

TEST(TvStreamBuf, SetByteMovesTheCursorInTheBase)
{
    PlainStream stream("abc", 1);
    stream.setByte('X');
    EXPECT_EQ(stream.content(), "aXc");
    EXPECT_EQ(stream.tell(), 2u);
}

TEST(TvStreamBuf, SetByteAtAnotherPositionLeavesTheCursor)
{
    PlainStream stream("abc", 1);
    stream.setByte(0, 'X');
    EXPECT_EQ(stream.content(), "Xbc");
    EXPECT_EQ(stream.tell(), 1u);
}

TEST(TvStreamBuf, GetBytesReadsAtTheCursorAndMovesIt)
{
    PlainStream stream("abcdef", 1);
    unsigned char buf[3] = {};
    stream.getBytes(buf, 3);
    EXPECT_EQ(textOf(buf, 3), "bcd");
    EXPECT_EQ(stream.tell(), 4u);
}

TEST(TvStreamBuf, SetBytesWritesAtTheCursorAndMovesIt)
{
    PlainStream stream("abcdef", 1);
    stream.setBytes(bytes("XYZ"), 3);
    EXPECT_EQ(stream.content(), "aXYZef");
    EXPECT_EQ(stream.tell(), 4u);
}

// The four transfers at a position, which share their rules.
struct Transfer {
    const char* name;
    bool writes;
    void (*run)(TvStreamBuf& stream, std::uint64_t position, unsigned char* buf, std::uint32_t count);
};

class PositionalTransfer : public testing::TestWithParam<Transfer> {
protected:
    void run(TvStreamBuf& stream, std::uint64_t position, std::uint32_t count)
    {
        GetParam().run(stream, position, m_buf, count);
    }
    // The one call of the primitive that a transfer of `count` bytes makes.
    std::string innerCall(std::uint32_t count) const
    {
        return (GetParam().writes ? "write " : "read ") + std::to_string(count);
    }

    unsigned char m_buf[16] = "UVWXYZ";
};

TEST_P(PositionalTransfer, AtTheCursorMovesItOn)
{
    PlainStream stream("abcdef", 2);
    run(stream, 2, 3);
    EXPECT_EQ(stream.calls(), Calls{innerCall(3)});
    EXPECT_EQ(stream.tell(), 5u);
}

TEST_P(PositionalTransfer, ElsewhereLeavesTheCursor)
{
    PlainStream stream("abcdef", 2);
    run(stream, 1, 3);
    EXPECT_EQ(stream.calls(), (Calls{"seek 1 0", innerCall(3), "seek 2 0"}));
    EXPECT_EQ(stream.tell(), 2u);
}

TEST_P(PositionalTransfer, TransfersTheBytesOfThePlace)
{
    PlainStream stream("abcdef", 2);
    run(stream, 1, 3);
    if (GetParam().writes)
        EXPECT_EQ(stream.content(), "aUVWef");
    else
        EXPECT_EQ(textOf(m_buf, 4), "bcdX");
}

TEST_P(PositionalTransfer, UpToTheEndIsAllowed)
{
    Recorder recorder;
    PlainStream stream("abcdef");
    run(stream, 2, 4);
    EXPECT_EQ(recorder.messages(), std::vector<std::wstring>());
    EXPECT_EQ(stream.calls().size(), 3u);
}

TEST_P(PositionalTransfer, OneBytePastTheEndIsReportedAndDoesNothing)
{
    Recorder recorder;
    PlainStream stream("abcdef");
    run(stream, 2, 5);
    EXPECT_EQ(recorder.messages(), std::vector<std::wstring>{L"Out of stream buffer!"});
    EXPECT_EQ(stream.calls(), Calls());
    EXPECT_EQ(stream.content(), "abcdef");
    EXPECT_EQ(textOf(m_buf, 6), "UVWXYZ");
}

TEST_P(PositionalTransfer, PositionPastTheEndIsReportedAlsoForNoBytes)
{
    Recorder recorder;
    PlainStream stream("abcdef");
    run(stream, 7, 0);
    EXPECT_EQ(recorder.messages(), std::vector<std::wstring>{L"Out of stream buffer!"});
}

TEST_P(PositionalTransfer, SumThatWrapsIsPastTheEnd)
{
    Recorder recorder;
    PlainStream stream("abcdef");
    run(stream, kHighest, 2);
    EXPECT_EQ(recorder.messages(), std::vector<std::wstring>{L"Out of stream buffer!"});
    EXPECT_EQ(stream.calls(), Calls());
}

TEST_P(PositionalTransfer, WithoutARecorderARangeErrorIsSilent)
{
    PlainStream stream("abcdef");
    run(stream, 6, 1);
    EXPECT_EQ(stream.calls(), Calls());
}

// Reads and writes that throw.
class FailingStream : public PlainStream {
public:
    using PlainStream::PlainStream;
    using PlainStream::readBytes;
    using PlainStream::writeBytes;
    void readBytes(unsigned char*, std::uint32_t) override { throw 7; }
    void writeBytes(const unsigned char*, std::uint32_t) override { throw 7; }
};

TEST_P(PositionalTransfer, FailureOfThePrimitivePassesAndLeavesTheCursorAtThePosition)
{
    FailingStream stream("abcdef", 2);
    EXPECT_THROW(run(stream, 1, 3), int);
    EXPECT_EQ(stream.tell(), 1u);
}

const Transfer kTransfers[] = {
    {"readBytes", false,
     [](TvStreamBuf& s, std::uint64_t p, unsigned char* b, std::uint32_t n) { s.readBytes(p, b, n); }},
    {"writeBytes", true,
     [](TvStreamBuf& s, std::uint64_t p, unsigned char* b, std::uint32_t n) { s.writeBytes(p, b, n); }},
    {"getBytes", false,
     [](TvStreamBuf& s, std::uint64_t p, unsigned char* b, std::uint32_t n) { s.getBytes(p, b, n); }},
    {"setBytes", true,
     [](TvStreamBuf& s, std::uint64_t p, unsigned char* b, std::uint32_t n) { s.setBytes(p, b, n); }},
};

INSTANTIATE_TEST_SUITE_P(TvStreamBuf, PositionalTransfer, testing::ValuesIn(kTransfers),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(TvStreamBuf, ByteFormsGiveZeroAfterARangeError)
{
    PlainStream stream("abc");
    EXPECT_EQ(stream.readByte(3), 0);
    EXPECT_EQ(stream.getByte(3), 0);
}

TEST(TvStreamBuf, RangeErrorCarriesItsLocationText)
{
    Recorder recorder;
    PlainStream("abc").readByte(3);
    ASSERT_EQ(recorder.faults().size(), 1u);
    EXPECT_EQ(recorder.faults()[0].file, L"\"\"");
    EXPECT_EQ(recorder.faults()[0].line, 0);
}

TEST(TvStreamBuf, CopyFromNullDoesNothing)
{
    PlainStream to("abc");
    to.copyFrom(nullptr, 0, 3);
    EXPECT_EQ(to.calls(), Calls());
}

TEST(TvStreamBuf, CopyFromZeroZeroCopiesTheRestOfTheSourceAndPutsItsCursorBack)
{
    PlainStream from("0123456789", 4);
    PlainStream to("abc", 1);
    to.copyFrom(&from, 0, 0);
    EXPECT_EQ(to.content(), "a456789");
    EXPECT_EQ(to.tell(), 7u);
    EXPECT_EQ(from.calls(), (Calls{"read 6", "seek 4 0"}));
}

TEST(TvStreamBuf, CopyFromTakesTheEndsOfTheRangeInEitherOrder)
{
    PlainStream from("0123456789ABCDEF", 1);
    PlainStream to;
    to.copyFrom(&from, 10, 4);
    EXPECT_EQ(to.content(), "456789");
    EXPECT_EQ(from.calls(), (Calls{"seek 4 0", "read 6", "seek 1 0"}));
}

TEST(TvStreamBuf, CopyFromTakesAnAscendingRange)
{
    PlainStream from("0123456789", 1);
    PlainStream to;
    to.copyFrom(&from, 2, 5);
    EXPECT_EQ(to.content(), "234");
    EXPECT_EQ(from.tell(), 1u);
}

TEST(TvStreamBuf, CopyFromAnEmptyRangeDoesNotMoveTheSource)
{
    PlainStream from("0123456789", 1);
    PlainStream to;
    to.copyFrom(&from, 5, 5);
    EXPECT_EQ(to.content(), "");
    EXPECT_EQ(from.calls(), Calls());
}

TEST(TvStreamBuf, CopyFromASourcePastItsEndCopiesNothing)
{
    PlainStream from("0123", 9);
    PlainStream to;
    to.copyFrom(&from, 0, 0);
    EXPECT_EQ(to.calls(), Calls());
    EXPECT_EQ(from.calls(), Calls());
}

TEST(TvStreamBuf, CopyFromGoesInPiecesOf4096Bytes)
{
    PlainStream from(std::string(10000, 'x'));
    PlainStream to;
    to.copyFrom(&from, 0, 0);
    EXPECT_EQ(from.calls(), (Calls{"read 4096", "read 4096", "read 1808", "seek 0 0"}));
    EXPECT_EQ(to.calls(), (Calls{"write 4096", "write 4096", "write 1808"}));
}

TEST(TvStreamBuf, CopyFromOfAWholePieceMakesNoEmptyOne)
{
    PlainStream from(std::string(4096, 'x'));
    PlainStream to;
    to.copyFrom(&from, 0, 0);
    EXPECT_EQ(from.calls(), (Calls{"read 4096", "seek 0 0"}));
}

TEST(TvStreamBuf, CopyToNullDoesNothing)
{
    PlainStream from("abc");
    from.copyTo(nullptr, 0, 3);
    EXPECT_EQ(from.calls(), Calls());
}

TEST(TvStreamBuf, CopyToAnEmptyDestinationCopiesNothing)
{
    PlainStream from("abc");
    PlainStream to;
    from.copyTo(&to, 0, 0);
    EXPECT_EQ(to.content(), "");
    EXPECT_EQ(from.calls(), Calls());
}

TEST(TvStreamBuf, CopyToZeroZeroFillsTheRoomAfterTheDestinationsCursor)
{
    PlainStream from(std::string(200, 'x'), 10);
    PlainStream to(std::string(100, '.'), 40);
    from.copyTo(&to, 0, 0);
    EXPECT_EQ(to.content(), std::string(40, '.') + std::string(60, 'x'));
    EXPECT_EQ(from.calls(), (Calls{"read 60", "seek 10 0"}));
}

TEST(TvStreamBuf, CopyToIsLimitedToWhatThisStreamHasLeft)
{
    PlainStream from("abcdef", 4);
    PlainStream to(std::string(100, '.'), 40);
    from.copyTo(&to, 0, 0);
    EXPECT_EQ(to.tell(), 42u);
}

TEST(TvStreamBuf, CopyToPutsTheRangeOnTheDestination)
{
    PlainStream from("abcdef", 1);
    PlainStream to("0123456789", 9);
    from.copyTo(&to, 6, 3);
    EXPECT_EQ(to.content(), "012bcd6789");
    EXPECT_EQ(to.calls(), (Calls{"seek 3 0", "write 3"}));
    EXPECT_EQ(from.calls(), (Calls{"read 3", "seek 1 0"}));
}

TEST(TvStreamBuf, CopyToAnEmptyRangeMovesNothing)
{
    PlainStream from("abcdef", 1);
    PlainStream to("0123456789", 9);
    from.copyTo(&to, 3, 3);
    EXPECT_EQ(to.calls(), Calls());
    EXPECT_EQ(from.calls(), Calls());
}

TEST(TvStreamBuf, CopyToOfAStreamAtItsEndStillMovesTheDestination)
{
    PlainStream from("abcdef", 6);
    PlainStream to("0123456789", 9);
    from.copyTo(&to, 3, 5);
    EXPECT_EQ(to.calls(), Calls{"seek 3 0"});
    EXPECT_EQ(from.calls(), Calls());
}

TEST(TvStreamBuf, CopyToPastTheEndOfThisStreamCopiesNothing)
{
    PlainStream from("abcdef", 9);
    PlainStream to("0123456789");
    from.copyTo(&to, 0, 0);
    EXPECT_EQ(to.calls(), Calls());
}

TEST(TvPlatformStreamer, ReadInt16IsSignedAndLittleEndian)
{
    PlainStream stream("\xFF\xFF\x01\x80");
    EXPECT_EQ(TvPlatformStreamer::readInt16(stream), -1);
    EXPECT_EQ(TvPlatformStreamer::readInt16(stream), -32767);
    EXPECT_EQ(stream.calls(), (Calls{"read 2", "read 2"}));
}

TEST(TvPlatformStreamer, ReadInt32IsSignedAndLittleEndian)
{
    PlainStream stream("\x01\x02\x03\x80");
    EXPECT_EQ(TvPlatformStreamer::readInt32(stream), static_cast<int>(0x80030201u));
    EXPECT_EQ(stream.calls(), Calls{"read 4"});
}

TEST(TvAutoResetStreamPosition, PutsTheCursorBack)
{
    PlainStream stream("abcdef", 2);
    {
        TvAutoResetStreamPosition keep(&stream);
        stream.setCursor(5);
    }
    EXPECT_EQ(stream.tell(), 2u);
    EXPECT_EQ(stream.calls(), Calls{"seek 2 0"});
}

TEST(TvAutoResetStreamPosition, NullStreamIsIgnoredAtBothEnds) { TvAutoResetStreamPosition keep(nullptr); }

class UnmovableStream : public PlainStream {
public:
    using PlainStream::PlainStream;
    std::int64_t seek(std::uint64_t, TvIO::SeekType) override { throw 7; }
};

TEST(TvAutoResetStreamPositionDeathTest, SeekThatThrowsEndsTheProcess)
{
    EXPECT_DEATH(
        {
            UnmovableStream stream("abc");
            TvAutoResetStreamPosition keep(&stream);
        },
        "");
}

// The numbers that callers pass.
TEST(TvIO, SeekTypesHaveTheirNumbers)
{
    EXPECT_EQ(TvIO::kSeekFromStart, 0u);
    EXPECT_EQ(TvIO::kSeekForward, 1u);
    EXPECT_EQ(TvIO::kSeekBackward, 2u);
    EXPECT_EQ(TvIO::kSeekFromEnd, 3u);
}

TEST(TvIO, AccessModesHaveTheirNumbersAndJoin)
{
    EXPECT_EQ(TvIO::kAccessRead, 0x80000000u);
    EXPECT_EQ(TvIO::kAccessWrite, 0x40000000u);
    const TvIO::AccessMode both = TvIO::kAccessRead | TvIO::kAccessWrite;
    EXPECT_EQ(both, 0xC0000000u);
}

TEST(TvIO, ShareModesAndDispositionsHaveTheirNumbers)
{
    EXPECT_EQ(TvIO::kShareDenyWrite, 32u);
    EXPECT_EQ(TvIO::kShareDenyNone, 64u);
    EXPECT_EQ(TvIO::kCreateNew, 1u);
    EXPECT_EQ(TvIO::kCreateAlways, 2u);
    EXPECT_EQ(TvIO::kOpenExisting, 3u);
    EXPECT_EQ(TvIO::kOpenAlways, 4u);
    EXPECT_EQ(TvIO::kTruncateExisting, 5u);
}

} // namespace
