// LineBreakRun.h - runs of characters that only a dictionary can break.
#ifndef LINE_BREAK_RUN_H
#define LINE_BREAK_RUN_H

/// How many of the first `count` classes are 28 in a row from the start: the length of the
/// Thai, Lao or Khmer text that stands there.
int tvLeadingDictionaryCharacters(const int* classes, int count);

#endif
