// LineBreaks.h - where the lines of a text may end, by the library's classes and pair table.
#ifndef TVBASE_LINE_BREAKS_H
#define TVBASE_LINE_BREAKS_H

#include <string>
#include <vector>

/// The class of OrCodePage::LineBreakClass() of what stands on the character before it.
constexpr int kCombiningClass = 19;

enum class LineBreak { No, May, Must };

/// Whether a line may or must end after each character of the text; after the last one
/// only where it asks for it itself, as a line feed does.
std::vector<LineBreak> findLineBreaks(const std::u32string& text);

#endif
