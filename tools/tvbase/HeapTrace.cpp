#include "HeapTrace.h"

#include "Input.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <unordered_map>

namespace {

constexpr std::size_t kMaxLine = 512;
constexpr std::size_t kMostProblems = 10;
constexpr std::uint64_t kMostBytes = 0x80000000; // of one request; _tvMalloc refuses more

std::string_view takeWord(std::string_view& line)
{
    line.remove_prefix(std::min(line.size(), line.find_first_not_of(" \t\r")));
    const std::string_view word = line.substr(0, line.find_first_of(" \t\r"));
    line.remove_prefix(word.size());
    return word;
}

bool parseWord(std::string_view word, std::uint64_t& value)
{
    const bool isHex = word.starts_with("0x") || word.starts_with("0X");
    word.remove_prefix(isHex ? 2 : 0);
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value, isHex ? 16 : 10);
    return !word.empty() && error == std::errc() && end == word.data() + word.size();
}

class TraceReader {
public:
    explicit TraceReader(const std::string& name) : m_name(name) {}

    void readLine(std::string_view line)
    {
        ++m_line;
        if (const std::string why = addStep(line.substr(0, line.find('#'))); !why.empty())
            refuse(why);
    }
    void refuseLongLine()
    {
        ++m_line;
        refuse("a line that is too long");
    }
    HeapTrace& trace() { return m_trace; }

private:
    struct Unit {
        std::uint32_t slot;
        std::size_t size;
    };

    void refuse(const std::string& why)
    {
        if (m_trace.badLines++ < kMostProblems)
            m_trace.problems.push_back(m_name + ":" + std::to_string(m_line) + ": " + why);
    }

    // Why the line is a bad one; empty when it is not.
    std::string addStep(std::string_view line)
    {
        const std::string_view letter = takeWord(line);
        if (letter.empty())
            return {};
        const bool takesSize = letter == "a" || letter == "r";
        if (!takesSize && letter != "f")
            return "begins with none of a, r and f";
        const std::string_view idWord = takeWord(line);
        std::uint64_t id = 0;
        std::uint64_t size = 0;
        if (!parseWord(idWord, id))
            return "no ID behind the letter";
        if (takesSize && !parseWord(takeWord(line), size))
            return "no size behind the ID";
        if (!takeWord(line).empty())
            return "more than belongs to the letter";
        if (size > kMostBytes)
            return "a size above 2147483648";
        if (letter == "r" && size == 0)
            return "a resize to 0, which means different things to different heaps";
        const auto found = m_units.find(id);
        if (letter == "a" && found != m_units.end())
            return "ID " + std::string(idWord) + " is in use";
        if (letter != "a" && found == m_units.end())
            return "ID " + std::string(idWord) + " is not in use";
        if (letter == "a")
            add(HeapStep::kAllocate, m_units.emplace(id, Unit{takeSlot(), 0}).first->second, size);
        else
            add(takesSize ? HeapStep::kResize : HeapStep::kFree, found->second, size);
        if (!takesSize) {
            m_freeSlots.push_back(found->second.slot);
            m_units.erase(found);
        }
        return {};
    }

    std::uint32_t takeSlot()
    {
        if (m_freeSlots.empty())
            return static_cast<std::uint32_t>(m_trace.slots++);
        const std::uint32_t slot = m_freeSlots.back();
        m_freeSlots.pop_back();
        return slot;
    }

    void add(HeapStep::Kind kind, Unit& unit, std::size_t size)
    {
        m_trace.endBytes += size - unit.size;
        unit.size = size;
        if (m_trace.endBytes > m_trace.peakBytes) {
            m_trace.peakBytes = m_trace.endBytes;
            m_trace.peakStep = m_trace.steps.size();
        }
        m_trace.steps.push_back({kind, unit.slot, size});
    }

    std::string m_name;
    std::uint64_t m_line = 0;
    std::unordered_map<std::uint64_t, Unit> m_units;
    std::vector<std::uint32_t> m_freeSlots;
    HeapTrace m_trace;
};

} // namespace

HeapTrace readHeapTrace(const std::string& name)
{
    Input input(name);
    TraceReader reader(input.name());
    std::string line;
    bool isTooLong = false;
    const auto endLine = [&] {
        isTooLong ? reader.refuseLongLine() : reader.readLine(line);
        line.clear();
        isTooLong = false;
    };
    char block[65536];
    while (const std::size_t count = input.read(block, sizeof block)) {
        for (std::size_t i = 0; i < count; ++i) {
            if (block[i] == '\n')
                endLine();
            else if (line.size() < kMaxLine)
                line += block[i];
            else
                isTooLong = true;
        }
    }
    if (!line.empty())
        endLine();
    return std::move(reader.trace());
}
