// FileNames.h - file names between the command line's bytes and the library's wide text.
#ifndef TVBASE_FILE_NAMES_H
#define TVBASE_FILE_NAMES_H

#include <string>

/// The wide form of a file name that is UTF-8, which the library turns into the same bytes
/// again; empty for bytes that are not UTF-8, for which the library has no name.
///
/// tvbase stays in the C locale, so that this holds whatever the user's locale is.
std::wstring wideFileName(const std::string& name);

/// The bytes of a wide file name.
std::string byteFileName(const std::wstring& name);

#endif
