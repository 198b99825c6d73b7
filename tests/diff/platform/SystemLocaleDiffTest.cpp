// The table of languages against ICU, which knows the same identifiers.
#include "SystemLocaleTable.h"

#include <gtest/gtest.h>
#include <unicode/uloc.h>

#include <map>
#include <string>

namespace {

using tvPlatform::kSystemLocaleCount;
using tvPlatform::kSystemLocales;
using tvPlatform::SystemLocale;

std::string nameOf(const SystemLocale& entry)
{
    std::string name = entry.language;
    if (*entry.modifier)
        name += *entry.modifier == 'l' ? "_Latn" : *entry.modifier == 'c' ? "_Cyrl" : "_ES_VALENCIA";
    for (const char* c = entry.territory; *c; ++c) {
        if (c == entry.territory)
            name += '_';
        name += static_cast<char>(*c - 'a' + 'A');
    }
    return name;
}

// The territory or script that a name without one means, where that is not ICU's likeliest.
const std::map<std::string, std::string> kFullNames = {
    {"az", "az_Latn_AZ"},      {"az_Cyrl", "az_Cyrl_AZ"}, {"bs", "bs_Latn_BA"},
    {"bs_Cyrl", "bs_Cyrl_BA"}, {"sr", "sr_Cyrl_RS"},      {"sr_BA", "sr_Cyrl_BA"},
    {"sr_CS", "sr_Cyrl_CS"},   {"sr_ME", "sr_Cyrl_ME"},   {"sr_Latn", "sr_Latn_RS"},
    {"uz", "uz_Latn_UZ"},      {"uz_Cyrl", "uz_Cyrl_UZ"}, {"zh", "zh_CN"},
    {"iu_Latn", "iu_Latn_CA"}, {"tg", "tg_Cyrl_TJ"},      {"ha", "ha_Latn_NG"},
    {"tzm", "tzm_Latn_DZ"},    {"ar", "ar_SA"},           {"gsw", "gsw_FR"},
    {"pt", "pt_PT"},           {"qu", "qu_BO"},           {"sw", "sw_KE"},
};

TEST(SystemLocaleTable, IdentifiersAreThoseOfIcu)
{
    int known = 0;
    for (std::size_t i = 0; i < kSystemLocaleCount; ++i) {
        const SystemLocale& entry = kSystemLocales[i];
        std::string name = nameOf(entry);
        if (const auto full = kFullNames.find(name); full != kFullNames.end())
            name = full->second;
        else if (!*entry.territory) {
            char likely[ULOC_FULLNAME_CAPACITY], territory[ULOC_COUNTRY_CAPACITY];
            UErrorCode status = U_ZERO_ERROR;
            uloc_addLikelySubtags(name.c_str(), likely, sizeof likely, &status);
            uloc_getCountry(likely, territory, sizeof territory, &status);
            name += std::string("_") + territory;
        }
        const unsigned int lcid = uloc_getLCID(name.c_str());
        // Below 0x400 ICU knows the language alone.
        if (lcid < 0x400)
            continue;
        EXPECT_EQ(lcid, entry.lcid) << name << std::hex << " ICU " << lcid << " table " << entry.lcid;
        ++known;
    }
    EXPECT_GT(known, 150);
}

TEST(SystemLocaleTable, IsSortedWithoutRepetition)
{
    const auto key = [](const SystemLocale& entry) {
        return std::string(entry.language) + '/' + entry.territory + '/' + entry.modifier;
    };
    for (std::size_t i = 1; i < kSystemLocaleCount; ++i)
        EXPECT_LT(key(kSystemLocales[i - 1]), key(kSystemLocales[i]));
}

TEST(SystemLocaleTable, CodePagesAreAnsiOnes)
{
    for (std::size_t i = 0; i < kSystemLocaleCount; ++i) {
        const unsigned int page = kSystemLocales[i].ansiCodePage;
        EXPECT_TRUE((page >= 1250 && page <= 1258) || page == 874 || page == 932 || page == 936 ||
                    page == 949 || page == 950)
            << kSystemLocales[i].language;
    }
}

} // namespace
