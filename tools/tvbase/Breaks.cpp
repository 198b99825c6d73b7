// tvbase breaks - line-break classes and punctuation kinds of a text.
#include "Command.h"
#include "Json.h"
#include "LineBreaks.h"
#include "Utf8Sequence.h"
#include "WideArguments.h"

#include "OrCodePage.h"
#include "TvCharCategory.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

// By class number.
const char* const kClassNames[] = {
    "OP opening",    "CL closing",     "QU quotation", "GL no break", "NS no start",   "EX exclamation",
    "SY slash",      "IS comma, stop", "PR prefix",    "PO postfix",  "NU digit",      "AL letter",
    "ID ideograph",  "IN ellipsis",    "HY hyphen",    "BA after",    "BB before",     "B2 around",
    "ZW zero width", "CM combining",   "WJ joiner",    "CR return",   "LF line feed",  "NL next line",
    "BK line end",   "XX private",     "SP space",     "CB object",   "SA dictionary",
};

constexpr char32_t kFirstPrintable = 0x21;
constexpr char32_t kBasicPlaneEnd = 0x10000; // class 19 holds more than marks beyond

// False when `utf8` is no UTF-8.
bool readCharacters(const std::string& utf8, std::u32string& text)
{
    for (std::size_t i = 0; i < utf8.size();) {
        const Utf8Sequence sequence = readUtf8(utf8.data() + i, utf8.size() - i);
        if (sequence.length <= 0)
            return false;
        text += sequence.value;
        i += static_cast<std::size_t>(sequence.length);
    }
    return true;
}

std::vector<const char*> punctuationOf(char32_t c)
{
    const TvCharCategory& categories = TvCharCategory::s_instance;
    std::vector<const char*> kinds;
    const auto add = [&](const TvVector<wchar_t>& list, const char* kind) {
        if (std::binary_search(list.begin(), list.end(), static_cast<wchar_t>(c)))
            kinds.push_back(kind);
    };
    add(categories.leftPuncts(), "left");
    add(categories.normalPuncts(), "normal");
    add(categories.rightPuncts(), "right");
    add(categories.quotationPuncts(), "quotation");
    return kinds;
}

std::string joined(const std::vector<const char*>& kinds)
{
    std::string text;
    for (const char* const kind : kinds)
        text += (text.empty() ? "" : "+") + std::string(kind);
    return text.empty() ? "-" : text;
}

// Null where no line may end.
const char* nameOf(LineBreak lineBreak)
{
    return lineBreak == LineBreak::Must ? "must" : lineBreak == LineBreak::May ? "may" : nullptr;
}

// The character as it can stand in a table; empty for what shows nothing.
std::string shownCharacter(char32_t c, int breakClass)
{
    if (c < kFirstPrintable || (c >= 0x7F && c < 0xA0))
        return "";
    return breakClass == kCombiningClass && c < kBasicPlaneEnd ? utf8OfMark(c) : utf8Of(c);
}

void printTable(const std::u32string& text)
{
    std::printf("unit      class              break  punctuation      character\n");
    const std::vector<LineBreak> breaks = findLineBreaks(text);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int breakClass = OrCodePage::LineBreakClass(static_cast<wchar_t>(text[i]));
        const char* const lineBreak = nameOf(breaks[i]);
        std::printf("U+%-6.4X  %2d %-14s  %-5s  ", static_cast<unsigned>(text[i]), breakClass,
                    kClassNames[breakClass], lineBreak ? lineBreak : "-");
        const std::string shown = shownCharacter(text[i], breakClass);
        std::printf(shown.empty() ? "%s\n" : "%-15s  %s\n", joined(punctuationOf(text[i])).c_str(),
                    shown.c_str());
    }
}

void writeTable(JsonWriter& json, const std::u32string& text)
{
    json.beginArray();
    const std::vector<LineBreak> breaks = findLineBreaks(text);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int breakClass = OrCodePage::LineBreakClass(static_cast<wchar_t>(text[i]));
        json.beginObject();
        json.number("unit", static_cast<unsigned>(text[i]));
        json.number("class", breakClass);
        json.text("className", std::string_view(kClassNames[breakClass]).substr(0, 2));
        const char* const lineBreak = nameOf(breaks[i]);
        lineBreak ? json.text("break", lineBreak) : json.null("break");
        const std::vector<const char*> kinds = punctuationOf(text[i]);
        kinds.empty() ? json.null("punctuation") : json.text("punctuation", joined(kinds));
        json.end();
    }
    json.end();
}

void printMarked(const std::u32string& text)
{
    const std::vector<LineBreak> breaks = findLineBreaks(text);
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (breaks[i] != LineBreak::Must)
            std::fputs(utf8Of(text[i]).c_str(), stdout);
        else if (i + 1 < text.size())
            std::fputc('\n', stdout);
        if (breaks[i] == LineBreak::May)
            std::fputc('|', stdout);
    }
    std::fputc('\n', stdout);
}

enum class Form { Table, Json, Marked };

struct BreaksOptions {
    bool marked = false;
    std::vector<std::string> texts;
};

// Each text by itself; one that cannot be read does not keep the others back.
class TextPrinter {
public:
    explicit TextPrinter(Form form) : m_form(form) { m_json.beginArray(); }

    void print(const std::string& utf8)
    {
        std::u32string text;
        if (!readCharacters(utf8, text)) {
            complain("text " + std::to_string(m_texts + 1) + " is not UTF-8");
            m_status = kExitFailed;
            m_json.null(nullptr);
        } else if (m_form == Form::Marked) {
            printMarked(text);
        } else if (m_form == Form::Json) {
            writeTable(m_json, text);
        } else {
            std::fputs(m_texts != 0 ? "\n" : "", stdout);
            printTable(text);
        }
        ++m_texts;
    }
    // Ends the output; the exit status.
    int finish()
    {
        m_json.end();
        if (m_form == Form::Json)
            m_json.print();
        return m_status;
    }

private:
    Form m_form;
    JsonWriter m_json; // an array for each text, null for one that cannot be read
    long m_texts = 0;
    int m_status = 0;
};

int showBreaks(const BreaksOptions& options, bool asJson)
{
    TextPrinter printer(asJson ? Form::Json : options.marked ? Form::Marked : Form::Table);
    for (const std::string& text : options.texts)
        printer.print(text);
    for (std::string line; options.texts.empty() && readLine(line);)
        printer.print(line);
    return printer.finish();
}

} // namespace

void addBreaks(CLI::App& app, Shared& shared)
{
    const auto options = std::make_shared<BreaksOptions>();
    CLI::App* const command = app.add_subcommand(
        "breaks", "Show line-break classes and punctuation of a text, and where it may break");
    CLI::Option* const marked =
        command->add_flag("-m,--marked", options->marked, "The text alone, with | where a line may end");
    addJsonOption(*command, shared);
    command->get_option("--json")->excludes(marked);
    command->add_option("TEXT", options->texts, "Texts in UTF-8 (else the lines of standard input)");
    command->footer("Example:\n  tvbase breaks '(a-b) 12%'\n"
                    "  tvbase breaks --marked 'Fire door, self-closing'      Fire |door, |self-|closing");
    command->callback([options, &shared] { shared.status = showBreaks(*options, shared.json); });
}
