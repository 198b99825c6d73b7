// Path splitting against an oracle that searches from the end, over random short paths.
#include "TvPlatformBase.h"

#include "PathPieces.h"
#include "TestScale.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <random>
#include <string>

namespace {

TEST(SplitPathDiff, RandomPathsAgreeWithTheSearchFromTheEnd)
{
    const std::uint64_t seed = testSeed(20260521);
    SCOPED_TRACE(seed);
    std::mt19937 random(static_cast<unsigned int>(seed));
    for (long i = scaled(200000); i > 0; --i) {
        std::wstring path(random() % 9, L' ');
        for (wchar_t& c : path)
            c = L"ab.:/\\\x4E2D."[random() % 8];
        wchar_t drive[16], dir[16], fname[16], ext[16];
        ASSERT_EQ(_wsplitpath_s(path.c_str(), drive, 16, dir, 16, fname, 16, ext, 16), 0);
        ASSERT_EQ((PathPieces{drive, dir, fname, ext}), piecesOf(path)) << testing::PrintToString(path);
    }
}

TEST(SplitPathDiff, ItFailsExactlyWhenAPieceDoesNotFit)
{
    const std::uint64_t seed = testSeed(20260521);
    SCOPED_TRACE(seed);
    std::mt19937 random(static_cast<unsigned int>(seed));
    for (long i = scaled(100000); i > 0; --i) {
        std::wstring path(random() % 9, L' ');
        for (wchar_t& c : path)
            c = L"ab.:/\\"[random() % 6];
        const PathPieces pieces = piecesOf(path);
        wchar_t drive[16], dir[16], fname[16], ext[16];
        const size_t counts[4] = {1 + random() % 5, 1 + random() % 8, 1 + random() % 8, 1 + random() % 8};
        const bool fits = pieces.drive.size() < counts[0] && pieces.dir.size() < counts[1] &&
                          pieces.fname.size() < counts[2] && pieces.ext.size() < counts[3];
        const int result =
            _wsplitpath_s(path.c_str(), drive, counts[0], dir, counts[1], fname, counts[2], ext, counts[3]);
        ASSERT_EQ(result, fits ? 0 : ERANGE) << testing::PrintToString(path);
    }
}

} // namespace
