// tvbase scan - the input engine.
#include "Command.h"
#include "WideArguments.h"

#include "TvFormat.h"
#include "TvScan.h"

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cstring>
#include <vector>

namespace {

constexpr std::size_t kTargets = 16;

// One conversion that stores a value.
struct Target {
    wchar_t letter;
    bool isLong;
    bool isShort;
    std::size_t width; // of characters
};

// The conversions of a format that take a pointer, in order.
std::vector<Target> targetsOf(const std::wstring& format)
{
    std::vector<Target> targets;
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] != L'%')
            continue;
        const auto at = [&](std::size_t n) { return n < format.size() ? format[n] : L'\0'; };
        if (at(++i) == L'%')
            continue;
        const bool suppressed = at(i) == L'*';
        i += suppressed;
        const std::size_t widthStart = i;
        while (at(i) >= L'0' && at(i) <= L'9')
            ++i;
        const std::wstring width = format.substr(widthStart, std::min<std::size_t>(i - widthStart, 9));
        Target target{};
        target.width = width.empty() ? 1 : std::stoul(width);
        target.isShort = at(i) == L'h';
        target.isLong = at(i) == L'l';
        i += target.isShort || target.isLong;
        target.letter = at(i);
        if (std::wstring(L"DOXBEFG").find(target.letter) != std::wstring::npos && target.letter) {
            target.letter += L'a' - L'A';
            target.isLong = true;
        }
        const bool stores =
            target.letter && std::wstring(L"diuoxbefgscn").find(target.letter) != std::wstring::npos;
        if (stores && (!suppressed || target.letter == L'n'))
            targets.push_back(target);
    }
    return targets;
}

// What a conversion stored, in a buffer that is larger than any text.
using Slot = std::vector<wchar_t>;

template<class T>
T valueIn(const Slot& slot)
{
    T value;
    std::memcpy(&value, slot.data(), sizeof(value));
    return value;
}

std::wstring shown(const Target& target, const Slot& slot)
{
    wchar_t text[64];
    switch (target.letter) {
    case L's':
        return slot.data();
    case L'c':
        return std::wstring(slot.data(), target.width);
    case L'e':
    case L'f':
    case L'g': {
        std::swprintf(text, 64, L"%.*g", target.isLong ? 17 : 9,
                      target.isLong ? valueIn<double>(slot) : double{valueIn<float>(slot)});
        return text;
    }
    default: {
        const long long value = target.letter == L'n' ? valueIn<int>(slot)
                                : target.isLong       ? valueIn<long long>(slot)
                                : target.isShort      ? valueIn<short>(slot)
                                                      : valueIn<int>(slot);
        return std::to_wstring(value);
    }
    }
}

int scan(const std::wstring& text, const std::wstring& format, std::vector<Slot>& slots)
{
    const auto call = [](const wchar_t* from, const wchar_t* by, ...) {
        va_list args;
        va_start(args, by);
        const int result = InputWithFormat(false, from, by, &args);
        va_end(args);
        return result;
    };
    return call(text.c_str(), format.c_str(), slots[0].data(), slots[1].data(), slots[2].data(),
                slots[3].data(), slots[4].data(), slots[5].data(), slots[6].data(), slots[7].data(),
                slots[8].data(), slots[9].data(), slots[10].data(), slots[11].data(), slots[12].data(),
                slots[13].data(), slots[14].data(), slots[15].data());
}

// Prints what was stored, a tab between. Whether every conversion stored its value.
bool scanLine(const std::string& line, const std::wstring& format, const std::vector<Target>& targets)
{
    const std::wstring text = wideArgument(line);
    constexpr wchar_t untouched = 0x5A5A5A5A;
    std::vector<Slot> slots(kTargets, Slot(text.size() + 8, untouched));
    const int result = scan(text, format, slots);
    std::wstring output;
    int left = std::max(result, 0);
    bool complete = true;
    for (std::size_t i = 0; i < targets.size(); ++i) {
        const bool counts = targets[i].letter != L'n';
        if (counts ? left == 0 : slots[i][0] == untouched) {
            complete = complete && !counts;
            continue;
        }
        left -= counts;
        output += (output.empty() ? L"" : L"\t") + shown(targets[i], slots[i]);
    }
    printLine(output);
    return complete && result >= 0;
}

// A format, and perhaps a text.
int showScans(const std::vector<std::string>& arguments)
{
    const std::wstring format = wideArgument(arguments[0]);
    const std::vector<Target> targets = targetsOf(format);
    if (targets.size() > kTargets)
        throw CommandError("more than " + std::to_string(kTargets) + " conversions", kExitUsage);
    if (arguments.size() > 1)
        return scanLine(arguments[1], format, targets) ? 0 : kExitFailed;
    int status = 0;
    std::string line;
    while (readLine(line)) {
        if (!scanLine(line, format, targets))
            status = kExitFailed;
    }
    return status;
}

} // namespace

void addScan(CLI::App& app, Shared& shared)
{
    CLI::App* const command =
        app.add_subcommand("scan", "Read values from text as the input engine does: scan FORMAT [TEXT]");
    command->prefix_command(); // everything is an argument, also what begins with a minus sign
    command->footer("Prints the values of the text, or of each line of standard input, on one line,\n"
                    "tabs between. Exit status 1 when a conversion stored nothing.\n\n"
                    "Example:\n  tvbase scan '%d,%lf' '3, 12.5'");
    command->callback([command, &shared] {
        const std::vector<std::string> arguments = command->remaining();
        if (arguments.empty() || arguments.size() > 2)
            throw CommandError("scan: a format and at most one text", kExitUsage);
        shared.status = showScans(arguments);
    });
}
