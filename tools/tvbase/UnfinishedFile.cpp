#include "UnfinishedFile.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <system_error>
#include <unistd.h>

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE};

// The unfinished file, for the handler, and what the signals did before.
char s_name[PATH_MAX];
struct sigaction s_before[std::size(kSignals)];

extern "C" void removeUnfinished(int signal)
{
    unlink(s_name);
    // The disposition is the default one again, and the signal comes when this returns.
    raise(signal);
}

sigset_t handledSignals()
{
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : kSignals)
        sigaddset(&set, signal);
    return set;
}

void watchSignals()
{
    struct sigaction action = {};
    action.sa_handler = removeUnfinished;
    action.sa_mask = handledSignals();
    action.sa_flags = SA_RESETHAND;
    for (std::size_t i = 0; i < std::size(kSignals); ++i) {
        sigaction(kSignals[i], nullptr, &s_before[i]);
        if (s_before[i].sa_handler != SIG_IGN)
            sigaction(kSignals[i], &action, nullptr);
    }
}

void unwatchSignals()
{
    for (std::size_t i = 0; i < std::size(kSignals); ++i)
        sigaction(kSignals[i], &s_before[i], nullptr);
}

// Signals wait while a file appears and the handler learns of it.
class SignalsHeld {
public:
    SignalsHeld()
    {
        const sigset_t set = handledSignals();
        sigprocmask(SIG_BLOCK, &set, &m_before);
    }
    ~SignalsHeld() { sigprocmask(SIG_SETMASK, &m_before, nullptr); }

private:
    sigset_t m_before;
};

[[noreturn]] void failed(int error) { throw std::system_error(error, std::generic_category()); }

} // namespace

UnfinishedFile::UnfinishedFile(const std::string& target) : m_target(target), m_name(target + ".XXXXXX")
{
    if (m_name.size() >= sizeof s_name)
        failed(ENAMETOOLONG);
    const SignalsHeld held;
    const int descriptor = mkstemp(m_name.data());
    if (descriptor < 0)
        failed(errno);
    // Who writes opens the name; a descriptor less is in use then.
    close(descriptor);
    std::memcpy(s_name, m_name.c_str(), m_name.size() + 1);
    watchSignals();
}

UnfinishedFile::~UnfinishedFile()
{
    if (m_name.empty())
        return;
    unlink(m_name.c_str());
    unwatchSignals();
}

void UnfinishedFile::takePlace()
{
    if (std::rename(m_name.c_str(), m_target.c_str()) != 0)
        failed(errno);
    m_name.clear();
    unwatchSignals();
}
