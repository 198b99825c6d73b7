// Every call to the C library's file functions, and every allocation, fails once in turn. The
// caller is then told, or has what he asked for; and nothing is left behind.

#include "TvFileStreamBuf.h"
#include "TvFileSystem.h"

#include "FailingCalls.h"
#include "FileStreams.h"
#include "Recorder.h"
#include "TestFiles.h"

#include "stream/TvFileRegistry.h"

#include <gtest/gtest.h>

#include <string>

namespace {

int openDescriptors()
{
    int count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
        ++count;
    return count;
}

const std::string kContent = std::string(20000, 'c') + std::string(20000, 'd');

// The bytes that are written, whatever of them: 0x00 to 0xFF over and over.
const std::string& pattern()
{
    static const std::string bytes = [] {
        std::string result(100000, '\0');
        for (std::size_t i = 0; i < result.size(); ++i)
            result[i] = static_cast<char>(i);
        return result;
    }();
    return bytes;
}

// The files that are worked on. All of the test's own memory is taken here, before calls fail.
struct Place {
    TestFiles files;
    std::wstring name = files.put("file", kContent);
    std::wstring other = files.wide("other");
    std::string buffer = std::string(kContent.size(), '?');

    unsigned char* bufferAt(std::size_t at) { return reinterpret_cast<unsigned char*>(buffer.data()) + at; }
};

// A piece of work, and what holds afterwards unless it was told of a failure.
struct Work {
    const char* name;
    bool (*isTold)(Place& place);
    bool (*isRight)(const Place& place);
};

// True when the open, or an exception in `body`, tells of a failure.
template<class Stream, class Body>
bool isTold(const Opened<Stream>& file, Body body)
{
    if (file.stream == nullptr || file.status != Orna::eOk || !hasFile(*file))
        return true;
    try {
        body(*file);
        return false;
    } catch (const wchar_t*) {
        return true;
    }
}

void writePattern(TvStreamBuf& stream, std::size_t from, std::size_t count)
{
    stream.writeBytes(bytesOf(pattern()) + from, static_cast<std::uint32_t>(count));
}

bool writeCached(Place& place)
{
    return isTold(openOut(place.other), [](TvFileOStreamBuf& file) {
        for (std::size_t at = 0; at < 40000; at += 1000)
            writePattern(file, at, 1000);
        file.close();
    });
}

bool writeCachedInAllSizes(Place& place)
{
    return isTold(openOut(place.other, kBoth, TvIO::kShareDenyNone, TvIO::kCreateAlways, 10),
                  [](TvFileOStreamBuf& file) {
                      std::size_t at = 0;
                      for (const std::size_t size : {1, 3, 5000, 16384, 16385, 2, 22224, 1}) {
                          writePattern(file, at, size);
                          at += size;
                      }
                      file.close();
                  });
}

bool writeUncached(Place& place)
{
    return isTold(openFile(place.other), [](TvFileStreamBufImpl& file) {
        for (std::size_t at = 0; at < 60000; at += 1000)
            writePattern(file, at, 1000);
        file.setBytes(10, bytesOf(pattern()) + 10, 100);
        file.close();
    });
}

// An unmapped read that comes short is not told: it leaves '?' behind.
bool readMapped(Place& place)
{
    return isTold(openIn(place.name), [&](TvFileIStreamBuf& file) {
        for (std::size_t at = 0; at < kContent.size(); at += 1000)
            file.readBytes(place.bufferAt(at), 1000);
        file.close();
    });
}

bool openExclusivelyAndChange(Place& place)
{
    return isTold(openExclusively(place.name), [](TvFileStreamBufImpl& file) {
        file.seek(10, TvIO::kSeekFromStart);
        writePattern(file, 'a', 3);
        file.close();
    });
}

bool reopen(Place& place)
{
    return isTold(openExclusively(place.name), [&](TvFileStreamBufImpl& file) {
        writePattern(file, 'a', 3);
        if (file.open(place.other.c_str(), kBoth, TvIO::kShareDenyNone, TvIO::kCreateAlways) != Orna::eOk)
            throw L"told by the status";
        writePattern(file, 'x', 3);
        file.close();
    });
}

bool askTheFileSystem(Place& place)
{
    std::unique_ptr<TvFileStreamBuf> file(
        TvFileSystem::createFileBuf(place.name.c_str(), kRead, TvIO::kShareDenyNone, TvIO::kOpenExisting));
    const bool exists = TvFileSystem::isFileExisting(place.name.c_str());
    const bool accessible = TvFileSystem::accessFile(place.name.c_str(), kRead);
    const std::uint64_t size = TvFileSystem::getFileSize(place.name.c_str());
    return file == nullptr || !hasFile(*file) || !exists || !accessible || size != kContent.size();
}

bool otherIsPattern(const Place& place, std::size_t size)
{
    return place.files.get("other") == pattern().substr(0, size);
}

const Work kWorks[] = {
    {"WriteCached", writeCached, [](const Place& p) { return otherIsPattern(p, 40000); }},
    {"WriteCachedInAllSizes", writeCachedInAllSizes, [](const Place& p) { return otherIsPattern(p, 60000); }},
    {"WriteUncached", writeUncached, [](const Place& p) { return otherIsPattern(p, 60000); }},
    {"ReadMapped", readMapped,
     [](const Place& p) { return p.buffer == kContent || p.buffer.find('?') != std::string::npos; }},
    {"OpenExclusivelyAndChange", openExclusivelyAndChange,
     [](const Place& p) { return p.files.get("file").substr(8, 7) == "ccabccc"; }},
    {"Reopen", reopen,
     [](const Place& p) {
         return p.files.get("file").substr(0, 4) == "abcc" && p.files.get("other") == "xyz";
     }},
    {"AskTheFileSystem", askTheFileSystem, [](const Place&) { return true; }},
};

void PrintTo(const Work& work, std::ostream* out) { *out << work.name; }

class FileFault : public testing::TestWithParam<Work> {
protected:
    // Runs the work with each call of `kind` failing in turn, until none is left to fail.
    static void failEach(FailingCalls::Kind kind)
    {
        const int descriptors = openDescriptors();
        for (int nth = 1;; ++nth) {
            Place place;
            Recorder recorder;
            bool told = false;
            {
                FailingCalls::Armed armed(kind, nth);
                told = GetParam().isTold(place);
            }
            EXPECT_TRUE(told || GetParam().isRight(place)) << "call " << nth << ", " << FailingCalls::name;
            EXPECT_TRUE(!told || FailingCalls::fired) << "told of a failure that was none";
            EXPECT_EQ(openDescriptors(), descriptors) << "call " << nth << ", " << FailingCalls::name;
            EXPECT_TRUE(TvFileStreamBufImpl::m_cstrAlreadyOpenFiles.empty()) << FailingCalls::name;
            EXPECT_TRUE(TvFileRegistry::isSound());
            EXPECT_EQ(openExclusively(place.name).status, Orna::eOk) << FailingCalls::name;
            if (!FailingCalls::fired) {
                EXPECT_GT(nth, 1);
                return;
            }
        }
    }
};

TEST_P(FileFault, EachFileCallMayFail) { failEach(FailingCalls::kFiles); }

TEST_P(FileFault, EachAllocationMayFail)
{
    if (!kFailsMemory)
        GTEST_SKIP() << "the sanitizer owns malloc";
    failEach(FailingCalls::kMemory);
}

INSTANTIATE_TEST_SUITE_P(Works, FileFault, testing::ValuesIn(kWorks),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace
