// TvCharMapper.h - drawing text between a code page, UTF-8 and wide text.
//
// For whole strings and single characters. To recognise or write the inline escapes
// alone, take TvCharConverter.h; for the code page ids and tables, TvCodePages.h; for the
// same conversions under the Windows names, TvPlatformText.h.
#ifndef TV_CHAR_MAPPER_H
#define TV_CHAR_MAPPER_H

#include "TvCodePages.h"
#include "TvErrorStatus.h"
#include "TvExport.h"
#include "TvStdStr.h"
#include "TvVector.h"

class CReadUserDefBigfontIni;

/// Conversions between byte text in a code page and wide text. Wide text is one UTF-16
/// code unit per `wchar_t`; characters above U+FFFF are not represented.
///
/// Rules that surprise:
///  - a character that the code page lacks becomes an inline escape, never a "?":
///    `\U+20AC` on the way to bytes, `\M+1815F` on the way to wide text. Escapes that stand
///    in the input are read (to wide text) or kept as they are (to bytes);
///  - a byte without a character (0x80 in Windows-1252) becomes the wide character of the
///    same value;
///  - ids 0 and `CP_CNT` mean the system code page, `GetACP()` at the time of the call; ids
///    above `CP_CNT` and negative ones convert by the identity table, byte n to U+00nn;
///  - input ends at its first 0 or after `len` elements, whichever comes first; `len` may pass
///    the 0, behind which nothing has to be readable;
///  - results replace what the vector held, and their length counts a terminating 0.
///
/// **Errors**: nothing is thrown. A result for which no memory can be had, and the result
/// for a negative length, is the empty vector, without a terminator; the vector's allocator
/// then reports status 6 to the crash recorder. **Memory**: results belong to the caller's
/// vector. **Threads**: one thread at a time, because the memory of vectors is unlocked. Single
/// characters may be converted side by side once the four double-byte tables have been used.
///
///     TvCharMapper::initialize(L"/usr/share/tvosbase/codepage.map");
///     TvVector<wchar_t> wide;
///     TvCharMapper::multiByteToWideChar(CP_ANSI_1252, "\xB0 \\U+20AC", 9, wide);
///     // wide.asArrayPtr() is L"\x00B0 \x20AC", wide.length() is 4
class TV_OSBASE_API TvCharMapper {
public:
    /// Path of the code page map file; empty until initialize().
    static CStdStr<wchar_t> m_MapFile;

    /// Builds the code page registry anew and names the code page map file, in which the
    /// double-byte tables of 932, 936, 949 and 950 are found when they are first needed.
    ///
    /// Returns 0; 72 when the name is empty or the file cannot be opened; 74 when it is not a
    /// code page map file. The registry is built in every case, so that single-byte code pages
    /// convert without a map file. A second call forgets the tables loaded so far.
    static Orna::ErrorStatus initialize(const CStdStr<wchar_t>& mapFile);

    /// Releases the registry; `m_MapFile` stays. Conversions then work as before initialize(),
    /// by the identity table.
    static void unInitialize();

    /// UTF-8 to wide text. With `len` 0 the text ends at its terminating 0.
    ///
    /// One non-zero byte at `src[len]` is read as text too: end the text with a 0, or pass one
    /// byte less. It is not looked at when a 0 stands before it. Four-byte sequences are not
    /// decoded: their first three bytes are read like a three-byte form and the fourth stands for
    /// itself, like every byte that belongs to no form. A null `src` is empty text.
    static void utf8ToUnicode(const char* src, int len, TvVector<wchar_t>& out);

    /// Wide text to UTF-8. Elements above U+FFFF are dropped, surrogates encoded in three bytes.
    ///
    /// One non-zero element at `src[len]` is read as text too; it is not looked at when a 0 stands
    /// before it. When `len` is 0 or `src` null, `out` is left empty: not even a terminator.
    static void unicodeToUtf8(const wchar_t* src, int len, TvVector<char>& out);

    /// Bytes in code page `cp` to wide text; inline escapes are read.
    ///
    /// A double-byte character that does not convert becomes its `\M+` escape, 8 characters,
    /// and an escape whose code does not convert stays as it stands. `src[len]` is never read.
    static void multiByteToWideChar(code_page_id cp, const char* src, int len, TvVector<wchar_t>& out);

    /// The same; `flags` is not consulted.
    static void multiByteToWideChar(code_page_id cp, unsigned int flags, const char* src, int len,
                                    TvVector<wchar_t>& out);

    /// Wide text to bytes in code page `cp`; inline escapes in the text are kept.
    ///
    /// A character that the code page lacks becomes its `\U+` escape, 7 bytes. `src[len]` is
    /// never read. For UTF-8, empty text of length 0 leaves `out` empty, as unicodeToUtf8() does.
    static void wideCharToMultiByte(code_page_id cp, const wchar_t* src, int len, TvVector<char>& out);

    /// One character to its code in `cp`: the byte, or lead byte times 256 plus trail byte. For
    /// UTF-8 the bytes of `code`, lowest first, hold the encoded character. Where several codes
    /// have the character, the lowest byte wins, then the first pair of the table.
    ///
    /// False, with `code` untouched, when the code page lacks the character. The last argument
    /// is not consulted.
    static bool unicodeToCodepage(wchar_t wc, code_page_id cp, wchar_t& code, bool);

    /// One code of `cp`, as unicodeToCodepage() gives it, to its character.
    ///
    /// True for every single byte as soon as the code page's tables are there, also for one
    /// without a character, which gives 0. False, with `wc` untouched, for a double-byte code
    /// that the table lacks.
    static bool codepageToUnicode(wchar_t code, code_page_id cp, wchar_t& wc);

    /// The same for older callers; the second argument is not consulted.
    static bool codepageToUnicode(wchar_t code, unsigned int, code_page_id cp, wchar_t& wc);

    /// Whether `b` begins a double-byte character of `cp`; see tvIsLeadByte().
    static bool isLeadByte(unsigned char b, code_page_id cp);

    /// The id of a Windows font character set; 0 for one that has none here.
    static code_page_id getCodepageByCharset(unsigned short charset);

    /// The Windows font character set of an id; 1, the default character set, for an id that
    /// has none. The older double-byte ids have none, only the Windows ones do.
    static unsigned short getCharSetByCodepageId(code_page_id cp);

    /// The double-byte code page of a big font's text: CP_ANSI_932, _950, _949, _1361, _936, or
    /// CP_UNDEFINED for none. Looked up as findCodepageByBigfont() of TvBigFont.h does, after the
    /// folders before the last "/" are taken off and, where the name has no ".", ".shx" is added.
    /// `reader` may be null. CP_UNDEFINED too when memory runs out.
    static code_page_id getCpByBigFont(const wchar_t* fontPath, CReadUserDefBigfontIni* reader);

    /// findCodepageByBigfont() of the name as it is: unlike getCpByBigFont(), without taking off
    /// folders or adding ".shx". Null counts as "".
    static int getCpIndexByBigFont(const wchar_t* fontName, CReadUserDefBigfontIni* reader);

    /// Checksum of `n` 32-bit elements at `p` (any alignment): the sum of (index + 1) times
    /// element, each product taken modulo 2 to the 32nd as an unsigned number. 0 for `n` below 1.
    static double getCheckSumUnicode(const void* p, int n);

    /// Checksum of `n` bytes at `p`: as getCheckSumUnicode(), but bytes and products are signed,
    /// so that bytes from 0x80 on count negatively.
    static double getCheckSumAnsi(const void* p, int n);
};

/// Whether `b` begins a double-byte character of `cp`. Ids 0 and `CP_CNT` are not replaced by the
/// system code page here: they have no lead bytes.
TV_OSBASE_API bool tvIsLeadByte(unsigned char b, code_page_id cp);

/// tvIsLeadByte() for a Windows code page number.
extern "C" TV_OSBASE_API bool IsDBCSLeadByteEx(unsigned int ansiCp, unsigned char b);

#endif
