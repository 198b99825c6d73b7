// The pages for users against the sources that they quote.
#include <gtest/gtest.h>

#include <cctype>
#include <cstddef>
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

// `text` without white space, so that the layout does not matter.
std::string bareText(const std::string& text)
{
    std::string bare;
    for (const char c : text)
        if (std::isspace(static_cast<unsigned char>(c)) == 0)
            bare += c;
    return bare;
}

// "A size of 0" is ASizeOf0.
std::string nameOf(const std::string& heading)
{
    std::string name;
    bool starts = true;
    for (const char c : heading) {
        const bool isPart = std::isalnum(static_cast<unsigned char>(c)) != 0;
        if (isPart)
            name += starts ? static_cast<char>(std::toupper(static_cast<unsigned char>(c))) : c;
        starts = !isPart;
    }
    return name;
}

struct Piece {
    std::string chapter; ///< the heading of the second level
    std::string heading; ///< that of the third
    std::string source;  ///< the file named by a line "From `file`:" above the code
    std::string code;
};

// The C++ pieces of a page, in order.
std::vector<Piece> piecesOf(const std::string& page)
{
    std::istringstream in(contentOf(kSources / page));
    std::vector<Piece> pieces;
    Piece piece;
    bool inCode = false;
    for (std::string line; std::getline(in, line);) {
        if (inCode && line == "```") {
            pieces.push_back(piece);
            inCode = false;
            piece.code.clear();
        } else if (inCode) {
            piece.code += line + '\n';
        } else if (line == "```cpp") {
            inCode = true;
        } else if (line.rfind("## ", 0) == 0) {
            piece.chapter = line.substr(3);
        } else if (line.rfind("### ", 0) == 0) {
            piece.heading = line.substr(4);
        } else if (line.rfind("From `", 0) == 0) {
            piece.source = line.substr(6, line.rfind('`') - 6);
        }
    }
    EXPECT_FALSE(pieces.empty()) << page;
    return pieces;
}

// Name and body of each test of a source file, in order.
std::vector<std::pair<std::string, std::string>> testsOf(const std::string& source)
{
    const std::string start = "\nTEST(";
    std::vector<std::pair<std::string, std::string>> tests;
    for (auto at = source.find(start); at != std::string::npos;) {
        const auto name = source.find(", ", at) + 2;
        const auto next = source.find(start, name);
        tests.emplace_back(source.substr(name, source.find(')', name) - name),
                           source.substr(name, next == std::string::npos ? next : next - name));
        at = next;
    }
    return tests;
}

// Each piece of code stands in the file that the line above it names.
void expectQuotes(const std::string& page)
{
    for (const Piece& piece : piecesOf(page)) {
        const std::string source = bareText(contentOf(kSources / piece.source));
        EXPECT_NE(source.find(bareText(piece.code)), std::string::npos) << "not in " << piece.source << ":\n"
                                                                        << piece.code;
    }
}

TEST(Readme, QuotesItsExamples) { expectQuotes("README.md"); }

TEST(Readme, LeadsToPagesThatAreThere)
{
    const std::string page = contentOf(kSources / "README.md");
    const std::size_t table = page.find("## Where to find the rest");
    ASSERT_NE(table, std::string::npos);
    int count = 0;
    const std::regex named("`([A-Za-z_./-]+(\\.md|/))`");
    for (std::sregex_iterator it(page.begin() + static_cast<std::ptrdiff_t>(table), page.end(), named), end;
         it != end; ++it, ++count)
        EXPECT_TRUE(std::filesystem::exists(kSources / (*it)[1].str())) << (*it)[1];
    EXPECT_GE(count, 10);
}

TEST(GuidePage, QuotesItsExamples) { expectQuotes("docs/guide.md"); }

TEST(GuidePage, NamesEveryExample)
{
    const std::string page = contentOf(kSources / "docs" / "guide.md");
    for (const auto& file : std::filesystem::directory_iterator(kSources / "examples")) {
        const std::string name = file.path().filename().string();
        if (file.path().extension() == ".cpp") {
            EXPECT_NE(page.find("examples/" + name), std::string::npos) << name;
        }
    }
}

TEST(OdditiesPage, HasATestForEachHeading)
{
    std::vector<std::string> headings;
    std::set<std::string> chapters;
    for (const Piece& piece : piecesOf("docs/oddities.md")) {
        headings.push_back(piece.chapter + "." + nameOf(piece.heading));
        chapters.insert(piece.chapter);
    }

    std::vector<std::string> tests;
    for (const char* const chapter : {"Memory", "Containers", "Text", "Numbers", "Format", "Streams"}) {
        EXPECT_EQ(chapters.count(chapter), 1u) << chapter;
        const std::string file = std::string(chapter) + "OdditiesTest.cpp";
        for (const auto& test : testsOf(contentOf(kSources / "tests/unit/docs" / file)))
            tests.push_back(std::string(chapter) + "." + test.first);
    }
    EXPECT_EQ(headings, tests);
}

TEST(OdditiesPage, ShowsWhatTheTestsRun)
{
    for (const Piece& piece : piecesOf("docs/oddities.md")) {
        const std::string file = piece.chapter + "OdditiesTest.cpp";
        for (const auto& [name, body] : testsOf(contentOf(kSources / "tests/unit/docs" / file))) {
            if (name != nameOf(piece.heading))
                continue;
            EXPECT_NE(bareText(body).find(bareText(piece.code)), std::string::npos)
                << "not in " << file << ", " << name << ":\n"
                << piece.code;
        }
    }
}

} // namespace
