// tvbase format - the output engine.
#include "Command.h"
#include "WideArguments.h"

#include "TvFormat.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <vector>

namespace {

constexpr std::size_t kLargestText = 1 << 22;

// Gives the arguments out, in sequence or by number, in the type that a conversion asks for.
class Arguments {
public:
    explicit Arguments(const std::vector<std::string>& texts) : m_texts(texts) {}

    // `number` counts from 1; 0 is the next one.
    const std::string& text(std::size_t number)
    {
        const std::size_t index = number ? number - 1 : m_next++;
        if (index >= m_texts.size())
            throw CommandError("there is no argument " + std::to_string(index + 1), kExitUsage);
        m_used = std::max(m_used, index + 1);
        return m_texts[index];
    }

    long long integer(std::size_t number)
    {
        const std::string& argument = text(number);
        char* end = nullptr;
        errno = 0;
        const long long value = std::strtoll(argument.c_str(), &end, 0);
        if (argument.empty() || *end || errno == ERANGE)
            throw CommandError("\"" + argument + "\" is no integer", kExitUsage);
        return value;
    }

    double real(std::size_t number)
    {
        const std::string& argument = text(number);
        double value = 0;
        if (!parseNumber(argument, value))
            throw CommandError("\"" + argument + "\" is no number", kExitUsage);
        return value;
    }

    void expectAllUsed() const
    {
        if (m_used < m_texts.size())
            throw CommandError("no conversion takes argument " + std::to_string(m_used + 1), kExitUsage);
    }

private:
    const std::vector<std::string>& m_texts;
    std::size_t m_next = 0;
    std::size_t m_used = 0;
};

template<class... Values>
std::wstring formatValues(const std::wstring& format, Values... values)
{
    for (std::vector<wchar_t> buffer(256); buffer.size() <= kLargestText; buffer.resize(buffer.size() * 4)) {
        const int length = FormatUtil::outputStringWithFormat(buffer.data(), static_cast<int>(buffer.size()),
                                                              format.c_str(), values...);
        if (length >= 0)
            return std::wstring(buffer.data(), static_cast<std::size_t>(length));
    }
    throw CommandError("the text is too long");
}

// One conversion with the counts of its stars.
template<class... Values>
std::wstring formatCounted(const std::wstring& format, const std::vector<int>& counts, Values... values)
{
    switch (counts.size()) {
    case 0:
        return formatValues(format, values...);
    case 1:
        return formatValues(format, counts[0], values...);
    case 2:
        return formatValues(format, counts[0], counts[1], values...);
    default:
        return formatValues(format, counts[0], counts[1], counts[2], values...);
    }
}

// Runs a format conversion by conversion, each written with its own arguments.
class Formatter {
public:
    Formatter(const std::wstring& format, const std::vector<std::string>& texts)
        : m_format(format), m_arguments(texts),
          m_numbered(FormatUtil::isDefineSelfParaIndex(nullptr, format.c_str()))
    {
    }

    std::wstring run()
    {
        std::wstring result;
        while (m_at < m_format.size()) {
            if (m_format[m_at] != L'%')
                result += m_format[m_at++];
            else
                result += conversion();
        }
        m_arguments.expectAllUsed();
        return result;
    }

private:
    wchar_t peek() const { return m_at < m_format.size() ? m_format[m_at] : L'\0'; }
    bool peekDigit() const { return peek() >= L'0' && peek() <= L'9'; }

    std::size_t number()
    {
        std::size_t value = 0;
        const bool written = peekDigit();
        for (; peekDigit(); ++m_at)
            value = std::min<std::size_t>(value * 10 + static_cast<std::size_t>(peek() - L'0'), 1000000);
        if (written && value == 0)
            throw CommandError("argument numbers count from 1", kExitUsage);
        return value ? value : 1;
    }

    // The number of an argument, 0 in a format without numbers.
    std::size_t argumentNumber()
    {
        if (!m_numbered)
            return 0;
        const std::size_t value = number();
        if (peek() == L'$')
            ++m_at;
        return value;
    }

    void take(std::wstring& spec) { spec += m_format[m_at++]; }

    void countOrStar(std::wstring& spec, std::vector<int>& counts)
    {
        if (peek() == L'*') {
            take(spec);
            counts.push_back(static_cast<int>(m_arguments.integer(argumentNumber())));
            return;
        }
        while (peekDigit())
            take(spec);
    }

    // Each sign once, in either order, then a zero; whatever else stands there is the letter.
    void flags(std::wstring& spec)
    {
        const wchar_t first = peek();
        if (first == L'-' || first == L'+') {
            take(spec);
            if (peek() == (first == L'-' ? L'+' : L'-'))
                take(spec);
        }
        if (peek() == L'0')
            take(spec);
    }

    std::wstring conversion()
    {
        std::wstring spec;
        std::vector<int> counts;
        take(spec);
        const std::size_t valueNumber = argumentNumber();
        flags(spec);
        countOrStar(spec, counts);
        if (peek() == L'.') {
            take(spec);
            countOrStar(spec, counts);
        }
        if (peek() == L'l' || peek() == L'L' || peek() == L'h')
            take(spec);
        const wchar_t letter = peek();
        if (!letter)
            return formatValues(spec);
        take(spec);
        return value(spec, letter, counts, valueNumber);
    }

    std::wstring value(std::wstring& spec, wchar_t letter, std::vector<int>& counts, std::size_t argument)
    {
        const std::wstring letters(1, letter);
        if (letters.find_first_of(L"diuoxpb") == 0)
            return formatCounted(spec, counts, static_cast<int>(m_arguments.integer(argument)));
        if (letters.find_first_of(L"DIUOXB") == 0)
            return formatCounted(spec, counts, m_arguments.integer(argument));
        if (letters.find_first_of(L"fegG") == 0)
            return formatCounted(spec, counts, m_arguments.real(argument));
        if (letter == L's')
            return formatCounted(spec, counts, wideArgument(m_arguments.text(argument)).c_str());
        if (letter == L'c') {
            const std::wstring text = wideArgument(m_arguments.text(argument));
            return formatCounted(spec, counts, text.empty() ? 0 : int{text[0]});
        }
        if (letter != L'q' && letter != L'Q')
            return formatCounted(spec, counts);
        if (peek() == L'*') {
            take(spec);
            counts.push_back(static_cast<int>(m_arguments.integer(m_numbered ? number() : 0)));
        } else if (peekDigit()) {
            take(spec);
        } else {
            return formatCounted(spec, counts);
        }
        return formatCounted(spec, counts, m_arguments.real(argument));
    }

    const std::wstring& m_format;
    Arguments m_arguments;
    bool m_numbered;
    std::size_t m_at = 0;
};

} // namespace

void addFormat(CLI::App& app, Shared&)
{
    CLI::App* const command =
        app.add_subcommand("format", "Format arguments as the output engine does: format FORMAT [ARG...]");
    command->prefix_command(); // everything is an argument, also what begins with a minus sign
    command->footer("One argument for each conversion and each *.\n\n"
                    "Example:\n  tvbase format '%s: %.2f' wall 12.5      wall: 12.50\n"
                    "  tvbase format '%2$s %1$d' 7 door         door 7");
    command->callback([command] {
        std::vector<std::string> arguments = command->remaining();
        if (arguments.empty())
            throw CommandError("format: which format?", kExitUsage);
        const std::wstring format = wideArgument(arguments.front());
        arguments.erase(arguments.begin());
        printLine(Formatter(format, arguments).run());
    });
}
