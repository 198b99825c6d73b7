// WideArguments.h - texts and numbers of a command line as the library takes them.
#ifndef TVBASE_WIDE_ARGUMENTS_H
#define TVBASE_WIDE_ARGUMENTS_H

#include <functional>
#include <string>
#include <vector>

/// UTF-8 to wide text. CommandError for characters beyond U+FFFF, which wide text lacks.
std::wstring wideArgument(const std::string& utf8);

/// Prints wide text as UTF-8, and a line end.
void printLine(const std::wstring& text);

/// Calls `use` for each number: the arguments, or without any the lines of standard input,
/// where blank lines are skipped. What is no number is complained of, with its line, and
/// skipped. Returns the exit status.
int forEachNumber(const std::vector<std::string>& arguments, const std::function<void(double)>& use);

/// The next line of standard input, without its line end. False at the end.
bool readLine(std::string& line);

/// The whole text as a number; false when it is none.
bool parseNumber(const std::string& text, double& value);

#endif
