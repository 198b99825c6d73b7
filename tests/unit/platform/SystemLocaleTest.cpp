#include "TvPlatformBase.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <thread>

namespace {

// What a fresh process with exactly these variables says: "code page LCID".
std::string inEnvironment(const std::string& variables)
{
    const std::string command = "env -i LD_LIBRARY_PATH=\"$LD_LIBRARY_PATH\" " + variables + " " LOCALE_PROBE;
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe)
        return "no process";
    char line[64] = "";
    const bool read = std::fgets(line, sizeof line, pipe) != nullptr;
    if (pclose(pipe) != 0 || !read)
        return "the process failed";
    std::string text(line);
    text.pop_back();
    return text;
}

struct NameCase {
    const char* name;
    const char* locale;
    const char* answer;
};

class LocaleNames : public testing::TestWithParam<NameCase> {};

TEST_P(LocaleNames, DecideCodePageAndLanguage)
{
    EXPECT_EQ(inEnvironment(std::string("LC_ALL=") + GetParam().locale), GetParam().answer);
}

const NameCase kNames[] = {
    {"SimplifiedChinese", "zh_CN.UTF-8", "936 0804"},
    {"TraditionalChinese", "zh_TW.UTF-8", "950 0404"},
    {"HongKong", "zh_HK.UTF-8", "950 0C04"},
    {"Macao", "zh_MO", "950 1404"},
    {"Singapore", "zh_SG", "936 1004"},
    {"ChineseAlone", "zh", "936 0804"},
    {"Japanese", "ja_JP.eucJP", "932 0411"},
    {"Korean", "ko_KR.UTF-8", "949 0412"},
    {"Russian", "ru_RU.KOI8-R", "1251 0419"},
    {"Polish", "pl_PL.ISO-8859-2", "1250 0415"},
    {"Turkish", "tr_TR", "1254 041F"},
    {"Greek", "el_GR", "1253 0408"},
    {"Hebrew", "he_IL", "1255 040D"},
    {"HebrewOldCode", "iw_IL", "1255 040D"},
    {"Arabic", "ar_SA", "1256 0401"},
    {"ArabicOfEgypt", "ar_EG.UTF-8", "1256 0C01"},
    {"Lithuanian", "lt_LT", "1257 0427"},
    {"Latvian", "lv_LV", "1257 0426"},
    {"Estonian", "et_EE", "1257 0425"},
    {"Vietnamese", "vi_VN", "1258 042A"},
    {"Thai", "th_TH", "874 041E"},
    {"German", "de_DE.UTF-8@euro", "1252 0407"},
    {"Austrian", "de_AT", "1252 0C07"},
    {"GermanOfAnyOtherPlace", "de_BE", "1252 0407"},
    {"Brazil", "pt_BR", "1252 0416"},
    {"Portugal", "pt_PT", "1252 0816"},
    {"SerbianIsCyrillic", "sr_RS.UTF-8", "1251 281A"},
    {"SerbianInLatin", "sr_RS.UTF-8@latin", "1250 241A"},
    {"MontenegroInLatin", "sr_ME@latin", "1250 2C1A"},
    {"BosnianIsLatin", "bs_BA", "1250 141A"},
    {"UzbekIsLatin", "uz_UZ", "1254 0443"},
    {"UzbekInCyrillic", "uz_UZ@cyrillic", "1251 0843"},
    {"KurdishOfIraq", "ckb_IQ", "1256 0492"},
    {"PunjabiOfPakistan", "pa_PK", "1256 0846"},
    {"PunjabiOfIndiaHasNoCodePage", "pa_IN", "1252 0409"},
    {"LetterCaseIsNoMatter", "ZH_tw", "950 0404"},
    {"Plain", "C", "1252 0409"},
    {"PlainUtf8", "C.UTF-8", "1252 0409"},
    {"Posix", "POSIX", "1252 0409"},
    {"LanguageWithoutCodePage", "hi_IN.UTF-8", "1252 0409"},
    {"Unknown", "xx_YY", "1252 0409"},
    {"OnlyTheStartOfALanguage", "z_CN", "1252 0409"},
    {"OnlyACodeset", ".UTF-8", "1252 0409"},
};
INSTANTIATE_TEST_SUITE_P(SystemLocale, LocaleNames, testing::ValuesIn(kNames),
                         [](const auto& instance) { return instance.param.name; });

struct OrderCase {
    const char* name;
    const char* variables;
    const char* answer;
};

class LocaleOrder : public testing::TestWithParam<OrderCase> {};

TEST_P(LocaleOrder, FirstThatIsSetDecides)
{
    EXPECT_EQ(inEnvironment(GetParam().variables), GetParam().answer);
}

const OrderCase kOrder[] = {
    {"NothingSet", "", "1252 0409"},
    {"LangAlone", "LANG=ja_JP", "932 0411"},
    {"AllBeforeEverything", "LC_ALL=el_GR LC_CTYPE=ja_JP LC_MESSAGES=ko_KR LANG=pl_PL", "1253 0408"},
    {"TypeDecidesTheCodePage", "LC_CTYPE=ja_JP LANG=pl_PL", "932 0415"},
    {"MessagesDecideTheLanguage", "LC_MESSAGES=ja_JP LANG=pl_PL", "1250 0411"},
    {"EmptyIsNotSet", "LC_ALL= LC_CTYPE= LC_MESSAGES= LANG=pl_PL", "1250 0415"},
    {"PlainIsSet", "LC_ALL=C LANG=pl_PL", "1252 0409"},
};
INSTANTIATE_TEST_SUITE_P(SystemLocale, LocaleOrder, testing::ValuesIn(kOrder),
                         [](const auto& instance) { return instance.param.name; });

class ChosenLocale : public testing::Test {
protected:
    ~ChosenLocale() override
    {
        tvPlatformSetACP(0);
        tvPlatformSetSystemDefaultLCID(0);
    }
};

TEST_F(ChosenLocale, CodePageCountsAtOnce)
{
    tvPlatformSetACP(950);
    EXPECT_EQ(GetACP(), 950u);
    tvPlatformSetACP(932);
    EXPECT_EQ(GetACP(), 932u);
}

TEST_F(ChosenLocale, LanguageCountsAtOnce)
{
    tvPlatformSetSystemDefaultLCID(0x0404);
    EXPECT_EQ(GetSystemDefaultLCID(), 0x0404u);
}

TEST_F(ChosenLocale, ZeroGoesBackToTheEnvironment)
{
    const unsigned int codePage = GetACP();
    const unsigned int lcid = GetSystemDefaultLCID();
    tvPlatformSetACP(codePage + 1);
    tvPlatformSetSystemDefaultLCID(lcid + 1);
    tvPlatformSetACP(0);
    tvPlatformSetSystemDefaultLCID(0);
    EXPECT_EQ(GetACP(), codePage);
    EXPECT_EQ(GetSystemDefaultLCID(), lcid);
}

TEST_F(ChosenLocale, TheTwoAreIndependent)
{
    const unsigned int lcid = GetSystemDefaultLCID();
    tvPlatformSetACP(949);
    EXPECT_EQ(GetSystemDefaultLCID(), lcid);
}

TEST_F(ChosenLocale, AnyNumberIsTaken)
{
    tvPlatformSetACP(0xFFFFFFFFu);
    EXPECT_EQ(GetACP(), 0xFFFFFFFFu);
}

TEST_F(ChosenLocale, EveryThreadSeesIt)
{
    tvPlatformSetACP(1361);
    unsigned int seen = 0;
    std::thread([&seen] { seen = GetACP(); }).join();
    EXPECT_EQ(seen, 1361u);
}

} // namespace
