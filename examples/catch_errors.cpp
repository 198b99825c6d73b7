// The two ways in which the library speaks of errors: what containers and memory
// streams report to the host's crash recorder, and what file streams throw.
#include <TvOsBase.h>

#include <cstdio>

namespace {

class Printer : public CrashRecorder {
public:
    // The exception lives only until record returns.
    void record(TvException* problem) override { std::printf("reported: %ls\n", problem->description()); }
};

} // namespace

int main()
{
    Printer printer;
    ornaSetCrashRecorder(&printer);

    TvFlatMemBuf buffer(8);
    buffer.readByte();   // nothing there: reported, and the call returns 0

    try {
        TvFileSystem::createFileBuf(L"", TvIO::kAccessRead, TvIO::kShareDenyNone, TvIO::kOpenExisting);
    } catch (Orna::ErrorStatus status) {
        std::printf("thrown status: %d\n", static_cast<int>(status));
    }

    Orna::ErrorStatus status = Orna::eOk;
    TvFileIOStreamBuf* missing =
        createFileIOStreamBuf(L"no such file", &status, TvIO::kAccessRead, TvIO::kShareDenyNone,
                              TvIO::kOpenExisting);
    std::printf("returned status: %d\n", static_cast<int>(status));
    try {
        unsigned char byte;
        missing->readBytes(&byte, 1);
    } catch (const wchar_t* message) {
        std::printf("thrown message: %ls\n", message);
    }
    destoryFileIOStreamBuf(missing);
    ornaSetCrashRecorder(nullptr);
}
