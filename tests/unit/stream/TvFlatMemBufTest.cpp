#include "TvMemStreamBuf.h"

#include "Recorder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace {

using Messages = std::vector<std::wstring>;

const Messages kOutOfBuffer{L"Out of stream buffer!"};
const Messages kEndOfBuffer{L"End of stream buffer!"};

const unsigned char* bytes(const char* text) { return reinterpret_cast<const unsigned char*>(text); }

// All bytes up to the length.
std::string text(const TvStreamBuf& stream)
{
    const unsigned char* const first = stream.buffer();
    return first != nullptr ? std::string(first, first + stream.length()) : std::string();
}

// A stream that holds "abcdef" with the cursor at `cursor`.
class SixBytes : public TvFlatMemBuf {
public:
    explicit SixBytes(std::uint32_t cursor) : TvFlatMemBuf(0)
    {
        writeBytes(bytes("abcdef"), 6);
        moveTo(cursor);
    }
};

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

TEST(TvFlatMemBuf, ReadByteReturnsTheByteAndMovesOn)
{
    SixBytes stream(4);
    EXPECT_EQ(stream.readByte(), 'e');
    EXPECT_EQ(stream.readByte(), 'f');
    EXPECT_EQ(stream.tell(), 6u);
}

TEST(TvFlatMemBuf, ReadByteAtTheEndReportsTheEndAndReturnsZero)
{
    Recorder recorder;
    SixBytes stream(6);
    EXPECT_EQ(stream.readByte(), 0);
    EXPECT_EQ(stream.tell(), 6u);
    EXPECT_EQ(recorder.messages(), kEndOfBuffer);
}

TEST(TvFlatMemBuf, ReadByteAtAPositionKeepsTheCursor)
{
    SixBytes stream(4);
    EXPECT_EQ(stream.readByte(1), 'b');
    EXPECT_EQ(stream.tell(), 4u);
}

TEST(TvFlatMemBuf, ReadByteAtTheCursorsOwnPositionKeepsItHere)
{
    SixBytes stream(4);
    EXPECT_EQ(stream.readByte(4), 'e');
    EXPECT_EQ(stream.tell(), 4u);
}

TEST(TvFlatMemBuf, ReadBytesMovesOn)
{
    SixBytes stream(1);
    unsigned char buf[3] = {};
    stream.readBytes(buf, 3);
    EXPECT_EQ(std::string(buf, buf + 3), "bcd");
    EXPECT_EQ(stream.tell(), 4u);
}

TEST(TvFlatMemBuf, ReadBytesUpToTheEndSucceeds)
{
    Recorder recorder;
    SixBytes stream(4);
    unsigned char buf[2] = {};
    stream.readBytes(buf, 2);
    EXPECT_EQ(std::string(buf, buf + 2), "ef");
    EXPECT_EQ(recorder.messages(), Messages());
}

TEST(TvFlatMemBuf, ReadBytesPastTheEndIsReportedAndReadsNothing)
{
    Recorder recorder;
    SixBytes stream(4);
    unsigned char buf[3] = {'?', '?', '?'};
    stream.readBytes(buf, 3);
    EXPECT_EQ(std::string(buf, buf + 3), "???");
    EXPECT_EQ(stream.tell(), 4u);
    EXPECT_EQ(recorder.messages(), kOutOfBuffer);
}

TEST(TvFlatMemBuf, ReadBytesAtTheEndReportsTheRangeNotTheEnd)
{
    Recorder recorder;
    SixBytes stream(6);
    unsigned char b = 0;
    stream.readBytes(&b, 1);
    EXPECT_EQ(recorder.messages(), kOutOfBuffer);
}

TEST(TvFlatMemBuf, ReadBytesWithASumThatWrapsIsReported)
{
    Recorder recorder;
    SixBytes stream(4);
    unsigned char b = 0;
    stream.readBytes(&b, 0xFFFFFFFFu);
    EXPECT_EQ(recorder.messages(), kOutOfBuffer);
    EXPECT_EQ(stream.tell(), 4u);
}

TEST(TvFlatMemBuf, ReadBytesAtAPositionNeverMoves)
{
    SixBytes stream(2);
    unsigned char buf[3] = {};
    stream.readBytes(2, buf, 3);
    EXPECT_EQ(std::string(buf, buf + 3), "cde");
    EXPECT_EQ(stream.tell(), 2u);
}

TEST(TvFlatMemBuf, WriteBytesAtAPositionLengthensAndStaysThere)
{
    TvFlatMemBuf stream(0);
    stream.writeBytes(10, bytes("wxyz"), 4);
    EXPECT_EQ(stream.length(), 14u);
    EXPECT_EQ(stream.tell(), 10u);
    EXPECT_EQ(text(stream).substr(10), "wxyz");
}

TEST(TvFlatMemBuf, WriteBytesAtAPositionKeepsTheTail)
{
    SixBytes stream(6);
    stream.writeBytes(1, bytes("XY"), 2);
    EXPECT_EQ(text(stream), "aXYdef");
    EXPECT_EQ(stream.tell(), 1u);
}

TEST(TvFlatMemBuf, WriteBytesAtAPositionCutsThePositionTo32Bits)
{
    SixBytes stream(6);
    stream.writeBytes(0x300000001u, bytes("XY"), 2);
    EXPECT_EQ(text(stream), "aXYdef");
    EXPECT_EQ(stream.tell(), 1u);
}

TEST(TvFlatMemBuf, WriteBytesAtAPositionWithASumThatWrapsIsReported)
{
    Recorder recorder;
    SixBytes stream(6);
    stream.writeBytes(0xFFFFFFFFu, bytes("XY"), 2);
    EXPECT_EQ(recorder.messages(), kOutOfBuffer);
    EXPECT_EQ(text(stream), "abcdef");
    EXPECT_EQ(stream.tell(), 6u);
}

TEST(TvFlatMemBuf, WriteByteAtZeroOfAnEmptyStreamGivesLengthOne)
{
    TvFlatMemBuf stream(0);
    stream.writeByte(0, 'X');
    EXPECT_EQ(text(stream), "X");
    EXPECT_EQ(stream.tell(), 0u);
}

TEST(TvFlatMemBuf, WriteByteInsideKeepsTheLength)
{
    SixBytes stream(6);
    stream.writeByte(2, 'X');
    EXPECT_EQ(text(stream), "abXdef");
    EXPECT_EQ(stream.tell(), 2u);
}

TEST(TvFlatMemBuf, WriteBytePastTheEndLiesJustBehindTheNewEnd)
{
    TvFlatMemBuf stream(0);
    stream.writeBytes(bytes("abc"), 3);
    stream.writeByte(5, 'X');
    EXPECT_EQ(stream.length(), 5u);
    EXPECT_EQ(stream.tell(), 5u);
    EXPECT_EQ(text(stream).substr(0, 3), "abc");
    EXPECT_GE(stream.bufSize(), 6u);
    EXPECT_EQ(stream.buffer()[5], 'X');
}

TEST(TvFlatMemBuf, WriteByteAtTheEndLeavesTheLength)
{
    SixBytes stream(0);
    stream.writeByte(6, 'X');
    EXPECT_EQ(text(stream), "abcdef");
    EXPECT_EQ(stream.tell(), 6u);
    EXPECT_EQ(stream.buffer()[6], 'X');
}

TEST(TvFlatMemBuf, WriteByteAtTheEndOfAFullStreamTakesRoomForIt)
{
    TvFlatMemBuf stream(100);
    stream.resize(100);
    stream.writeByte(100, 'X');
    EXPECT_EQ(stream.length(), 100u);
    EXPECT_EQ(stream.bufSize(), 101u);
    EXPECT_EQ(stream.buffer()[100], 'X');
}

TEST(TvFlatMemBuf, WriteByteAtAPositionWithASumThatWrapsIsReported)
{
    Recorder recorder;
    SixBytes stream(3);
    stream.writeByte(0xFFFFFFFFu, 'X');
    EXPECT_EQ(recorder.messages(), kOutOfBuffer);
    EXPECT_EQ(text(stream), "abcdef");
    EXPECT_EQ(stream.tell(), 3u);
}

TEST(TvFlatMemBuf, WriteByteAtAPositionBeyondTwoGigabytesIsReportedAsOutOfMemory)
{
    Recorder recorder;
    SixBytes stream(3);
    stream.writeByte(0x7FFFFFFFu, 'X');
    EXPECT_EQ(recorder.statuses(), std::vector<Orna::ErrorStatus>{Orna::eOutOfMemory});
    EXPECT_EQ(text(stream), "abcdef");
    EXPECT_EQ(stream.tell(), 3u);
}

TEST(TvFlatMemBuf, GetByteMovesTheCursor)
{
    SixBytes stream(2);
    EXPECT_EQ(stream.getByte(), 'c');
    EXPECT_EQ(stream.tell(), 3u);
}

TEST(TvFlatMemBuf, GetByteAtTheEndReportsTheRange)
{
    Recorder recorder;
    SixBytes stream(6);
    stream.getByte();
    EXPECT_EQ(recorder.messages(), kOutOfBuffer);
    EXPECT_EQ(stream.tell(), 6u);
}

TEST(TvFlatMemBuf, GetByteAtAPositionKeepsTheCursor)
{
    SixBytes stream(2);
    EXPECT_EQ(stream.getByte(5), 'f');
    EXPECT_EQ(stream.tell(), 2u);
}

TEST(TvFlatMemBuf, GetByteAtTheLengthIsReportedAndZero)
{
    Recorder recorder;
    SixBytes stream(2);
    EXPECT_EQ(stream.getByte(6), 0);
    EXPECT_EQ(recorder.messages(), kOutOfBuffer);
}

TEST(TvFlatMemBuf, GetBytesKeepsTheCursor)
{
    SixBytes stream(2);
    unsigned char buf[3] = {};
    stream.getBytes(buf, 3);
    EXPECT_EQ(std::string(buf, buf + 3), "cde");
    EXPECT_EQ(stream.tell(), 2u);
}

TEST(TvFlatMemBuf, GetBytesAtTheCursorsOwnPositionKeepsTheCursor)
{
    SixBytes stream(2);
    unsigned char buf[2] = {};
    stream.getBytes(2, buf, 2);
    EXPECT_EQ(std::string(buf, buf + 2), "cd");
    EXPECT_EQ(stream.tell(), 2u);
}

TEST(TvFlatMemBuf, GetBytesMayReadTheSpareRoom)
{
    Recorder recorder;
    TvFlatMemBuf stream(100);
    stream.writeBytes(bytes("abc"), 3);
    stream.writeByte(5, 'X');
    unsigned char b = 0;
    stream.getBytes(5, &b, 1);
    EXPECT_EQ(b, 'X');
    EXPECT_EQ(recorder.messages(), Messages());
}

TEST(TvFlatMemBuf, GetBytesEndsAtTheRoomNotAtTheLength)
{
    Recorder recorder;
    TvFlatMemBuf stream(100);
    unsigned char buf[101] = {};
    stream.getBytes(0, buf, 100);
    EXPECT_EQ(recorder.messages(), Messages());
    stream.getBytes(0, buf, 101);
    EXPECT_EQ(recorder.messages(), kOutOfBuffer);
}

TEST(TvFlatMemBuf, GetBytesWithASumThatWrapsIsReported)
{
    Recorder recorder;
    SixBytes stream(2);
    unsigned char b = 0;
    stream.getBytes(0xFFFFFFFFu, &b, 1);
    EXPECT_EQ(recorder.messages(), kOutOfBuffer);
}

TEST(TvFlatMemBuf, SetByteOverwritesAtTheCursorAndKeepsIt)
{
    SixBytes stream(2);
    stream.setByte('X');
    EXPECT_EQ(text(stream), "abXdef");
    EXPECT_EQ(stream.tell(), 2u);
}

TEST(TvFlatMemBuf, SetByteAtAPositionKeepsTheTailAndTheCursor)
{
    SixBytes stream(5);
    stream.setByte(0, 'X');
    EXPECT_EQ(text(stream), "Xbcdef");
    EXPECT_EQ(stream.tell(), 5u);
}

TEST(TvFlatMemBuf, SetByteAtTheEndIsReported)
{
    Recorder recorder;
    SixBytes stream(6);
    stream.setByte('X');
    EXPECT_EQ(text(stream), "abcdef");
    EXPECT_EQ(recorder.messages(), kOutOfBuffer);
}

TEST(TvFlatMemBuf, SetBytesOverwritesAtTheCursorAndKeepsIt)
{
    SixBytes stream(2);
    stream.setBytes(bytes("XY"), 2);
    EXPECT_EQ(text(stream), "abXYef");
    EXPECT_EQ(stream.tell(), 2u);
}

TEST(TvFlatMemBuf, SetBytesUpToTheEndSucceeds)
{
    SixBytes stream(0);
    stream.setBytes(4, bytes("XY"), 2);
    EXPECT_EQ(text(stream), "abcdXY");
}

TEST(TvFlatMemBuf, SetBytesPastTheEndIsReportedAndWritesNothing)
{
    Recorder recorder;
    SixBytes stream(0);
    stream.setBytes(5, bytes("XY"), 2);
    EXPECT_EQ(text(stream), "abcdef");
    EXPECT_EQ(recorder.messages(), kOutOfBuffer);
}

TEST(TvFlatMemBuf, SetBytesWithASumThatWrapsIsReported)
{
    Recorder recorder;
    SixBytes stream(0);
    stream.setBytes(0xFFFFFFFEu, bytes("XY"), 2);
    EXPECT_EQ(text(stream), "abcdef");
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

// How the room grows: the reported sizes are promised.
TEST(TvFlatMemBufGrowth, FirstByteTakesRoomForEight)
{
    TvFlatMemBuf stream(0);
    stream.writeByte('X');
    EXPECT_EQ(stream.bufSize(), 8u);
}

TEST(TvFlatMemBufGrowth, FullHundredDoubles)
{
    TvFlatMemBuf stream(100);
    stream.resize(100);
    stream.resize(101);
    EXPECT_EQ(stream.bufSize(), 200u);
}

TEST(TvFlatMemBufGrowth, FullHundredThousandGrowsBy64K)
{
    TvFlatMemBuf stream(100000);
    stream.resize(100000);
    stream.resize(100001);
    EXPECT_EQ(stream.bufSize(), 165536u);
}

TEST(TvFlatMemBufGrowth, SingleBytesDoubleUpTo64KThenStep)
{
    TvFlatMemBuf stream(0);
    std::vector<std::uint32_t> sizes;
    for (int i = 0; i < 200000; ++i) {
        stream.writeByte('X');
        if (sizes.empty() || sizes.back() != stream.bufSize())
            sizes.push_back(stream.bufSize());
    }
    const std::vector<std::uint32_t> expected{8,    16,   32,    64,    128,   256,    512,    1024,  2048,
                                              4096, 8192, 16384, 32768, 65536, 131072, 196608, 262144};
    EXPECT_EQ(sizes, expected);
}

TEST(TvFlatMemBufGrowth, ALargePieceTakesAsMuchAsItNeeds)
{
    TvFlatMemBuf stream(10);
    stream.resize(10);
    stream.resize(1010);
    EXPECT_EQ(stream.bufSize(), 1010u);
}

// Copies share the bytes until one of them is changed.
TEST(TvFlatMemBufCopy, EveryWayToChangeLeavesTheOtherAlone)
{
    struct Change {
        const char* name;
        void (*run)(TvFlatMemBuf& stream);
    };
    const Change changes[] = {
        {"writeByte", [](TvFlatMemBuf& s) { s.writeByte('X'); }},
        {"writeByte to the same length", [](TvFlatMemBuf& s) { s.moveTo(5), s.writeByte('X'); }},
        {"writeByte at", [](TvFlatMemBuf& s) { s.writeByte(1, 'X'); }},
        {"writeBytes", [](TvFlatMemBuf& s) { s.writeBytes(bytes("XY"), 2); }},
        {"writeBytes at", [](TvFlatMemBuf& s) { s.writeBytes(1, bytes("XY"), 2); }},
        {"setByte", [](TvFlatMemBuf& s) { s.setByte('X'); }},
        {"setByte at", [](TvFlatMemBuf& s) { s.setByte(1, 'X'); }},
        {"setBytes", [](TvFlatMemBuf& s) { s.setBytes(bytes("XY"), 2); }},
        {"setBytes at", [](TvFlatMemBuf& s) { s.setBytes(1, bytes("XY"), 2); }},
        {"truncate", [](TvFlatMemBuf& s) { s.truncate(); }},
        {"resize", [](TvFlatMemBuf& s) { s.resize(60000); }},
        {"close", [](TvFlatMemBuf& s) { s.close(); }},
        {"buffer", [](TvFlatMemBuf& s) { s.buffer()[0] = 'X'; }},
    };
    for (const Change& change : changes) {
        SCOPED_TRACE(change.name);
        const SixBytes original(3);
        TvFlatMemBuf copy(original);
        change.run(copy);
        EXPECT_EQ(text(original), "abcdef");
        EXPECT_EQ(original.tell(), 3u);
    }
}

TEST(TvFlatMemBufCopy, CopyHasTheBytesAndTheCursor)
{
    const SixBytes original(3);
    const TvFlatMemBuf copy(original);
    EXPECT_EQ(text(copy), "abcdef");
    EXPECT_EQ(copy.tell(), 3u);
}

// The source of a write may be the stream's own storage, which a write may move.
TEST(TvFlatMemBufOwnBytes, WriteOfOwnBytesThatGrows)
{
    TvFlatMemBuf stream(64);
    stream.writeBytes(bytes("0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef"), 64);
    stream.writeBytes(stream.buffer(), 64);
    EXPECT_EQ(text(stream).substr(64), text(stream).substr(0, 64));
}

TEST(TvFlatMemBufOwnBytes, OverlappingWriteMovesTheBytes)
{
    SixBytes stream(0);
    stream.writeBytes(2, stream.buffer(), 4);
    EXPECT_EQ(text(stream), "ababcd");
}

TEST(TvFlatMemBufOwnBytes, OverlappingSetMovesTheBytes)
{
    SixBytes stream(0);
    stream.setBytes(2, stream.buffer(), 4);
    EXPECT_EQ(text(stream), "ababcd");
}

TEST(TvFlatMemBufOwnBytes, OpenOfOwnBytesThatGrows)
{
    SixBytes stream(0);
    stream.open(stream.buffer() + 2, 4, 100);
    EXPECT_EQ(text(stream).substr(0, 4), "cdef");
    EXPECT_EQ(stream.length(), 104u);
}

TEST(TvFlatMemBuf, LengthBeyondTwoGigabytesIsReportedAsOutOfMemory)
{
    Recorder recorder;
    SixBytes stream(3);
    stream.resize(0x80000000u);
    ASSERT_EQ(recorder.statuses().size(), 1u);
    EXPECT_EQ(recorder.statuses()[0], Orna::eOutOfMemory);
    EXPECT_EQ(text(stream), "abcdef");
}

TEST(TvFlatMemBuf, RoomBeyondTwoGigabytesIsReportedAsOutOfMemory)
{
    Recorder recorder;
    SixBytes stream(3);
    stream.reserve(0x80000000u);
    EXPECT_EQ(recorder.statuses(), std::vector<Orna::ErrorStatus>{Orna::eOutOfMemory});
    EXPECT_EQ(text(stream), "abcdef");
}

// The layer between the interface and the flat buffer.
class PositionOnly : public TvMemStreamBuf {
public:
    using TvStreamBuf::readBytes;
    using TvStreamBuf::writeBytes;
    std::uint64_t tell() const override { return 5; }
    std::uint64_t length() const override { return 0x100000007u; }
    void readBytes(unsigned char*, std::uint32_t) override {}
    void writeBytes(const unsigned char*, std::uint32_t) override {}
    void moveTo(std::uint64_t position) override { asked = position; }
    std::uint64_t asked = 0;
};

TEST(TvMemStreamBuf, SeekAsksMoveToAndReturnsTheCursor)
{
    PositionOnly stream;
    EXPECT_EQ(stream.seek(9, TvIO::kSeekFromStart), 5);
    EXPECT_EQ(stream.asked, 9u);
    stream.seek(9, TvIO::kSeekForward);
    EXPECT_EQ(stream.asked, 14u);
    stream.seek(2, TvIO::kSeekBackward);
    EXPECT_EQ(stream.asked, 3u);
    stream.seek(2, TvIO::kSeekFromEnd);
    EXPECT_EQ(stream.asked, 0x100000005u);
}

TEST(TvMemStreamBuf, SizeIsTheLengthCutTo32Bits) { EXPECT_EQ(PositionOnly().bufSize(), 7u); }

TEST(TvMemStreamBuf, BufferIsNull)
{
    PositionOnly stream;
    EXPECT_EQ(stream.buffer(), nullptr);
    EXPECT_EQ(static_cast<const TvMemStreamBuf&>(stream).buffer(), nullptr);
}

TEST(TvFlatMemBuf, CopyFromItselfReadsAndWritesAtItsOneCursor)
{
    SixBytes stream(6);
    stream.copyFrom(&stream, 0, 3);
    EXPECT_EQ(text(stream), "abcabc");
    EXPECT_EQ(stream.tell(), 6u);
}

} // namespace
