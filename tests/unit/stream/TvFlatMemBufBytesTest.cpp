// Bytes read, written, got and set, at the cursor and at positions.
#include "TvMemStreamBuf.h"

#include "FlatMemBufText.h"
#include "Recorder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

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

// The seek to the cursor's own place is refused, and so is the read.
TEST(TvFlatMemBuf, GetByteWithTheCursorPastTheEndReportsTheRangeTwice)
{
    Recorder recorder;
    SixBytes stream(6);
    stream.resize(2);
    stream.getByte();
    EXPECT_EQ(recorder.messages(), (Messages{L"Out of stream buffer!", L"Out of stream buffer!"}));
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

} // namespace
