// OrCodePage.h - languages, font character sets, code pages, and where lines may break.
//
// For the vocabularies of the platform: language identifiers (LCID), font character sets,
// Windows code page numbers, and the code page index 1 to 5 of the East Asian code pages.
// For the ids that drawings name code pages by, take TvCodePages.h. For punctuation by
// kind, take TvCharCategory.h.
#ifndef OR_CODE_PAGE_H
#define OR_CODE_PAGE_H

#include "TvExport.h"

/// Relates languages, character sets and code pages; tells line-break classes; keeps a
/// table of user-defined double-byte characters.
///
/// What surprises:
///  - character sets from 256 up are this library's own, for scripts (Indic and others)
///    that have no Windows character set and no code page;
///  - the system's language is asked once and then kept, so a later
///    tvPlatformSetSystemDefaultLCID() changes nothing in SysDefaultLCID(), while
///    SysCodePage() follows tvPlatformSetACP() at once;
///  - Hong Kong (0x0C04) counts as simplified Chinese, character set 134;
///  - user-defined characters all read as U+E800.
///
/// In names and parameters: `cp` is a Windows code page number, `cs` a character set,
/// `lcid` a language identifier, an index one of 1 = 932, 2 = 950, 3 = 949, 4 = 1361,
/// 5 = 936.
///
/// **Errors**: none; what is not in a table gives the value stated.
/// **Memory**: allocates nothing.
/// **Threads**: the tables may be read by any thread; the system's language and
/// code page and the user-defined characters belong to one thread.
///
///     unsigned short lcid = OrCodePage::LanguageFromUnicode(L'\u3042', 0x0409, 0x0411);
///     unsigned int cp = OrCodePage::LanguageToCodePage(lcid);        // 0x0411 and 932
///     int cls = OrCodePage::LineBreakClass(L'(');                     // 0, opening
class TV_OSBASE_API OrCodePage {
public:
    /// A language and the character set that its text is shown in.
    struct LcidAndCharset {
        int lcid;    ///< language identifier
        int charset; ///< font character set
    };

    /// A user-defined double-byte character; free while `dbcs` is 0.
    struct UserDefinedDBCS {
        short dbcs;             ///< double-byte code
        int codePage;           ///< Windows code page number
        unsigned short unicode; ///< always U+E800
    };

    /// A run of characters of one line-break class.
    struct LineBreakRange {
        unsigned int last;       ///< the highest character of the run
        unsigned int breakClass; ///< as LineBreakClass() gives it
        unsigned int next;       ///< the first character of the run after it
    };

    /// A routine for line breaking as AnalyzeLineBreaks() is declared.
    using LineBreakAnalyzer = int (*)(int* classes, int* breaks, int count);

    /// @name Code pages
    /// @{

    /// 14, how many code pages CodePageEntry() knows.
    static int CodePageCount();
    /// The code page number at `i`; for an `i` outside 0..13 the first, 1252.
    static unsigned int CodePageEntry(int i);

    /// 0, the character set of western text, for a code page without one of its own.
    static int CodePageToCharSet(unsigned int cp);
    /// The chief language of the code page's character set: 0x0409 for one without.
    static unsigned short CodePageToLanguage(int cp);
    /// 1 to 5; 0 for a code page without an index.
    static int CodePageToCodePageIndex(int cp);
    /// Whether the code page has an index: 932, 936, 949, 950.
    static bool CodePageIsDoubleByte(int cp);

    /// 0 for an index outside 1..5, and for 4.
    static unsigned int CodePageIndexToCodePage(int i);
    /// 0 for an index outside 1..5.
    static int CodePageIndexToCharSet(int i);
    /// 0x0409 for an index outside 1..5, the system's language for 4.
    static unsigned int CodePageIndexToLCID(int i);
    /// The low 16 bits of CodePageIndexToLCID().
    static unsigned short CodePageIndexToLanguage(int i);

    /// @}
    /// @name Character sets
    /// @{

    /// 0 for a character set without a code page, such as 1 and 130.
    static unsigned int CharSetToCodePage(unsigned int cs);
    /// 1 to 5; 0 for a character set without an index.
    static int CharSetToCodePageIndex(int cs);
    /// Whether the character set has an index: 128, 129, 130, 134, 136.
    static bool CharSetIsDoubleByte(int cs);
    /// The chief language of a character set. The system's language (0..238, above 256) or
    /// the chief language of the system's character set (239..255) for one without any.
    static unsigned int CharSetToLCID(int cs);
    /// The low 16 bits of CharSetToLCID().
    static unsigned short CharSetToLanguage(int cs);

    /// @}
    /// @name Languages
    /// @{

    /// 1, the default character set, for a language that is not in the table.
    static int LCIDToCharSet(unsigned int lcid);
    /// LCIDToCharSet().
    static int LanguageToCharSet(unsigned int lcid);
    /// The code page of the language's character set; 0 for a language without one.
    static unsigned int LanguageToCodePage(unsigned short lcid);
    /// The index of the language's character set; 0 for a language without one.
    static int LanguageToCodePageIndex(short lcid);
    /// Whether the language's character set has an index: Chinese, Japanese, Korean.
    static bool LanguageIsDoubleByte(unsigned short lcid);
    /// Arabic and Hebrew, by primary language; other languages written so are not known.
    static bool LanguageIsRtoL(int lcid);

    /// The system's language, as it was at the first call.
    static unsigned short SysDefaultLCID();
    /// The low 16 bits of GetACP().
    static unsigned short SysCodePage();

    /// @}
    /// @name Characters
    /// @{

    /// The character set to show `wc` (a UTF-16 unit) in: that of `lcid1` if it has the
    /// character or none is known to have it, else that of `lcid2` if it has the character,
    /// else the first one that does.
    static int CharSetFromUnicode(wchar_t wc, unsigned short lcid1, unsigned short lcid2);
    /// The chief language of that character set.
    static unsigned short LanguageFromUnicode(wchar_t wc, unsigned short lcid1, unsigned short lcid2);

    /// @}
    /// @name User-defined double-byte characters
    /// @{

    /// Forgets them all.
    static void InitUserDefinedDBCSArray();
    /// The code kept for U+E800..U+E8FF, 0 when none is; false for another character.
    static bool DBCSForUserDefinedUnicode(short& dbcs, wchar_t wc);
    /// Keeps `dbcs` with its code page `cp`, in its old place if it has one, and makes `wc`
    /// the character of the place. False when all 256 places are taken by other codes.
    static bool UnicodeForUserDefinedDBCS(wchar_t& wc, short dbcs, int cp);
    /// The code page kept for U+E800..U+E8FF, 0 when none is; false for another character.
    /// `wc` holds 16 bits without a sign.
    static bool CodepageForUserDefinedUnicode(int& cp, short wc);

    /// @}
    /// @name Line breaking
    /// @{

    /// The line-break class of a character, 0 to 28, as of Unicode 4.0.1:
    ///
    ///      0 OP opening       8 PR prefix         16 BB break before    24 BK line break
    ///      1 CL closing       9 PO postfix        17 B2 break around    25 XX private use
    ///      2 QU quotation    10 NU digit          18 ZW zero width      26 SP space
    ///      3 GL no break     11 AL letter         19 CM combining       27 CB object
    ///      4 NS no start     12 ID ideograph      20 WJ word joiner     28 SA Thai, Lao, ...
    ///      5 EX exclamation  13 IN ellipsis       21 CR return
    ///      6 SY slash        14 HY hyphen         22 LF line feed
    ///      7 IS comma, stop  15 BA break after    23 NL next line
    ///
    /// Unassigned characters count as ideographs below U+10000 (noncharacters as 25) and
    /// as letters from there to U+1D7FF. Everything from there to U+E01EF is combining,
    /// assigned or not; what lies beyond, and a negative value, is an ideograph.
    static int LineBreakClass(wchar_t wc);

    /// Does nothing and returns 0.
    static int AnalyzeLineBreaks(int* classes, int* breaks, int count);

    /// @}
    /// @name Tables
    /// @{

    /// What CodePageEntry() answers.
    static const unsigned int s_codePageEntry[14];
    /// Character set of each bit of s_supportLcidTable.
    static const unsigned short s_charsetTable[29];
    /// The character sets that can show a class of s_unicodeClassTable, a bit for each.
    static const unsigned int s_supportLcidTable[33];
    /// The class of each UTF-16 unit, 0 to 32.
    static const unsigned char s_unicodeClassTable[65536];
    /// By primary language, then by language.
    static const LcidAndCharset s_lcidAndCharsetMap[160];
    /// Line-break class of U+0000..U+31FF.
    static const unsigned char s_LowPartBrakClass[12800];
    /// Line-break classes from U+3200 up.
    static const LineBreakRange s_HighPartBreakClass[154];
    /// May a line break between two characters? [21 * class before + class after]: 0 yes,
    /// 1 only where spaces stand between, 2 the second combines with the first, 3 no. The
    /// last 7 bytes are 0. For callers; the library does not look at it.
    static const unsigned char s_arrFullAnalyzeLineBreak[448];

    /// @}
    /// @name State
    /// @{

    /// The language that SysDefaultLCID() keeps; 0 until it is first asked.
    static unsigned short s_sysDefaultLCID;
    /// The code page that SysCodePage() answered last; 0 until it is first asked.
    static int s_sysCodePage;
    /// The user-defined characters; place n is looked up as U+E800 + n.
    static UserDefinedDBCS s_arrUserDefinedDBCS[256];
    /// A place for a caller's routine; the library does not call it.
    static LineBreakAnalyzer s_ptrAnalyzeLineBreak;

    /// @}
};

#endif
