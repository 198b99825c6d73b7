// TvErrorStatus.h - status codes and the exception family.
//
// The objects of this family are what the library hands to the crash recorder
// (TvHooks.h). The library itself never throws them: files and the file system throw an
// Orna::ErrorStatus or a `const wchar_t*` by value, everything else reports and goes on.
#ifndef TV_ERROR_STATUS_H
#define TV_ERROR_STATUS_H

#include "TvExport.h"

namespace Orna {

/// The outcome of an operation; 0 is success. Only the values that this library raises
/// have names here, a host's wider list may use any other number.
enum TV_OSBASE_API ErrorStatus : int {
    eOk = 0,
    eInvalidInput = 2,
    eOutOfMemory = 6,
    eInvalidIndex = 24,
    eFileOpenFailed = 53,
    eFileNotFound = 72,
    eBadMapFile = 74,
    eFileAccessErr = 364,
    eNoFileName = 365,
    eFileLocked = 433
};

} // namespace Orna

/// Root of the exception family: where something was raised, and by what.
///
/// A copy and an assignment forget the cause: `inner` of the copy is null.
///
/// Errors: none. Memory: texts and the cause are kept as pointers and stay the caller's.
/// Threads: one object, one thread.
///
///     TvException cause(L"import.cpp", 88);
///     TvException outer(L"open.cpp", 12, &cause);
///     // outer.inner->line == 88, outer.description() is "TvException"
class TV_OSBASE_API TvException {
public:
    TvException();
    TvException(const wchar_t* sourceFile, int sourceLine);
    TvException(const wchar_t* sourceFile, int sourceLine, TvException* cause);
    TvException(const TvException& other);
    TvException& operator=(const TvException& other);
    virtual ~TvException();

    /// A text for people. Owned by the object and valid as long as it.
    virtual const wchar_t* description() const;

    /// 0 for every object of this family; the status of a TvErrorStatus is errorType().
    virtual int code() const;

    TvException* inner; ///< the cause, or null; not owned

private:
    bool m_flag; // always false in objects made here; kept for the layout

public:
    const wchar_t* file; ///< source file of the raise site, "" when unknown; not owned
    int line;            ///< line in `file`, 0 when unknown
};

/// A status code with an optional message.
///
/// The description is made on the first call and kept: a later change of `message` does
/// not show in it. It has at most 511 characters, the rest of a longer one is cut.
///
/// Errors: description() is null when memory runs out. Memory: `message` and `file` are
/// kept as pointers; the description is owned. Threads: one object, one thread;
/// description() writes.
///
///     TvErrorStatus error(Orna::eOutOfMemory, L"layer table", L"layers.cpp", 40);
///     // error.description() is "error type: 6\tmessage:layer table"
class TV_OSBASE_API TvErrorStatus : public TvException {
public:
    explicit TvErrorStatus(Orna::ErrorStatus errorStatus);
    TvErrorStatus(Orna::ErrorStatus errorStatus, const wchar_t* sourceFile, int sourceLine);
    TvErrorStatus(Orna::ErrorStatus errorStatus, const wchar_t* text, const wchar_t* sourceFile,
                  int sourceLine);
    TvErrorStatus(const TvErrorStatus& other);
    TvErrorStatus& operator=(const TvErrorStatus& other);
    ~TvErrorStatus() override;

    /// "error type: <number>\tmessage:<message>".
    const wchar_t* description() const override;

    Orna::ErrorStatus errorType() const { return m_status; }

    const wchar_t* message; ///< "" by default; not owned

private:
    mutable wchar_t* m_cachedDescription; // from wcsdup; null until it is asked for
    Orna::ErrorStatus m_status;
};

/// A message of its own.
///
/// Errors: description() is null when the memory for the copy could not be had.
/// Memory: the message is copied, also by copy and assignment. Threads: one object, one
/// thread.
///
///     TvExceptionWithMsg error(L"plot.cpp", 7, L"No plotter!");
///     // error.description() is "No plotter!"
class TV_OSBASE_API TvExceptionWithMsg : public TvException {
public:
    /// A null `text` counts as "".
    TvExceptionWithMsg(const wchar_t* sourceFile, int sourceLine, const wchar_t* text);
    TvExceptionWithMsg(const wchar_t* sourceFile, int sourceLine, const wchar_t* text, TvException* cause);
    TvExceptionWithMsg(const TvExceptionWithMsg& other);
    TvExceptionWithMsg& operator=(const TvExceptionWithMsg& other);
    ~TvExceptionWithMsg() override;

    const wchar_t* description() const override;

private:
    wchar_t* m_message; // array new; null only when memory ran out
};

#endif
