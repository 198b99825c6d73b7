// MapperText.h - the conversions of the character mapper into any kind of result.
#ifndef TV_MAPPER_TEXT_H
#define TV_MAPPER_TEXT_H

#include "TvCodePages.h"
#include "codepage/ShortText.h"

namespace TvDetail {

/// TvCharMapper::multiByteToWideChar(); `Store` is a TvVector or a ShortText.
template<class Store>
void decodeText(code_page_id cp, const char* src, int len, Store& out);

/// TvCharMapper::wideCharToMultiByte().
template<class Store>
void encodeText(code_page_id cp, const wchar_t* src, int len, Store& out);

extern template void decodeText(code_page_id, const char*, int, TvVector<wchar_t>&);
extern template void decodeText(code_page_id, const char*, int, ShortText<wchar_t>&);
extern template void encodeText(code_page_id, const wchar_t*, int, TvVector<char>&);
extern template void encodeText(code_page_id, const wchar_t*, int, ShortText<char>&);

} // namespace TvDetail

#endif
