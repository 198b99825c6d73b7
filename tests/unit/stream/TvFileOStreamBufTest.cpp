#include "TvFileStreamBuf.h"

#include "FileStreams.h"
#include "Recorder.h"
#include "TestFiles.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

class TvFileOStreamBufTest : public testing::Test {
protected:
    Opened<TvFileOStreamBuf> fresh(unsigned int cacheCapacity = 16384)
    {
        return openOut(files.wide("out"), kBoth, TvIO::kShareDenyNone, TvIO::kCreateAlways, cacheCapacity);
    }
    // A stream over a file of ten digits.
    Opened<TvFileOStreamBuf> digits()
    {
        return openOut(files.put("out", "0123456789"), kBoth, TvIO::kShareDenyNone, TvIO::kOpenExisting);
    }
    std::size_t sizeOnDisk() const { return files.get("out").size(); }

    TestFiles files;
};

TEST_F(TvFileOStreamBufTest, SmallWritesStayInTheCacheUntilClose)
{
    const auto file = fresh();
    write(*file, "hello");
    EXPECT_EQ(files.get("out"), "");
    file->close();
    EXPECT_EQ(files.get("out"), "hello");
}

TEST_F(TvFileOStreamBufTest, DestructorWritesTheCache)
{
    {
        const auto file = fresh();
        write(*file, "hello");
    }
    EXPECT_EQ(files.get("out"), "hello");
}

TEST_F(TvFileOStreamBufTest, FlushWritesTheCache)
{
    const auto file = fresh();
    write(*file, "hello");
    file->flush();
    EXPECT_EQ(files.get("out"), "hello");
    EXPECT_EQ(file->tell(), 5u);
}

TEST_F(TvFileOStreamBufTest, TenWritesOf2000GoOutAsTwoPieces)
{
    const auto file = fresh();
    const std::string piece(2000, 'x');
    for (int i = 1; i <= 10; ++i) {
        write(*file, piece);
        EXPECT_EQ(file->tell(), 2000u * i);
        EXPECT_EQ(file->length(), 2000u * i);
        EXPECT_EQ(sizeOnDisk(), i < 9 ? 0u : 16000u) << i;
    }
    file->close();
    EXPECT_EQ(sizeOnDisk(), 20000u);
}

TEST_F(TvFileOStreamBufTest, CacheTakesExactly16384Bytes)
{
    const auto file = fresh();
    write(*file, std::string(16383, 'x'));
    write(*file, "y");
    EXPECT_EQ(sizeOnDisk(), 0u);
    write(*file, "z");
    EXPECT_EQ(sizeOnDisk(), 16384u);
}

TEST_F(TvFileOStreamBufTest, PieceOf16384BytesIsCached)
{
    const auto file = fresh();
    write(*file, std::string(16384, 'x'));
    EXPECT_EQ(sizeOnDisk(), 0u);
    EXPECT_EQ(file->tell(), 16384u);
}

TEST_F(TvFileOStreamBufTest, LargerPieceGoesPastTheCacheBehindIt)
{
    const auto file = fresh();
    write(*file, "first");
    write(*file, std::string(16385, 'x'));
    EXPECT_EQ(files.get("out"), "first" + std::string(16385, 'x'));
    EXPECT_EQ(file->tell(), 16390u);
}

TEST_F(TvFileOStreamBufTest, ThresholdDoesNotDependOnTheCapacity)
{
    const auto small = fresh(10);
    write(*small, std::string(16384, 'x'));
    EXPECT_EQ(sizeOnDisk(), 0u);
    const auto large = fresh(100000);
    write(*large, std::string(16384, 'x'));
    write(*large, "y");
    EXPECT_EQ(sizeOnDisk(), 16384u);
}

TEST_F(TvFileOStreamBufTest, SingleBytesAreCachedToo)
{
    const auto file = fresh();
    for (int i = 0; i < 20000; ++i)
        file->writeByte(static_cast<unsigned char>(i));
    EXPECT_EQ(sizeOnDisk(), 16384u);
    EXPECT_EQ(file->tell(), 20000u);
    file->close();
    const std::string content = files.get("out");
    ASSERT_EQ(content.size(), 20000u);
    for (int i = 0; i < 20000; ++i)
        ASSERT_EQ(static_cast<unsigned char>(content[i]), static_cast<unsigned char>(i)) << i;
}

TEST_F(TvFileOStreamBufTest, WriteOfNothingDoesNothing)
{
    const auto file = fresh();
    write(*file, "ab");
    write(*file, "");
    EXPECT_EQ(file->tell(), 2u);
    file->close();
    EXPECT_EQ(files.get("out"), "ab");
}

TEST_F(TvFileOStreamBufTest, LengthIsTheFilesWhereTheCacheIsInsideIt)
{
    const auto file = digits();
    write(*file, "ab");
    EXPECT_EQ(file->length(), 10u);
    EXPECT_EQ(file->tell(), 2u);
}

TEST_F(TvFileOStreamBufTest, LengthCountsTheCacheBehindTheFile)
{
    const auto file = digits();
    file->seek(9, TvIO::kSeekFromStart);
    write(*file, "abc");
    EXPECT_EQ(file->length(), 12u);
}

TEST_F(TvFileOStreamBufTest, SeekWritesTheCacheFirst)
{
    const auto file = digits();
    write(*file, "ab");
    file->seek(5, TvIO::kSeekFromStart);
    EXPECT_EQ(files.get("out"), "ab23456789");
    EXPECT_EQ(file->tell(), 5u);
}

TEST_F(TvFileOStreamBufTest, SeekForwardCountsFromBehindTheCache)
{
    const auto file = digits();
    write(*file, "ab");
    file->seek(1, TvIO::kSeekForward);
    EXPECT_EQ(file->tell(), 3u);
    file->seek(2, TvIO::kSeekBackward);
    EXPECT_EQ(file->tell(), 1u);
    file->seek(1, TvIO::kSeekFromEnd);
    EXPECT_EQ(file->tell(), 11u);
}

TEST_F(TvFileOStreamBufTest, ReadWritesTheCacheFirst)
{
    const auto file = digits();
    write(*file, "ab");
    EXPECT_EQ(read(*file, 2), "23");
    EXPECT_EQ(files.get("out"), "ab23456789");
}

TEST_F(TvFileOStreamBufTest, WriteAfterAReadGoesToTheCursor)
{
    const auto file = digits();
    write(*file, "ab");
    file->flush();
    read(*file, 2);
    write(*file, "cd");
    file->close();
    EXPECT_EQ(files.get("out"), "ab23cd6789");
}

TEST_F(TvFileOStreamBufTest, GetBytesWritesTheCacheFirstAndPutsTheCursorBack)
{
    const auto file = digits();
    write(*file, "ab");
    EXPECT_EQ(get(*file, 2), "23");
    EXPECT_EQ(file->tell(), 2u);
    EXPECT_EQ(files.get("out"), "ab23456789");
}

TEST_F(TvFileOStreamBufTest, GetBytesAtAPositionWritesTheCacheFirst)
{
    const auto file = digits();
    write(*file, "ab");
    unsigned char buf[3] = {};
    file->getBytes(0, buf, 3);
    EXPECT_EQ(std::string(buf, buf + 3), "ab2");
    EXPECT_EQ(file->tell(), 3u);
}

TEST_F(TvFileOStreamBufTest, TruncateMovesTheFileToItsEndAndDoesNotWriteTheCache)
{
    const auto file = digits();
    write(*file, "ab");
    file->truncate();
    EXPECT_EQ(files.get("out"), "0123456789");
    EXPECT_EQ(file->tell(), 12u);
    file->close();
    EXPECT_EQ(files.get("out"), "0123456789ab");
}

TEST_F(TvFileOStreamBufTest, SetBytesLargerThanTheCacheHoldsGoesToTheFile)
{
    const auto file = digits();
    write(*file, "ab");
    file->setBytes(bytesOf("XYZ"), 3);
    EXPECT_EQ(file->tell(), 2u);
    file->close();
    EXPECT_EQ(files.get("out"), "abXYZ56789");
}

TEST_F(TvFileOStreamBufTest, SetBytesAtAPositionLargerThanTheCacheHoldsGoesToTheFile)
{
    const auto file = digits();
    file->setBytes(5, bytesOf("XYZ"), 3);
    EXPECT_EQ(file->tell(), 8u);
    file->close();
    EXPECT_EQ(files.get("out"), "01234XYZ89");
}

TEST_F(TvFileOStreamBufTest, SetBytesBehindTheCachesCursorAreNotWritten)
{
    const auto file = fresh();
    write(*file, "abcdef");
    file->setBytes(bytesOf("XY"), 2); // flushes, then lies in the cache at its cursor
    EXPECT_EQ(files.get("out"), "abcdef");
    EXPECT_EQ(file->tell(), 6u);
    file->close();
    EXPECT_EQ(files.get("out"), "abcdef");
}

TEST_F(TvFileOStreamBufTest, SetBytesAtAPositionIsAPlaceInTheCache)
{
    const auto file = fresh();
    write(*file, "abcdef");
    file->flush();
    write(*file, "gh");            // cache: "gh", cursor 2
    file->setBytes(0, nullptr, 0); // nothing to set, and nothing to flush: 2 + 0 bytes
    EXPECT_EQ(files.get("out"), "abcdef");
    file->setBytes(1, bytesOf("X"), 1); // 2 + 1 bytes do not fit: written, then set too late
    EXPECT_EQ(files.get("out"), "abcdefgh");
    file->close();
    EXPECT_EQ(files.get("out"), "abcdefgh");
}

TEST_F(TvFileOStreamBufTest, SetBytesAsLongAsTheWrittenCacheLieInIt)
{
    const auto file = fresh();
    write(*file, "abcd");
    file->flush(); // the cache keeps its four bytes
    file->setBytes(bytesOf("WXYZ"), 4);
    file->setBytes(0, bytesOf("WXYZ"), 4);
    EXPECT_EQ(file->tell(), 4u);
    file->close();
    EXPECT_EQ(files.get("out"), "abcd");
}

TEST_F(TvFileOStreamBufTest, SetBytesAtAPositionOutsideTheCacheIsReported)
{
    Recorder recorder;
    const auto file = fresh();
    write(*file, "abcdef");
    file->setBytes(6, bytesOf("X"), 1);
    EXPECT_EQ(recorder.messages(), std::vector<std::wstring>{L"Out of stream buffer!"});
    file->close();
    EXPECT_EQ(files.get("out"), "abcdef");
}

TEST_F(TvFileOStreamBufTest, WriteBytesAtAPositionIsBoundedByTheLengthWithTheCache)
{
    Recorder recorder;
    const auto file = fresh();
    write(*file, "abcdef");
    file->writeBytes(2, bytesOf("XY"), 2);
    EXPECT_EQ(file->tell(), 6u);
    file->writeBytes(5, bytesOf("XY"), 2);
    EXPECT_EQ(recorder.messages(), std::vector<std::wstring>{L"Out of stream buffer!"});
    file->close();
    EXPECT_EQ(files.get("out"), "abXYef");
}

TEST_F(TvFileOStreamBufTest, ReopenedStreamStartsWithAnEmptyCache)
{
    const auto file = fresh();
    write(*file, "first");
    ASSERT_EQ(file->open(files.wide("second").c_str(), kBoth, TvIO::kShareDenyNone, TvIO::kCreateAlways),
              Orna::eOk);
    EXPECT_EQ(file->tell(), 0u);
    write(*file, "second");
    file->close();
    EXPECT_EQ(files.get("out"), "first");
    EXPECT_EQ(files.get("second"), "second");
}

TEST_F(TvFileOStreamBufTest, ManyPiecesOfAllSizesArriveInOrder)
{
    const auto file = fresh();
    std::string expected;
    for (std::size_t size : {1, 100, 16383, 2, 16384, 1, 16385, 7, 40000, 16384, 16384, 3}) {
        const std::string piece(size, static_cast<char>('a' + expected.size() % 26));
        write(*file, piece);
        expected += piece;
        ASSERT_EQ(file->tell(), expected.size());
    }
    file->close();
    EXPECT_EQ(files.get("out"), expected);
}

} // namespace
