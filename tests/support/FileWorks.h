// FileWorks.h - pieces of work on files, for tests in which one call after the other fails: the
// caller is then told, or has what he asked for.
#ifndef TV_TEST_FILE_WORKS_H
#define TV_TEST_FILE_WORKS_H

#include "FileStreams.h"
#include "OpenDescriptors.h"
#include "TestFiles.h"

#include "TvFileSystem.h"
#include "TvMemStreamBuf.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <ostream>
#include <string>

inline const std::string kContent = std::string(20000, 'c') + std::string(20000, 'd');

// The bytes that are written, whatever of them: 0x00 to 0xFF over and over.
inline const std::string& pattern()
{
    static const std::string bytes = [] {
        std::string result(100000, '\0');
        for (std::size_t i = 0; i < result.size(); ++i)
            result[i] = static_cast<char>(i);
        return result;
    }();
    return bytes;
}

/// The files that are worked on. All of the test's own memory is taken here, before calls fail.
struct Place {
    TestFiles files;
    std::wstring name = files.put("file", kContent);
    std::wstring other = files.wide("other");
    std::string otherPath = files.path("other");
    std::string buffer = std::string(kContent.size(), '?');

    unsigned char* bufferAt(std::size_t at) { return reinterpret_cast<unsigned char*>(buffer.data()) + at; }
};

/// A piece of work, and what holds afterwards unless it was told of a failure.
struct Work {
    const char* name;
    bool (*isTold)(Place& place);
    bool (*isRight)(const Place& place);
};

// True when the open, or an exception in `body`, tells of a failure.
template<class Stream, class Body>
inline bool isTold(const Opened<Stream>& file, Body body)
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

inline void writePattern(TvStreamBuf& stream, std::size_t from, std::size_t count)
{
    stream.writeBytes(bytesOf(pattern()) + from, static_cast<std::uint32_t>(count));
}

inline bool writeCached(Place& place)
{
    return isTold(openOut(place.other), [](TvFileOStreamBuf& file) {
        for (std::size_t at = 0; at < 40000; at += 1000)
            writePattern(file, at, 1000);
        file.close();
    });
}

inline bool writeCachedInAllSizes(Place& place)
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

inline bool writeUncached(Place& place)
{
    return isTold(openFile(place.other), [](TvFileStreamBufImpl& file) {
        for (std::size_t at = 0; at < 60000; at += 1000)
            writePattern(file, at, 1000);
        file.setBytes(10, bytesOf(pattern()) + 10, 100);
        file.close();
    });
}

// An unmapped read that comes short is not told: it leaves '?' behind.
inline bool readMapped(Place& place)
{
    return isTold(openIn(place.name), [&](TvFileIStreamBuf& file) {
        for (std::size_t at = 0; at < kContent.size(); at += 1000)
            file.readBytes(place.bufferAt(at), 1000);
        file.close();
    });
}

inline bool openExclusivelyAndChange(Place& place)
{
    return isTold(openExclusively(place.name), [](TvFileStreamBufImpl& file) {
        file.seek(10, TvIO::kSeekFromStart);
        writePattern(file, 'a', 3);
        file.close();
    });
}

inline bool reopen(Place& place)
{
    return isTold(openExclusively(place.name), [&](TvFileStreamBufImpl& file) {
        writePattern(file, 'a', 3);
        if (file.open(place.other.c_str(), kBoth, TvIO::kShareDenyNone, TvIO::kCreateAlways) != Orna::eOk)
            throw L"told by the status";
        writePattern(file, 'x', 3);
        file.close();
    });
}

inline bool askTheFileSystem(Place& place)
{
    std::unique_ptr<TvFileStreamBuf> file(
        TvFileSystem::createFileBuf(place.name.c_str(), kRead, TvIO::kShareDenyNone, TvIO::kOpenExisting));
    const bool exists = TvFileSystem::isFileExisting(place.name.c_str());
    const bool accessible = TvFileSystem::accessFile(place.name.c_str(), kRead);
    const std::uint64_t size = TvFileSystem::getFileSize(place.name.c_str());
    return file == nullptr || !hasFile(*file) || !exists || !accessible || size != kContent.size();
}

// Cursors, positions and the two ends of the cache, forth and back.
inline bool changeInPlace(Place& place)
{
    return isTold(openOut(place.name, kBoth, TvIO::kShareDenyNone, TvIO::kOpenExisting),
                  [](TvFileOStreamBuf& file) {
                      unsigned char byte = 0;
                      file.seek(100, TvIO::kSeekFromStart);
                      writePattern(file, 0, 50);
                      file.setBytes(20000, bytesOf(pattern()) + 7, 3000);
                      file.seek(39990, TvIO::kSeekFromStart);
                      writePattern(file, 0, 10);
                      file.getBytes(0, &byte, 1);
                      if (byte != 'c')
                          throw L"told by the byte";
                      file.seek(0, TvIO::kSeekFromEnd);
                      writePattern(file, 10, 5);
                      file.close();
                  });
}

inline bool writeAndReadBack(Place& place)
{
    std::unique_ptr<TvFileIOStreamBuf> file;
    Orna::ErrorStatus status = Orna::eOk;
    file.reset(createFileIOStreamBuf(place.other.c_str(), &status, kBoth, TvIO::kShareDenyNone,
                                     TvIO::kCreateAlways));
    if (file == nullptr || status != Orna::eOk || !hasFile(*file))
        return true;
    try {
        writePattern(*file, 0, 30000);
        file->rewind();
        file->readBytes(place.bufferAt(0), 20000);
        file->seek(30000, TvIO::kSeekFromStart);
        writePattern(*file, 30000, 20000);
        file->close();
        return false;
    } catch (const wchar_t*) {
        return true;
    }
}

inline bool adoptHandle(Place& place)
{
    std::FILE* const handle = std::fopen(place.otherPath.c_str(), "w+b");
    if (handle == nullptr)
        return true;
    std::unique_ptr<TvFileIOStreamBuf> file(createFileIOStreamBuf(handle));
    if (file == nullptr) {
        std::fclose(handle);
        return true;
    }
    try {
        writePattern(*file, 0, 9000);
        file->close();
        return false;
    } catch (const wchar_t*) {
        return true;
    }
}

// A short read is not told: it leaves '?' behind.
inline bool readUnmapped(Place& place)
{
    return isTold(openFile(place.name, kRead, TvIO::kShareDenyNone, TvIO::kOpenExisting),
                  [&](TvFileStreamBufImpl& file) {
                      file.getBytes(20000, place.bufferAt(20000), 20000);
                      file.rewind();
                      file.readBytes(place.bufferAt(0), 20000);
                      file.close();
                  });
}

inline bool copyFileToFile(Place& place)
{
    const auto source = openIn(place.name);
    if (source.stream == nullptr || source.status != Orna::eOk || !hasFile(*source))
        return true;
    return isTold(openOut(place.other), [&](TvFileOStreamBuf& file) {
        file.copyFrom(source.stream.get(), 0, kContent.size());
        file.close();
    });
}

inline bool copyFileToMemory(Place& place)
{
    return isTold(openIn(place.name), [&](TvFileIStreamBuf& file) {
        TvFlatMemBuf memory(0);
        memory.copyFrom(&file, 0, kContent.size());
        if (memory.length() != kContent.size())
            throw L"told by the length";
        memory.getBytes(0, place.bufferAt(0), static_cast<std::uint32_t>(kContent.size()));
        file.close();
    });
}

inline bool otherIsPattern(const Place& place, std::size_t size)
{
    return place.files.get("other") == pattern().substr(0, size);
}

inline const Work kWorks[] = {
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
    {"ChangeInPlace", changeInPlace,
     [](const Place& p) {
         std::string expected = kContent;
         expected.replace(100, 50, pattern(), 0, 50);
         expected.replace(20000, 3000, pattern(), 7, 3000);
         expected.replace(39990, 10, pattern(), 0, 10);
         return p.files.get("file") == expected + pattern().substr(10, 5);
     }},
    {"WriteAndReadBack", writeAndReadBack, [](const Place& p) { return otherIsPattern(p, 50000); }},
    {"AdoptHandle", adoptHandle, [](const Place& p) { return otherIsPattern(p, 9000); }},
    {"ReadUnmapped", readUnmapped,
     [](const Place& p) { return p.buffer == kContent || p.buffer.find('?') != std::string::npos; }},
    {"CopyFileToFile", copyFileToFile, [](const Place& p) { return p.files.get("other") == kContent; }},
    {"CopyFileToMemory", copyFileToMemory, [](const Place& p) { return p.buffer == kContent; }},
    {"AskTheFileSystem", askTheFileSystem, [](const Place&) { return true; }},
};

inline void PrintTo(const Work& work, std::ostream* out) { *out << work.name; }

#endif
