#include "WideArguments.h"

#include "CommandError.h"

#include "TvCharMapper.h"
#include "TvNumber.h"
#include "TvVector.h"

#include <cstdio>
#include <iostream>

std::wstring wideArgument(const std::string& utf8)
{
    for (const char c : utf8) {
        if (static_cast<unsigned char>(c) >= 0xF0)
            throw CommandError("\"" + utf8 + "\" has a character beyond U+FFFF");
    }
    if (utf8.empty())
        return {};
    TvVector<wchar_t> wide;
    TvCharMapper::utf8ToUnicode(utf8.c_str(), static_cast<int>(utf8.size()), wide);
    return wide.asArrayPtr();
}

void printLine(const std::wstring& text)
{
    TvVector<char> bytes;
    if (!text.empty()) {
        TvCharMapper::unicodeToUtf8(text.c_str(), static_cast<int>(text.size()), bytes);
        std::fputs(bytes.asArrayPtr(), stdout);
    }
    std::fputc('\n', stdout);
}

bool readLine(std::string& line)
{
    if (!std::getline(std::cin, line))
        return false;
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return true;
}

bool parseNumber(const std::string& text, double& value)
{
    char* end = nullptr;
    value = tvStrToD(text.c_str(), &end);
    const char* const rest = text.c_str() + text.find_last_not_of(" \t") + 1;
    return end != text.c_str() && end >= rest;
}

int forEachNumber(const std::vector<std::string>& arguments, const std::function<void(double)>& use)
{
    int status = 0;
    const auto take = [&](const std::string& text, const std::string& where) {
        double value = 0;
        if (parseNumber(text, value)) {
            use(value);
        } else {
            complain(where + "\"" + text + "\" is no number");
            status = kExitFailed;
        }
    };
    for (const std::string& argument : arguments)
        take(argument, "");
    std::string line;
    for (long number = 1; arguments.empty() && readLine(line); ++number) {
        if (line.find_first_not_of(" \t") != std::string::npos)
            take(line, "standard input, line " + std::to_string(number) + ": ");
    }
    return status;
}
