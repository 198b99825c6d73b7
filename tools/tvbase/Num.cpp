// tvbase num - numbers to text and back, correctly rounded.
#include "Command.h"
#include "NumberArguments.h"
#include "WideArguments.h"

#include "TvGdImpl.h"
#include "TvNumber.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>
#include <vector>

namespace {

constexpr int kMostDigits = 2000;
constexpr std::size_t kTextRoom = kMostDigits + 400; // the largest double has 309 digits

struct NumOptions {
    std::vector<std::string> texts;
    bool fixed = false;
    bool exponent = false;
    bool general = false;
    int precision = 6;
    bool precisionGiven = false;
};

// The shortest digits that read back, without an exponent where 17 digits reach.
std::string shortest(double value)
{
    if (!std::isfinite(value))
        return std::isnan(value) ? "NaN" : value < 0 ? "-Infinity" : "Infinity";
    int point, sign;
    char* digits = TvGdImpl::dtoa(value, 0, 0, &point, &sign, nullptr);
    if (!digits)
        throw std::bad_alloc();
    char text[64];
    CvtFormatter<char>::formatG(text, digits, static_cast<int>(std::strlen(digits)), 17, point, sign, 'e', 0);
    TvGdImpl::freedtoa(digits);
    return text;
}

std::string formatted(double value, const NumOptions& options)
{
    char text[kTextRoom];
    if (options.fixed)
        tvFltToF(text, value, options.precision);
    else if (options.exponent)
        tvFltToE(text, value, options.precision, 'e');
    else if (options.general)
        tvFltToG(text, value, options.precision, 'e', 0);
    else
        return shortest(value);
    return text;
}

int formatNumbers(const NumOptions& options)
{
    if (options.precisionGiven && !options.fixed && !options.exponent && !options.general)
        throw CommandError("--precision belongs to --fixed, --exponent or --general", kExitUsage);
    return forEachNumber(options.texts,
                         [&](double value) { std::printf("%s\n", formatted(value, options).c_str()); });
}

void showReading(const std::string& text, Shared& shared)
{
    char* end = nullptr;
    const double value = tvStrToD(text.c_str(), &end);
    if (end == text.c_str()) {
        complain("\"" + text + "\" is no number");
        shared.status = kExitFailed;
        return;
    }
    char exact[64];
    tvFltToG(exact, value, 17, 'e', 0);
    std::printf("%s\t%s\t%016llX\t%td\t%s\n", text.c_str(), exact,
                static_cast<unsigned long long>(std::bit_cast<std::uint64_t>(value)), end - text.c_str(),
                shortest(value).c_str());
}

void showReadings(const std::vector<std::string>& texts, Shared& shared)
{
    for (const std::string& text : texts)
        showReading(text, shared);
    for (std::string line; texts.empty() && readLine(line);)
        showReading(line, shared);
}

void addFormat(CLI::App& num, Shared& shared, NumOptions& options)
{
    CLI::App* command =
        num.add_subcommand("format", "Write numbers anew: the shortest text that reads back, or as told");
    CLI::Option* fixed = command->add_flag("-f,--fixed", options.fixed, "Places behind the point: 1.500000");
    CLI::Option* exponent =
        command->add_flag("-e,--exponent", options.exponent, "One digit and an exponent: 1.500000e+000");
    CLI::Option* general = command->add_flag("-g,--general", options.general, "Significant digits: 1.5");
    fixed->excludes(exponent)->excludes(general);
    exponent->excludes(general);
    CLI::Option* precision =
        command->add_option("-p,--precision", options.precision, "Places or digits of -f, -e and -g")
            ->check(CLI::Range(0, kMostDigits))
            ->capture_default_str();
    addNumbers(*command, "NUMBER", options.texts, "Numbers (else one a line from standard input)");
    command->footer("Example:\n  tvbase num format -f --precision 3 -- 2.0005 -1e2");
    command->callback([&shared, &options, precision] {
        options.precisionGiven = precision->count() > 0;
        shared.status = formatNumbers(options);
    });
}

void addParse(CLI::App& num, Shared& shared, NumOptions& options)
{
    CLI::App* command = num.add_subcommand(
        "parse", "Show what a text reads as: text, 17 digits, bits, characters used, shortest text");
    addNumbers(*command, "TEXT", options.texts, "Texts (else one a line from standard input)");
    command->footer("Example:\n  tvbase num parse 0.1 12.5mm");
    command->callback([&shared, &options] { showReadings(options.texts, shared); });
}

} // namespace

void addNum(CLI::App& app, Shared& shared)
{
    static NumOptions format, parse;
    CLI::App* num = app.add_subcommand("num", "Numbers to text and back, correctly rounded");
    num->require_subcommand(1);
    num->footer("Example:\n  tvbase num format 0.1000000000000000055511");
    addFormat(*num, shared, format);
    addParse(*num, shared, parse);
}
