// The order of the virtual functions is a promise to code compiled elsewhere. Each test
// calls a slot of the virtual table by its number and sees which function answers.

#include "TvFileStreamBuf.h"
#include "TvMemStreamBuf.h"
#include "TvStreamBuf.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

std::string g_answer;

// Each override, declared in no special order, leaves its signature in g_answer.
#define TV_ANSWER(text)                                                                                      \
    {                                                                                                        \
        g_answer = text;                                                                                     \
        return {};                                                                                           \
    }
#define TV_ANSWER_VOID(text)                                                                                 \
    {                                                                                                        \
        g_answer = text;                                                                                     \
    }

template<class Base>
class AnsweringStream : public Base {
public:
    using Base::Base;
    using U64 = std::uint64_t;
    using U32 = std::uint32_t;
    using Byte = unsigned char;

    void copyTo(TvStreamBuf*, U64, U64) override
        TV_ANSWER_VOID("copyTo") void copyFrom(TvStreamBuf*, U64, U64) override TV_ANSWER_VOID("copyFrom") U64
        length() const override TV_ANSWER("length") U64 tell() const override
        TV_ANSWER("tell") bool isEOS() const override
        TV_ANSWER("isEOS") void setBytes(U64, const Byte*, U32) override
        TV_ANSWER_VOID("setBytes at") void setBytes(const Byte*, U32) override
        TV_ANSWER_VOID("setBytes") void getBytes(U64, Byte*, U32) override
        TV_ANSWER_VOID("getBytes at") void getBytes(Byte*, U32) override
        TV_ANSWER_VOID("getBytes") void writeBytes(U64, const Byte*, U32) override
        TV_ANSWER_VOID("writeBytes at") void writeBytes(const Byte*, U32) override
        TV_ANSWER_VOID("writeBytes") void readBytes(U64, Byte*, U32) override
        TV_ANSWER_VOID("readBytes at") void readBytes(Byte*, U32) override
        TV_ANSWER_VOID("readBytes") void setByte(U64, Byte) override
        TV_ANSWER_VOID("setByte at") void setByte(Byte) override TV_ANSWER_VOID("setByte") Byte
        getByte(U64) override TV_ANSWER("getByte at") Byte getByte() override
        TV_ANSWER("getByte") void writeByte(U64, Byte) override
        TV_ANSWER_VOID("writeByte at") void writeByte(Byte) override TV_ANSWER_VOID("writeByte") Byte
        readByte(U64) override TV_ANSWER("readByte at") Byte readByte() override
        TV_ANSWER("readByte") std::int64_t seek(U64, TvIO::SeekType) override
        TV_ANSWER("seek") const Byte* buffer() const override
        TV_ANSWER("buffer const") Byte* buffer() override TV_ANSWER("buffer") std::int64_t rewind() override
        TV_ANSWER("rewind") void truncate() override TV_ANSWER_VOID("truncate") void setlength(U64) override
        TV_ANSWER_VOID("setlength")
};

template<class Base>
class AnsweringMemStream : public AnsweringStream<Base> {
public:
    using AnsweringStream<Base>::AnsweringStream;
    void moveTo(std::uint64_t) override TV_ANSWER_VOID("moveTo") void reserve(std::uint32_t) override
        TV_ANSWER_VOID("reserve") void resize(std::uint32_t) override TV_ANSWER_VOID("resize") std::uint32_t
        bufSize() const override TV_ANSWER("bufSize")
};

class AnsweringFlatMemBuf : public AnsweringMemStream<TvFlatMemBuf> {
public:
    AnsweringFlatMemBuf() : AnsweringMemStream<TvFlatMemBuf>(std::uint32_t{0}) {}
    void close() override TV_ANSWER_VOID("close") void open(void*, std::uint32_t, std::uint32_t) override
        TV_ANSWER_VOID("open")
};

template<class Base>
class AnsweringFileStream : public AnsweringStream<Base> {
public:
    using AnsweringStream<Base>::AnsweringStream;
    void* fileHandle() const override TV_ANSWER("fileHandle") TvIO::ShareMode shareMode() const override
        TV_ANSWER("shareMode") const wchar_t* fileName() const override TV_ANSWER("fileName")
};

class AnsweringFileImpl : public AnsweringFileStream<TvFileStreamBufImpl> {
public:
    AnsweringFileImpl() : AnsweringFileStream<TvFileStreamBufImpl>(static_cast<void*>(nullptr)) {}
    void close() override TV_ANSWER_VOID("close")
};

// Calls slot `number`, as compiled code does: the arguments that a function does not take
// stay unread in their registers.
std::string answerOfSlot(TvStreamBuf& stream, int number)
{
    using Slot = std::uint64_t (*)(void*, std::uint64_t, std::uint64_t, std::uint64_t);
    const Slot* const table = *reinterpret_cast<Slot* const*>(&stream);
    g_answer = "nobody";
    table[number](&stream, 0, 0, 0);
    return g_answer;
}

struct SlotCase {
    int number;
    const char* answer;
};

void PrintTo(const SlotCase& slot, std::ostream* out) { *out << slot.number << " " << slot.answer; }

std::string nameOf(const testing::TestParamInfo<SlotCase>& info)
{
    std::string name = info.param.answer;
    for (char& c : name)
        c = c == ' ' ? '_' : c;
    return name;
}

const SlotCase kStreamSlots[] = {
    {2, "isEOS"},          {3, "tell"},       {4, "length"},        {5, "setlength"},
    {6, "truncate"},       {7, "rewind"},     {8, "buffer"},        {9, "buffer const"},
    {10, "seek"},          {11, "readByte"},  {12, "readByte at"},  {13, "writeByte"},
    {14, "writeByte at"},  {15, "getByte"},   {16, "getByte at"},   {17, "setByte"},
    {18, "setByte at"},    {19, "readBytes"}, {20, "readBytes at"}, {21, "writeBytes"},
    {22, "writeBytes at"}, {23, "getBytes"},  {24, "getBytes at"},  {25, "setBytes"},
    {26, "setBytes at"},   {27, "copyFrom"},  {28, "copyTo"},
};

class StreamSlot : public testing::TestWithParam<SlotCase> {};

TEST_P(StreamSlot, IsWhereTheInterfacePutsIt)
{
    AnsweringStream<TvStreamBuf> stream;
    EXPECT_EQ(answerOfSlot(stream, GetParam().number), GetParam().answer);
}

TEST_P(StreamSlot, IsTheSameInAFlatMemoryStream)
{
    AnsweringFlatMemBuf stream;
    EXPECT_EQ(answerOfSlot(stream, GetParam().number), GetParam().answer);
}

TEST_P(StreamSlot, IsTheSameInAFileStream)
{
    AnsweringFileImpl stream;
    EXPECT_EQ(answerOfSlot(stream, GetParam().number), GetParam().answer);
}

INSTANTIATE_TEST_SUITE_P(Slots, StreamSlot, testing::ValuesIn(kStreamSlots), nameOf);

class MemStreamSlot : public testing::TestWithParam<SlotCase> {};

TEST_P(MemStreamSlot, FollowsThoseOfTheInterface)
{
    AnsweringMemStream<TvMemStreamBuf> stream;
    EXPECT_EQ(answerOfSlot(stream, GetParam().number), GetParam().answer);
}

const SlotCase kMemStreamSlots[] = {{29, "bufSize"}, {30, "resize"}, {31, "reserve"}, {32, "moveTo"}};

INSTANTIATE_TEST_SUITE_P(Slots, MemStreamSlot, testing::ValuesIn(kMemStreamSlots), nameOf);

class FlatMemBufSlot : public testing::TestWithParam<SlotCase> {};

TEST_P(FlatMemBufSlot, FollowsThoseOfMemoryStreams)
{
    AnsweringFlatMemBuf stream;
    EXPECT_EQ(answerOfSlot(stream, GetParam().number), GetParam().answer);
}

const SlotCase kFlatMemBufSlots[] = {{32, "moveTo"}, {33, "open"}, {34, "close"}};

INSTANTIATE_TEST_SUITE_P(Slots, FlatMemBufSlot, testing::ValuesIn(kFlatMemBufSlots), nameOf);

class FileStreamSlot : public testing::TestWithParam<SlotCase> {};

TEST_P(FileStreamSlot, FollowsThoseOfTheInterface)
{
    AnsweringFileStream<TvFileStreamBuf> stream;
    EXPECT_EQ(answerOfSlot(stream, GetParam().number), GetParam().answer);
}

const SlotCase kFileStreamSlots[] = {{29, "fileName"}, {30, "shareMode"}, {31, "fileHandle"}};

INSTANTIATE_TEST_SUITE_P(Slots, FileStreamSlot, testing::ValuesIn(kFileStreamSlots), nameOf);

TEST(FileImplSlot, CloseIsTheLastOne)
{
    AnsweringFileImpl stream;
    EXPECT_EQ(answerOfSlot(stream, 31), "fileHandle");
    EXPECT_EQ(answerOfSlot(stream, 32), "close");
}

TEST(StreamSlots, DestructorsComeFirst)
{
    struct Ending : AnsweringStream<TvStreamBuf> {
        ~Ending() override { g_answer = "destroyed"; }
    };
    alignas(Ending) unsigned char room[sizeof(Ending)];
    auto* const stream = new (room) Ending;
    EXPECT_EQ(answerOfSlot(*stream, 0), "destroyed");
}

// The objects' layout, for code that reads them without asking.
TEST(StreamLayout, InterfaceHasNoData) { EXPECT_EQ(sizeof(TvStreamBuf), sizeof(void*)); }

TEST(StreamLayout, MemoryLayerHasNoData) { EXPECT_EQ(sizeof(TvMemStreamBuf), sizeof(void*)); }

TEST(StreamLayout, FlatMemBufKeepsStorageThenCursor)
{
    TvFlatMemBuf stream(0);
    const unsigned char text[] = {1, 2, 3};
    stream.writeBytes(text, 3);
    std::uint32_t cursor = 0;
    std::memcpy(&cursor, reinterpret_cast<const char*>(&stream) + 16, sizeof cursor);
    EXPECT_EQ(cursor, 3u);
}

// An open stream's fields at their places, seen from outside.
TEST(StreamLayout, FileStreamKeepsItsFieldsInOrder)
{
    std::FILE* const handle = std::tmpfile();
    ASSERT_NE(handle, nullptr);
    TvFileStreamBufImpl stream(handle);
    const char* const object = reinterpret_cast<const char*>(&stream);
    const auto at = [object](std::size_t offset, auto value) {
        std::memcpy(&value, object + offset, sizeof value);
        return value;
    };
    EXPECT_EQ(at(8, static_cast<std::FILE*>(nullptr)), handle);
    EXPECT_EQ(at(16, static_cast<wchar_t*>(nullptr)), nullptr);
    EXPECT_EQ(at(24, std::uint32_t{1}), 0u);
    EXPECT_FALSE(at(28, true));
    const unsigned char byte = 1;
    stream.writeBytes(&byte, 1);
    EXPECT_TRUE(at(28, false));
    EXPECT_EQ(at(32, 0), fileno(handle));
    EXPECT_FALSE(at(36, true));
    EXPECT_EQ(sizeof stream, 40u);
}

} // namespace
