// Each allocation of a memory stream fails once in turn: status 6 is reported, and the stream
// is what it was before the call that met the failure.

#include "TvMemStreamBuf.h"

#include "FailingCalls.h"
#include "Recorder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::string text(const TvStreamBuf& stream)
{
    const unsigned char* const first = stream.buffer();
    return first != nullptr ? std::string(first, first + stream.length()) : std::string();
}

// One call on a full stream of 20 bytes that shares them with `other`, cursor at 20.
struct GrowCase {
    const char* name;
    void (*run)(TvFlatMemBuf& stream);
};

const unsigned char kMore[5000] = {'m', 'o', 'r', 'e'};

// A stream of 5000 bytes.
TvFlatMemBuf& sourceOfCopies()
{
    static TvFlatMemBuf source(0);
    if (source.length() == 0)
        source.writeBytes(kMore, sizeof kMore);
    return source;
}

const GrowCase kGrowCases[] = {
    {"WriteByte", [](TvFlatMemBuf& s) { s.writeByte('x'); }},
    {"WriteByteAt", [](TvFlatMemBuf& s) { s.writeByte(4000, 'x'); }},
    {"WriteBytes", [](TvFlatMemBuf& s) { s.writeBytes(kMore, sizeof kMore); }},
    {"WriteBytesAt", [](TvFlatMemBuf& s) { s.writeBytes(4000, kMore, sizeof kMore); }},
    {"WriteOwnBytes",
     [](TvFlatMemBuf& s) {
         const TvFlatMemBuf& unchanged = s;
         s.writeBytes(unchanged.buffer(), 20);
     }},
    {"SetByte", [](TvFlatMemBuf& s) { s.setByte(0, 'x'); }},
    {"SetBytes", [](TvFlatMemBuf& s) { s.setBytes(0, kMore, 4); }},
    {"Resize", [](TvFlatMemBuf& s) { s.resize(5000); }},
    {"Reserve", [](TvFlatMemBuf& s) { s.reserve(5000); }},
    {"SetLength", [](TvFlatMemBuf& s) { s.setlength(5000); }},
    {"CopyFrom", [](TvFlatMemBuf& s) { s.copyFrom(&sourceOfCopies(), 0, 4000); }},
    {"Truncate", [](TvFlatMemBuf& s) { s.moveTo(3), s.truncate(), s.moveTo(s.length()); }},
};

class FlatMemBufFault : public testing::TestWithParam<GrowCase> {
protected:
    void SetUp() override
    {
        if (!kFailsMemory)
            GTEST_SKIP() << "the sanitizer owns malloc";
        sourceOfCopies(); // made before anything fails
    }
    // Runs the call on a stream, shared or not, with each allocation failing in turn.
    static void failEach(bool shared)
    {
        const std::string original = "01234567890123456789";
        for (int nth = 1; nth < 100; ++nth) {
            TvFlatMemBuf stream(20);
            stream.writeBytes(reinterpret_cast<const unsigned char*>(original.data()), 20);
            TvFlatMemBuf other(0);
            if (shared)
                other = stream;
            Recorder recorder;
            {
                FailingCalls::Armed armed(FailingCalls::kMemory, nth);
                GetParam().run(stream);
            }
            if (shared) {
                EXPECT_EQ(text(other), original);
            }
            if (!FailingCalls::fired) {
                EXPECT_TRUE(nth > 1 || !shared) << "no allocation was needed";
                return;
            }
            if (!recorder.statuses().empty()) {
                EXPECT_EQ(recorder.statuses()[0], Orna::eOutOfMemory);
                EXPECT_EQ(text(stream), original) << "allocation " << nth;
                EXPECT_EQ(stream.tell(), 20u);
            }
        }
        ADD_FAILURE() << "the allocations never end";
    }
};

TEST_P(FlatMemBufFault, LeavesTheStreamAsItWas) { failEach(false); }

TEST_P(FlatMemBufFault, LeavesSharedBytesAsTheyWere) { failEach(true); }

INSTANTIATE_TEST_SUITE_P(Calls, FlatMemBufFault, testing::ValuesIn(kGrowCases),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(FlatMemBufFault, OpenHasTheNewBytesOrNone)
{
    if (!kFailsMemory)
        GTEST_SKIP() << "the sanitizer owns malloc";
    for (int nth = 1; nth < 100; ++nth) {
        TvFlatMemBuf stream(0);
        stream.writeBytes(kMore, 20);
        Recorder recorder;
        {
            FailingCalls::Armed armed(FailingCalls::kMemory, nth);
            stream.open(const_cast<unsigned char*>(kMore), sizeof kMore, 3);
        }
        if (stream.length() == 0) {
            EXPECT_EQ(stream.tell(), 0u);
            ASSERT_FALSE(recorder.statuses().empty());
            EXPECT_EQ(recorder.statuses()[0], Orna::eOutOfMemory);
        } else {
            EXPECT_EQ(stream.length(), sizeof kMore + 3);
            EXPECT_EQ(text(stream).substr(0, 5), text(sourceOfCopies()).substr(0, 5));
            EXPECT_EQ(stream.tell(), 3u);
        }
        if (!FailingCalls::fired) {
            EXPECT_GT(nth, 1) << "no allocation was needed";
            return;
        }
    }
    ADD_FAILURE() << "the allocations never end";
}

TEST(FlatMemBufFault, StreamIsMadeWithoutItsRoom)
{
    if (!kFailsMemory)
        GTEST_SKIP() << "the sanitizer owns malloc";
    Recorder recorder;
    std::uint32_t size = 1;
    {
        FailingCalls::Armed armed(FailingCalls::kMemory, 1);
        TvFlatMemBuf stream(100000000);
        size = stream.bufSize();
    }
    EXPECT_EQ(size, 0u);
}

} // namespace
