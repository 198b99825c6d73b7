#include "CodepageMapFile.h"

#include "ByteDecoder.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <stdexcept>

namespace {


bool isPrivateUse(char16_t unit) { return unit >= 0xE000 && unit <= 0xF8FF; }

void appendNumber(std::string& bytes, unsigned long number, int size)
{
    for (int i = 0; i < size; ++i)
        bytes += static_cast<char>(number >> 8 * i & 0xFF);
}

void appendTable(std::string& bytes, const DoubleByteTable& table)
{
    appendNumber(bytes, table.size(), 2);
    for (const auto& [code, unit] : table)
        appendNumber(bytes, code, 2);
    for (const auto& [code, unit] : table)
        appendNumber(bytes, unit, 2);
}

void checkTables(const MapFileTables& tables)
{
    for (const auto& [id, table] : tables) {
        if (std::find(std::begin(kMapFileDirectory), std::end(kMapFileDirectory), id) == std::end(kMapFileDirectory))
            throw std::invalid_argument("code page id " + std::to_string(id) + " has no place in map files");
        if (table.size() > 0xFFFF)
            throw std::invalid_argument("table of code page id " + std::to_string(id) + " is too long");
    }
}

} // namespace

const DoubleByteCodePage kDoubleByteCodePages[4] = {
    {38, "CP932", {{0x81, 0x9F}, {0xE0, 0xFC}}},
    {39, "CP936", {{0x81, 0xFE}, {0, 0}}},
    {40, "CP949", {{0x81, 0xFE}, {0, 0}}},
    {41, "CP950", {{0x81, 0xFE}, {0, 0}}},
};

DoubleByteTable decodeDoubleByteTable(const DoubleByteCodePage& page)
{
    DoubleByteTable table;
    ByteDecoder decoder(page.converter);
    if (!decoder.isOpen())
        return table;
    for (const auto& range : page.leads) {
        for (int lead = range[0]; lead != 0 && lead <= range[1]; ++lead) {
            for (int trail = 0x40; trail <= 0xFE; ++trail) {
                const char bytes[2] = {static_cast<char>(lead), static_cast<char>(trail)};
                const std::u16string text = decoder.decode({bytes, 2});
                if (text.size() == 1 && !isPrivateUse(text[0]))
                    table[static_cast<unsigned short>(lead << 8 | trail)] = text[0];
            }
        }
    }
    return table;
}

std::string makeMapFile(const std::string& title, const MapFileTables& tables)
{
    checkTables(tables);
    // Readers look for the letter before the first NUL; blanks carry the header past the
    // place that offsets count from.
    std::string bytes = title.c_str();
    bytes.resize(std::max(bytes.size() + 1, kMapFileOffsetBase), ' ');
    bytes += 'H';
    bytes += '\0';

    const std::size_t directory = bytes.size();
    std::size_t position = directory + 4 * std::size(kMapFileDirectory);
    for (const int id : kMapFileDirectory) {
        const auto table = tables.find(id);
        appendNumber(bytes, table == tables.end() ? 0 : position - kMapFileOffsetBase, 4);
        if (table != tables.end())
            position += 2 + 4 * table->second.size();
    }
    for (const int id : kMapFileDirectory) {
        if (const auto table = tables.find(id); table != tables.end())
            appendTable(bytes, table->second);
    }
    return bytes;
}
