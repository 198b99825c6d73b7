// tvbase num - numbers to text and back, correctly rounded.
#include "Command.h"
#include "Json.h"
#include "WideArguments.h"

#include "TvGdImpl.h"
#include "TvNumber.h"

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
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

// What a text reads as.
struct Reading {
    std::string text;
    std::string exact; // 17 digits
    std::string bits;  // of the double, hexadecimal
    std::ptrdiff_t used;
    std::string shortestText;
};

void readText(const std::string& text, Shared& shared, const std::function<void(const Reading&)>& use)
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
    char bits[17];
    std::snprintf(bits, sizeof(bits), "%016llX",
                  static_cast<unsigned long long>(std::bit_cast<std::uint64_t>(value)));
    use({text, exact, bits, end - text.c_str(), shortest(value)});
}

void print(const Reading& reading)
{
    std::printf("%s\t%s\t%s\t%td\t%s\n", reading.text.c_str(), reading.exact.c_str(), reading.bits.c_str(),
                reading.used, reading.shortestText.c_str());
}

void write(JsonWriter& json, const Reading& reading)
{
    json.beginObject();
    json.text("text", reading.text);
    json.text("exact", reading.exact);
    json.text("bits", reading.bits);
    json.number("used", reading.used);
    json.text("shortest", reading.shortestText);
    json.end();
}

void showReadings(const std::vector<std::string>& texts, Shared& shared)
{
    JsonWriter json;
    const auto show = [&](const Reading& reading) { shared.json ? write(json, reading) : print(reading); };
    json.beginArray();
    for (const std::string& text : texts)
        readText(text, shared, show);
    for (std::string line; texts.empty() && readLine(line);)
        readText(line, shared, show);
    json.end();
    if (shared.json)
        json.print();
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
        command->add_option("-p,--precision", options.precision, "Places or digits of -f, -e and -g (6)")
            ->type_name("N")
            ->check(CLI::Range(0, kMostDigits));
    command->add_option("NUMBER", options.texts, "Numbers (else one a line from standard input)");
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
    command->add_option("TEXT", options.texts, "Texts (else one a line from standard input)");
    addJsonOption(*command, shared);
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
