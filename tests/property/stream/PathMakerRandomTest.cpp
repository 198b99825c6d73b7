// Paths of any length and shape into parts that end at a page without access, each with the room
// that its operation promises to keep within.
#include "GuardPage.h"
#include "TestScale.h"
#include "TvFileSystem.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>
#include <random>
#include <string>
#include <vector>

namespace {

class PathMakerRandom : public testing::Test {
protected:
    // Mostly separators, dots and colons, between pieces that fit or do not fit their parts.
    std::wstring anyPath()
    {
        const wchar_t marks[] = L"/\\.:*a|";
        std::wstring path;
        for (std::size_t pieces = m_random() % 8; pieces > 0; --pieces) {
            path += marks[m_random() % 7];
            const std::size_t lengths[] = {1, 3, 7, 8, 9, 63, 64, 259, 260, 1023, 1024};
            if (m_random() % 2 == 0)
                path.append(lengths[m_random() % 11], static_cast<wchar_t>(L'a' + m_random() % 26));
        }
        return path;
    }

    template<std::size_t Room>
    static wchar_t* roomFor(GuardedArray<wchar_t>& array)
    {
        return const_cast<wchar_t*>(array.hold(std::vector<wchar_t>(Room, L'#')));
    }

    std::mt19937_64 m_random{testSeed(64)};
};

TEST_F(PathMakerRandom, PartsStayInTheirRoom)
{
    GuardedArray<wchar_t> paths(12000);
    GuardedArray<wchar_t> parts(12000);
    for (long round = scaled(20000); round > 0; --round) {
        const std::wstring text = anyPath();
        const wchar_t* const path = paths.hold(text.c_str(), text.size() + 1);
        TvPathMaker::isValidPath(path);

        wchar_t* part = roomFor<64>(parts);
        int length = TvPathMaker::getDriverName(part, path);
        ASSERT_EQ(length, static_cast<int>(std::wcslen(part)));
        part = roomFor<260>(parts);
        length = TvPathMaker::getParentDir(part, path);
        ASSERT_EQ(length, static_cast<int>(std::wcslen(part)));
        part = roomFor<8>(parts);
        length = TvPathMaker::getExtFileName(part, path);
        ASSERT_EQ(length, static_cast<int>(std::wcslen(part)));
        ASSERT_TRUE(length == 0 || part[0] == L'.');
        part = roomFor<1024>(parts);
        if (!TvPathMaker::getFileName(path, part, nullptr)) {
            ASSERT_EQ(part[0], L'\0');
        }
        part = text.size() < 2047 ? roomFor<2047>(parts) : roomFor<10000>(parts);
        TvPathMaker::getFullFileName(path, part);
        ASSERT_LE(std::wcslen(part), std::max<std::size_t>(text.size(), 2046));
    }
}

} // namespace
