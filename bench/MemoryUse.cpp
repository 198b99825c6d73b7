// What memory the parts of the library take, measured by what the process has more of
// afterwards; each line in a process of its own. Prints a Markdown table.
#include "FirstRequests.h"
#include "MapFile.h"
#include "ProcessMemory.h"

#include "TvAlloc.h"
#include "TvFileStreamBuf.h"
#include "TvFormat.h"
#include "TvHeap.h"
#include "TvMemStreamBuf.h"
#include "TvNumber.h"
#include "TvStringA.h"
#include "TvVector.h"

#include <benchmark/benchmark.h>

#include <cstdarg>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <sys/wait.h>

namespace {

constexpr std::size_t kObjects = 100000;

// Prints a line from a process of its own, whose work does not stay with the others.
void inChild(const std::function<void()>& print)
{
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        print();
        std::fflush(stdout);
        _exit(0);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || status != 0)
        fail("a measurement failed");
}

long grownKiB(const std::function<void()>& work)
{
    const long before = anonymousKiB();
    work();
    return anonymousKiB() - before;
}

void onFirstUse(const char* part, const char* what, const std::function<void()>& work)
{
    inChild([&] { std::printf("| %s | %s | %ld KiB |\n", part, what, grownKiB(work)); });
}

double bytesEach(const std::function<void*()>& make)
{
    std::vector<void*> objects(kObjects, &objects);
    const long grown = grownKiB([&] {
        for (void*& object : objects)
            object = make();
    });
    return static_cast<double>(grown) * 1024 / kObjects;
}

void* written(void* object)
{
    *static_cast<char*>(object) = 1;
    return object;
}

void perObject(const char* part, const std::string& what, const char* peer,
               const std::function<void*()>& ours, const std::function<void*()>& theirs)
{
    double own = 0;
    inChild([&] {
        passTheFirstRequests();
        own = bytesEach(ours);
        std::printf("| %s | %s | %.1f bytes each", part, what.c_str(), own);
    });
    inChild([&] { std::printf(", %s %.1f |\n", peer, bytesEach(theirs)); });
}

int writeText(wchar_t* out, const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    const int length = OutputWithFormat(&out, 64, format, &args);
    va_end(args);
    return length;
}

void heapLines()
{
    inChild([] {
        std::printf("| heap | address range reserved, without memory behind it | %zu MiB |\n",
                    TvHeapConfigurator::pStartAddress ? std::size_t{8192} : 0);
    });
    onFirstUse("heap", "first 10000 objects of 32 bytes", [] {
        for (int i = 0; i < 10000; ++i)
            benchmark::DoNotOptimize(written(_tvMalloc(32)));
    });
    for (const std::size_t size : {8u, 16u, 32u, 64u, 128u, 256u, 1000u, 4096u}) {
        perObject(
            "heap", "objects of " + std::to_string(size) + " bytes", "malloc",
            [size] { return written(_tvMalloc(size)); }, [size] { return written(std::malloc(size)); });
    }
}

template<class String>
void* madeString(const char* text)
{
    return new String(text);
}

void containerLines()
{
    perObject(
        "strings", "8 characters, with its handle", "std::string",
        [] { return madeString<TvStringA>("12345678"); }, [] { return madeString<std::string>("12345678"); });
    const auto longer = [] { return std::string(64, 'x'); };
    perObject(
        "strings", "64 characters, with its handle", "std::string",
        [=] { return madeString<TvStringA>(longer().c_str()); },
        [=] { return madeString<std::string>(longer().c_str()); });
    const auto filled = [](auto* v, auto append) {
        for (int i = 0; i < 10; ++i)
            append(*v, i);
        return static_cast<void*>(v);
    };
    perObject(
        "vectors", "10 integers appended, with their handle", "std::vector",
        [=] { return filled(new TvVector<int>, [](auto& v, int i) { v.append(i); }); },
        [=] { return filled(new std::vector<int>, [](auto& v, int i) { v.push_back(i); }); });
}

void convert(code_page_id page, const char* text)
{
    TvVector<wchar_t> wide;
    TvVector<char> bytes;
    TvCharMapper::multiByteToWideChar(page, text, static_cast<int>(std::strlen(text)), wide);
    TvCharMapper::wideCharToMultiByte(page, wide.asArrayPtr(), wide.length() - 1, bytes);
}

void codePageLines()
{
    onFirstUse("code pages", "registry, made by initialize()", readMapFile);
    struct Page {
        const char* name;
        code_page_id page;
    };
    for (const Page& p : {Page{"UTF-8", CP_UTF8}, Page{"1252", CP_ANSI_1252}, Page{"932", CP_ANSI_932},
                          Page{"936", CP_ANSI_936}, Page{"949", CP_ANSI_949}, Page{"950", CP_ANSI_950}}) {
        inChild([&] {
            readMapFile();
            const long grown = grownKiB([&] { convert(p.page, "text \xC4\xE3 there and back"); });
            std::printf("| code pages | tables of %s, both ways, made on first use | %ld KiB |\n", p.name,
                        grown);
        });
    }
}

void numberLines()
{
    onFirstUse("numbers", "first text of a double and back", [] {
        char text[64];
        tvFltToE(text, 1.0 / 3, 16, 'e');
        benchmark::DoNotOptimize(tvStrToD(text, nullptr));
    });
    onFirstUse("numbers", "first text of 1e300 with 300 places", [] {
        char text[1024];
        tvFltToF(text, 1e300, 300);
    });
    onFirstUse("formatted text", "first field of each kind", [] {
        wchar_t text[64];
        writeText(text, L"%d %s %.6f", 42, L"text", 1.0 / 3);
    });
}

void streamLines()
{
    perObject(
        "streams", "empty memory stream", "std::string", [] { return new TvFlatMemBuf(0); },
        [] { return new std::string; });
    const std::string name = "/tmp/tvosbase-memory-" + std::to_string(getpid());
    std::ofstream(name) << "text";
    const std::wstring wide(name.begin(), name.end());
    onFirstUse("streams", "500 read streams over a small file", [&] {
        for (int i = 0; i < 500; ++i) {
            Orna::ErrorStatus status = Orna::eOk;
            benchmark::DoNotOptimize(createFileIStreamBuf(wide.c_str(), &status, TvIO::kAccessRead,
                                                          TvIO::kShareDenyNone, TvIO::kOpenExisting));
        }
    });
    onFirstUse("streams", "500 write streams with a cache of 16 KiB, one byte written", [&] {
        for (int i = 0; i < 500; ++i) {
            Orna::ErrorStatus status = Orna::eOk;
            TvFileStreamBuf* const stream =
                createFileOStreamBuf(wide.c_str(), &status, TvIO::kAccessRead | TvIO::kAccessWrite,
                                     TvIO::kShareDenyNone, TvIO::kOpenExisting, 16384);
            stream->writeByte('x');
        }
    });
    std::remove(name.c_str());
}

} // namespace

int main()
{
    std::printf("What a process has more of when a part is first used, or for each of %zu objects.\n\n"
                "| part | what | memory |\n|---|---|---|\n",
                kObjects);
    heapLines();
    containerLines();
    codePageLines();
    numberLines();
    streamLines();
    return 0;
}
