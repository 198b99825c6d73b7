// Takes the fields of a text line apart, whatever the locale of the process.
#include <TvOsBase.h>

#include <cstdarg>
#include <cstdio>

namespace {

// The engine takes a va_list; a program wraps it once.
int scan(const wchar_t* text, const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    const int stored = InputWithFormat(false, text, format, &args);
    va_end(args);
    return stored;
}

} // namespace

int main()
{
    wchar_t layer[16];
    int color = 0;
    double width = 0; // upper-case F: a double, where f is a float
    const int stored = scan(L"walls 7 0.25", L"%15s %d %F", layer, &color, &width);
    std::printf("%d fields: %ls, %d, %g\n", stored, layer, color, width);

    // A mismatch ends the call with what was stored so far.
    std::printf("%d field\n", scan(L"doors red 0.5", L"%15s %d %F", layer, &color, &width));

    // Nothing but white space is -1, not 0.
    std::printf("%d\n", scan(L"   ", L"%d", &color));
}
