// FileStreams.h - short ways to open file streams in tests, and to say what went wrong.
#ifndef TV_TEST_FILE_STREAMS_H
#define TV_TEST_FILE_STREAMS_H

#include "TvErrorStatus.h"
#include "TvFileStreamBuf.h"

#include <memory>
#include <string>

constexpr TvIO::AccessMode kRead = TvIO::kAccessRead;
constexpr TvIO::AccessMode kWrite = TvIO::kAccessWrite;
constexpr TvIO::AccessMode kBoth = TvIO::kAccessRead | TvIO::kAccessWrite;
constexpr TvIO::AccessMode kNeither = TvIO::AccessMode();

inline const unsigned char* bytesOf(const std::string& text)
{
    return reinterpret_cast<const unsigned char*>(text.data());
}

/// What is thrown by `run`: the text of a message, "status 364", "something else" or "nothing".
template<class Run>
std::wstring thrownBy(Run run)
{
    try {
        run();
        return L"nothing";
    } catch (const wchar_t* message) {
        return message;
    } catch (Orna::ErrorStatus status) {
        return L"status " + std::to_wstring(static_cast<int>(status));
    } catch (...) {
        return L"something else";
    }
}

inline bool hasFile(const TvFileStreamBuf& stream)
{
    return stream.fileHandle() != nullptr && stream.fileHandle() != reinterpret_cast<void*>(-1);
}

/// A stream from one of the factories with the status of its open.
template<class Stream>
struct Opened {
    std::unique_ptr<Stream> stream;
    Orna::ErrorStatus status = Orna::eOk;

    Stream* operator->() const { return stream.get(); }
    Stream& operator*() const { return *stream; }
};

inline Opened<TvFileStreamBufImpl> openFile(const std::wstring& name, TvIO::AccessMode access = kBoth,
                                            TvIO::ShareMode share = TvIO::kShareDenyNone,
                                            TvIO::CreationDisposition disposition = TvIO::kOpenAlways)
{
    Opened<TvFileStreamBufImpl> result;
    result.stream.reset(createFileStreamBuf(name.c_str(), &result.status, access, share, disposition));
    return result;
}

inline Opened<TvFileIStreamBuf> openIn(const std::wstring& name, TvIO::AccessMode access = kRead,
                                       TvIO::ShareMode share = TvIO::kShareDenyNone,
                                       TvIO::CreationDisposition disposition = TvIO::kOpenExisting)
{
    Opened<TvFileIStreamBuf> result;
    result.stream.reset(createFileIStreamBuf(name.c_str(), &result.status, access, share, disposition));
    return result;
}

inline Opened<TvFileOStreamBuf> openOut(const std::wstring& name, TvIO::AccessMode access = kBoth,
                                        TvIO::ShareMode share = TvIO::kShareDenyNone,
                                        TvIO::CreationDisposition disposition = TvIO::kCreateAlways,
                                        unsigned int cacheCapacity = 16384)
{
    Opened<TvFileOStreamBuf> result;
    result.stream.reset(
        createFileOStreamBuf(name.c_str(), &result.status, access, share, disposition, cacheCapacity));
    return result;
}

/// An exclusive open.
inline Opened<TvFileStreamBufImpl> openExclusively(const std::wstring& name)
{
    return openFile(name, kBoth, TvIO::kShareDenyWrite, TvIO::kOpenExisting);
}

inline void write(TvStreamBuf& stream, const std::string& text)
{
    stream.writeBytes(bytesOf(text), static_cast<std::uint32_t>(text.size()));
}

/// `count` bytes from the cursor; "?" where the stream left them alone.
inline std::string read(TvStreamBuf& stream, std::uint32_t count)
{
    std::string result(count, '?');
    stream.readBytes(reinterpret_cast<unsigned char*>(result.data()), count);
    return result;
}

inline std::string get(TvStreamBuf& stream, std::uint32_t count)
{
    std::string result(count, '?');
    stream.getBytes(reinterpret_cast<unsigned char*>(result.data()), count);
    return result;
}

#endif
