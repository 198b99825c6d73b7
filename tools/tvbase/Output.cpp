#include "Output.h"

#include "Command.h"
#include "FileNames.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// The unfinished file, for the handler of signals that end the program.
char s_unfinished[PATH_MAX];

extern "C" void removeUnfinished(int signal)
{
    unlink(s_unfinished);
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

// What lies there may lead to an open file, as /dev/stdout does, which cannot be replaced.
bool isDevice(const std::string& name) { return name.starts_with("/dev/") || name.starts_with("/proc/"); }

void watchSignals(void (*handler)(int))
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE})
        std::signal(signal, handler);
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
    // A link stays a link: the file that it leads to is replaced.
    m_target = name;
    if (exists) {
        if (access(name.c_str(), W_OK) != 0)
            failed(errno);
        if (char* real = realpath(name.c_str(), nullptr)) {
            m_target = real;
            std::free(real);
        }
    }
    openBeside();
    if (exists)
        chmod(m_beside.c_str(), status.st_mode & 07777);
}

Output::~Output()
{
    if (m_file && m_file != stdout)
        std::fclose(m_file);
    m_stream.reset();
    if (m_beside.empty())
        return;
    unlink(m_beside.c_str());
    watchSignals(SIG_DFL);
}

void Output::failed(int error) { throw CommandError(m_name + ": " + std::strerror(error ? error : EIO)); }

void Output::openBeside()
{
    std::string pattern = m_target + ".XXXXXX";
    if (pattern.size() >= sizeof s_unfinished)
        failed(ENAMETOOLONG);
    const int descriptor = mkstemp(pattern.data());
    if (descriptor < 0)
        failed(errno);
    m_beside = pattern;
    std::strcpy(s_unfinished, pattern.c_str());
    watchSignals(removeUnfinished);
    const mode_t mask = umask(0);
    umask(mask);
    fchmod(descriptor, 0666 & ~mask);

    const std::wstring wide = wideFileName(m_beside);
    if (wide.empty()) { // no name for the library's streams
        m_file = fdopen(descriptor, "wb");
        if (!m_file)
            failed(errno);
        return;
    }
    Orna::ErrorStatus result = Orna::eOk;
    m_stream.reset(createFileOStreamBuf(wide.c_str(), &result, TvIO::kAccessWrite, TvIO::kShareDenyNone,
                                        TvIO::kCreateAlways, 16384));
    close(descriptor);
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
    errno = 0;
    flush();
    if (m_stream) {
        try {
            m_stream->close();
        } catch (const wchar_t*) {
            failed(errno);
        }
    }
    if (m_beside.empty())
        return;
    if (std::rename(m_beside.c_str(), m_target.c_str()) != 0)
        failed(errno);
    m_beside.clear();
    watchSignals(SIG_DFL);
}
