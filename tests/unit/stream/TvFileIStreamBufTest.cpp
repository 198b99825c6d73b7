#include "TvFileStreamBuf.h"

#include "FileStreams.h"
#include "Recorder.h"
#include "TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::uint64_t kMinusOne = ~std::uint64_t{0};

class TvFileIStreamBufTest : public testing::Test {
protected:
    Opened<TvFileIStreamBuf> digits() { return openIn(files.put("digits", "0123456789")); }

    // True when some mapping of this process is one of the file.
    bool isMapped(const std::string& name) const
    {
        std::ifstream maps("/proc/self/maps");
        const std::string path = std::filesystem::canonical(files.path(name));
        for (std::string line; std::getline(maps, line);)
            if (line.find(path) != std::string::npos)
                return true;
        return false;
    }

    TestFiles files;
};

TEST_F(TvFileIStreamBufTest, ServesTheFileFromAMapping)
{
    const auto file = digits();
    EXPECT_TRUE(isMapped("digits"));
    EXPECT_EQ(file->length(), 10u);
    EXPECT_EQ(read(*file, 4), "0123");
    EXPECT_EQ(file->tell(), 4u);
}

TEST_F(TvFileIStreamBufTest, CloseUnmaps)
{
    const auto file = digits();
    read(*file, 4);
    file->close();
    EXPECT_FALSE(isMapped("digits"));
    EXPECT_EQ(file->tell(), 0u);
    EXPECT_EQ(file->length(), 0u);
}

TEST_F(TvFileIStreamBufTest, FailedOpenMapsNothing)
{
    const auto file = openIn(files.wide("missing"));
    EXPECT_EQ(file.status, Orna::eFileNotFound);
    EXPECT_FALSE(hasFile(*file));
}

TEST_F(TvFileIStreamBufTest, StatusThatWasSetBeforeCloses)
{
    Orna::ErrorStatus status = Orna::eInvalidIndex;
    TvFileIStreamBuf file(files.put("a", "text").c_str(), &status, kRead, TvIO::kShareDenyNone,
                          TvIO::kOpenExisting);
    EXPECT_FALSE(hasFile(file));
}

TEST_F(TvFileIStreamBufTest, ReadUpToTheEndSucceeds)
{
    const auto file = digits();
    EXPECT_EQ(read(*file, 10), "0123456789");
    EXPECT_TRUE(file->isEOS());
}

TEST_F(TvFileIStreamBufTest, ReadPastTheEndThrowsAndReadsNothing)
{
    const auto file = digits();
    file->seek(8, TvIO::kSeekFromStart);
    std::string buf(3, '?');
    EXPECT_EQ(thrownBy([&] { file->readBytes(reinterpret_cast<unsigned char*>(buf.data()), 3); }),
              L"End of file!");
    EXPECT_EQ(buf, "???");
    EXPECT_EQ(file->tell(), 8u);
}

TEST_F(TvFileIStreamBufTest, ReadOfHugeCountThrows)
{
    const auto file = digits();
    unsigned char b = 0;
    EXPECT_EQ(thrownBy([&] { file->readBytes(&b, 0xFFFFFFFFu); }), L"End of file!");
}

TEST_F(TvFileIStreamBufTest, ReadOfNothingSucceedsAlsoAtTheEnd)
{
    const auto file = digits();
    EXPECT_EQ(read(*file, 0), "");
    file->seek(10, TvIO::kSeekFromStart);
    EXPECT_EQ(read(*file, 0), "");
    EXPECT_EQ(file->tell(), 10u);
}

TEST_F(TvFileIStreamBufTest, ReadByteReadsEachByteThenThrows)
{
    const auto file = digits();
    std::string all;
    for (int i = 0; i < 10; ++i)
        all += static_cast<char>(file->readByte());
    EXPECT_EQ(all, "0123456789");
    EXPECT_EQ(thrownBy([&] { file->readByte(); }), L"End of file!");
    EXPECT_EQ(file->tell(), 10u);
}

TEST_F(TvFileIStreamBufTest, ReadByteAtAPositionIsBoundedByAReport)
{
    Recorder recorder;
    const auto file = digits();
    EXPECT_EQ(file->readByte(9), '9');
    EXPECT_EQ(file->tell(), 0u);
    EXPECT_EQ(file->readByte(10), 0);
    EXPECT_EQ(recorder.messages(), std::vector<std::wstring>{L"Out of stream buffer!"});
}

TEST_F(TvFileIStreamBufTest, GetBytesMovesTheCursorHere)
{
    const auto file = digits();
    EXPECT_EQ(get(*file, 3), "012");
    EXPECT_EQ(file->tell(), 3u);
}

TEST_F(TvFileIStreamBufTest, GetBytesPastTheEndThrows)
{
    const auto file = digits();
    file->seek(8, TvIO::kSeekFromStart);
    EXPECT_EQ(thrownBy([&] { get(*file, 3); }), L"End of file!");
}

TEST_F(TvFileIStreamBufTest, GetBytesAtAPositionEndsBehindTheBytes)
{
    const auto file = digits();
    unsigned char buf[3] = {};
    file->getBytes(5, buf, 3);
    EXPECT_EQ(std::string(buf, buf + 3), "567");
    EXPECT_EQ(file->tell(), 8u);
}

TEST_F(TvFileIStreamBufTest, GetBytesAtAPositionPastTheEndThrows)
{
    const auto file = digits();
    unsigned char b = 0;
    EXPECT_EQ(thrownBy([&] { file->getBytes(11, &b, 1); }), L"Out of file stream buffer!");
}

// Seeks on ten bytes with the cursor at 4; -2 stands for "Out of file stream buffer!".
struct MappedSeekCase {
    const char* name;
    std::uint32_t type;
    std::uint64_t offset;
    std::int64_t result;
};

void PrintTo(const MappedSeekCase& c, std::ostream* out) { *out << c.name; }

class MappedSeek : public testing::TestWithParam<MappedSeekCase> {};

TEST_P(MappedSeek, GoesToThePlaceAndReturnsIt)
{
    TestFiles files;
    const auto file = openIn(files.put("digits", "0123456789"));
    file->seek(4, TvIO::kSeekFromStart);
    std::int64_t result = -3;
    const std::wstring thrown = thrownBy([&] { result = file->seek(GetParam().offset, GetParam().type); });
    if (GetParam().result == -2) {
        EXPECT_EQ(thrown, L"Out of file stream buffer!");
        EXPECT_EQ(file->tell(), 4u);
    } else {
        EXPECT_EQ(result, GetParam().result);
        EXPECT_EQ(file->tell(), static_cast<std::uint64_t>(result));
    }
}

const MappedSeekCase kMappedSeekCases[] = {
    {"FromStart", 0, 7, 7},
    {"EndIsAPlace", 0, 10, 10},
    {"PastTheEndIsThrown", 0, 11, -2},
    {"MinusOneIsThrown", 0, kMinusOne, -2},
    {"ForwardAdds", 1, 3, 7},
    {"ForwardPastTheEndIsThrown", 1, 7, -2},
    {"BackwardSubtracts", 2, 3, 1},
    {"BackwardBeforeTheStartIsThrown", 2, 5, -2},
    {"FromEndCountsBackward", 3, 3, 7},
    {"FromEndByTheLengthIsTheStart", 3, 10, 0},
    {"FromEndBeforeTheStartIsThrown", 3, 11, -2},
    {"UnknownTypeIsFromStart", 4, 7, 7},
};

INSTANTIATE_TEST_SUITE_P(Cases, MappedSeek, testing::ValuesIn(kMappedSeekCases),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(TvFileIStreamBufTest, FromEndCountsBackwardHereAndForwardInAnUnmappedFile)
{
    const std::wstring name = files.put("a", std::string(100, 'x'));
    const auto mapped = openIn(name);
    const auto unmapped = openFile(name);
    mapped->seek(10, 3);
    unmapped->seek(10, 3);
    EXPECT_EQ(mapped->tell(), 90u);
    EXPECT_EQ(unmapped->tell(), 110u);
}

TEST_F(TvFileIStreamBufTest, EveryWayToWriteThrows)
{
    const auto file = openIn(files.put("a", "text"), kBoth);
    ASSERT_TRUE(hasFile(*file));
    const unsigned char b = 'X';
    EXPECT_EQ(thrownBy([&] { file->writeBytes(&b, 1); }), L"Write file error!");
    EXPECT_EQ(thrownBy([&] { file->writeBytes(0, &b, 1); }), L"Write file error!");
    EXPECT_EQ(thrownBy([&] { file->setBytes(&b, 1); }), L"Write file error!");
    EXPECT_EQ(thrownBy([&] { file->setBytes(0, &b, 1); }), L"Write file error!");
    EXPECT_EQ(thrownBy([&] { file->writeByte('X'); }), L"Write file error!");
    EXPECT_EQ(thrownBy([&] { file->setByte('X'); }), L"Write file error!");
    EXPECT_EQ(thrownBy([&] { file->setByte(0, 'X'); }), L"Write file error!");
    file->close();
    EXPECT_EQ(files.get("a"), "text");
}

TEST_F(TvFileIStreamBufTest, TruncateThrows)
{
    const auto file = digits();
    EXPECT_EQ(thrownBy([&] { file->truncate(); }), L"File internal error!");
}

TEST_F(TvFileIStreamBufTest, EmptyFileHasLengthZeroAndNothingToRead)
{
    const auto file = openIn(files.put("empty", ""));
    EXPECT_EQ(file.status, Orna::eOk);
    EXPECT_TRUE(hasFile(*file));
    EXPECT_EQ(file->length(), 0u);
    EXPECT_TRUE(file->isEOS());
    EXPECT_EQ(thrownBy([&] { read(*file, 1); }), L"End of file!");
    EXPECT_EQ(thrownBy([&] { file->readByte(); }), L"End of file!");
    EXPECT_EQ(thrownBy([&] { file->seek(1, TvIO::kSeekFromStart); }), L"Out of file stream buffer!");
    EXPECT_EQ(file->seek(0, TvIO::kSeekFromEnd), 0);
}

TEST_F(TvFileIStreamBufTest, FileThatGrowsKeepsItsLength)
{
    const auto file = digits();
    files.put("digits", "0123456789 and more");
    EXPECT_EQ(file->length(), 10u);
    EXPECT_EQ(read(*file, 10), "0123456789");
}

TEST_F(TvFileIStreamBufTest, ReopenedStreamReadsTheNewFile)
{
    const auto file = digits();
    read(*file, 5);
    ASSERT_EQ(file->open(files.put("b", "second").c_str(), kRead, TvIO::kShareDenyNone, TvIO::kOpenExisting),
              Orna::eOk);
    EXPECT_EQ(file->tell(), 0u);
    EXPECT_EQ(file->length(), 6u);
    EXPECT_EQ(read(*file, 6), "second");
}

// Only the constructor maps.
TEST_F(TvFileIStreamBufTest, ReopenedStreamMovesAsAFileThatIsNotMapped)
{
    const auto file = digits();
    ASSERT_EQ(file->open(files.put("b", "second").c_str(), kRead, TvIO::kShareDenyNone, TvIO::kOpenExisting),
              Orna::eOk);
    EXPECT_EQ(get(*file, 2), "se");
    EXPECT_EQ(file->tell(), 0u);
    EXPECT_EQ(file->seek(1, TvIO::kSeekFromEnd), 0);
    EXPECT_EQ(file->tell(), 7u);
}

// Opened for writing only, the descriptor cannot be mapped; nor can a device.
TEST_F(TvFileIStreamBufTest, FileThatCannotBeMappedIsReadThroughTheCStream)
{
    const auto file = openIn(L"/dev/zero");
    ASSERT_TRUE(hasFile(*file));
    EXPECT_EQ(read(*file, 3), std::string(3, '\0'));
    EXPECT_EQ(get(*file, 3), std::string(3, '\0'));
}

TEST_F(TvFileIStreamBufTest, StreamCreatedForWritingOnlyIsUnmapped)
{
    const auto file = openIn(files.wide("new"), kWrite, TvIO::kShareDenyNone, TvIO::kCreateAlways);
    ASSERT_TRUE(hasFile(*file));
    EXPECT_EQ(file->length(), 0u);
    EXPECT_EQ(file->tell(), 0u);
}

// Larger than all steps in which pages are brought in; every way through gives the same bytes.
class LargeMappedFile : public testing::Test {
protected:
    static constexpr std::size_t kSize = 10 * 1024 * 1024 + 777;

    static unsigned char byteAt(std::uint64_t position)
    {
        return static_cast<unsigned char>(position * 0x9E3779B97F4A7C15u >> 56);
    }
    static std::string content()
    {
        std::string result(kSize, '\0');
        for (std::size_t i = 0; i < kSize; ++i)
            result[i] = static_cast<char>(byteAt(i));
        return result;
    }
    // Position of the first byte of `text` that is not the file's at `position`, or npos.
    static std::size_t firstWrong(const std::string& text, std::uint64_t position)
    {
        for (std::size_t i = 0; i < text.size(); ++i)
            if (static_cast<unsigned char>(text[i]) != byteAt(position + i))
                return i;
        return std::string::npos;
    }

    TestFiles files;
    const std::wstring name = files.put("large", content());
};

TEST_F(LargeMappedFile, StraightThroughByPieces)
{
    const auto file = openIn(name);
    for (std::uint64_t at = 0; at < kSize;) {
        const auto piece = static_cast<std::uint32_t>(std::min<std::uint64_t>(1000, kSize - at));
        ASSERT_EQ(firstWrong(read(*file, piece), at), std::string::npos) << at;
        at += piece;
    }
    EXPECT_TRUE(file->isEOS());
}

TEST_F(LargeMappedFile, StraightThroughByBytes)
{
    const auto file = openIn(name);
    for (std::uint64_t at = 0; at < kSize; ++at)
        ASSERT_EQ(file->readByte(), byteAt(at)) << at;
    EXPECT_TRUE(file->isEOS());
}

TEST_F(LargeMappedFile, BackwardsAndAcross)
{
    const auto file = openIn(name);
    std::uint64_t at = kSize;
    while (at > 70000) {
        at -= 70000;
        file->seek(at, TvIO::kSeekFromStart);
        ASSERT_EQ(firstWrong(read(*file, 300), at), std::string::npos) << at;
    }
}

TEST_F(LargeMappedFile, InOnePiece)
{
    const auto file = openIn(name);
    EXPECT_EQ(firstWrong(read(*file, kSize), 0), std::string::npos);
    EXPECT_TRUE(file->isEOS());
}

} // namespace
