// Output.h - where the result goes: standard output, or a file that is replaced as a whole.
#ifndef TVBASE_OUTPUT_H
#define TVBASE_OUTPUT_H

#include "UnfinishedFile.h"

#include "TvFileStreamBuf.h"

#include <cstdio>
#include <memory>
#include <optional>
#include <string>

/// A file is written beside its place, through the library's file stream, and takes the place
/// only in finish(); before that, and after any failure, the old file is as it was. What is
/// no regular file (a device, a pipe) is written to directly.
///
/// **Errors**: CommandError, naming the output. **Memory**: the stream's cache.
/// **Threads**: one Output in the process.
class Output {
public:
    /// Empty and "-" are standard output.
    explicit Output(const std::string& name);
    /// Without finish(): removes what was written beside the place.
    ~Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    void write(const char* bytes, std::size_t size);

    /// What was written shows on standard output; a file waits for finish().
    void flush();

    /// Everything written reaches its place.
    void finish();

private:
    [[noreturn]] void failed(int error);
    void openBeside(const std::string& target);

    std::string m_name;                     // for messages
    std::optional<UnfinishedFile> m_beside; // the file that is written, when it is no device
    std::unique_ptr<TvFileOStreamBuf> m_stream;
    std::FILE* m_file = nullptr;
};

#endif
