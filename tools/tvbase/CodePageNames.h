// CodePageNames.h - code pages as people write them.
#ifndef TVBASE_CODE_PAGE_NAMES_H
#define TVBASE_CODE_PAGE_NAMES_H

#include "TvCodePages.h"

#include <string>
#include <vector>

/// The description of an id: "ansi_1252"; "utf8" for CP_UTF8. The registry must be filled.
std::string codePageName(code_page_id id);

/// The id that `text` names: an id ("30"), a Windows number ("1252") or a description in any
/// letter case ("ANSI_1252"; "utf8" and "utf-8"). Throws CommandError with the nearest names,
/// status kExitUsage, when there is none. The registry must be filled.
code_page_id parseCodePage(const std::string& text);

/// Whether the double-byte tables of the map file are needed for `id`.
bool needsMapFile(code_page_id id);

/// At most three of `names`, nearest first, that `text` may have been meant for.
std::vector<std::string> nearestNames(const std::string& text, const std::vector<std::string>& names);

#endif
