#include "MapFileReader.h"

#include "CodePageNames.h"
#include "CommandError.h"
#include "Input.h"

#include "TvCharMapper.h"

#include <cstdio>

namespace {

// More than any map file can need: 38 tables of 65535 pairs and a long title.
constexpr std::size_t kMaxSize = std::size_t{16} * 1024 * 1024;

std::string readAll(const std::string& name)
{
    Input input(name);
    std::string bytes;
    char block[65536];
    while (const std::size_t count = input.read(block, sizeof block)) {
        bytes.append(block, count);
        if (bytes.size() > kMaxSize)
            throw InputError(name + ": too large for a code page map file");
    }
    return bytes;
}

std::uint32_t number(const std::string& bytes, std::size_t position, int size)
{
    std::uint32_t value = 0;
    for (int i = size - 1; i >= 0; --i)
        value = value << 8 | static_cast<unsigned char>(bytes[position + static_cast<std::size_t>(i)]);
    return value;
}

std::string hex4(unsigned int value)
{
    char text[8];
    std::snprintf(text, sizeof text, "%04X", value);
    return text;
}

void checkPairs(const MapFileTable& table, std::vector<std::string>& problems)
{
    const std::string name = codePageName(static_cast<code_page_id>(table.id));
    const auto tell = [&](std::size_t i, const char* what) {
        problems.push_back(name + ": " + what + " (pair " + std::to_string(i + 1) + ", code " +
                           hex4(table.pairs[i].first) + ", unit " + hex4(table.pairs[i].second) + ")");
    };
    // One problem of a kind is enough for a table.
    bool order = false, lead = false, unit = false;
    for (std::size_t i = 0; i < table.pairs.size(); ++i) {
        const auto [code, value] = table.pairs[i];
        if (!order && i > 0 && code <= table.pairs[i - 1].first) {
            tell(i, "codes do not ascend");
            order = true;
        }
        if (!lead &&
            !tvIsLeadByte(static_cast<unsigned char>(code >> 8), static_cast<code_page_id>(table.id))) {
            tell(i, "a code without a lead byte");
            lead = true;
        }
        if (!unit && (value == 0 || (value >= 0xD800 && value <= 0xDFFF))) {
            tell(i, "a unit that is no character");
            unit = true;
        }
    }
}

// The table at `position`, or a problem.
void readTable(const std::string& bytes, int id, std::size_t position, MapFileContent& content)
{
    const std::string name = codePageName(static_cast<code_page_id>(id));
    if (position + 2 > bytes.size()) {
        content.problems.push_back(name + ": the table begins behind the end of the file");
        return;
    }
    const std::size_t count = number(bytes, position, 2);
    if (position + 2 + 4 * count > bytes.size()) {
        content.problems.push_back(name + ": the table of " + std::to_string(count) +
                                   " pairs reaches past the end of the file");
        return;
    }
    MapFileTable table{id, position, {}};
    for (std::size_t i = 0; i < count; ++i)
        table.pairs.emplace_back(
            static_cast<unsigned short>(number(bytes, position + 2 + 2 * i, 2)),
            static_cast<unsigned short>(number(bytes, position + 2 + 2 * (count + i), 2)));
    checkPairs(table, content.problems);
    content.tables.push_back(std::move(table));
}

} // namespace

MapFileContent readMapFile(const std::string& name)
{
    const std::string bytes = readAll(name);
    MapFileContent content;
    content.size = bytes.size();
    const std::size_t end = bytes.find('\0');
    if (end == bytes.npos || end == 0 || bytes[end - 1] != 'H') {
        content.problems.push_back("the header does not end in H and a NUL byte");
        return content;
    }
    content.title = bytes.substr(0, end - 1);
    content.title.erase(content.title.find_last_not_of(' ') + 1);

    std::size_t entry = end + 1;
    if (entry + 4 * std::size(kMapFileDirectory) > bytes.size()) {
        content.problems.push_back("the directory reaches past the end of the file");
        return content;
    }
    for (const int id : kMapFileDirectory) {
        const std::uint32_t offset = number(bytes, entry, 4);
        entry += 4;
        if (offset != 0)
            readTable(bytes, id, std::size_t{offset} + kMapFileOffsetBase, content);
    }
    return content;
}
