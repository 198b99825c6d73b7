// tvbase escapes - the inline escapes of drawing text: write them, read them, find them.
#include "Command.h"

#include "CodePageNames.h"
#include "Json.h"
#include "MapFileSearch.h"
#include "Utf8Sequence.h"
#include "WideArguments.h"

#include "TvCharConverter.h"
#include "TvCharMapper.h"

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace {

// An escape as it stands in a text.
struct Escape {
    std::size_t length; // characters; 0 = there is none
    bool isMif;
    code_page_id page; // of a MIF escape
    wchar_t unit;      // the UTF-16 unit that it stands for; 0 = none
};

// The text behind `text` ends with a 0.
Escape escapeAt(const char* text)
{
    Escape escape = {0, false, CP_UNDEFINED, 0};
    wchar_t code = 0;
    if (TvCharConverter::parseCIFString(text, escape.unit)) {
        escape.length = 7;
    } else if (TvCharConverter::parseMIFString(text, code, escape.page)) {
        escape.length = 8;
        escape.isMif = true;
        requireTables(escape.page);
        if (!TvCharMapper::codepageToUnicode(code, escape.page, escape.unit))
            escape.unit = 0;
    }
    return escape;
}

bool isControl(wchar_t unit) { return unit < 0x20 || (unit >= 0x7F && unit < 0xA0); }
bool isHigh(wchar_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isLow(wchar_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

// The character of a unit, nothing where it has none to show.
std::string shown(wchar_t unit)
{
    return isControl(unit) || isHigh(unit) || isLow(unit) ? std::string()
                                                          : utf8Of(static_cast<char32_t>(unit));
}

std::string decoded(const std::string& text)
{
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        const Escape escape = escapeAt(text.c_str() + at);
        if (escape.length == 0) {
            result += text[at++];
            continue;
        }
        std::size_t length = escape.length;
        std::string character = shown(escape.unit);
        if (isHigh(escape.unit)) {
            const Escape next = escapeAt(text.c_str() + at + length);
            if (next.length != 0 && isLow(next.unit)) {
                character = utf8Of(
                    static_cast<char32_t>(0x10000 + ((escape.unit - 0xD800) << 10) + (next.unit - 0xDC00)));
                length += next.length;
            }
        }
        result += character.empty() ? text.substr(at, length) : character;
        at += length;
    }
    return result;
}

void appendEscape(std::string& result, wchar_t unit, code_page_id page)
{
    char escape[8];
    wchar_t code = 0;
    const bool isDouble =
        page != CP_UNDEFINED && TvCharMapper::unicodeToCodepage(unit, page, code, false) && code > 0xFF;
    const int length =
        isDouble ? TvCharConverter::getMIFString(code, page, escape, sizeof(escape))
                 : TvCharConverter::getCIFString(static_cast<unsigned short>(unit), escape, sizeof(escape));
    result.append(escape, static_cast<std::size_t>(length));
}

// `page`: of the double-byte escapes, CP_UNDEFINED for none. Whether the text was UTF-8.
bool encodeText(const std::string& text, code_page_id page, std::string& result)
{
    bool isUtf8 = true;
    for (std::size_t at = 0; at < text.size();) {
        const Utf8Sequence sequence = readUtf8(text.data() + at, text.size() - at);
        const bool isCharacter = sequence.length > 0;
        const char32_t value = isCharacter ? sequence.value : static_cast<unsigned char>(text[at]);
        isUtf8 = isUtf8 && isCharacter;
        if (value < 0x80) {
            result += static_cast<char>(value);
        } else if (value < 0x10000) {
            appendEscape(result, static_cast<wchar_t>(value), isCharacter ? page : CP_UNDEFINED);
        } else {
            appendEscape(result, static_cast<wchar_t>(0xD800 + ((value - 0x10000) >> 10)), CP_UNDEFINED);
            appendEscape(result, static_cast<wchar_t>(0xDC00 + (value & 0x3FF)), CP_UNDEFINED);
        }
        at += isCharacter ? static_cast<std::size_t>(sequence.length) : 1;
    }
    return isUtf8;
}

// An escape and where it stands.
struct FoundEscape {
    long line;
    long column;
    std::string text;
    Escape escape;

    bool hasUnit() const { return escape.unit != 0 || !escape.isMif; }
};

// One line an escape: place, escape, code page, unit, character.
void print(const FoundEscape& found)
{
    const Escape& escape = found.escape;
    char unit[16] = "-";
    if (found.hasUnit())
        std::snprintf(unit, sizeof(unit), "U+%04X", static_cast<unsigned int>(escape.unit));
    std::printf("%ld:%ld\t%s\t%s\t%s\t%s\n", found.line, found.column, found.text.c_str(),
                escape.isMif ? codePageName(escape.page).c_str() : "-", unit, shown(escape.unit).c_str());
}

void write(JsonWriter& json, const FoundEscape& found)
{
    const Escape& escape = found.escape;
    json.beginObject();
    json.number("line", found.line);
    json.number("column", found.column);
    json.text("escape", found.text);
    escape.isMif ? json.text("page", codePageName(escape.page)) : json.null("page");
    found.hasUnit() ? json.number("unit", static_cast<int>(escape.unit)) : json.null("unit");
    const std::string character = shown(escape.unit);
    character.empty() ? json.null("character") : json.text("character", character);
    json.end();
}

void findEscapes(const std::string& text, long line, const std::function<void(const FoundEscape&)>& use)
{
    long column = 1;
    for (std::size_t at = 0; at < text.size(); ++column) {
        const Escape escape = escapeAt(text.c_str() + at);
        if (escape.length == 0) {
            const Utf8Sequence sequence = readUtf8(text.data() + at, text.size() - at);
            at += sequence.length > 0 ? static_cast<std::size_t>(sequence.length) : 1;
            continue;
        }
        use({line, column, text.substr(at, escape.length), escape});
        at += escape.length;
        column += static_cast<long>(escape.length) - 1;
    }
}

struct EscapeOptions {
    std::vector<std::string> texts;
    std::string page;
};

// Calls `use` for each text with its number: the arguments, or the lines of standard input.
void forEachText(const std::vector<std::string>& texts,
                 const std::function<void(const std::string&, long)>& use)
{
    long number = 0;
    for (const std::string& text : texts)
        use(text, ++number);
    for (std::string line; texts.empty() && readLine(line);)
        use(line, ++number);
}

void printBytes(const std::string& bytes)
{
    std::fwrite(bytes.data(), 1, bytes.size(), stdout);
    std::fputc('\n', stdout);
}

void runEncode(const EscapeOptions& options, Shared& shared)
{
    initializeMapper(shared);
    code_page_id page = CP_UNDEFINED;
    if (!options.page.empty()) {
        page = parseCodePage(options.page);
        if (!TvCharConverter::isMIFCodepage(page))
            throw CommandError(codePageName(page) + " has no escapes of its own", kExitUsage);
        requireTables(page);
    }
    forEachText(options.texts, [&](const std::string& text, long number) {
        std::string result;
        if (!encodeText(text, page, result)) {
            complain((options.texts.empty() ? "standard input, line " : "argument ") +
                     std::to_string(number) + ": not all of it is UTF-8");
            shared.status = kExitFailed;
        }
        printBytes(result);
    });
}

void runList(const EscapeOptions& options, Shared& shared)
{
    initializeMapper(shared);
    JsonWriter json;
    const auto show = [&](const FoundEscape& found) { shared.json ? write(json, found) : print(found); };
    json.beginArray();
    forEachText(options.texts,
                [&](const std::string& text, long number) { findEscapes(text, number, show); });
    json.end();
    if (shared.json)
        json.print();
}

CLI::App* addSubcommand(CLI::App& escapes, Shared& shared, EscapeOptions& options, const char* name,
                        const char* description, const char* example)
{
    CLI::App* command = escapes.add_subcommand(name, description);
    command->add_option("TEXT", options.texts, "Texts (else one a line from standard input)");
    addMapOption(*command, shared);
    command->footer(std::string("Example:\n  ") + example);
    return command;
}

} // namespace

void addEscapes(CLI::App& app, Shared& shared)
{
    static EscapeOptions options;
    CLI::App* escapes =
        app.add_subcommand("escapes", "Write, read and find inline escapes such as \\U+00B0 and \\M+1955C");
    escapes->require_subcommand(1);
    escapes->footer("Example:\n  tvbase escapes decode '90\\U+00B0'      90°");

    CLI::App* encode =
        addSubcommand(*escapes, shared, options, "encode", "Write what is not ASCII as escapes",
                      "tvbase escapes encode -p 932 '表 Ø40'");
    encode
        ->add_option("-p,--page", options.page,
                     "Write the double-byte characters of this code page as \\M+ escapes")
        ->type_name("CP");
    encode->callback([&shared] { runEncode(options, shared); });

    CLI::App* decode = addSubcommand(*escapes, shared, options, "decode", "Write the characters of escapes",
                                     "tvbase escapes decode '\\U+00D840' '\\M+1955C'");
    decode->callback([&shared] {
        initializeMapper(shared);
        forEachText(options.texts, [](const std::string& text, long) { printBytes(decoded(text)); });
    });

    CLI::App* list = addSubcommand(
        *escapes, shared, options, "list",
        "Show the escapes of a text: line and column, escape, code page, UTF-16 unit, character",
        "tvbase escapes list < notes.txt");
    addJsonOption(*list, shared);
    list->callback([&shared] { runList(options, shared); });
}
