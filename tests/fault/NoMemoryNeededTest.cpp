// What says that it allocates nothing works while there is no memory at all: a row for each family
// of functions, which answers how many results were wrong.
#include "FailNth.h"
#include "ScanCall.h"
#include "TvOsBase.h"

#include <gtest/gtest.h>

#include <cstring>
#include <cwchar>
#include <ostream>
#include <string>

namespace {

struct Family {
    const char* name;
    int (*wrongResults)();
};

int wrongInLocks()
{
    class Waiting : public TvSignalObject {
        void signal() override {}
    };
    TvImpLock_mac lock;
    lock.lock();
    lock.unlock();
    const Waiting waiting;
    return (waiting.waitForMe(5) != 0) + (waiting.msgWaitForMe(5, 1) != 0);
}

int wrongInAddresses()
{
    char* const start = static_cast<char*>(TvHeapConfigurator::pStartAddress);
    unsigned char flags[32768];
    TvHeapConfigurator::sInitPageFlags(flags);
    TvHeapDbgDumper::init();
    TvHeapDbgDumper::dump(start);
    TvHeapDbgDumper::uninit();
    char* const place = start + 0x312345;
    int wrong = flags[1] != 2;
    if (start != nullptr) {
        wrong += TvHeapConfigurator::sGetPageId(place) != 3;
        wrong += TvHeapConfigurator::sGetPageAddress(short{3}) != start + 0x300000;
        wrong += TvHeapConfigurator::sGetPageAddress(place) != start + 0x300000;
        wrong += TvHeapConfigurator::sGetBlockOffset(place) != 0x12 * 32;
        wrong += TvHeapConfigurator::sGetBlockAddress(place) != start + 0x300000 + 0x12 * 32;
        wrong += TvHeapConfigurator::sIsOutofHeapRange(place);
    }
    wrong += TvHeapConfigurator::sGetPagePoolIndex(8192) != 2;
    wrong += TvHeapConfigurator::sGetSizeOfPagePool(2) != 8192;
    wrong += g_tvGlobalHeap.isResident(&wrong);
    wrong += g_tvGlobalHeap.sizeOfHeap(nullptr) != 0;
    wrong += _tvMsize(nullptr) != 0;
    _tvFree(nullptr);
    _tvStrdupFree(nullptr);
    tvFreePage(nullptr);
    tvFreePageHeap(nullptr);
    g_tvGlobalHeap.freeHeap(nullptr);
    g_tvGlobalHeap.freeHeapPage(nullptr);
    return wrong;
}

int wrongInExceptions()
{
    const TvException cause(L"a.cpp", 1);
    TvException outer(L"b.cpp", 2);
    outer = cause;
    TvErrorStatus status(Orna::eFileLocked, L"text", L"c.cpp", 3);
    const TvErrorStatus copy(status);
    status = copy;
    return (std::wcscmp(outer.description(), L"TvException") != 0) + (outer.code() != 0) +
           (status.errorType() != Orna::eFileLocked) + (ornaGetCrashRecorder() != nullptr);
}

int wrongInMath()
{
    return (TvMath::fabs(-1.5) != 1.5) + (TvMath::floor(1.5) != 1) + (TvMath::ceil(1.5) != 2) +
           !TvMath::isZero(0.0, 0.1) + !TvMath::isPositive(2.0, 0.1) + !TvMath::isNegative(-2.0, 0.1) +
           !TvMath::isEqual(1.0, 1.0, 0.1);
}

int wrongInCharacters()
{
    wchar_t text[32] = {};
    unsigned short types[2] = {};
    int wrong = 0;
    wrong += std::wcscmp(_tarmcscpy(text, L"abc"), L"abc") != 0;
    wrong += std::wcscmp(_tarmcscpy_s(text, 32, L"abcd"), L"abcd") != 0;
    wrong += std::wcscmp(TvCharOp::copy(text, L"ab"), L"ab") != 0;
    wrong += std::wcscmp(TvCharOp::cat(text, L"cd"), L"abcd") != 0;
    wrong += TvCharOp::length(L"abc") != 3;
    wrong += TvCharOp::length("abc") != 3;
    wrong += TvCharOp::numOfChars("abc") != 3;
    wrong += TvCharOp::compare(L"abc", L"abd", 2) != 0;
    wrong += TvCharOp::compareNoCase(L"abc", L"ABC") != 0;
    wrong += !TvCharOp::isDigit(L'5');
    wrong += !TvCharOp::GetStringType(1, L"A", 1, types) || (types[0] & 1) == 0;
    wrong += TvCharToInt(L'7') != 7;
    wrong += !isdigit_WithDiffCodeSys(16, L'f');
    TvCharOp::zfree(nullptr);
    return wrong;
}

int wrongInCodePages()
{
    int wrong = 0;
    wrong += TvCodePageMapper::ornaCpToAnsiCp(CP_ANSI_936) != 936;
    wrong += TvCodePageMapper::ansiCpToOrnaCp(932) != CP_ANSI_932;
    wrong += TvCodePageMapper::currentSystemAnsiCp() != GetACP();
    wrong += numValidCodepages() != 46;
    wrong += !IsMultiByteCodePage(CP_ANSI_936);
    wrong += !isAsianCodepage(CP_ANSI_936);
    wrong += mapCodepage('5') != CP_ANSI_936;
    wrong += reMapCodepage(CP_ANSI_936) != '5';
    wrong += !tvIsLeadByte(0x81, CP_ANSI_936);
    wrong += !TvCharMapper::isLeadByte(0x81, CP_ANSI_936);
    wrong += !IsDBCSLeadByteEx(936, 0x81);
    wrong += theTvCodePages()->findMapperByAcadCp(CP_ANSI_1253)->m_id != CP_ANSI_1253;
    wrong += theTvCodePages()->findMapperByAnsiCp(1253)->m_id != CP_ANSI_1253;
    wrong += TvCharMapper::getCodepageByCharset(134) != CP_ANSI_936;
    wrong += TvCharMapper::getCharSetByCodepageId(CP_ANSI_936) != 134;
    wrong += TvCharMapper::getCheckSumAnsi("abc", 3) == 0;
    wrong += TvCharMapper::getCheckSumUnicode(L"abc", 3) == 0;
    return wrong;
}

int wrongInSingleCharacters()
{
    wchar_t code = 0;
    wchar_t wc = 0;
    return !TvCharMapper::unicodeToCodepage(0x3B1, CP_ANSI_1253, code, false) + (code != 0xE1) +
           !TvCharMapper::codepageToUnicode(0xE1, CP_ANSI_1253, wc) + (wc != 0x3B1) +
           !TvCharMapper::codepageToUnicode(0xE1, 0, CP_ANSI_1253, wc);
}

int wrongInEscapes()
{
    wchar_t wc = 0;
    code_page_id cp = CP_UNDEFINED;
    char text[8];
    int wrong = 0;
    wrong += !TvCharConverter::isCIF("\\U+00B0") || !TvCharConverter::isMIF("\\M+1815F");
    wrong += !TvCharConverter::parseCIFString("\\U+00B0", wc) || wc != 0xB0;
    wrong += !TvCharConverter::parseMIFString("\\M+1815F", wc, cp) || cp != CP_ANSI_932;
    wrong += TvCharConverter::getCIFString(0x20AC, text, 8) != 7;
    wrong += TvCharConverter::getMIFString(0x815F, CP_ANSI_932, text, 8) != 8;
    wrong += TvCharConverter::getMIFIndex(CP_ANSI_932) != '1';
    wrong += TvCharConverter::getMIFCodepage('1') != CP_ANSI_932;
    wrong += TvCharConverter::checkTheSameCP(CP_BIG5) != CP_ANSI_950;
    wrong += !TvCharConverter::isMBCBCodepage(CP_BIG5) || !TvCharConverter::isMIFCodepage(CP_BIG5);
    wrong += isCIForMIF(L"\\U+00B0") != 'u';
    return wrong;
}

int wrongInLanguages()
{
    wchar_t wc = 0;
    short dbcs = 0;
    int cp = 0;
    int wrong = 0;
    wrong += OrCodePage::LanguageToCodePage(0x0411) != 932;
    wrong += OrCodePage::LanguageToCharSet(0x0411) != 128 || OrCodePage::LCIDToCharSet(0x0411) != 128;
    wrong += OrCodePage::CharSetToCodePage(128) != 932;
    wrong += OrCodePage::CodePageToCharSet(932) != 128;
    wrong += OrCodePage::CodePageIndexToCodePage(1) != 932;
    wrong += OrCodePage::LineBreakClass(L'(') != 0;
    wrong += OrCodePage::AnalyzeLineBreaks(nullptr, nullptr, 0) != 0;
    wrong += OrCodePage::CharSetFromUnicode(0x3042, 0x0409, 0x0411) != 128;
    wrong += OrCodePage::LanguageFromUnicode(0x3042, 0x0409, 0x0411) != 0x0411;
    wrong += OrCodePage::SysCodePage() != static_cast<unsigned short>(GetACP());
    OrCodePage::SysDefaultLCID();
    wrong += !OrCodePage::UnicodeForUserDefinedDBCS(wc, 0x4040, 936);
    wrong += !OrCodePage::DBCSForUserDefinedUnicode(dbcs, wc) || dbcs != 0x4040;
    wrong += !OrCodePage::CodepageForUserDefinedUnicode(cp, static_cast<short>(wc)) || cp != 936;
    OrCodePage::InitUserDefinedDBCSArray();
    return wrong;
}

int wrongInWalkedText()
{
    static const TvStringA text("25\\U+00B0C \xB0\xA1"); // made while there still was memory
    TvAnsiTextIterator it(text, CP_ANSI_936);
    int characters = 0;
    while (it.nextChar() != 0)
        ++characters;
    return (characters != 6) + TvAnsiTextIterator::TvAnsiTextIteratorNotRequired(text, CP_ANSI_936);
}

int wrongInLayouts()
{
    char narrow[64];
    wchar_t wide[64];
    CvtFormatter<char>::formatF(narrow, "125", 3, 2, 1, 0);
    int wrong = std::strcmp(narrow, "1.25") != 0;
    CvtFormatter<wchar_t>::formatE(wide, "125", 3, 2, 1, 0, 'e');
    wrong += std::wcscmp(wide, L"1.25e+000") != 0;
    CvtFormatter<char>::formatG(narrow, "125", 3, 6, 1, 0, 'e', 0);
    wrong += std::strcmp(narrow, "1.25") != 0;
    wrong += TvGdImpl::ulp(1.0) != 0x1p-52;
    wrong += TvGdImpl::hi0bits(1) != 31;
    return wrong;
}

int wrongInOutput()
{
    wchar_t text[160];
    wchar_t* end = text;
    int wrong = 0;
    wrong += FormatUtil::outputStringWithFormat(text, 160, L"%5d|%.2f|%e|%g|%s|%c|%b|%X|%.32q0", 42, 1.5, 2.5,
                                                0.25, L"word", 'c', 5, 255LL, 66.5) <= 0;
    wrong += FormatUtil::StringCopy(&end, 160, L"abc", 3) != 0;
    wrong += !FormatUtil::fillStringWithBlankChar(&end, 3, L'.', 100);
    wrong += std::wcscmp(FormatUtil::formatLong(text, -255, 160, -16), L"-FF") != 0;
    FormatUtil::initializeConstVar();
    FormatUtil::formatQModeDouble(text, 160, 2.5, 1, 20);
    wrong += FormatScienceDoubleAndOutputString(text, 160, 1.25, 2) != 4;
    delPrefixSurfixZero(8, text);
    return wrong;
}

int wrongInInput()
{
    int number = 0;
    float real = 0;
    wchar_t word[16];
    return (scanText(L"42 2.5 word", L"%d %f %s", &number, &real, word) != 3) + (number != 42) +
           (real != 2.5f) + (std::wcscmp(word, L"word") != 0) + (scanEmptySource(L"%d", &number) > 0);
}

int wrongInPaths()
{
    wchar_t drive[64], dir[260], name[1024], extension[8], whole[2047];
    int wrong = 0;
    wrong += !TvPathMaker::isValidPath(L"/plans/house.dwg");
    wrong += TvPathMaker::getDriverName(drive, L"C:/plans/house.dwg") != 2;
    wrong += TvPathMaker::getParentDir(dir, L"/plans/house.dwg") != 7;
    wrong += TvPathMaker::getExtFileName(extension, L"/plans/house.dwg") != 4;
    wrong += !TvPathMaker::getFileName(L"/plans/house.dwg", name, nullptr);
    wrong += !TvPathMaker::getFullFileName(L"/plans/house.dwg", whole);
    wrong += !TvPathMaker::getAbsolutePath(whole, 2047, L"/plans");
    wrong += !TvPathMaker::splitPath(L"/a.b", drive, 64, dir, 260, name, 1024, extension, 8);
    return wrong;
}

int wrongInWhatFilesCannotDo()
{
    wchar_t out[8];
    const wchar_t* const path = L"/";
    return TvFileSystem::isDirectory(path) + TvFileSystem::createFile(path) + TvFileSystem::deleteFile(path) +
           TvFileSystem::renameFile(path, path) + static_cast<int>(TvFileSystem::getCreationTime(path)) +
           static_cast<int>(TvFileSystem::getAccessingTime(path)) +
           static_cast<int>(TvFileSystem::getModificationTime(path)) +
           static_cast<int>(TvFileSystem::getFileSize(static_cast<void*>(out))) +
           TvFileSystem::createDirectory(path) + TvFileSystem::deleteDirectory(path) +
           TvFileSystem::setCurrentDirectory(path) + TvFileSystem::getCurrentDirectory(out) +
           TvFileSystem::getOSDirectory(out) + TvFileSystem::getSystemDirectory(out) +
           TvFileSystem::getTempDirectory(out) + TvFileSystem::getRunDirectory(out) +
           static_cast<int>(TvFileSystem::getDiskAvailableSpace(path)) +
           static_cast<int>(TvFileSystem::getDiskFreeSpace(path)) +
           static_cast<int>(TvFileSystem::getDiskTotalSpace(path));
}

int wrongInStreams()
{
    static TvFlatMemBuf stream(64); // made while there still was memory
    unsigned char bytes[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    stream.rewind();
    stream.writeBytes(bytes, 8);
    stream.rewind();
    int wrong = TvPlatformStreamer::readInt16(stream) != 0x0201;
    wrong += TvPlatformStreamer::readInt32(stream) != 0x06050403;
    {
        TvAutoResetStreamPosition keep(&stream);
        stream.seek(1, TvIO::kSeekFromEnd);
        stream.getBytes(0, bytes, 8);
        stream.setByte(0, 9);
    }
    wrong += stream.tell() != 6 || stream.isEOS() || stream.length() != 8 || stream.bufSize() < 64;
    return wrong;
}

const Family kFamilies[] = {
    {"Locks", wrongInLocks},
    {"Addresses", wrongInAddresses},
    {"Exceptions", wrongInExceptions},
    {"Math", wrongInMath},
    {"Characters", wrongInCharacters},
    {"CodePages", wrongInCodePages},
    {"SingleCharacters", wrongInSingleCharacters},
    {"Escapes", wrongInEscapes},
    {"Languages", wrongInLanguages},
    {"WalkedText", wrongInWalkedText},
    {"Layouts", wrongInLayouts},
    {"Output", wrongInOutput},
    {"Input", wrongInInput},
    {"Paths", wrongInPaths},
    {"WhatFilesCannotDo", wrongInWhatFilesCannotDo},
    {"Streams", wrongInStreams},
};

void PrintTo(const Family& family, std::ostream* out) { *out << family.name; }

class NoMemoryNeeded : public testing::TestWithParam<Family> {
protected:
    void SetUp() override
    {
        theTvCodePages()->init();
        EXPECT_EQ(GetParam().wrongResults(), 0) << "with memory";
    }
    void TearDown() override { theTvCodePages()->release(); }

    static void runWithout(FailNth::Kind kind)
    {
        int wrong = 0;
        bool fired = false;
        {
            const FailNth fail(kind, 1, FailNth::FromThenOn);
            wrong = GetParam().wrongResults();
            fired = fail.fired();
        }
        EXPECT_EQ(wrong, 0);
        EXPECT_FALSE(fired) << "memory was asked for";
    }
};

TEST_P(NoMemoryNeeded, WithoutMalloc) { runWithout(FailNth::Malloc); }
TEST_P(NoMemoryNeeded, WithoutNew) { runWithout(FailNth::New); }

INSTANTIATE_TEST_SUITE_P(Families, NoMemoryNeeded, testing::ValuesIn(kFamilies),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace
