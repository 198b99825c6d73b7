// The double-byte tables of the shipped map file against ICU's converters, whose data were
// made from other sources.
#include "TvCodePages.h"

#include "MapBytes.h"
#include "PlainStream.h"

#include <gtest/gtest.h>
#include <map>
#include <string>
#include <unicode/ucnv.h>

namespace {

using Table = std::map<int, int>; // code to unit

struct Page {
    int id;
    const char* converter;
    int pairs;
};

bool isPrivateUse(int unit) { return unit >= 0xE000 && unit <= 0xF8FF; }

// The unit of a code, or -1 when it is not exactly one outside the private use area.
int decode(UConverter* converter, int code)
{
    const char in[2] = {static_cast<char>(code >> 8), static_cast<char>(code & 0xFF)};
    UChar out[8];
    UErrorCode error = U_ZERO_ERROR;
    ucnv_reset(converter);
    const int length = ucnv_toUChars(converter, out, 8, in, 2, &error);
    return U_SUCCESS(error) && length == 1 && !isPrivateUse(out[0]) ? out[0] : -1;
}

class DoubleByte : public testing::TestWithParam<Page> {
protected:
    void SetUp() override
    {
        const std::string file = shippedMapBytes();
        PlainStream stream(file, file.find('\0') + 1);
        m_pages.init();
        m_pages.init(&stream);
        m_mapper = m_pages.findMapperByAcadCp(static_cast<code_page_id>(GetParam().id));
        ASSERT_EQ(m_mapper->verifyLoaded(&stream), Orna::eOk);
    }

    Table loaded() const
    {
        Table table;
        for (int i = 0; i < m_mapper->m_pairs.length(); ++i) {
            const EkCpUnicodePair pair = m_mapper->m_pairs.asArrayPtr()[i];
            table[pair.code] = pair.unicode;
        }
        return table;
    }

    Table published() const
    {
        Table table;
        UErrorCode error = U_ZERO_ERROR;
        UConverter* converter = ucnv_open(GetParam().converter, &error);
        EXPECT_TRUE(U_SUCCESS(error)) << u_errorName(error);
        ucnv_setToUCallBack(converter, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
        for (int range = 0; range < m_mapper->m_leadBytes.length(); ++range) {
            const EkLeaderBytes leads = m_mapper->m_leadBytes.asArrayPtr()[range];
            for (int code = leads.first << 8; code <= (leads.last << 8 | 0xFF); ++code) {
                if (const int unit = decode(converter, code); unit >= 0)
                    table[code] = unit;
            }
        }
        ucnv_close(converter);
        return table;
    }

    EkCodepages m_pages;
    EkCodepageMapper* m_mapper = nullptr;
};

TEST_P(DoubleByte, HoldsThePublishedTable)
{
    const Table table = loaded();
    EXPECT_EQ(table.size(), static_cast<std::size_t>(GetParam().pairs));
    EXPECT_EQ(table, published());
}

TEST_P(DoubleByte, KeepsBothCodesOfCharactersThatStandTwice)
{
    std::map<int, int> codesOf;
    for (const auto& [code, unit] : loaded())
        ++codesOf[unit];
    int twice = 0;
    for (const auto& [unit, codes] : codesOf)
        twice += codes > 1;
    // 936 and 949 hold no character twice.
    EXPECT_EQ(twice > 0, GetParam().id == 38 || GetParam().id == 41);
}

INSTANTIATE_TEST_SUITE_P(Pages, DoubleByte,
                         testing::Values(Page{38, "ibm-943_P15A-2003", 7724},
                                         Page{39, "windows-936-2000", 21791},
                                         Page{40, "windows-949-2000", 17048},
                                         Page{41, "windows-950-2000", 13503}),
                         [](const auto& page) { return "id" + std::to_string(page.param.id); });

} // namespace
