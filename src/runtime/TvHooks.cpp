#include "TvHooks.h"

#include "runtime/TvPlatformCalls.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>

namespace {

void printFailedAssertion(const wchar_t*, const wchar_t* file, int line)
{
    std::wprintf(L"\nTvAsserter failed-- %ls:%d ", file ? file : L"", line);
}

} // namespace

CrashRecorder::~CrashRecorder() = default;

constinit CrashRecorder* gpOrnaCrashRecorder = nullptr;

void ornaSetCrashRecorder(CrashRecorder* recorder) { gpOrnaCrashRecorder = recorder; }

CrashRecorder* ornaGetCrashRecorder() { return gpOrnaCrashRecorder; }

constinit TvAsserter::AssertFunction TvAsserter::sm_pfnAssert = printFailedAssertion;

constinit TvTracer::TraceFunctionA TvTracer::sm_pfnTraceA = TvTracer::defaultTraceA;
constinit TvTracer::TraceFunctionW TvTracer::sm_pfnTraceW = TvTracer::defaultTraceW;

TvTracer::TvTracer(const char* format, ...)
{
    if (!format)
        return;
    std::va_list args;
    va_start(args, format);
    std::vprintf(format, args);
    va_end(args);
}

TvTracer::TvTracer(const wchar_t* format, ...)
{
    std::va_list args;
    va_start(args, format);
    const int length = _vscwprintf(format, args);
    va_end(args);
    if (length < 0)
        return;
    const auto size = (static_cast<std::size_t>(length) + 1) * sizeof(wchar_t);
    const auto text = static_cast<wchar_t*>(std::malloc(size));
    if (!text) {
        TvDetail::reportMessage(L"Out of memory!!");
        return;
    }
    va_start(args, format);
    vswprintf(text, format, args);
    va_end(args);
    if (sm_pfnTraceW)
        sm_pfnTraceW(text);
    std::free(text);
}

void TvTracer::setTraceFunctionA(TraceFunctionA sink) { sm_pfnTraceA = sink; }

void TvTracer::setTraceFunctionW(TraceFunctionW sink) { sm_pfnTraceW = sink; }

// The text has always been the format of printf, so callers double their percent signs;
// there are no arguments, so a single one stands for itself.
void TvTracer::defaultTraceA(const char* text)
{
    while (text && *text) {
        const char* pair = std::strstr(text, "%%");
        if (!pair) {
            std::printf("%s", text);
            return;
        }
        std::fwrite(text, 1, static_cast<std::size_t>(pair + 1 - text), stdout);
        text = pair + 2;
    }
}

void TvTracer::defaultTraceW(const wchar_t* text)
{
    while (text && *text) {
        const wchar_t* pair = std::wcsstr(text, L"%%");
        if (!pair) {
            std::wprintf(L"%ls", text);
            return;
        }
        for (; text <= pair; ++text)
            std::putwchar(*text);
        text = pair + 2;
    }
}
