// TextTable.h - a double-byte table written as text.
#ifndef TVBASE_TEXT_TABLE_H
#define TVBASE_TEXT_TABLE_H

#include "CodepageMapFile.h"

#include "TvCodePages.h"

#include <string>

/// Reads lines of two hexadecimal numbers, the code and the UTF-16 unit, "8140 3000" or
/// "0x8140 0x3000"; text after # is a comment. Throws InputError, naming file and line, for
/// anything else, for codes of other code pages and for a code given twice.
DoubleByteTable readTextTable(const std::string& name, code_page_id page);

#endif
