#include "Input.h"

#include "CommandError.h"
#include "FileNames.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

[[noreturn]] void failed(const std::string& name, int error)
{
    throw InputError(name + ": " + std::strerror(error));
}

} // namespace

Input::Input(const std::string& name) : m_name(name == "-" ? "standard input" : name)
{
    if (name == "-") {
        m_descriptor = STDIN_FILENO;
        return;
    }
    struct stat status;
    if (stat(name.c_str(), &status) != 0)
        failed(m_name, errno);
    if (S_ISDIR(status.st_mode))
        failed(m_name, EISDIR);
    if (access(name.c_str(), R_OK) != 0)
        failed(m_name, errno);

    const std::wstring wide = wideFileName(name);
    if (!S_ISREG(status.st_mode) || wide.empty()) {
        m_descriptor = open(name.c_str(), O_RDONLY | O_CLOEXEC);
        if (m_descriptor < 0)
            failed(m_name, errno);
        return;
    }
    // Not the mapped stream: a file of any size must not become memory, and one that another
    // program cuts short must not end this one.
    Orna::ErrorStatus result = Orna::eOk;
    m_stream.reset(createFileStreamBuf(wide.c_str(), &result, TvIO::kAccessRead, TvIO::kShareDenyNone,
                                       TvIO::kOpenExisting));
    if (!m_stream || result != Orna::eOk || !m_stream->fileHandle())
        throw InputError(m_name + ": cannot be opened (status " + std::to_string(result) + ")");
    m_length = m_stream->length();
}

Input::~Input()
{
    if (m_descriptor > STDIN_FILENO)
        close(m_descriptor);
}

std::size_t Input::read(char* buffer, std::size_t size)
{
    if (!m_stream) {
        ssize_t count;
        do
            count = ::read(m_descriptor, buffer, size);
        while (count < 0 && errno == EINTR);
        if (count < 0)
            failed(m_name, errno);
        return static_cast<std::size_t>(count);
    }
    const std::uint64_t position = m_stream->tell();
    const std::uint64_t length = m_stream->length();
    if (position >= length) {
        if (length < m_length)
            throw InputError(m_name + ": was cut short while it was read");
        return 0;
    }
    const std::size_t wanted = static_cast<std::size_t>(std::min<std::uint64_t>(size, length - position));
    try {
        errno = 0;
        m_stream->readBytes(reinterpret_cast<unsigned char*>(buffer), static_cast<std::uint32_t>(wanted));
    } catch (const wchar_t*) {
        failed(m_name, errno ? errno : EIO);
    }
    // The stream does not tell of a short read; its position does.
    if (m_stream->tell() != position + wanted)
        failed(m_name, errno ? errno : EIO);
    return wanted;
}
