// Which virtual operations each form of a transfer is made of: a stream that overrides one of
// them has changed the other, too.

#include "TvFileStreamBuf.h"
#include "TvMemStreamBuf.h"

#include "CaseName.h"
#include "PlainStream.h"
#include "TestFiles.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <utility>

namespace {

using Byte = unsigned char;
using U32 = std::uint32_t;
using U64 = std::uint64_t;

// The calls that the operation called from outside makes itself, in order, each with a blank.
std::string g_calls;
int g_depth = 0;

class Call {
public:
    explicit Call(const char* name)
    {
        if (++g_depth == 2) // depth 1 is the operation itself
            g_calls += std::string(name) + ' ';
    }
    ~Call() { --g_depth; }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;
};

// Notes each call and passes it on to `Base`.
template<class Base>
class Tracing : public Base {
public:
    template<class... Arguments>
    explicit Tracing(Arguments&&... arguments) : Base(std::forward<Arguments>(arguments)...)
    {
    }

    std::int64_t rewind() override
    {
        const Call call("rewind");
        return Base::rewind();
    }
    std::int64_t seek(U64 offset, TvIO::SeekType type) override
    {
        const Call call("seek");
        return Base::seek(offset, type);
    }
    Byte readByte() override
    {
        const Call call("readByte");
        return Base::readByte();
    }
    Byte readByte(U64 position) override
    {
        const Call call("readByteAt");
        return Base::readByte(position);
    }
    void writeByte(Byte b) override
    {
        const Call call("writeByte");
        Base::writeByte(b);
    }
    void writeByte(U64 position, Byte b) override
    {
        const Call call("writeByteAt");
        Base::writeByte(position, b);
    }
    Byte getByte() override
    {
        const Call call("getByte");
        return Base::getByte();
    }
    Byte getByte(U64 position) override
    {
        const Call call("getByteAt");
        return Base::getByte(position);
    }
    void setByte(Byte b) override
    {
        const Call call("setByte");
        Base::setByte(b);
    }
    void setByte(U64 position, Byte b) override
    {
        const Call call("setByteAt");
        Base::setByte(position, b);
    }
    void readBytes(Byte* buf, U32 count) override
    {
        const Call call("readBytes");
        Base::readBytes(buf, count);
    }
    void readBytes(U64 position, Byte* buf, U32 count) override
    {
        const Call call("readBytesAt");
        Base::readBytes(position, buf, count);
    }
    void writeBytes(const Byte* buf, U32 count) override
    {
        const Call call("writeBytes");
        Base::writeBytes(buf, count);
    }
    void writeBytes(U64 position, const Byte* buf, U32 count) override
    {
        const Call call("writeBytesAt");
        Base::writeBytes(position, buf, count);
    }
    void getBytes(Byte* buf, U32 count) override
    {
        const Call call("getBytes");
        Base::getBytes(buf, count);
    }
    void getBytes(U64 position, Byte* buf, U32 count) override
    {
        const Call call("getBytesAt");
        Base::getBytes(position, buf, count);
    }
    void setBytes(const Byte* buf, U32 count) override
    {
        const Call call("setBytes");
        Base::setBytes(buf, count);
    }
    void setBytes(U64 position, const Byte* buf, U32 count) override
    {
        const Call call("setBytesAt");
        Base::setBytes(position, buf, count);
    }
};

Byte g_buf[2];

// One operation on six bytes with the cursor at 1, and what it is made of: in the base, in a
// flat memory stream, and in a file.
struct Form {
    const char* name;
    void (*run)(TvStreamBuf& stream);
    const char* inBase;
    const char* inFlatMemBuf;
    const char* inFile;
};

void PrintTo(const Form& form, std::ostream* out) { *out << form.name; }

const Form kForms[] = {
    {"Rewind", [](TvStreamBuf& s) { s.rewind(); }, "seek ", "", "seek "},
    {"ReadByte", [](TvStreamBuf& s) { s.readByte(); }, "readBytes ", "", "readBytes "},
    {"ReadByteAt", [](TvStreamBuf& s) { s.readByte(2); }, "readBytesAt ", "readBytesAt ", "readBytesAt "},
    {"WriteByte", [](TvStreamBuf& s) { s.writeByte(7); }, "writeBytes ", "", "writeBytes "},
    {"WriteByteAt", [](TvStreamBuf& s) { s.writeByte(2, 7); }, "writeBytesAt ", "", "writeBytesAt "},
    {"GetByte", [](TvStreamBuf& s) { s.getByte(); }, "getByteAt ", "seek readBytes ", "getByteAt "},
    {"GetByteAt", [](TvStreamBuf& s) { s.getByte(2); }, "getBytesAt ", "", "getBytesAt "},
    {"SetByte", [](TvStreamBuf& s) { s.setByte(7); }, "setByteAt ", "setByteAt ", "setByteAt "},
    {"SetByteAt", [](TvStreamBuf& s) { s.setByte(2, 7); }, "setBytesAt ", "", "setBytesAt "},
    {"ReadBytesAt", [](TvStreamBuf& s) { s.readBytes(2, g_buf, 2); }, "seek readBytes seek ", "",
     "seek readBytes seek "},
    {"WriteBytesAt", [](TvStreamBuf& s) { s.writeBytes(2, g_buf, 2); }, "seek writeBytes seek ", "",
     "seek writeBytes seek "},
    {"GetBytes", [](TvStreamBuf& s) { s.getBytes(g_buf, 2); }, "getBytesAt ", "getBytesAt ",
     "readBytes seek "},
    {"GetBytesAt", [](TvStreamBuf& s) { s.getBytes(2, g_buf, 2); }, "seek readBytes seek ", "",
     "seek readBytes "},
    {"SetBytes", [](TvStreamBuf& s) { s.setBytes(g_buf, 2); }, "setBytesAt ", "setBytesAt ",
     "writeBytes seek "},
    {"SetBytesAt", [](TvStreamBuf& s) { s.setBytes(2, g_buf, 2); }, "seek writeBytes seek ", "",
     "seek writeBytes "},
};

class StreamForm : public testing::TestWithParam<Form> {
protected:
    static std::string callsOf(TvStreamBuf& stream)
    {
        stream.seek(1, TvIO::kSeekFromStart);
        g_calls.clear();
        GetParam().run(stream);
        return g_calls;
    }
};

TEST_P(StreamForm, IsMadeOfTheseInTheBase)
{
    Tracing<PlainStream> stream("abcdef");
    EXPECT_EQ(callsOf(stream), GetParam().inBase);
}

TEST_P(StreamForm, IsMadeOfTheseInAFlatMemoryStream)
{
    Tracing<TvFlatMemBuf> stream(0u);
    stream.setlength(6);
    EXPECT_EQ(callsOf(stream), GetParam().inFlatMemBuf);
}

TEST_P(StreamForm, IsMadeOfTheseInAFile)
{
    const TestFiles files;
    Orna::ErrorStatus status = Orna::eOk;
    Tracing<TvFileIOStreamBuf> stream(files.put("a", "abcdef").c_str(), &status,
                                      TvIO::kAccessRead | TvIO::kAccessWrite, TvIO::kShareDenyNone,
                                      TvIO::kOpenExisting);
    ASSERT_EQ(status, Orna::eOk);
    EXPECT_EQ(callsOf(stream), GetParam().inFile);
}

INSTANTIATE_TEST_SUITE_P(Forms, StreamForm, testing::ValuesIn(kForms), nameOfCase<Form>);

} // namespace
