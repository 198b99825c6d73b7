// LanguageList.h - the languages and character sets that the library knows.
#ifndef TVBASE_LANGUAGE_LIST_H
#define TVBASE_LANGUAGE_LIST_H

/// Prints a line for each language: identifier, character set, code page number, code page
/// index, direction, name.
void printLanguages();

#endif
