#include "TvPlatformBase.h"

#include "SecondNames.h"

namespace {

// Lead bytes of the double-byte ANSI code pages, as up to three closed ranges.
struct LeadBytes {
    unsigned int codePage;
    unsigned char ranges[3][2];
};

constexpr LeadBytes kLeadBytes[] = {
    {932, {{0x81, 0x9F}, {0xE0, 0xFC}, {1, 0}}},
    {936, {{0x81, 0xFE}, {1, 0}, {1, 0}}},
    {949, {{0x81, 0xFE}, {1, 0}, {1, 0}}},
    {950, {{0x81, 0xFE}, {1, 0}, {1, 0}}},
    {1361, {{0x84, 0xD3}, {0xD8, 0xDE}, {0xE0, 0xF9}}},
};

const LeadBytes* leadBytesOf(unsigned int codePage)
{
    for (const LeadBytes& entry : kLeadBytes)
        if (entry.codePage == codePage)
            return &entry;
    return nullptr;
}

bool isLead(const LeadBytes* table, unsigned char byte)
{
    if (!table)
        return false;
    for (const auto& range : table->ranges)
        if (byte >= range[0] && byte <= range[1])
            return true;
    return false;
}

} // namespace

extern "C" size_t _mbslen(const unsigned char* text)
{
    if (!text)
        return 0;
    const LeadBytes* table = leadBytesOf(GetACP());
    size_t count = 0;
    for (; *text; ++text, ++count) {
        if (!isLead(table, *text))
            continue;
        // Meant: half a character at the end is none.
        if (*++text == 0)
            break;
    }
    return count;
}

TV_SECOND_NAME(_mbslen);
