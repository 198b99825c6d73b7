// Progress.h - how far a long run is, for someone who watches.
#ifndef TVBASE_PROGRESS_H
#define TVBASE_PROGRESS_H

#include <chrono>
#include <cstdint>
#include <string>

/// One line on standard error, only where that is a terminal and only after a second.
///
/// **Errors**: none. **Memory**: none. **Threads**: one.
class Progress {
public:
    /// `total` bytes lie ahead; 0 = not known.
    explicit Progress(std::uint64_t total);
    /// Takes the line away again.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// `count` more bytes of `name` are done.
    void advance(const std::string& name, std::uint64_t count);

    /// Takes the line away, so that a message can be printed.
    void hide();

private:
    using Clock = std::chrono::steady_clock;

    std::uint64_t m_total;
    std::uint64_t m_done = 0;
    bool m_watched;
    bool m_shown = false;
    Clock::time_point m_started = Clock::now();
    Clock::time_point m_next = m_started + std::chrono::seconds(1);
};

#endif
