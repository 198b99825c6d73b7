#include "Progress.h"

#include <algorithm>
#include <cstdio>
#include <unistd.h>

Progress::Progress(std::uint64_t total) : m_total(total), m_watched(isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() { hide(); }

void Progress::advance(const std::string& name, std::uint64_t count)
{
    m_done += count;
    if (!m_watched)
        return;
    const Clock::time_point now = Clock::now();
    if (now < m_next)
        return;
    m_next = now + std::chrono::milliseconds(200);
    const double seconds = std::chrono::duration<double>(now - m_started).count();
    std::fprintf(stderr, "\r\033[K%s: %.1f MB", name.c_str(), static_cast<double>(m_done) / 1e6);
    if (m_total != 0)
        std::fprintf(stderr, " (%.0f%%)",
                     100.0 * static_cast<double>(std::min(m_done, m_total)) / static_cast<double>(m_total));
    std::fprintf(stderr, ", %.0f MB/s", static_cast<double>(m_done) / 1e6 / seconds);
    m_shown = true;
}

void Progress::hide()
{
    if (m_shown)
        std::fprintf(stderr, "\r\033[K");
    m_shown = false;
}
