// What the library throws and reports arrives in a program of another build with its type.
#include <TvOsBase.h>

#include <cstdio>
#include <cstring>
#include <cwchar>
#include <stdexcept>
#include <string>

namespace {

int g_failures = 0;

void expect(bool holds, const char* what)
{
    std::printf("%s %s\n", holds ? "ok  " : "FAIL", what);
    g_failures += holds ? 0 : 1;
}

// Keeps what an object of the exception family says, and, when asked to, throws through the library.
class Recorder : public CrashRecorder {
public:
    void record(TvException* fault) override
    {
        message = dynamic_cast<TvExceptionWithMsg*>(fault) != nullptr;
        if (const auto* status = dynamic_cast<TvErrorStatus*>(fault))
            number = status->errorType();
        if (throws)
            throw std::runtime_error("stop");
    }
    bool throws = false;
    bool message = false;
    Orna::ErrorStatus number = Orna::eOk;
};

bool messageIsCaught(const char* folder)
{
    const std::wstring name(folder, folder + std::strlen(folder));
    Orna::ErrorStatus status = Orna::eOk;
    TvFileIStreamBuf* const in = createFileIStreamBuf((name + L"/empty").c_str(), &status, TvIO::kAccessRead,
                                                      TvIO::kShareDenyNone, TvIO::kOpenExisting);
    if (status != Orna::eOk)
        return false;
    bool caught = false;
    try {
        in->readByte();
    } catch (const wchar_t* message) {
        caught = std::wcscmp(message, L"End of file!") == 0;
    }
    destoryFileIOStreamBuf(in);
    return caught;
}

bool statusIsCaught()
{
    try {
        TvFileSystem::createFileBuf(L"", TvIO::kAccessRead, TvIO::kShareDenyNone, TvIO::kOpenExisting);
    } catch (Orna::ErrorStatus status) {
        return status == Orna::eNoFileName;
    }
    return false;
}

// Objects of the family that the program throws itself have the library's type information.
bool objectsAreCaughtByTheirBase()
{
    int caught = 0;
    try {
        throw TvExceptionWithMsg(L"main.cpp", 1, L"No plotter!");
    } catch (const TvException& error) {
        caught += std::wcscmp(error.description(), L"No plotter!") == 0;
    }
    try {
        throw TvErrorStatus(Orna::eFileLocked);
    } catch (const TvException& error) {
        caught += std::wcscmp(error.description(), L"error type: 433\tmessage:") == 0;
    }
    return caught == 2;
}

} // namespace

int main(int, char** argv)
{
    expect(messageIsCaught(argv[1]), "a message is caught");
    expect(statusIsCaught(), "a status is caught");
    expect(objectsAreCaughtByTheirBase(), "objects of the exception family are caught by their base");

    Recorder recorder;
    ornaSetCrashRecorder(&recorder);
    TvFlatMemBuf buffer(8);
    buffer.seek(100, TvIO::kSeekFromStart);
    expect(recorder.message, "a reported message has its type");
    TvVector<int> vector;
    vector.at(3);
    expect(recorder.number == Orna::eInvalidIndex, "a reported status has its type and number");

    recorder.throws = true;
    bool passed = false;
    try {
        buffer.seek(100, TvIO::kSeekFromStart);
    } catch (const std::runtime_error&) {
        passed = true;
    }
    expect(passed, "what a recorder throws passes through the library");
    ornaSetCrashRecorder(nullptr);
    return g_failures == 0 ? 0 : 1;
}
