#include "TvMemStreamBuf.h"

#include "FlatMemBufText.h"
#include "Recorder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>

namespace {

TEST(TvFlatMemBuf, NewStreamIsEmptyWithItsRoom)
{
    TvFlatMemBuf stream(100);
    EXPECT_EQ(stream.length(), 0u);
    EXPECT_EQ(stream.tell(), 0u);
    EXPECT_GE(stream.bufSize(), 100u);
    EXPECT_TRUE(stream.isEOS());
}

TEST(TvFlatMemBuf, NewStreamWithoutRoomHasNoBuffer)
{
    TvFlatMemBuf stream(0);
    EXPECT_EQ(stream.bufSize(), 0u);
    EXPECT_EQ(stream.buffer(), nullptr);
    EXPECT_EQ(static_cast<const TvFlatMemBuf&>(stream).buffer(), nullptr);
}

TEST(TvFlatMemBuf, BufferIsTheFirstByte)
{
    SixBytes stream(4);
    EXPECT_EQ(*stream.buffer(), 'a');
    EXPECT_EQ(static_cast<const TvFlatMemBuf&>(stream).buffer(), stream.buffer());
}

TEST(TvFlatMemBuf, WriteAtTheEndAppends)
{
    SixBytes stream(6);
    stream.writeBytes(bytes("gh"), 2);
    EXPECT_EQ(text(stream), "abcdefgh");
    EXPECT_EQ(stream.tell(), 8u);
}

TEST(TvFlatMemBuf, WriteByteAtTheCursorCutsTheTail)
{
    SixBytes stream(0);
    stream.seek(2, 0);
    stream.writeByte('X');
    EXPECT_EQ(text(stream), "abX");
    EXPECT_EQ(stream.tell(), 3u);
}

TEST(TvFlatMemBuf, WriteBytesAtTheCursorCutsTheTail)
{
    SixBytes stream(1);
    stream.writeBytes(bytes("XY"), 2);
    EXPECT_EQ(text(stream), "aXY");
    EXPECT_EQ(stream.tell(), 3u);
}

TEST(TvFlatMemBuf, WriteOfNoBytesCutsTheTailToo)
{
    SixBytes stream(2);
    stream.writeBytes(nullptr, 0);
    EXPECT_EQ(text(stream), "ab");
}

TEST(TvFlatMemBuf, WriteThatEndsAtTheOldLengthKeepsIt)
{
    SixBytes stream(4);
    stream.writeBytes(bytes("XY"), 2);
    EXPECT_EQ(text(stream), "abcdXY");
}

TEST(TvFlatMemBuf, TruncateEndsTheStreamAtTheCursor)
{
    SixBytes stream(2);
    stream.truncate();
    EXPECT_EQ(text(stream), "ab");
    EXPECT_EQ(stream.tell(), 2u);
}

TEST(TvFlatMemBuf, RewindGoesToTheStartWithoutSeek)
{
    class Unseekable : public SixBytes {
    public:
        using SixBytes::SixBytes;
        std::int64_t seek(std::uint64_t, TvIO::SeekType) override
        {
            ADD_FAILURE() << "seek was called";
            return 0;
        }
    };
    Unseekable stream(4);
    EXPECT_EQ(stream.rewind(), 0);
    EXPECT_EQ(stream.tell(), 0u);
}

TEST(TvFlatMemBuf, ResizeLengthens)
{
    SixBytes stream(3);
    stream.resize(9);
    EXPECT_EQ(stream.length(), 9u);
    EXPECT_EQ(stream.tell(), 3u);
    EXPECT_EQ(text(stream).substr(0, 6), "abcdef");
}

TEST(TvFlatMemBuf, ResizeLeavesTheCursorPastTheEnd)
{
    SixBytes stream(5);
    stream.resize(2);
    EXPECT_EQ(text(stream), "ab");
    EXPECT_EQ(stream.tell(), 5u);
    EXPECT_TRUE(stream.isEOS());
}

TEST(TvFlatMemBuf, WriteWithTheCursorPastTheEndEndsBehindIt)
{
    SixBytes stream(5);
    stream.resize(2);
    stream.writeByte('X');
    EXPECT_EQ(stream.length(), 6u);
    EXPECT_EQ(text(stream).substr(0, 2), "ab");
    EXPECT_EQ(text(stream)[5], 'X');
}

TEST(TvFlatMemBuf, SetlengthResizesThroughTheVirtualFunction)
{
    class Counting : public SixBytes {
    public:
        using SixBytes::SixBytes;
        void resize(std::uint32_t length) override { asked = length; }
        std::uint32_t asked = 0;
    };
    Counting stream(0);
    stream.setlength(0x700000003u);
    EXPECT_EQ(stream.asked, 3u);
}

TEST(TvFlatMemBuf, ReserveTakesRoomAndKeepsTheBytes)
{
    SixBytes stream(3);
    stream.reserve(1000);
    EXPECT_EQ(stream.bufSize(), 1000u);
    EXPECT_EQ(text(stream), "abcdef");
    EXPECT_EQ(stream.tell(), 3u);
}

TEST(TvFlatMemBuf, ReserveNeverShrinks)
{
    TvFlatMemBuf stream(100);
    stream.reserve(50);
    EXPECT_EQ(stream.bufSize(), 100u);
}

// Seeks on "abcdef" with the cursor at 4.
struct SeekCase {
    const char* name;
    std::uint32_t type;
    std::uint64_t offset;
    std::uint64_t expected;
    bool reported;
};

void PrintTo(const SeekCase& c, std::ostream* out) { *out << c.name; }

class FlatMemBufSeek : public testing::TestWithParam<SeekCase> {};

TEST_P(FlatMemBufSeek, GoesToThePlaceAndReturnsIt)
{
    Recorder recorder;
    SixBytes stream(4);
    EXPECT_EQ(stream.seek(GetParam().offset, GetParam().type),
              static_cast<std::int64_t>(GetParam().expected));
    EXPECT_EQ(stream.tell(), GetParam().expected);
    EXPECT_EQ(recorder.messages(), GetParam().reported ? kOutOfBuffer : Messages());
}

const SeekCase kSeekCases[] = {
    {"StartIsAPlace", 0, 0, 0, false},
    {"MiddleFromStart", 0, 3, 3, false},
    {"EndIsAPlace", 0, 6, 6, false},
    {"PastEndIsRefused", 0, 7, 4, true},
    {"ForwardAdds", 1, 1, 5, false},
    {"ForwardToTheEnd", 1, 2, 6, false},
    {"ForwardPastTheEndIsRefused", 1, 3, 4, true},
    {"BackwardSubtracts", 2, 3, 1, false},
    {"BackwardToTheStart", 2, 4, 0, false},
    {"BackwardBeforeTheStartIsRefused", 2, 5, 4, true},
    {"FromEndSubtracts", 3, 1, 5, false},
    {"FromEndWithZeroIsTheEnd", 3, 0, 6, false},
    {"FromEndByTheLengthIsTheStart", 3, 6, 0, false},
    {"FromEndBeforeTheStartIsRefused", 3, 7, 4, true},
    {"UnknownTypeMovesNothing", 4, 1, 4, false},
    {"HighUnknownTypeMovesNothing", 0xFFFFFFFFu, 1, 4, false},
    {"PositionIsCutTo32Bits", 0, 0x100000002u, 2, false},
};

INSTANTIATE_TEST_SUITE_P(Cases, FlatMemBufSeek, testing::ValuesIn(kSeekCases),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(TvFlatMemBuf, MoveToTheEndSucceeds)
{
    Recorder recorder;
    SixBytes stream(0);
    stream.moveTo(6);
    EXPECT_EQ(stream.tell(), 6u);
    EXPECT_EQ(recorder.messages(), Messages());
}

TEST(TvFlatMemBuf, MoveToPastTheEndIsReported)
{
    Recorder recorder;
    SixBytes stream(1);
    stream.moveTo(7);
    EXPECT_EQ(stream.tell(), 1u);
    EXPECT_EQ(recorder.messages(), kOutOfBuffer);
}

TEST(TvFlatMemBuf, OpenTakesACopyOfTheBytes)
{
    SixBytes stream(3);
    unsigned char data[] = "0123456789";
    stream.open(data, 10, 0);
    data[0] = '?';
    EXPECT_EQ(text(stream), "0123456789");
    EXPECT_EQ(stream.tell(), 0u);
}

TEST(TvFlatMemBuf, OpenPutsTheBytesAtTheStartWhateverThePosition)
{
    TvFlatMemBuf stream(0);
    unsigned char data[] = "0123456789";
    stream.open(data, 10, 4);
    EXPECT_EQ(stream.length(), 14u);
    EXPECT_EQ(stream.tell(), 4u);
    EXPECT_EQ(text(stream).substr(0, 10), "0123456789");
}

TEST(TvFlatMemBuf, OpenClosesThroughTheVirtualFunctionFirst)
{
    class Counting : public SixBytes {
    public:
        using SixBytes::SixBytes;
        void close() override { ++closed; }
        int closed = 0;
    };
    Counting stream(3);
    unsigned char data[] = "01";
    stream.open(data, 2, 0);
    EXPECT_EQ(stream.closed, 1);
}

TEST(TvFlatMemBuf, OpenWithASumThatWrapsIsReportedAndKeepsTheStream)
{
    Recorder recorder;
    SixBytes stream(3);
    unsigned char data[] = "01";
    stream.open(data, 2, 0xFFFFFFFFu);
    EXPECT_EQ(recorder.messages(), kOutOfBuffer);
    EXPECT_EQ(text(stream), "abcdef");
    EXPECT_EQ(stream.tell(), 3u);
}

TEST(TvFlatMemBuf, OpenOfNoBytesEmptiesTheStream)
{
    SixBytes stream(3);
    stream.open(nullptr, 0, 0);
    EXPECT_EQ(stream.length(), 0u);
}

TEST(TvFlatMemBuf, CloseEmptiesAndStaysUsable)
{
    SixBytes stream(3);
    stream.close();
    EXPECT_EQ(stream.length(), 0u);
    EXPECT_EQ(stream.tell(), 0u);
    stream.writeByte('X');
    EXPECT_EQ(text(stream), "X");
}

TEST(TvFlatMemBuf, CopyFromItselfReadsAndWritesAtItsOneCursor)
{
    SixBytes stream(6);
    stream.copyFrom(&stream, 0, 3);
    EXPECT_EQ(text(stream), "abcabc");
    EXPECT_EQ(stream.tell(), 6u);
}

} // namespace
