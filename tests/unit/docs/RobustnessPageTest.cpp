// docs/robustness.md names tests that exist, and tells of every exported function what happens
// when the calls that it makes fail.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

const std::filesystem::path kSources = TV_SOURCE_DIR;

std::string contentOf(const std::filesystem::path& path)
{
    std::ifstream file(path);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string page() { return contentOf(kSources / "docs" / "robustness.md"); }

// The chapter under `heading`, to the next heading.
std::string chapter(const std::string& heading)
{
    const std::string text = page();
    const auto begin = text.find("\n## " + heading + "\n");
    EXPECT_NE(begin, std::string::npos) << heading;
    return text.substr(begin + 1, text.find("\n## ", begin + 1) - begin);
}

// What stands between backquotes.
std::vector<std::string> quoted(const std::string& text)
{
    std::vector<std::string> words;
    const std::regex form("`([^`\n]+)`");
    for (std::sregex_iterator at(text.begin(), text.end(), form), end; at != end; ++at)
        words.push_back((*at)[1]);
    return words;
}

// Names without an extension of all sources of tests and fuzz targets.
std::set<std::string> programs()
{
    std::set<std::string> names;
    for (const char* const folder : {"tests", "fuzz"})
        for (const auto& file : std::filesystem::recursive_directory_iterator(kSources / folder))
            if (file.path().extension() == ".cpp")
                names.insert(file.path().stem().string());
    return names;
}

// Without template arguments, parameters and what stands in front of the name.
std::string bareName(const std::string& symbol)
{
    std::string name;
    int depth = 0;
    for (const char c : symbol) {
        if (c == '(' && depth == 0)
            break;
        depth -= c == '>';
        if (depth == 0 && c != '>')
            name += c;
        depth += c == '<';
    }
    std::string plain;
    for (const char c : name)
        if (c != '<')
            plain += c;
    const auto mark = plain.find("[abi:");
    if (mark != std::string::npos)
        plain.resize(mark);
    const auto conversion = plain.find("operator ");
    const auto blank = plain.rfind(' ', conversion);
    return blank == std::string::npos ? plain : plain.substr(blank + 1);
}

// "Class::*" for a member, the name itself for a free function, nothing for data.
std::set<std::string> exportedFunctions()
{
    std::set<std::string> names;
    for (const char* const list : {"exports.txt", "platform-exports.txt"}) {
        std::istringstream in(contentOf(kSources / "abi" / list));
        for (std::string line; std::getline(in, line);) {
            const auto tab = line.find('\t');
            const std::string symbol = line.substr(tab + 1);
            const bool isC = symbol == line.substr(0, tab);
            const bool isData =
                isC ? std::regex_match(symbol, std::regex("(g_|gp|gE|G_).*|tvPlatform_ansiCodePage"))
                    : symbol.find('(') == std::string::npos;
            if (isData || symbol.rfind("typeinfo", 0) == 0 || symbol.rfind("vtable", 0) == 0)
                continue;
            std::string name = bareName(symbol);
            if (name.rfind("tvPlatform_", 0) == 0) // the second name of a platform function
                name.erase(0, std::strlen("tvPlatform_"));
            if (name.rfind("std::", 0) != 0) // instances of the standard library's templates
                names.insert(name);
        }
    }
    return names;
}

bool isCovered(const std::string& name, const std::set<std::string>& listed)
{
    const auto member = name.find("::");
    return listed.count(name) != 0 ||
           (member != std::string::npos && listed.count(name.substr(0, member) + "::*") != 0);
}

TEST(RobustnessPage, NamesTestsThatExist)
{
    const std::set<std::string> known = programs();
    const std::regex form("[A-Za-z0-9]+(Test|Fuzz)");
    int named = 0;
    for (const std::string& word : quoted(page())) {
        if (!std::regex_match(word, form))
            continue;
        ++named;
        EXPECT_EQ(known.count(word), 1u) << word;
    }
    EXPECT_GT(named, 30);
}

TEST(RobustnessPage, TellsOfEveryExportedFunctionWhatItsFailuresAre)
{
    const std::vector<std::string> words = quoted(chapter("Failures, one at a time"));
    const std::set<std::string> listed(words.begin(), words.end());
    const std::set<std::string> functions = exportedFunctions();
    EXPECT_GT(functions.size(), 300u);
    for (const std::string& name : functions)
        EXPECT_TRUE(isCovered(name, listed)) << name;
}

TEST(RobustnessPage, TellsOfNoFunctionThatIsNotThere)
{
    std::set<std::string> functions = exportedFunctions();
    for (const std::string& name : std::set<std::string>(functions))
        if (name.find("::") != std::string::npos)
            functions.insert(name.substr(0, name.find("::")) + "::*");
    for (const std::string& word : quoted(chapter("Failures, one at a time"))) {
        if (word.find("::") != std::string::npos && word.rfind("std::", 0) != 0) {
            EXPECT_EQ(functions.count(word), 1u) << word;
        }
    }
}

} // namespace
