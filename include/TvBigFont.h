// TvBigFont.h - which double-byte code page a big font's text is written in.
//
// Text drawn with a big font (a shape font for East Asian scripts) stores double-byte codes
// of the code page that the font was made for. The font's file name decides: by a list of
// well-known fonts, by the user's BIGFONT.INI, and last by the system's default language.
// TvCharMapper::getCpByBigFont() makes a `code_page_id` of the answer.
//
// The answer is a code page index: 1 = 932 (Japanese), 2 = 950 (Traditional Chinese), 3 = 949
// and 4 = 1361 (Korean), 5 = 936 (Simplified Chinese), 0 = none.
#ifndef TV_BIG_FONT_H
#define TV_BIG_FONT_H

#include "TvExport.h"

#include <map>
#include <string>

/// How the functions below find and read the user's BIGFONT.INI; the host application, which
/// knows its folders, implements it.
///
/// **Errors**: as the host makes them; what it throws goes through to the caller of the lookup.
/// **Memory**: nothing is taken over. The destructor is not virtual and not public: delete the
/// object as what it was made. **Threads**: called on the thread of the lookup.
///
///     class UserBigFonts final : public CReadUserDefBigfontIni {
///     public:
///         bool loadMap(const wchar_t* iniPath, std::map<std::wstring, int>*) override
///         {
///             return ReadBigfontIni(iniPath);
///         }
///         int findFile(wchar_t* pathOut, int pathOutSize, const wchar_t* fileName) override
///         {
///             return findInUserFolder(pathOut, pathOutSize, fileName);
///         }
///     };
class TV_OSBASE_API CReadUserDefBigfontIni {
public:
    /// Reads the file into `map`, which is g_mapCP2Bigfont. The result is not consulted: the
    /// file counts as read.
    virtual bool loadMap(const wchar_t* iniPath, std::map<std::wstring, int>* map) = 0;

    /// Writes the full path of `fileName`, "BIGFONT.INI", to `pathOut`, which has room for
    /// `pathOutSize` (1024) elements with the terminating 0. Nonzero when the file was found.
    virtual int findFile(wchar_t* pathOut, int pathOutSize, const wchar_t* fileName) = 0;

protected:
    ~CReadUserDefBigfontIni() = default;
};

/// The user's big fonts: file name as the INI file writes it, to code page index. Empty at the
/// start, filled by ReadBigfontIni() and never cleared. Not guarded: one thread at a time.
TV_OSBASE_API extern std::map<std::wstring, int> g_mapCP2Bigfont;

/// Reads a BIGFONT.INI into g_mapCP2Bigfont, beside what is there; a later line for the same
/// name replaces an earlier one.
///
/// A line is a file name that ends in ".shx", ";" and a code page index: `myfont.shx;5`. Blanks
/// are dropped wherever they stand, in the name too (tabs are not); "#" begins a comment. The
/// bytes are UTF-8, a byte that is not stands for itself, a mark of UTF-8 at the start is
/// skipped. Lines end with LF or CR LF; of a line only the first 512 characters count, and only
/// what stands before a 0. Any other line is skipped without a word: one without ".shx" before
/// the first ";", one that ends with ";", one whose value is no number, 0 or beyond `int`. Other
/// numbers than 1 to 5 are stored and mean no code page.
///
/// False when the file cannot be opened or read to its end, or memory runs out; lines read by
/// then stay. Nothing is thrown.
TV_OSBASE_API bool ReadBigfontIni(const wchar_t* path);

/// The code page index of a big font by the list of well-known fonts, which disregards case,
/// else by findCodepageByBigfontInUserDefined(). `fontName` is a file name with its extension
/// and without folders.
TV_OSBASE_API int findCodepageByBigfont(const std::wstring& fontName, CReadUserDefBigfontIni* reader);

/// The code page index of a big font by g_mapCP2Bigfont, without regard to case, else by the
/// system's default language (0 unless that is Japanese, Korean or Chinese).
///
/// The user's file is looked for here, when `reader` is not null: with each call until it is
/// found, and never again once it has been read.
TV_OSBASE_API int findCodepageByBigfontInUserDefined(const std::wstring& fontName,
                                                     CReadUserDefBigfontIni* reader);

/// The text behind the last "/", all of it when there is none. The backslash does not separate.
/// Null counts as "". Throws std::bad_alloc, as std::wstring does.
TV_OSBASE_API std::wstring extractFileName(const wchar_t* path);

#endif
