// Files beyond 4 GiB. They are sparse: a few pages of disk each.

#include "TvFileStreamBuf.h"
#include "TvFileSystem.h"

#include "FileStreams.h"
#include "TestFiles.h"

#include <gtest/gtest.h>

#include <string>

#include <unistd.h>

namespace {

constexpr std::uint64_t kFar = (std::uint64_t{5} << 30) + 3; // past 4 GiB, and past 32 bits

class LargeFile : public testing::Test {
protected:
    // "first" at the start, "far" at kFar, nothing in between.
    std::wstring make() const
    {
        const std::wstring name = files.put("large", "first");
        const auto file = openFile(name);
        file->seek(kFar, TvIO::kSeekFromStart);
        write(*file, "far");
        file->close();
        return name;
    }

    TestFiles files;
};

TEST_F(LargeFile, UnbufferedStreamWritesFarAway)
{
    make();
    EXPECT_EQ(std::filesystem::file_size(files.path("large")), kFar + 3);
}

TEST_F(LargeFile, UnbufferedStreamReadsFarAway)
{
    const auto file = openFile(make());
    EXPECT_EQ(file->length(), kFar + 3);
    file->seek(kFar, TvIO::kSeekFromStart);
    EXPECT_EQ(file->tell(), kFar);
    EXPECT_EQ(read(*file, 3), "far");
    file->seek(3, TvIO::kSeekBackward);
    EXPECT_EQ(file->tell(), kFar);
    EXPECT_TRUE(!file->isEOS());
}

TEST_F(LargeFile, PositionsAreWhole)
{
    const auto file = openFile(make());
    unsigned char buf[3] = {};
    file->readBytes(kFar, buf, 3);
    EXPECT_EQ(std::string(buf, buf + 3), "far");
    file->setBytes(kFar, bytesOf("FAR"), 3);
    EXPECT_EQ(file->tell(), kFar + 3);
    file->rewind();
    EXPECT_EQ(read(*file, 5), "first");
}

TEST_F(LargeFile, MappedStreamReadsFarAway)
{
    const auto file = openIn(make());
    EXPECT_EQ(file->length(), kFar + 3);
    EXPECT_EQ(file->seek(3, TvIO::kSeekFromEnd), static_cast<std::int64_t>(kFar));
    EXPECT_EQ(read(*file, 3), "far");
    EXPECT_EQ(file->tell(), kFar + 3);
    EXPECT_EQ(file->readByte(kFar), 'f');
    EXPECT_EQ(thrownBy([&] { read(*file, 1); }), L"End of file!");
}

TEST_F(LargeFile, CachedStreamWritesFarAway)
{
    const std::wstring name = make();
    const auto file = openOut(name, kBoth, TvIO::kShareDenyNone, TvIO::kOpenExisting);
    file->seek(0, TvIO::kSeekFromEnd);
    write(*file, " away");
    EXPECT_EQ(file->tell(), kFar + 8);
    EXPECT_EQ(file->length(), kFar + 8);
    file->close();
    const auto back = openIn(name);
    back->seek(8, TvIO::kSeekFromEnd);
    EXPECT_EQ(read(*back, 8), "far away");
}

TEST_F(LargeFile, SizeIsWhole) { EXPECT_EQ(TvFileSystem::getFileSize(make().c_str()), kFar + 3); }

} // namespace
