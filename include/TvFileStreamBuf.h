// TvFileStreamBuf.h - byte streams over files, and the functions that open them.
//
// createFileIStreamBuf() reads a file through a mapping, createFileOStreamBuf() writes one
// through a cache; createFileStreamBuf() and createFileIOStreamBuf() do both, unbuffered by
// this library. TvFileSystem::createFileBuf() chooses between the first two. For bytes in
// memory see TvMemStreamBuf.h.
#ifndef TV_FILE_STREAM_BUF_H
#define TV_FILE_STREAM_BUF_H

#include "TvErrorStatus.h"
#include "TvExport.h"
#include "TvMemStreamBuf.h"
#include "TvStdStr.h"
#include "TvStreamBuf.h"

#include <cstdint>
#include <cstdio>
#include <vector>

/// What every file stream can tell about its file.
///
/// **Errors**: none. **Memory**: the name belongs to the stream and ends with its close.
/// **Threads**: one stream, one thread.
class TV_OSBASE_API TvFileStreamBuf : public TvStreamBuf {
public:
    /// For streams that derive.
    TvFileStreamBuf() = default;
    TvFileStreamBuf(const TvFileStreamBuf&) = delete;
    TvFileStreamBuf& operator=(const TvFileStreamBuf&) = delete;
    /// Closes nothing: streams that derive do.
    ~TvFileStreamBuf() override;

    /// The name given to open(), or null.
    virtual const wchar_t* fileName() const = 0;
    /// The mode given to open(); 0 while there is no file.
    virtual TvIO::ShareMode shareMode() const = 0;

    /// The C library's stream (FILE*). Null, or the pointer of all one bits,
    /// means no file.
    virtual void* fileHandle() const = 0;
};

/// A file, read and written through the C library's stream.
///
/// What surprises:
///  - A failed open leaves a stream without a file. Some failures are not told through
///    `*status` (see the constructor): look at fileHandle(), too.
///  - seek() with kSeekFromEnd counts *forward* from the end.
///  - truncate() cuts nothing: it moves the cursor to the end.
///  - readBytes() says nothing of a short read.
///  - length() counts bytes on disk; what the C library still holds back does not count.
///  - getBytes()/setBytes() put the cursor back in the form without a position, and leave it
///    behind the bytes in the form with one.
///
/// Locks. Every open takes a shared POSIX record lock on the whole file, and an
/// open for reading and writing with kShareDenyWrite and kOpenExisting is
/// exclusive: it fails while another process holds a lock, or while this
/// process has the same name (spelled alike) open exclusively. POSIX drops all
/// locks of a process on a file when the process closes any descriptor of it; a
/// second stream on the same file, once closed, thus ends the lock of the
/// first.
///
/// **Errors**: thrown, as `const wchar_t*` or `Orna::ErrorStatus`, both by
/// value. Without a file tell() and length() are 0, reads throw "End of file!",
/// writes "Write file error!", seeks "File internal error!", and truncate() and
/// close() do nothing. An error of the C stream stays: each later write throws.
/// Range errors at positions are reported as in TvStreamBuf.
/// **Memory**: the stream owns its C stream and a copy of the name.
/// **Threads**: one thread for all file streams; the registry of exclusive
/// opens has no lock.
///
///     Orna::ErrorStatus status = Orna::eOk;
///     TvFileStreamBuf* file = createFileStreamBuf(L"plan.bin", &status,
///         TvIO::kAccessRead | TvIO::kAccessWrite, TvIO::kShareDenyNone,
///         TvIO::kOpenAlways);
///     if (status == Orna::eOk)
///         file->writeBytes(bytes, size);
///     destoryFileIOStreamBuf(file);
class TV_OSBASE_API TvFileStreamBufImpl : public TvFileStreamBuf {
public:
    using TvStreamBuf::readBytes;
    using TvStreamBuf::seek;
    using TvStreamBuf::writeBytes;

    /// Opens by open(). A status other than 0 that open() returns goes to
    /// `*status`, which is left alone otherwise: set it to eOk before. What
    /// open() throws is dropped here, so the stream is then without a file while
    /// `*status` says nothing.
    TvFileStreamBufImpl(const wchar_t* name, Orna::ErrorStatus* status, TvIO::AccessMode access,
                        TvIO::ShareMode share, TvIO::CreationDisposition disposition);
    /// The same with plain numbers for the modes.
    TvFileStreamBufImpl(const wchar_t* name, Orna::ErrorStatus* status, std::uint32_t access,
                        std::uint32_t share, std::uint32_t disposition)
        : TvFileStreamBufImpl(name, status, static_cast<TvIO::AccessMode>(access),
                              static_cast<TvIO::ShareMode>(share),
                              static_cast<TvIO::CreationDisposition>(disposition))
    {
    }

    /// Adopts an open FILE*, which the stream closes.
    explicit TvFileStreamBufImpl(void* handle);

    /// Closes; what close() would throw is lost here.
    ~TvFileStreamBufImpl() override;

    /// Position of the cursor, in bytes; 0 without a file.
    std::uint64_t tell() const override;
    /// Bytes on disk; 0 without a file.
    std::uint64_t length() const override;
    /// Moves the cursor to the end, and cuts nothing.
    void truncate() override;

    /// 0. Where the C library refuses the place: "File internal error!" is
    /// thrown, or -1 returned when the low 32 bits of `offset` are all ones.
    std::int64_t seek(std::uint64_t offset, TvIO::SeekType type) override;

    /// Reads up to `count` bytes at the cursor. A short read is not told: what is missing of `buf`
    /// stays as it was.
    void readBytes(unsigned char* buf, std::uint32_t count) override;
    /// Writes `count` bytes at the cursor; throws "Write file error!" when not all were taken.
    void writeBytes(const unsigned char* buf, std::uint32_t count) override;
    /// readBytes(); the cursor goes back.
    void getBytes(unsigned char* buf, std::uint32_t count) override;
    /// readBytes() at `position`; the cursor stays behind the bytes.
    void getBytes(std::uint64_t position, unsigned char* buf, std::uint32_t count) override;
    /// writeBytes(); the cursor goes back.
    void setBytes(const unsigned char* buf, std::uint32_t count) override;
    /// writeBytes() at `position`, past the end too; the cursor stays behind the bytes.
    void setBytes(std::uint64_t position, const unsigned char* buf, std::uint32_t count) override;

    /// The name as it was given; null without a file and for an adopted one.
    const wchar_t* fileName() const override;
    /// The mode given to open(); 0 without a file and for an adopted one.
    TvIO::ShareMode shareMode() const override;
    /// The FILE*; null or the pointer of all one bits when there is none.
    void* fileHandle() const override;

    /// Gives the file back. Everything is released even where "Write file error!"
    /// is thrown, which tells that the last bytes did not reach the file. May be
    /// called repeatedly.
    virtual void close();

    /// Closes what is open and opens `name`.
    ///
    /// Returns 0; 72 when kOpenExisting finds no file that can be used as asked,
    /// or when the name is already open exclusively in this process; 433 when an
    /// exclusive open meets a lock of another process; 53 when the system refuses
    /// or memory ran out. Throws "No filename!"; 364 for a directory, for
    /// kCreateNew of a file that is there, and for kTruncateExisting of one that
    /// is missing, not readable and writable, or not to be written; 2 for an
    /// unknown disposition.
    ///
    /// kOpenAlways takes a file that it cannot both read and write for a missing
    /// one.
    Orna::ErrorStatus open(const wchar_t* name, TvIO::AccessMode access, TvIO::ShareMode share,
                           TvIO::CreationDisposition disposition);
    /// The same with plain numbers for the modes.
    Orna::ErrorStatus open(const wchar_t* name, std::uint32_t access, std::uint32_t share,
                           std::uint32_t disposition)
    {
        return open(name, static_cast<TvIO::AccessMode>(access), static_cast<TvIO::ShareMode>(share),
                    static_cast<TvIO::CreationDisposition>(disposition));
    }

    /// The names of all exclusively open files, spelled as they were given to
    /// open().
    static std::vector<CStdStr<wchar_t>> m_cstrAlreadyOpenFiles;

private:
    friend class TvFileIStreamBuf;
    friend class TvFileOStreamBuf;

    TV_LOCAL bool hasFile() const;
    TV_LOCAL Orna::ErrorStatus lockExclusively(const wchar_t* name);
    TV_LOCAL void abandonFile();

    std::FILE* m_handle;
    wchar_t* m_fileName;
    TvIO::ShareMode m_shareMode;
    bool m_dirty;
    int m_descriptor;
    bool m_registered;
};

/// A file that is only read, through a mapping of the whole of it.
///
/// What surprises: here kSeekFromEnd counts *backward* from the end, seek()
/// returns the new position, and getBytes(buf, count) moves the cursor as
/// readBytes() does. The length is that of the moment of opening. A file that
/// another process cuts short while it is mapped raises SIGBUS when the part
/// that is gone is read: use createFileStreamBuf() for files that others may
/// cut. A file that cannot be mapped is read as TvFileStreamBufImpl does.
///
/// **Errors**: thrown as const wchar_t*: "End of file!" for a read past the
/// end, "Out of file stream buffer!" for a seek past it, "Write file error!"
/// for writes, "File internal error!" for truncate(). **Memory**: the mapping,
/// ended by close(). **Threads**: one thread.
///
///     Orna::ErrorStatus status = Orna::eOk;
///     TvFileIStreamBuf* file = createFileIStreamBuf(L"fonts.dat", &status, TvIO::kAccessRead,
///         TvIO::kShareDenyNone, TvIO::kOpenExisting);
class TV_OSBASE_API TvFileIStreamBuf : public TvFileStreamBufImpl {
public:
    using TvFileStreamBufImpl::getBytes;
    using TvFileStreamBufImpl::readBytes;
    using TvFileStreamBufImpl::seek;
    using TvFileStreamBufImpl::setBytes;
    using TvFileStreamBufImpl::writeBytes;
    using TvStreamBuf::readByte;

    /// As TvFileStreamBufImpl; when `*status` is not 0 afterwards, the stream is
    /// closed.
    TvFileIStreamBuf(const wchar_t* name, Orna::ErrorStatus* status, TvIO::AccessMode access,
                     TvIO::ShareMode share, TvIO::CreationDisposition disposition);
    /// The same with plain numbers for the modes.
    TvFileIStreamBuf(const wchar_t* name, Orna::ErrorStatus* status, std::uint32_t access,
                     std::uint32_t share, std::uint32_t disposition)
        : TvFileIStreamBuf(name, status, static_cast<TvIO::AccessMode>(access),
                           static_cast<TvIO::ShareMode>(share),
                           static_cast<TvIO::CreationDisposition>(disposition))
    {
    }
    /// Closes.
    ~TvFileIStreamBuf() override;

    /// Position of the cursor, in bytes.
    std::uint64_t tell() const override;
    /// The length at the moment of opening, in bytes.
    std::uint64_t length() const override;
    /// Throws "File internal error!"; nothing without a file.
    void truncate() override;
    /// Moves the cursor and returns where it is, in bytes; throws "Out of file stream buffer!" for
    /// a place past the end.
    std::int64_t seek(std::uint64_t offset, TvIO::SeekType type) override;
    /// The byte at the cursor, which moves on; throws "End of file!" when there is none. Called on
    /// the object itself it is inline, and about four times as fast as through a TvStreamBuf:
    ///
    ///     Orna::ErrorStatus status = Orna::eOk;
    ///     TvFileIStreamBuf file(L"fonts.dat", &status, TvIO::kAccessRead, TvIO::kShareDenyNone,
    ///                           TvIO::kOpenExisting);
    ///     for (std::uint64_t left = file.length(); left > 0; --left)
    ///         use(file.readByte()); // not through a pointer or a reference
    TV_INLINE_TOO unsigned char readByte() override;
    /// All `count` bytes, or throws "End of file!" and reads none.
    void readBytes(unsigned char* buf, std::uint32_t count) override;
    /// Throws "Write file error!".
    void writeBytes(const unsigned char* buf, std::uint32_t count) override;
    /// As readBytes(): moves the cursor.
    void getBytes(unsigned char* buf, std::uint32_t count) override;
    /// Throws "Write file error!".
    void setBytes(const unsigned char* buf, std::uint32_t count) override;
    /// Ends the mapping and closes the file. May be called repeatedly.
    void close() override;

private:
    TV_LOCAL void init();
    TV_LOCAL void readAhead(std::uint64_t end);
    TV_LOCAL void readBytesBeyond(unsigned char* buf, std::uint32_t count);

    const unsigned char* m_map; // null when not mapped
    std::uint64_t m_mapLength;
    std::uint64_t m_position;
    std::uint64_t m_readyEnd;  // reads that end here or before need no look at the length
    std::uint64_t m_aheadSize; // bytes asked of the system in advance at the next step
};

#ifndef TV_BYTES_OUT_OF_LINE

// The cursor is stored behind the two ways, so that a loop keeps it in a register.
TV_INLINE_TOO unsigned char TvFileIStreamBuf::readByte()
{
    std::uint64_t at = m_position;
    unsigned int b = 0;
    if (__builtin_expect(at < m_readyEnd, 1)) {
        b = m_map[at];
        ++at;
    } else {
        b = TvStreamBuf::readByte();
        at = m_position;
    }
    m_position = at;
    return static_cast<unsigned char>(b);
}

#endif

/// A file that is written through a cache of 16384 bytes.
///
/// What surprises: bytes that setBytes() puts into the cache at or behind the
/// cache's own cursor are not written to the file, and setBytes(position, ...)
/// takes the position as an index into the cache. Both hold as long as `count`
/// does not exceed what the cache holds. truncate() does not write the cache
/// first. Errors of the disk show when the cache is written: at a later write,
/// at a seek, at close(). Call close(): the destructor cannot tell. After an
/// error before that the cache keeps what has not reached the file, and the call
/// may be repeated: nothing is lost, nothing written twice. The C library
/// remembers errors of the system, so later writes are told as failed even when
/// they arrive.
///
/// **Errors**: as TvFileStreamBufImpl. **Memory**: the cache, from _tvMalloc.
/// When it cannot be had, status 6 is reported and writes go to the file at
/// once. **Threads**: one thread.
///
///     Orna::ErrorStatus status = Orna::eOk;
///     TvFileOStreamBuf* file = createFileOStreamBuf(L"plan.bin", &status, TvIO::kAccessWrite,
///         TvIO::kShareDenyNone, TvIO::kCreateAlways, 16384);
class TV_OSBASE_API TvFileOStreamBuf : public TvFileStreamBufImpl {
public:
    using TvFileStreamBufImpl::readBytes;
    using TvFileStreamBufImpl::seek;
    using TvFileStreamBufImpl::writeBytes;
    using TvStreamBuf::writeByte;

    /// As TvFileStreamBufImpl. `cacheCapacity` is room taken at once, in bytes;
    /// the cache is written to the file at 16384 bytes whatever it is.
    TvFileOStreamBuf(const wchar_t* name, Orna::ErrorStatus* status, TvIO::AccessMode access,
                     TvIO::ShareMode share, TvIO::CreationDisposition disposition,
                     unsigned int cacheCapacity);
    /// The same with plain numbers for the modes.
    TvFileOStreamBuf(const wchar_t* name, Orna::ErrorStatus* status, std::uint32_t access,
                     std::uint32_t share, std::uint32_t disposition, unsigned int cacheCapacity)
        : TvFileOStreamBuf(name, status, static_cast<TvIO::AccessMode>(access),
                           static_cast<TvIO::ShareMode>(share),
                           static_cast<TvIO::CreationDisposition>(disposition), cacheCapacity)
    {
    }
    /// Closes; what close() would throw is lost here.
    ~TvFileOStreamBuf() override;

    /// Position of the cursor, in bytes; the cache counts as written.
    std::uint64_t tell() const override;
    /// Bytes on disk, or up to the cursor if that is more.
    std::uint64_t length() const override;
    /// Writes the cache and moves as TvFileStreamBufImpl does: 0, or -1.
    std::int64_t seek(std::uint64_t offset, TvIO::SeekType type) override;
    /// Writes a byte, into the cache first.
    void writeByte(unsigned char b) override;
    /// Writes the cache, then reads as TvFileStreamBufImpl does.
    void readBytes(unsigned char* buf, std::uint32_t count) override;
    /// Writes `count` bytes, up to 16384 of them into the cache first; throws "Write file error!"
    /// when the disk refuses what has to go there.
    void writeBytes(const unsigned char* buf, std::uint32_t count) override;
    /// Writes the cache, then reads; the cursor goes back.
    void getBytes(unsigned char* buf, std::uint32_t count) override;
    /// Writes the cache, then reads at `position`; the cursor stays behind the bytes.
    void getBytes(std::uint64_t position, unsigned char* buf, std::uint32_t count) override;
    /// Changes bytes of the cache, which then do not reach the file; as TvFileStreamBufImpl where
    /// `count` exceeds what the cache holds.
    void setBytes(const unsigned char* buf, std::uint32_t count) override;
    /// The same at an index into the cache; as TvFileStreamBufImpl where `count` exceeds what the
    /// cache holds.
    void setBytes(std::uint64_t position, const unsigned char* buf, std::uint32_t count) override;
    /// Writes the cache and closes the file. Everything is released even where "Write file error!"
    /// is thrown. May be called repeatedly.
    void close() override;

    /// Writes the cache up to its cursor to the file; throws "Write file error!".
    void flush();

private:
    TV_LOCAL void writeBytesFlushing(const unsigned char* buf, std::uint32_t count);
    TV_LOCAL std::uint32_t writeThrough(const unsigned char* buf, std::uint32_t count);
    TV_LOCAL bool writeCache();

    TvFlatMemBuf m_cache;
    bool m_unbuffered; // the C stream's own buffer is out of the way
    bool m_writingNow; // the last operation on the C stream was a write of ours
};

/// A file, read and written: TvFileStreamBufImpl under a name of its own.
///
/// **Errors**, **Memory**, **Threads**: as TvFileStreamBufImpl.
class TV_OSBASE_API TvFileIOStreamBuf : public TvFileStreamBufImpl {
public:
    /// As TvFileStreamBufImpl.
    TvFileIOStreamBuf(const wchar_t* name, Orna::ErrorStatus* status, TvIO::AccessMode access,
                      TvIO::ShareMode share, TvIO::CreationDisposition disposition);
    /// The same with plain numbers for the modes.
    TvFileIOStreamBuf(const wchar_t* name, Orna::ErrorStatus* status, std::uint32_t access,
                      std::uint32_t share, std::uint32_t disposition)
        : TvFileIOStreamBuf(name, status, static_cast<TvIO::AccessMode>(access),
                            static_cast<TvIO::ShareMode>(share),
                            static_cast<TvIO::CreationDisposition>(disposition))
    {
    }
    /// Adopts an open FILE*, which the stream closes.
    explicit TvFileIOStreamBuf(void* handle);
    /// Closes; what close() would throw is lost here.
    ~TvFileIOStreamBuf() override;
};

/// Opens a file for reading and writing, unbuffered by this library.
///
/// As all factories it makes a stream also where the file could not be opened: look at
/// `*status`, to be set to eOk before, and at fileHandle() (see TvFileStreamBufImpl). Null
/// only when there is no memory for the object. The caller frees the stream with delete or
/// destoryFileIOStreamBuf().
TV_OSBASE_API TvFileStreamBufImpl* createFileStreamBuf(const wchar_t* name, Orna::ErrorStatus* status,
                                                       TvIO::AccessMode access, TvIO::ShareMode share,
                                                       TvIO::CreationDisposition disposition);

/// Opens a file for reading, through a mapping. Results as of createFileStreamBuf().
TV_OSBASE_API TvFileIStreamBuf* createFileIStreamBuf(const wchar_t* name, Orna::ErrorStatus* status,
                                                     TvIO::AccessMode access, TvIO::ShareMode share,
                                                     TvIO::CreationDisposition disposition);

/// Opens a file for writing through a cache; `cacheCapacity` is room taken at once, in bytes.
/// Results as of createFileStreamBuf().
TV_OSBASE_API TvFileOStreamBuf* createFileOStreamBuf(const wchar_t* name, Orna::ErrorStatus* status,
                                                     TvIO::AccessMode access, TvIO::ShareMode share,
                                                     TvIO::CreationDisposition disposition,
                                                     unsigned int cacheCapacity);

/// createFileStreamBuf() under the other class name.
TV_OSBASE_API TvFileIOStreamBuf* createFileIOStreamBuf(const wchar_t* name, Orna::ErrorStatus* status,
                                                       TvIO::AccessMode access, TvIO::ShareMode share,
                                                       TvIO::CreationDisposition disposition);

/// Adopts an open FILE*, which the stream closes. Null when there is no memory for the object,
/// which leaves the FILE* open.
TV_OSBASE_API TvFileIOStreamBuf* createFileIOStreamBuf(void* handle);

/// Destroys a stream of any of the factories; null is ignored. (The spelling is the name.)
TV_OSBASE_API void destoryFileIOStreamBuf(TvFileStreamBuf* stream);

/// createFileStreamBuf() with plain numbers for the modes.
inline TvFileStreamBufImpl* createFileStreamBuf(const wchar_t* name, Orna::ErrorStatus* status,
                                                std::uint32_t access, std::uint32_t share,
                                                std::uint32_t disposition)
{
    return createFileStreamBuf(name, status, static_cast<TvIO::AccessMode>(access),
                               static_cast<TvIO::ShareMode>(share),
                               static_cast<TvIO::CreationDisposition>(disposition));
}

/// createFileIStreamBuf() with plain numbers for the modes.
inline TvFileIStreamBuf* createFileIStreamBuf(const wchar_t* name, Orna::ErrorStatus* status,
                                              std::uint32_t access, std::uint32_t share,
                                              std::uint32_t disposition)
{
    return createFileIStreamBuf(name, status, static_cast<TvIO::AccessMode>(access),
                                static_cast<TvIO::ShareMode>(share),
                                static_cast<TvIO::CreationDisposition>(disposition));
}

/// createFileOStreamBuf() with plain numbers for the modes.
inline TvFileOStreamBuf* createFileOStreamBuf(const wchar_t* name, Orna::ErrorStatus* status,
                                              std::uint32_t access, std::uint32_t share,
                                              std::uint32_t disposition, unsigned int cacheCapacity)
{
    return createFileOStreamBuf(name, status, static_cast<TvIO::AccessMode>(access),
                                static_cast<TvIO::ShareMode>(share),
                                static_cast<TvIO::CreationDisposition>(disposition), cacheCapacity);
}

/// createFileIOStreamBuf() with plain numbers for the modes.
inline TvFileIOStreamBuf* createFileIOStreamBuf(const wchar_t* name, Orna::ErrorStatus* status,
                                                std::uint32_t access, std::uint32_t share,
                                                std::uint32_t disposition)
{
    return createFileIOStreamBuf(name, status, static_cast<TvIO::AccessMode>(access),
                                 static_cast<TvIO::ShareMode>(share),
                                 static_cast<TvIO::CreationDisposition>(disposition));
}

#endif
