// tvbase chart - the characters of a code page in a grid of 16 by 16.
#include "Command.h"

#include "CodePageNames.h"
#include "Json.h"
#include "MapFileSearch.h"
#include "Utf8Sequence.h"

#include "TvCharConverter.h"
#include "TvCharMapper.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <memory>
#include <string>

namespace {

struct ChartOptions {
    std::string page;
    std::string lead;
};

struct Range {
    char32_t first, last;
    bool holds(char32_t c) const { return c >= first && c <= last; }
};

template<std::size_t n>
bool isIn(const Range (&ranges)[n], char32_t c)
{
    return std::any_of(std::begin(ranges), std::end(ranges),
                       [c](const Range& range) { return range.holds(c); });
}

// Of the characters that the code pages have: those that terminals show two columns wide.
constexpr Range kWide[] = {{0x1100, 0x115F}, {0x2E80, 0xA4CF}, {0xAC00, 0xD7A3}, {0xF900, 0xFAFF},
                           {0xFE30, 0xFE6F}, {0xFF01, 0xFF60}, {0xFFE0, 0xFFE6}};
// That stand on the character before them.
constexpr Range kMarks[] = {{0x0300, 0x036F}, {0x05B0, 0x05C2}, {0x064B, 0x0652},
                            {0x0E31, 0x0E31}, {0x0E34, 0x0E3A}, {0x0E47, 0x0E4E}};
// That have no picture.
constexpr Range kInvisible[] = {{0x7F, 0x9F}, {0xAD, 0xAD}, {0x200B, 0x200F}, {0xFEFF, 0xFEFF}};
constexpr Range kSpaces[] = {{0x20, 0x20}, {0xA0, 0xA0}, {0x3000, 0x3000}};
constexpr Range kRightToLeft[] = {{0x0590, 0x08FF}, {0xFB1D, 0xFDFF}, {0xFE70, 0xFEFC}};

constexpr char32_t kNoPicture = 0x25AB;    // small white square
constexpr char32_t kSpacePicture = 0x2423; // open box
constexpr char32_t kPicturesOfControls = 0x2400;
constexpr char32_t kLeftToRightMark = 0x200E;

// A character in three columns.
std::string cell(char32_t c)
{
    if (c < 0x20)
        return utf8Of(kPicturesOfControls + c) + "  ";
    if (isIn(kInvisible, c))
        return utf8Of(kNoPicture) + "  ";
    if (isIn(kSpaces, c))
        return utf8Of(kSpacePicture) + "  ";
    std::string text = isIn(kMarks, c) ? utf8OfMark(c) : utf8Of(c);
    if (isIn(kRightToLeft, c))
        text += utf8Of(kLeftToRightMark);
    return text + (isIn(kWide, c) ? " " : "  ");
}

// The character at a code that is no lead byte; false when there is none.
bool characterAt(unsigned code, code_page_id id, wchar_t& wc)
{
    wc = 0;
    return TvCharMapper::codepageToUnicode(static_cast<wchar_t>(code), id, wc) && (wc != 0 || code == 0);
}

bool isLead(unsigned code, code_page_id id)
{
    return code < 0x100 && TvCharMapper::isLeadByte(static_cast<unsigned char>(code), id);
}

// What stands at a code: a character, a lead byte, or nothing.
std::string cellOfCode(unsigned code, code_page_id id)
{
    if (isLead(code, id))
        return ">> ";
    wchar_t wc;
    return characterAt(code, id, wc) ? cell(static_cast<char32_t>(wc)) : "   ";
}

// The lead byte that `text` names, which must be one of `id`.
unsigned parseLead(const std::string& text, code_page_id id)
{
    const bool isHex = text.size() == 2 && TvCharConverter::checkDigits(text.c_str(), 2, true);
    const unsigned lead =
        isHex ? TvCharConverter::hexValue(text[0]) * 16 + TvCharConverter::hexValue(text[1]) : 0;
    if (!isHex || !TvCharMapper::isLeadByte(static_cast<unsigned char>(lead), id))
        throw CommandError("\"" + text + "\" is no lead byte of " + codePageName(id), kExitUsage);
    return lead;
}

void printGrid(code_page_id id, unsigned lead, const std::string& leadText)
{
    std::printf("%s%s%s\n  ", codePageName(id).c_str(), lead != 0 ? " " : "", leadText.c_str());
    for (unsigned column = 0; column < 16; ++column)
        std::printf("  %X", column);
    for (unsigned row = 0; row < 16; ++row) {
        std::string line;
        for (unsigned column = 0; column < 16; ++column)
            line += cellOfCode(lead * 256 + row * 16 + column, id);
        line.erase(line.find_last_not_of(' ') + 1);
        std::printf("\n%X_  %s", row, line.c_str());
    }
    std::printf("\n");
}

void printAsJson(code_page_id id, unsigned lead)
{
    JsonWriter json;
    json.beginObject();
    json.text("name", codePageName(id));
    lead != 0 ? json.number("lead", lead) : json.null("lead");
    json.beginArray("leadBytes");
    for (unsigned code = 0; lead == 0 && code < 0x100; ++code)
        if (isLead(code, id))
            json.number(nullptr, code);
    json.end();
    json.beginArray("characters");
    for (unsigned code = lead * 256; code < lead * 256 + 256; ++code) {
        wchar_t wc;
        if (isLead(code, id) || !characterAt(code, id, wc))
            continue;
        json.beginObject();
        json.number("code", code);
        json.number("unit", static_cast<unsigned>(wc));
        json.text("character", utf8Of(static_cast<char32_t>(wc)));
        json.end();
    }
    json.end();
    json.end();
    json.print();
}

void showChart(const ChartOptions& options, const Shared& shared)
{
    initializeMapper(shared);
    const code_page_id id = TvCharConverter::checkTheSameCP(parseCodePage(options.page));
    if (id == CP_UTF8)
        throw CommandError("utf8 has no chart", kExitUsage);
    if (needsMapFile(id))
        requireTables(id);
    const unsigned lead = options.lead.empty() ? 0 : parseLead(options.lead, id);

    shared.json ? printAsJson(id, lead) : printGrid(id, lead, options.lead);
}

} // namespace

void addChart(CLI::App& app, Shared& shared)
{
    const auto options = std::make_shared<ChartOptions>();
    CLI::App* command = app.add_subcommand("chart", "Show the characters of a code page in a grid");
    command->add_option("CP", options->page, "Code page: a name, a number or an id of `tvbase list`")
        ->required();
    command->add_option("--lead", options->lead, "The double-byte characters behind this lead byte")
        ->type_name("XX");
    addJsonOption(*command, shared);
    addMapOption(*command, shared);
    command->footer("Example:\n"
                    "  tvbase chart ansi_932 --lead 83\n"
                    "\n"
                    ">>: a lead byte. A small square: a character without a picture. Nothing: no character.");
    command->callback([options, &shared] { showChart(*options, shared); });
}
