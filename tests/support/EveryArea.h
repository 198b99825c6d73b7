// EveryArea.h - uses each area of the library once, and names the first that does not do
// what it should. For programs that ask at odd moments: nothing here needs gtest, the
// standard streams, or a constructor that has run before.
#ifndef TV_TEST_EVERY_AREA_H
#define TV_TEST_EVERY_AREA_H

#include "TvOsBase.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string>

#include <unistd.h>

namespace EveryArea {

/// How far the library's own life has gone, as its heap shows it.
enum class Stage { kNotYet, kThere, kGone };

inline Stage stage()
{
    if (g_tvGlobalHeap.m_searchHint == 0)
        return Stage::kNotYet;
    return g_tvGlobalHeap.pools[1] != nullptr ? Stage::kThere : Stage::kGone;
}

inline const char* nameOf(Stage stage)
{
    switch (stage) {
    case Stage::kNotYet:
        return "not yet there";
    case Stage::kThere:
        return "there";
    case Stage::kGone:
        return "gone";
    }
    return "?";
}

/// Makes requests until memory comes from the heap's range, where there is one: the first
/// thousands are served by `malloc`.
inline void comeToTheRange()
{
    for (int i = 0; i < 8200; ++i) {
        void* const block = _tvMalloc(4096);
        const bool isPooled = g_tvGlobalHeap.isResident(block);
        _tvFree(block);
        if (isPooled)
            return;
    }
}

/// A file of the process's own that goes with the object.
class File {
public:
    File(const char* owner, const char* name, const char* content)
    {
        const char* const folder = std::getenv("TMPDIR");
        std::snprintf(m_path, sizeof m_path, "%s/tvosbase-%s-%s-%ld", folder != nullptr ? folder : "/tmp",
                      owner, name, static_cast<long>(::getpid()));
        if (std::FILE* const file = std::fopen(m_path, "wb")) {
            std::fputs(content, file);
            std::fclose(file);
        }
        for (std::size_t i = 0; i < sizeof m_path; ++i)
            m_wide[i] = static_cast<unsigned char>(m_path[i]);
    }
    ~File() { std::remove(m_path); }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    const wchar_t* wide() const { return m_wide; }

    bool holds(const char* content) const
    {
        char text[64] = {};
        if (std::FILE* const file = std::fopen(m_path, "rb")) {
            text[std::fread(text, 1, sizeof text - 1, file)] = 0;
            std::fclose(file);
        }
        return std::strcmp(text, content) == 0;
    }

private:
    char m_path[512] = {};
    wchar_t m_wide[512] = {};
};

inline bool heap()
{
    auto* bytes = static_cast<char*>(_tvMalloc(20));
    if (bytes == nullptr)
        return false;
    std::memcpy(bytes, "nineteen characters", 20);
    bytes = static_cast<char*>(_tvRealloc(bytes, 5000));
    void* const page = tvAllocPageHeap(8192);
    void* const large = _tvMalloc(3 << 20);
    if (bytes == nullptr || page == nullptr || large == nullptr)
        return false;
    std::memset(page, 1, 8192);
    const bool isRight = std::strcmp(bytes, "nineteen characters") == 0 && _tvMsize(bytes) >= 5000 &&
                         static_cast<char*>(page)[8191] == 1;
    _tvFree(bytes);
    tvFreePageHeap(page);
    _tvFree(large);
    return isRight;
}

inline bool vectors()
{
    TvVector<int> numbers;
    for (int i = 0; i < 100; ++i)
        numbers.append(i);
    TvVector<int> copy = numbers;
    copy.at(0) = 7;
    return numbers.length() == 100 && numbers.at(0) == 0 && copy.at(0) == 7 && copy.at(99) == 99;
}

inline bool strings()
{
    TvStringA walls("walls");
    TvStringA copy(walls);
    copy.setCodepage(932);
    const TvStringA empty;
    return std::strcmp(copy.constStr(), "walls") == 0 && copy.header()->codepage == 932 &&
           walls.header()->codepage == static_cast<int>(GetACP()) && *empty.constStr() == 0;
}

inline bool memoryStreams()
{
    TvFlatMemBuf buffer(8);
    for (int i = 0; i < 5000; ++i)
        buffer.writeByte(static_cast<unsigned char>(i));
    buffer.seek(4999, TvIO::kSeekFromStart);
    return buffer.length() == 5000 && buffer.readByte() == (4999 & 0xFF);
}

// Numbers that need the powers of five.
inline bool numbers()
{
    char shown[64];
    tvFltToG(shown, 5e-324, 17, 'e', 0);
    const char* const justAboveOne = "1.000000000000000111022302462515654042363166809082031250000000000001";
    const char* const halfway = "1.00000000000000011102230246251565404236316680908203125";
    return std::strcmp(shown, "4.9406564584124654e-324") == 0 && tvStrToD(justAboveOne, nullptr) > 1.0 &&
           tvStrToD(halfway, nullptr) == 1.0 && tvStrToD("0.1", nullptr) == 0.1;
}

inline bool output()
{
    wchar_t text[64];
    FormatUtil::outputStringWithFormat(text, 64, L"%s=%d %.3f", L"width", 7, 0.125);
    return std::wcscmp(text, L"width=7 0.125") == 0;
}

inline int scan(const wchar_t* text, const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    const int stored = InputWithFormat(false, text, format, &args);
    va_end(args);
    return stored;
}

inline bool input()
{
    int number = 0;
    double width = 0;
    return scan(L"7 0.25", L"%d %F", &number, &width) == 2 && number == 7 && width == 0.25;
}

inline bool mapper()
{
    static const wchar_t map[] = L"" TV_SOURCE_DIR "/data/codepage.map";
    if (TvCharMapper::initialize(map) != Orna::eOk)
        return false;
    TvVector<wchar_t> wide;
    TvVector<char> bytes;
    TvCharMapper::multiByteToWideChar(CP_ANSI_936, "\xC8\xCB \\U+2300", 10, wide);
    TvCharMapper::wideCharToMultiByte(CP_ANSI_936, wide.asArrayPtr(), wide.length() - 1, bytes);
    wchar_t room[16] = {};
    const int length = MultiByteToWideChar(1253, 0, "\xD4\xEF", 2, room, 16);
    return wide.length() == 4 && wide.at(0) == 0x4EBA && wide.at(2) == 0x2300 &&
           std::strcmp(bytes.asArrayPtr(), "\xC8\xCB \\U+2300") == 0 && length == 2 && room[0] == 0x3A4;
}

inline bool registryOfPages()
{
    return theTvCodePages()->findMapperByAnsiCp(949)->m_id == CP_ANSI_949 && tvIsLeadByte(0xC8, CP_ANSI_936);
}

inline bool fonts()
{
    const File ini("area", "ini", "our font.shx;5\n");
    return ReadBigfontIni(ini.wide()) == (stage() == Stage::kThere) &&
           findCodepageByBigfont(L"extfont2.shx", nullptr) == 1 &&
           findCodepageByBigfont(L"a font of nobody.shx", nullptr) >= 0;
}

inline bool punctuation()
{
    const int length = TvCharCategory::s_instance.allPuncts().length();
    return length == (stage() == Stage::kThere ? 97 : 0);
}

inline bool languages() { return OrCodePage::SysDefaultLCID() != 0 && OrCodePage::SysCodePage() != 0; }

inline TvFileStreamBuf* openExclusively(const wchar_t* path, Orna::ErrorStatus& status)
{
    return createFileStreamBuf(path, &status, TvIO::kAccessRead | TvIO::kAccessWrite, TvIO::kShareDenyWrite,
                               TvIO::kOpenExisting);
}

/// What an exclusive open of a file answers that this process holds: without a registry it
/// is like any other.
inline Orna::ErrorStatus statusOfSecondOpen()
{
    return stage() == Stage::kGone ? Orna::eOk : Orna::eFileNotFound;
}

inline bool files()
{
    const File file("area", "text", "as it was");
    Orna::ErrorStatus first = Orna::eOk;
    Orna::ErrorStatus second = Orna::eOk;
    TvFileStreamBuf* const owner = openExclusively(file.wide(), first);
    owner->writeBytes(reinterpret_cast<const unsigned char*>("now"), 3);
    destoryFileIOStreamBuf(openExclusively(file.wide(), second));
    destoryFileIOStreamBuf(owner);
    if (first != Orna::eOk || second != statusOfSecondOpen())
        return false;
    TvFileStreamBuf* const reader = TvFileSystem::createFileBuf(file.wide(), TvIO::kAccessRead,
                                                                TvIO::kShareDenyNone, TvIO::kOpenExisting);
    unsigned char text[9] = {};
    reader->readBytes(text, 9);
    destoryFileIOStreamBuf(reader);
    return std::memcmp(text, "nowit was", 9) == 0 && TvFileSystem::isFileExisting(file.wide());
}

inline bool paths()
{
    wchar_t out[300];
    return TvPathMaker::getExtFileName(out, L"C:\\plans\\hall.dwg") == 4 && std::wcscmp(out, L".dwg") == 0;
}

inline bool characters() { return TvCharOp::numOfChars("walls") == 5 && TvMath::isZero(0.0, 1e-10); }

inline bool reports()
{
    struct Recorder : CrashRecorder {
        void record(TvException*) override { ++count; }
        int count = 0;
    } recorder;
    CrashRecorder* const before = ornaGetCrashRecorder();
    ornaSetCrashRecorder(&recorder);
    TvFlatMemBuf nothing(8);
    nothing.readByte();
    ornaSetCrashRecorder(before);
    return recorder.count == 1;
}

inline bool tracers()
{
    static const wchar_t* traced;
    static wchar_t text[64];
    traced = nullptr;
    const auto before = TvTracer::sm_pfnTraceW;
    TvTracer::setTraceFunctionW([](const wchar_t* message) { traced = std::wcscpy(text, message); });
    TvTracer(L"%s %d", L"layer", 3);
    TvTracer::setTraceFunctionW(before);
    return traced != nullptr && std::wcscmp(traced, L"layer 3") == 0;
}

inline bool locks()
{
    TvLock* const lock = createTvLock();
    delete lock;
    return lock != nullptr;
}

struct Area {
    const char* name;
    bool (*works)();
};

/// The name of the first area that fails, null when all work. What needs the map file comes
/// behind what has to work without.
inline const char* firstFault()
{
    static constexpr Area areas[] = {
        {"heap", heap},       {"vectors", vectors},       {"strings", strings}, {"streams", memoryStreams},
        {"numbers", numbers}, {"output", output},         {"input", input},     {"files", files},
        {"paths", paths},     {"languages", languages},   {"fonts", fonts},     {"punctuation", punctuation},
        {"reports", reports}, {"tracers", tracers},       {"locks", locks},     {"characters", characters},
        {"mapper", mapper},   {"pages", registryOfPages},
    };
    for (const Area& area : areas)
        if (!area.works())
            return area.name;
    return nullptr;
}

} // namespace EveryArea

#endif
