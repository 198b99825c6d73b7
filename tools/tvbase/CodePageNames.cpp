#include "CodePageNames.h"

#include "CommandError.h"

#include "TvCharConverter.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <numeric>
#include <utility>

namespace {

// Names used elsewhere, for the suggestion only.
constexpr std::pair<const char*, const char*> kOtherNames[] = {
    {"latin1", "iso8859_1"},   {"latin2", "iso8859_2"}, {"macintosh", "mac_roman"}, {"usascii", "ascii"},
    {"gbk", "ansi_936"},       {"gb18030", "ansi_936"}, {"euccn", "ansi_936"},      {"shiftjis", "ansi_932"},
    {"sjis", "ansi_932"},      {"ms932", "ansi_932"},   {"euckr", "ansi_949"},      {"uhc", "ansi_949"},
    {"big5hkscs", "ansi_950"}, {"utf8bom", "utf8"},     {"unicode", "utf8"},
};

// Lower case without punctuation, so that "ISO-8859-1" and "iso8859_1" are one.
std::string plain(const std::string& text)
{
    std::string result;
    for (const char c : text)
        if (std::isalnum(static_cast<unsigned char>(c)))
            result += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return result;
}

// Insertions, deletions, replacements and swaps of neighbours between the two.
std::size_t editDistance(const std::string& a, const std::string& b)
{
    std::vector<std::size_t> before(b.size() + 1), last(b.size() + 1), row(b.size() + 1);
    std::iota(last.begin(), last.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (a[i - 1] != b[j - 1])});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                row[j] = std::min(row[j], before[j - 2] + 1);
        }
        before = std::exchange(last, row);
    }
    return last[b.size()];
}

std::vector<std::string> allNames()
{
    std::vector<std::string> names;
    for (int id = 0; id < CP_CNT; ++id)
        if (std::string name = codePageName(static_cast<code_page_id>(id)); id == 0 || name != "undefined")
            names.push_back(std::move(name));
    return names;
}

code_page_id findNumber(unsigned int number)
{
    if (number < CP_CNT)
        return static_cast<code_page_id>(number);
    if (const code_page_id id = TvCodePageMapper::ansiCpToOrnaCp(static_cast<int>(number)))
        return id;
    // One page's own number differs from the table's.
    return theTvCodePages()->findMapperByAnsiCp(number)->m_id;
}

} // namespace

std::string codePageName(code_page_id id)
{
    if (id == CP_UTF8)
        return "utf8";
    const CStdStr<wchar_t>& description = theTvCodePages()->findMapperByAcadCp(id)->m_desc;
    return std::string(description.begin(), description.end());
}

std::vector<std::string> nearestNames(const std::string& text, const std::vector<std::string>& names)
{
    const std::string wanted = plain(text);
    std::vector<std::pair<std::size_t, std::string>> ranked;
    for (const auto& [other, name] : kOtherNames)
        if (wanted == other)
            ranked.emplace_back(0, name);
    // "cp1252" and "windows-1252" mean the page of that number.
    const std::string digits =
        wanted.substr(std::min(wanted.size(), wanted.find_last_not_of("0123456789") + 1));
    for (const std::string& name : names) {
        const std::string candidate = plain(name);
        const std::size_t distance = editDistance(wanted, candidate);
        if (digits.size() >= 3 && candidate.size() > digits.size() && candidate.ends_with(digits))
            ranked.emplace_back(0, name);
        else if (distance <= std::max<std::size_t>(1, candidate.size() / 3))
            ranked.emplace_back(distance, name);
    }
    std::stable_sort(ranked.begin(), ranked.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<std::string> nearest;
    for (const auto& [distance, name] : ranked)
        if (nearest.size() < 3 && std::find(nearest.begin(), nearest.end(), name) == nearest.end())
            nearest.push_back(name);
    return nearest;
}

code_page_id parseCodePage(const std::string& text)
{
    unsigned int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (!text.empty() && error == std::errc() && end == text.data() + text.size()) {
        const code_page_id id = number <= 0x7FFFFFFF ? findNumber(number) : CP_UNDEFINED;
        if (id != CP_UNDEFINED || number == 0)
            return id;
    } else {
        if (plain(text) == "utf8")
            return CP_UTF8;
        for (int id = 0; id < CP_UTF8; ++id) {
            const std::string name = codePageName(static_cast<code_page_id>(id));
            if (std::equal(name.begin(), name.end(), text.begin(), text.end(), [](char a, char b) {
                    return a == static_cast<char>(std::tolower(static_cast<unsigned char>(b)));
                }))
                return static_cast<code_page_id>(id);
        }
    }
    std::string message = "unknown code page \"" + text + "\"";
    const char* separator = "; did you mean ";
    for (const std::string& name : nearestNames(text, allNames())) {
        message += separator + name;
        separator = ", ";
    }
    throw CommandError(message + (*separator == ',' ? "?" : "; tvbase list names all"), kExitUsage);
}

bool needsMapFile(code_page_id id)
{
    id = TvCharConverter::checkTheSameCP(id);
    return id == CP_ANSI_932 || id == CP_ANSI_936 || id == CP_ANSI_949 || id == CP_ANSI_950;
}
