// Streams over memory and files, beside the C library, its calls without a lock, the system
// calls and the containers of the standard library. Single bytes go through the stream object
// itself, inline as those of the peers, and as "tv_virtual" through a TvStreamBuf. Files lie on
// tmpfs where there is one, and exist at their full length, so that no side waits for a disk or
// for new pages.

#include "BenchFile.h"
#include "FirstRequests.h"

#include "TvFileStreamBuf.h"
#include "TvMemStreamBuf.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::size_t kFileSize = 100u << 20;
constexpr std::size_t kBytewiseFileSize = 16u << 20;
constexpr std::size_t kMemorySize = 16u << 20;
constexpr std::size_t kBytewiseMemorySize = 1u << 20;

const BenchFile& largeFile()
{
    static const BenchFile file("large", kFileSize);
    return file;
}

// Apart from what is read, which has to stay as it is.
const BenchFile& writtenFile()
{
    static const BenchFile file("written", kFileSize);
    return file;
}

const BenchFile& bytewiseFile()
{
    static const BenchFile file("bytewise", kBytewiseFileSize);
    return file;
}

// What all sides write: the same piece, over and over.
const unsigned char* piece()
{
    static const std::vector<unsigned char> bytes(4096, 'x');
    return bytes.data();
}

void countBytes(benchmark::State& state, std::size_t size)
{
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * size));
}

// Any side may be checked by this: a sum over what it read.
std::uint64_t sumOf(const unsigned char* bytes, std::size_t count)
{
    std::uint64_t sum = 0;
    for (std::size_t at = 0; at < count; at += 64)
        sum += bytes[at];
    return sum;
}

void demandSame(benchmark::State& state, std::uint64_t sum, std::uint64_t& first)
{
    if (first == 0)
        first = sum;
    else if (sum != first)
        state.SkipWithError("the sides do not agree");
}

template<std::size_t Size>
void writeTv(benchmark::State& state)
{
    const std::wstring name = writtenFile().wide();
    for (auto _ : state) {
        Orna::ErrorStatus status = Orna::eOk;
        std::unique_ptr<TvFileStreamBuf> file(
            createFileOStreamBuf(name.c_str(), &status, TvIO::kAccessRead | TvIO::kAccessWrite,
                                 TvIO::kShareDenyNone, TvIO::kOpenExisting, 16384));
        for (std::size_t at = 0; at < kFileSize; at += Size)
            file->writeBytes(piece(), Size);
        if (file->tell() != kFileSize)
            state.SkipWithError("short");
    }
    countBytes(state, kFileSize);
}

template<std::size_t Size, std::size_t (*Write)(const void*, std::size_t, std::size_t, std::FILE*)>
void writeStdio(benchmark::State& state)
{
    const char* const path = writtenFile().path();
    for (auto _ : state) {
        std::FILE* const file = std::fopen(path, "r+b");
        for (std::size_t at = 0; at < kFileSize; at += Size)
            Write(piece(), 1, Size, file);
        if (std::ftell(file) != static_cast<long>(kFileSize))
            state.SkipWithError("short");
        std::fclose(file);
    }
    countBytes(state, kFileSize);
}

template<std::size_t Size>
void writeSystem(benchmark::State& state)
{
    const char* const path = writtenFile().path();
    for (auto _ : state) {
        const int file = open(path, O_RDWR);
        for (std::size_t at = 0; at < kFileSize; at += Size)
            if (write(file, piece(), Size) != static_cast<ssize_t>(Size))
                state.SkipWithError("short");
        close(file);
    }
    countBytes(state, kFileSize);
}

std::uint64_t g_readSum = 0;

template<std::size_t Size>
void readTv(benchmark::State& state)
{
    const std::wstring name = largeFile().wide();
    unsigned char buf[Size];
    std::uint64_t sum = 0;
    for (auto _ : state) {
        sum = 0;
        Orna::ErrorStatus status = Orna::eOk;
        std::unique_ptr<TvFileStreamBuf> file(createFileIStreamBuf(
            name.c_str(), &status, TvIO::kAccessRead, TvIO::kShareDenyNone, TvIO::kOpenExisting));
        for (std::size_t at = 0; at < kFileSize; at += Size) {
            file->readBytes(buf, Size);
            sum += sumOf(buf, Size);
        }
    }
    demandSame(state, sum, g_readSum);
    countBytes(state, kFileSize);
}

template<std::size_t Size, std::size_t (*Read)(void*, std::size_t, std::size_t, std::FILE*)>
void readStdio(benchmark::State& state)
{
    const char* const path = largeFile().path();
    unsigned char buf[Size];
    std::uint64_t sum = 0;
    for (auto _ : state) {
        sum = 0;
        std::FILE* const file = std::fopen(path, "rb");
        for (std::size_t at = 0; at < kFileSize; at += Size) {
            if (Read(buf, 1, Size, file) != Size)
                state.SkipWithError("short");
            sum += sumOf(buf, Size);
        }
        std::fclose(file);
    }
    demandSame(state, sum, g_readSum);
    countBytes(state, kFileSize);
}

template<std::size_t Size>
void readSystem(benchmark::State& state)
{
    const char* const path = largeFile().path();
    unsigned char buf[Size];
    std::uint64_t sum = 0;
    for (auto _ : state) {
        sum = 0;
        const int file = open(path, O_RDONLY);
        for (std::size_t at = 0; at < kFileSize; at += Size) {
            if (read(file, buf, Size) != static_cast<ssize_t>(Size))
                state.SkipWithError("short");
            sum += sumOf(buf, Size);
        }
        close(file);
    }
    demandSame(state, sum, g_readSum);
    countBytes(state, kFileSize);
}

std::uint64_t g_bytewiseSum = 0;

void readBytewiseTv(benchmark::State& state)
{
    const std::wstring name = bytewiseFile().wide();
    std::uint64_t sum = 0;
    for (auto _ : state) {
        sum = 0;
        Orna::ErrorStatus status = Orna::eOk;
        TvFileIStreamBuf file(name.c_str(), &status, TvIO::kAccessRead, TvIO::kShareDenyNone,
                              TvIO::kOpenExisting);
        for (std::size_t at = 0; at < kBytewiseFileSize; ++at)
            sum += file.readByte();
    }
    demandSame(state, sum, g_bytewiseSum);
    countBytes(state, kBytewiseFileSize);
}

void readBytewiseTvVirtual(benchmark::State& state)
{
    const std::wstring name = bytewiseFile().wide();
    std::uint64_t sum = 0;
    for (auto _ : state) {
        sum = 0;
        Orna::ErrorStatus status = Orna::eOk;
        std::unique_ptr<TvFileStreamBuf> file(createFileIStreamBuf(
            name.c_str(), &status, TvIO::kAccessRead, TvIO::kShareDenyNone, TvIO::kOpenExisting));
        for (std::size_t at = 0; at < kBytewiseFileSize; ++at)
            sum += file->readByte();
    }
    demandSame(state, sum, g_bytewiseSum);
    countBytes(state, kBytewiseFileSize);
}

template<int (*Get)(std::FILE*)>
void readBytewiseStdio(benchmark::State& state)
{
    const char* const path = bytewiseFile().path();
    std::uint64_t sum = 0;
    for (auto _ : state) {
        sum = 0;
        std::FILE* const file = std::fopen(path, "rb");
        for (std::size_t at = 0; at < kBytewiseFileSize; ++at)
            sum += static_cast<unsigned char>(Get(file));
        std::fclose(file);
    }
    demandSame(state, sum, g_bytewiseSum);
    countBytes(state, kBytewiseFileSize);
}

int getcUnlocked(std::FILE* file) { return getc_unlocked(file); }

void warmUpHeap()
{
    static const bool done = passTheFirstRequests();
    benchmark::DoNotOptimize(done);
}

void memWriteTv(benchmark::State& state)
{
    warmUpHeap();
    for (auto _ : state) {
        TvFlatMemBuf buffer(0);
        TvStreamBuf* stream = &buffer;
        benchmark::DoNotOptimize(stream);
        for (std::size_t at = 0; at < kMemorySize; at += 64)
            stream->writeBytes(piece(), 64);
        if (stream->length() != kMemorySize)
            state.SkipWithError("short");
    }
    countBytes(state, kMemorySize);
}

void memWriteString(benchmark::State& state)
{
    for (auto _ : state) {
        std::string text;
        for (std::size_t at = 0; at < kMemorySize; at += 64)
            text.append(reinterpret_cast<const char*>(piece()), 64);
        benchmark::DoNotOptimize(text.data());
    }
    countBytes(state, kMemorySize);
}

void memWriteVector(benchmark::State& state)
{
    for (auto _ : state) {
        std::vector<unsigned char> bytes;
        for (std::size_t at = 0; at < kMemorySize; at += 64)
            bytes.insert(bytes.end(), piece(), piece() + 64);
        benchmark::DoNotOptimize(bytes.data());
    }
    countBytes(state, kMemorySize);
}

void memWriteBytewiseTv(benchmark::State& state)
{
    warmUpHeap();
    for (auto _ : state) {
        TvFlatMemBuf buffer(0);
        for (std::size_t at = 0; at < kBytewiseMemorySize; ++at)
            buffer.writeByte(static_cast<unsigned char>(at));
        if (buffer.length() != kBytewiseMemorySize)
            state.SkipWithError("short");
    }
    countBytes(state, kBytewiseMemorySize);
}

void memWriteBytewiseTvVirtual(benchmark::State& state)
{
    warmUpHeap();
    for (auto _ : state) {
        TvFlatMemBuf buffer(0);
        TvStreamBuf* stream = &buffer;
        benchmark::DoNotOptimize(stream);
        for (std::size_t at = 0; at < kBytewiseMemorySize; ++at)
            stream->writeByte(static_cast<unsigned char>(at));
        if (stream->length() != kBytewiseMemorySize)
            state.SkipWithError("short");
    }
    countBytes(state, kBytewiseMemorySize);
}

template<class Container>
void memWriteBytewisePushBack(benchmark::State& state)
{
    for (auto _ : state) {
        Container bytes;
        for (std::size_t at = 0; at < kBytewiseMemorySize; ++at)
            bytes.push_back(static_cast<typename Container::value_type>(at));
        benchmark::DoNotOptimize(bytes.data());
    }
    countBytes(state, kBytewiseMemorySize);
}

std::uint64_t g_memorySum = 0;

void memReadTv(benchmark::State& state)
{
    const std::string content(kBytewiseMemorySize, 'x');
    TvFlatMemBuf buffer(0);
    buffer.writeBytes(reinterpret_cast<const unsigned char*>(content.data()), kBytewiseMemorySize);
    std::uint64_t sum = 0;
    for (auto _ : state) {
        sum = 0;
        buffer.rewind();
        for (std::size_t at = 0; at < kBytewiseMemorySize; ++at)
            sum += buffer.readByte();
    }
    demandSame(state, sum, g_memorySum);
    countBytes(state, kBytewiseMemorySize);
}

void memReadTvVirtual(benchmark::State& state)
{
    const std::string content(kBytewiseMemorySize, 'x');
    TvFlatMemBuf buffer(0);
    buffer.writeBytes(reinterpret_cast<const unsigned char*>(content.data()), kBytewiseMemorySize);
    TvStreamBuf* stream = &buffer;
    benchmark::DoNotOptimize(stream);
    std::uint64_t sum = 0;
    for (auto _ : state) {
        sum = 0;
        stream->rewind();
        for (std::size_t at = 0; at < kBytewiseMemorySize; ++at)
            sum += stream->readByte();
    }
    demandSame(state, sum, g_memorySum);
    countBytes(state, kBytewiseMemorySize);
}

void memReadStringbuf(benchmark::State& state)
{
    std::stringbuf buffer(std::string(kBytewiseMemorySize, 'x'));
    std::streambuf* stream = &buffer;
    benchmark::DoNotOptimize(stream);
    std::uint64_t sum = 0;
    for (auto _ : state) {
        sum = 0;
        stream->pubseekpos(0);
        for (std::size_t at = 0; at < kBytewiseMemorySize; ++at)
            sum += static_cast<unsigned char>(stream->sbumpc());
    }
    demandSame(state, sum, g_memorySum);
    countBytes(state, kBytewiseMemorySize);
}

BENCHMARK(writeTv<64>)->Name("file_write/100MB_by_64/tv");
BENCHMARK(writeStdio<64, fwrite>)->Name("file_write/100MB_by_64/glibc_fwrite");
BENCHMARK(writeStdio<64, fwrite_unlocked>)->Name("file_write/100MB_by_64/glibc_fwrite_unlocked");
BENCHMARK(writeTv<4096>)->Name("file_write/100MB_by_4096/tv");
BENCHMARK(writeStdio<4096, fwrite>)->Name("file_write/100MB_by_4096/glibc_fwrite");
BENCHMARK(writeSystem<4096>)->Name("file_write/100MB_by_4096/write(2)");
BENCHMARK(readTv<64>)->Name("file_read/100MB_by_64/tv");
BENCHMARK(readStdio<64, fread>)->Name("file_read/100MB_by_64/glibc_fread");
BENCHMARK(readStdio<64, fread_unlocked>)->Name("file_read/100MB_by_64/glibc_fread_unlocked");
BENCHMARK(readTv<4096>)->Name("file_read/100MB_by_4096/tv");
BENCHMARK(readStdio<4096, fread>)->Name("file_read/100MB_by_4096/glibc_fread");
BENCHMARK(readSystem<4096>)->Name("file_read/100MB_by_4096/read(2)");
BENCHMARK(readBytewiseTv)->Name("file_read/16MB_by_1/tv");
BENCHMARK(readBytewiseTvVirtual)->Name("file_read/16MB_by_1/tv_virtual");
BENCHMARK(readBytewiseStdio<fgetc>)->Name("file_read/16MB_by_1/glibc_fgetc");
BENCHMARK(readBytewiseStdio<getcUnlocked>)->Name("file_read/16MB_by_1/glibc_getc_unlocked");
BENCHMARK(memWriteTv)->Name("mem_write/16MB_by_64/tv");
BENCHMARK(memWriteString)->Name("mem_write/16MB_by_64/std_string_append");
BENCHMARK(memWriteVector)->Name("mem_write/16MB_by_64/std_vector_insert");
BENCHMARK(memWriteBytewiseTv)->Name("mem_write/1MB_by_1/tv");
BENCHMARK(memWriteBytewiseTvVirtual)->Name("mem_write/1MB_by_1/tv_virtual");
BENCHMARK(memWriteBytewisePushBack<std::vector<unsigned char>>)
    ->Name("mem_write/1MB_by_1/std_vector_push_back");
BENCHMARK(memWriteBytewisePushBack<std::string>)->Name("mem_write/1MB_by_1/std_string_push_back");
BENCHMARK(memReadTv)->Name("mem_read/1MB_by_1/tv");
BENCHMARK(memReadTvVirtual)->Name("mem_read/1MB_by_1/tv_virtual");
BENCHMARK(memReadStringbuf)->Name("mem_read/1MB_by_1/stringbuf_sbumpc");

} // namespace

BENCHMARK_MAIN();
