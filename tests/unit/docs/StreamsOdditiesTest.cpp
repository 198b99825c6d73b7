// The oddities of streams, files and paths that docs/oddities.md lists: one case a heading.
#include "FileStreams.h"
#include "FlatMemBufText.h"
#include "Recorder.h"
#include "TempDir.h"

#include <TvOsBase.h>

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(StreamsOddities, AWriteAtTheCursorCutsTheTail)
{
    SixBytes buffer(6);

    buffer.seek(2, TvIO::kSeekFromStart); // the stream is "abcdef"
    buffer.writeByte('X');
    EXPECT_EQ(buffer.length(), 3u);
}

TEST(StreamsOddities, AByteWrittenPastTheEndLiesBehindIt)
{
    SixBytes buffer(6);

    buffer.writeByte(6, 'X'); // the stream is "abcdef"
    EXPECT_EQ(buffer.length(), 6u);
    EXPECT_EQ(buffer.buffer()[6], 'X');
}

TEST(StreamsOddities, AWriteAtAPositionLeavesTheCursorThere)
{
    SixBytes buffer(6);

    buffer.writeBytes(1, bytes("XY"), 2);
    EXPECT_EQ(buffer.tell(), 1u);
}

TEST(StreamsOddities, GetByteMovesAndGetBytesDoesNot)
{
    SixBytes buffer(6);

    unsigned char two[2];
    buffer.rewind();
    buffer.getBytes(two, 2);
    EXPECT_EQ(buffer.tell(), 0u);
    buffer.getByte();
    EXPECT_EQ(buffer.tell(), 1u);
}

TEST(StreamsOddities, PositionsInMemoryHave32Bits)
{
    SixBytes buffer(6);

    buffer.seek(0x100000001, TvIO::kSeekFromStart);
    EXPECT_EQ(buffer.tell(), 1u);
}

TEST(StreamsOddities, AnUnknownWayToSeekMovesNothing)
{
    SixBytes buffer(6);

    buffer.seek(2, 9u);
    EXPECT_EQ(buffer.tell(), 6u);
}

TEST(StreamsOddities, AShorterStreamMayLeaveTheCursorOutside)
{
    SixBytes buffer(6);

    buffer.resize(2); // the cursor was at 6
    EXPECT_EQ(buffer.tell(), 6u);
    EXPECT_TRUE(buffer.isEOS());
}

TEST(StreamsOddities, CopyToIntoAnEmptyStreamCopiesNothing)
{
    SixBytes buffer(6);

    TvFlatMemBuf empty(64);
    buffer.rewind();
    buffer.copyTo(&empty, 0, 0);
    EXPECT_EQ(empty.length(), 0u);
    empty.copyFrom(&buffer, 0, 0);
    EXPECT_EQ(empty.length(), 6u);
}

TEST(StreamsOddities, MemoryReportsAndFilesThrow)
{
    const TempDir folder;
    const std::wstring name = (folder / "plan").wstring();
    write(*openOut(name), "abcdef");
    const auto mapped = openIn(name);
    Recorder host;
    SixBytes buffer(6);

    buffer.readByte(); // at the end
    EXPECT_EQ(host.messages().at(0), L"End of stream buffer!");
    EXPECT_EQ(thrownBy([&] { mapped->seek(6, TvIO::kSeekFromStart), mapped->readByte(); }), L"End of file!");
}

TEST(StreamsOddities, TheEndIsCountedForwardAndBackward)
{
    const TempDir folder;
    const std::wstring name = (folder / "plan").wstring();
    write(*openOut(name), "abcdef");
    const auto plain = openFile(name);
    const auto mapped = openIn(name);

    EXPECT_EQ(plain->seek(1, TvIO::kSeekFromEnd), 0); // both hold "abcdef"
    EXPECT_EQ(plain->tell(), 7u);
    EXPECT_EQ(mapped->seek(1, TvIO::kSeekFromEnd), 5);
    EXPECT_EQ(mapped->tell(), 5u);
}

TEST(StreamsOddities, TruncateOfAFileCutsNothing)
{
    const TempDir folder;
    const std::wstring name = (folder / "plan").wstring();
    write(*openOut(name), "abcdef");
    const auto plain = openFile(name);

    plain->truncate(); // the file is "abcdef", the cursor was at 0
    EXPECT_EQ(plain->tell(), 6u);
    EXPECT_EQ(plain->length(), 6u);
}

TEST(StreamsOddities, GetBytesOfAMappedFileMovesTheCursor)
{
    const TempDir folder;
    const std::wstring name = (folder / "plan").wstring();
    write(*openOut(name), "abcdef");
    const auto plain = openFile(name);
    const auto mapped = openIn(name);
    unsigned char two[2];

    mapped->getBytes(two, 2);
    EXPECT_EQ(mapped->tell(), 2u);
    plain->getBytes(two, 2);
    EXPECT_EQ(plain->tell(), 0u);
}

TEST(StreamsOddities, BytesSetBehindTheCacheCursorAreNotWritten)
{
    const TempDir folder;
    const std::wstring name = (folder / "plan").wstring();
    const auto out = openOut(name);

    out->writeBytes(bytes("abcd"), 4);
    out->setBytes(1, bytes("X"), 1); // the cache is written first, the X comes too late
    out->close();
    EXPECT_EQ(read(*openIn(name), 4), "abcd");
}

TEST(StreamsOddities, AFailedOpenMaySayNothing)
{
    Orna::ErrorStatus status = Orna::eOk;
    TvFileIOStreamBuf* stream =
        createFileIOStreamBuf(L"/", &status, TvIO::kAccessRead, TvIO::kShareDenyNone, TvIO::kOpenExisting);
    EXPECT_EQ(status, Orna::eOk);
    EXPECT_FALSE(hasFile(*stream)); // asks fileHandle()
    destoryFileIOStreamBuf(stream);
}

TEST(StreamsOddities, NoPathIsADirectory)
{
    EXPECT_FALSE(TvFileSystem::isDirectory(L"/"));
    EXPECT_FALSE(TvFileSystem::isFileExisting(L"/")); // a directory is no file
}

TEST(StreamsOddities, AFullNameWithoutExtensionIsTheWholePath)
{
    wchar_t name[2048];

    TvPathMaker::getFullFileName(L"/plans/house.dwg", name);
    EXPECT_STREQ(name, L"house.dwg");
    TvPathMaker::getFullFileName(L"/plans/house", name);
    EXPECT_STREQ(name, L"/plans/house");
}

} // namespace
