// TvPlatformBase.h - the Windows-style functions of libTvPlatformBase.
//
// Each function has the documented semantics of the Windows function of the same name,
// so that code written against that interface runs on Linux unchanged; where Linux must
// differ, the comment says so. The header compiles as C and as C++.
//
// Errors: results and errno as described; nothing is thrown. Memory: only the formatters
// may allocate (a floating-point field with hundreds of digits), and free it again.
// Threads: every function may be called from any thread, like the C library function
// below it; the two setters may race with the readers.
//
//     wchar_t name[260], ext[16];
//     if (_wsplitpath_s(L"C:\\plans\\hall.dwg", NULL, 0, NULL, 0, name, 260, ext, 16) == 0)
//         swprintf(title, L"%s%s (code page %u)", name, ext, GetACP());   // C++ only
#ifndef TV_PLATFORM_BASE_H
#define TV_PLATFORM_BASE_H

#include <stdarg.h>
#include <stddef.h>
#include <wchar.h>

/// Marks a function that libTvPlatformBase exports.
#define TV_PLATFORM_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

/// The ANSI code page number of the system, for example 1252 or 936.
///
/// Taken from the language and territory of the environment's locale: the first of
/// LC_ALL, LC_CTYPE, LANG that is set and not empty, read on the first call and then
/// kept. The codeset plays no part ("zh_CN.UTF-8" gives 936); "C" and languages without
/// an ANSI code page give 1252. A value set by tvPlatformSetACP comes first.
TV_PLATFORM_API unsigned int GetACP(void);

/// The language identifier of the system, for example 0x0409 or 0x0804.
/// As GetACP, from LC_ALL, LC_MESSAGES, LANG; "C" and unknown languages give 0x0409.
TV_PLATFORM_API unsigned int GetSystemDefaultLCID(void);

/// Makes GetACP answer `codePage` from now on, in every thread. 0 goes back to the
/// environment. Any number is taken as it is.
TV_PLATFORM_API void tvPlatformSetACP(unsigned int codePage);

/// Makes GetSystemDefaultLCID answer `lcid` from now on, in every thread. 0 goes back to
/// the environment. Any number is taken as it is.
TV_PLATFORM_API void tvPlatformSetSystemDefaultLCID(unsigned int lcid);

/// The integer at the start of `text`: white space (as iswspace has it), one sign, decimal
/// digits of any script of the basic plane. Text after the digits is ignored.
///
/// 0 without digits. Beyond the range of int: INT_MAX or INT_MIN with errno ERANGE.
/// Null: 0 with errno EINVAL. errno is otherwise left alone.
TV_PLATFORM_API int _wtoi(const wchar_t* text);

/// The number at the start of `text`: white space, one sign, then a decimal number with
/// a point (whatever the locale has for one) and an exponent after `e` or `E`, a hexadecimal one after `0x`
/// with its exponent after `p`, or "inf", "infinity", "nan" in any case. Decimal digits of any script of the
/// basic plane count.
///
/// Correctly rounded. 0 when there is no number. Overflow: infinity with that sign and
/// errno ERANGE; a number other than zero that rounds to zero: zero with errno ERANGE.
/// Null: 0 with errno EINVAL. errno is otherwise left alone.
TV_PLATFORM_API double _wtof(const wchar_t* text);

/// Splits a path into drive ("C:"), directory with its trailing separator, file name and
/// extension with its dot. Slash and backslash both separate.
///
/// Counts are in wide characters and include the terminating 0; a null buffer with count
/// 0 leaves that piece out. Pieces that the path lacks are empty. The drive is the first
/// character, unless it is a separator, when a colon follows; the extension starts at the
/// last dot behind the last separator, so ".profile" is all extension.
///
/// Returns 0; EINVAL when `path` is null, a null buffer comes with a count or a buffer
/// with count 0; ERANGE when a piece does not fit. After a failure every buffer handed in
/// is empty. The result is also in errno.
TV_PLATFORM_API int _wsplitpath_s(const wchar_t* path, wchar_t* drive, size_t driveCount, wchar_t* dir,
                                  size_t dirCount, wchar_t* fname, size_t fnameCount, wchar_t* ext,
                                  size_t extCount);

/// Whether the file or directory may be used so: mode 0 it exists, 2 written, 4 read,
/// 6 both. The name becomes bytes by tvPlatformFileName.
///
/// Returns 0, or -1 with errno ENOENT (no such file, also a name that is no possible
/// file name), EACCES (the mode is not allowed), or EINVAL (null path, another mode).
TV_PLATFORM_API int _waccess(const wchar_t* path, int mode);

/// Turns a wide file name into the bytes for the C library: the current locale's
/// multibyte form where the locale can represent the whole name, else UTF-8 (two
/// surrogates that belong together become one character, a lone one its three bytes).
///
/// `out` has room for `outSize` bytes. Returns the length in bytes without the terminating
/// 0, or -1: errno ENAMETOOLONG when it does not fit, EILSEQ for an element that is no
/// character, EINVAL for a null pointer. After a failure `out` is an empty text.
TV_PLATFORM_API int tvPlatformFileName(const wchar_t* name, char* out, size_t outSize);

/// Copies `count` bytes from `src` to `dst`, which has room for `dstSize` bytes. The two
/// must not overlap.
///
/// Returns 0; EINVAL when `dst` is null, or when `src` is null (then `dst` is filled with
/// zeros); ERANGE when `count` exceeds `dstSize` (`dst` is filled with zeros as well).
/// A `count` of 0 always succeeds. The result of a failure is also in errno.
TV_PLATFORM_API int memcpy_s(void* dst, size_t dstSize, const void* src, size_t count);

/// As memcpy_s, with sizes in wide characters.
TV_PLATFORM_API int wmemcpy_s(wchar_t* dst, size_t dstSize, const wchar_t* src, size_t count);

/// The length in wide characters, without the terminating 0, of what vswprintf makes of
/// the same arguments; -1 with errno where vswprintf fails.
TV_PLATFORM_API int _vscwprintf(const wchar_t* format, va_list args);

/// The number of characters of `text` in the code page GetACP(): a lead byte of 932, 936,
/// 949, 950 or 1361 and the byte after it are one character. A lead byte before the
/// terminating 0 is not counted. 0 for null.
TV_PLATFORM_API size_t _mbslen(const unsigned char* text);

#ifdef __cplusplus
} // extern "C"

/// Formats into `buffer`, which the caller promises is large enough: there is no size.
/// An overload beside the C library's function of that name, which takes one.
///
/// Conversions as in the C library, with these differences:
///  - `%s` and `%c` take wide text, `%S` and `%C` bytes of the current locale; `%ls` `%lc`
///    `%ws` `%wc` are always wide, `%hs` `%hc` always bytes;
///  - a null string prints "(null)";
///  - `I64`, `I32`, `I` before an integer letter: 64 bits, 32 bits, the size of size_t;
///  - `0` pads text too; `%p` prints 16 upper-case hexadecimal digits;
///  - `%a` of a double without a precision has 13 places;
///  - a signalling NaN prints "nan(snan)", the one of an operation without a result "-nan(ind)";
///  - no positions (`%1$d`), no grouping (`%'d`);
///  - a character after `%` that means nothing is printed itself.
///
/// Returns the length without the terminating 0, or -1 with an empty text: errno EINVAL
/// for a null pointer, for `%n`, and for a format that ends inside a conversion, EILSEQ
/// for bytes that the locale cannot read, EOVERFLOW beyond INT_MAX, ENOMEM.
TV_PLATFORM_API int swprintf(wchar_t* buffer, const wchar_t* format, ...);

/// As swprintf, with the arguments in `args`.
TV_PLATFORM_API int vswprintf(wchar_t* buffer, const wchar_t* format, va_list args);
#endif

#endif
