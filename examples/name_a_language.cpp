// Which language and code page a character needs, and text walked character by character.
#include <TvOsBase.h>

#include <cstdio>

int main()
{
    // The first language if it has the character, else the second, else any that does.
    for (const wchar_t c : {L'A', L'\u3042', L'\u0416'}) {
        const unsigned short language = OrCodePage::LanguageFromUnicode(c, 0x0409, 0x0411);
        std::printf("U+%04X: language 0x%04X, code page %u\n", static_cast<unsigned>(c), language,
                    OrCodePage::LanguageToCodePage(language));
    }

    // Lead bytes are known as soon as the registry is built; the map file is not needed.
    TvCharMapper::initialize(L"");

    // An escape is one character, and so is a lead byte with its trail byte.
    const TvStringA text("\x82\xA0 25\\U+00B0");
    TvAnsiTextIterator it(text, CP_ANSI_932);
    while (const unsigned int code = it.nextChar())
        std::printf("%X ", code);
    std::printf("\n");
}
