// TvHooks.h - what a host may replace: crash recorder, assertion handler, trace sinks.
//
// Install the hooks once, before other work starts. Without a crash recorder a report
// has no visible effect at all.
#ifndef TV_HOOKS_H
#define TV_HOOKS_H

#include "TvErrorStatus.h"
#include "TvExport.h"

#include <new>

/// Receives every fault that the library reports before it goes on.
///
/// The object passed to record() is deleted as soon as record() returns: copy what is
/// needed. A record() that throws ends the reporting operation there and keeps the object
/// (so it may throw that very pointer, cast to TvErrorStatus*); allocators and vectors let
/// only a TvErrorStatus* through, anything else ends the process.
///
/// **Errors**: none. **Memory**: the recorder stays the host's and must outlive its installation.
/// **Threads**: called on the thread that met the fault.
///
///     class Journal : public CrashRecorder {
///     public:
///         void record(TvException* fault) override { m_lines.push_back(fault->description()); }
///     private:
///         std::vector<std::wstring> m_lines;
///     };
///     Journal journal;
///     ornaSetCrashRecorder(&journal);
class TV_OSBASE_API CrashRecorder {
public:
    /// Does not remove the installed recorder: call ornaSetCrashRecorder(nullptr) before.
    virtual ~CrashRecorder();
    /// Is told of a fault. `fault` is never null and is gone when the call has returned.
    virtual void record(TvException* fault) = 0;
};

/// The installed recorder; null at load. Change it with ornaSetCrashRecorder().
extern TV_OSBASE_API CrashRecorder* gpOrnaCrashRecorder;

/// Installs `recorder`, which is not owned; null removes the installed one.
TV_OSBASE_API void ornaSetCrashRecorder(CrashRecorder* recorder);

/// The installed recorder, or null.
TV_OSBASE_API CrashRecorder* ornaGetCrashRecorder();

/// The assertion hook. The library never calls it, it is there for its clients.
///
/// **Errors**, **Memory**: none. **Threads**: a plain pointer, set it before other work starts.
///
///     if (!ready)
///         TvAsserter::sm_pfnAssert(L"ready", L"plot.cpp", 31);
class TV_OSBASE_API TvAsserter {
public:
    /// Gets the text of what failed and where it stands; all three are the caller's.
    using AssertFunction = void (*)(const wchar_t* expression, const wchar_t* file, int line);

    /// The handler; at load one that prints "\nTvAsserter failed-- <file>:<line> " to
    /// standard output and ignores `expression`.
    static AssertFunction sm_pfnAssert;
};

/// Traces one line by being constructed.
///
/// The narrow form prints straight to standard output; only the wide form goes through a
/// sink. Its format is that of the platform library: `%s` is a wide string.
///
/// **Errors**: when memory for the wide text runs out, "Out of memory!!" is reported and no
/// sink is called; a wide format that cannot be formatted traces nothing. **Memory**: the text
/// is freed when the sink returns. **Threads**: the sinks are plain pointers.
///
///     TvTracer(L"layer %s has %d lines\n", name, count);
class TV_OSBASE_API TvTracer {
public:
    /// Gets one traced text, valid during the call.
    using TraceFunctionA = void (*)(const char*);
    /// Gets one traced text, valid during the call.
    using TraceFunctionW = void (*)(const wchar_t*);

    /// Formats as std::printf does, to standard output.
    explicit TvTracer(const char* format, ...) __attribute__((format(printf, 2, 3)));
    /// Formats as vswprintf() of TvPlatformBase.h does and hands the text to sm_pfnTraceW.
    explicit TvTracer(const wchar_t* format, ...);

    /// Replaces sm_pfnTraceA, which only clients call; null swallows their texts.
    static void setTraceFunctionA(TraceFunctionA sink);
    /// Replaces sm_pfnTraceW; null swallows the texts.
    static void setTraceFunctionW(TraceFunctionW sink);

    /// Prints `text` to standard output; `%%` prints one percent sign.
    static void defaultTraceA(const char* text);
    /// The same for wide text, which is written in the encoding of the current locale.
    static void defaultTraceW(const wchar_t* text);

    static TraceFunctionA sm_pfnTraceA; ///< at load defaultTraceA; the library never calls it
    static TraceFunctionW sm_pfnTraceW; ///< at load defaultTraceW
};

namespace TvDetail {

// Hands `fault` to the recorder and deletes it. Nothing happens when there was no memory
// for the object, which is then null.
inline void report(TvException* fault)
{
    if (!fault)
        return;
    if (CrashRecorder* recorder = ornaGetCrashRecorder())
        recorder->record(fault);
    delete fault;
}

// The two ways in which the library and its templates report a fault before they go on.
[[gnu::cold, gnu::noinline]] inline void reportStatus(Orna::ErrorStatus status)
{
    report(new (std::nothrow) TvErrorStatus(status));
}

[[gnu::cold, gnu::noinline]] inline void reportMessage(const wchar_t* message)
{
    report(new (std::nothrow) TvExceptionWithMsg(L"\"\"", 0, message));
}

} // namespace TvDetail

#endif
