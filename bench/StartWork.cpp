// The first things that a program does with the library, each timed once; cold-start runs this
// program several times. Prints "name nanoseconds" a line.
#include "ColdStart.h"
#include "MapFile.h"

#include "TvAlloc.h"
#include "TvFormat.h"
#include "TvNumber.h"

#include <algorithm>
#include <cstdarg>
#include <cstring>

namespace {

template<class Work>
void timed(const char* name, Work work)
{
    const long long begin = nowInNanoseconds();
    work();
    std::printf("%s %lld\n", name, nowInNanoseconds() - begin);
}

// Ten thousand objects, each written; and how long the slowest took.
template<void* (*take)(std::size_t)>
void smallObjects(const char* all, const char* slowest)
{
    long long worst = 0;
    const long long begin = nowInNanoseconds();
    long long last = begin;
    for (int i = 0; i < 10000; ++i) {
        *static_cast<int*>(take(32)) = i;
        const long long now = nowInNanoseconds();
        worst = std::max(worst, now - last);
        last = now;
    }
    std::printf("%s %lld\n%s %lld\n", all, last - begin, slowest, worst);
}

void convert(code_page_id page)
{
    const char text[] = "\xB0\xA1 text";
    TvVector<wchar_t> wide;
    TvCharMapper::multiByteToWideChar(page, text, static_cast<int>(std::strlen(text)), wide);
    if (wide.length() < 2)
        fail("nothing was converted");
}

int writeText(wchar_t* out, const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    const int length = OutputWithFormat(&out, 64, format, &args);
    va_end(args);
    return length;
}

} // namespace

int main()
{
    smallObjects<_tvMalloc>("first_10000_objects", "slowest_of_them");
    smallObjects<std::malloc>("first_10000_of_malloc", "slowest_of_malloc");
    timed("initialize", readMapFile);
    timed("first_1252", [] { convert(CP_ANSI_1252); });
    timed("first_932", [] { convert(CP_ANSI_932); });
    timed("first_936", [] { convert(CP_ANSI_936); });
    timed("first_949", [] { convert(CP_ANSI_949); });
    timed("first_950", [] { convert(CP_ANSI_950); });
    timed("first_number", [] {
        char text[64];
        tvFltToE(text, 1.0 / 3, 16, 'e');
    });
    timed("first_format", [] {
        wchar_t text[64];
        writeText(text, L"%d %s %.6f", 42, L"text", 1.0 / 3);
    });
    return 0;
}
