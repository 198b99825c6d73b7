// TvStringA.h - narrow text that knows the code page of its bytes; copies share the text.
//
// For text that is handed about by value together with its code page. To convert it take
// TvCharMapper.h; where text is put together piece by piece, std::string has more to offer.
#ifndef TV_STRING_A_H
#define TV_STRING_A_H

#include "TvExport.h"
#include "TvMemData.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

/// What stands in front of the characters of a narrow string.
///
/// **Errors**: none.
/// **Memory**: the string's.
/// **Threads**: the count is a plain integer.
///
///     TvStrHeaderA header(1252);              // (1, 0, 0, 8) and the code page
class TV_OSBASE_API TvStrHeaderA : public TvMemDataHeader {
public:
    /// Counts of an empty block, with the code page.
    constexpr explicit TvStrHeaderA(int page) : TvMemDataHeader(1, 0, 0, 8), codepage(page) {}
    /// Nobody holds the copy yet: its `refCount` is 0.
    constexpr TvStrHeaderA(const TvStrHeaderA& other) = default;
    TvStrHeaderA& operator=(const TvStrHeaderA&) = delete;

    /// Sets `codepage`.
    void setCodepage(int page) { codepage = page; }

    /// The header that empty strings share, of code page 0.
    static TvStrHeaderA sm_EmptyStrA;
    /// The address of sm_EmptyStrA.
    static TvStrHeaderA* sEmptyHeader() { return TvDetail::anyHeader(&sm_EmptyStrA); }

    int codepage; ///< Windows number, 0 for none
};

namespace TvDetail {
struct StringCheck;
} // namespace TvDetail

/// A string of characters in a shared buffer, with a terminating 0 that the buffer's count
/// includes.
///
/// What surprises:
///  - rawStr() and getBuffer() unshare, so they may need memory and may answer null;
///  - getBuffer(n) makes `n` the length at once; releaseBuffer() says how long the text became;
///  - an emptied string shares the static empty header, which has its own other fields.
///
/// **Errors**: when memory runs out nothing is reported and the string keeps what it had;
/// assign() of a text then answers false, getBuffer() and rawStr() null.
/// **Memory**: a block of header and characters from _tvMalloc, shared by the copies; empty
/// strings share one static header.
/// **Threads**: plain counts, and all empty strings share one: keep strings on one thread.
///
///     TvStringT<char, TvStrHeaderA> name("door"), copy(name);
///     if (char* text = name.rawStr())         // its own text, whatever was shared before
///         text[0] = 'D';                      // name is "Door", copy is "door"
template<class Char, class Header>
class TV_OSBASE_API TvStringT {
public:
    /// Empty; shares the static empty header.
    TvStringT() = default;
    /// A copy of `text`; null is an empty one. Empty too when there is no memory.
    TvStringT(const Char* text) { assign(text); }
    /// Shares the text.
    TvStringT(const TvStringT&) = default;
    /// Shares the text.
    TvStringT& operator=(const TvStringT&) = default;
    /// Lets go of the text, which the last holder frees.
    ~TvStringT() = default;

    /// Copies `text`, which may be a part of this string; null is an empty text. The header's
    /// other fields stay, unless the text is empty and the string was not.
    bool assign(const Char* text)
    {
        const std::uint64_t length = text ? std::char_traits<Char>::length(text) : 0;
        if (length == 0) {
            if (!isEmpty())
                setEmpty();
            return true;
        }
        if (!m_data.assign(text, length + 1))
            return false;
        *m_data.dataPtr(length) = Char();
        check();
        return true;
    }
    /// Shares the text of `other`.
    void assign(const TvStringT& other) { m_data.assign(other.m_data); }

    /// The text; valid until the string changes. Never null.
    const Char* constStr() const { return isEmpty() ? kEmptyStr : m_data.rawData(); }
    /// constStr().
    operator const Char*() const { return constStr(); }
    /// The text to be written to, of this string alone; null when it is empty or there is no
    /// memory.
    Char* rawStr() { return m_data.rawData(); }

    /// Counts and other fields of the shared text.
    const Header* header() const { return m_data.header(); }

    /// Whether there are no characters. An empty string may have a code page all the same.
    bool isEmpty() const { return m_data.isEmpty(); }
    /// Shares the static empty header.
    void setEmpty() { m_data.setEmpty(); }

    /// Characters (bytes of a narrow string) in front of the terminating 0.
    std::uint64_t numOfChars() const { return isEmpty() ? 0 : m_data.count() - 1; }

    /// Room for `n` characters and a terminating 0, of this string alone; the present length
    /// when `n` is below 1. Null when there is no memory. The text stays as far as it fits, what
    /// follows has no value. Write, then call releaseBuffer().
    Char* getBuffer(int n)
    {
        Header* const own = m_data.header();
        const auto length = static_cast<std::uint64_t>(n);
        if (!own || n < 1 || m_data.isShared() || length >= own->allocCount)
            return getNewBuffer(n);
        Char* const text = m_data.dataPtr(0);
        if (length >= own->count)
            text[length] = Char(); // new room is a terminated text from the start
        own->count = length + 1;
        return text;
    }

    /// The text is `n` characters long; negative: it ends at its first 0. More than there is
    /// room for is cut. Nothing happens when the text is still shared and there is no memory.
    void releaseBuffer(int n)
    {
        Header* const own = m_data.header();
        const auto length = static_cast<std::uint64_t>(n);
        if (!own || n < 1 || m_data.isShared() || length >= own->allocCount)
            return releaseAnyBuffer(n);
        own->count = length + 1;
        *m_data.dataPtr(length) = Char();
        check();
    }

    /// "".
    static const Char* const kEmptyStr;

protected:
    /// Takes over the caller's reference on the text behind `block`. Not by its address: a literal
    /// null is a text.
    explicit TvStringT(Header& block) : m_data(block) {}

    /// The text with its terminating 0, which the count includes.
    TvMemData<Char, Header, TvMemDataAllocator, TvPodReallocator<Char>> m_data;

private:
    friend struct TvDetail::StringCheck;

    // getBuffer() and releaseBuffer() for any text and any `n`. Templates: each module has its
    // own, the class instantiated in the library has none.
    template<class Count>
    [[gnu::noinline]] TV_LOCAL Char* getNewBuffer(Count n)
    {
        const std::uint64_t length = n < 1 ? numOfChars() : static_cast<std::uint64_t>(n);
        const bool keepsItsEnd = !m_data.isShared() && length < m_data.count();
        Char* const text = m_data.getBuffer(length + 1);
        if (text && !keepsItsEnd)
            text[length] = Char();
        return text;
    }
    template<class Count>
    [[gnu::noinline]] TV_LOCAL void releaseAnyBuffer(Count n)
    {
        const std::uint64_t length = lengthToRelease(n);
        if (length == 0) {
            if (!isEmpty())
                setEmpty();
        } else if (m_data.copyIfShared()) {
            m_data.releaseBuffer(length + 1);
            *m_data.dataPtr(length) = Char();
            check();
        }
    }

    // What releaseBuffer(n) makes the length: at most the room in front of a terminating 0,
    // where a shared text has none but its own.
    std::uint64_t lengthToRelease(int n) const
    {
        const std::uint64_t elements = m_data.isShared() ? m_data.count() : m_data.header()->allocCount;
        const std::uint64_t most = elements != 0 ? elements - 1 : 0;
        if (n >= 0)
            return most < static_cast<std::uint64_t>(n) ? most : static_cast<std::uint64_t>(n);
        const Char* const text = m_data.dataPtr(0);
        const Char* const end = std::char_traits<Char>::find(text, static_cast<std::size_t>(most), Char());
        return end ? static_cast<std::uint64_t>(end - text) : most;
    }

    inline void check() const;
};

namespace TvDetail {

// Looks for what can never be in a string that is not being written to.
struct StringCheck {
    template<class String>
    static const char* faultOf(const String& string)
    {
        if (const char* const fault = MemDataCheck::faultOf(string.m_data))
            return fault;
        if (!string.header())
            return "no header";
        if (TvStrHeaderA::sm_EmptyStrA.codepage != 0)
            return "the empty header has a code page";
        if (!string.isEmpty() && *string.m_data.dataPtr(string.m_data.count() - 1) != 0)
            return "no terminating 0";
        return nullptr;
    }

    template<class String>
    static void demand(const String& string)
    {
        if (faultOf(string))
            std::abort();
    }
};

} // namespace TvDetail

template<class Char, class Header>
inline void TvStringT<Char, Header>::check() const
{
#ifdef TV_CHECK_STRUCTURES
    TvDetail::StringCheck::demand(*this);
#endif
}

extern template class TV_OSBASE_API TvMemData<char, TvStrHeaderA>;

/// @cond
template<>
TV_OSBASE_API const char* const TvStringT<char, TvStrHeaderA>::kEmptyStr;

/// @endcond

extern template class TvStringT<char, TvStrHeaderA>;

/// Narrow text and the number of its code page.
///
/// What surprises:
///  - the code page belongs to the shared text: an emptied string forgets it (0), and
///    assign() of a text keeps the one that the string has, whatever GetACP() says;
///  - a string made of an empty text has a block of its own, for its code page;
///  - the conversion to `const char*` makes `==` compare addresses: use std::strcmp.
///
/// **Errors**, **Memory**, **Threads**: as TvStringT. Without memory for a new text the string is
/// empty, and has no code page where that has no room either.
///
///     TvStringA layer("Wände");               // bytes of the source, tagged GetACP()
///     TvStringA copy(layer);                  // shares
///     copy.setCodepage(1252);                 // now it has its own
///     copy.header()->codepage;                // 1252, and layer keeps what it had
class TV_OSBASE_API TvStringA : public TvStringT<char, TvStrHeaderA> {
public:
    /// A text in the platform's present ANSI code page; null is an empty one.
    TvStringA(const char* text = nullptr);
    /// Shares the text and its code page.
    TvStringA(const TvStringA&) = default;
    /// Shares the text and its code page.
    TvStringA& operator=(const TvStringA&) = default;
    /// Lets go of the text.
    ~TvStringA() = default;

    /// Says which code page the bytes are in; converts nothing. Unshares; without memory for
    /// that nothing changes. header()->codepage is what was said.
    void setCodepage(int codepage);
};

#endif
