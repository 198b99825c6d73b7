// TvCodePages.h - drawing code pages: their ids, their Windows numbers and their tables.
//
// For converting text, take TvCharMapper.h, which finds its tables here. This header is
// for callers that name code pages, list them or look at their tables.
#ifndef TV_CODE_PAGES_H
#define TV_CODE_PAGES_H

#include "TvErrorStatus.h"
#include "TvExport.h"
#include "TvStdStr.h"
#include "TvVector.h"

class TvStreamBuf;

namespace TvDetail {
struct CodepageIndex;
struct MapperSlots;
} // namespace TvDetail

/// A code page of drawing text, as drawings store it.
///
/// Any 32-bit value may be passed to the functions of this library. Ids 22, 24, 25, 26 and
/// 31 are older names of 38, 41, 40, 42 and 39; 43 is a second "undefined" without a name.
enum code_page_id : int {
    CP_UNDEFINED = 0,  ///< the system code page where text is converted
    CP_ASCII = 1,      ///< US-ASCII
    CP_ISO8859_1 = 2,  ///< ISO 8859-1, western European
    CP_ISO8859_2 = 3,  ///< ISO 8859-2, central European
    CP_ISO8859_3 = 4,  ///< ISO 8859-3, south European
    CP_ISO8859_4 = 5,  ///< ISO 8859-4, Baltic
    CP_ISO8859_5 = 6,  ///< ISO 8859-5, Cyrillic
    CP_ISO8859_6 = 7,  ///< ISO 8859-6, Arabic
    CP_ISO8859_7 = 8,  ///< ISO 8859-7, Greek
    CP_ISO8859_8 = 9,  ///< ISO 8859-8, Hebrew
    CP_ISO8859_9 = 10, ///< ISO 8859-9, Turkish
    CP_DOS437 = 11,    ///< DOS, United States
    CP_DOS850 = 12,    ///< DOS, western European
    CP_DOS852 = 13,    ///< DOS, central European
    CP_DOS855 = 14,    ///< DOS, Cyrillic
    CP_DOS857 = 15,    ///< DOS, Turkish
    CP_DOS860 = 16,    ///< DOS, Portuguese
    CP_DOS861 = 17,    ///< DOS, Icelandic
    CP_DOS863 = 18,    ///< DOS, Canadian French
    CP_DOS864 = 19,    ///< DOS, Arabic
    CP_DOS865 = 20,    ///< DOS, Nordic
    CP_DOS869 = 21,    ///< DOS, Greek
    CP_DOS932 = 22,    ///< older name of CP_ANSI_932
    CP_MAC_ROMAN = 23, ///< Macintosh, western European
    CP_BIG5 = 24,      ///< older name of CP_ANSI_950
    CP_KSC5601 = 25,   ///< older name of CP_ANSI_949
    CP_JOHAB = 26,     ///< older name of CP_ANSI_1361
    CP_DOS866 = 27,    ///< DOS, Russian
    CP_ANSI_1250 = 28, ///< Windows, central European
    CP_ANSI_1251 = 29, ///< Windows, Cyrillic
    CP_ANSI_1252 = 30, ///< Windows, western European
    CP_GB2312 = 31,    ///< older name of CP_ANSI_936
    CP_ANSI_1253 = 32, ///< Windows, Greek
    CP_ANSI_1254 = 33, ///< Windows, Turkish
    CP_ANSI_1255 = 34, ///< Windows, Hebrew
    CP_ANSI_1256 = 35, ///< Windows, Arabic
    CP_ANSI_1257 = 36, ///< Windows, Baltic
    CP_ANSI_874 = 37,  ///< Windows, Thai
    CP_ANSI_932 = 38,  ///< Windows, Japanese (Shift-JIS)
    CP_ANSI_936 = 39,  ///< Windows, simplified Chinese (GBK)
    CP_ANSI_949 = 40,  ///< Windows, Korean (unified Hangul code)
    CP_ANSI_950 = 41,  ///< Windows, traditional Chinese (Big5)
    CP_ANSI_1361 = 42, ///< Windows, Korean (Johab); has no table here
    CP_ANSI_1258 = 44, ///< Windows, Vietnamese
    CP_UTF8 = 45,      ///< UTF-8
    CP_CNT = 46        ///< the number of ids; the system code page where text is converted
};

/// Between code page ids and Windows (ANSI) code page numbers.
///
/// Two answers surprise: the number of "iso8859_6" is 28586 here although its mapper
/// carries 28596, and "undefined", "ascii" and unknown ids have the number 3.
///
/// **Errors**: none; unknown values have the answers given below.
/// **Memory**: allocates nothing.
/// **Threads**: any.
///
///     unsigned int number = TvCodePageMapper::ornaCpToAnsiCp(CP_ANSI_936);   // 936
///     code_page_id id = TvCodePageMapper::ansiCpToOrnaCp(932);               // CP_ANSI_932
class TV_OSBASE_API TvCodePageMapper {
public:
    /// The Windows number of each id, 0 for "undefined".
    static const unsigned int arrAnsiOrnaCpMapper[CP_CNT];

    /// The number of `id`; 3, which stands for the current thread's ANSI code page, where
    /// the table has none, for CP_ASCII and for ids outside 0..45.
    static unsigned int ornaCpToAnsiCp(code_page_id id);

    /// The highest id with the number `cp` (so 932 gives 38, not 22), or CP_UNDEFINED.
    /// 0 gives 43.
    static code_page_id ansiCpToOrnaCp(int cp);

    /// GetACP() of the platform library.
    static unsigned int currentSystemAnsiCp();
};

/// One entry of a double-byte table.
struct EkCpUnicodePair {
    unsigned short unicode; ///< UTF-16 code unit
    unsigned short code;    ///< lead byte times 256 plus trail byte
};

/// A range of lead bytes, both ends included.
struct EkLeaderBytes {
    unsigned char first; ///< lowest
    unsigned char last;  ///< highest, included
};

extern template class TV_OSBASE_API TvVector<EkCpUnicodePair>;
extern template class TV_OSBASE_API TvVector<EkLeaderBytes>;

/// The tables of one code page between its bytes and UTF-16 code units.
///
/// Bytes below 0x80 stand for themselves and are in no table. `m_pairs` ascends by
/// `code`; it stays empty until verifyLoaded() has read it from the code page map file.
///
/// **Errors**: verifyLoaded() answers with a status; nothing is thrown but std::bad_alloc
/// by the constructor, which copies the description.
/// **Memory**: owns the description and both vectors, not the single-byte table.
/// **Threads**: verifyLoaded() writes without a lock; one thread until it has succeeded.
///
///     EkCodepageMapper* mapper = theTvCodePages()->findMapperByAcadCp(CP_ANSI_1253);
///     unsigned short alpha = mapper->m_pSingleByteTable[0xE1 - 0x80];        // U+03B1
class TV_OSBASE_API EkCodepageMapper {
public:
    /// A mapper without tables. `desc` may be null, which is an empty description.
    EkCodepageMapper(code_page_id id, const wchar_t* desc, unsigned int ansiCp);
    /// Frees both vectors and the description; the single-byte table stays.
    ~EkCodepageMapper();
    EkCodepageMapper(const EkCodepageMapper&) = delete;
    EkCodepageMapper& operator=(const EkCodepageMapper&) = delete;

    /// Reads the double-byte table from the map file `stream`, unless it is there already.
    ///
    /// eOk when the mapper is loaded. eInvalidInput, and the mapper is as before, without a
    /// stream, without a table in the file, when the table does not lie wholly inside the
    /// file or its codes do not ascend, when a read fails or memory runs out. The stream's
    /// cursor moves.
    Orna::ErrorStatus verifyLoaded(TvStreamBuf* stream);

    unsigned int m_tableOffset;               ///< bytes in the map file, less 256; 0 = no table there
    const unsigned short* m_pSingleByteTable; ///< 128 units for bytes 0x80..0xFF; 0 = no character
    TvVector<EkLeaderBytes> m_leadBytes;      ///< ranges of lead bytes; none in a single-byte code page
    TvVector<EkCpUnicodePair> m_pairs;        ///< the double-byte table, ascending by code
    code_page_id m_id;                        ///< the id that this mapper was made for
    CStdStr<wchar_t> m_desc;                  ///< the name, such as "ansi_1252"
    unsigned int m_ansiCp;                    ///< the Windows number
    int m_bLoaded;                            ///< 1 = nothing is left to be read from the map file

    /// The library's own: what speeds up look-ups in the tables, or null.
    mutable TvDetail::CodepageIndex* m_index;
};

/// The mappers of all code pages; the one instance is theTvCodePages().
///
/// Empty until init(). The finders then always find a mapper, for unknown values that of
/// "undefined"; only CP_UTF8 has none. On an empty registry they return null.
///
/// **Errors**: none reported; when memory runs out, init() leaves the registry empty.
/// **Memory**: owns its mappers; pointers to them end with release() and with init().
/// **Threads**: filled from one thread before use.
///
///     EkCodepages* pages = theTvCodePages();
///     pages->init();
///     EkCodepageMapper* mapper = pages->findMapperByDesc(L"ANSI_1252");
class TV_OSBASE_API EkCodepages {
public:
    /// Empty: every slot is null.
    constexpr EkCodepages() : m_mappers{} {}
    /// Destroys the mappers.
    ~EkCodepages();
    EkCodepages(const EkCodepages&) = delete;
    EkCodepages& operator=(const EkCodepages&) = delete;

    /// Fills the registry anew; what it held is destroyed.
    void init();

    /// Reads the directory of the code page map file into the mappers' table offsets.
    /// The cursor of `stream` must stand behind the header's NUL. A directory that cannot be
    /// read whole leaves no mapper with an offset. A null stream does nothing.
    void init(TvStreamBuf* stream);

    /// Makes the mappers of ids 0 to 44, unless the registry is filled already.
    void initCodepages();

    /// releaseCodepages().
    void release();

    /// Destroys all mappers; the registry is empty then, and init() may be called again.
    void releaseCodepages();

    /// The mapper of `id`, null for CP_UTF8, that of "undefined" for ids outside 0..45.
    EkCodepageMapper* findMapperByAcadCp(code_page_id id) const;

    /// The mapper with the highest id whose number is `cp` (28596, not 28586, finds
    /// "iso8859_6"), else that of "undefined".
    EkCodepageMapper* findMapperByAnsiCp(unsigned int cp) const;

    /// The mapper with the highest id of this description, letter case ignored, else that of
    /// "undefined".
    EkCodepageMapper* findMapperByDesc(const CStdStr<wchar_t>& desc) const;

private:
    friend struct TvDetail::MapperSlots;

    EkCodepageMapper* m_mappers[CP_CNT];
};

/// The registry of the process; empty until its init().
TV_OSBASE_API EkCodepages* theTvCodePages();

/// The number of ids, 46.
TV_OSBASE_API int numValidCodepages();

/// theTvCodePages()->init().
TV_OSBASE_API void ekInitCodepageMapper();

/// theTvCodePages()->release().
TV_OSBASE_API void ekCleanupCodepageMapper();

/// The next 16 bits of a stream as an unsigned number, lowest byte first. `stream` is not null.
TV_OSBASE_API unsigned short getUShort(TvStreamBuf* stream);

/// Older name of TvCharConverter::isMBCBCodepage().
TV_OSBASE_API bool IsMultiByteCodePage(code_page_id id);

/// Older name of TvCharConverter::isMIFCodepage().
TV_OSBASE_API bool isAsianCodepage(code_page_id id);

/// TvCharConverter::getMIFCodepage(), of the code page digit `c` as a character.
TV_OSBASE_API code_page_id mapCodepage(short c);

/// TvCharConverter::getMIFIndex(): the code page digit of `id` as a character.
TV_OSBASE_API int reMapCodepage(code_page_id id);

#endif
