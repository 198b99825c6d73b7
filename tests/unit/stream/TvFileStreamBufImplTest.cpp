#include "TvFileStreamBuf.h"

#include "FileStreams.h"
#include "Recorder.h"
#include "TestFiles.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

constexpr std::uint64_t kMinusOne = ~std::uint64_t{0};

class TvFileStreamBufImplTest : public testing::Test {
protected:
    // A stream over a file of ten digits.
    Opened<TvFileStreamBufImpl> digits() { return openFile(files.put("digits", "0123456789")); }

    TestFiles files;
};

TEST_F(TvFileStreamBufImplTest, OpenStreamKnowsItsNameAndShareMode)
{
    const std::wstring name = files.put("a", "");
    const auto file = openFile(name, kBoth, TvIO::kShareDenyNone, TvIO::kOpenExisting);
    EXPECT_EQ(file->fileName(), name);
    EXPECT_EQ(file->shareMode(), TvIO::kShareDenyNone);
    EXPECT_TRUE(hasFile(*file));
}

TEST_F(TvFileStreamBufImplTest, AnyShareModeIsStored)
{
    for (const std::uint32_t mode : {0u, 77u, 0xFFFFFFFFu}) {
        const auto file = openFile(files.put("a", ""), kBoth, static_cast<TvIO::ShareMode>(mode));
        EXPECT_EQ(file->shareMode(), mode);
    }
}

TEST_F(TvFileStreamBufImplTest, WhatIsWrittenIsReadBack)
{
    const auto file = openFile(files.wide("a"));
    write(*file, "hello");
    file->rewind();
    EXPECT_EQ(read(*file, 5), "hello");
    EXPECT_EQ(file->tell(), 5u);
}

TEST_F(TvFileStreamBufImplTest, WriteDirectlyAfterAReadGoesToTheCursor)
{
    const auto file = digits();
    read(*file, 3);
    write(*file, "XY");
    file->close();
    EXPECT_EQ(files.get("digits"), "012XY56789");
}

TEST_F(TvFileStreamBufImplTest, LargeReadDirectlyAfterAWriteLosesNothing)
{
    const auto file = openFile(files.put("a", std::string(100000, '.')));
    write(*file, "ab");
    EXPECT_EQ(read(*file, 50000), std::string(50000, '.'));
    EXPECT_EQ(file->tell(), 50002u);
    file->close();
    EXPECT_EQ(files.get("a"), "ab" + std::string(99998, '.'));
}

TEST_F(TvFileStreamBufImplTest, LengthIsTheSizeOnDisk)
{
    const auto file = digits();
    EXPECT_EQ(file->length(), 10u);
    write(*file, std::string(20, 'x'));
    EXPECT_EQ(file->length(), 10u); // still held back by the C library
    file->seek(0, TvIO::kSeekFromStart);
    EXPECT_EQ(file->length(), 20u);
}

TEST_F(TvFileStreamBufImplTest, TruncateMovesToTheEndAndCutsNothing)
{
    const auto file = digits();
    file->seek(3, TvIO::kSeekFromStart);
    file->truncate();
    EXPECT_EQ(file->tell(), 10u);
    EXPECT_EQ(file->length(), 10u);
}

TEST_F(TvFileStreamBufImplTest, ShortReadIsNotReported)
{
    Recorder recorder;
    const auto file = digits();
    file->seek(8, TvIO::kSeekFromStart);
    EXPECT_EQ(read(*file, 4), "89??");
    EXPECT_TRUE(file->isEOS());
    EXPECT_TRUE(recorder.faults().empty());
}

TEST_F(TvFileStreamBufImplTest, GetBytesPutsTheCursorBack)
{
    const auto file = digits();
    file->seek(4, TvIO::kSeekFromStart);
    EXPECT_EQ(get(*file, 3), "456");
    EXPECT_EQ(file->tell(), 4u);
}

TEST_F(TvFileStreamBufImplTest, SetBytesPutsTheCursorBack)
{
    const auto file = digits();
    file->seek(4, TvIO::kSeekFromStart);
    file->setBytes(bytesOf("XYZ"), 3);
    EXPECT_EQ(file->tell(), 4u);
    file->close();
    EXPECT_EQ(files.get("digits"), "0123XYZ789");
}

TEST_F(TvFileStreamBufImplTest, GetBytesAtAPositionEndsBehindTheBytes)
{
    const auto file = digits();
    unsigned char buf[3] = {};
    file->getBytes(5, buf, 3);
    EXPECT_EQ(std::string(buf, buf + 3), "567");
    EXPECT_EQ(file->tell(), 8u);
}

TEST_F(TvFileStreamBufImplTest, SetBytesAtAPositionEndsBehindTheBytes)
{
    const auto file = digits();
    file->setBytes(5, bytesOf("XYZ"), 3);
    EXPECT_EQ(file->tell(), 8u);
    file->close();
    EXPECT_EQ(files.get("digits"), "01234XYZ89");
}

TEST_F(TvFileStreamBufImplTest, SetBytesAtAPositionMayLengthenTheFile)
{
    const auto file = digits();
    file->setBytes(12, bytesOf("XYZ"), 3);
    file->close();
    EXPECT_EQ(files.get("digits"), std::string("0123456789\0\0XYZ", 15));
}

TEST_F(TvFileStreamBufImplTest, ReadBytesAtAPositionIsBoundedByTheLength)
{
    Recorder recorder;
    const auto file = digits();
    unsigned char buf[4] = {'?', '?', '?', '?'};
    file->readBytes(7, buf, 4);
    EXPECT_EQ(std::string(buf, buf + 4), "????");
    EXPECT_EQ(recorder.messages(), std::vector<std::wstring>{L"Out of stream buffer!"});
}

TEST_F(TvFileStreamBufImplTest, WriteBytesAtAPositionNeverLengthensTheFile)
{
    Recorder recorder;
    const auto file = digits();
    file->writeBytes(8, bytesOf("XYZ"), 3);
    file->close();
    EXPECT_EQ(files.get("digits"), "0123456789");
    EXPECT_EQ(recorder.messages(), std::vector<std::wstring>{L"Out of stream buffer!"});
}

TEST_F(TvFileStreamBufImplTest, WriteBytesAtAPositionPutsTheCursorBack)
{
    const auto file = digits();
    file->writeBytes(8, bytesOf("XY"), 2);
    EXPECT_EQ(file->tell(), 0u);
    file->close();
    EXPECT_EQ(files.get("digits"), "01234567XY");
}

TEST_F(TvFileStreamBufImplTest, SingleBytesGoThroughTheBulkOperations)
{
    const auto file = digits();
    EXPECT_EQ(file->readByte(), '0');
    EXPECT_EQ(file->getByte(), '1'); // at the cursor, in the form with a position: moves on
    EXPECT_EQ(file->tell(), 2u);
    file->writeByte('X');
    file->setByte('Y');
    EXPECT_EQ(file->tell(), 4u);
    file->close();
    EXPECT_EQ(files.get("digits"), "01XY456789");
}

// Seeks on ten bytes with the cursor at 4; `result` -2 stands for "File internal error!".
struct FileSeekCase {
    const char* name;
    std::uint32_t type;
    std::uint64_t offset;
    std::int64_t result;
    std::uint64_t expected;
};

void PrintTo(const FileSeekCase& c, std::ostream* out) { *out << c.name; }

class FileSeek : public testing::TestWithParam<FileSeekCase> {};

TEST_P(FileSeek, GoesToThePlace)
{
    TestFiles files;
    const auto file = openFile(files.put("digits", "0123456789"));
    file->seek(4, TvIO::kSeekFromStart);
    std::int64_t result = -3;
    try {
        result = file->seek(GetParam().offset, GetParam().type);
    } catch (const wchar_t* message) {
        EXPECT_STREQ(message, L"File internal error!");
        result = -2;
    }
    EXPECT_EQ(result, GetParam().result);
    EXPECT_EQ(file->tell(), GetParam().expected);
}

const FileSeekCase kFileSeekCases[] = {
    {"FromStart", 0, 7, 0, 7},
    {"PastTheEndIsAPlace", 0, 1000, 0, 1000},
    {"ForwardAdds", 1, 3, 0, 7},
    {"ForwardByMinusOneGoesBack", 1, kMinusOne, 0, 3},
    {"BackwardSubtracts", 2, 3, 0, 1},
    {"BackwardToTheStart", 2, 4, 0, 0},
    {"BackwardBeforeTheStartIsThrown", 2, 5, -2, 4},
    {"FromEndCountsForward", 3, 10, 0, 20},
    {"FromEndWithZeroIsTheEnd", 3, 0, 0, 10},
    {"UnknownTypeIsFromStart", 4, 7, 0, 7},
    {"NegativePlaceIsThrown", 0, 0x8000000000000000u, -2, 4},
    {"MinusOneIsRefusedWithoutAThrow", 0, kMinusOne, -1, 4},
    {"LowHalfAllOnesIsRefusedWithoutAThrow", 0, 0x80000000FFFFFFFFu, -1, 4},
    {"LowHalfAllOnesThatIsAPlaceIsReached", 0, 0xFFFFFFFFu, 0, 0xFFFFFFFFu},
};

INSTANTIATE_TEST_SUITE_P(Cases, FileSeek, testing::ValuesIn(kFileSeekCases),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(TvFileStreamBufImplTest, CloseForgetsTheFile)
{
    const auto file = digits();
    file->close();
    EXPECT_FALSE(hasFile(*file));
    EXPECT_EQ(file->fileHandle(), reinterpret_cast<void*>(-1));
    EXPECT_EQ(file->fileName(), nullptr);
    EXPECT_EQ(file->shareMode(), 0u);
}

TEST_F(TvFileStreamBufImplTest, CloseMayBeRepeated)
{
    const auto file = digits();
    file->close();
    file->close();
    EXPECT_FALSE(hasFile(*file));
}

TEST_F(TvFileStreamBufImplTest, DestructorClosesAndWritesWhatIsHeldBack)
{
    {
        const auto file = openFile(files.wide("a"));
        write(*file, "hello");
    }
    EXPECT_EQ(files.get("a"), "hello");
}

TEST_F(TvFileStreamBufImplTest, StreamMayBeOpenedAgain)
{
    const std::wstring second = files.put("b", "second");
    const auto file = digits();
    EXPECT_EQ(file->open(second.c_str(), kBoth, TvIO::kShareDenyNone, TvIO::kOpenExisting), Orna::eOk);
    EXPECT_EQ(file->fileName(), second);
    EXPECT_EQ(read(*file, 6), "second");
}

TEST_F(TvFileStreamBufImplTest, StreamMayBeOpenedAgainByItsOwnName)
{
    const auto file = digits();
    EXPECT_EQ(file->open(file->fileName(), kBoth, TvIO::kShareDenyNone, TvIO::kOpenExisting), Orna::eOk);
    EXPECT_EQ(file->fileName(), files.wide("digits"));
}

TEST_F(TvFileStreamBufImplTest, FailedSecondOpenLeavesNoFile)
{
    const auto file = digits();
    EXPECT_EQ(file->open(files.wide("missing").c_str(), kBoth, TvIO::kShareDenyNone, TvIO::kOpenExisting),
              Orna::eFileNotFound);
    EXPECT_FALSE(hasFile(*file));
    EXPECT_EQ(file->fileName(), nullptr);
}

TEST_F(TvFileStreamBufImplTest, OpenClosesThroughTheVirtualFunction)
{
    class Counting : public TvFileStreamBufImpl {
    public:
        using TvFileStreamBufImpl::TvFileStreamBufImpl;
        void close() override
        {
            ++closed;
            TvFileStreamBufImpl::close();
        }
        int closed = 0;
    };
    Orna::ErrorStatus status = Orna::eOk;
    Counting file(files.put("a", "").c_str(), &status, kBoth, TvIO::kShareDenyNone, TvIO::kOpenExisting);
    file.open(files.wide("a").c_str(), kBoth, TvIO::kShareDenyNone, TvIO::kOpenExisting);
    EXPECT_EQ(file.closed, 1);
}

TEST_F(TvFileStreamBufImplTest, AdoptedStreamIsReadWrittenMeasuredAndClosed)
{
    std::FILE* const handle = std::fopen(files.path("a").c_str(), "w+b");
    ASSERT_NE(handle, nullptr);
    TvFileIOStreamBuf* const file = createFileIOStreamBuf(handle);
    EXPECT_EQ(file->fileHandle(), handle);
    EXPECT_EQ(file->fileName(), nullptr);
    EXPECT_EQ(file->shareMode(), 0u);
    write(*file, "hello");
    file->rewind();
    EXPECT_EQ(file->length(), 5u);
    EXPECT_EQ(read(*file, 5), "hello");
    destoryFileIOStreamBuf(file);
    EXPECT_EQ(files.get("a"), "hello");
}

// Streams without a file: never opened, closed, null and "no file" adopted.
struct NoFile {
    const char* name;
    TvFileStreamBufImpl* (*make)(const TestFiles& files);
};

class WithoutFile : public testing::TestWithParam<NoFile> {
protected:
    TestFiles files;
    std::unique_ptr<TvFileStreamBufImpl> stream{GetParam().make(files)};
};

TEST_P(WithoutFile, TellAndLengthAreZero)
{
    EXPECT_EQ(stream->tell(), 0u);
    EXPECT_EQ(stream->length(), 0u);
    EXPECT_TRUE(stream->isEOS());
}

TEST_P(WithoutFile, ReadsThrowTheEnd)
{
    unsigned char b = 0;
    EXPECT_EQ(thrownBy([&] { stream->readBytes(&b, 1); }), L"End of file!");
    EXPECT_EQ(thrownBy([&] { stream->getBytes(&b, 1); }), L"End of file!");
    EXPECT_EQ(thrownBy([&] { stream->getBytes(0, &b, 1); }), L"End of file!");
    EXPECT_EQ(thrownBy([&] { stream->readByte(); }), L"End of file!");
}

TEST_P(WithoutFile, WritesThrow)
{
    const unsigned char b = 0;
    EXPECT_EQ(thrownBy([&] { stream->writeBytes(&b, 1); }), L"Write file error!");
    EXPECT_EQ(thrownBy([&] { stream->setBytes(&b, 1); }), L"Write file error!");
    EXPECT_EQ(thrownBy([&] { stream->setBytes(0, &b, 1); }), L"Write file error!");
    EXPECT_EQ(thrownBy([&] { stream->writeByte('x'); }), L"Write file error!");
}

TEST_P(WithoutFile, SeeksThrow)
{
    EXPECT_EQ(thrownBy([&] { stream->seek(0, TvIO::kSeekFromStart); }), L"File internal error!");
    EXPECT_EQ(thrownBy([&] { stream->seek(kMinusOne, TvIO::kSeekFromEnd); }), L"File internal error!");
    EXPECT_EQ(thrownBy([&] { stream->rewind(); }), L"File internal error!");
}

TEST_P(WithoutFile, TruncateAndCloseDoNothing)
{
    stream->truncate();
    stream->close();
    EXPECT_FALSE(hasFile(*stream));
}

TEST_P(WithoutFile, MayBeOpened)
{
    const std::wstring name = files.put("late", "late");
    EXPECT_EQ(stream->open(name.c_str(), kBoth, TvIO::kShareDenyNone, TvIO::kOpenExisting), Orna::eOk);
    EXPECT_EQ(read(*stream, 4), "late");
}

template<class Stream>
TvFileStreamBufImpl* missing(const TestFiles& files)
{
    Orna::ErrorStatus status = Orna::eOk;
    return new Stream(files.wide("missing").c_str(), &status, kRead, TvIO::kShareDenyNone,
                      TvIO::kOpenExisting);
}

const NoFile kNoFiles[] = {
    {"FailedOpen", missing<TvFileStreamBufImpl>},
    {"FailedReadStream", missing<TvFileIStreamBuf>},
    {"FailedReadWriteStream", missing<TvFileIOStreamBuf>},
    {"FailedWriteStream",
     [](const TestFiles& files) -> TvFileStreamBufImpl* {
         Orna::ErrorStatus status = Orna::eOk;
         return createFileOStreamBuf(files.wide("missing").c_str(), &status, kBoth, TvIO::kShareDenyNone,
                                     TvIO::kOpenExisting, 100);
     }},
    {"Closed",
     [](const TestFiles& files) -> TvFileStreamBufImpl* {
         TvFileStreamBufImpl* const stream = openFile(files.put("a", "text")).stream.release();
         stream->close();
         return stream;
     }},
    {"ClosedWriteStreamThatWrote",
     [](const TestFiles& files) -> TvFileStreamBufImpl* {
         TvFileOStreamBuf* const stream = openOut(files.wide("a")).stream.release();
         write(*stream, "text");
         stream->close();
         return stream;
     }},
    {"AdoptedNull", [](const TestFiles&) -> TvFileStreamBufImpl* { return createFileIOStreamBuf(nullptr); }},
    {"AdoptedNoFile",
     [](const TestFiles&) -> TvFileStreamBufImpl* {
         return createFileIOStreamBuf(reinterpret_cast<void*>(-1));
     }},
};

INSTANTIATE_TEST_SUITE_P(Streams, WithoutFile, testing::ValuesIn(kNoFiles),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(TvFileFactories, EachReturnsTheClassThatItMakes)
{
    TestFiles files;
    const std::wstring name = files.put("a", "");
    Orna::ErrorStatus status = Orna::eOk;
    std::unique_ptr<TvFileStreamBufImpl> both(
        createFileStreamBuf(name.c_str(), &status, kRead, TvIO::kShareDenyNone, TvIO::kOpenExisting));
    std::unique_ptr<TvFileIStreamBuf> in(
        createFileIStreamBuf(name.c_str(), &status, kRead, TvIO::kShareDenyNone, TvIO::kOpenExisting));
    std::unique_ptr<TvFileOStreamBuf> out(
        createFileOStreamBuf(name.c_str(), &status, kWrite, TvIO::kShareDenyNone, TvIO::kOpenExisting, 100));
    std::unique_ptr<TvFileIOStreamBuf> io(
        createFileIOStreamBuf(name.c_str(), &status, kRead, TvIO::kShareDenyNone, TvIO::kOpenExisting));
    EXPECT_EQ(typeid(*both), typeid(TvFileStreamBufImpl));
    EXPECT_EQ(typeid(*in), typeid(TvFileIStreamBuf));
    EXPECT_EQ(typeid(*out), typeid(TvFileOStreamBuf));
    EXPECT_EQ(typeid(*io), typeid(TvFileIOStreamBuf));
    EXPECT_EQ(status, Orna::eOk);
}

TEST(TvFileFactories, EachTakesPlainNumbersToo)
{
    TestFiles files;
    const std::wstring name = files.put("a", "");
    Orna::ErrorStatus status = Orna::eOk;
    std::unique_ptr<TvFileStreamBuf> both(createFileStreamBuf(name.c_str(), &status, 0xC0000000u, 64, 3));
    std::unique_ptr<TvFileStreamBuf> in(createFileIStreamBuf(name.c_str(), &status, 0x80000000u, 64, 3));
    std::unique_ptr<TvFileStreamBuf> out(
        createFileOStreamBuf(name.c_str(), &status, 0x40000000u, 64, 3, 100));
    std::unique_ptr<TvFileStreamBuf> io(createFileIOStreamBuf(name.c_str(), &status, 0xC0000000u, 64, 3));
    EXPECT_TRUE(hasFile(*both) && hasFile(*in) && hasFile(*out) && hasFile(*io));
    EXPECT_EQ(status, Orna::eOk);
}

TEST(TvFileFactories, DestroyOfNullIsIgnored) { destoryFileIOStreamBuf(nullptr); }

} // namespace
