// EscapeReport.h - how often each character was read from or written as an escape.
#ifndef TVBASE_ESCAPE_REPORT_H
#define TVBASE_ESCAPE_REPORT_H

#include <cstdint>
#include <map>
#include <vector>

/// Counts by character; prints them on standard error.
///
/// **Errors**: std::bad_alloc. **Memory**: a counter each for the basic plane. **Threads**: one.
class EscapeReport {
public:
    class Counter {
    public:
        void add(char32_t character);
        std::uint64_t total() const { return m_total; }
        void print(const char* title) const;

    private:
        std::uint64_t m_total = 0;
        std::vector<std::uint64_t> m_basic = std::vector<std::uint64_t>(0x10000);
        std::map<char32_t, std::uint64_t> m_above;
    };

    Counter read;            ///< escapes turned into their character
    Counter written;         ///< characters turned into their escape
    Counter skipped;         ///< characters left out
    std::uint64_t kept = 0;  ///< escapes that stayed as they were written
    std::uint64_t pairs = 0; ///< double-byte codes without a character, written as escapes
    std::uint64_t bad = 0;   ///< bytes that are no characters

    void print() const;
};

#endif
