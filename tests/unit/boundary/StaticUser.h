// StaticUser.h - an object that uses the library while it is built and while it is destroyed,
// and keeps something of each kind in between.
#ifndef TV_TEST_STATIC_USER_H
#define TV_TEST_STATIC_USER_H

#include "EveryArea.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <unistd.h>

/// Writes `who`, `when` and the library's stage, and ends the process when an area fails.
inline void checkAreas(const char* who, const char* when)
{
    const char* const fault = EveryArea::firstFault();
    char line[200];
    const int length = std::snprintf(
        line, sizeof line, "%s %s: the library is %s%s%s\n", who, when, EveryArea::nameOf(EveryArea::stage()),
        fault != nullptr ? ", and fails at " : "", fault != nullptr ? fault : "");
    if (::write(STDOUT_FILENO, line, static_cast<std::size_t>(length)) != length || fault != nullptr)
        std::_Exit(1);
}

class StaticUser {
public:
    explicit StaticUser(const char* who)
        : m_who(who), m_text("kept"), m_stream(8), m_cachedFile(who, "cached", ""),
          m_ownFile(who, "own", "as it was"), m_cached(nullptr), m_own(nullptr)
    {
        EveryArea::comeToTheRange();
        checkAreas(m_who, "constructor");
        for (int i = 0; i < kElements; ++i) {
            m_numbers.append(i);
            m_stream.writeByte(static_cast<unsigned char>(i));
        }
        Orna::ErrorStatus status = Orna::eOk;
        m_cached = createFileOStreamBuf(m_cachedFile.wide(), &status, TvIO::kAccessRead | TvIO::kAccessWrite,
                                        TvIO::kShareDenyNone, TvIO::kCreateAlways, 16384);
        m_own = EveryArea::openExclusively(m_ownFile.wide(), status);
        if (status != Orna::eOk)
            fail("the files");
        lookAtAll("constructor");
    }

    ~StaticUser()
    {
        lookAtAll("destructor");
        m_cached->writeBytes(reinterpret_cast<const unsigned char*>("late"), 4);
        destoryFileIOStreamBuf(m_cached);
        destoryFileIOStreamBuf(m_own);
        for (char* unit : m_units)
            _tvFree(unit);
        if (!m_cachedFile.holds("late"))
            fail("what was written at the end");
        checkAreas(m_who, "destructor");
    }

    StaticUser(const StaticUser&) = delete;
    StaticUser& operator=(const StaticUser&) = delete;

    /// Everything that is kept is as it was; a little more of it is kept each time.
    void lookAtAll(const char* when)
    {
        for (char*& unit : m_units) {
            if (unit == nullptr)
                unit = static_cast<char*>(std::memset(_tvMalloc(kUnitSize), 'u', kUnitSize));
            for (int i = 0; i < kUnitSize; ++i)
                if (unit[i] != 'u')
                    fail(when, "memory");
            if (&unit == &m_units[m_looks]) {
                ++m_looks;
                break;
            }
        }
        m_numbers.append(m_numbers.length());
        m_stream.writeByte(static_cast<unsigned char>(m_stream.length()));
        for (int i = 0; i < m_numbers.length(); ++i)
            if (m_numbers.asArrayPtr()[i] != i)
                fail(when, "a vector");
        m_stream.rewind();
        for (unsigned i = 0; i < m_stream.length(); ++i)
            if (m_stream.readByte() != (i & 0xFF))
                fail(when, "a stream");
        TvStringA copy(m_text);
        copy.setCodepage(932);
        if (std::strcmp(m_text.constStr(), "kept") != 0 || std::strcmp(copy.constStr(), "kept") != 0)
            fail(when, "a string");
        Orna::ErrorStatus second = Orna::eOk;
        destoryFileIOStreamBuf(EveryArea::openExclusively(m_ownFile.wide(), second));
        if (second != EveryArea::statusOfSecondOpen())
            fail(when, "an exclusive open");
        if (EveryArea::stage() != EveryArea::Stage::kGone && !convertsPairs())
            fail(when, "a double-byte code page");
    }

private:
    static constexpr int kElements = 700;
    static constexpr int kUnitSize = 64;
    static constexpr int kLooks = 8;

    // With the map file that was named before.
    static bool convertsPairs()
    {
        wchar_t wide = 0;
        return TvCharMapper::codepageToUnicode(0xC8CB, CP_ANSI_936, wide) && wide == 0x4EBA;
    }

    [[noreturn]] void fail(const char* when, const char* what = "")
    {
        std::fprintf(stderr, "%s: %s %s\n", m_who, when, what);
        std::_Exit(1);
    }

    const char* m_who;
    char* m_units[kLooks] = {};
    int m_looks = 0;
    TvVector<int> m_numbers;
    TvStringA m_text;
    TvFlatMemBuf m_stream;
    EveryArea::File m_cachedFile;
    EveryArea::File m_ownFile;
    TvFileStreamBuf* m_cached;
    TvFileStreamBuf* m_own;
};

#endif
