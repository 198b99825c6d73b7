// Opens a drawing for this program alone, and looks at the names and sizes of files.
#include <TvOsBase.h>

#include <cstdio>

namespace {

const TvIO::AccessMode kReadWrite = TvIO::kAccessRead | TvIO::kAccessWrite;

// Reading, writing, kShareDenyWrite and kOpenExisting together: an exclusive open.
TvFileStreamBufImpl* openAlone(const wchar_t* name, Orna::ErrorStatus& status)
{
    status = Orna::eOk; // a success leaves the status as it was
    return createFileStreamBuf(name, &status, kReadWrite, TvIO::kShareDenyWrite, TvIO::kOpenExisting);
}

} // namespace

int main()
{
    const wchar_t* name = L"lock_a_file.tmp";
    Orna::ErrorStatus status = Orna::eOk;
    TvFileOStreamBuf* out = createFileOStreamBuf(name, &status, TvIO::kAccessWrite, TvIO::kShareDenyNone,
                                                 TvIO::kCreateAlways, 16384);
    try {
        out->writeBytes(reinterpret_cast<const unsigned char*>("plan"), 4);
        out->close(); // tells when the bytes did not reach the file; the destructor cannot
    } catch (const wchar_t* message) {
        std::printf("%ls\n", message);
    }
    destoryFileIOStreamBuf(out);

    TvFileStreamBufImpl* first = openAlone(name, status);
    std::printf("first: %d\n", static_cast<int>(status));
    TvFileStreamBufImpl* second = openAlone(name, status);
    std::printf("second: %d\n", static_cast<int>(status)); // 433 if the first were another process
    destoryFileIOStreamBuf(second);
    destoryFileIOStreamBuf(first);

    TvFileStreamBufImpl* again = openAlone(name, status);
    std::printf("again: %d\n", static_cast<int>(status));
    destoryFileIOStreamBuf(again);

    std::printf("%s, %d bytes\n", TvFileSystem::isFileExisting(name) ? "there" : "missing",
                static_cast<int>(TvFileSystem::getFileSize(name)));
    std::remove("lock_a_file.tmp");
    std::printf("%s\n", TvFileSystem::isFileExisting(name) ? "there" : "missing");

    wchar_t folder[260], stem[1024], extension[8];
    TvPathMaker::getParentDir(folder, L"/plans/house.dwg");
    TvPathMaker::getFileName(L"/plans/house.dwg", stem, nullptr);
    TvPathMaker::getExtFileName(extension, L"/plans/house.dwg");
    std::printf("%ls | %ls | %ls\n", folder, stem, extension);
}
