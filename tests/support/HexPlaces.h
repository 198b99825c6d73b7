// HexPlaces.h - formats of doubles for the C library, where ours differ.
#ifndef TV_TEST_HEX_PLACES_H
#define TV_TEST_HEX_PLACES_H

#include <string>

/// Without a precision a double has 13 hexadecimal places here, and as many as it needs there.
/// `start` is a conversion up to its letter; no size is in it.
inline std::wstring withHexPlaces(const std::wstring& start, wchar_t letter)
{
    const bool isBare = (letter == L'a' || letter == L'A') && start.find(L'.') == start.npos;
    return isBare ? start + L".13" : start;
}

#endif
