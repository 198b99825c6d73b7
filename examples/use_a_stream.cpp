// Builds bytes in memory, saves them to a file and reads them back.
#include <TvOsBase.h>

#include <cstdio>
#include <cwchar>

int main()
{
    TvFlatMemBuf buffer(64);
    const unsigned char text[] = {'a', 'b', 'c', 'd', 'e', 'f'};
    buffer.writeBytes(text, 6);
    buffer.seek(2, TvIO::kSeekFromStart);
    buffer.setByte('X');   // changes a byte and keeps the tail
    buffer.seek(0, TvIO::kSeekFromStart);

    const wchar_t* name = L"use_a_stream.tmp";
    Orna::ErrorStatus status = Orna::eOk;
    TvFileOStreamBuf* out = createFileOStreamBuf(name, &status, TvIO::kAccessRead | TvIO::kAccessWrite,
                                                 TvIO::kShareDenyNone, TvIO::kCreateAlways, 16384);
    out->copyFrom(&buffer, 0, 0);
    out->close();   // throws a message when the bytes could not be written
    destoryFileIOStreamBuf(out);

    TvFileIStreamBuf* in = createFileIStreamBuf(name, &status, TvIO::kAccessRead, TvIO::kShareDenyNone,
                                                TvIO::kOpenExisting);
    std::printf("status %d, %d bytes: ", static_cast<int>(status), static_cast<int>(in->length()));
    while (!in->isEOS())
        std::putchar(in->readByte());
    std::putchar('\n');
    destoryFileIOStreamBuf(in);
    std::remove("use_a_stream.tmp");
}
