// ScanEngines.h - the two engines behind InputWithFormat().
#ifndef TV_FORMAT_SCAN_ENGINES_H
#define TV_FORMAT_SCAN_ENGINES_H

#include <cstdarg>
#include <cstdint>

namespace TvFormatDetail {

/// Character by character through a ScanfSourceBuf; serves both kinds of source.
int scanSourceBuf(bool kind, const wchar_t* text, const wchar_t* format, va_list* args);

/// A wide string by pointer; the same results.
int scanWideText(const wchar_t* text, const wchar_t* format, va_list* args);

/// White space of ASCII.
inline bool isPlainSpace(std::int32_t c) { return c == L' ' || (c >= L'\t' && c <= L'\r'); }

/// TvMath::pow<double>(10, n), from a table up to the 22nd power either way.
constexpr int kLargestScanPower = 22;
double scanPower(int n);

} // namespace TvFormatDetail

#endif
