#include "TextTable.h"

#include "CodePageNames.h"
#include "CommandError.h"
#include "Input.h"

#include "TvCharMapper.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string_view>

namespace {

constexpr std::size_t kMaxLine = 512;

// The next number of the line, or -1; `line` loses it.
int takeHex(std::string_view& line)
{
    line.remove_prefix(std::min(line.size(), line.find_first_not_of(" \t\r,;")));
    if (line.starts_with("0x") || line.starts_with("0X"))
        line.remove_prefix(2);
    unsigned int value = 0;
    const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), value, 16);
    if (error != std::errc() || value > 0xFFFF)
        return -1;
    line.remove_prefix(static_cast<std::size_t>(end - line.data()));
    return static_cast<int>(value);
}

class TableReader {
public:
    TableReader(const std::string& name, code_page_id page) : m_name(name), m_page(page) {}

    void readLine(std::string_view line)
    {
        ++m_line;
        line = line.substr(0, line.find('#'));
        if (line.find_first_not_of(" \t\r") == line.npos)
            return;
        const int code = takeHex(line);
        const int unit = code < 0 ? -1 : takeHex(line);
        if (unit < 0 || line.find_first_not_of(" \t\r") != line.npos)
            refuse("not a code and a unit of up to four hexadecimal digits each");
        if (!tvIsLeadByte(static_cast<unsigned char>(code >> 8), m_page) || (code & 0xFF) == 0)
            refuse("no double-byte code of " + codePageName(m_page));
        if (unit == 0 || (unit >= 0xD800 && unit <= 0xDFFF))
            refuse("a unit that is no character");
        if (!m_table.emplace(static_cast<unsigned short>(code), static_cast<unsigned short>(unit)).second)
            refuse("a code that was given before");
    }
    [[noreturn]] void refuse(const std::string& why)
    {
        throw InputError(m_name + ":" + std::to_string(m_line) + ": " + why);
    }
    DoubleByteTable& table() { return m_table; }

private:
    std::string m_name;
    code_page_id m_page;
    std::uint64_t m_line = 0;
    DoubleByteTable m_table;
};

} // namespace

DoubleByteTable readTextTable(const std::string& name, code_page_id page)
{
    Input input(name);
    TableReader reader(input.name(), page);
    std::string line;
    char block[4096];
    while (const std::size_t count = input.read(block, sizeof block)) {
        for (std::size_t i = 0; i < count; ++i) {
            if (block[i] == '\n') {
                reader.readLine(line);
                line.clear();
            } else if (line.size() < kMaxLine) {
                line += block[i];
            } else {
                reader.readLine("");
                reader.refuse("a line that is too long");
            }
        }
    }
    if (!line.empty())
        reader.readLine(line);
    return std::move(reader.table());
}
