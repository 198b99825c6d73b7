// Recoder.h - the stream of bytes from one code page into another.
#ifndef TVBASE_RECODER_H
#define TVBASE_RECODER_H

#include "EscapeReport.h"
#include "Input.h"
#include "Output.h"
#include "Progress.h"
#include "TextEncoder.h"
#include "TextUnits.h"

#include <cstdint>
#include <string>
#include <vector>

/// What to do with what has no place in the target, or is no character in the source.
enum class Unmappable {
    kEscape, ///< keep it in another form
    kStop,   ///< end at the first
    kSkip    ///< leave it out
};

/// Recodes inputs one after the other in blocks of fixed size; a unit that a block's end cuts
/// is carried over to the next block.
///
/// **Errors**: CommandError for what cannot be read or written, and to stop; damaged input is
/// printed, at most ten places a file, and remembered. **Memory**: independent of the input's
/// length. **Threads**: one.
class Recoder {
public:
    Recoder(code_page_id from, code_page_id to, Unmappable unmappable, Output& output, Progress& progress);

    void recode(Input& input);

    const EscapeReport& report() const { return m_report; }

    /// Whether something was left out, or kept in another form than the one it stands for.
    bool isDamaged() const { return m_damaged; }

private:
    // Where a unit stands in its file: lines and columns from 1, columns in characters.
    struct Place {
        std::uint64_t line = 1;
        std::uint64_t offset = 0;    // bytes before the unit
        std::uint64_t lineStart = 0; // bytes before its line
        std::uint64_t inside = 0;    // bytes of the line that are not the first of a character

        std::uint64_t column() const { return offset - lineStart - inside + 1; }
        void passPlain(std::size_t length) { offset += length; }
        void pass(const char* text, const TextUnit& unit);
    };

    std::size_t recodeBlock(const char* block, std::size_t length, bool last);
    std::size_t skipRun(const char* text, std::size_t available, bool last);
    void convertRun(const char* text, std::size_t length, const Place& start);
    void putWide(const wchar_t* text, std::size_t length, const char* source, std::size_t sourceLength,
                 const Place& start);
    void putOdd(const TextUnit& unit, const char* text);
    void noteMissing(const wchar_t* text, std::size_t available, const char* source, std::size_t sourceLength,
                     const Place& start, std::size_t index);
    void tell(const Place& place, const char* bytes, std::size_t length, const std::string& what,
              const std::string& outcome);

    TextUnits m_units;
    TextEncoder m_encoder;
    code_page_id m_from;
    Unmappable m_unmappable;
    Output& m_output;
    Progress& m_progress;
    EscapeReport m_report;
    bool m_damaged = false;

    std::string m_name;       // of the current input
    Place m_place;            // of the unit that is read next
    std::uint64_t m_told = 0; // messages of the current input
    std::size_t m_wideInRun = 0;
    TvVector<wchar_t> m_wide;
    std::string m_bytes;
};

#endif
