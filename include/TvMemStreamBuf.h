// TvMemStreamBuf.h - byte streams over memory.
//
// For bytes that are built or parsed in memory take TvFlatMemBuf. For bytes in
// a file take a factory of TvFileStreamBuf.h; either way the user sees a
// TvStreamBuf.
#ifndef TV_MEM_STREAM_BUF_H
#define TV_MEM_STREAM_BUF_H

#include "TvExport.h"
#include "TvHooks.h"
#include "TvStreamBuf.h"
#include "TvVector.h"

#include <cstdint>

/// What memory streams add to TvStreamBuf: capacity, length, and a cursor
/// placed directly.
///
/// A stream of its own kind supplies tell(), length(), the two transfers at the
/// cursor and moveTo(); the other additions do nothing here.
///
/// **Errors**: as the stream built on it. **Memory**: none. **Threads**: one
/// stream, one thread.
class TV_OSBASE_API TvMemStreamBuf : public TvStreamBuf {
public:
    using TvStreamBuf::seek;

    /// For streams that derive.
    TvMemStreamBuf() = default;
    /// For streams that derive.
    TvMemStreamBuf(const TvMemStreamBuf&) = default;
    /// For streams that derive.
    TvMemStreamBuf& operator=(const TvMemStreamBuf&) = default;
    /// Frees nothing.
    ~TvMemStreamBuf() override;

    /// Null here.
    unsigned char* buffer() override;
    /// Null here.
    const unsigned char* buffer() const override;

    /// Moves by moveTo() and returns tell(), so a move that was refused returns
    /// the old position. An unknown type moves nothing. The sums wrap at 64 bits.
    std::int64_t seek(std::uint64_t offset, TvIO::SeekType type) override;

    /// Bytes that fit without growing; length() here.
    virtual std::uint32_t bufSize() const;
    /// Makes the stream `length` bytes long; nothing here.
    virtual void resize(std::uint32_t length);
    /// Makes room for `capacity` bytes in all; nothing here.
    virtual void reserve(std::uint32_t capacity);
    /// Puts the cursor at `position`; nothing here.
    virtual void moveTo(std::uint64_t position);
};

/// A seekable stream whose bytes lie in one array that grows when written to.
///
/// Rules that surprise those who come from files:
///  - A write at the cursor ends the stream there: the old tail is gone. setByte() and
///    setBytes() change bytes and keep the tail, and refuse to write past the end.
///  - writeBytes() and writeByte() at a position leave the cursor *at* that position. The
///    byte of writeByte(position, b) at or past the end lies just behind the end, in the
///    spare room: the length becomes `position` (1 for position 0 of an empty stream).
///  - getByte() moves the cursor; getBytes() and getByte(position) do not.
///  - getBytes() is bounded by bufSize(), not by length(): it may read spare room, whose
///    contents are unspecified. So are those of bytes that resize() or a write beyond the
///    end adds in between.
///  - resize() and setlength() do not pull the cursor back inside.
///  - Positions are cut to their low 32 bits.
///
/// **Errors**: a range error is reported to the crash recorder ("Out of stream
/// buffer!", or "End of stream buffer!" from readByte()) and the call does
/// nothing; a byte result is then 0. Sums that pass 32 bits are range errors.
/// When memory runs out, or a length above 2147483647 is asked for, status 6 is
/// reported and the stream stays as it was.
/// **Memory**: from _tvMalloc, freed by the destructor. Copies share it until
/// one is changed. The pointer of buffer() holds until the next change, and is
/// null while there is no room.
/// **Threads**: a stream and its copies belong to one thread.
///
///     TvFlatMemBuf buf(64);
///     const unsigned char text[] = {'a', 'b', 'c', 'd', 'e', 'f'};
///     buf.writeBytes(text, 6);
///     buf.seek(2, TvIO::kSeekFromStart);
///     buf.writeByte('X');                    // the stream is now "abX"
class TV_OSBASE_API TvFlatMemBuf : public TvMemStreamBuf {
public:
    using TvStreamBuf::readByte;

    /// An empty stream with room for at least `capacity` bytes.
    explicit TvFlatMemBuf(std::uint32_t capacity);
    /// Shares the bytes until one of the two changes them; the cursor is copied.
    TvFlatMemBuf(const TvFlatMemBuf&) = default;
    /// As the copy.
    TvFlatMemBuf& operator=(const TvFlatMemBuf&) = default;
    /// Frees the bytes when nobody shares them.
    ~TvFlatMemBuf() override;

    bool isEOS() const override;
    std::uint64_t tell() const override;
    std::uint64_t length() const override;

    /// resize() with the low 32 bits of `length`.
    void setlength(std::uint64_t length) override;

    /// Ends the stream at the cursor.
    void truncate() override;
    /// Puts the cursor at the start; 0.
    std::int64_t rewind() override;
    /// The bytes, this stream's own; null while there is no room, and when there was no memory to
    /// take them from those who share them.
    unsigned char* buffer() override;
    /// The bytes, perhaps shared; null while there is no room.
    const unsigned char* buffer() const override;

    /// The byte at the cursor, which moves on; at the end "End of stream buffer!" is reported and
    /// the result is 0. Inline when called on the object itself, see writeByte().
    TV_INLINE_TOO unsigned char readByte() override;
    /// Writes a byte at the cursor, where the stream then ends. Called on the object itself it is
    /// inline, and about three times as fast as through a TvStreamBuf:
    ///
    ///     TvFlatMemBuf copy(0);
    ///     for (std::uint64_t i = 0; i < size; ++i)
    ///         copy.writeByte(bytes[i]); // not through a pointer or a reference
    TV_INLINE_TOO void writeByte(unsigned char b) override;
    /// Writes a byte at `position`, where the cursor then is. See the class for positions from
    /// length() on.
    void writeByte(std::uint64_t position, unsigned char b) override;
    /// The byte at the cursor, which moves on, as in the base.
    unsigned char getByte() override;
    /// The byte at `position`; the cursor stays. Range error from length() on, and the result is 0.
    unsigned char getByte(std::uint64_t position) override;
    /// Changes the byte at the cursor; cursor and length stay. Range error at the end.
    void setByte(unsigned char b) override;
    /// Changes the byte at `position`; cursor and length stay. Range error from length() on.
    void setByte(std::uint64_t position, unsigned char b) override;
    /// All `count` bytes, or a range error and none.
    void readBytes(unsigned char* buf, std::uint32_t count) override;

    /// Unlike the base's, never moves the cursor.
    void readBytes(std::uint64_t position, unsigned char* buf, std::uint32_t count) override;
    /// Writes `count` bytes at the cursor, which stands behind them then, as the end of the stream
    /// does. `buf` may lie in this stream.
    void writeBytes(const unsigned char* buf, std::uint32_t count) override;

    /// Lengthens the stream where needed and never cuts it.
    void writeBytes(std::uint64_t position, const unsigned char* buf, std::uint32_t count) override;
    /// Reads `count` bytes from the cursor on; the cursor stays. Range error past bufSize().
    void getBytes(unsigned char* buf, std::uint32_t count) override;
    /// Reads `count` bytes at `position`; the cursor stays. Range error past bufSize().
    void getBytes(std::uint64_t position, unsigned char* buf, std::uint32_t count) override;
    /// Changes `count` bytes from the cursor on; cursor and length stay. Range error past length().
    void setBytes(const unsigned char* buf, std::uint32_t count) override;
    /// Changes `count` bytes at `position`; cursor and length stay. Range error past length().
    void setBytes(std::uint64_t position, const unsigned char* buf, std::uint32_t count) override;

    /// Bytes that fit without growing.
    std::uint32_t bufSize() const override;
    /// Makes the stream `length` bytes long; new bytes are unspecified, the cursor stays where it
    /// is.
    void resize(std::uint32_t length) override;

    /// Never shrinks.
    void reserve(std::uint32_t capacity) override;

    /// Range error past the end; the end itself is a place.
    void moveTo(std::uint64_t position) override;

    /// Takes a copy of `size` bytes, which go to the start of the stream whatever
    /// `position` is. Length `position + size`, cursor `position`; what
    /// `position` adds is unspecified.
    virtual void open(void* data, std::uint32_t size, std::uint32_t position);

    /// Empties the stream, which stays usable.
    virtual void close();

private:
    friend class TvFileOStreamBuf; // whose cache is one
    using Storage =
        TvVector<unsigned char, TvDelegateMemAllocator<unsigned char>, int, TvVectorFlatMemBufGrowPolicy>;

    TV_LOCAL std::uint32_t storedLength() const { return static_cast<std::uint32_t>(m_bytes.length()); }
    TV_LOCAL std::uint32_t roomLength() const { return static_cast<std::uint32_t>(m_bytes.physicalLength()); }
    TV_LOCAL bool endAt(std::uint32_t end);
    TV_LOCAL bool unshare();
    TV_LOCAL bool endWritableAt(std::uint32_t end);
    TV_LOCAL bool isOwn(const unsigned char* buf) const;
    TV_LOCAL bool endWithinRoom(std::uint32_t length);
    TV_LOCAL bool store(std::uint32_t at, const unsigned char* buf, std::uint32_t count,
                        std::uint32_t length);
    TV_LOCAL bool storeMoving(std::uint32_t at, const unsigned char* buf, std::uint32_t count,
                              std::uint32_t length);
    TV_LOCAL void writeBytesMoving(const unsigned char* buf, std::uint32_t count);

    Storage m_bytes;
    std::uint32_t m_cursor; // may lie past the end after resize()
};

#ifndef TV_BYTES_OUT_OF_LINE

// In both the cursor is stored behind the two ways, so that a loop keeps it in a register.

TV_INLINE_TOO unsigned char TvFlatMemBuf::readByte()
{
    const unsigned char* const first = m_bytes.asArrayPtr(); // no address while there is no room
    std::uint32_t at = m_cursor;
    unsigned int b = 0;
    if (__builtin_expect(at < storedLength(), 1)) {
        b = first[at];
        ++at;
    } else {
        TvDetail::reportMessage(L"End of stream buffer!");
        at = m_cursor; // who is told may have moved it
    }
    m_cursor = at;
    return static_cast<unsigned char>(b);
}

TV_INLINE_TOO void TvFlatMemBuf::writeByte(unsigned char b)
{
    std::uint32_t at = m_cursor;
    if (__builtin_expect(!TvDetail::isShared(m_bytes) && m_bytes.length() < m_bytes.physicalLength() &&
                             static_cast<int>(at) == m_bytes.length(),
                         1)) {
        m_bytes.append(b); // no more than a store and a count here
        ++at;
    } else {
        const unsigned char copy = b; // so that the usual way needs no place in memory for it
        TvFlatMemBuf::writeBytes(&copy, 1);
        at = m_cursor;
    }
    m_cursor = at;
}

#endif

#endif
