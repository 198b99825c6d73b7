#include "Recoder.h"

#include "CodePageNames.h"
#include "CommandError.h"

#include "TvCharConverter.h"
#include "TvCharMapper.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <new>

namespace {

constexpr std::size_t kBlockSize = std::size_t{64} * 1024;

// Places of one file that are described; more are only counted.
constexpr std::uint64_t kMaxTold = 10;

// No double-byte code page has a trail byte below this: such a pair is a character cut short.
constexpr unsigned int kFirstTrail = 0x40;

int wideCount(char32_t character) { return character > 0xFFFF ? 2 : 1; }

std::string hexBytes(const char* bytes, std::size_t length)
{
    std::string text = length == 1 ? "byte" : "bytes";
    for (std::size_t i = 0; i < length; ++i) {
        char hex[4];
        std::snprintf(hex, sizeof hex, " %02X", static_cast<unsigned char>(bytes[i]));
        text += hex;
    }
    return text;
}

std::string unicodeName(char32_t character)
{
    char text[16];
    std::snprintf(text, sizeof text, "U+%04" PRIXLEAST32, static_cast<std::uint_least32_t>(character));
    return text;
}

} // namespace

void Recoder::Place::pass(const char* text, const TextUnit& unit)
{
    offset += static_cast<std::size_t>(unit.length);
    if (text[unit.length - 1] == '\n') {
        ++line;
        lineStart = offset;
        inside = 0;
    } else if (unit.kind != TextUnit::kEscape && unit.kind != TextUnit::kVerbatim) {
        inside += static_cast<std::size_t>(unit.length) - 1;
    }
}

Recoder::Recoder(code_page_id from, code_page_id to, Unmappable unmappable, Output& output,
                 Progress& progress)
    : m_units(from), m_encoder(to), m_from(from), m_unmappable(unmappable), m_output(output),
      m_progress(progress)
{
}

void Recoder::recode(Input& input)
{
    m_name = input.name();
    m_place = Place();
    m_told = 0;
    std::vector<char> block(kBlockSize);
    std::size_t held = 0; // bytes at the start of the block that wait for more
    for (bool last = false; !last;) {
        const std::size_t room = block.size() - held;
        const std::size_t count = input.read(block.data() + held, room);
        last = count == 0;
        held += count;
        const std::size_t done = recodeBlock(block.data(), held, last);
        std::memmove(block.data(), block.data() + done, held - done);
        held -= done;
        // Someone may be waiting for what came through a pipe.
        if (count != 0 && count < room)
            m_output.flush();
        m_progress.advance(m_name, count);
    }
    if (m_told > kMaxTold) {
        m_progress.hide();
        complain(m_name + ": " + std::to_string(m_told - kMaxTold) + " more such places");
    }
}

// Recodes what is whole and returns how much that was: all of it when nothing follows.
std::size_t Recoder::recodeBlock(const char* block, std::size_t length, bool last)
{
    std::size_t done = 0;
    while (done < length) {
        const Place start = m_place;
        const std::size_t run = skipRun(block + done, length - done, last);
        if (run != 0)
            convertRun(block + done, run, start);
        done += run;
        if (done == length)
            break;
        const TextUnit unit = m_units.read(block + done, length - done, last);
        if (unit.kind == TextUnit::kCut)
            break;
        putOdd(unit, block + done);
        m_place.pass(block + done, unit);
        done += static_cast<std::size_t>(unit.length);
    }
    return done;
}

// The length of the text that the library converts as it is; m_place moves behind it.
std::size_t Recoder::skipRun(const char* text, std::size_t available, bool last)
{
    std::size_t length = 0;
    m_wideInRun = 0;
    for (;;) {
        const std::size_t plain = m_units.skipPlain(text + length, available - length);
        m_place.passPlain(plain);
        m_wideInRun += plain;
        length += plain;
        if (length == available)
            return length;
        const TextUnit unit = m_units.read(text + length, available - length, last);
        if (unit.kind != TextUnit::kCharacter && unit.kind != TextUnit::kEscape)
            return length;
        if (unit.kind == TextUnit::kEscape)
            m_report.read.add(unit.value);
        m_wideInRun += static_cast<std::size_t>(wideCount(unit.value));
        m_place.pass(text + length, unit);
        length += static_cast<std::size_t>(unit.length);
    }
}

void Recoder::convertRun(const char* text, std::size_t length, const Place& start)
{
    TvCharMapper::multiByteToWideChar(m_from, text, static_cast<int>(length), m_wide);
    if (m_wide.length() == 0)
        throw std::bad_alloc();
    const auto count = static_cast<std::size_t>(m_wide.length() - 1);
    if (count != m_wideInRun)
        throw CommandError(m_name + ": " + std::to_string(m_wideInRun) + " characters became " +
                           std::to_string(count) + " (please report this)");
    putWide(m_wide.asArrayPtr(), count, text, length, start);
}

void Recoder::putWide(const wchar_t* text, std::size_t length, const char* source, std::size_t sourceLength,
                      const Place& start)
{
    m_bytes.clear();
    std::size_t done = 0;
    for (std::size_t i = 0; (i = m_encoder.findMissing(text, length, i)) < length;) {
        const auto elements = static_cast<std::size_t>(wideLength(text + i, length - i));
        if (m_unmappable == Unmappable::kEscape) {
            m_report.written.add(wideCharacter(text + i, length - i));
        } else {
            m_encoder.encode(text + done, i - done, m_bytes);
            done = i + elements;
            if (m_unmappable == Unmappable::kStop)
                m_output.write(m_bytes.data(), m_bytes.size());
            noteMissing(text + i, length - i, source, sourceLength, start, i);
        }
        i += elements;
    }
    m_encoder.encode(text + done, length - done, m_bytes);
    m_output.write(m_bytes.data(), m_bytes.size());
}

// Leaves out, or stops at, the character whose wide form is `index` elements into the text
// that `source` became.
void Recoder::noteMissing(const wchar_t* text, std::size_t available, const char* source,
                          std::size_t sourceLength, const Place& start, std::size_t index)
{
    const char32_t character = wideCharacter(text, available);
    Place place = start;
    TextUnit unit = m_units.read(source, sourceLength, true);
    for (std::size_t i = 0; i < index; unit = m_units.read(source, sourceLength, true)) {
        i += static_cast<std::size_t>(wideCount(unit.value));
        place.pass(source, unit);
        source += unit.length;
        sourceLength -= static_cast<std::size_t>(unit.length);
    }
    m_report.skipped.add(character);
    tell(place, source, static_cast<std::size_t>(unit.length),
         codePageName(m_encoder.page()) + " lacks " + unicodeName(character), "left out");
}

// A unit that the library does not convert as it should be converted here.
void Recoder::putOdd(const TextUnit& unit, const char* text)
{
    const auto length = static_cast<std::size_t>(unit.length);
    switch (unit.kind) {
    case TextUnit::kZero:
        return m_output.write(text, length);
    case TextUnit::kVerbatim:
        ++m_report.kept;
        return m_output.write(text, length);
    case TextUnit::kAbove: {
        const char32_t above = unit.value - 0x10000;
        const wchar_t surrogates[2] = {static_cast<wchar_t>(0xD800 + (above >> 10)),
                                       static_cast<wchar_t>(0xDC00 + (above & 0x3FF))};
        return putWide(surrogates, 2, text, length, m_place);
    }
    case TextUnit::kNoPair: {
        const bool isCut = (unit.value & 0xFF) < kFirstTrail;
        const std::string what = isCut ? "a character of " + codePageName(m_from) + " that is cut short"
                                       : "no character of " + codePageName(m_from);
        char escape[9] = {};
        TvCharConverter::getMIFString(static_cast<wchar_t>(unit.value), m_from, escape, 8);
        if (m_unmappable != Unmappable::kEscape)
            return tell(m_place, text, length, what, "left out");
        if (isCut)
            tell(m_place, text, length, what, std::string("kept as ") + escape);
        ++m_report.pairs;
        return m_output.write(escape, 8);
    }
    default:
        ++m_report.bad;
        const std::string what = m_from == CP_UTF8 ? "not UTF-8" : "no character of " + codePageName(m_from);
        if (m_unmappable != Unmappable::kEscape)
            return tell(m_place, text, length, what, "left out");
        tell(m_place, text, length, what, "kept as " + unicodeName(unit.value));
        const auto wide = static_cast<wchar_t>(unit.value);
        return putWide(&wide, 1, text, length, m_place);
    }
}

void Recoder::tell(const Place& place, const char* bytes, std::size_t length, const std::string& what,
                   const std::string& outcome)
{
    m_damaged = true;
    const std::string text = m_name + ":" + std::to_string(place.line) + ":" +
                             std::to_string(place.column()) + ": " + hexBytes(bytes, length) + ": " + what;
    if (m_unmappable == Unmappable::kStop)
        throw CommandError(text);
    if (++m_told > kMaxTold)
        return;
    m_progress.hide();
    complain(text + "; " + outcome);
}
