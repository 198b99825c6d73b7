// Input.h - the bytes of one input, in blocks.
#ifndef TVBASE_INPUT_H
#define TVBASE_INPUT_H

#include "TvFileStreamBuf.h"

#include <cstdint>
#include <memory>
#include <string>

/// A file, a pipe or standard input. Files are read through the library's file stream; what
/// has no length is read as it arrives, and so are files whose names are not UTF-8.
///
/// **Errors**: InputError, naming the input. **Memory**: none but the streams' own.
/// **Threads**: one.
class Input {
public:
    /// "-" is standard input.
    explicit Input(const std::string& name);
    ~Input();
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;

    /// How the input is called in messages.
    const std::string& name() const { return m_name; }

    /// Bytes in all, 0 when that is not known beforehand.
    std::uint64_t length() const { return m_length; }

    /// Up to `size` bytes; fewer where no more have arrived yet; 0 at the end.
    std::size_t read(char* buffer, std::size_t size);

private:
    std::string m_name;
    std::uint64_t m_length = 0;
    std::unique_ptr<TvFileStreamBuf> m_stream;
    int m_descriptor = -1;
};

#endif
