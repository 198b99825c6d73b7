// TvStreamBuf.h - the byte-stream interface, and two small companions of it.
//
// Write code that reads or writes bytes against TvStreamBuf; take the streams themselves
// from TvMemStreamBuf.h (bytes in memory) or TvFileStreamBuf.h (bytes in files).
#ifndef TV_STREAM_BUF_H
#define TV_STREAM_BUF_H

#include "TvExport.h"

#include <cstdint>

// Marks a member that has a body in its header for calls on the object itself, and in the library
// for all others: that one alone stands in virtual tables and has an address. The sources that
// define it see no other body, and neither do compilers other than g++.
#if !defined(__GNUC__) || defined(__clang__)
#define TV_BYTES_OUT_OF_LINE
#endif
#ifdef TV_BYTES_OUT_OF_LINE
#define TV_INLINE_TOO
#else
#define TV_INLINE_TOO [[gnu::gnu_inline]] TV_OSBASE_API inline
#endif

/// How streams are moved and files are opened. The values are part of the interface:
/// wherever one of these types is taken, the plain number is taken as well.
namespace TvIO {

/// What the offset of seek() counts from. The offset itself is always unsigned.
enum SeekType : std::uint32_t {
    kSeekFromStart = 0, ///< the offset itself
    kSeekForward = 1,   ///< current position plus the offset
    kSeekBackward = 2,  ///< current position minus the offset
    kSeekFromEnd = 3    ///< length minus the offset (files that are not mapped: length plus it)
};

/// What a file is opened for; the bits may be joined with `|`.
enum AccessMode : std::uint32_t {
    kAccessRead = 0x80000000u, ///< reading
    kAccessWrite = 0x40000000u ///< writing
};

/// Both accesses.
constexpr AccessMode operator|(AccessMode a, AccessMode b)
{
    return static_cast<AccessMode>(static_cast<std::uint32_t>(a) | static_cast<std::uint32_t>(b));
}

/// Who else may use the file. Any other value is stored and behaves as "not kShareDenyNone".
enum ShareMode : std::uint32_t {
    kShareDenyWrite = 32, ///< with reading, writing and kOpenExisting: an exclusive open
    kShareDenyNone = 64   ///< the only mode in which a file opened for reading is opened read-only
};

/// What happens to a file that exists, or does not exist, when it is opened.
enum CreationDisposition : std::uint32_t {
    kCreateNew = 1,       ///< must not exist
    kCreateAlways = 2,    ///< is truncated or created
    kOpenExisting = 3,    ///< must exist
    kOpenAlways = 4,      ///< is opened or created
    kTruncateExisting = 5 ///< must exist, is truncated; needs write access
};

} // namespace TvIO

/// A seekable sequence of bytes with a cursor.
///
/// Three rules surprise:
///  - The base never lengthens a stream by a write at a position: `position + count` beyond
///    length() is a range error for writes, too.
///  - A transfer at a position moves the cursor if that position is the cursor's own, and
///    leaves the cursor alone if it is any other.
///  - "get" and "set" move the cursor here just as "read" and "write" do. Streams that
///    want them not to move it override them, as TvFlatMemBuf does.
///
/// A stream supplies tell(), length(), seek() and the two transfers at the cursor. All else
/// is made of these, through the virtual functions, and may be overridden for speed.
///
/// A loop over single bytes is several times faster on a stream object that is named as what it
/// is, because TvFlatMemBuf and TvFileIStreamBuf have their readByte() and writeByte() inline;
/// through a TvStreamBuf each byte is a virtual call.
///
/// **Errors**: a range error is reported to the crash recorder as "Out of stream buffer!" and
/// the call does nothing. What the stream's own operations throw passes through; a transfer
/// at a position that fails this way leaves the cursor at that position.
/// **Memory**: nothing is allocated. Buffers belong to the caller and need room for `count`.
/// **Threads**: one stream, one thread.
///
///     void saveHeader(TvStreamBuf& stream, const unsigned char (&header)[16])
///     {
///         stream.rewind();
///         stream.writeBytes(header, 16);
///     }
class TV_OSBASE_API TvStreamBuf {
public:
    /// For streams that derive.
    TvStreamBuf() = default;
    /// For streams that derive and may be copied.
    TvStreamBuf(const TvStreamBuf&) = default;
    /// For streams that derive and may be copied.
    TvStreamBuf& operator=(const TvStreamBuf&) = default;
    /// Streams are destroyed through this base.
    virtual ~TvStreamBuf();

    /// True when the cursor stands at the end or past it.
    virtual bool isEOS() const;

    /// Position of the cursor, in bytes from the start.
    virtual std::uint64_t tell() const = 0;

    /// Length in bytes.
    virtual std::uint64_t length() const = 0;

    /// Does nothing here; memory streams change their length.
    virtual void setlength(std::uint64_t length);

    /// Does nothing here; what it does is each stream's own.
    virtual void truncate();

    /// seek(0, kSeekFromStart), and its result.
    virtual std::int64_t rewind();

    /// The bytes of a stream that keeps them in one piece, else null.
    virtual unsigned char* buffer();
    /// The same, to be read.
    virtual const unsigned char* buffer() const;

    /// Moves the cursor. Memory streams and mapped files return the new position, other
    /// files 0 or -1.
    virtual std::int64_t seek(std::uint64_t offset, TvIO::SeekType type) = 0;

    /// The byte at the cursor, which moves on; 0 when it could not be read.
    virtual unsigned char readByte();
    /// The byte at `position`; 0 after a range error.
    virtual unsigned char readByte(std::uint64_t position);
    /// Writes a byte at the cursor, which moves on.
    virtual void writeByte(unsigned char b);
    /// Writes a byte at `position`; range error from length() on.
    virtual void writeByte(std::uint64_t position, unsigned char b);
    /// getByte(tell()).
    virtual unsigned char getByte();
    /// The byte at `position`; 0 after a range error.
    virtual unsigned char getByte(std::uint64_t position);
    /// setByte(tell(), b).
    virtual void setByte(unsigned char b);
    /// Changes the byte at `position`; range error from length() on.
    virtual void setByte(std::uint64_t position, unsigned char b);

    /// Reads `count` bytes at the cursor into `buf` and moves on behind them. What happens where
    /// there are fewer is each stream's own.
    virtual void readBytes(unsigned char* buf, std::uint32_t count) = 0;
    /// Reads `count` bytes at `position`: all of them, or none after a range error.
    virtual void readBytes(std::uint64_t position, unsigned char* buf, std::uint32_t count);
    /// Writes `count` bytes of `buf` at the cursor and moves on behind them. What becomes of the
    /// bytes that stood there and behind is each stream's own.
    virtual void writeBytes(const unsigned char* buf, std::uint32_t count) = 0;
    /// Writes `count` bytes at `position`: all of them, or none after a range error.
    virtual void writeBytes(std::uint64_t position, const unsigned char* buf, std::uint32_t count);
    /// getBytes(tell(), buf, count).
    virtual void getBytes(unsigned char* buf, std::uint32_t count);
    /// Reads `count` bytes at `position`: all of them, or none after a range error.
    virtual void getBytes(std::uint64_t position, unsigned char* buf, std::uint32_t count);
    /// setBytes(tell(), buf, count).
    virtual void setBytes(const unsigned char* buf, std::uint32_t count);
    /// Changes `count` bytes at `position`: all of them, or none after a range error.
    virtual void setBytes(std::uint64_t position, const unsigned char* buf, std::uint32_t count);

    /// Copies bytes `from` up to, not including, `to` of `source` to this stream's cursor. The
    /// two ends may be given in either order; both 0 means the rest of the source after its
    /// cursor. The source's cursor is put back. A null source is ignored. The copy goes in
    /// pieces of 4096 bytes; bytes of the range that the source does not have are unspecified.
    virtual void copyFrom(TvStreamBuf* source, std::uint64_t from, std::uint64_t to);

    /// Copies bytes from this stream's cursor into `destination`, as many as are left here at
    /// most. Not the mirror of copyFrom(): `from` and `to` say where in the *destination* the
    /// bytes go, and both 0 means the room after the destination's cursor up to its length, so
    /// nothing is copied into an empty stream. This stream's cursor is put back.
    virtual void copyTo(TvStreamBuf* destination, std::uint64_t from, std::uint64_t to);

    /// As seek() above, with the plain number of a seek type.
    std::int64_t seek(std::uint64_t offset, std::uint32_t type)
    {
        return seek(offset, static_cast<TvIO::SeekType>(type));
    }
};

/// Reads integers from a stream, in the machine's byte order.
///
/// **Errors**: those of the stream's readBytes(); an integer that a range error left unread is 0.
/// **Memory**: nothing is allocated. **Threads**: as the stream.
///
///     int count = TvPlatformStreamer::readInt32(stream);
class TV_OSBASE_API TvPlatformStreamer {
public:
    /// Reads 2 bytes.
    static std::int16_t readInt16(TvStreamBuf& stream);

    /// Reads 4 bytes.
    static std::int32_t readInt32(TvStreamBuf& stream);
};

/// Puts the cursor of a stream back at the end of a scope. A null stream is ignored.
///
/// **Errors**: a seek that throws when the scope ends terminates the process.
/// **Memory**: the stream stays the caller's and must outlive the scope.
/// **Threads**: as the stream.
///
///     TvAutoResetStreamPosition keep(&stream);
///     stream.readBytes(magic, 4);
class TV_OSBASE_API TvAutoResetStreamPosition {
public:
    /// Notes the cursor of `stream`.
    explicit TvAutoResetStreamPosition(TvStreamBuf* stream);
    /// Puts the cursor back.
    ~TvAutoResetStreamPosition();
    TvAutoResetStreamPosition(const TvAutoResetStreamPosition&) = delete;
    TvAutoResetStreamPosition& operator=(const TvAutoResetStreamPosition&) = delete;

private:
    TvStreamBuf* m_stream;
    std::uint64_t m_position;
};

#endif
