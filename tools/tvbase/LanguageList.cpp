#include "LanguageList.h"

#include "Json.h"

#include "OrCodePage.h"

#include <cstdio>
#include <string>

namespace {

struct LanguageName {
    int primary; // low 10 bits of the identifier
    const char* name;
};

constexpr LanguageName kNames[] = {
    {0x01, "Arabic"},
    {0x02, "Bulgarian"},
    {0x03, "Catalan"},
    {0x04, "Chinese"},
    {0x05, "Czech"},
    {0x06, "Danish"},
    {0x07, "German"},
    {0x08, "Greek"},
    {0x09, "English"},
    {0x0A, "Spanish"},
    {0x0B, "Finnish"},
    {0x0C, "French"},
    {0x0D, "Hebrew"},
    {0x0E, "Hungarian"},
    {0x0F, "Icelandic"},
    {0x10, "Italian"},
    {0x11, "Japanese"},
    {0x12, "Korean"},
    {0x13, "Dutch"},
    {0x14, "Norwegian"},
    {0x15, "Polish"},
    {0x16, "Portuguese"},
    {0x18, "Romanian"},
    {0x19, "Russian"},
    {0x1A, "Croatian, Serbian, Bosnian"},
    {0x1B, "Slovak"},
    {0x1C, "Albanian"},
    {0x1D, "Swedish"},
    {0x1E, "Thai"},
    {0x1F, "Turkish"},
    {0x20, "Urdu"},
    {0x21, "Indonesian"},
    {0x22, "Ukrainian"},
    {0x23, "Belarusian"},
    {0x24, "Slovenian"},
    {0x25, "Estonian"},
    {0x26, "Latvian"},
    {0x27, "Lithuanian"},
    {0x29, "Persian"},
    {0x2A, "Vietnamese"},
    {0x2B, "Armenian"},
    {0x2C, "Azerbaijani"},
    {0x2D, "Basque"},
    {0x2F, "Macedonian"},
    {0x32, "Tswana"},
    {0x34, "Xhosa"},
    {0x35, "Zulu"},
    {0x36, "Afrikaans"},
    {0x37, "Georgian"},
    {0x38, "Faroese"},
    {0x39, "Hindi"},
    {0x3A, "Maltese"},
    {0x3B, "Sami"},
    {0x3E, "Malay"},
    {0x3F, "Kazakh"},
    {0x40, "Kyrgyz"},
    {0x41, "Swahili"},
    {0x43, "Uzbek"},
    {0x44, "Tatar"},
    {0x45, "Bengali"},
    {0x46, "Punjabi"},
    {0x47, "Gujarati"},
    {0x49, "Tamil"},
    {0x4A, "Telugu"},
    {0x4B, "Kannada"},
    {0x4C, "Malayalam"},
    {0x4E, "Marathi"},
    {0x4F, "Sanskrit"},
    {0x50, "Mongolian"},
    {0x52, "Welsh"},
    {0x56, "Galician"},
    {0x57, "Konkani"},
    {0x5A, "Syriac"},
    {0x65, "Dhivehi"},
    {0x6B, "Quechua"},
    {0x6C, "Northern Sotho"},
    {0x81, "Maori"},
};

// "-" for none.
std::string numberOrNone(unsigned int number) { return number != 0 ? std::to_string(number) : "-"; }

void numberOrNull(JsonWriter& json, const char* key, unsigned int number)
{
    number != 0 ? json.number(key, number) : json.null(key);
}

unsigned int indexOf(unsigned short lcid)
{
    return static_cast<unsigned int>(OrCodePage::LanguageToCodePageIndex(static_cast<short>(lcid)));
}

} // namespace

void printLanguages()
{
    std::printf("id    charset  number  index  writing  language\n");
    for (const OrCodePage::LcidAndCharset& row : OrCodePage::s_lcidAndCharsetMap) {
        const auto lcid = static_cast<unsigned short>(row.lcid);
        std::printf("%04X  %7d  %6s  %5s  %-7s  %s\n", lcid, row.charset,
                    numberOrNone(OrCodePage::LanguageToCodePage(lcid)).c_str(),
                    numberOrNone(indexOf(lcid)).c_str(), OrCodePage::LanguageIsRtoL(lcid) ? "R to L" : "-",
                    languageName(lcid));
    }
}

void printLanguagesAsJson()
{
    JsonWriter json;
    json.beginArray();
    for (const OrCodePage::LcidAndCharset& row : OrCodePage::s_lcidAndCharsetMap) {
        const auto lcid = static_cast<unsigned short>(row.lcid);
        json.beginObject();
        json.number("id", lcid);
        json.number("charset", row.charset);
        numberOrNull(json, "number", OrCodePage::LanguageToCodePage(lcid));
        numberOrNull(json, "index", indexOf(lcid));
        json.boolean("rightToLeft", OrCodePage::LanguageIsRtoL(lcid));
        if (const std::string_view name = languageName(lcid); name != "-")
            json.text("language", name);
        else
            json.null("language");
        json.end();
    }
    json.end();
    json.print();
}

const char* languageName(int lcid)
{
    for (const LanguageName& row : kNames) {
        if (row.primary == (lcid & 0x3FF))
            return row.name;
    }
    return "-";
}
