// Writes the table of the classes of UTF-16 units into a folder, from the file of their runs.
#include "Generator.h"

#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

constexpr unsigned int kUnits = 0x10000;
constexpr unsigned int kHighestClass = 32;
constexpr unsigned int kUnitsOfALine = 32;

using Classes = std::array<unsigned char, kUnits>;

// Lines of: first..last class, the runs in order and without a gap. '#' begins a comment.
Classes readRuns(const std::string& path)
{
    std::ifstream file(path);
    if (!file)
        throw std::runtime_error("cannot read " + path);
    Classes classes{};
    unsigned int next = 0;
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        if (line.empty() || line[0] == '#')
            continue;
        std::istringstream fields(line);
        unsigned int first = 0;
        unsigned int last = 0;
        unsigned int unicodeClass = 0;
        char dots[2] = {};
        fields >> std::hex >> first >> dots[0] >> dots[1] >> last >> std::dec >> unicodeClass;
        const bool inOrder = first == next && last >= first && last < kUnits;
        if (!fields || dots[0] != '.' || dots[1] != '.' || !inOrder || unicodeClass > kHighestClass)
            throw std::runtime_error(path + ":" + std::to_string(number) + ": " + line);
        for (next = first; next <= last; ++next)
            classes[next] = static_cast<unsigned char>(unicodeClass);
    }
    if (next != kUnits)
        throw std::runtime_error(path + ": the runs end early");
    return classes;
}

std::string sourceText(const Classes& classes)
{
    std::string text =
        "// Made by tools/generate/unicode_classes from data/unicode-classes.txt. Do not edit.\n"
        "// Renew: cmake --build build/dev --target renew-tables     Check: ctest -L generated\n"
        "#include \"OrCodePage.h\"\n\n"
        "const unsigned char OrCodePage::s_unicodeClassTable[65536] = {\n";
    for (unsigned int line = 0; line < kUnits; line += kUnitsOfALine) {
        char cell[16];
        std::snprintf(cell, sizeof cell, "/* %04X */ ", line);
        text += cell;
        for (unsigned int i = line; i < line + kUnitsOfALine; ++i)
            text += std::to_string(classes[i]) + ',';
        text += '\n';
    }
    return text + "};\n";
}

} // namespace

int main(int argc, char** argv)
{
    return generate("unicode_classes", "RUNS-FILE FOLDER", 2, argc, [&] {
        writeFile(std::string(argv[2]) + "/UnicodeClasses.cpp", sourceText(readRuns(argv[1])));
        return 0;
    });
}
