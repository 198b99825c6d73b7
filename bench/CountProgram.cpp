// A fixed amount of each kind of work, for counting instructions; see bench/counts.
//
// Runs the library's own objects with the SSE2 kernels, so that the counts are those of any
// x86-64 machine. Every operation goes once through countOperation(), after the same work has been
// done twice, so that nothing of first use is counted; its name and number of items are printed.
#include "FirstRequests.h"
#include "MapFile.h"
#include "TextData.h"

#include "TvAlloc.h"
#include "TvFileStreamBuf.h"
#include "TvFormat.h"
#include "TvGdImpl.h"
#include "TvHeap.h"
#include "TvMemStreamBuf.h"
#include "TvNumber.h"
#include "TvScan.h"
#include "TvStringA.h"
#include "TvVector.h"
#include "codepage/TextKernels.h"

#include <cstdarg>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

namespace {

using TextData::Wide;

constexpr std::size_t kText = 4096; // characters
constexpr std::size_t kPiece = 16;

// Keeps the compiler from doing without a value.
template<class T>
void use(const T& value)
{
    asm volatile("" : : "r,m"(value) : "memory");
}

// A text in one code page, and the vectors that its conversions reuse.
struct Text {
    code_page_id page;
    Wide wide;
    TvVector<char> bytes;
    TvVector<char> bytesOut;
    TvVector<wchar_t> wideOut;

    Text(code_page_id cp, TextData::Mix mix, const Wide& letters)
        : page(cp), wide(TextData::makeText(mix, letters, kText, 1))
    {
        TvCharMapper::wideCharToMultiByte(page, wide.data(), static_cast<int>(kText), bytes);
    }
    void decode()
    {
        TvCharMapper::multiByteToWideChar(page, bytes.asArrayPtr(), bytes.length() - 1, wideOut);
    }
    void encode() { TvCharMapper::wideCharToMultiByte(page, wide.data(), static_cast<int>(kText), bytesOut); }
    // Pieces of two-byte characters may begin with a trail byte: any bytes do here.
    void decodePieces()
    {
        for (std::size_t at = 0; at < kText; at += kPiece)
            TvCharMapper::multiByteToWideChar(page, bytes.asArrayPtr() + at, kPiece, wideOut);
    }
    void encodePieces()
    {
        for (std::size_t at = 0; at < kText; at += kPiece)
            TvCharMapper::wideCharToMultiByte(page, wide.data() + at, kPiece, bytesOut);
    }
};

struct Data {
    Text ascii1252{CP_ANSI_1252, TextData::Mix::kAscii, TextData::accentedLetters()};
    Text accented1252{CP_ANSI_1252, TextData::Mix::kForeign, TextData::accentedLetters()};
    Text japanese932{CP_ANSI_932, TextData::Mix::kForeign, TextData::japaneseLetters()};
    Text chinese936{CP_ANSI_936, TextData::Mix::kForeign, TextData::hanLetters()};
    Text latinUtf8{CP_UTF8, TextData::Mix::kForeign, TextData::accentedLetters()};
    Text chineseUtf8{CP_UTF8, TextData::Mix::kForeign, TextData::hanLetters()};
    std::vector<double> numbers;
    std::vector<std::string> decimals;
    std::vector<std::wstring> lines;
    std::string fileName = "/tmp/tvosbase-counts-" + std::to_string(getpid());
    std::wstring wideFileName{fileName.begin(), fileName.end()};

    Data()
    {
        std::mt19937 random(1);
        for (int i = 0; i < 1000; ++i) {
            const double computed = static_cast<double>(random()) / 0x1p20 + 0.001;
            numbers.push_back(i % 2 ? computed : static_cast<double>(random() % 1000000) / 1000);
            char text[64];
            tvFltToG(text, numbers.back(), 17, 'e', 0);
            decimals.push_back(text);
            lines.push_back(std::to_wstring(random() % 100000) + L" " + std::to_wstring(random() % 1000));
        }
        std::ofstream(fileName, std::ios::binary) << std::string(65536, 'x');
    }
    ~Data() { std::remove(fileName.c_str()); }
};
Data* g_data;

int writeText(wchar_t* out, const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    const int length = OutputWithFormat(&out, 256, format, &args);
    va_end(args);
    return length;
}

int readText(const wchar_t* text, const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    const int count = InputWithFormat(false, text, format, &args);
    va_end(args);
    return count;
}

template<class Write>
void eachNumber(Write write)
{
    char text[64];
    for (const double value : g_data->numbers) {
        write(text, value);
        use(text[0]);
    }
}

std::unique_ptr<TvFileStreamBuf> openFile(bool forWriting)
{
    Orna::ErrorStatus status = Orna::eOk;
    const wchar_t* const name = g_data->wideFileName.c_str();
    TvFileStreamBuf* stream = nullptr;
    if (forWriting)
        stream = createFileOStreamBuf(name, &status, TvIO::kAccessRead | TvIO::kAccessWrite,
                                      TvIO::kShareDenyNone, TvIO::kOpenExisting, 16384);
    else
        stream =
            createFileIStreamBuf(name, &status, TvIO::kAccessRead, TvIO::kShareDenyNone, TvIO::kOpenExisting);
    if (stream == nullptr)
        fail("no file");
    return std::unique_ptr<TvFileStreamBuf>(stream);
}

struct Operation {
    const char* name;
    int items;
    void (*work)();
};

const Operation kOperations[] = {
    {"alloc_pair", 1000,
     [] {
         for (std::size_t i = 0; i < 1000; ++i) {
             void* const object = _tvMalloc(16 + i % 48);
             use(object);
             _tvFree(object);
         }
     }},
    {"alloc_batch", 1000,
     [] {
         void* objects[1000];
         for (std::size_t i = 0; i < 1000; ++i)
             objects[i] = _tvMalloc(16 + i % 48);
         for (void* object : objects)
             _tvFree(object);
     }},
    {"append_int", 1000,
     [] {
         TvVector<int> v;
         for (int i = 0; i < 1000; ++i)
             v.append(i);
         use(v.begin());
     }},
    {"vector_copy", 1000,
     [] {
         TvVector<int> v;
         v.append(1);
         for (int i = 0; i < 1000; ++i)
             use(TvVector<int>(v));
     }},
    {"string_make_8", 1000,
     [] {
         for (int i = 0; i < 1000; ++i)
             use(TvStringA("12345678"));
     }},
    {"string_copy", 1000,
     [] {
         const TvStringA s("12345678");
         for (int i = 0; i < 1000; ++i)
             use(TvStringA(s));
     }},
    {"decode_1252_ascii", 4096, [] { g_data->ascii1252.decode(); }},
    {"encode_1252_ascii", 4096, [] { g_data->ascii1252.encode(); }},
    {"decode_1252_accented", 4096, [] { g_data->accented1252.decode(); }},
    {"encode_1252_accented", 4096, [] { g_data->accented1252.encode(); }},
    {"decode_932_japanese", 4096, [] { g_data->japanese932.decode(); }},
    {"encode_932_japanese", 4096, [] { g_data->japanese932.encode(); }},
    {"decode_936_chinese", 4096, [] { g_data->chinese936.decode(); }},
    {"encode_936_chinese", 4096, [] { g_data->chinese936.encode(); }},
    {"decode_pieces_1252", 256, [] { g_data->accented1252.decodePieces(); }},
    {"encode_pieces_1252", 256, [] { g_data->accented1252.encodePieces(); }},
    {"decode_pieces_936", 256, [] { g_data->chinese936.decodePieces(); }},
    {"encode_pieces_936", 256, [] { g_data->chinese936.encodePieces(); }},
    {"utf8_to_wide_latin", 4096, [] { g_data->latinUtf8.decode(); }},
    {"wide_to_utf8_latin", 4096, [] { g_data->latinUtf8.encode(); }},
    {"utf8_to_wide_chinese", 4096, [] { g_data->chineseUtf8.decode(); }},
    {"wide_to_utf8_chinese", 4096, [] { g_data->chineseUtf8.encode(); }},
    {"digits_shortest", 1000,
     [] {
         eachNumber([](char*, double value) {
             int point;
             int sign;
             TvGdImpl::freedtoa(TvGdImpl::dtoa(value, 0, 0, &point, &sign, nullptr));
         });
     }},
    {"text_e16", 1000, [] { eachNumber([](char* text, double value) { tvFltToE(text, value, 16, 'e'); }); }},
    {"text_f6", 1000, [] { eachNumber([](char* text, double value) { tvFltToF(text, value, 6); }); }},
    {"text_g15", 1000,
     [] { eachNumber([](char* text, double value) { tvFltToG(text, value, 15, 'e', 0); }); }},
    {"parse_number", 1000,
     [] {
         for (const std::string& text : g_data->decimals)
             use(tvStrToD(text.c_str(), nullptr));
     }},
    {"format_d_s", 1000,
     [] {
         wchar_t out[256];
         for (int i = 0; i < 1000; ++i)
             use(writeText(out, L"%d %s", i, L"layer"));
     }},
    {"format_f6", 1000,
     [] {
         wchar_t out[256];
         for (const double value : g_data->numbers)
             use(writeText(out, L"%.6f", value));
     }},
    {"scan_d_d", 1000,
     [] {
         int a = 0;
         int b = 0;
         for (const std::wstring& line : g_data->lines)
             use(readText(line.c_str(), L"%d %d", &a, &b));
     }},
    {"memory_write_64", 1000,
     [] {
         const unsigned char piece[64] = {};
         TvFlatMemBuf stream(0);
         for (int i = 0; i < 1000; ++i)
             stream.writeBytes(piece, 64);
     }},
    {"memory_write_1", 1000,
     [] {
         TvFlatMemBuf stream(0);
         for (int i = 0; i < 1000; ++i)
             stream.writeByte('x');
     }},
    {"file_write_64", 1000,
     [] {
         const unsigned char piece[64] = {};
         const auto stream = openFile(true);
         for (int i = 0; i < 1000; ++i)
             stream->writeBytes(piece, 64);
     }},
    {"file_read_64", 1000,
     [] {
         unsigned char piece[64];
         const auto stream = openFile(false);
         for (int i = 0; i < 1000; ++i)
             stream->readBytes(piece, 64);
     }},
};

} // namespace

// Under valgrind the range that the heap would choose is taken: the linker sends its search here.
extern "C" void* __wrap__ZN18TvHeapConfigurator18tvMemoryInitializeEm(std::size_t length);
extern "C" void* __wrap__ZN18TvHeapConfigurator18tvMemoryInitializeEm(std::size_t length)
{
    return TvHeapConfigurator::tvMemoryReserve(reinterpret_cast<void*>(0x200000000000), length, PROT_NONE,
                                               MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED_NOREPLACE);
}

// What bench/counts has callgrind count.
extern "C" void countOperation(void (*work)());
[[gnu::noinline]] void countOperation(void (*work)()) { work(); }

int main()
{
#if defined(__x86_64__)
    TvDetail::forceTextKernels(&TvDetail::g_sse2Kernels);
#endif
    readMapFile();
    if (!passTheFirstRequests())
        fail("the heap has no range");
    for (std::size_t i = 0; i < 2000; ++i) // others that live: no block or page comes and goes
        use(_tvMalloc(8 + i % 249));
    Data data;
    g_data = &data;
    for (const Operation& operation : kOperations) {
        operation.work();
        operation.work();
        countOperation(operation.work);
        std::printf("%s %d\n", operation.name, operation.items);
    }
    return 0;
}
