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
    eOk = 0,              ///< success
    eInvalidInput = 2,    ///< an argument or a state that cannot be used
    eOutOfMemory = 6,     ///< no memory
    eInvalidIndex = 24,   ///< an index outside the elements
    eFileOpenFailed = 53, ///< the system refused to open the file
    eFileNotFound = 72,   ///< no such file, or none that can be used as asked
    eBadMapFile = 74,     ///< no code page map file
    eFileAccessErr = 364, ///< a directory, or a file that the creation disposition forbids
    eNoFileName = 365,    ///< a null or empty file name
    eFileLocked = 433     ///< another process holds a lock on the file
};

} // namespace Orna

/// Root of the exception family: where something was raised, and by what.
///
/// A copy and an assignment forget the cause: `inner` of the copy is null.
///
/// **Errors**: none. **Memory**: texts and the cause are kept as pointers and stay the caller's.
/// **Threads**: one object, one thread.
///
///     TvException cause(L"import.cpp", 88);
///     TvException outer(L"open.cpp", 12, &cause);
///     // outer.inner->line == 88, outer.description() is "TvException"
class TV_OSBASE_API TvException {
public:
    /// Without a place ("" and line 0) and without a cause.
    TvException();
    /// Raised at a line of a source file. The text is kept as a pointer.
    TvException(const wchar_t* sourceFile, int sourceLine);
    /// The same, with what led to it; both pointers are kept and not owned.
    TvException(const wchar_t* sourceFile, int sourceLine, TvException* cause);
    /// Copies the place; the cause of the copy is null.
    TvException(const TvException& other);
    /// As the copy.
    TvException& operator=(const TvException& other);
    /// Frees neither the cause nor `file`.
    virtual ~TvException();

    /// A text for people, here "TvException". Owned by the object and valid as long as it.
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
/// **Errors**: description() is null when memory runs out. **Memory**: `message` and `file` are
/// kept as pointers; the description is owned. **Threads**: one object, one thread;
/// description() writes.
///
///     TvErrorStatus error(Orna::eOutOfMemory, L"layer table", L"layers.cpp", 40);
///     // error.description() is "error type: 6\tmessage:layer table"
class TV_OSBASE_API TvErrorStatus : public TvException {
public:
    /// A status alone: the message is "", the place unknown.
    explicit TvErrorStatus(Orna::ErrorStatus errorStatus);
    /// A status raised at a line of a source file.
    TvErrorStatus(Orna::ErrorStatus errorStatus, const wchar_t* sourceFile, int sourceLine);
    /// The same with a message. Both texts are kept as pointers.
    TvErrorStatus(Orna::ErrorStatus errorStatus, const wchar_t* text, const wchar_t* sourceFile,
                  int sourceLine);
    /// Has a description of its own, copied where one was made already.
    TvErrorStatus(const TvErrorStatus& other);
    /// As the copy.
    TvErrorStatus& operator=(const TvErrorStatus& other);
    /// Frees the description, and nothing that was handed in.
    ~TvErrorStatus() override;

    /// "error type: N", a tab and "message:M", with the status and the message.
    const wchar_t* description() const override;

    /// The status; code() is 0 here too.
    Orna::ErrorStatus errorType() const { return m_status; }

    const wchar_t* message; ///< "" by default; not owned

private:
    mutable wchar_t* m_cachedDescription; // from wcsdup; null until it is asked for
    Orna::ErrorStatus m_status;
};

/// A message of its own.
///
/// **Errors**: description() is null when the memory for the copy could not be had.
/// **Memory**: the message is copied, also by copy and assignment. **Threads**: one object, one
/// thread.
///
///     TvExceptionWithMsg error(L"plot.cpp", 7, L"No plotter!");
///     // error.description() is "No plotter!"
class TV_OSBASE_API TvExceptionWithMsg : public TvException {
public:
    /// A null `text` counts as "".
    TvExceptionWithMsg(const wchar_t* sourceFile, int sourceLine, const wchar_t* text);
    /// The same, with what led to it, which is not owned.
    TvExceptionWithMsg(const wchar_t* sourceFile, int sourceLine, const wchar_t* text, TvException* cause);
    /// Has a copy of the message, and no cause.
    TvExceptionWithMsg(const TvExceptionWithMsg& other);
    /// As the copy.
    TvExceptionWithMsg& operator=(const TvExceptionWithMsg& other);
    /// Frees the message.
    ~TvExceptionWithMsg() override;

    /// The message.
    const wchar_t* description() const override;

private:
    wchar_t* m_message; // array new; null only when memory ran out
};

#endif
