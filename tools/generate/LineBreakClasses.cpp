// Writes the tables of line-break classes into a folder: the Line_Break property of
// Unicode 15.0, brought back to Unicode 4.0.1 by the ages of the characters and by a file
// of those whose class has changed since.
#include "Generator.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr const char* kPropertyTitle = "# LineBreak-15.0.0.txt";
constexpr const char* kAgeTitle = "# DerivedAge-15.0.0.txt";

constexpr unsigned int kCodePoints = 0x110000;
constexpr unsigned int kLowPart = 0x3200; // characters of the low table
constexpr unsigned int kBasicPlaneEnd = 0x10000;
constexpr unsigned int kAssignedEnd = 0x1D800; // no character from here to the tags
constexpr unsigned int kTags = 0xE0000;
constexpr unsigned int kTagsEnd = 0xE1000;
constexpr std::size_t kHighEntries = 154;

constexpr int kUnlisted = -1;
constexpr int kLetter = 11;
constexpr int kIdeograph = 12;
constexpr int kUnknown = 25;

// The property's value names with their numbers; those of later versions, and those that
// need a choice, as what the characters were in 4.0.1.
const std::map<std::string, int> kClassNumbers = {
    {"OP", 0},  {"CL", 1},  {"QU", 2},  {"GL", 3},  {"NS", 4},  {"EX", 5},  {"SY", 6},
    {"IS", 7},  {"PR", 8},  {"PO", 9},  {"NU", 10}, {"AL", 11}, {"ID", 12}, {"IN", 13},
    {"HY", 14}, {"BA", 15}, {"BB", 16}, {"B2", 17}, {"ZW", 18}, {"CM", 19}, {"WJ", 20},
    {"CR", 21}, {"LF", 22}, {"NL", 23}, {"BK", 24}, {"XX", 25}, {"SP", 26}, {"CB", 27},
    {"SA", 28}, {"AI", 11}, {"HL", 11}, {"SG", 12}, {"EB", 12}, {"H2", 12}, {"H3", 12},
    {"JL", 12}, {"JT", 12}, {"JV", 12}, {"CP", 1},  {"CJ", 4},  {"ZWJ", 19}};

struct Entry {
    unsigned int last;
    int breakClass;
    unsigned int next;
};

std::string trimmed(const std::string& text)
{
    const auto first = text.find_first_not_of(" \t\r");
    return first == text.npos ? "" : text.substr(first, text.find_last_not_of(" \t\r") + 1 - first);
}

// Gives `use` the characters and the value of each line "first..last ; value # comment".
void readProperty(const std::string& path,
                  const std::function<void(unsigned int, unsigned int, const std::string&)>& use)
{
    std::ifstream file(path);
    if (!file)
        throw std::runtime_error("cannot read " + path);
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        const std::string row = trimmed(line.substr(0, line.find('#')));
        if (row.empty())
            continue;
        unsigned int first = 0;
        unsigned int last = 0;
        int end = 0;
        if (std::sscanf(row.c_str(), "%x..%x ;%n", &first, &last, &end) < 2 || end == 0) {
            end = 0;
            std::sscanf(row.c_str(), "%x ;%n", &first, &end);
            last = first;
        }
        if (end == 0 || last < first || last >= kCodePoints)
            throw std::runtime_error(path + ":" + std::to_string(number) + ": " + line);
        use(first, last, trimmed(row.substr(static_cast<std::size_t>(end))));
    }
}

int classNumber(const std::string& name)
{
    const auto found = kClassNumbers.find(name);
    return found == kClassNumbers.end() ? kUnlisted : found->second;
}

// Whether Unicode 4.0 had a character, by its age.
std::vector<bool> readOldCharacters(const std::string& path)
{
    std::vector<bool> isOld(kCodePoints, false);
    readProperty(path, [&](unsigned int first, unsigned int last, const std::string& age) {
        double version = 0;
        if (std::sscanf(age.c_str(), "%lf", &version) == 1 && version <= 4.0)
            std::fill(isOld.begin() + first, isOld.begin() + last + 1, true);
    });
    return isOld;
}

// The class number of each code point that the property lists in 4.0.1.
std::vector<int> readClasses(const std::string& property, const std::string& ages,
                             const std::string& corrections)
{
    const std::vector<bool> isOld = readOldCharacters(ages);
    std::vector<int> classes(kCodePoints, kUnlisted);
    readProperty(property, [&](unsigned int first, unsigned int last, const std::string& name) {
        for (unsigned int c = first; c <= last; ++c) {
            if (!isOld[c])
                continue;
            classes[c] = classNumber(name);
            if (classes[c] == kUnlisted)
                throw std::runtime_error(property + ": class " + name);
        }
    });
    readProperty(corrections, [&](unsigned int first, unsigned int last, const std::string& name) {
        const int number = classNumber(name);
        for (unsigned int c = first; c <= last; ++c) {
            if (number == kUnlisted || classes[c] == kUnlisted || classes[c] == number)
                throw std::runtime_error(corrections + ": nothing to correct by " + name);
            classes[c] = number;
        }
    });
    return classes;
}

bool isNoncharacter(unsigned int c) { return (c >= 0xFDD0 && c <= 0xFDEF) || (c & 0xFFFE) == 0xFFFE; }

// What the tables say of a character that the property does not list.
int unlistedClass(unsigned int c)
{
    if (c >= kBasicPlaneEnd)
        return kLetter;
    return isNoncharacter(c) ? kUnknown : kIdeograph;
}

// Runs of equal class from `first` up; in the tags only what is listed makes and ends one.
std::vector<Entry> makeHighEntries(const std::vector<int>& classes)
{
    std::vector<Entry> entries;
    const auto add = [&entries](unsigned int c, int breakClass) {
        if (!entries.empty() && entries.back().breakClass == breakClass)
            entries.back().last = c;
        else
            entries.push_back({c, breakClass, 0});
        entries.back().next = c + 1;
    };
    for (unsigned int c = kLowPart; c < kAssignedEnd; ++c)
        add(c, classes[c] == kUnlisted ? unlistedClass(c) : classes[c]);
    bool isFirstTag = true;
    for (unsigned int c = kTags; c < kTagsEnd; ++c) {
        if (classes[c] == kUnlisted)
            continue;
        if (isFirstTag)
            entries.back().next = c;
        isFirstTag = false;
        add(c, classes[c]);
    }
    return entries;
}

std::string sourceText(const std::vector<int>& classes)
{
    std::string text =
        "// Made by tools/generate/line_break_classes from the Line_Break property of Unicode 15.0 and\n"
        "// data/linebreak-corrections.txt, which brings it back to Unicode 4.0.1. Do not edit.\n"
        "// Renew: cmake --build build/dev --target renew-tables     Check: ctest -L generated\n"
        "#include \"OrCodePage.h\"\n\n"
        "const unsigned char OrCodePage::s_LowPartBrakClass[12800] = {\n";
    char cell[64];
    for (unsigned int line = 0; line < kLowPart; line += 16) {
        std::snprintf(cell, sizeof cell, "    /* %04X */", line);
        text += cell;
        for (unsigned int c = line; c < line + 16; ++c) {
            const int breakClass = classes[c] == kUnlisted ? unlistedClass(c) : classes[c];
            std::snprintf(cell, sizeof cell, " %2d,", breakClass);
            text += cell;
        }
        text += '\n';
    }
    text += "};\n\nconst OrCodePage::LineBreakRange OrCodePage::s_HighPartBreakClass[154] = {\n";
    const std::vector<Entry> entries = makeHighEntries(classes);
    if (entries.size() != kHighEntries)
        throw std::runtime_error("the high table has " + std::to_string(entries.size()) + " entries");
    for (const Entry& entry : entries) {
        std::snprintf(cell, sizeof cell, "    {0x%05X, %2d, 0x%05X},\n", entry.last, entry.breakClass,
                      entry.next);
        text += cell;
    }
    return text + "};\n";
}

bool hasTitle(const std::string& path, const std::string& title)
{
    std::ifstream file(path);
    std::string line;
    return std::getline(file, line) && trimmed(line) == title;
}

int writeTables(const std::string& unicodeFolder, const std::string& corrections, const std::string& folder)
{
    const std::string property = unicodeFolder + "/LineBreak.txt";
    const std::string ages = unicodeFolder + "/DerivedAge.txt";
    if (!hasTitle(property, kPropertyTitle) || !hasTitle(ages, kAgeTitle)) {
        std::fprintf(stderr, "line_break_classes: no data of Unicode 15.0 in %s\n", unicodeFolder.c_str());
        return kSkipped;
    }
    const std::string text = sourceText(readClasses(property, ages, corrections));
    writeFile(folder + "/LineBreakClasses.cpp", text);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    return generate("line_break_classes", "UNICODE-DATA-FOLDER CORRECTIONS-FILE FOLDER", 3, argc,
                    [&] { return writeTables(argv[1], argv[2], argv[3]); });
}
