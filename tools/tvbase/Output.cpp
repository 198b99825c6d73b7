#include "Output.h"

#include "CommandError.h"
#include "FileNames.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace {

// As many links in a row as the system follows.
constexpr int kMaxLinks = 40;

// What lies there may lead to an open file, as /dev/stdout does, which cannot be replaced.
bool isDevice(const std::string& name) { return name.starts_with("/dev/") || name.starts_with("/proc/"); }

// Where a link leads that leads to no file yet; any other name as it is.
std::string endOfLinks(const std::string& name)
{
    std::filesystem::path path = name;
    std::error_code error;
    for (int i = 0; i <= kMaxLinks; ++i) {
        const std::filesystem::path next = std::filesystem::read_symlink(path, error);
        if (error)
            return path.string();
        path = path.parent_path() / next;
    }
    throw std::system_error(ELOOP, std::generic_category());
}

// The permissions that the user gives new files.
mode_t newFileMode()
{
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

} // namespace

Output::Output(const std::string& name) : m_name(name.empty() || name == "-" ? "standard output" : name)
{
    if (name.empty() || name == "-") {
        m_file = stdout;
        return;
    }
    struct stat status;
    const bool exists = stat(name.c_str(), &status) == 0;
    if (exists && S_ISDIR(status.st_mode))
        failed(EISDIR);
    if (isDevice(name) || (exists && !S_ISREG(status.st_mode))) {
        m_file = std::fopen(name.c_str(), "wb");
        if (!m_file)
            failed(errno);
        return;
    }
    if (exists && access(name.c_str(), W_OK) != 0)
        failed(errno);
    // A link stays a link: the file that it leads to is replaced, or made.
    std::string target;
    if (char* real = realpath(name.c_str(), nullptr)) {
        target = real;
        std::free(real);
    }
    try {
        openBeside(target.empty() ? endOfLinks(name) : target);
    } catch (const std::system_error& error) {
        failed(error.code().value());
    }
    // Only now: the owner, too, may be one who must not write.
    chmod(m_beside->name().c_str(), exists ? status.st_mode & 07777 : newFileMode());
}

Output::~Output()
{
    if (m_file && m_file != stdout)
        std::fclose(m_file);
}

void Output::failed(int error) { throw CommandError(m_name + ": " + std::strerror(error ? error : EIO)); }

void Output::openBeside(const std::string& target)
{
    m_beside.emplace(target);
    const std::wstring wide = wideFileName(m_beside->name());
    if (wide.empty()) { // no name for the library's streams
        m_file = std::fopen(m_beside->name().c_str(), "wb");
        if (!m_file)
            failed(errno);
        return;
    }
    Orna::ErrorStatus result = Orna::eOk;
    m_stream.reset(createFileOStreamBuf(wide.c_str(), &result, TvIO::kAccessWrite, TvIO::kShareDenyNone,
                                        TvIO::kCreateAlways, 16384));
    if (!m_stream || result != Orna::eOk || !m_stream->fileHandle())
        throw CommandError(m_name + ": cannot be written (status " + std::to_string(result) + ")");
}

void Output::write(const char* bytes, std::size_t size)
{
    errno = 0;
    if (m_file) {
        if (std::fwrite(bytes, 1, size, m_file) != size)
            failed(errno);
        return;
    }
    try {
        m_stream->writeBytes(reinterpret_cast<const unsigned char*>(bytes), static_cast<std::uint32_t>(size));
    } catch (const wchar_t*) {
        failed(errno);
    }
}

void Output::flush()
{
    errno = 0;
    if (m_file && std::fflush(m_file) != 0)
        failed(errno);
}

void Output::finish()
{
    flush();
    errno = 0;
    // A file is closed before it takes its place: some systems tell only then that it is full.
    if (m_file && m_file != stdout && std::fclose(std::exchange(m_file, nullptr)) != 0)
        failed(errno);
    if (m_stream) {
        try {
            m_stream->close();
        } catch (const wchar_t*) {
            failed(errno);
        }
    }
    if (!m_beside)
        return;
    try {
        m_beside->takePlace();
    } catch (const std::system_error& error) {
        failed(error.code().value());
    }
}
