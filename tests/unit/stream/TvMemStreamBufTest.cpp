#include "TvMemStreamBuf.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

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

} // namespace
