// LanguageList.h - the languages and character sets that the library knows.
#ifndef TVBASE_LANGUAGE_LIST_H
#define TVBASE_LANGUAGE_LIST_H

/// Prints a line for each language: identifier, character set, code page number, code page
/// index, direction, name.
void printLanguages();

/// The same as an array of objects; what there is none of is null.
void printLanguagesAsJson();

/// The language of an identifier in English; "-" when it is not known.
const char* languageName(int lcid);

#endif
